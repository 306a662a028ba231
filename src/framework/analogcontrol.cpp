#include "kx/framework/analogcontrol.h"

#include <QMetaMethod>
#include <QPointer>
#include <QStringBuilder>
#include <algorithm>

#include <charconv>
#include <cmath>
#include <cstring>

#include "kx/drawing/logvalues.h"
#include "kx/framework/accessible.h"
#include "kx/framework/single.h"
#include "kx/host/clock.h"
#include "kx/host/datetimeformat.h"
#include "kx/host/formatsettings.h"
#include "kx/host/numeric.h"

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

}  // namespace

TKxAnalogGControl::TKxAnalogGControl(QWidget* parent)
    : TKxGraphicControl(parent),
      font_(new TFont(this)),
      signalSettings_(new TSignalSettings(this)),
      sectorSettings_(new TSectorSettings(this)),
      minMax_(new TMinMax(this)),
      hintCache_(std::make_unique<THintCache>()) {
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
    if (std::isnan(v)) return;
    v = NormalizeReading(v);
    if (std::isnan(v) || v == value_) return;
    if (logScale_ && v <= 0.0f) return;
    value_ = v;
    digit_ = logScale_ ? logDigit(v) : linearDigit(v);
    applyReading();
}

void TKxAnalogGControl::applyReading() {
    // The pointer costs a little per reading, so only when someone listens.
    static const QMetaMethod signal = QMetaMethod::fromSignal(&TKxAnalogGControl::valueChanged);
    QPointer<TKxAnalogGControl> alive;
    if (isSignalConnected(signal)) alive = this;
    if (Designing())
        ParamChange(this);
    else
        ValueChange();
    if (alive) emit valueChanged(value_);
}

void TKxAnalogGControl::PostValue(double v) {
    posted_.store(v);
    if (postPending_.exchange(true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            // Cleared before reading the value: a reading stored after this point
            // queues a call of its own.
            postPending_.store(false);
            setValue(posted_.load());
        },
        Qt::QueuedConnection);
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
    const float n = NormalizeReading(value_);
    if (!std::isnan(n) && n != value_) {
        value_ = n;
        digit_ = logScale_ ? logDigit(n) : linearDigit(n);
    }
    applyReading();
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
    const float oldValue = value_;
    const int32_t oldDigit = digit_;
    logScale_ = b;
    signalSettings_->SetLogScale(b);
    sectorSettings_->SetLogScale(b);
    if (b) {
        if (value_ <= 0.0f) value_ = kLogSwitchValue;
        // Assigned directly: both bounds may land on the same decade, which the setters
        // would refuse, and the owner notifies once below.
        const float from = signalSettings_->ValueFrom();
        signalSettings_->WriteRange(from > 0.0f ? roundToDecade(from) : kLogSwitchValue,
                                    roundToDecade(signalSettings_->ValueTo()));
        calcLog();
        digit_ = logDigit(value_);
    } else {
        digit_ = linearDigit(value_);
    }
    const bool moved = value_ != oldValue || digit_ != oldDigit;
    QPointer<TKxAnalogGControl> alive(this);
    LogScaleChanged();
    if (moved && alive) emit valueChanged(value_);
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
    // Round64 saturates at the int64 limits; the bound keeps the sum from overflowing.
    constexpr int64_t kBound = int64_t(1) << 40;
    return saturate(int64_t(s.DigitalFrom()) +
                    std::clamp(Round64(logFactor_ * decades), -kBound, kBound));
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
    evaluateRange(alive);
    if (!alive) return;
    trackExtremes(alive);
    if (!alive) return;
    SetHint();
    KxAccessibleValueChanged(this, value_);
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
    KxAccessibleDescriptionChanged(this);
    LimitChange();
    emit OnLimit(this, lower, upper);
}

