#include "kx/framework/names.h"

#include <algorithm>

#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

TNameSizes KxMeasureNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal) {
    canvas.SetFont(font);
    return TNameSizes{canvas.TextWidth(signal.Name1()), canvas.TextHeight(signal.Name1()),
                      canvas.TextWidth(signal.Name2()), canvas.TextHeight(signal.Name2())};
}

namespace {

// A name wider than r is cut to fit, with "…", so it never leaves the instrument.
// In 64 bits and saturated: absurd bevel spacings leave r anywhere in the int32 range.
int32_t centred(const TRect& r, int32_t width) {
    return Saturate(int64_t(r.Left) + (int64_t(r.Width()) - width) / 2);
}

void paintName(TCanvas& canvas, const TRect& r, int32_t y, const QString& name, int32_t width) {
    if (width <= r.Width()) {
        canvas.TextOut(centred(r, width), y, name);
        return;
    }
    const QString cut = KxElideLines(canvas, name, QChar(u'\0'), std::max(0, r.Width()));
    canvas.TextOut(centred(r, canvas.TextWidth(cut)), y, cut);
}

}  // namespace

void KxPaintNames(TCanvas& canvas, const TFont& font, const TSignalSettings& signal, TRect& r,
                  int32_t t, bool name1, bool name2, const TNameSizes& sizes) {
    canvas.Brush().SetStyle(bsClear);
    canvas.SetFont(font);
    if (name2) {
        r.Bottom = Saturate(int64_t(r.Bottom) - sizes.Name2H);
        paintName(canvas, r, Saturate(int64_t(r.Bottom) + t), signal.Name2(), sizes.Name2W);
    }
    if (name1) {
        r.Bottom = Saturate(int64_t(r.Bottom) - sizes.Name1H);
        paintName(canvas, r, Saturate(int64_t(r.Bottom) + t), signal.Name1(), sizes.Name1W);
    }
}

}  // namespace kx
