#pragma once
// TSignalSettings: what a measured signal is: its value range in engineering units, the
// raw-count (digit) range an acquisition device delivers, two names, the unit and the
// display picture. The quantities every reading needs (span, digits per value, per-mille
// factor) are derived here whenever a property changes, before the owner hears of it.
//
// TChSettings: a self-contained value channel (a signal with its own value) for
// components that show several channels at once.
//
// Bad input: a NaN or infinite ValueFrom or ValueTo is ignored (nothing stored, nothing
// notified). Conversions to integers saturate (kx::Round), so an absurd range gives
// clipped but defined positions and digits.
#include <QString>
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/color.h"

namespace kx {

class TSignalSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int DigitalFrom READ DigitalFrom WRITE SetDigitalFrom)
    Q_PROPERTY(int DigitalTo READ DigitalTo WRITE SetDigitalTo)
    Q_PROPERTY(QString Name1 READ Name1 WRITE SetName1)
    Q_PROPERTY(QString Name2 READ Name2 WRITE SetName2)
    Q_PROPERTY(QString ValueFormat READ ValueFormat WRITE SetValueFormat)
    Q_PROPERTY(float ValueFrom READ ValueFrom WRITE SetValueFrom)
    Q_PROPERTY(float ValueTo READ ValueTo WRITE SetValueTo)
    Q_PROPERTY(QString ValueUnit READ ValueUnit WRITE SetValueUnit)
  public:
    // What ValueFrom stores instead of an exact zero: the logarithmic mapping divides by
    // the range start, so it is never exactly zero once set.
    static constexpr float kZeroValueFrom = 1e-6f;

    // The derived quantities start out computed from the defaults.
    explicit TSignalSettings(QObject* parent = nullptr);

    int32_t DigitalFrom() const { return digitalFrom_; }
    void SetDigitalFrom(int32_t v);
    int32_t DigitalTo() const { return digitalTo_; }
    void SetDigitalTo(int32_t v);
    const QString& Name1() const { return name1_; }
    void SetName1(const QString& v);
    const QString& Name2() const { return name2_; }
    void SetName2(const QString& v);
    const QString& ValueFormat() const { return valueFormat_; }
    void SetValueFormat(const QString& v);
    float ValueFrom() const { return valueFrom_; }
    // Ignored when v equals ValueFrom or ValueTo. An exact 0 is stored as 1e-6. With
    // LogScale the stored value is rounded to its decade and applied again through this
    // setter (which ignores it when it equals ValueTo). Then Change.
    void SetValueFrom(float v);
    float ValueTo() const { return valueTo_; }
    // As SetValueFrom, but a 0 is stored as it is.
    void SetValueTo(float v);
    const QString& ValueUnit() const { return valueUnit_; }
    void SetValueUnit(const QString& v);

    // Mirrors the owning control's LogScale; stores only.
    bool LogScale() const { return logScale_; }
    void SetLogScale(bool v) { logScale_ = v; }

    // Stores both bounds as given (no checks, no zero substitution, no rounding) and
    // derives the quantities anew, without notifying; for an owner that notifies once
    // itself. A non-finite bound is ignored (the other one is still stored).
    void WriteRange(float from, float to);

    // Derived quantities. Range and TotalDigit keep their previous values for a range
    // with ValueFrom >= 0 >= ValueTo; ValuePerDigit needs TotalDigit > 0, DigitPerValue,
    // PPTFactor and LongFormat need Range > 0, else they keep theirs too.
    float Range() const { return range_; }
    int32_t TotalDigit() const { return totalDigit_; }
    float ValuePerDigit() const { return valuePerDigit_; }
    float DigitPerValue() const { return digitPerValue_; }
    float PPTFactor() const { return pptFactor_; }
    // The longest section of ValueFormat, for reserving text width.
    const QString& LongFormat() const { return longFormat_; }

    // Recomputes the derived quantities without notifying.
    void CalcDerived();
    // Recomputes the derived quantities, then notifies.
    void Change() override;

    // Per-mille position of v in the value range: Round((v - ValueFrom) * PPTFactor),
    // not clamped (saturated to the int32 range; NaN gives 0).
    int32_t GetPPT(float v) const;
    // The value at a per-mille position: ValueFrom + Range / 1000 * ppt.
    float GetValue(int32_t ppt) const;

    // The text readouts reserve room for: both ends of the range formatted with
    // LongFormat, the one with more characters (ValueTo on a tie). Value boxes are sized
    // from its width, and designers show it in place of a reading.
    QString SampleValueText() const;

    // The longest section of a picture: split at the first ';', the rest when the head
    // is not longer than it, else the head; without ';' the picture itself.
    static QString KxGetValueFormat(const QString& format);

    // To another TSignalSettings: the eight published fields directly, then one Change
    // (which derives the quantities anew). No zero substitution or rounding is applied
    // to what is copied.
    void AssignTo(TKxPersistent* dest) const override;

  protected:
    // Called with the digit range about to be stored, before it is stored.
    virtual void DigitScaleChanged(int32_t newFrom, int32_t newTo);

  private:
    int32_t digitalFrom_ = 0;
    int32_t digitalTo_ = 1000;
    QString name1_;
    QString name2_;
    QString valueFormat_;
    float valueFrom_ = 0.0f;
    float valueTo_ = 100.0f;
    QString valueUnit_;
    bool logScale_ = false;

    float range_ = 100.0f;
    int32_t totalDigit_ = 1000;
    float valuePerDigit_ = 0.1f;
    float digitPerValue_ = 10.0f;
    float pptFactor_ = 10.0f;
    QString longFormat_;
};

