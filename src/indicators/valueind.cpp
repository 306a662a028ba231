#include "kx/indicators/valueind.h"

#include <QPointer>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int64_t kDigitBlinkCode = 4;

}  // namespace

TKxValueInd::TKxValueInd(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      bevelValue_(new TKxSBevel(this)),
      fontValue_(new TFont(this)),
      fontUnit_(new TFont(this)) {
    BeginUpdate();
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    bevelValue_->SetStyle(bsLowered);
    bevelValue_->SetSpacing(0);
    bevelValue_->SetColor(clBlack);
    fontValue_->SetName(QStringLiteral("Arial"));
    fontValue_->SetSize(18);
    fontValue_->SetStyle(fsBold);
    fontValue_->SetColor(clLime);
    fontUnit_->SetName(QStringLiteral("Arial"));
    fontUnit_->SetSize(10);
    fontUnit_->SetColor(clBlack);
    SetBounds(x(), y(), 160, 96);
}

TKxValueInd::~TKxValueInd() {
    DelControl(this);
}

void TKxValueInd::Loaded() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    bevelValue_->SetOnChange(handler);
    fontValue_->SetOnChange(handler);
    fontUnit_->SetOnChange(handler);
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxValueInd::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxValueInd::SetKxAutoSize(bool v) {
    autoSize_ = v;
    setSizePolicy(v ? QSizePolicy::Fixed : QSizePolicy::Preferred,
                  v ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    requestRepaint();
}

void TKxValueInd::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxValueInd::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxValueInd::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}
void TKxValueInd::SetFontValue(const TFont* v) {
    if (v && v != fontValue_) fontValue_->Assign(*v);
    requestRepaint();
}
void TKxValueInd::SetFontUnit(const TFont* v) {
    if (v && v != fontUnit_) fontUnit_->Assign(*v);
    requestRepaint();
}

void TKxValueInd::SetOptions(TValueIndOptions v) {
    options_ = v;
    // Clearing the option that made the digits blink stops the blinking at once.
    flash();
    requestRepaint();
}

void TKxValueInd::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxValueInd::CalcSize() {
    TCanvas& c = Canvas();
    const TSignalSettings& sig = *SignalSettings();
    names_ = MeasureNames(c);
    c.SetFont(*fontValue_);
    const QString sample = sig.SampleValueText();
    valueW_ = c.TextWidth(sample);
    valueH_ = c.TextHeight(sample);
    c.SetFont(*fontUnit_);
    const bool unit = HasOption(opUnit) && !sig.ValueUnit().isEmpty();
    unitW_ = unit ? c.TextWidth(sig.ValueUnit()) : 0;
    unitH_ = unit ? c.TextHeight(sig.ValueUnit()) : 0;

    const int64_t outer = HasOption(opBevelOuter) ? 2 * int64_t(bevelOuter_->TotalWidth()) : 0;
    const int64_t inner = HasOption(opBevelInner) ? 2 * int64_t(bevelInner_->TotalWidth()) : 0;
    const int64_t vb = 2 * int64_t(bevelValue_->TotalWidth()), e = valueH_ / 6;
    int64_t w = outer + inner + valueW_ + 2 * e + vb + (unit ? e + unitW_ : 0);
    int64_t h = outer + inner + std::max<int64_t>(valueH_ + vb, unitH_);
    if (HasOption(opName1)) {
        h += names_.Name1H;
        w = std::max(w, outer + names_.Name1W);
    }
    if (HasOption(opName2)) {
        h += names_.Name2H;
        w = std::max(w, outer + names_.Name2W);
    }
    required_ = QSize(Saturate(w), Saturate(h));
    if (autoSize_) SetAutoSize(required_.width(), required_.height());
}

void TKxValueInd::Paint() {
    if (UpdateCount() > 0) return;
    CalcSize();
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), names_);
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    area_ = r;
    box_ = number_ = unit_ = TRect{};
    background_.SetSize(0, 0);
    tooSmall_ = r.Width() < 2 || r.Height() < 2;
    if (tooSmall_) {
        flash();
        return;
    }

    // The block (box, gap, unit) centred in the area; cut to it when larger.
    const int32_t vb = bevelValue_->TotalWidth(), e = Div(valueH_, 6);
    const int64_t boxW = int64_t(valueW_) + 2 * e + 2 * int64_t(vb);
    const int64_t boxH = int64_t(valueH_) + 2 * int64_t(vb);
    const int64_t blockW = boxW + (unitW_ > 0 ? e + int64_t(unitW_) : 0);
    const int64_t left = r.Left + std::max<int64_t>(0, (r.Width() - blockW) / 2);
    const int64_t top = r.Top + std::max<int64_t>(0, (r.Height() - boxH) / 2);
    TRect frame{Saturate(left), Saturate(top), Saturate(left + boxW), Saturate(top + boxH)};
    KxRectIntersection(frame, r, box_);
    TRect inside = box_;
    bevelValue_->PaintFilledBevel(c, inside);
    // The number keeps e from the frame on both sides; the field may be cut by the area.
    TRect field =
        TRect{WrapAdd(inside.Left, e), inside.Top, WrapSub(inside.Right, e), inside.Bottom};
    if (field.Right <= field.Left || field.Bottom <= field.Top) field = inside;
    if (field.Right > field.Left && field.Bottom > field.Top) number_ = field;

    if (unitW_ > 0) {
        const int64_t ux = int64_t(frame.Right) + e;
        const int64_t uy = int64_t(frame.Bottom) - vb - unitH_;
        unit_ = TRect{Saturate(ux), Saturate(uy), Saturate(ux + unitW_), Saturate(uy + unitH_)};
        if (unit_.Left < r.Right) {
            c.SetFont(*fontUnit_);
            c.Brush().SetStyle(bsClear);
            // A unit that does not fit is shortened rather than drawn over the bevels.
            const QString unit = KxElideLines(c, SignalSettings()->ValueUnit(), QChar(0),
                                              WrapSub(r.Right, unit_.Left));
            KxTextOut(c, unit_.Left, unit_.Top, unit, toTopLeft);
        }
    }
    if (number_.Width() > 0) GetBkUpImage(c, background_, number_);
    flash();  // a readout that was too small may have missed its overflow
    ValueChange();
}

