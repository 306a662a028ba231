#include "framework/analogcontrol.h"

#include <QPointer>
#include <algorithm>

#include <charconv>
#include <cmath>
#include <cstring>

#include "drawing/logvalues.h"
#include "framework/single.h"
#include "host/clock.h"
#include "host/datetimeformat.h"
#include "host/formatsettings.h"
#include "host/numeric.h"

namespace kx {
namespace {

// The stand-in for a non-positive reading when the logarithmic mode is switched on.
constexpr float kLogSwitchValue = 0.001f;
// The stand-in for a non-positive reading when the settings change in logarithmic mode.
constexpr float kLogParamValue = 1.0f;

int32_t saturate(int64_t v) {
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return static_cast<int32_t>(v);
}

float roundToDecade(float v) {
    int32_t exponent = 0;
    return ToSingle(KxRoundLogValue(v, exponent));
}

// Puts text into dst, reusing dst's buffer when it is not shared and large enough.
template <typename Char>
void assignChars(QString& dst, const Char* text, int n) {
    if (dst.size() == n) {
        const QChar* d = dst.constData();
        int i = 0;
        while (i < n && d[i].unicode() == char16_t(text[i]))
            ++i;
        if (i == n) return;
    }
    dst.resize(n);
    QChar* d = dst.data();
    for (int i = 0; i < n; ++i)
        d[i] = QChar(char16_t(text[i]));
}

// Shares src unless dst already does.
void share(QString& dst, const QString& src) {
    if (!dst.isSharedWith(src)) dst = src;
}

// The same string object (data and length): a text set anew is a different one.
bool sameString(const QString& a, const QString& b) {
    return a.constData() == b.constData() && a.size() == b.size();
}

}  // namespace

TKxAnalogGControl::TKxAnalogGControl(QWidget* parent)
    : TKxGraphicControl(parent),
      font_(new TFont(this)),
      signalSettings_(new TSignalSettings(this)),
      sectorSettings_(new TSectorSettings(this)),
      minMax_(new TMinMax(this)) {
    // The control leaves what it does not paint to its parent.
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    font_->SetName(QStringLiteral("Arial"));
    font_->SetSize(8);
    // Both limit flags start set so that the first check reports the actual state.
    upperExceeded_ = true;
    lowerExceeded_ = true;
    LimitCheck();
    left_ = x();
    top_ = y();
}

// --- properties ------------------------------------------------------------------------

void TKxAnalogGControl::SetValue(float v) {
    if (std::isnan(v) || v == value_) return;
    if (logScale_ && v <= 0.0f) return;
    value_ = v;
    digit_ = logScale_ ? logDigit(v) : linearDigit(v);
    if (Designing())
        ParamChange(this);
    else
        ValueChange();
}

void TKxAnalogGControl::SetDigit(int32_t d) {
    if (d == digit_) return;
    digit_ = d;
    const TSignalSettings& s = *signalSettings_;
    const double steps = double(d) - double(s.DigitalFrom());
    if (!logScale_) {
        value_ = ToSingle(double(s.ValueFrom()) + steps * double(s.ValuePerDigit()));
    } else if (logFactor_ - logOffset_ != 0.0) {
        const double v = KxPower(10.0, steps / logFactor_ - logOffset_);
        if (!std::isnan(v)) value_ = ToSingle(v);
    }
    if (Designing())
        ParamChange(this);
    else
        ValueChange();
}

void TKxAnalogGControl::SetLimitUpper(float v) {
    if (std::isnan(v) || v == limitUpper_) return;
    limitUpper_ = v;
    limitUpperPPT_ = signalSettings_->GetPPT(v);
    ValueChange();
}

void TKxAnalogGControl::SetLimitLower(float v) {
    if (std::isnan(v) || v == limitLower_) return;
    limitLower_ = v == 0.0f ? kZeroLimitLower : v;
    limitLowerPPT_ = signalSettings_->GetPPT(limitLower_);
    ValueChange();
}

void TKxAnalogGControl::SetHintOptions(THintOptions s) {
    const THintOptions autoHint = HintOption(hoAutoHint);
    const bool added = !(hintOptions_ & autoHint) && (s & autoHint);
    hintOptions_ = s;
    if (added) ValueChange();
}

void TKxAnalogGControl::SetSectorSettings(const TSectorSettings* v) {
    if (v && v != sectorSettings_) sectorSettings_->Assign(v);
}

void TKxAnalogGControl::SetSignalSettings(const TSignalSettings* v) {
    if (v && v != signalSettings_) signalSettings_->Assign(v);
}

void TKxAnalogGControl::SetMinMax(const TMinMax* v) {
    if (v && v != minMax_) minMax_->Assign(v);
}

void TKxAnalogGControl::SetFont(const TFont* font) {
    if (font && font != font_) font_->Assign(*font);
}

void TKxAnalogGControl::SetLogScale(bool b) {
    logScale_ = b;
    signalSettings_->SetLogScale(b);
    sectorSettings_->SetLogScale(b);
    if (b) {
        if (value_ <= 0.0f) value_ = kLogSwitchValue;
        const float from = signalSettings_->ValueFrom();
        signalSettings_->SetValueFrom(from > 0.0f ? roundToDecade(from) : kLogSwitchValue);
        signalSettings_->SetValueTo(roundToDecade(signalSettings_->ValueTo()));
        calcLog();
        digit_ = logDigit(value_);
    } else {
        digit_ = linearDigit(value_);
    }
    LogScaleChanged();
}

// --- value and digit -------------------------------------------------------------------

int32_t TKxAnalogGControl::linearDigit(float v) const {
    const TSignalSettings& s = *signalSettings_;
    return Round(double(s.DigitalFrom()) +
                 (double(v) - double(s.ValueFrom())) * double(s.DigitPerValue()));
}

int32_t TKxAnalogGControl::logDigit(float v) const {
    const TSignalSettings& s = *signalSettings_;
    const double decades = KxLog10(double(v) * (1.0 / double(s.ValueFrom())));
    return saturate(int64_t(s.DigitalFrom()) + Round64(logFactor_ * decades));
}

void TKxAnalogGControl::calcLog() {
    const TSignalSettings& s = *signalSettings_;
    const double from = s.ValueFrom();
    const double to = s.ValueTo();
    const double total = s.TotalDigit();
    logFactor_ = to == from ? total : total / KxLog10(to / from);
    logOffset_ = KxLog10(1.0 / from);
}

// --- evaluation ------------------------------------------------------------------------

void TKxAnalogGControl::ValueChange() {
    if (x() != left_ || y() != top_) {
        left_ = x();
        top_ = y();
        if (onPositionChange_) onPositionChange_(this);
    }
    updateTexts();
    const TSignalSettings& s = *signalSettings_;
    ppt_ = Round(1000.0 / s.TotalDigit() * (double(digit_) - double(s.DigitalFrom())));
    // Any handler may delete the control (it should use deleteLater, but must not crash us).
    QPointer<TKxAnalogGControl> alive(this);
    if (!evaluateSectors(alive)) return;
    LimitCheck();
    if (!alive) return;
    evaluateRange();
    if (!alive) return;
    trackExtremes(alive);
    if (!alive) return;
    SetHint();
    emit OnValueChange(this);
}

void TKxAnalogGControl::updateTexts() {
    char digits[16];
    const auto res = std::to_chars(digits, digits + sizeof digits, digit_);
    assignChars(digitText_, digits, int(res.ptr - digits));

    const QString& format = signalSettings_->ValueFormat();
    if (pictureFormat_ != format) {
        pictureFormat_ = format;
        picture_ = TFloatPicture(format);
    }
    constexpr int kStack = 256;
    if (picture_.MaxLength() <= kStack) {
        char16_t buf[kStack];
        const int n = picture_.FormatTo(buf, kStack, value_, FormatSettings());
        assignChars(valueText_, buf, n);
    } else {
        valueText_ = picture_.Format(value_, FormatSettings());
    }
}

bool TKxAnalogGControl::evaluateSectors(const QPointer<TKxAnalogGControl>& alive) {
    const TSectorSettings& s = *sectorSettings_;
    const bool in1 = s.Sector1From() <= ppt_ && ppt_ <= s.Sector1To();
    if (in1) sectorColor_ = s.Sector1Color();
    if (in1 != inSector1_) {
        inSector1_ = in1;
        emit OnSectorChange(this, true, false, false, in1);
        if (!alive) return false;
    }
    const bool in2 = s.Sector2From() <= ppt_ && ppt_ <= s.Sector2To();
    if (in2) sectorColor_ = s.Sector2Color();
    if (in2 != inSector2_) {
        inSector2_ = in2;
        emit OnSectorChange(this, false, true, false, in2);
        if (!alive) return false;
    }
    const bool in3 = s.Sector3From() <= ppt_ && ppt_ <= s.Sector3To();
    if (in3) sectorColor_ = s.Sector3Color();
    if (in3 != inSector3_) {
        inSector3_ = in3;
        emit OnSectorChange(this, false, false, true, in3);
        if (!alive) return false;
    }
    return true;
}

void TKxAnalogGControl::LimitCheck() {
    const bool upper = value_ > limitUpper_;
    const bool lower = limitLower_ > value_;
    if (upper == upperExceeded_ && lower == lowerExceeded_) return;
    upperExceeded_ = upper;
    lowerExceeded_ = lower;
    LimitChange();
    emit OnLimit(this, lower, upper);
}

void TKxAnalogGControl::evaluateRange() {
    if (ppt_ < 0) {
        if (!overflowLow_) {
            overflowLow_ = true;
            overflowHigh_ = false;
            OverflowChange(ppt_);
            emit OnOverflow(this, ppt_);
        }
        ppt_ = std::max(ppt_, 0);  // a handler may have re-entered with a new reading
    } else if (ppt_ >= 1001) {
        if (!overflowHigh_) {
            overflowHigh_ = true;
            overflowLow_ = false;
            OverflowChange(ppt_);
            emit OnOverflow(this, ppt_);
        }
        ppt_ = std::min(ppt_, 1000);
    } else if (overflowHigh_ || overflowLow_) {
        overflowHigh_ = false;
        overflowLow_ = false;
        OverflowChange(ppt_);
        emit OnOverflow(this, ppt_);
    }
}

void TKxAnalogGControl::trackExtremes(const QPointer<TKxAnalogGControl>& alive) {
    if (Designing()) {
        maxPPT_ = ppt_;
        minPPT_ = ppt_;
        return;
    }
    if (minMax_->Min() > value_) {
        const float old = minMax_->Min();
        minMax_->SetMinDirect(value_, Now());
        minPPT_ = ppt_;
        if (old != kNoMin) MinMaxChange(this);
        if (!alive) return;
    }
    if (value_ > minMax_->Max()) {
        const float old = minMax_->Max();
        minMax_->SetMaxDirect(value_, Now());
        maxPPT_ = ppt_;
        // Compared with the minimum's sentinel on purpose: the first maximum notifies.
        if (old != kNoMin) MinMaxChange(this);
    }
}

void TKxAnalogGControl::MinMaxChange(QObject*) {
    QPointer<TKxAnalogGControl> alive(this);
    emit OnMinMaxChange(this);
    if (alive) ValueChange();
}

void TKxAnalogGControl::OverflowChange(int32_t) {}

void TKxAnalogGControl::LimitChange() {}

void TKxAnalogGControl::LogScaleChanged() {
    Change();
}

// --- extremes --------------------------------------------------------------------------

void TKxAnalogGControl::SetMin(float v, TDateTime when) {
    if (std::isnan(v) || v == minMax_->Min()) return;
    minMax_->SetMin(v);
    minPPT_ = signalSettings_->GetPPT(v);
    minMax_->SetMinDateTime(when);
    MinMaxChange(this);
    SetHint();
}

void TKxAnalogGControl::SetMax(float v, TDateTime when) {
    if (std::isnan(v) || v == minMax_->Max()) return;
    minMax_->SetMax(v);
    maxPPT_ = signalSettings_->GetPPT(v);
    minMax_->SetMaxDateTime(when);
    MinMaxChange(this);
    SetHint();
}

void TKxAnalogGControl::ResetMinMax() {
    minMax_->SetMin(value_);
    minMax_->SetMax(value_);
    minPPT_ = ppt_;
    maxPPT_ = ppt_;
    MinMaxChange(this);
    SetHint();
    ValueChange();
}

// --- settings --------------------------------------------------------------------------

void TKxAnalogGControl::Loaded() {
    TKxGraphicControl::Loaded();
    const auto handler = [this](QObject* sender) { settingsChanged(sender); };
    font_->SetOnChange(handler);
    signalSettings_->SetOnChange(handler);
    sectorSettings_->SetOnChange(handler);
    minMax_->SetOnChange([this](QObject* sender) { MinMaxChange(sender); });
    // Extremes read with the form are stale; tracking starts afresh.
    minMax_->SetMin(kNoMin);
    minMax_->SetMax(kNoMax);
}

void TKxAnalogGControl::settingsChanged(QObject* sender) {
    if (UpdateCount() == 0) ParamChange(sender);
}

void TKxAnalogGControl::ParamChange(QObject* sender) {
    TKxGraphicControl::ParamChange(sender);
    signalSettings_->CalcDerived();
    if (logScale_) {
        calcLog();
        if (value_ <= 0.0f) value_ = kLogParamValue;
        digit_ = logDigit(value_);
    } else {
        digit_ = linearDigit(value_);
    }
    emit OnSettingsChange(this);
}

void TKxAnalogGControl::Paint() {}

// --- hint ------------------------------------------------------------------------------

void TKxAnalogGControl::SetHint() {
    if (!HasHintOption(hoAutoHint) || Designing()) return;
    THintSnapshot& h = hintInputs_;
    const TSignalSettings& s = *signalSettings_;
    h.options = hintOptions_;
    assignChars(h.valueText, valueText_.utf16(), int(valueText_.size()));
    share(h.unit, s.ValueUnit());
    share(h.format, s.ValueFormat());
    share(h.name1, s.Name1());
    share(h.name2, s.Name2());
    h.min = minMax_->Min();
    h.max = minMax_->Max();
    h.minDateTime = minMax_->MinDateTime();
    h.maxDateTime = minMax_->MaxDateTime();
    QString current = TKxGraphicControl::Hint();
    if (!sameString(current, hintAtMark_)) hintAtMark_ = std::move(current);
    hintActive_ = true;
    hintDirty_ = true;
}

QString TKxAnalogGControl::Hint() const {
    if (hintActive_) {
        if (sameString(TKxGraphicControl::Hint(), hintAtMark_)) {
            if (hintDirty_) {
                autoHint_ = buildHint();
                hintDirty_ = false;
            }
            return autoHint_;
        }
        // Set through the base since the last reading: that text stands.
        hintActive_ = false;
        hintDirty_ = false;
        hintAtMark_ = QString();
    }
    return TKxGraphicControl::Hint();
}

QString TKxAnalogGControl::buildHint() const {
    const THintSnapshot& h = hintInputs_;
    const auto has = [&h](THintOption o) { return (h.options & HintOption(o)) != 0; };
    QString text;
    const auto add = [&text](const QString& part) {
        if (!text.isEmpty()) text += QChar(13);
        text += part;
    };
    const auto extreme = [&](const QString& label, float v, TDateTime when) {
        QString part = label + FormatFloat(h.format, v) + QLatin1Char(' ') + h.unit;
        if (has(hoMinMaxDate)) part += QLatin1Char(' ') + DateToStr(when);
        if (has(hoMinMaxTime)) part += QLatin1Char(' ') + TimeToStr(when);
        return part;
    };
    if (has(hoValue)) add(QStringLiteral("Value= ") + h.valueText + QLatin1Char(' ') + h.unit);
    if (has(hoMin)) add(extreme(QStringLiteral("MIN= "), h.min, h.minDateTime));
    if (has(hoMax)) add(extreme(QStringLiteral("MAX= "), h.max, h.maxDateTime));
    if (has(hoName1)) add(h.name1);
    if (has(hoName2)) add(h.name2);
    return text;
}

}  // namespace kx
