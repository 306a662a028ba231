#pragma once
// One component class soaked: readings, property changes, sizes, paints, blink ticks and
// deletions from its own handlers, with the resident memory taken after a warm-up (the
// first half of the readings, which fills fonts, glyph and pixmap caches up to their limits)
// and after each quarter of the second half.
//
// Both the resident size and the heap in use are taken. The growth rate is the median of
// the four quarters' rates: a leak grows in every quarter, while a cache that meets a new
// font or script late in the run grows once, by up to a few hundred KiB, and would
// otherwise dominate the figure of a single run. The resident size also moves by a few
// hundred KiB either way with the heap's fragmentation; the heap in use does not, and is
// the figure the limit applies to.
#include <QElapsedTimer>
#include <QString>
#include <array>
#include <cstdint>
#include <optional>

#include "blinkdriver.h"
#include "chaoshub.h"
#include "feeder.h"
#include "propertyfuzzer.h"
#include "stage.h"
#include "valuepool.h"

namespace kxsoak {

struct TSoakResult {
    QString ClassName;
    int64_t Readings = 0;
    int64_t Signals = 0;
    int64_t Deletions = 0;  // by handlers
    int64_t Recreated = 0;
    int64_t WarmKiB = 0;  // resident after the warm-up
    int64_t EndKiB = 0;
    double TotalKiBPerMillion = 0;        // (end - warm) scaled to 10^6 readings
    double GrowthKiBPerMillion = 0;       // the median quarter's growth scaled to 10^6 readings
    std::array<int64_t, 4> QuarterKiB{};  // growth in each quarter of the second half
    int64_t WarmHeapKiB = 0;              // heap in use after the warm-up
    double HeapKiBPerMillion = 0;         // the median quarter's heap growth, scaled
    std::array<int64_t, 4> HeapQuarterKiB{};
    double Seconds = 0;
};

class TComponentSoak {
  public:
    TComponentSoak(const kx::TKxCatalogueEntry& entry, TFeeder& feeder, TBlinkDriver& blink,
                   uint64_t seed, int64_t readings, int64_t churnEvery = 16);
    TSoakResult Run();

  private:
    void step(int64_t i);
    void feedOne(int64_t i);
    void exercise(int64_t i);
    struct TMemory {
        int64_t Resident = 0;
        int64_t Heap = 0;
    };
    // Brings the stage to its measuring state and returns the memory in use.
    TMemory settleAndMeasure();
    // Every period steps, but at least eight times per run however short it is.
    int64_t period(int64_t steps) const;
    QWidget* anyComponent();

    const kx::TKxCatalogueEntry& entry_;
    TFeeder& feeder_;
    TBlinkDriver& blink_;
    int64_t readings_;
    int64_t churnEvery_;
    TValuePool pool_;
    TPropertyFuzzer fuzzer_;
    TChaosHub hub_;
    TFeedContext context_;
    std::optional<TSoakStage> stage_;
    int64_t recreated_ = 0;
};

}  // namespace kxsoak
