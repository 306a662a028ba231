#pragma once
// TKxAnalogCControl: the base of every control with which the operator sets an analog
// value (dial, gear dial, sliders). It takes the keyboard focus and changes its value by
// keyboard, mouse wheel and dragging; unlike the indicators it keeps the value strictly
// inside the signal's range. It can drive an indicator (ValueIndicator): every new value
// is written into it, and its signal settings are kept equal to the adjuster's.
//
// Properties:
//   Digit          int32: the value as a raw count, clamped to DigitalTo, then DigitalFrom
//   Value          Single, 0: clamped to ValueFrom..ValueTo, then snapped to the digit grid
//                  (Value = ValueFrom + (Digit - DigitalFrom) x ValuePerDigit); a value on
//                  the current digit is snapped to it without any event
//   ChangeLarge    int32, 10: digits per Page Up / Page Down
//   ChangeSmall    int32, 1: digits per arrow key or wheel notch
//   SignalSettings TSignalSettings (owned): range, digits, format, names, unit
//   ColorFocus     TColor, clLime: the colour descendants draw with while focused
//   ColorNonFocus  TColor, clGreen: the same without the focus
//   CursorSlide    Qt::CursorShape, Qt::PointingHandCursor: the cursor over the hit area
//   EnableKeyboard bool, true
//   EnabledKeys    set of TEnabledKey as bits, all eight: the keys that are handled
//   ValueIndicator TKxAnalogGControl*, none: the driven indicator (cleared when it is
//                  destroyed)
//   Font           TFont (owned): "MS Sans Serif", 10 points
// Events: OnValueChange(sender) on every accepted change; OnValueChanged(sender) once when
// the operator finishes: on the release of the key or mouse button, and after each wheel
// notch.
//
// Keys (when EnableKeyboard and the key's member is in EnabledKeys): Page Up/Down move by
// ChangeLarge, the arrows by ChangeSmall (Up and Right up, Down and Left down), Home and
// End go to the ends. Auto-repeated presses change the value again; their releases do not
// report (only the real release does).
//
// Wheel (not at design time): an event of exactly +-120 (one notch) moves by ChangeSmall.
// Smaller events, as touchpads and high-resolution wheels send them, add up until they
// reach a notch, which then moves once; the sum starts afresh when the direction turns.
// A single event larger than a notch counts by its low eight bits, as classic wheel
// handling did: 0x78 is a notch up, 0x88 a notch down, anything else (240, -240, ...) is
// ignored.
//
// Mouse: a left press inside HitRect (or the circle inscribed in it with HitIsCircle)
// starts a drag; each move while dragging calls MouseSlide; the release ends it. The
// cursor shows CursorSlide over the hit area.
//
// Bad input: a NaN Value is ignored; an infinite one is clamped to the range's end.
// Digit arithmetic saturates at the int32 range.
//
// Choices where the classic behaviour is silent: OnValueChange fires also before Loaded()
// (forms connect their handlers after setting properties, so loading reports nothing); a
// wheel notch is reported by OnValueChanged at once, since no release follows it.
#include <QCursor>
#include <QPointer>
#include <QString>
#include <cstdint>

