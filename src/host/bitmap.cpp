#include "kx/host/bitmap.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <cmath>
#include <cstring>

#include "kx/host/safefile.h"

namespace kx {

TBitmap::TBitmap() : canvas_(std::make_unique<TCanvas>(&image_)) {}

TBitmap::TBitmap(int32_t width, int32_t height) : TBitmap() {
    SetSize(width, height);
}

TBitmap::~TBitmap() {
    canvas_->Release();
}

void TBitmap::SetSize(int32_t width, int32_t height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == width_ && height == height_) return;
    resize(width, height, true);
}

void TBitmap::SetDeviceGrid(double ratio, TPoint origin) {
    ratio = TCanvas::ValidRatio(ratio);
    if (ratio == DeviceRatio() && origin == GridOrigin()) return;
    const bool sameRatio = ratio == DeviceRatio();
    canvas_->Release();
    canvas_->SetDeviceGrid(ratio, origin, TPoint{width_, height_});
    resize(width_, height_, sameRatio);
}

void TBitmap::resize(int32_t width, int32_t height, bool keep) {
    canvas_->Release();
    width_ = width;
    height_ = height;
    canvas_->SetDeviceGrid(DeviceRatio(), GridOrigin(), TPoint{width, height});
    const int32_t dw = canvas_->DeviceX(width) - canvas_->DeviceX(0);
    const int32_t dh = canvas_->DeviceY(height) - canvas_->DeviceY(0);
    if (dw <= 0 || dh <= 0) {
        image_ = QImage();
        return;
    }
    if (keep && image_.width() == dw && image_.height() == dh) return;
    QImage next(dw, dh, QImage::Format_ARGB32_Premultiplied);
    if (next.isNull()) {  // beyond QImage's limits or out of memory
        image_ = QImage();
        return;
    }
    next.fill(0xFFFFFFFFu);
    if (keep && !image_.isNull()) {
        const int w = std::min(dw, image_.width()) * 4;
        for (int y = 0; y < std::min(dh, image_.height()); ++y)
            std::memcpy(next.scanLine(y), image_.constScanLine(y), size_t(w));
    }
    image_ = std::move(next);
}

void TBitmap::Assign(const TBitmap& other) {
    if (&other == this) return;
    canvas_->Release();
    other.canvas_->Release();
    width_ = other.width_;
    height_ = other.height_;
    canvas_->SetDeviceGrid(other.DeviceRatio(), other.GridOrigin(), TPoint{width_, height_});
    // Reuse the buffer when the size matches so that a per-reading copy never allocates.
    if (image_.size() == other.image_.size() && !image_.isNull()) {
        std::memcpy(image_.bits(), other.image_.constBits(), size_t(image_.sizeInBytes()));
    } else {
        image_ = other.image_.copy();
    }
    transparent_ = other.transparent_;
}

void TBitmap::ClearTransparent() {
    canvas_->Release();
    if (!image_.isNull()) image_.fill(0u);
}

const QImage& TBitmap::Image() const {
    return image_;
}

QImage& TBitmap::MutableImage() {
    canvas_->Release();
    return image_;
}

bool TBitmap::ShiftLeft(int32_t columns) {
    const double ratio = DeviceRatio();
    if (columns < 1 || columns >= width_ || ratio != std::floor(ratio) || image_.isNull())
        return false;
    QImage& img = MutableImage();
    const qsizetype bpp = img.depth() / 8;
    const qsizetype shift = qsizetype(columns) * qsizetype(ratio);
    if (shift >= img.width()) return false;
    const size_t keep = size_t(img.width() - shift) * size_t(bpp);
    for (int y = 0; y < img.height(); ++y) {
        uchar* row = img.scanLine(y);
        std::memmove(row, row + shift * bpp, keep);
    }
    return true;
}

TColor TBitmap::Pixel(int32_t x, int32_t y) const {
    x = canvas_->DeviceX(x);
    y = canvas_->DeviceY(y);
    if (x < 0 || y < 0 || x >= image_.width() || y >= image_.height()) return -1;
    return FromQRgb(qUnpremultiply(image_.pixel(x, y)));
}

bool TBitmap::SaveToFile(const QString& path) const {
    // Encoded whole in memory first, so only a complete file ever replaces the old one.
    QBuffer encoded;
    encoded.open(QIODevice::WriteOnly);
    QImageWriter writer(&encoded, QFileInfo(path).suffix().toLatin1());
    if (!writer.write(image_)) return false;
    const QByteArray& bytes = encoded.data();
    return KxReplaceFile(path, bytes.constData(), static_cast<size_t>(bytes.size())) == 0;
}

void KxBlitSurface(QPainter& painter, TBitmap& surface, const QRect& r, bool opaque) {
    if (opaque) painter.setCompositionMode(QPainter::CompositionMode_Source);
    const double ratio = surface.DeviceRatio();
    if (ratio == 1.0) {
        painter.drawImage(r.topLeft(), surface.Image(), r);
        return;
    }
    const TRect d = surface.Canvas().DeviceRect(
        TRect{r.left(), r.top(), r.left() + r.width(), r.top() + r.height()});
    const QRect source(d.Left, d.Top, d.Width(), d.Height());
    painter.drawImage(QRectF(source.x() / ratio, source.y() / ratio, source.width() / ratio,
                             source.height() / ratio),
                      surface.Image(), source);
}

bool KxAllOpaque(const TBitmap& bitmap) {
    const QImage& img = bitmap.Image();
    if (img.isNull() || img.width() == 0 || img.height() == 0) return false;
    if (!img.hasAlphaChannel()) return true;
    if (img.format() != QImage::Format_ARGB32_Premultiplied &&
        img.format() != QImage::Format_ARGB32)
        return false;
    const int w = img.width(), h = img.height();
    for (int y = 0; y < h; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < w; ++x)
            if (qAlpha(line[x]) != 255) return false;
    }
    return true;
}

}  // namespace kx
