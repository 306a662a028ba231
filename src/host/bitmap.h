#pragma once
// TBitmap: a QImage (premultiplied ARGB) with its own canvas. A new or enlarged bitmap
// is white and opaque, as the classic one is; Transparent makes Draw blend it instead
// of copying it.
#include <QImage>
#include <memory>

#include "host/canvas.h"

namespace kx {

class TBitmap {
public:
    TBitmap();
    TBitmap(int32_t width, int32_t height);
    ~TBitmap();
    TBitmap(const TBitmap&) = delete;
    TBitmap& operator=(const TBitmap&) = delete;

    int32_t Width() const { return image_.width(); }
    int32_t Height() const { return image_.height(); }
    bool Empty() const { return image_.isNull(); }
    // Negative sizes are taken as 0; the content is kept where it still fits.
    void SetSize(int32_t width, int32_t height);
    void SetWidth(int32_t w) { SetSize(w, Height()); }
    void SetHeight(int32_t h) { SetSize(Width(), h); }
    bool Transparent() const { return transparent_; }
    void SetTransparent(bool t) { transparent_ = t; }
    // Deep copy of size, pixels and transparency.
    void Assign(const TBitmap& other);
    // Clears to fully transparent pixels (surfaces of windowless controls start so).
    void ClearTransparent();

    TCanvas& Canvas() { return *canvas_; }
    // The pixels. Drawing is immediate, so they are always current.
    const QImage& Image() const;
    QImage& MutableImage();
    TColor Pixel(int32_t x, int32_t y) const;
    bool SaveToFile(const QString& path) const;

private:
    QImage image_;
    std::unique_ptr<TCanvas> canvas_;
    bool transparent_ = false;
};

}  // namespace kx