TColor TKxValueInd::normalColor() const {
    if (HasOption(opSectorColor)) {
        const TSectorSettings& s = *SectorSettings();
        if (InSector1()) return s.Sector1Color();
        if (InSector2()) return s.Sector2Color();
        if (InSector3()) return s.Sector3Color();
    }
    return fontValue_->Color();
}

void TKxValueInd::DrawNumber(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 1 || background_.Height() < 1) return;
    TCanvas& w = StartComposition(work_, background_);
    digitColor_ = blinking_ ? blinkColor_ : normalColor();
    TFont font;
    font.Assign(*fontValue_);
    font.SetColor(digitColor_);
    w.SetFont(font);
    w.Brush().SetStyle(bsClear);
    const int32_t room = background_.Width();
    const QString text = Designing() ? SignalSettings()->SampleValueText() : ValueText();
    QString shown = text;
    if (w.TextWidth(text) > room) {
        const int32_t hash = std::max(1, w.TextWidth(QStringLiteral("#")));
        shown = QString(std::max(1, room / hash), QLatin1Char('#'));
    }
    KxTextOut(w, room, 0, shown, toTopRight);
    canvas.SetCopyMode(cmSrcCopy);
    canvas.Draw(number_.Left, number_.Top, work_);
}

void TKxValueInd::ValueChange() {
    ++drawing_;
    // An event handler may delete the readout; then there is nothing left to draw.
    QPointer<TKxValueInd> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (shown() && UpdateCount() == 0) DrawNumber(Canvas());
    --drawing_;
}

void TKxValueInd::OverflowChange(int32_t) {
    flash();
}

void TKxValueInd::LimitChange() {
    flash();
}

void TKxValueInd::flash() {
    const bool overflow = HasOption(opOverflow) && (OverflowHigh() || OverflowLow());
    const bool limit = HasOption(opLimit) && (UpperExceeded() || LowerExceeded());
    if ((overflow || limit) && !tooSmall_ && !Designing()) {
        AddControl(this, kDigitBlinkCode);
        blinking_ = true;
        return;
    }
    const bool was = blinking_;
    blinking_ = false;
    DelControl(this);
    // The digits take their own colour at once.
    if (was && Visible() && drawing_ == 0 && UpdateCount() == 0) DrawNumber(Canvas());
}

void TKxValueInd::WMFlash(TMessage& message) {
    if (!blinking_ || !Visible() || drawing_ > 0 || UpdateCount() > 0) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    DrawNumber(Canvas());
}

}  // namespace kx
