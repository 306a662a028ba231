#include "pages.h"

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace kxgallery {

QLabel* HintLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setObjectName(QStringLiteral("hintText"));
    label->setWordWrap(true);
    return label;
}

namespace {
QString& outputDir() {
    static QString dir = QStringLiteral("out");
    return dir;
}
}  // namespace

const QString& GalleryOutputDir() {
    return outputDir();
}

void SetGalleryOutputDir(const QString& dir) {
    outputDir() = dir;
}

const QStringList& PalettePageNames() {
    static const QStringList names = {QStringLiteral("KxMisc"), QStringLiteral("KxAnalogInd"),
                                      QStringLiteral("KxAnalogAdj"), QStringLiteral("KxBinary")};
    return names;
}

GalleryPage::GalleryPage(const QString& paletteName, QWidget* parent)
    : QWidget(parent), paletteName_(paletteName) {
    setObjectName(QStringLiteral("page") + paletteName);
}

void GalleryPage::Step(double) {}

QString GalleryPage::Title() const {
    return section_.isEmpty() ? paletteName_ : paletteName_ + QStringLiteral(" \u00B7 ") + section_;
}

void GalleryPage::SetSection(const QString& section, const QString& slug) {
    section_ = section;
    sectionSlug_ = slug;
    setObjectName(QStringLiteral("page") + paletteName_ + slug);
}

void GalleryPage::SetScrollContent(QWidget* content) {
    auto* scroll = new QScrollArea;
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
}

}  // namespace kxgallery