void TKxAnalogGControl::evaluateRange(const QPointer<TKxAnalogGControl>& alive) {
    if (ppt_ < 0) {
        if (!overflowLow_) {
            overflowLow_ = true;
            overflowHigh_ = false;
            KxAccessibleDescriptionChanged(this);
            OverflowChange(ppt_);
            emit OnOverflow(this, ppt_);
            if (!alive) return;
        }
        ppt_ = std::max(ppt_, 0);  // a handler may have re-entered with a new reading
    } else if (ppt_ >= 1001) {
        if (!overflowHigh_) {
            overflowHigh_ = true;
            overflowLow_ = false;
            KxAccessibleDescriptionChanged(this);
            OverflowChange(ppt_);
            emit OnOverflow(this, ppt_);
            if (!alive) return;
        }
        ppt_ = std::min(ppt_, 1000);
    } else if (overflowHigh_ || overflowLow_) {
        overflowHigh_ = false;
        overflowLow_ = false;
        KxAccessibleDescriptionChanged(this);
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

// Every reading makes the hint anew, but only its value part changes with most readings.
// The extremes' parts and the text after the value part (the tail) are kept with what
// they were made from and made again only when that differs; the result is always the
// text that formatting everything at the reading would give.
struct TKxAnalogGControl::THintCache {
    struct TExtreme {
        bool valid = false;
        float value = 0.0f;
        TDateTime when = 0.0;
        bool date = false;
        bool time = false;
        QString format;
        QString unit;
        QString text;
    };
    // The text of one extreme, formatted again only when an input differs.
    static const QString& Extreme(TExtreme& e, const QString& label, float v, TDateTime when,
                                  bool date, bool time, const QString& format, const QString& unit);

    // The format settings the extremes were formatted with.
    TFormatSettings settings;
    TExtreme min;
    TExtreme max;
    // The tail's inputs (held, so that the same storage means the same text), the tail
    // and its tool-tip form.
    bool tailValid = false;
    THintOptions tailOptions = 0;
    QString tailMin;
    QString tailMax;
    QString tailName1;
    QString tailName2;
    QString tail;
    QString tailTip;
};

namespace {

constexpr QLatin1String kValueLabel("Value= ");

// The same storage: for a text compared with a copy of itself that is still held, this
// means the same characters, found without reading them.
inline bool sameStorage(const QString& a, const QString& b) {
    return a.constData() == b.constData() && a.size() == b.size();
}

inline bool sameText(const QString& a, const QString& b) {
    return sameStorage(a, b) || a == b;
}

bool sameFormatSettings(const TFormatSettings& a, const TFormatSettings& b) {
    return a.DecimalSeparator == b.DecimalSeparator && a.ThousandSeparator == b.ThousandSeparator &&
           a.DateSeparator == b.DateSeparator && a.TimeSeparator == b.TimeSeparator &&
           a.ShortDateFormat == b.ShortDateFormat && a.LongTimeFormat == b.LongTimeFormat &&
           a.TimeAMString == b.TimeAMString && a.TimePMString == b.TimePMString &&
           a.ShortTimeFormat == b.ShortTimeFormat && a.LongDateFormat == b.LongDateFormat &&
           a.ShortMonthNames == b.ShortMonthNames && a.LongMonthNames == b.LongMonthNames &&
           a.ShortDayNames == b.ShortDayNames && a.LongDayNames == b.LongDayNames;
}

// Whether the settings still format as the copy `held` does. Most readings find the very
// same storage, compared as bytes; otherwise the texts are compared, and the copy is
// renewed so that the next reading finds the same storage again.
bool keepFormatSettings(TFormatSettings& held, const TFormatSettings& now) {
    if (std::memcmp(static_cast<const void*>(&held), static_cast<const void*>(&now),
                    sizeof(TFormatSettings)) == 0)
        return true;
    const bool same = sameFormatSettings(held, now);
    held = now;
    return same;
}

}  // namespace

const QString& TKxAnalogGControl::THintCache::Extreme(TExtreme& e, const QString& label, float v,
                                                      TDateTime when, bool date, bool time,
                                                      const QString& format, const QString& unit) {
    if (e.valid && e.value == v && e.when == when && e.date == date && e.time == time &&
        sameText(e.format, format) && sameText(e.unit, unit))
        return e.text;
    e.valid = true;
    e.value = v;
    e.when = when;
    e.date = date;
    e.time = time;
    e.format = format;
    e.unit = unit;
    e.text = label + FormatFloat(format, v) + QLatin1Char(' ') + unit;
    if (date) e.text += QLatin1Char(' ') + DateToStr(when);
    if (time) e.text += QLatin1Char(' ') + TimeToStr(when);
    return e.text;
}

TKxAnalogGControl::~TKxAnalogGControl() = default;

void TKxAnalogGControl::SetHint() {
    if (!HasHintOption(hoAutoHint) || Designing()) return;
    THintCache& h = *hintCache_;
    const TSignalSettings& s = *signalSettings_;
    const bool withValue = HasHintOption(hoValue);
    const bool withMin = HasHintOption(hoMin);
    const bool withMax = HasHintOption(hoMax);
    if ((withMin || withMax) && !keepFormatSettings(h.settings, FormatSettings())) {
        h.min.valid = false;
        h.max.valid = false;
    }
    const bool date = HasHintOption(hoMinMaxDate);
    const bool time = HasHintOption(hoMinMaxTime);
    static const QString kNone;
    const QString& min = withMin ? THintCache::Extreme(h.min, QStringLiteral("MIN= "),
                                                       minMax_->Min(), minMax_->MinDateTime(), date,
                                                       time, s.ValueFormat(), s.ValueUnit())
                                 : kNone;
    const QString& max = withMax ? THintCache::Extreme(h.max, QStringLiteral("MAX= "),
                                                       minMax_->Max(), minMax_->MaxDateTime(), date,
                                                       time, s.ValueFormat(), s.ValueUnit())
                                 : kNone;
    // The tail depends on which parts are on (hoValue included: it decides the tail's
    // leading separator) and on their texts.
    const THintOptions tailOptions =
        hintOptions_ & (HintOption(hoValue) | HintOption(hoMin) | HintOption(hoMax) |
                        HintOption(hoName1) | HintOption(hoName2));
    if (!h.tailValid || h.tailOptions != tailOptions || !sameStorage(h.tailMin, min) ||
        !sameStorage(h.tailMax, max) || !sameStorage(h.tailName1, s.Name1()) ||
        !sameStorage(h.tailName2, s.Name2())) {
        h.tailValid = true;
        h.tailOptions = tailOptions;
        h.tailMin = min;
        h.tailMax = max;
        h.tailName1 = s.Name1();
        h.tailName2 = s.Name2();
        QString& tail = h.tail;
        tail.clear();
        // A separator goes before a part whenever some text precedes it.
        const auto add = [&tail, withValue](const QString& part) {
            if (withValue || !tail.isEmpty()) tail += QLatin1Char('\r');
            tail += part;
        };
        if (withMin) add(min);
        if (withMax) add(max);
        if (HasHintOption(hoName1)) add(s.Name1());
        if (HasHintOption(hoName2)) add(s.Name2());
        h.tailTip = ToolTipText(tail);
    }
    if (!withValue) {
        SetHintTexts(h.tail, h.tailTip);
        return;
    }
    // The value part ends in text and the tail starts with a separator, so the tool tip
    // is the value part followed by the tail's tool tip, unless the value part itself
    // holds a carriage return.
    const QString& unit = s.ValueUnit();
    const QString text = kValueLabel % valueText_ % QLatin1Char(' ') % unit % h.tail;
    if (valueText_.contains(QLatin1Char('\r')) || unit.contains(QLatin1Char('\r')))
        SetHintTexts(text, ToolTipText(text));
    else
        SetHintTexts(text, kValueLabel % valueText_ % QLatin1Char(' ') % unit % h.tailTip);
}

int32_t TKxAnalogGControl::PointerPosition() const {
    const TSignalSettings& sig = *signalSettings_;
    if (sig.TotalDigit() == 0) return ppt_;
    const double pos = 1000.0 / sig.TotalDigit() * (double(digit_) - sig.DigitalFrom());
    return std::clamp(Round(pos), -30, 1030);
}

TKxAnalogGControl::TNameSizes TKxAnalogGControl::MeasureNames(TCanvas& canvas) const {
    return KxMeasureNames(canvas, *font_, *signalSettings_);
}

void TKxAnalogGControl::PaintNames(TCanvas& canvas, TRect& r, int32_t t, bool name1, bool name2,
                                   const TNameSizes& sizes) const {
    KxPaintNames(canvas, *font_, *signalSettings_, r, t, name1, name2, sizes);
}

TColor TKxAnalogGControl::MarkerColor(int32_t ppt, TColor own) const {
    TColor c = own;
    if (minMax_->UseSectorCol() && sectorSettings_->CheckSectorColor(ppt, c)) return c;
    return own;
}

}  // namespace kx
