#pragma once
// TKxAnalogGControl: the windowless base of every instrument that shows one measured
// value. It keeps three views of a reading in step (Value in engineering units, Digit as
// a raw count over DigitalFrom..DigitalTo, PPT as the per-mille position 0..1000 that all
// geometry uses), watches the reading against two limits, three sectors and the range,
// records the extremes with their time stamps, keeps the automatic tool-tip text and fires
// events on every transition of these states.
//
// A reading (SetValue / SetDigit) runs ValueChange, which evaluates in this order:
// position, texts, PPT, sectors 1..3 (OnSectorChange), limits (OnLimit), range
// (OnOverflow, with the unclamped PPT; PPT is clamped afterwards), extremes (a new one
// fires OnMinMaxChange and re-enters ValueChange once, so OnValueChange fires twice, the
// nested one first), hint, OnValueChange. Descendants override ValueChange, call it first
// and then redraw what moved.
//
// Settings changes (font, signal, sectors) reach ParamChange once the control is loaded;
// during an update phase they are deferred to EndUpdate. ParamChange recomputes the
// derived quantities and Digit and fires OnSettingsChange; it does not evaluate a reading.
//
// Design time (Designing()): value setters run ParamChange instead of ValueChange, the
// extremes are not tracked (MinPPT and MaxPPT follow PPT) and no automatic hint is made.
//
// The automatic hint is built when it is read: SetHint records what it needs and Hint()
// formats it on demand, so a reading costs no hint formatting. Each read returns the text
// that building it at the last SetHint would have given (formatted with the separators
// and date/time pictures in force when it is read). A text set through the base's
// SetHint(const QString&) after the last reading replaces it, as it would replace a built
// one; removing hoAutoHint leaves the last text in place.
//
// Bad input:
//  - a NaN reading (Value, LimitUpper, LimitLower, SetMin, SetMax) is ignored: nothing
//    changes and no event fires;
//  - an infinite reading is stored; its Digit and PPT saturate to the int32 range, so it
//    is an overflow like any other reading beyond the range;
//  - Digit arithmetic runs in double/int64 and saturates, so extreme digit ranges give
//    clipped but defined positions;
//  - an empty digit span (TotalDigit 0) puts the reading at PPT 0 when Digit equals
//    DigitalFrom and at the saturated end of its side otherwise.
#include <QPointer>
#include <QString>
#include <cstdint>

#include "framework/control.h"
#include "framework/minmax.h"
#include "framework/persistent.h"
#include "framework/sectorsettings.h"
#include "framework/signalsettings.h"
#include "host/color.h"
#include "host/datetime.h"
#include "host/formatfloat.h"
#include "host/graphics.h"

