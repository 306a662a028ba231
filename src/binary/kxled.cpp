#include "kx/binary/kxled.h"

#include <algorithm>

#include "kx/drawing/shapes.h"
#include "kx/host/numeric.h"

namespace kx {

TKxLED::TKxLED(QWidget* parent) : TKxBinGControl(parent), led_(new TLED(this)) {
    led_->SetOnChange([this](QObject* sender) { ParamChange(sender); });
    SetBounds(x(), y(), 73, 33);
}

TKxLED::~TKxLED() {
    DelControl(this);
}

void TKxLED::SetLED(const TLED* v) {
    if (v && v != led_) led_->Assign(v);
}

void TKxLED::SetLED_Position(TLEDPos p) {
    if (p < lpLeft || p > lpBottom || p == position_) return;
    position_ = p;
    Invalidate();
}

void TKxLED::SetSpacing(int32_t s) {
    if (s == spacing_) return;
    spacing_ = s;
    Invalidate();
}

TKxLED::TLayout TKxLED::Layout() const {
    int32_t w = led_->Width();
    int32_t h = led_->Height();
    if (led_->Shape() == sRound) w = h = std::max(w, h);
    const int32_t cx = width() / 2;
    const int32_t cy = height() / 2;
    TLayout l{};
    switch (position_) {
        case lpLeft:
            l.Lamp = {0, cy - h / 2, w, cy - h / 2 + h};
            l.CaptionAt = {Saturate(int64_t(l.Lamp.Right) + spacing_), cy};
            l.CaptionPos = toMidLeft;
            break;
        case lpRight:
            l.Lamp = {width() - w, cy - h / 2, width(), cy - h / 2 + h};
            l.CaptionAt = {Saturate(int64_t(l.Lamp.Left) - spacing_), cy};
            l.CaptionPos = toMidRight;
            break;
        case lpTop:
            l.Lamp = {cx - w / 2, 0, cx - w / 2 + w, h};
            l.CaptionAt = {cx, Saturate(int64_t(l.Lamp.Bottom) + spacing_)};
            l.CaptionPos = toTopCenter;
            break;
        case lpBottom:
            l.Lamp = {cx - w / 2, height() - h, cx - w / 2 + w, height()};
            l.CaptionAt = {cx, Saturate(int64_t(l.Lamp.Top) - spacing_)};
            l.CaptionPos = toBotCenter;
            break;
    }
    return l;
}

void TKxLED::Paint() {
    if (painting_) return;
    painting_ = true;
    TCanvas& c = Canvas();
    c.SetFont(*Font());
    const QString caption = Caption();
    KxGetMaxTokenSize2(c, captionWidth_, captionHeight_, caption, QLatin1Char('|'));
    captionHeight_ *= int32_t(caption.count(QLatin1Char('|'))) + 1;
    const TLayout l = Layout();
    led_->Rect = l.Lamp;
    c.Brush().SetStyle(bsClear);
    const int32_t room = position_ == lpLeft    ? Saturate(int64_t(width()) - l.CaptionAt.X)
                         : position_ == lpRight ? l.CaptionAt.X
                                                : width();
    KxTextOutMultiLine(c, l.CaptionAt.X, l.CaptionAt.Y, 0,
                       KxElideLines(c, caption, QLatin1Char('|'), room), l.CaptionPos);
    c.Brush().SetStyle(bsSolid);
    cacheLamps(c);
    painting_ = false;
    drawLamp(Checked());
}

TRect TKxLED::lampArea() const {
    // The parallelogram outlines reach one pixel beyond the lamp's right and bottom edges.
    const TRect& r = led_->Rect;
    return TRect{r.Left, r.Top, r.Right + 1, r.Bottom + 1};
}

void TKxLED::cacheLamps(TCanvas& canvas) {
    const TRect r = lampArea();
    TBitmap under;
    GetBkUpImage(canvas, under, r);
    lampOn_.SetSize(0, 0);
    lampOff_.SetSize(0, 0);
    if (under.Width() < 1 || under.Height() < 1) return;  // the lamp lies off the control
    const TRect whole{0, 0, under.Width(), under.Height()};
    for (TBitmap* b : {&lampOn_, &lampOff_}) {
        MakeCompatibleBitmap(*b, whole.Right, whole.Bottom, under.GridOrigin());
        b->Canvas().SetCopyMode(cmSrcCopy);
        b->Canvas().CopyRect(whole, under.Canvas(), whole);
        led_->DrawIn(b->Canvas(), TRect{0, 0, whole.Right - 1, whole.Bottom - 1}, b == &lampOn_);
    }
}

void TKxLED::ParamChange(QObject*) {
    Invalidate();
}

void TKxLED::drawLamp(bool on) {
    if (painting_ || UpdateCount() > 0 || !(Visible() || Designing())) return;
    TBitmap& picture = on ? lampOn_ : lampOff_;
    if (picture.Width() < 1) return;
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(lampArea(), picture.Canvas(), TRect{0, 0, picture.Width(), picture.Height()});
}

void TKxLED::StatusChanged() {
    drawLamp(Checked());
}

void TKxLED::Flash(bool on) {
    drawLamp(on);
}

}  // namespace kx