#include "kx/framework/analogcontrol.h"
#include "kx/framework/control.h"
#include "kx/framework/signalsettings.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxAnalogCControl : public TKxCustomControl {
    Q_OBJECT
    Q_PROPERTY(int Digit READ Digit WRITE setDigit NOTIFY OnValueChange STORED false)
    Q_PROPERTY(double Value READ ValueD WRITE setValue NOTIFY OnValueChange)
    Q_PROPERTY(int ChangeLarge READ ChangeLarge WRITE setChangeLarge)
    Q_PROPERTY(int ChangeSmall READ ChangeSmall WRITE setChangeSmall)
    Q_PROPERTY(kx::TSignalSettings* SignalSettings READ SignalSettings WRITE SetSignalSettings
                   DESIGNABLE false)
    Q_PROPERTY(QColor ColorFocus READ QColorFocus WRITE setColorFocus)
    Q_PROPERTY(QColor ColorNonFocus READ QColorNonFocus WRITE setColorNonFocus)
    Q_PROPERTY(Qt::CursorShape CursorSlide READ CursorSlide WRITE setCursorSlide)
    Q_PROPERTY(bool EnableKeyboard READ EnableKeyboard WRITE setEnableKeyboard)
    Q_PROPERTY(int EnabledKeys READ EnabledKeys WRITE setEnabledKeys)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
  public:
    enum TEnabledKey : int {
        _VK_PRIOR,
        _VK_NEXT,
        _VK_END,
        _VK_HOME,
        _VK_LEFT,
        _VK_DOWN,
        _VK_UP,
        _VK_RIGHT
    };
    using TEnabledKeys = uint8_t;
    static constexpr TEnabledKeys EnabledKey(TEnabledKey k) { return TEnabledKeys(1u << k); }
    static constexpr TEnabledKeys kAllKeys = 0xFF;

    explicit TKxAnalogCControl(QWidget* parent = nullptr);
    ~TKxAnalogCControl() override;

    int32_t Digit() const { return digit_; }
    virtual void SetDigit(int32_t d);
    float Value() const { return value_; }
    virtual void SetValue(float v);
    int32_t ChangeLarge() const { return changeLarge_; }
    void SetChangeLarge(int32_t v) { changeLarge_ = v; }
    int32_t ChangeSmall() const { return changeSmall_; }
    void SetChangeSmall(int32_t v) { changeSmall_ = v; }
    TSignalSettings* SignalSettings() const { return signalSettings_; }
    // Copies (null is ignored).
    void SetSignalSettings(const TSignalSettings* v);
    TColor ColorFocus() const { return colorFocus_; }
    void SetColorFocus(TColorArg c);
    TColor ColorNonFocus() const { return colorNonFocus_; }
    void SetColorNonFocus(TColorArg c);
    Qt::CursorShape CursorSlide() const { return cursorSlide_; }
    void SetCursorSlide(Qt::CursorShape c) { cursorSlide_ = c; }
    bool EnableKeyboard() const { return enableKeyboard_; }
    void SetEnableKeyboard(bool v) { enableKeyboard_ = v; }
    TEnabledKeys EnabledKeys() const { return enabledKeys_; }
    void SetEnabledKeys(TEnabledKeys v) { enabledKeys_ = v; }
    TKxAnalogGControl* ValueIndicator() const { return indicator_.data(); }
    // Links an indicator (null unlinks): copies the signal settings into it and pushes
    // the current value.
    void SetValueIndicator(TKxAnalogGControl* indicator);
    TFont* Font() const { return font_; }
    void SetFont(const TFont* f);

    // The colour of the moving part now: ColorFocus or ColorNonFocus, clBtnShadow while
    // disabled.
    TColor StateColor() const;

    // Readable state for descendants and tests.
    const QString& ValueText() const { return valueText_; }
    const QString& DigitText() const { return digitText_; }
    TRect HitRect;
    bool HitIsCircle = false;
    bool InHitArea() const { return inHitArea_; }
    bool Sliding() const { return sliding_; }
    TPoint LastMousePos() const { return lastMousePos_; }
    bool ValueChangedPending() const { return valueChangedPending_; }

    // Moves by up digits when up >= 1, else down by down digits; clamped to the range.
    void DoChange(int32_t up, int32_t down);

    void Loaded() override;

    // Qt-style names for uic, animations and generic code.
    double ValueD() const { return double(value_); }
    void setValue(double v) { SetValue(ToSingle(v)); }
    void setDigit(int v) { SetDigit(v); }
    void setChangeLarge(int v) { SetChangeLarge(v); }
    void setChangeSmall(int v) { SetChangeSmall(v); }
    QColor QColorFocus() const { return EncodeQColor(colorFocus_); }
    void setColorFocus(const QColor& c) { SetColorFocus(c); }
    QColor QColorNonFocus() const { return EncodeQColor(colorNonFocus_); }
    void setColorNonFocus(const QColor& c) { SetColorNonFocus(c); }
    void setCursorSlide(Qt::CursorShape c) { SetCursorSlide(c); }
    void setEnableKeyboard(bool v) { SetEnableKeyboard(v); }
    void setEnabledKeys(int v) { SetEnabledKeys(TEnabledKeys(v)); }

    KX_FLAT_SIGNALSETTINGS(SignalSettings, SignalSettings())
    KX_FLAT_FONT(Font, Font())

  signals:
    void OnValueChange(QObject* sender);
    void OnValueChanged(QObject* sender);

  protected:
    // One drag step at (x, y); the base only records the position.
    virtual void MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos);
    // Texts and the linked indicator; descendants call it first and then redraw.
    virtual void ValueChange();
    void ParamChange(QObject* sender) override;

    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;
    void changeEvent(QEvent* e) override;

  private:
    int32_t digitOf(float value) const;
    float gridValue(int32_t digit) const;
    bool hitTest(TPoint p) const;
    void reportFinished();
    void wheelNotch(bool up);

    TSignalSettings* signalSettings_;
    TFont* font_;
    QPointer<TKxAnalogGControl> indicator_;
    QCursor normalCursor_;
    QString valueText_;
    QString digitText_;
    float value_ = 0.0f;
    int32_t digit_ = 0;
    int32_t changeLarge_ = 10;
    int32_t changeSmall_ = 1;
    int32_t wheelSum_ = 0;
    TColor colorFocus_ = clLime;
    TColor colorNonFocus_ = clGreen;
    Qt::CursorShape cursorSlide_ = Qt::PointingHandCursor;
    TPoint lastMousePos_{};
    TEnabledKeys enabledKeys_ = kAllKeys;
    bool enableKeyboard_ = true;
    bool inHitArea_ = false;
    bool sliding_ = false;
    bool valueChangedPending_ = false;
};

}  // namespace kx
