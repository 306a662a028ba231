#include "kx/binary/switchbase.h"

#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"

namespace kx {

bool KxTextOutIfFits(TCanvas& canvas, TPoint p, const QString& text, const TRect& room) {
    if (text.isEmpty()) return false;
    const int32_t w = canvas.TextWidth(text);
    const int32_t h = canvas.TextHeight(text);
    const TRect box{p.X - w / 2, p.Y - h / 2, p.X - w / 2 + w, p.Y - h / 2 + h};
    if (box.Left < room.Left || box.Top < room.Top || box.Right > room.Right ||
        box.Bottom > room.Bottom)
        return false;
    KxTextOut(canvas, p.X, p.Y, text, toMidCenter);
    return true;
}

TKxCustomSwitch::TKxCustomSwitch(QWidget* parent) : TKxBinGControl(parent) {
    setFocusPolicy(Qt::StrongFocus);
    SetMode(mSwitch);
}

void TKxCustomSwitch::SetOrientation(TOrientation o) {
    if (o < orVertical || o > orHorizontal || o == orientation_) return;
    orientation_ = o;
    Invalidate();
}

void TKxCustomSwitch::setColorField(TColor& field, TColorArg c) {
    if (field == TColor(c)) return;
    field = c;
    Invalidate();
}

void TKxCustomSwitch::SetColor(TColorArg c) {
    setColorField(color_, c);
}

void TKxCustomSwitch::SetColorOn(TColorArg c) {
    setColorField(colorOn_, c);
}

void TKxCustomSwitch::SetColorOff(TColorArg c) {
    setColorField(colorOff_, c);
}

void TKxCustomSwitch::SetCaptionOn(const QString& s) {
    if (s == captionOn_) return;
    captionOn_ = s;
    Invalidate();
}

void TKxCustomSwitch::SetCaptionOff(const QString& s) {
    if (s == captionOff_) return;
    captionOff_ = s;
    Invalidate();
}

TColor TKxCustomSwitch::LitColor() const {
    return Checked() && lit_ ? colorOn_ : colorOff_;
}

void TKxCustomSwitch::Paint() {
    painting_ = true;
    TCanvas& c = Canvas();
    TRect r = ClientRect();
    if (hasFocus()) KxDrawFocusFrame(c, r, clBlack);
    r = TRect{r.Left + kFocusMargin, r.Top + kFocusMargin, r.Right - kFocusMargin,
              r.Bottom - kFocusMargin};
    c.SetFont(*Font());
    const QString caption = Caption();
    if (!caption.isEmpty()) {
        const int32_t lines = int32_t(caption.count(QLatin1Char('|'))) + 1;
        const int32_t textHeight = c.TextHeight(QStringLiteral("Ag")) * lines;
        if (r.Bottom - r.Top - textHeight - kFocusMargin >= kMinBodySize) {
            c.Brush().SetStyle(bsClear);
            KxTextOutMultiLine(c, (r.Left + r.Right) / 2, r.Bottom, 0,
                               KxElideLines(c, caption, QLatin1Char('|'), r.Right - r.Left),
                               toBotCenter);
            r.Bottom -= textHeight + kFocusMargin;
        }
    }
    body_ = r;
    background_.SetSize(0, 0);
    if (r.Right - r.Left >= 1 && r.Bottom - r.Top >= 1) {
        PaintStatic(c, body_);
        GetBkUpImage(c, background_, body_);
    }
    painting_ = false;
    drawState();
}

void TKxCustomSwitch::drawState() {
    if (painting_ || UpdateCount() > 0 || background_.Width() < 1 || !(Visible() || Designing()))
        return;
    const TRect whole{0, 0, background_.Width(), background_.Height()};
    TCanvas& w = StartComposition(work_, background_);
    w.SetFont(*Font());
    w.Pen().SetMode(pmCopy);
    w.Pen().SetStyle(psSolid);
    w.Pen().SetWidth(1);
    PaintMoving(w, whole);
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(body_, w, whole);
}

void TKxCustomSwitch::ParamChange(QObject*) {
    Invalidate();
}

void TKxCustomSwitch::StatusChanged() {
    lit_ = true;
    drawState();
}

void TKxCustomSwitch::Flash(bool on) {
    lit_ = on;
    drawState();
}

void TKxCustomSwitch::focusInEvent(QFocusEvent* e) {
    TKxBinGControl::focusInEvent(e);
    Invalidate();
}

void TKxCustomSwitch::focusOutEvent(QFocusEvent* e) {
    TKxBinGControl::focusOutEvent(e);
    Invalidate();
}

}  // namespace kx
