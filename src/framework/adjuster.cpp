#include "kx/framework/adjuster.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "kx/drawing/geometry.h"
#include "kx/framework/accessible.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int32_t kNotch = 120;

int32_t clampDigit(int64_t d, const TSignalSettings& s) {
    // The upper end first, so a reversed digit span ends at DigitalFrom.
    if (d > s.DigitalTo()) d = s.DigitalTo();
    if (d < s.DigitalFrom()) d = s.DigitalFrom();
    return int32_t(d);
}

}  // namespace

TKxAnalogCControl::TKxAnalogCControl(QWidget* parent)
    : TKxCustomControl(parent), signalSettings_(new TSignalSettings(this)), font_(new TFont(this)) {
    BeginUpdate();
    font_->SetName(QStringLiteral("MS Sans Serif"));
    font_->SetSize(10);
    setMouseTracking(true);
    signalSettings_->CalcDerived();
    digit_ = digitOf(value_);
    valueText_ = FormatFloat(signalSettings_->ValueFormat(), value_);
    digitText_ = QString::number(digit_);
}

TKxAnalogCControl::~TKxAnalogCControl() = default;

int32_t TKxAnalogCControl::digitOf(float value) const {
    const TSignalSettings& s = *signalSettings_;
    const float d = float(s.DigitalFrom()) + (value - s.ValueFrom()) * s.DigitPerValue();
    return Round(double(d));
}

void TKxAnalogCControl::SetValue(float v) {
    if (std::isnan(v)) return;
    if (v == value_ && UpdateCount() == 0) return;
    if (signalSettings_->DigitPerValue() == 0.0f) signalSettings_->CalcDerived();
    if (v > signalSettings_->ValueTo()) v = signalSettings_->ValueTo();
    if (v < signalSettings_->ValueFrom()) v = signalSettings_->ValueFrom();
    value_ = v;
    const int32_t d = digitOf(value_);
    if (d == digit_ && UpdateCount() == 0) {
        // Nothing changes, but the value still lies on the digit grid.
        value_ = gridValue(digit_);
        return;
    }
    SetDigit(d);
}

float TKxAnalogCControl::gridValue(int32_t digit) const {
    const TSignalSettings& s = *signalSettings_;
    return s.ValueFrom() + float(int64_t(digit) - s.DigitalFrom()) * s.ValuePerDigit();
}

void TKxAnalogCControl::SetDigit(int32_t d) {
    if (d == digit_ && UpdateCount() == 0) return;
    const TSignalSettings& s = *signalSettings_;
    digit_ = clampDigit(d, s);
    value_ = gridValue(digit_);
    QPointer<TKxAnalogCControl> alive(this);
    ValueChange();
    if (!alive) return;
    // Before the handlers, which may delete the control.
    KxAccessibleValueChanged(this, value_);
    emit OnValueChange(this);
    if (alive) valueChangedPending_ = true;
}

void TKxAnalogCControl::DoChange(int32_t up, int32_t down) {
    const int64_t next = up >= 1 ? int64_t(digit_) + up : int64_t(digit_) - down;
    SetDigit(clampDigit(next, *signalSettings_));
}

void TKxAnalogCControl::SetSignalSettings(const TSignalSettings* v) {
    if (v && v != signalSettings_) signalSettings_->Assign(v);
}

void TKxAnalogCControl::SetColorFocus(TColorArg c) {
    if (colorFocus_ == TColor(c)) return;
    colorFocus_ = c;
    ParamChange(this);
}

void TKxAnalogCControl::SetColorNonFocus(TColorArg c) {
    if (colorNonFocus_ == TColor(c)) return;
    colorNonFocus_ = c;
    ParamChange(this);
}

void TKxAnalogCControl::SetFont(const TFont* f) {
    if (f && f != font_) font_->Assign(*f);
}

TColor TKxAnalogCControl::StateColor() const {
    if (!isEnabled()) return clBtnShadow;
    return hasFocus() ? colorFocus_ : colorNonFocus_;
}

void TKxAnalogCControl::SetValueIndicator(TKxAnalogGControl* indicator) {
    indicator_ = indicator;
    if (!indicator) return;
    indicator->SetSignalSettings(signalSettings_);
    ValueChange();
}

void TKxAnalogCControl::ValueChange() {
    valueText_ = FormatFloat(signalSettings_->ValueFormat(), value_);
    digitText_ = QString::number(digit_);
    if (indicator_) indicator_->SetValue(value_);
}

void TKxAnalogCControl::ParamChange(QObject* sender) {
    TKxCustomControl::ParamChange(sender);
    signalSettings_->CalcDerived();
    if (indicator_) indicator_->SetSignalSettings(signalSettings_);
    digit_ = clampDigit(digitOf(value_), *signalSettings_);
}

void TKxAnalogCControl::Loaded() {
    TKxCustomControl::Loaded();
    signalSettings_->CalcDerived();
    const auto handler = [this](QObject* sender) {
        if (UpdateCount() == 0) ParamChange(sender);
    };
    signalSettings_->SetOnChange(handler);
    font_->SetOnChange(handler);
    digit_ = clampDigit(digitOf(value_), *signalSettings_);
    EndUpdate();
}

void TKxAnalogCControl::MouseSlide(Qt::KeyboardModifiers, int32_t x, int32_t y, TPoint) {
    lastMousePos_ = TPoint{x, y};
}

