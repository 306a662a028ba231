#include "kx/entry/numspin.h"

#include <QApplication>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QStyle>
#include <algorithm>

namespace kx {

TKxNumSpin::TKxNumSpin(QWidget* parent) : TKxNumEdit(parent), spin_(new TKxSpinButton(this)) {
    spin_->SetFocusControl(this);
    connect(spin_, &TKxSpinButton::OnUpClick, this, [this] { UpClick(); });
    connect(spin_, &TKxSpinButton::OnDownClick, this, [this] { DownClick(); });
    setMinimumHeight(MinimumHeight());
    placeButton();
    enableButtons();
}

int32_t TKxNumSpin::MinimumHeight() const {
    const int own = QFontMetrics(font()).height();
    const int system = QFontMetrics(QApplication::font()).height();
    return own + std::min(own, system) / 4 + 4 + 2;
}

void TKxNumSpin::placeButton() {
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    const int w = TKxSpinButton::kMinWidth;
    spin_->SetBounds(width() - frame - w, frame, w, std::max(1, height() - 2 * frame));
    setTextMargins(0, 0, w + 2, 0);
}

void TKxNumSpin::resizeEvent(QResizeEvent* e) {
    TKxNumEdit::resizeEvent(e);
    placeButton();
}

void TKxNumSpin::enableButtons() {
    const bool on = isEnabled() && State() == esNormal;
    spin_->setEnabled(isEnabled());
    spin_->UpButton()->setEnabled(on && !AtUpperLimit());
    spin_->DownButton()->setEnabled(on && !AtLowerLimit());
}

void TKxNumSpin::Limit() {
    enableButtons();
    TKxNumEdit::Limit();
}

void TKxNumSpin::SetState(TNumEditState s) {
    const bool changed = s != State();
    TKxNumEdit::SetState(s);
    if (changed) enableButtons();
}

void TKxNumSpin::changeEvent(QEvent* e) {
    TKxNumEdit::changeEvent(e);
    if (e->type() == QEvent::EnabledChange) enableButtons();
    if (e->type() == QEvent::FontChange || e->type() == QEvent::StyleChange) {
        setMinimumHeight(MinimumHeight());
        placeButton();
    }
}

void TKxNumSpin::focusOutEvent(QFocusEvent* e) {
    TKxNumEdit::focusOutEvent(e);
    // A button held while the focus left stops repeating: released away from it.
    for (TKxTimerSpeedBtn* b : {spin_->UpButton(), spin_->DownButton()}) {
        if (!b->isDown()) continue;
        const QPointF away(-1.0, -1.0);
        QMouseEvent up(QEvent::MouseButtonRelease, away, b->mapToGlobal(away), Qt::LeftButton,
                       Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(b, &up);
    }
}

}  // namespace kx
