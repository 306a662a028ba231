#include "recorderfeeder.h"

#include "kx/recorders/minitrend.h"
#include "kx/recorders/trend.h"
#include "rangeshaper.h"

namespace kxsoak {

namespace {

int ChannelCount(const QWidget* component) {
    return qobject_cast<const kx::TKxTrend*>(component) ? 8 : 4;
}

QObject* Channel(QWidget* component, int ch) {
    return component->property(QByteArray("Channel") + QByteArray::number(ch)).value<QObject*>();
}

void AddByHand(QWidget* component, TValuePool& pool) {
    if (auto* trend = qobject_cast<kx::TKxTrend*>(component)) {
        trend->AddValue(pool.Float(), pool.Float(), pool.Float(), pool.Float(), pool.Float(),
                        pool.Float(), pool.Float(), pool.Float());
    } else if (auto* mini = qobject_cast<kx::TKxMiniTrend*>(component)) {
        mini->AddValue(pool.Float(), pool.Float(), pool.Float(), pool.Float());
    }
}

void MoveView(kx::TKxTrend* trend, TValuePool& pool) {
    switch (pool.Between(0, 3)) {
        case 0:
            trend->MoveX(pool.Int());
            break;
        case 1:
            trend->SetZoomY(pool.Float(3));
            break;
        case 2:
            trend->MoveY(pool.Int());
            break;
        default:
            trend->SetCursorLineAt(pool.Int(), pool.Int());
            break;
    }
}

}  // namespace

bool TRecorderFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxTrend*>(component) ||
           qobject_cast<const kx::TKxMiniTrend*>(component);
}

void TRecorderFeeder::Feed(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    const int ch = int(context.Step % ChannelCount(component)) + 1;
    if (QObject* channel = Channel(component, ch)) {
        channel->setProperty("Value", pool.OneIn(3) ? pool.Float() : pool.Wave(context.Step));
    }
    if (context.Step % 7 == 0 && !component->property("StartRecording").toBool()) {
        AddByHand(component, pool);
    }
}

void TRecorderFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    auto* trend = qobject_cast<kx::TKxTrend*>(component);
    switch (pool.Between(0, 5)) {
        case 0:
            component->setProperty("StartRecording", !pool.OneIn(4));
            break;
        case 1:
            component->setProperty("Interval", unsigned(pool.Between(90, 400)));
            break;
        case 2:
            ReshapeRange(component, "Channel" + QByteArray::number(pool.Between(1, 4)), pool);
            break;
        case 3:
            if (trend) trend->SetFlow(!pool.OneIn(4));
            if (trend && pool.OneIn(2)) trend->RunInterval2(pool.Between(-1, 20));
            break;
        case 4:
            if (trend) MoveView(trend, pool);
            break;
        default:
            Settle(component);
            break;
    }
}

void TRecorderFeeder::Settle(QWidget* component) {
    if (auto* trend = qobject_cast<kx::TKxTrend*>(component)) trend->ClearRecords();
    if (auto* mini = qobject_cast<kx::TKxMiniTrend*>(component)) mini->ClearRecords();
}

}  // namespace kxsoak
