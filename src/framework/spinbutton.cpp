#include "kx/framework/spinbutton.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/shapes.h"
#include "kx/host/clock.h"
#include "kx/host/color.h"

namespace kx {
namespace {

// The arrow as rows of FillRect: row k spans k pixels either side of the tip column.
void DrawArrow(TCanvas& canvas, int32_t tipX, int32_t top, int32_t rows, bool up, TColor color) {
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color);
    for (int32_t k = 0; k < rows; ++k) {
        const int32_t half = up ? k : rows - 1 - k;
        canvas.FillRect(TRect{tipX - half, top + k, tipX + half + 1, top + k + 1});
    }
}

bool CanTakeFocus(const QWidget* w) {
    return w->isVisible() && w->isEnabled();
}

}  // namespace

// ---- TKxTimerSpeedBtn ------------------------------------------------------------

TKxTimerSpeedBtn::TKxTimerSpeedBtn(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::NoFocus);
    // The bitmap covers every pixel; nothing of the background needs painting first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(23, 22);
}

TKxTimerSpeedBtn::~TKxTimerSpeedBtn() {
    DelControl(this);
}

void TKxTimerSpeedBtn::SetInterval(int32_t ms) {
    if (ms < kMinInterval) return;
    interval_ = ms;
    if (repeating_) AddControl(this, interval_);
}

void TKxTimerSpeedBtn::SetTimerEnabled(bool enabled) {
    timerEnabled_ = enabled;
    if (!enabled) stopRepeat();
}

void TKxTimerSpeedBtn::SetArrowGlyph(TArrowGlyph glyph) {
    if (glyph < agNone || glyph > agDown) return;
    if (glyph == glyph_) return;
    glyph_ = glyph;
    update();
}

void TKxTimerSpeedBtn::Click() {
    if (isEnabled()) emit clicked(isChecked());
}

void TKxTimerSpeedBtn::startRepeat() {
    if (designing_) return;
    pressTick_ = GetTickCount();
    heldDelay_ = startDelay_;
    repeating_ = true;
    AddControl(this, interval_);
}

void TKxTimerSpeedBtn::stopRepeat() {
    if (!repeating_) return;
    repeating_ = false;
    DelControl(this);
}

void TKxTimerSpeedBtn::WMFlash(TMessage&) {
    if (!repeating_ || !isDown()) return;
    // Elapsed time rather than a comparison with NextTime, so that the tick count
    // wrapping during the delay neither skips nor stretches it.
    if (GetTickCount() - pressTick_ < heldDelay_) return;
    Click();
}

void TKxTimerSpeedBtn::mousePressEvent(QMouseEvent* e) {
    // A pressed() handler may destroy the button.
    const QPointer<TKxTimerSpeedBtn> self(this);
    QAbstractButton::mousePressEvent(e);
    if (self && timerEnabled_ && isDown() && e->button() == Qt::LeftButton) startRepeat();
}

void TKxTimerSpeedBtn::mouseReleaseEvent(QMouseEvent* e) {
    // The release's own click may destroy the button (its destructor unsubscribes).
    const QPointer<TKxTimerSpeedBtn> self(this);
    QAbstractButton::mouseReleaseEvent(e);
    if (self && e->button() == Qt::LeftButton) stopRepeat();
}

void TKxTimerSpeedBtn::changeEvent(QEvent* e) {
    // The base lets a button disabled while held come up.
    QAbstractButton::changeEvent(e);
    if (e->type() == QEvent::EnabledChange && !isEnabled()) stopRepeat();
}

void TKxTimerSpeedBtn::hideEvent(QHideEvent* e) {
    QAbstractButton::hideEvent(e);
    // A hidden widget loses the mouse, so no release would end the hold.
    if (isDown()) setDown(false);
    stopRepeat();
}

void TKxTimerSpeedBtn::PaintToSurface() {
    surface_.SetDeviceGrid(devicePixelRatioF());
    surface_.SetSize(width(), height());
    paintButton(surface_.Canvas());
}

