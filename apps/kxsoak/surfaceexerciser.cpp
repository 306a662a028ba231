#include "surfaceexerciser.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <array>

namespace kxsoak {

void Pump() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ResizeRandom(TSoakStage& stage, TValuePool& pool) {
    static constexpr std::array kEdges = {QSize(1, 1),   QSize(0, 0), QSize(1, 300),
                                          QSize(300, 1), QSize(2, 2), QSize(600, 17)};
    if (pool.OneIn(6)) {
        const QSize size = kEdges[size_t(pool.Between(0, int(kEdges.size()) - 1))];
        stage.Resize(size.width(), size.height());
    } else {
        stage.Resize(pool.Between(1, 400), pool.Between(1, 300));
    }
}

void ResizeHuge(TSoakStage& stage, TValuePool& pool, bool square) {
    static constexpr std::array kHuge = {QSize(4000, 3), QSize(3, 4000), QSize(4000, 4000)};
    const QSize size = kHuge[size_t(pool.Between(0, int(kHuge.size()) - (square ? 1 : 2)))];
    stage.Resize(size.width(), size.height());
}

void Flicker(TSoakStage& stage, TValuePool& pool) {
    const bool whole = pool.OneIn(4);
    for (int i = 0; i < 3; ++i) {
        // Pumping runs deferred deletions, the subject's among them.
        const QPointer<QWidget> target = whole ? stage.Window() : stage.Subject();
        if (!target) return;
        target->hide();
        if (pool.OneIn(2)) Pump();
        if (target) target->show();
    }
}

void PaintNow(TSoakStage& stage, TValuePool& pool) {
    QPointer<QWidget> subject = stage.Subject();
    if (!subject) return;
    if (pool.OneIn(2)) {
        subject->grab();
    } else {
        subject->repaint();
    }
    Pump();
}

}  // namespace kxsoak
