#include "kx/framework/names.h"

#include "kx/host/numeric.h"

namespace kx {

TNameSizes KxMeasureNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal) {
    canvas.SetFont(font);
    return TNameSizes{canvas.TextWidth(signal.Name1()), canvas.TextHeight(signal.Name1()),
                      canvas.TextWidth(signal.Name2()), canvas.TextHeight(signal.Name2())};
}

void KxPaintNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal, TRect& r,
                  int32_t t, bool name1, bool name2, const TNameSizes& sizes) {
    canvas.Brush().SetStyle(bsClear);
    canvas.SetFont(font);
    if (name2) {
        r.Bottom -= sizes.Name2H;
        canvas.TextOut(r.Left + Div(r.Width() - sizes.Name2W, 2), r.Bottom + t, signal.Name2());
    }
    if (name1) {
        r.Bottom -= sizes.Name1H;
        canvas.TextOut(r.Left + Div(r.Width() - sizes.Name1W, 2), r.Bottom + t, signal.Name1());
    }
}

}  // namespace kx
