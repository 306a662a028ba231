#include "staleoverlay.h"

#include <QEvent>
#include <QPainter>

namespace kx::panel {

StaleOverlay::StaleOverlay(QWidget* target) : QWidget(target), target_(target) {
    setObjectName(target->objectName() + QStringLiteral("_stale"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(target->rect());
    target->installEventFilter(this);
    hide();
}

QString StaleOverlay::HintText(const QString& since) {
    return QStringLiteral("no data since ") + since;
}

void StaleOverlay::ShowStale(const QString& since) {
    const QString hint = HintText(since);
    if (!stale_) {
        savedToolTip_ = target_->toolTip();
        savedDescription_ = target_->accessibleDescription();
        stale_ = true;
    }
    target_->setToolTip(hint);
    target_->setAccessibleDescription(hint);
    setToolTip(hint);
    setAccessibleName(hint);
    setAccessibleDescription(hint);
    setGeometry(target_->rect());
    raise();
    show();
}

void StaleOverlay::Clear() {
    if (!stale_) return;
    stale_ = false;
    hide();
    target_->setToolTip(savedToolTip_);
    target_->setAccessibleDescription(savedDescription_);
}

void StaleOverlay::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(96, 96, 96, 110));
    p.fillRect(rect(), QBrush(QColor(0, 0, 0, 150), Qt::BDiagPattern));
}

bool StaleOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == target_ && event->type() == QEvent::Resize) setGeometry(target_->rect());
    return QWidget::eventFilter(watched, event);
}

}  // namespace kx::panel
