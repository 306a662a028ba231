#include "kx/framework/accessible.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QMouseEvent>
#include <QPointer>
#include <charconv>
#include <cmath>
#include <cstring>

#include "kx/framework/adjuster.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/binarycontrol.h"
#include "kx/framework/single.h"

namespace kx {

namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("KxAccessible", text);
}

// A float widened to double shows its binary error (0.1f is 0.100000001490116); readers
// that speak the number itself get the decimal the float stands for.
double decimalOf(float f) {
    if (!std::isfinite(f)) return f;
    char buf[32];
    const auto res = std::to_chars(buf, buf + sizeof buf, f);
    double d = f;
    std::from_chars(buf, res.ptr, d);
    return d;
}

// A double that a float holds exactly is taken for a widened reading.
double reported(double v) {
    const float f = ToSingle(v);
    return double(f) == v ? decimalOf(f) : v;
}

// The application's own description first, then the state words.
QString joined(const QString& own, const QString& state) {
    if (own.isEmpty()) return state;
    if (state.isEmpty()) return own;
    return own + QStringLiteral(", ") + state;
}

QString helpText(const QWidget& w) {
    return w.whatsThis().isEmpty() ? w.toolTip() : w.whatsThis();
}

// Before the first evaluation an indicator has no formatted text yet.
QString valueText(const QString& formatted, float value, const TSignalSettings& s) {
    const QString text =
        formatted.isEmpty() ? QString::number(decimalOf(value)) : formatted.trimmed();
    return s.ValueUnit().isEmpty() ? text : text + QLatin1Char(' ') + s.ValueUnit();
}

QString nameOf(const QWidget& w, const TSignalSettings& s) {
    if (!w.accessibleName().isEmpty()) return w.accessibleName();
    return s.Name1().isEmpty() ? w.objectName() : s.Name1();
}

// The framework cannot link the dial, so the class name decides. The chain is walked
// because a descendant of a dial with a name of its own is still turned like one.
QAccessible::Role adjusterRole(const TKxAnalogCControl& c) {
    for (const QMetaObject* m = c.metaObject(); m && m != &TKxAnalogCControl::staticMetaObject;
         m = m->superClass()) {
        if (std::strstr(m->className(), "Dial")) return QAccessible::Dial;
    }
    return QAccessible::Slider;
}

QString alarmText(const TKxAnalogGControl& c) {
    if (c.OverflowHigh() || c.OverflowLow()) return translated("out of range");
    if (c.UpperExceeded()) return translated("upper limit exceeded");
    if (c.LowerExceeded()) return translated("lower limit exceeded");
    return translated("normal");
}

bool isIndicator(const TKxBinGControl& c) {
    return c.focusPolicy() == Qt::NoFocus || c.Mode() == mIndicator;
}

// A press and a release in the middle of the element: everything a real click runs
// (OnClick, the mode's press and release actions) runs, and a disabled element ignores
// it as it ignores the mouse.
void click(QWidget* w) {
    const QPointF local = QRectF(w->rect()).center();
    const QPointF global = w->mapToGlobal(local);
    QPointer<QWidget> alive(w);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(w, &press);
    if (!alive) return;
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(w, &release);
}

}  // namespace

// --- indicators and adjusters alike ----------------------------------------------------

template <class TControl>
TKxValueAccessible<TControl>::TKxValueAccessible(TControl* control, QAccessible::Role role)
    : QAccessibleWidget(control, role) {}

// qobject_cast rather than a static cast: while QWidget's destructor runs the object is
// no analog control any more, and the platform may still ask.
template <class TControl>
TControl* TKxValueAccessible<TControl>::control() const {
    return qobject_cast<TControl*>(object());
}

template <class TControl>
QString TKxValueAccessible<TControl>::text(QAccessible::Text t) const {
    const TControl* c = control();
    if (!c) return QAccessibleWidget::text(t);
    switch (t) {
        case QAccessible::Name:
            return nameOf(*c, *c->SignalSettings());
        case QAccessible::Value:
            return valueText(c->ValueText(), c->Value(), *c->SignalSettings());
        case QAccessible::Description:
            // QAccessibleWidget would fall back to the tool tip, which Help already gives.
            return joined(c->accessibleDescription(), alarmState(*c));
        case QAccessible::Help:
            return helpText(*c);
        default:
            return QAccessibleWidget::text(t);
    }
}

