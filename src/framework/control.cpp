#include "framework/control.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>

namespace kx {

TKxControl::TKxControl(QWidget* parent) : QWidget(parent) {
    // The surface is the only thing shown; nothing of the widget's own background.
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAutoFillBackground(false);
    surface_.Canvas().SetOnDraw([this] { surfaceTouched(); });
}

TKxControl::~TKxControl() {
    surface_.Canvas().SetOnDraw(nullptr);
}

void TKxControl::EndUpdate() {
    if (updateCount_ > 0) --updateCount_;
    if (updateCount_ == 0) Change();
}

void TKxControl::Change() {
    if (updateCount_ == 0) ParamChange(this);
}

void TKxControl::Loaded() {
    loaded_ = true;
}

void TKxControl::Invalidate() {
    redrawNeeded_ = true;
    paintPending_ = true;
    update();
}

void TKxControl::ParamChange(QObject*) {}

void TKxControl::Paint() {}

void TKxControl::WMFlash(TMessage&) {}

bool TKxControl::Visible() const {
    return !(testAttribute(Qt::WA_WState_ExplicitShowHide) && testAttribute(Qt::WA_WState_Hidden));
}

void TKxControl::SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) {
    const QSize before = size();
    setGeometry(left, top, std::max(width, 0), std::max(height, 0));
    if (size() != before) updateGeometry();
    // A widget that is not shown gets no resize event; keep the surface in step anyway.
    ensureSurfaceSize();
}

void TKxControl::ensureSurfaceSize() {
    if (surface_.Width() == width() && surface_.Height() == height()) return;
    surface_.SetSize(width(), height());
    surface_.ClearTransparent();
    // A control that sizes itself at the start of its Paint draws the rest into the new
    // surface; only a resize from outside needs another Paint.
    if (!inPaint_) paintPending_ = true;
    redrawNeeded_ = true;
}

void TKxControl::surfaceTouched() {
    if (inPaint_ || screenUpdatePending_) return;
    screenUpdatePending_ = true;
    update();
}

void TKxControl::PaintToSurface() {
    if (!loaded_) Loaded();
    ensureSurfaceSize();
    // Nothing is drawn during an update phase; the surface keeps its last picture.
    if (!paintPending_ || updateCount_ > 0) return;
    paintPending_ = false;
    const bool wasInPaint = inPaint_;
    inPaint_ = true;
    surface_.ClearTransparent();
    Paint();
    inPaint_ = wasInPaint;
    update();
}

bool TKxControl::event(QEvent* e) {
    switch (e->type()) {
        case QEvent::Polish:
            if (!loaded_) Loaded();
            break;
        case QEvent::Show:
            // Readings that arrived while hidden were not drawn.
            Invalidate();
            break;
        case QEvent::ToolTip:
            if (showHint_) {
                const QString text = Hint();
                auto* help = static_cast<QHelpEvent*>(e);
                if (text.isEmpty())
                    QToolTip::hideText();
                else
                    QToolTip::showText(help->globalPos(), text, this);
            }
            e->accept();
            return true;
        default:
            break;
    }
    return QWidget::event(e);
}

void TKxControl::paintEvent(QPaintEvent* e) {
    screenUpdatePending_ = false;
    PaintToSurface();
    QPainter p(this);
    const QRect r = e->rect();
    p.drawImage(r.topLeft(), surface_.Image(), r);
}

void TKxControl::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    ensureSurfaceSize();
}

void TKxControl::mouseReleaseEvent(QMouseEvent* e) {
    QWidget::mouseReleaseEvent(e);
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()))
        emit OnClick(this);
}

void TKxControl::mouseDoubleClickEvent(QMouseEvent* e) {
    QWidget::mouseDoubleClickEvent(e);
    emit OnDblClick(this);
}

TKxGraphicControl::TKxGraphicControl(QWidget* parent) : TKxControl(parent) {
    setFocusPolicy(Qt::NoFocus);
}

TKxCustomControl::TKxCustomControl(QWidget* parent) : TKxControl(parent) {
    setFocusPolicy(Qt::WheelFocus);
}

}  // namespace kx
