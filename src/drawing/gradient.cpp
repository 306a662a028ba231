#include "kx/drawing/gradient.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "kx/host/bitmap.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

// Colours of a run of primitives 0 .. n from `from` to `to` in equal steps.
class TColorRamp {
  public:
    TColorRamp(TColor from, TColor to, int32_t n) : from_(from) {
        const double steps = std::max(n, 1);
        incR_ = static_cast<float>((GetRValue(to) - GetRValue(from)) / steps);
        incG_ = static_cast<float>((GetGValue(to) - GetGValue(from)) / steps);
        incB_ = static_cast<float>((GetBValue(to) - GetBValue(from)) / steps);
    }
    TColor At(int32_t i) const {
        const double di = i;
        return RGB(GetRValue(from_) + Round(incR_ * di), GetGValue(from_) + Round(incG_ * di),
                   GetBValue(from_) + Round(incB_ * di));
    }

  private:
    TColor from_;
    float incR_;
    float incG_;
    float incB_;
};

void UseColor(TCanvas& c, TColor color) {
    c.Pen().SetColor(color);
    c.Brush().SetColor(color);
}

// One pixel line across the bitmap: column pos when vertical, else row pos.
void CrossLine(TCanvas& c, bool vertical, int32_t pos, int32_t w, int32_t h) {
    if (vertical) {
        c.MoveTo(pos, 0);
        c.LineTo(pos, h);
    } else {
        c.MoveTo(0, pos);
        c.LineTo(w, pos);
    }
}

// Columns (vertical) or rows [first, last) filled in one colour.
void FillBand(TCanvas& c, bool vertical, int32_t first, int32_t last, int32_t w, int32_t h) {
    if (last <= first) return;
    if (vertical)
        c.Rectangle(first, 0, last, h);
    else
        c.Rectangle(0, first, w, last);
}

void LinearRun(TCanvas& c, TColor from, TColor to, bool vertical, int variant, int32_t w,
               int32_t h) {
    const int32_t extent = vertical ? w : h;
    switch (variant) {
        case 1: {
            const TColorRamp ramp(from, to, extent - 1);
            for (int32_t i = 0; i < extent; ++i) {
                UseColor(c, ramp.At(i));
                CrossLine(c, vertical, i, w, h);
            }
            break;
        }
        case 2: {
            const int32_t n = (extent - 1) / 2;
            const TColorRamp ramp(from, to, n);
            for (int32_t i = 0; i <= n; ++i) {
                UseColor(c, ramp.At(i));
                CrossLine(c, vertical, i, w, h);
                CrossLine(c, vertical, extent - 1 - i, w, h);
            }
            break;
        }
        default: {
            // The lead-in third already holds `from`.
            const int32_t start = extent / 3;
            const int32_t count = std::clamp(Round(extent * 0.67), 1, extent - start);
            const TColorRamp ramp(from, to, count - 1);
            for (int32_t i = 0; i < count; ++i) {
                UseColor(c, ramp.At(i));
                CrossLine(c, vertical, start + i, w, h);
            }
            UseColor(c, to);
            FillBand(c, vertical, start + count, extent, w, h);
            break;
        }
    }
}

enum class TShape { Ellipse, Rectangle, Diamond };

// Concentric filled shapes from the inset (x0, y0) in to the centre box, which keeps 3
// or 4 pixels a side where the area has them: a smaller ellipse or diamond would leave
// the centre pixel out.
void ConcentricRun(TCanvas& c, TColor from, TColor to, int32_t colorSteps, TShape shape, int32_t x0,
                   int32_t y0, int32_t w, int32_t h) {
    const int32_t mx = std::max(0, (w - 3) / 2);
    const int32_t my = std::max(0, (h - 3) / 2);
    const int32_t cx = (w - 1) / 2;
    const int32_t cy = (h - 1) / 2;
    const int32_t rings = std::max(mx - x0, my - y0);
    const int32_t n = std::max(1, std::min(colorSteps, rings));
    const TColorRamp ramp(from, to, n);
    for (int32_t i = 0; i <= n; ++i) {
        const int32_t ix = x0 + Round(double(mx - x0) * i / n);
        const int32_t iy = y0 + Round(double(my - y0) * i / n);
        const int32_t r = w - ix;
        const int32_t b = h - iy;
        UseColor(c, ramp.At(i));
        switch (shape) {
            case TShape::Ellipse:
                c.Ellipse(ix, iy, r, b);
                break;
            case TShape::Rectangle:
                c.Rectangle(ix, iy, r, b);
                break;
            case TShape::Diamond: {
                const TPoint pts[] = {{cx, iy}, {r - 1, cy}, {cx, b - 1}, {ix, cy}};
                c.Polygon(pts);
                break;
            }
        }
    }
}