template <class TControl>
void* TKxValueAccessible<TControl>::interface_cast(QAccessible::InterfaceType t) {
    if (t == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(t);
}

template <class TControl>
QVariant TKxValueAccessible<TControl>::currentValue() const {
    const TControl* c = control();
    return c ? QVariant(decimalOf(c->Value())) : QVariant();
}

template <class TControl>
QVariant TKxValueAccessible<TControl>::maximumValue() const {
    const TControl* c = control();
    return c ? QVariant(decimalOf(c->SignalSettings()->ValueTo())) : QVariant();
}

template <class TControl>
QVariant TKxValueAccessible<TControl>::minimumValue() const {
    const TControl* c = control();
    return c ? QVariant(decimalOf(c->SignalSettings()->ValueFrom())) : QVariant();
}

template class TKxValueAccessible<TKxAnalogGControl>;
template class TKxValueAccessible<TKxAnalogCControl>;

// --- analog ----------------------------------------------------------------------------

TKxAnalogAccessible::TKxAnalogAccessible(TKxAnalogGControl* control)
    : TKxValueAccessible(control, QAccessible::Indicator) {}

QString TKxAnalogAccessible::alarmState(const TKxAnalogGControl& c) const {
    return alarmText(c);
}

void TKxAnalogAccessible::setCurrentValue(const QVariant&) {}

QVariant TKxAnalogAccessible::minimumStepSize() const {
    const TKxAnalogGControl* c = control();
    if (!c) return QVariant();
    return c->LogScale() ? 0.0 : decimalOf(c->SignalSettings()->ValuePerDigit());
}

// --- adjusters ------------------------------------------------------------------------

TKxAdjusterAccessible::TKxAdjusterAccessible(TKxAnalogCControl* control)
    : TKxValueAccessible(control, adjusterRole(*control)) {}

QString TKxAdjusterAccessible::alarmState(const TKxAnalogCControl&) const {
    return QString();
}

void TKxAdjusterAccessible::setCurrentValue(const QVariant& value) {
    TKxAnalogCControl* c = control();
    bool ok = false;
    const double v = value.toDouble(&ok);
    if (!c || !ok || std::isnan(v)) return;
    const int32_t digit = c->Digit();
    const float before = c->Value();
    QPointer<TKxAnalogCControl> alive(c);
    c->setValue(v);
    // SetValue leaves a value that stays on the current digit unsnapped; the grid point
    // is the value it already had.
    if (alive && c->Digit() == digit && c->Value() != before) c->SetValue(before);
}

QVariant TKxAdjusterAccessible::minimumStepSize() const {
    const TKxAnalogCControl* c = control();
    if (!c) return QVariant();
    // What one arrow key moves, from the digit's decimal: 0.01f x 10 in single precision
    // is not 0.1f. A reversed digit span or ChangeSmall would make it negative.
    const double step = decimalOf(c->SignalSettings()->ValuePerDigit()) * c->ChangeSmall();
    return decimalOf(ToSingle(std::fabs(step)));
}

// --- binary ----------------------------------------------------------------------------

TKxBinAccessible::TKxBinAccessible(TKxBinGControl* control)
    : QAccessibleWidget(control, QAccessible::Indicator) {}

TKxBinGControl* TKxBinAccessible::control() const {
    return qobject_cast<TKxBinGControl*>(object());
}

QAccessible::Role TKxBinAccessible::role() const {
    const TKxBinGControl* c = control();
    if (!c || isIndicator(*c)) return QAccessible::Indicator;
    switch (c->Mode()) {
        case mButton:
            return QAccessible::Button;
        case mRadioButton:
            return QAccessible::RadioButton;
        default:
            return QAccessible::CheckBox;
    }
}

QAccessible::State TKxBinAccessible::state() const {
    QAccessible::State s = QAccessibleWidget::state();
    const TKxBinGControl* c = control();
    if (!c) return s;
    if (role() == QAccessible::Button) {
        s.pressed = c->Checked();
        return s;
    }
    s.checkable = true;
    s.checked = c->Checked();
    s.readOnly = isIndicator(*c);
    return s;
}

QString TKxBinAccessible::text(QAccessible::Text t) const {
    const TKxBinGControl* c = control();
    if (!c) return QAccessibleWidget::text(t);
    switch (t) {
        case QAccessible::Name:
            if (!c->accessibleName().isEmpty()) return c->accessibleName();
            return c->Caption().replace(QLatin1Char('|'), QLatin1Char(' ')).simplified();
        case QAccessible::Value:
            if (!isIndicator(*c)) return QString();
            return c->Checked() ? translated("on") : translated("off");
        case QAccessible::Description:
            return joined(c->accessibleDescription(),
                          c->Checked() && c->Flashing() ? translated("blinking") : QString());
        case QAccessible::Help:
            return helpText(*c);
        default:
            return QAccessibleWidget::text(t);
    }
}

QString TKxBinAccessible::clickAction() const {
    const TKxBinGControl* c = control();
    if (!c || isIndicator(*c) || !c->isEnabled()) return QString();
    return c->Mode() == mButton ? pressAction() : toggleAction();
}

QStringList TKxBinAccessible::actionNames() const {
    QStringList names;
    const QString action = clickAction();
    if (!action.isEmpty()) names << action;
    return names + QAccessibleWidget::actionNames();
}

void TKxBinAccessible::doAction(const QString& actionName) {
    const QString action = clickAction();
    if (!action.isEmpty() && actionName == action)
        click(control());
    else
        QAccessibleWidget::doAction(actionName);
}

QStringList TKxBinAccessible::keyBindingsForAction(const QString& actionName) const {
    const QString action = clickAction();
    if (!action.isEmpty() && actionName == action)
        return {QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText)};
    return QAccessibleWidget::keyBindingsForAction(actionName);
}