void TKxTimerSpeedBtn::paintButton(TCanvas& canvas) {
    const int32_t w = width();
    const int32_t h = height();
    if (w <= 0 || h <= 0) return;
    const bool down = isDown();
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(clBtnFace);
    TRect face{0, 0, w, h};
    KxBtnBevel(canvas, face, !down, true, clBtnFace);
    if (glyph_ == agNone) return;

    const int32_t rows = std::min((h - 4) / 2, (w - 7) / 2);
    if (rows < 1) return;
    const int32_t tipX = (w - 1) / 2 + (down ? 1 : 0);
    const int32_t top = (h - rows) / 2 + (down ? 1 : 0);
    const bool up = glyph_ == agUp;
    if (isEnabled()) {
        DrawArrow(canvas, tipX, top, rows, up, clBtnText);
    } else {
        DrawArrow(canvas, tipX + 1, top + 1, rows, up, clBtnHighlight);
        DrawArrow(canvas, tipX, top, rows, up, clBtnShadow);
    }
}

void TKxTimerSpeedBtn::paintEvent(QPaintEvent* e) {
    PaintToSurface();
    surface_.Canvas().Release();
    QPainter p(this);
    KxBlitSurface(p, surface_, e->rect());
}

// ---- TKxSpinButton -------------------------------------------------------------

TKxSpinButton::TKxSpinButton(QWidget* parent)
    : TKxCustomControl(parent), up_(new TKxTimerSpeedBtn(this)), down_(new TKxTimerSpeedBtn(this)) {
    setFocusPolicy(Qt::NoFocus);
    setMinimumWidth(kMinWidth);
    up_->SetArrowGlyph(TKxTimerSpeedBtn::agUp);
    down_->SetArrowGlyph(TKxTimerSpeedBtn::agDown);
    // The arrows are drawn, not written: screen readers get their names here.
    up_->setAccessibleName(QStringLiteral("Up"));
    down_->setAccessibleName(QStringLiteral("Down"));
    for (TKxTimerSpeedBtn* b : {up_, down_})
        b->installEventFilter(this);
    connect(up_, &QAbstractButton::clicked, this, [this] { emit OnUpClick(this); });
    connect(down_, &QAbstractButton::clicked, this, [this] { emit OnDownClick(this); });
    resize(kMinWidth, 24);
    adjustButtons();
}

void TKxSpinButton::SetInterval(int32_t ms) {
    up_->SetInterval(ms);
    down_->SetInterval(ms);
}

void TKxSpinButton::SetStartDelay(int32_t ms) {
    up_->SetStartDelay(static_cast<uint32_t>(ms));
    down_->SetStartDelay(static_cast<uint32_t>(ms));
}

void TKxSpinButton::SetTabStop(bool tabStop) {
    setFocusPolicy(tabStop ? Qt::TabFocus : Qt::NoFocus);
}

void TKxSpinButton::SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) {
    TKxCustomControl::SetBounds(left, top, std::max(width, kMinWidth), height);
    adjustButtons();
}

void TKxSpinButton::Loaded() {
    TKxCustomControl::Loaded();
    adjustButtons();
}

void TKxSpinButton::adjustButtons() {
    const int32_t upHeight = height() / 2;
    up_->setGeometry(0, 0, width(), upHeight);
    down_->setGeometry(0, upHeight, width(), height() - upHeight);
}

void TKxSpinButton::pressFocus() {
    QWidget* target = focusControl_.data();
    if (target && (target->focusPolicy() & Qt::TabFocus) && CanTakeFocus(target) &&
        !target->hasFocus()) {
        target->setFocus(Qt::MouseFocusReason);
        return;
    }
    if (TabStop() && CanTakeFocus(this) && !hasFocus()) setFocus(Qt::MouseFocusReason);
}

bool TKxSpinButton::eventFilter(QObject* watched, QEvent* e) {
    if (e->type() == QEvent::MouseButtonPress && (watched == up_ || watched == down_) &&
        static_cast<QMouseEvent*>(e)->button() == Qt::LeftButton &&
        static_cast<QWidget*>(watched)->isEnabled())
        pressFocus();
    return TKxCustomControl::eventFilter(watched, e);
}

void TKxSpinButton::keyPressEvent(QKeyEvent* e) {
    switch (e->key()) {
        case Qt::Key_Up:
            up_->Click();
            break;
        case Qt::Key_Down:
            down_->Click();
            break;
        default:
            TKxCustomControl::keyPressEvent(e);
            return;
    }
    e->accept();
}

void TKxSpinButton::resizeEvent(QResizeEvent* e) {
    TKxCustomControl::resizeEvent(e);
    adjustButtons();
}

void TKxSpinButton::changeEvent(QEvent* e) {
    TKxCustomControl::changeEvent(e);
    if (e->type() == QEvent::EnabledChange) {
        up_->setEnabled(isEnabled());
        down_->setEnabled(isEnabled());
    }
}

}  // namespace kx
