#pragma once
// The gallery's pages: at least one per palette page of the library, in palette order. A
// page shows components of its palette page that exist so far; a palette page with many
// components is spread over several gallery pages, each a section of it ("KxAnalogInd ·
// Bars and linear meters"); pages whose components are still to come show a short note.
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;

namespace kxgallery {

// A wrapped explanatory text in the gallery's quiet hint style.
QLabel* HintLabel(const QString& text);

// Where the gallery keeps what it writes (pictures, kxgallery.ini): the screenshot folder,
// or "out" in the current directory for the window. Set before the pages are made.
const QString& GalleryOutputDir();
void SetGalleryOutputDir(const QString& dir);

// "KxMisc", "KxAnalogInd", "KxAnalogAdj", "KxBinary".
const QStringList& PalettePageNames();

class GalleryPage : public QWidget {
    Q_OBJECT
  public:
    GalleryPage(const QString& paletteName, QWidget* parent = nullptr);
    const QString& PaletteName() const { return paletteName_; }
    // The section of the palette page this page shows (empty: the first or only one) and
    // a short name for it in file names ("bars").
    const QString& Section() const { return section_; }
    const QString& SectionSlug() const { return sectionSlug_; }
    // The palette name, with the section after a middle dot.
    QString Title() const;
    // One step of the simulated plant; pages without live components ignore it.
    virtual void Step(double seconds);

  protected:
    void SetSection(const QString& section, const QString& slug);
    // Shows content in a frameless scroll area that fills the page.
    void SetScrollContent(QWidget* content);

  private:
    QString paletteName_;
    QString section_;
    QString sectionSlug_;
};

}  // namespace kxgallery