// --- installation and notifications ----------------------------------------------------

QAccessibleInterface* KxAccessibleFactory(const QString&, QObject* object) {
    // Qt asks for the most derived class name first; answering there, whatever the name,
    // covers every descendant, also those without Q_OBJECT.
    if (auto* analog = qobject_cast<TKxAnalogGControl*>(object))
        return new TKxAnalogAccessible(analog);
    if (auto* adjuster = qobject_cast<TKxAnalogCControl*>(object))
        return new TKxAdjusterAccessible(adjuster);
    if (auto* binary = qobject_cast<TKxBinGControl*>(object)) return new TKxBinAccessible(binary);
    return nullptr;
}

void KxInstallAccessibility() {
    // Qt ignores a factory it has already; no flag of our own, which would miss the
    // reinstallation after Qt drops its factories with the application object.
    QAccessible::installFactory(&KxAccessibleFactory);
}

void KxAccessibleValueChanged(QObject* control, double value) {
    // Checked first: sending would look the interface up even with nobody listening.
    if (!control || !QAccessible::isActive()) return;
    QAccessibleValueChangeEvent e(control, reported(value));
    QAccessible::updateAccessibility(&e);
}

void KxAccessibleTextChanged(QObject* control, const QString& text) {
    if (!control || !QAccessible::isActive()) return;
    QAccessibleValueChangeEvent e(control, text);
    QAccessible::updateAccessibility(&e);
}

void KxAccessibleStateChanged(QObject* control) {
    if (!control || !QAccessible::isActive()) return;
    QAccessible::State changed;
    const auto* binary = qobject_cast<TKxBinGControl*>(control);
    if (binary && !isIndicator(*binary) && binary->Mode() == mButton)
        changed.pressed = true;
    else
        changed.checked = true;
    QAccessibleStateChangeEvent e(control, changed);
    QAccessible::updateAccessibility(&e);
}

void KxAccessibleDescriptionChanged(QObject* control) {
    if (!control || !QAccessible::isActive()) return;
    QAccessibleEvent e(control, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&e);
}

}  // namespace kx