namespace kx {

enum THintOption {
    hoAutoHint,
    hoValue,
    hoName1,
    hoName2,
    hoMin,
    hoMax,
    hoMinMaxDate,
    hoMinMaxTime
};
// A set of THintOption as bits (bit n = option n).
using THintOptions = uint8_t;
constexpr THintOptions HintOption(THintOption o) {
    return THintOptions(1u << o);
}
constexpr THintOptions kAllHintOptions = 0xFF;

class TKxAnalogGControl : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(int Digit READ Digit WRITE SetDigit)
    Q_PROPERTY(float LimitUpper READ LimitUpper WRITE SetLimitUpper)
    Q_PROPERTY(float LimitLower READ LimitLower WRITE SetLimitLower)
    Q_PROPERTY(int HintOptions READ HintOptions WRITE SetHintOptions)
    Q_PROPERTY(kx::TSectorSettings* SectorSettings READ SectorSettings WRITE SetSectorSettings)
    Q_PROPERTY(kx::TSignalSettings* SignalSettings READ SignalSettings WRITE SetSignalSettings)
    Q_PROPERTY(kx::TMinMax* MinMax READ MinMax WRITE SetMinMax)
    Q_PROPERTY(float Value READ Value WRITE SetValue)
    Q_PROPERTY(bool LogScale READ LogScale WRITE SetLogScale)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont)
  public:
    // Sentinels of TMinMax meaning "nothing recorded yet".
    static constexpr float kNoMin = TMinMax::kNoMin;
    static constexpr float kNoMax = TMinMax::kNoMax;
    // What LimitLower stores instead of an exact zero.
    static constexpr float kZeroLimitLower = 0.0001f;

    explicit TKxAnalogGControl(QWidget* parent = nullptr);

    int32_t Digit() const { return digit_; }
    // When different: store (not clamped), derive Value (linear, or logarithmic when
    // LogFactor - LogOffset != 0, else Value stays), then evaluate.
    void SetDigit(int32_t d);
    float LimitUpper() const { return limitUpper_; }
    void SetLimitUpper(float v);
    float LimitLower() const { return limitLower_; }
    // An exact 0 is stored as 0.0001.
    void SetLimitLower(float v);
    THintOptions HintOptions() const { return hintOptions_; }
    // Adding hoAutoHint evaluates the reading (which rebuilds the hint); any other
    // change only stores.
    void SetHintOptions(THintOptions s);
    bool HasHintOption(THintOption o) const { return hintOptions_ & HintOption(o); }
    TSectorSettings* SectorSettings() const { return sectorSettings_; }
    void SetSectorSettings(const TSectorSettings* v);
    TSignalSettings* SignalSettings() const { return signalSettings_; }
    void SetSignalSettings(const TSignalSettings* v);
    TMinMax* MinMax() const { return minMax_; }
    void SetMinMax(const TMinMax* v);
    float Value() const { return value_; }
    // When different (and, with LogScale, positive): store (not clamped), derive Digit,
    // then evaluate. A NaN is ignored.
    void SetValue(float v);
    bool LogScale() const { return logScale_; }
    // Stores the flag here and in both settings objects. Switching on moves a
    // non-positive Value to 0.001 and the range bounds to their decades (a non-positive
    // ValueFrom to 0.001) through the signal's setters; then Digit is derived anew and
    // LogScaleChanged runs.
    void SetLogScale(bool b);
    // The control's own font (Arial 8), separate from QWidget::font.
    TFont* Font() const { return font_; }
    // Copies font into the owned one; a null font is ignored.
    void SetFont(const TFont* font);

    // State of the last evaluated reading.
    int32_t PPT() const { return ppt_; }
    int32_t LimitUpperPPT() const { return limitUpperPPT_; }
    int32_t LimitLowerPPT() const { return limitLowerPPT_; }
    int32_t MaxPPT() const { return maxPPT_; }
    int32_t MinPPT() const { return minPPT_; }
    bool UpperExceeded() const { return upperExceeded_; }
    bool LowerExceeded() const { return lowerExceeded_; }
    bool OverflowHigh() const { return overflowHigh_; }
    bool OverflowLow() const { return overflowLow_; }
    bool InSector1() const { return inSector1_; }
    bool InSector2() const { return inSector2_; }
    bool InSector3() const { return inSector3_; }
    // The colour of the last sector that held the reading (black before any did).
    TColor SectorColor() const { return sectorColor_; }
    // Value in ValueFormat and Digit in decimal; empty until the first evaluation.
    const QString& ValueText() const { return valueText_; }
    const QString& DigitText() const { return digitText_; }
    // Digits per decade and log10(1 / ValueFrom); computed in logarithmic mode only.
    double LogFactor() const { return logFactor_; }
    double LogOffset() const { return logOffset_; }
    // The two phase colours of a blinking pointer (yellow and red).
    TColor BlinkColor1() const { return blinkColor1_; }
    TColor BlinkColor2() const { return blinkColor2_; }

    // Hooks the settings objects (and the font) to the control and starts the extremes
    // afresh from the sentinels.
    void Loaded() override;

    // Restore saved extremes: when v differs from the recorded one, record it with the
    // given time stamp, notify (OnMinMaxChange, evaluation) and refresh the hint.
    void SetMin(float v, TDateTime when);
    void SetMax(float v, TDateTime when);
    // Both extremes := Value (stamped now), notify, refresh the hint, evaluate.
    void ResetMinMax();
    // Strict comparisons, no hysteresis; LimitChange and OnLimit only on a change.
    void LimitCheck();
    // Refreshes the automatic hint (with hoAutoHint, not at design time).
    void SetHint();
    using TKxGraphicControl::SetHint;
    QString Hint() const override;
    // Draws nothing here; descendants draw.
    void Paint() override;

  signals:
    void OnMinMaxChange(QObject* sender);
    // PPT: unclamped when leaving the range, in range when coming back.
    void OnOverflow(QObject* sender, int PPT);
    void OnSectorChange(QObject* sender, bool Sector1, bool Sector2, bool Sector3, bool Enter);
    void OnSettingsChange(QObject* sender);
    // Handlers run inside the setter; one that wants to delete the control uses
    // deleteLater(), since the evaluation goes on after most events.
    void OnValueChange(QObject* sender);
    void OnLimit(QObject* sender, bool Lower, bool Upper);

  protected:
    void ParamChange(QObject* sender) override;
    // Evaluates the current reading; see the top of this file.
    virtual void ValueChange();
    // Empty hooks for descendants: the range state or the limit state changed. During
    // OverflowChange PPT still holds the unclamped position.
    virtual void OverflowChange(int32_t ppt);
    virtual void LimitChange();
    // Fires OnMinMaxChange (with the control as sender), then evaluates.
    virtual void MinMaxChange(QObject* sender);
    // Runs Change (ParamChange unless an update phase is in progress).
    virtual void LogScaleChanged();

    // Fired by ValueChange when the control moved since the last reading.
    void SetOnPositionChange(TNotifyEvent handler) { onPositionChange_ = std::move(handler); }
    void SetBlinkColor1(TColor c) { blinkColor1_ = c; }
    void SetBlinkColor2(TColor c) { blinkColor2_ = c; }

  private:
    struct THintSnapshot {
        THintOptions options = 0;
        QString valueText;
        QString unit;
        QString format;
        QString name1;
        QString name2;
        float min = 0.0f;
        float max = 0.0f;
        TDateTime minDateTime = 0.0;
        TDateTime maxDateTime = 0.0;
    };

    void settingsChanged(QObject* sender);
    int32_t linearDigit(float v) const;
    int32_t logDigit(float v) const;
    void calcLog();
    void updateTexts();
    bool evaluateSectors(const QPointer<TKxAnalogGControl>& alive);
    void evaluateRange();
    void trackExtremes(const QPointer<TKxAnalogGControl>& alive);
    QString buildHint() const;

    TFont* font_;
    TSignalSettings* signalSettings_;
    TSectorSettings* sectorSettings_;
    TMinMax* minMax_;

    float value_ = 50.0f;
    int32_t digit_ = 500;
    float limitUpper_ = 90.0f;
    float limitLower_ = 10.0f;
    THintOptions hintOptions_ = kAllHintOptions;
    bool logScale_ = false;

    int32_t ppt_ = 500;
    int32_t limitUpperPPT_ = 900;
    int32_t limitLowerPPT_ = 100;
    int32_t maxPPT_ = 0;
    int32_t minPPT_ = 0;
    bool upperExceeded_ = false;
    bool lowerExceeded_ = false;
    bool overflowHigh_ = false;
    bool overflowLow_ = false;
    bool inSector1_ = false;
    bool inSector2_ = false;
    bool inSector3_ = false;
    TColor sectorColor_ = clBlack;
    QString valueText_;
    QString digitText_;
    double logFactor_ = 0.0;
    double logOffset_ = 0.0;
    TColor blinkColor1_ = clYellow;
    TColor blinkColor2_ = clRed;

    int32_t left_ = 0;
    int32_t top_ = 0;
    TNotifyEvent onPositionChange_;

    // ValueText's picture, parsed once per ValueFormat.
    QString pictureFormat_;
    TFloatPicture picture_;

    // Automatic hint: the inputs recorded by the last SetHint, the base's hint at that
    // moment (a different one later means it was set since) and the built text.
    THintSnapshot hintInputs_;
    mutable QString hintAtMark_;
    mutable QString autoHint_;
    mutable bool hintActive_ = false;
    mutable bool hintDirty_ = false;
};

}  // namespace kx
