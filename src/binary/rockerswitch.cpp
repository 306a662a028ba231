#include "kx/binary/rockerswitch.h"

#include <utility>

#include "kx/drawing/colors.h"
#include "kx/drawing/shapes.h"

namespace kx {

namespace {

constexpr int32_t kBezel = 2;
constexpr float kPressedBrightness = 80.0f;

TRect inset(const TRect& r, int32_t d) {
    return TRect{r.Left + d, r.Top + d, r.Right - d, r.Bottom - d};
}

}  // namespace

TKxRockerSwitch::TKxRockerSwitch(QWidget* parent) : TKxCustomSwitch(parent) {
    SetCaptionOn(QStringLiteral("I"));
    SetCaptionOff(QStringLiteral("O"));
    SetBounds(x(), y(), 41, 65);
}

std::pair<TRect, TRect> TKxRockerSwitch::Halves(const TRect& body, bool vertical) {
    const TRect r = inset(body, kBezel);
    if (vertical) {
        const int32_t mid = r.Top + (r.Bottom - r.Top + 1) / 2;
        return {TRect{r.Left, r.Top, r.Right, mid}, TRect{r.Left, mid, r.Right, r.Bottom}};
    }
    const int32_t mid = r.Right - (r.Right - r.Left + 1) / 2;
    return {TRect{mid, r.Top, r.Right, r.Bottom}, TRect{r.Left, r.Top, mid, r.Bottom}};
}

void TKxRockerSwitch::PaintStatic(TCanvas& canvas, const TRect& body) {
    // The frame covers the rectangle's outline, so the pen's colour does not show.
    TRect r = body;
    KxBtnBevel(canvas, r, false, true, Color());
}

void TKxRockerSwitch::PaintMoving(TCanvas& canvas, const TRect& body) {
    const auto [onHalf, offHalf] = Halves(body, Vertical());
    const auto half = [&canvas](TRect r, bool pressed, TColor face, const QString& legend) {
        if (r.Right - r.Left < 1 || r.Bottom - r.Top < 1) return;
        const TColor fill = pressed ? KxSetBrightness(ColorToRGB(face), kPressedBrightness) : face;
        KxBtnBevel(canvas, r, !pressed, true, fill);
        canvas.Brush().SetStyle(bsClear);
        const int32_t shift = pressed ? 1 : 0;
        KxTextOutIfFits(canvas,
                        TPoint{(r.Left + r.Right) / 2 + shift, (r.Top + r.Bottom) / 2 + shift},
                        legend, r);
        canvas.Brush().SetStyle(bsSolid);
    };
    half(onHalf, Checked(), LitColor(), CaptionOn());
    half(offHalf, !Checked(), Color(), CaptionOff());
}

}  // namespace kx
