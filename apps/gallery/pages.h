#pragma once
// The gallery's pages: one per palette page of the library, in palette order. A page
// shows every component of its palette page that exists so far; pages whose components
// are still to come show a short note instead.
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;

namespace kxgallery {

// "KxMisc", "KxAnalogInd", "KxAnalogAdj", "KxBinary".
const QStringList& PalettePageNames();

class GalleryPage : public QWidget {
    Q_OBJECT
  public:
    GalleryPage(const QString& paletteName, QWidget* parent = nullptr);
    const QString& PaletteName() const { return paletteName_; }
    // One step of the simulated plant; pages without live components ignore it.
    virtual void Step(double seconds);

  private:
    QString paletteName_;
};

// A page with a centred note.
class NotePage : public GalleryPage {
    Q_OBJECT
  public:
    NotePage(const QString& paletteName, const QString& note, QWidget* parent = nullptr);
    QString Note() const;

  private:
    QLabel* label_;
};

}  // namespace kxgallery
