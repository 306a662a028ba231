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

TKxValueBoxSize KxMeasureValueBox(TCanvas& canvas, const TFont& fontValue, const QString& sample,
                                  const TFont& unitFont, const QString& unit,
                                  const TKxSBevel& bevel) {
    TKxValueBoxSize b;
    canvas.SetFont(fontValue);
    b.W = canvas.TextWidth(sample);
    b.H = canvas.TextHeight(sample);
    b.M = b.H / 3;
    if (!unit.isEmpty()) {
        b.Unit = unit;
        canvas.SetFont(unitFont);
        b.U = canvas.TextWidth(unit);
    }
    const int64_t t = bevel.TotalWidth();
    b.BoxW = Saturate(int64_t(b.W) + 2 * t + 2 * int64_t(b.M));
    b.BoxH = Saturate(int64_t(b.H) + 2 * t);
    return b;
}

TRect KxPaintFittedValueBox(TCanvas& canvas, const TRect& r, const TKxValueBoxSize& b,
                            const TKxSBevel& bevel, const TFont& unitFont) {
    const bool unit = int64_t(b.BoxW) + b.M + b.U <= r.Width();
    return KxPaintValueBox(canvas, r, bevel, unitFont, unitFont.Color(), unit ? b.Unit : QString(),
                           b.W, unit ? b.U : 0, b.H, b.M)
        .Number;
}

}  // namespace kx
