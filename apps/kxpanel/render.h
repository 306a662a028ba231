#pragma once
// Writes a panel as it stands to a PNG or a PDF file, chosen by the extension (case does
// not matter; anything else is an error). A missing folder on the way is made.
//  - PNG: the panel grabbed at its own size and device pixel ratio.
//  - PDF: one A4 page at 300 dpi, landscape when the panel is wider than high, 10 mm
//    margins; the panel scaled to fit the page (aspect kept, centred) and drawn into one
//    image at the page's resolution: the instruments are raster surfaces, so they are
//    images in the PDF whatever the scale.
// false with a message naming the file when it cannot be written.
#include <QString>

class QWidget;

namespace kx::panel {

bool RenderPanel(QWidget& panel, const QString& path, QString* error);
bool RenderPng(QWidget& panel, const QString& path, QString* error);
bool RenderPdf(QWidget& panel, const QString& path, QString* error);

}  // namespace kx::panel