class TChSettings : public TSignalSettings {
    Q_OBJECT
    Q_PROPERTY(float Value READ Value WRITE SetValue)
    Q_PROPERTY(int Digit READ Digit WRITE SetDigit)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(int PenWidth READ PenWidth WRITE SetPenWidth)
  public:
    explicit TChSettings(QObject* parent = nullptr) : TSignalSettings(parent) {}

    float Value() const { return value_; }
    // When different: Digit := Round(DigitalFrom + (v - ValueFrom) * DigitPerValue),
    // store, AbsDigit, OnValueChange. Not clamped. A NaN is ignored.
    void SetValue(float v);
    int32_t Digit() const { return digit_; }
    // When different: store, Value := ValueFrom + (d - DigitalFrom) * ValuePerDigit,
    // AbsDigit, OnValueChange. Not clamped.
    void SetDigit(int32_t d);
    // Digit - DigitalFrom as of the last SetValue or SetDigit (saturated).
    int32_t AbsDigit() const { return absDigit_; }
    float AbsDigitToValue(int32_t a) const;

    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    bool Visible() const { return visible_; }
    void SetVisible(bool v);
    int32_t PenWidth() const { return penWidth_; }
    void SetPenWidth(int32_t v);

    // To another TChSettings: the signal fields, then value, digit, colour, visibility
    // and pen width directly, then one Change (no OnValueChange). To a plain
    // TSignalSettings: the signal fields only.
    void AssignTo(TKxPersistent* dest) const override;

  signals:
    void OnValueChange(QObject* sender);

  private:
    void updateAbsDigit();

    float value_ = 0.0f;
    int32_t digit_ = 0;
    int32_t absDigit_ = 0;
    TColor color_ = clBlack;
    bool visible_ = true;
    int32_t penWidth_ = 1;
};

// The flat properties of a TSignalSettings (see flatproperty.h).
#define KX_FLAT_SIGNALSETTINGS(Prefix, Object)                  \
    KX_FLAT(int, Prefix##_DigitalFrom, Object, DigitalFrom)     \
    KX_FLAT(int, Prefix##_DigitalTo, Object, DigitalTo)         \
    KX_FLAT(QString, Prefix##_Name1, Object, Name1)             \
    KX_FLAT(QString, Prefix##_Name2, Object, Name2)             \
    KX_FLAT(QString, Prefix##_ValueFormat, Object, ValueFormat) \
    KX_FLAT_SINGLE(Prefix##_ValueFrom, Object, ValueFrom)       \
    KX_FLAT_SINGLE(Prefix##_ValueTo, Object, ValueTo)           \
    KX_FLAT(QString, Prefix##_ValueUnit, Object, ValueUnit)

// The flat properties of a TChSettings: its signal fields, colour, visibility and pen width.
#define KX_FLAT_CHSETTINGS(Prefix, Object)           \
    KX_FLAT_SIGNALSETTINGS(Prefix, Object)           \
    KX_FLAT_COLOR(Prefix##_Color, Object, Color)     \
    KX_FLAT(bool, Prefix##_Visible, Object, Visible) \
    KX_FLAT(int, Prefix##_PenWidth, Object, PenWidth)

}  // namespace kx
