#include "kx/binary/colbitbtn.h"

#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"

namespace kx {

TKxColBitBtn::TKxColBitBtn(QWidget* parent)
    : TKxBinGControl(parent), bevel_(new TKxBtnBevel(this)) {
    setFocusPolicy(Qt::StrongFocus);
    SetMode(mSwitch);
    SetBounds(x(), y(), 75, 25);
}

void TKxColBitBtn::SetColorOn(TColorArg c) {
    if (colorOn_ == TColor(c)) return;
    colorOn_ = c;
    redraw();
}

void TKxColBitBtn::SetColorOff(TColorArg c) {
    if (colorOff_ == TColor(c)) return;
    colorOff_ = c;
    redraw();
}

void TKxColBitBtn::SetBevelWidth(int32_t w) {
    if (w < 0 || w > kMaxBevelWidth || w == bevel_->Width()) return;
    bevel_->SetWidth(w);
    Invalidate();
}

TColor TKxColBitBtn::FaceColor() const {
    return Checked() && lit_ ? colorOn_ : colorOff_;
}

void TKxColBitBtn::drawButton() {
    TCanvas& c = Canvas();
    TRect r = ClientRect();
    const bool down = Checked();
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    bevel_->PaintBevel(c, r, !down, false, FaceColor());
    face_ = r;
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(FaceColor());
    c.FillRect(r);
    c.SetClipRegion(
        QRegion(r.Left, r.Top, std::max(0, r.Right - r.Left), std::max(0, r.Bottom - r.Top)));
    c.SetFont(*Font());
    c.Brush().SetStyle(bsClear);
    const int32_t shift = down ? 1 : 0;
    KxTextOutMultiLine(c, (r.Left + r.Right) / 2 + shift, (r.Top + r.Bottom) / 2 + shift, 0,
                       KxElideLines(c, Caption(), QLatin1Char('|'), r.Right - r.Left - 2),
                       toMidCenter);
    c.ClearClipRegion();
    if (hasFocus())
        KxDrawFocusFrame(c, TRect{r.Left + 1, r.Top + 1, r.Right - 1, r.Bottom - 1}, clBlack);
}

void TKxColBitBtn::Paint() {
    painting_ = true;
    drawButton();
    painting_ = false;
}

void TKxColBitBtn::redraw() {
    if (painting_ || UpdateCount() > 0 || !(Visible() || Designing())) return;
    drawButton();
}

void TKxColBitBtn::ParamChange(QObject*) {
    Invalidate();
}

void TKxColBitBtn::StatusChanged() {
    lit_ = true;
    redraw();
}

void TKxColBitBtn::Flash(bool on) {
    lit_ = on;
    redraw();
}

void TKxColBitBtn::focusInEvent(QFocusEvent* e) {
    TKxBinGControl::focusInEvent(e);
    redraw();
}

void TKxColBitBtn::focusOutEvent(QFocusEvent* e) {
    TKxBinGControl::focusOutEvent(e);
    redraw();
}

}  // namespace kx
