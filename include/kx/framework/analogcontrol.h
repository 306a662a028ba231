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
// The hint (Hint(), and QWidget::toolTip with line breaks for the carriage returns) is
// one text. While hoAutoHint is set, every evaluated reading replaces it with the
// automatic text, formatted at that moment: value, minimum, maximum, name 1, name 2 as
// the options select them, joined by carriage returns (a separator goes before a part
// only when text precedes it). Later changes of the settings, the unit or the decimal
// separator show from the next reading on; the text never mixes two states. A text the
// application assigns (SetHint, the Hint property or QWidget::setToolTip; also an empty
// one or the same one again) stands until the next reading. Removing hoAutoHint leaves
// the last text in place; adding it evaluates the reading at once. At design time no
// automatic text is made.
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
#include <atomic>
#include <cstdint>
#include <memory>

#include "kx/framework/control.h"
#include "kx/framework/minmax.h"
#include "kx/framework/names.h"
#include "kx/framework/persistent.h"
#include "kx/framework/sectorsettings.h"
#include "kx/framework/signalsettings.h"
#include "kx/framework/single.h"
#include "kx/host/color.h"
#include "kx/host/datetime.h"
#include "kx/host/formatfloat.h"
#include "kx/host/graphics.h"

namespace kx {

enum THintOption : int {
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
    // Single properties are published as double, which Designer and uic edit; the
    // settings objects are published flat as well (see the end of the public section).
    // Value is the stored view of the reading; Digit follows from it and the ranges, so
    // it is not stored (restoring both would apply one reading twice, over two ranges).
    Q_PROPERTY(int Digit READ Digit WRITE setDigit NOTIFY valueChanged STORED false)
    Q_PROPERTY(double LimitUpper READ LimitUpper WRITE setLimitUpper)
    Q_PROPERTY(double LimitLower READ LimitLower WRITE setLimitLower)
    Q_PROPERTY(int HintOptions READ HintOptions WRITE setHintOptions)
    Q_PROPERTY(kx::TSectorSettings* SectorSettings READ SectorSettings WRITE SetSectorSettings
                   DESIGNABLE false)
    Q_PROPERTY(kx::TSignalSettings* SignalSettings READ SignalSettings WRITE SetSignalSettings
                   DESIGNABLE false)
    Q_PROPERTY(kx::TMinMax* MinMax READ MinMax WRITE SetMinMax DESIGNABLE false)
    Q_PROPERTY(double Value READ Value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(bool LogScale READ LogScale WRITE setLogScale)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
    // The Qt-style view of Value for animations, bindings and generic code; Designer
    // shows and saves Value instead.
    Q_PROPERTY(
        double value READ value WRITE setValue NOTIFY valueChanged DESIGNABLE false STORED false)
  public:
    // Sentinels of TMinMax meaning "nothing recorded yet".
    static constexpr float kNoMin = TMinMax::kNoMin;
    static constexpr float kNoMax = TMinMax::kNoMax;
    // What LimitLower stores instead of an exact zero.
    static constexpr float kZeroLimitLower = 0.0001f;

    explicit TKxAnalogGControl(QWidget* parent = nullptr);
    ~TKxAnalogGControl() override;

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
    // non-positive Value to 0.001 and assigns both range bounds their decades directly
    // (a non-positive ValueFrom becomes 0.001, a non-positive ValueTo 1), even when both
    // land on the same decade (80..100 becomes 100..100; LogFactor is then TotalDigit);
    // a decade beyond the float range leaves that bound as it was. Then Digit is derived
    // anew and LogScaleChanged runs: one settings pass, one OnSettingsChange.
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
    // The reading's per-mille position without the clamp of PPT, held by stops at -30 and
    // 1030 (where pointers and needles show a reading beyond the range); PPT when the
    // digit span is empty.
    int32_t PointerPosition() const;
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

    // Qt-style names of the setters above (uic calls "set" + the property name).
    void setDigit(int d) { SetDigit(d); }
    void setLimitUpper(double v) { SetLimitUpper(ToSingle(v)); }
    void setLimitLower(double v) { SetLimitLower(ToSingle(v)); }
    void setHintOptions(int s) { SetHintOptions(THintOptions(s)); }
    void setLogScale(bool b) { SetLogScale(b); }
    double value() const { return value_; }
    // SetValue narrowed with ToSingle (beyond the float range: an infinity).
    void setValue(double v) { SetValue(ToSingle(v)); }

    // A reading from any thread. The latest value is kept atomically and one queued call
    // at a time applies it through SetValue on the control's thread, so readings that
    // arrive faster than the control's thread handles them collapse into the newest one
    // (intermediate values are skipped, none is applied twice in a row). The control
    // must outlive the threads that call it; a call pending at destruction is dropped.
    void PostValue(double v);

    // The blink rule of every pointer: a position beyond the range (outside 0..1000 per
    // mille) when overflow blinks, or a crossed limit when limits blink; never at design
    // time.
    bool PointerAlarm(int32_t position, bool overflowBlinks, bool limitBlinks) const {
        return ((overflowBlinks && (position > 1000 || position < 0)) ||
                (limitBlinks && (UpperExceeded() || LowerExceeded()))) &&
               !Designing();
    }

    // Restore saved extremes: when v differs from the recorded one, record it with the
    // given time stamp, notify (OnMinMaxChange, evaluation) and refresh the hint.
    void SetMin(float v, TDateTime when);
    void SetMax(float v, TDateTime when);
    // Both extremes := Value (stamped now), notify, refresh the hint, evaluate.
    void ResetMinMax();
    // Strict comparisons, no hysteresis; LimitChange and OnLimit only on a change.
    void LimitCheck();
    // Replaces the hint with the automatic text of the current state (with hoAutoHint,
    // not at design time).
    void SetHint();
    using TKxGraphicControl::SetHint;
    // Draws nothing here; descendants draw.
    void Paint() override;

    // The two name lines most instruments show at their bottom, measured in Font.
    using TNameSizes = ::kx::TNameSizes;
    TNameSizes MeasureNames(TCanvas& canvas) const;
    // Draws the chosen name lines in Font with a clear brush, each centred in r and
    // t pixels below the bottom r is moved up to (Name2 lowest, Name1 above it).
    void PaintNames(TCanvas& canvas, TRect& r, int32_t t, bool name1, bool name2,
                    const TNameSizes& sizes) const;
    // The fill of a minimum or maximum marker at the position ppt: with
    // MinMax.UseSectorCol the colour of the sector that holds ppt (the last of
    // overlapping ones), else own.
    TColor MarkerColor(int32_t ppt, TColor own) const;

    KX_FLAT_FONT(Font, Font())
    KX_FLAT_SIGNALSETTINGS(SignalSettings, SignalSettings())
    KX_FLAT_SECTORSETTINGS(SectorSettings, SectorSettings())
    KX_FLAT_MINMAX(MinMax, MinMax())

  signals:
    // Value (and with it Digit) changed: after the reading has been evaluated, once per
    // setter call that changed it, with the new Value.
    void valueChanged(double value);
    void OnMinMaxChange(QObject* sender);
    // PPT: unclamped when leaving the range, in range when coming back.
    void OnOverflow(QObject* sender, int PPT);
    void OnSectorChange(QObject* sender, bool Sector1, bool Sector2, bool Sector3, bool Enter);
    void OnSettingsChange(QObject* sender);
    // Handlers run inside the setter; one that wants to delete the control uses
    // deleteLater(), since the evaluation goes on after most events. A full paint of a bar,
    // meter or readout evaluates the reading again, so these events may also fire inside
    // a paint event: handlers must not delete or reparent widgets directly there (Qt is
    // painting the window's widgets at that moment); deleteLater() is always safe.
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

    // Maps every reading (SetValue, setValue, PostValue, and the Value SetDigit derives)
    // before it is stored; a NaN result ignores the reading. Identity here; a compass
    // wraps headings into its circle.
    virtual float NormalizeReading(float v) const { return v; }
    // Fired by ValueChange when the control moved since the last reading.
    void SetOnPositionChange(TNotifyEvent handler) { onPositionChange_ = std::move(handler); }
    void SetBlinkColor1(TColor c) { blinkColor1_ = c; }
    void SetBlinkColor2(TColor c) { blinkColor2_ = c; }

  private:
    struct THintCache;

    void settingsChanged(QObject* sender);
    // Evaluates a new reading (re-lays out at design time), then fires valueChanged.
    void applyReading();
    int32_t linearDigit(float v) const;
    int32_t logDigit(float v) const;
    void calcLog();
    void updateTexts();
    bool evaluateSectors(const QPointer<TKxAnalogGControl>& alive);
    void evaluateRange(const QPointer<TKxAnalogGControl>& alive);
    void trackExtremes(const QPointer<TKxAnalogGControl>& alive);

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

    // PostValue: the newest posted reading and whether a call to apply it is queued.
    std::atomic<double> posted_{0.0};
    std::atomic<bool> postPending_{false};

    // ValueText's picture, parsed once per ValueFormat.
    QString pictureFormat_;
    TFloatPicture picture_;

    // What the automatic hint is made of, kept between readings.
    std::unique_ptr<THintCache> hintCache_;
};

}  // namespace kx
