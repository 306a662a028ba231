#include "render.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPixmap>
#include <QWidget>
#include <algorithm>

namespace kx::panel {
namespace {

constexpr int kPdfDpi = 300;

bool fail(QString* error, const QString& message) {
    if (error) *error = message;
    return false;
}

}  // namespace

bool RenderPanel(QWidget& panel, const QString& path, QString* error) {
    const QFileInfo info(path);
    const QString ext = info.suffix().toLower();
    if (ext != QLatin1String("png") && ext != QLatin1String("pdf"))
        return fail(error, QStringLiteral("%1: expected a .png or .pdf file name").arg(path));
    // "out/panel.png" works without making out/ first.
    QDir().mkpath(info.absolutePath());
    if (ext == QLatin1String("png")) return RenderPng(panel, path, error);
    return RenderPdf(panel, path, error);
}

bool RenderPng(QWidget& panel, const QString& path, QString* error) {
    const QPixmap shot = panel.grab();
    if (shot.isNull()) return fail(error, QStringLiteral("%1: the panel has no size").arg(path));
    if (!shot.save(path, "PNG")) return fail(error, QStringLiteral("%1: cannot write").arg(path));
    return true;
}

bool RenderPdf(QWidget& panel, const QString& path, QString* error) {
    if (panel.width() <= 0 || panel.height() <= 0)
        return fail(error, QStringLiteral("%1: the panel has no size").arg(path));
    QPdfWriter writer(path);
    writer.setResolution(kPdfDpi);
    writer.setCreator(QStringLiteral("kxpanel"));
    const auto orientation =
        panel.width() > panel.height() ? QPageLayout::Landscape : QPageLayout::Portrait;
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), orientation,
                                     QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter));
    QPainter painter;
    if (!painter.begin(&writer)) return fail(error, QStringLiteral("%1: cannot write").arg(path));
    const QRect page = writer.pageLayout().paintRectPixels(kPdfDpi).translated(
        -writer.pageLayout().paintRectPixels(kPdfDpi).topLeft());
    const double scale =
        std::min(double(page.width()) / panel.width(), double(page.height()) / panel.height());
    const QSize size(std::max(1, int(panel.width() * scale)),
                     std::max(1, int(panel.height() * scale)));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    panel.render(&image);
    const QPoint at((page.width() - size.width()) / 2, (page.height() - size.height()) / 2);
    painter.drawImage(QRect(at, size), image);
    return painter.end() ? true : fail(error, QStringLiteral("%1: cannot write").arg(path));
}

}  // namespace kx::panel
