#include "kx/framework/signalsettings.h"

#include <cmath>

#include "kx/drawing/geometry.h"
#include "kx/drawing/logvalues.h"
#include "kx/framework/setfield.h"
#include "kx/framework/single.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

float roundToDecade(float v) {
    int32_t exponent = 0;
    return ToSingle(KxRoundLogValue(v, exponent));
}

int32_t saturate(int64_t v) {
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return static_cast<int32_t>(v);
}

}  // namespace

TSignalSettings::TSignalSettings(QObject* parent)
    : TKxPersistent(parent),
      name1_(QStringLiteral("SignalName1")),
      name2_(QStringLiteral("SignalName2")),
      valueFormat_(QStringLiteral("##0.0")),
      valueUnit_(QStringLiteral("%")) {
    CalcDerived();
}

void TSignalSettings::SetDigitalFrom(int32_t v) {
    if (v == digitalFrom_) return;
    DigitScaleChanged(v, digitalTo_);
    digitalFrom_ = v;
    Change();
}

void TSignalSettings::SetDigitalTo(int32_t v) {
    if (v == digitalTo_) return;
    DigitScaleChanged(digitalFrom_, v);
    digitalTo_ = v;
    Change();
}

void TSignalSettings::SetName1(const QString& v) {
    SetField(*this, name1_, v);
}
void TSignalSettings::SetName2(const QString& v) {
    SetField(*this, name2_, v);
}
void TSignalSettings::SetValueFormat(const QString& v) {
    SetField(*this, valueFormat_, v);
}
void TSignalSettings::SetValueUnit(const QString& v) {
    SetField(*this, valueUnit_, v);
}

void TSignalSettings::SetValueFrom(float v) {
    if (!std::isfinite(v) || v == valueFrom_ || v == valueTo_) return;
    valueFrom_ = v == 0.0f ? kZeroValueFrom : v;
    if (logScale_) SetValueFrom(roundToDecade(valueFrom_));
    Change();
}

void TSignalSettings::SetValueTo(float v) {
    if (!std::isfinite(v) || v == valueTo_ || v == valueFrom_) return;
    valueTo_ = v;
    if (logScale_) SetValueTo(roundToDecade(valueTo_));
    Change();
}

void TSignalSettings::WriteRange(float from, float to) {
    if (std::isfinite(from)) valueFrom_ = from;
    if (std::isfinite(to)) valueTo_ = to;
    CalcDerived();
}

void TSignalSettings::CalcDerived() {
    const double from = valueFrom_;
    const double to = valueTo_;
    const double a = std::fabs(from);
    const double b = std::fabs(to);
    if (from < 0 && to < 0)
        range_ = ToSingle(a - b);
    else if (from < 0 && to >= 0)
        range_ = ToSingle(a + b);
    else if (to > 0)
        range_ = ToSingle(b - a);
    // from >= 0 >= to: no usable span, keep the previous one.

    totalDigit_ = CalcTotalDigit(digitalFrom_, digitalTo_);
    if (totalDigit_ > 0) valuePerDigit_ = ToSingle(double(range_) / totalDigit_);
    if (range_ > 0) {
        digitPerValue_ = ToSingle(totalDigit_ / double(range_));
        pptFactor_ = ToSingle(1000.0 / double(range_));
        longFormat_ = KxGetValueFormat(valueFormat_);
    }
}

void TSignalSettings::Change() {
    CalcDerived();
    TKxPersistent::Change();
}

int32_t TSignalSettings::GetPPT(float v) const {
    return Round((double(v) - double(valueFrom_)) * double(pptFactor_));
}

float TSignalSettings::GetValue(int32_t ppt) const {
    return ToSingle(double(valueFrom_) + double(range_) / 1000.0 * ppt);
}

QString TSignalSettings::SampleValueText() const {
    const QString from = FormatFloat(longFormat_, double(valueFrom_));
    const QString to = FormatFloat(longFormat_, double(valueTo_));
    return from.size() > to.size() ? from : to;
}

QString TSignalSettings::KxGetValueFormat(const QString& format) {
    const qsizetype semi = format.indexOf(QLatin1Char(';'));
    if (semi < 0) return format;
    const qsizetype restLength = format.size() - semi - 1;
    if (semi <= restLength) return format.mid(semi + 1);
    return format.left(semi);
}

void TSignalSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TSignalSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->digitalFrom_ = digitalFrom_;
    d->digitalTo_ = digitalTo_;
    d->name1_ = name1_;
    d->name2_ = name2_;
    d->valueFormat_ = valueFormat_;
    d->valueFrom_ = valueFrom_;
    d->valueTo_ = valueTo_;
    d->valueUnit_ = valueUnit_;
    d->Change();
}

void TSignalSettings::DigitScaleChanged(int32_t, int32_t) {}

// ---------------------------------------------------------------------------------------

void TChSettings::SetValue(float v) {
    if (std::isnan(v) || v == value_) return;
    digit_ =
        Round(double(DigitalFrom()) + (double(v) - double(ValueFrom())) * double(DigitPerValue()));
    value_ = v;
    updateAbsDigit();
    emit OnValueChange(this);
}

void TChSettings::SetDigit(int32_t d) {
    if (d == digit_) return;
    digit_ = d;
    value_ = ToSingle(double(ValueFrom()) +
                      (double(d) - double(DigitalFrom())) * double(ValuePerDigit()));
    updateAbsDigit();
    emit OnValueChange(this);
}

float TChSettings::AbsDigitToValue(int32_t a) const {
    return ToSingle(double(ValueFrom()) + double(a) * double(ValuePerDigit()));
}

void TChSettings::updateAbsDigit() {
    absDigit_ = saturate(int64_t(digit_) - int64_t(DigitalFrom()));
}

void TChSettings::SetColor(TColorArg v) {
    SetField(*this, color_, v);
}
void TChSettings::SetVisible(bool v) {
    SetField(*this, visible_, v);
}
void TChSettings::SetPenWidth(int32_t v) {
    SetField(*this, penWidth_, v);
}

void TChSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TChSettings*>(dest);
    if (!d) return TSignalSettings::AssignTo(dest);
    d->value_ = value_;
    d->digit_ = digit_;
    d->absDigit_ = absDigit_;
    d->color_ = color_;
    d->visible_ = visible_;
    d->penWidth_ = penWidth_;
    TSignalSettings::AssignTo(dest);  // copies the signal fields and notifies once
}

}  // namespace kx
