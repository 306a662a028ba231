#pragma once
// TBitmap: a QImage (premultiplied ARGB) with its own canvas. A new or enlarged bitmap
// is white and opaque, as the classic one is; Transparent makes Draw blend it instead
// of copying it.
//
// High-DPI: a bitmap has a device pixel ratio and a grid origin (see canvas.h). Width and
// Height stay logical; the image holds the device pixels, Canvas().DeviceX(Width()) by
// Canvas().DeviceY(Height()) of them (its own QImage::devicePixelRatio stays 1, so that
// a QPainter on it works in device pixels). Bitmaps that cache parts of one surface take
// that surface's ratio and their position on it as origin, so copies between them are
// pixel for pixel at any ratio.
#include <QImage>
#include <memory>

#include "kx/host/canvas.h"

class QPainter;

namespace kx {

class TBitmap {
  public:
    TBitmap();
    TBitmap(int32_t width, int32_t height);
    ~TBitmap();
    TBitmap(const TBitmap&) = delete;
    TBitmap& operator=(const TBitmap&) = delete;

    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    bool Empty() const { return image_.isNull(); }
    // Negative sizes are taken as 0; the content is kept where it still fits. A size whose
    // pixels cannot be had (beyond QImage's limits, or no memory) keeps the logical size
    // but leaves the bitmap Empty(): its content is gone and drawing on it does nothing.
    void SetSize(int32_t width, int32_t height);
    void SetWidth(int32_t w) { SetSize(w, Height()); }
    void SetHeight(int32_t h) { SetSize(Width(), h); }
    // Sets the device grid (ratio as TCanvas::ValidRatio takes it). A new ratio discards
    // the pixels: the image is re-created white at the new device size.
    void SetDeviceGrid(double ratio, TPoint origin = {});
    double DeviceRatio() const { return canvas_->DeviceRatio(); }
    TPoint GridOrigin() const { return canvas_->GridOrigin(); }
    bool Transparent() const { return transparent_; }
    void SetTransparent(bool t) { transparent_ = t; }
    // Deep copy of size, device grid, pixels and transparency.
    void Assign(const TBitmap& other);
    // Clears to fully transparent pixels (surfaces of windowless controls start so).
    void ClearTransparent();

    TCanvas& Canvas() { return *canvas_; }
    // The pixels. Drawing is immediate, so they are always current.
    const QImage& Image() const;
    QImage& MutableImage();
    // The device pixel at the logical position (as TCanvas::Pixel); -1 outside.
    TColor Pixel(int32_t x, int32_t y) const;
    // Moves the pixels left by columns logical pixels (a scrolling chart); the columns
    // uncovered at the right keep their old pixels for the caller to redraw. Only on a whole
    // device ratio, where logical columns are whole device columns: false (and nothing
    // moved) otherwise, or for columns outside 1..Width() - 1.
    bool ShiftLeft(int32_t columns);
    // Writes the image in the format the file name's suffix names (png, bmp, jpg, ...),
    // crash-safely (KxReplaceFile, safefile.h). False, with the old file left as it was,
    // for an empty bitmap, a suffix no image writer knows, or a file step that failed.
    bool SaveToFile(const QString& path) const;

  private:
    void resize(int32_t width, int32_t height, bool keep);

    QImage image_;
    int32_t width_ = 0, height_ = 0;
    std::unique_ptr<TCanvas> canvas_;
    bool transparent_ = false;
};

// Paints the logical area of a widget from its surface in a paint event: the area's
// device pixels one to one, the painter scaling the logical target back up by the ratio.
// An opaque surface is copied rather than blended (the same pixels, cheaper).
void KxBlitSurface(QPainter& painter, TBitmap& surface, const QRect& area, bool opaque = false);
// Whether every pixel of the bitmap is fully opaque (an empty bitmap is not).
bool KxAllOpaque(const TBitmap& bitmap);

}  // namespace kx