// 45-degree lines, one per diagonal of pixels, from the top-left or top-right corner.
void DiagonalRun(TCanvas& c, TColor from, TColor to, bool fromLeft, int32_t w, int32_t h) {
    const int32_t n = w + h - 2;
    const TColorRamp ramp(from, to, n);
    for (int32_t s = 0; s <= n; ++s) {
        UseColor(c, ramp.At(s));
        if (fromLeft) {
            c.MoveTo(s, 0);
            c.LineTo(-1, s + 1);
        } else {
            c.MoveTo(w - 1 - s, 0);
            c.LineTo(w, s + 1);
        }
    }
}

void DrawStyle(TCanvas& c, TColor from, TColor to, TGradientStyle style, int32_t w, int32_t h) {
    const int32_t steps = std::max({std::abs(GetRValue(to) - GetRValue(from)),
                                    std::abs(GetGValue(to) - GetGValue(from)),
                                    std::abs(GetBValue(to) - GetBValue(from)), 1});
    switch (style) {
        case gsHorizontal1:
            return LinearRun(c, from, to, false, 1, w, h);
        case gsHorizontal2:
            return LinearRun(c, from, to, false, 2, w, h);
        case gsHorizontal3:
            return LinearRun(c, from, to, false, 3, w, h);
        case gsVertical1:
            return LinearRun(c, from, to, true, 1, w, h);
        case gsVertical2:
            return LinearRun(c, from, to, true, 2, w, h);
        case gsVertical3:
            return LinearRun(c, from, to, true, 3, w, h);
        case gsElliptic1:
            return ConcentricRun(c, from, to, steps, TShape::Ellipse, 0, 0, w, h);
        case gsElliptic2: {
            constexpr double kOut = (std::numbers::sqrt2 - 1) / 2;
            return ConcentricRun(c, from, to, steps, TShape::Ellipse, -Round(w * kOut),
                                 -Round(h * kOut), w, h);
        }
        case gsElliptic3: {
            const double d = std::hypot(double(w), double(h));
            return ConcentricRun(c, from, to, steps, TShape::Ellipse, Round((w - d) / 2),
                                 Round((h - d) / 2), w, h);
        }
        case gsRectangle:
            return ConcentricRun(c, from, to, steps, TShape::Rectangle, 0, 0, w, h);
        case gsDiamond1:
            return ConcentricRun(c, from, to, steps, TShape::Diamond, 0, 0, w, h);
        case gsDiamond2:
            return ConcentricRun(c, from, to, steps, TShape::Diamond, -(w / 2), -(h / 2), w, h);
        case gsTopLeft:
            return DiagonalRun(c, from, to, true, w, h);
        case gsTopRight:
            return DiagonalRun(c, from, to, false, w, h);
    }
}

}  // namespace

void KxGradFill(TCanvas& canvas, const TRect& rect, TColor colorFrom, TColor colorTo,
                TGradientStyle style) {
    const int32_t w = WrapSub(rect.Right, rect.Left);
    const int32_t h = WrapSub(rect.Bottom, rect.Top);
    if (w <= 0 || h <= 0) return;
    TBitmap bitmap(w, h);
    if (bitmap.Empty()) return;  // too large to allocate
    TCanvas& c = bitmap.Canvas();
    const TColor from = ColorToRGB(colorFrom);
    const TColor to = ColorToRGB(colorTo);
    c.Pen().SetWidth(1);
    c.Brush().SetStyle(bsSolid);
    // Every style starts from a ground of `from`; equal colours need nothing more.
    UseColor(c, from);
    c.Rectangle(0, 0, w, h);
    if (from != to) DrawStyle(c, from, to, style, w, h);
    canvas.StretchDraw(rect, bitmap);
}

}  // namespace kx
