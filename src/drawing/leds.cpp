#include "kx/drawing/leds.h"

#include "kx/host/numeric.h"

namespace kx {

void KxDrawLED(TCanvas& canvas, const TRect& r, TLEDShape shape, TColor outline, TColor fill) {
    const int32_t l = r.Left;
    const int32_t t = r.Top;
    const int32_t rt = r.Right;
    const int32_t b = r.Bottom;
    const int32_t width = WrapSub(rt, l);
    const int32_t hw = Div(width, 2);
    const int32_t hh = Div(WrapSub(b, t), 2);
    const int32_t cx = WrapAdd(l, hw);
    const int32_t cy = WrapAdd(t, hh);
    const int32_t r1 = WrapSub(rt, 1);
    const int32_t b1 = WrapSub(b, 1);
    canvas.Pen().SetColor(outline);
    canvas.Pen().SetWidth(1);
    canvas.Brush().SetColor(fill);

    auto polygon = [&canvas](std::initializer_list<TPoint> pts) {
        canvas.Polygon(std::span<const TPoint>(pts.begin(), pts.size()));
    };
    switch (shape) {
        case sRound: {
            canvas.Ellipse(l, t, rt, b);
            // The reflex: a thick highlight arc over the upper-left quarter; the radials
            // come from the unshrunk rectangle.
            const int32_t inset = Div(width, 5);
            canvas.Pen().SetColor(clBtnHighlight);
            canvas.Pen().SetWidth(Div(width, 8));
            canvas.Arc(WrapAdd(l, inset), WrapAdd(t, inset), WrapSub(rt, inset), WrapSub(b, inset),
                       cx, t, l, cy);
            break;
        }
        case sArrowLeft:
            polygon({{l, cy}, {r1, t}, {r1, b1}});
            break;
        case sArrowRight:
            polygon({{l, t}, {r1, cy}, {l, b1}});
            break;
        case sArrowUp:
            polygon({{cx, t}, {r1, b1}, {l, b1}});
            break;
        case sArrowDown:
            polygon({{l, t}, {r1, t}, {cx, b1}});
            break;
        case sRectangle:
            canvas.RoundRect(l, t, rt, b, 1, 1);
            break;
        case sDiamondLeft:
            polygon({{l, t}, {cx, t}, {rt, b}, {cx, b}});
            break;
        case sDiamondRight:
            polygon({{cx, t}, {rt, t}, {cx, b}, {l, b}});
            break;
    }
}

}  // namespace kx
