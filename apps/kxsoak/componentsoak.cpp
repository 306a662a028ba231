#include "componentsoak.h"

#include <QHash>
#include <QPixmapCache>
#include <QPointer>
#include <algorithm>
#include <array>

#include "rssprobe.h"
#include "surfaceexerciser.h"

namespace kxsoak {

namespace {

double PerMillion(int64_t kib, int64_t readings) {
    return readings > 0 ? double(kib) * 1e6 / double(readings) : 0.0;
}

double MedianRate(const std::array<int64_t, 4>& kib, const std::array<int64_t, 4>& readings) {
    std::array<double, 4> rates{};
    for (size_t q = 0; q < rates.size(); ++q)
        rates[q] = PerMillion(kib[q], readings[q]);
    std::sort(rates.begin(), rates.end());
    return (rates[1] + rates[2]) / 2;
}

}  // namespace

TComponentSoak::TComponentSoak(const kx::TKxCatalogueEntry& entry, TFeeder& feeder,
                               TBlinkDriver& blink, uint64_t seed, int64_t readings,
                               int64_t churnEvery)
    : entry_(entry),
      feeder_(feeder),
      blink_(blink),
      readings_(readings),
      churnEvery_(churnEvery),
      pool_(seed ^ qHash(entry.ClassName)),
      fuzzer_(pool_),
      hub_(pool_, [this] { return stage_ ? stage_->Components() : std::vector<QWidget*>{}; }),
      context_{pool_, blink_, hub_} {
    // Short runs delete often enough to matter; long ones about twice per thousand
    // signals.
    hub_.SetRate(int(std::clamp<int64_t>(readings / 5, 20, 500)));
}

TSoakResult TComponentSoak::Run() {
    QElapsedTimer clock;
    clock.start();
    stage_.emplace(entry_, [this](QWidget* component) {
        feeder_.Prepare(component);
        hub_.Watch(component);
    });
    const int64_t warmUp = std::max<int64_t>(1, readings_ / 2);
    TSoakResult result;
    int64_t i = 0;
    for (; i < warmUp; ++i)
        step(i);
    pool_.SetModerate(true);
    TMemory before = settleAndMeasure();
    result.WarmKiB = before.Resident;
    result.WarmHeapKiB = before.Heap;
    std::array<int64_t, 4> quarterReadings{};
    for (size_t q = 0; q < quarterReadings.size(); ++q) {
        const int64_t start = i;
        const int64_t end = warmUp + (readings_ - warmUp) * int64_t(q + 1) / 4;
        for (; i < end; ++i)
            step(i);
        const TMemory now = settleAndMeasure();
        result.QuarterKiB[q] = now.Resident - before.Resident;
        result.HeapQuarterKiB[q] = now.Heap - before.Heap;
        quarterReadings[q] = end - start;
        before = now;
    }
    result.EndKiB = before.Resident;
    stage_.reset();
    Pump();

    result.ClassName = entry_.ClassName;
    result.Readings = readings_;
    result.Signals = hub_.Signals();
    result.Deletions = hub_.Deletions();
    result.Recreated = recreated_;
    result.TotalKiBPerMillion = PerMillion(result.EndKiB - result.WarmKiB, readings_ - warmUp);
    result.GrowthKiBPerMillion = MedianRate(result.QuarterKiB, quarterReadings);
    result.HeapKiBPerMillion = MedianRate(result.HeapQuarterKiB, quarterReadings);
    result.Seconds = double(clock.nsecsElapsed()) / 1e9;
    return result;
}

int64_t TComponentSoak::period(int64_t steps) const {
    return std::max<int64_t>(1, std::min(steps, readings_ / 8));
}

QWidget* TComponentSoak::anyComponent() {
    const std::vector<QWidget*> all = stage_->Components();
    if (all.empty()) return nullptr;
    return all[size_t(pool_.Between(0, int(all.size()) - 1))];
}

void TComponentSoak::step(int64_t i) {
    recreated_ += stage_->Refill();
    context_.Step = i;
    feedOne(i);
    blink_.Tick();
    if (i % period(churnEvery_) == 0) {
        if (QWidget* target = pool_.OneIn(4) ? anyComponent() : stage_->Subject()) {
            fuzzer_.ChangeOne(target);
        }
    } else if (i % period(churnEvery_) == period(churnEvery_) / 2) {
        fuzzer_.ShortenLongTexts();
    }
    if (i % period(61) == 0) Pump();
    exercise(i);
}

void TComponentSoak::feedOne(int64_t i) {
    // Mostly the subject; every third reading one of its siblings, so that groups and
    // shared words see traffic from both sides.
    QWidget* target = i % 3 == 2 ? anyComponent() : stage_->Subject();
    if (target) feeder_.Feed(target, context_);
}

void TComponentSoak::exercise(int64_t i) {
    if (i % period(6 * churnEvery_) == 0) {
        // Deferred deletions first: a burst of posted readings needs a live subject.
        Pump();
        recreated_ += stage_->Refill();
        if (QWidget* subject = stage_->Subject()) feeder_.Reshape(subject, context_);
    }
    if (i % period(251) == 0) {
        ResizeRandom(*stage_, pool_);
        if (pool_.OneIn(2)) Flicker(*stage_, pool_);
        PaintNow(*stage_, pool_);
    }
    if (i % period(5003) == 0 && stage_->Subject()) fuzzer_.SweepEnumsAndBools(stage_->Subject());
    // Huge sizes: at a twentieth of the readings, then every 200 000 readings, in the
    // warm-up only: Qt's font cache keeps the glyphs of a 4000-pixel control's texts, up to
    // tens of MiB, until it ages them, which would swamp the measured half. 4000x4000 only
    // in runs of 1000 readings or more.
    if (i < readings_ / 2 && (i == readings_ / 20 || (i > 0 && i % 200000 == 0))) {
        ResizeHuge(*stage_, pool_, readings_ >= 1000);
        PaintNow(*stage_, pool_);
        ResizeRandom(*stage_, pool_);
    }
}

TComponentSoak::TMemory TComponentSoak::settleAndMeasure() {
    Pump();
    recreated_ += stage_->Refill();
    stage_->Normalize();
    for (QWidget* component : stage_->Components())
        feeder_.Settle(component);
    Pump();
    if (QWidget* subject = stage_->Subject()) subject->grab();
    // The window's backing store keeps the size of the largest window until the next
    // repaint, and Qt's pixmap cache holds up to 10 MiB of whatever was drawn last: bounded,
    // but enough to hide a leak or fake one.
    stage_->Window()->repaint();
    QPixmapCache::clear();
    Pump();
    ReleaseFreeHeap();
    return TMemory{ResidentKiB(), HeapInUseKiB()};
}

}  // namespace kxsoak
