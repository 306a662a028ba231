#include "kx/indicators/bar.h"

#include <QPointer>
#include <algorithm>

#include "kx/host/numeric.h"

namespace kx {

void KxPaintBarReading(TKxAnalogGControl& control, TBarSettings& bar, TCanvas& canvas) {
    bar.ValueText = control.ValueText();
    const bool inSector = control.InSector1() || control.InSector2() || control.InSector3();
    bar.BarColor = bar.HasOption(TBarSettings::opUseSectorCol) && inSector ? control.SectorColor()
                                                                           : bar.Color();
    bar.SectorSettings->Assign(control.SectorSettings());
    bar.PaintBar(canvas, control.PPT());
}

TKxBar::TKxBar(QWidget* parent)
    : TKxAnalogGControl(parent),
      barSettings_(new TBarSettings(this)),
      bevelOuter_(new TKxSBevel(this)) {
    BeginUpdate();
    bevelOuter_->SetSpacing(5);
    bevelOuter_->SetWidth(2);
    barSettings_->SetminWidth(25);
    barSettings_->SetminHeight(12);
    barSettings_->SetOptions(TBarSettings::BarOption(TBarSettings::opValue) |
                             TBarSettings::BarOption(TBarSettings::opUnit));
    barSettings_->SetBkBrightness(40.0f);
    SetBounds(x(), y(), 164, 28);
}

void TKxBar::Loaded() {
    auto repaint = [this](QObject*) { requestRepaint(); };
    barSettings_->SetOnChange([this](QObject* sender) { VChange(sender); });
    bevelOuter_->SetOnChange(repaint);
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxBar::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxBar::SetBarSettings(const TBarSettings* v) {
    if (v && v != barSettings_) barSettings_->Assign(v);
}

void TKxBar::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxBar::VChange(QObject*) {
    requestRepaint();
}

void TKxBar::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    barSettings_->BidirOrigin = SignalSettings()->GetPPT(0.0f);
    requestRepaint();
}

int32_t TKxBar::MinimumWidth() const {
    return Saturate(2 * int64_t(bevelOuter_->TotalWidth()) + barSettings_->minWidth());
}

int32_t TKxBar::MinimumHeight() const {
    return Saturate(2 * (int64_t(barSettings_->Bevel()->TotalWidth()) + bevelOuter_->TotalWidth()) +
                    barSettings_->minHeight());
}

void TKxBar::Paint() {
    if (UpdateCount() > 0) return;
    barSettings_->UnitText = SignalSettings()->ValueUnit();
    GrowToAtLeast(MinimumWidth(), MinimumHeight());
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    bevelOuter_->PaintFilledBevel(c, r);
    barSettings_->Bevel()->PaintFilledBevel(c, r);
    barSettings_->BarRect = r;
    ValueChange();
}

void TKxBar::ValueChange() {
    QPointer<TKxBar> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive || !Visible() || UpdateCount() > 0) return;
    KxPaintBarReading(*this, *barSettings_, Canvas());
}

}  // namespace kx
