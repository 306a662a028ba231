#include "host/bitmap.h"

#include <cstring>

namespace kx {

TBitmap::TBitmap() : canvas_(std::make_unique<TCanvas>(&image_)) {}

TBitmap::TBitmap(int32_t width, int32_t height) : TBitmap() { SetSize(width, height); }

TBitmap::~TBitmap() { canvas_->Release(); }

void TBitmap::SetSize(int32_t width, int32_t height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == image_.width() && height == image_.height()) return;
    canvas_->Release();
    if (width == 0 || height == 0) {
        image_ = QImage();
        return;
    }
    QImage next(width, height, QImage::Format_ARGB32_Premultiplied);
    next.fill(0xFFFFFFFFu);
    if (!image_.isNull()) {
        const int w = std::min(width, image_.width()) * 4;
        for (int y = 0; y < std::min(height, image_.height()); ++y)
            std::memcpy(next.scanLine(y), image_.constScanLine(y), size_t(w));
    }
    image_ = std::move(next);
}

void TBitmap::Assign(const TBitmap& other) {
    if (&other == this) return;
    canvas_->Release();
    other.canvas_->Release();
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

const QImage& TBitmap::Image() const { return image_; }

QImage& TBitmap::MutableImage() {
    canvas_->Release();
    return image_;
}

TColor TBitmap::Pixel(int32_t x, int32_t y) const {
    if (x < 0 || y < 0 || x >= image_.width() || y >= image_.height()) return -1;
    return FromQRgb(qUnpremultiply(image_.pixel(x, y)));
}

bool TBitmap::SaveToFile(const QString& path) const { return image_.save(path); }

}  // namespace kx
