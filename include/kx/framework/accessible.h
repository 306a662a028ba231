#pragma once
// What screen readers and other assistive tools learn about the components, through Qt
// accessibility.
//
// Analog controls (TKxAnalogGControl and descendants) are read-only indicators:
//   role         QAccessible::Indicator. ProgressBar would map to more platform roles, but
//                readers treat a progress bar as a running job: NVDA beeps and Orca speaks
//                on every change, which a live reading would trigger without end
//   Name         QWidget::accessibleName when set, else Name1, else the object name
//   Value        ValueText, then a space and ValueUnit when there is a unit
//   Description  the alarm state: "out of range", else "upper limit exceeded", else
//                "lower limit exceeded", else "normal" (after accessibleDescription, when
//                the application set one)
//   Help         QWidget::whatsThis, else the tool tip (the hint)
//   values       current Value, minimum ValueFrom, maximum ValueTo, step ValuePerDigit (0
//                in logarithmic mode, where a digit has no constant value); setting the
//                current value does nothing
// Binary elements (TKxBinGControl and descendants):
//   role         by what the operator can do: an element without focus (an LED) or in
//                mIndicator mode is an Indicator, mSwitch a CheckBox, mRadioButton a
//                RadioButton, mButton (momentary) a Button
//   Name         accessibleName when set, else Caption with its "|" line breaks as spaces
//   Value        "on" or "off" for indicators; nothing for the others, whose state says it
//   Description  "blinking" while checked and flashing (after accessibleDescription)
//   state        checkable and checked follow Checked; a Button is pressed instead; an
//                Indicator is read-only
//   actions      an operable element (focusable, not mIndicator, enabled) has press
//                (mButton) or toggle (the others), which clicks it as the mouse does:
//                OnClick and every mode behave as for a real click. Plus set-focus.
// Adjusters (TKxAnalogCControl and descendants), with which the operator sets a value:
//   role         QAccessible::Dial when the class, or a base between it and
//                TKxAnalogCControl, has "Dial" in its name (TKxDial and what derives from
//                it; the framework cannot link the dial itself), else QAccessible::Slider.
//                A descendant without Q_OBJECT carries its base's name, so its role too
//   Name         accessibleName when set, else Name1, else the object name
//   Value        ValueText, then a space and ValueUnit when there is a unit
//   Description  accessibleDescription (no tool tip: that is Help)
//   Help         whatsThis, else the tool tip
//   values       current Value, minimum ValueFrom, maximum ValueTo, step ValuePerDigit x
//                ChangeSmall (what an arrow key moves). Setting the current value goes
//                through SetValue as any change: clamped to the range, snapped to the
//                digit grid, OnValueChange on a change; NaN and non-numbers are ignored
//   state        focusable, focused and disabled as for any widget
// Texts are translatable in the context "KxAccessible".
//
// Setup: every component calls KxInstallAccessibility when it is made, so applications do
// nothing. The notifications below are cheap while no assistive tool listens.
// GUI thread only, like the components.
#include <QAccessibleWidget>

namespace kx {

class TKxAnalogCControl;
class TKxAnalogGControl;
class TKxBinGControl;

// What indicators and adjusters answer alike: name, value text, description, help, the
// value interface's value and bounds. TControl is TKxAnalogGControl or TKxAnalogCControl.
template <class TControl>
class TKxValueAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    TKxValueAccessible(TControl* control, QAccessible::Role role);

    QString text(QAccessible::Text t) const override;
    void* interface_cast(QAccessible::InterfaceType t) override;

    QVariant currentValue() const override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;

  protected:
    // Null once the control is being destroyed.
    TControl* control() const;
    // The description after the application's own.
    virtual QString alarmState(const TControl& control) const = 0;
};

class TKxAnalogAccessible : public TKxValueAccessible<TKxAnalogGControl> {
  public:
    explicit TKxAnalogAccessible(TKxAnalogGControl* control);

    // Indicators show readings; a reader cannot set one.
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumStepSize() const override;

  protected:
    QString alarmState(const TKxAnalogGControl& control) const override;
};

class TKxBinAccessible : public QAccessibleWidget {
  public:
    explicit TKxBinAccessible(TKxBinGControl* control);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text t) const override;

    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    QStringList keyBindingsForAction(const QString& actionName) const override;

  private:
    TKxBinGControl* control() const;
    // The element's press or toggle action; empty when it is not operable now.
    QString clickAction() const;
};

class TKxAdjusterAccessible : public TKxValueAccessible<TKxAnalogCControl> {
  public:
    explicit TKxAdjusterAccessible(TKxAnalogCControl* control);

    void setCurrentValue(const QVariant& value) override;
    QVariant minimumStepSize() const override;

  protected:
    QString alarmState(const TKxAnalogCControl& control) const override;
};

// The QAccessible::InterfaceFactory of the components: an interface above for analog
// controls, adjusters and binary elements, nullptr for any other object.
QAccessibleInterface* KxAccessibleFactory(const QString& className, QObject* object);
// Installs KxAccessibleFactory; calling it again changes nothing (Qt keeps one entry per
// factory). Qt forgets factories when the application object is destroyed, so a later
// application gets it installed again by its first component.
void KxInstallAccessibility();

// Notifications for assistive tools; each does nothing for a null control or while
// QAccessible::isActive() is false (then not even the interface is looked up).
// A new reading or setting. A value exactly representable in single precision (the controls store
// floats) is reported in its shortest decimal form, as currentValue reports it.
void KxAccessibleValueChanged(QObject* control, double value);
// A new text of a component whose value is a text (a counter's time, a label's state).
void KxAccessibleTextChanged(QObject* control, const QString& text);
// A binary element's Checked changed (for a mButton element: its pressed state).
void KxAccessibleStateChanged(QObject* control);
// The Description changed: an analog control's alarm state, a binary element's blinking.
void KxAccessibleDescriptionChanged(QObject* control);

}  // namespace kx
