#include "kx/drawing/spot.h"

#include "kx/drawing/shapes.h"

namespace kx {

void TKxSpot::Draw(TCanvas& canvas, TPoint p, int32_t radius, TColor color) {
    if (canvas.DeviceRatio() != 1.0 || radius < 0 || radius > 4096) {
        KxCircleAtPoint(canvas, p, radius, color, color);
        return;
    }
    const int32_t size = 2 * radius + 3;
    if (radius != radius_ || color != color_) {
        picture_.SetSize(size, size);
        picture_.ClearTransparent();
        picture_.SetTransparent(true);
        KxCircleAtPoint(picture_.Canvas(), TPoint{radius + 1, radius + 1}, radius, color, color);
        radius_ = radius;
        color_ = color;
    }
    canvas.Draw(p.X - radius - 1, p.Y - radius - 1, picture_);
}

}  // namespace kx
