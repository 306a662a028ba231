#include "kx/framework/valuebox.h"

#include "kx/host/numeric.h"

namespace kx {

TKxValueBox KxPaintValueBox(TCanvas& canvas, const TRect& r, const TKxSBevel& bevel,
                            const TFont& font, TColor textColor, const QString& unit,
                            int32_t valueW, int32_t unitW, int32_t valueH, int32_t e) {
    const int64_t vb = bevel.TotalWidth();
    const int64_t left =
        int64_t(r.Left) + Div(Saturate(int64_t(r.Width()) - valueW - unitW - e), 2) - e;
    TKxValueBox out;
    out.Frame = TRect{Saturate(left), r.Top, Saturate(left + valueW + 2 * vb + 2 * int64_t(e)),
                      Saturate(int64_t(r.Top) + valueH + 2 * vb)};
    TRect inside = out.Frame;
    bevel.PaintFilledBevel(canvas, inside);
    canvas.SetFont(font);
    canvas.Font().SetColor(textColor);
    canvas.Brush().SetStyle(bsClear);
    if (!unit.isEmpty()) canvas.TextOut(Saturate(int64_t(inside.Right) + e), inside.Top, unit);
    out.Number = TRect{Saturate(int64_t(inside.Left) + e), inside.Top,
                       Saturate(int64_t(inside.Right) - e), inside.Bottom};
    return out;
}

}  // namespace kx