void TKxAnalogCControl::reportFinished() {
    if (!valueChangedPending_) return;
    valueChangedPending_ = false;
    emit OnValueChanged(this);
}

void TKxAnalogCControl::keyPressEvent(QKeyEvent* e) {
    TKxCustomControl::keyPressEvent(e);
    if (!enableKeyboard_) return;
    const auto allowed = [this](TEnabledKey k) { return (enabledKeys_ & EnabledKey(k)) != 0; };
    switch (e->key()) {
        case Qt::Key_PageUp:
            if (allowed(_VK_PRIOR)) DoChange(changeLarge_, 0);
            break;
        case Qt::Key_PageDown:
            if (allowed(_VK_NEXT)) DoChange(0, changeLarge_);
            break;
        case Qt::Key_End:
            if (allowed(_VK_END)) SetDigit(signalSettings_->DigitalTo());
            break;
        case Qt::Key_Home:
            if (allowed(_VK_HOME)) SetDigit(signalSettings_->DigitalFrom());
            break;
        case Qt::Key_Left:
            if (allowed(_VK_LEFT)) DoChange(0, changeSmall_);
            break;
        case Qt::Key_Down:
            if (allowed(_VK_DOWN)) DoChange(0, changeSmall_);
            break;
        case Qt::Key_Up:
            if (allowed(_VK_UP)) DoChange(changeSmall_, 0);
            break;
        case Qt::Key_Right:
            if (allowed(_VK_RIGHT)) DoChange(changeSmall_, 0);
            break;
        default:
            return;
    }
    // The control keeps the arrows: they never move the focus.
    e->accept();
}

void TKxAnalogCControl::keyReleaseEvent(QKeyEvent* e) {
    TKxCustomControl::keyReleaseEvent(e);
    if (!e->isAutoRepeat()) reportFinished();
}

void TKxAnalogCControl::wheelNotch(bool up) {
    QPointer<TKxAnalogCControl> alive(this);
    if (up)
        DoChange(changeSmall_, 0);
    else
        DoChange(0, changeSmall_);
    if (alive) reportFinished();
}

void TKxAnalogCControl::wheelEvent(QWheelEvent* e) {
    e->accept();
    if (Designing()) return;
    const QPoint a = e->angleDelta();
    const int32_t delta = a.y() != 0 ? a.y() : a.x();
    if (delta == 0) return;
    if (delta > kNotch || delta < -kNotch) {
        // One event of several notches: judged by its low byte, as classic wheels were.
        wheelSum_ = 0;
        const int32_t low = delta & 0xFF;
        if (low == 0x78) wheelNotch(true);
        if (low == 0x88) wheelNotch(false);
        return;
    }
    if ((wheelSum_ > 0 && delta < 0) || (wheelSum_ < 0 && delta > 0)) wheelSum_ = 0;
    wheelSum_ += delta;
    if (wheelSum_ >= kNotch) {
        wheelSum_ -= kNotch;
        wheelNotch(true);
    } else if (wheelSum_ <= -kNotch) {
        wheelSum_ += kNotch;
        wheelNotch(false);
    }
}

bool TKxAnalogCControl::hitTest(TPoint p) const {
    return HitIsCircle ? KxInCircle(p.X, p.Y, HitRect) : KxInRect(p.X, p.Y, HitRect);
}

void TKxAnalogCControl::mousePressEvent(QMouseEvent* e) {
    TKxCustomControl::mousePressEvent(e);
    if (e->button() != Qt::LeftButton) return;
    if (focusPolicy() != Qt::NoFocus) setFocus(Qt::MouseFocusReason);
    const TPoint p{int32_t(e->position().x()), int32_t(e->position().y())};
    inHitArea_ = hitTest(p);
    if (!inHitArea_) return;
    sliding_ = true;
    QPointer<TKxAnalogCControl> alive(this);
    MouseSlide(e->modifiers(), p.X, p.Y, lastMousePos_);
    if (alive) lastMousePos_ = p;
}

void TKxAnalogCControl::mouseMoveEvent(QMouseEvent* e) {
    TKxCustomControl::mouseMoveEvent(e);
    const TPoint p{int32_t(e->position().x()), int32_t(e->position().y())};
    inHitArea_ = hitTest(p);
    if (inHitArea_ && cursor().shape() != cursorSlide_) {
        normalCursor_ = cursor();
        setCursor(cursorSlide_);
    } else if (!inHitArea_ && cursor().shape() != normalCursor_.shape()) {
        setCursor(normalCursor_);
    }
    if (sliding_) MouseSlide(e->modifiers(), p.X, p.Y, lastMousePos_);
}

void TKxAnalogCControl::mouseReleaseEvent(QMouseEvent* e) {
    QPointer<TKxAnalogCControl> alive(this);
    TKxCustomControl::mouseReleaseEvent(e);
    if (!alive || e->button() != Qt::LeftButton) return;
    sliding_ = false;
    reportFinished();
}

void TKxAnalogCControl::focusInEvent(QFocusEvent* e) {
    TKxCustomControl::focusInEvent(e);
    ValueChange();
}

void TKxAnalogCControl::focusOutEvent(QFocusEvent* e) {
    TKxCustomControl::focusOutEvent(e);
    ValueChange();
}

void TKxAnalogCControl::changeEvent(QEvent* e) {
    TKxCustomControl::changeEvent(e);
    if (e->type() == QEvent::EnabledChange) ValueChange();
}

}  // namespace kx
