// Trend recorder costs: one recording tick on a full, scrolling 600 x 300 curve area with
// eight moving channels; loading a file of a million records beside a plain read of it;
// and the memory a million records take, appended one by one or loaded.
#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <memory>
#include <vector>

#include "kx/blink/flashclient.h"
#include "kx/blink/flashtimer.h"
#include "kx/blink/ticksource.h"
#include "kx/host/clock.h"
#include "kx/recorders/recordfile.h"
#include "kx/recorders/trend.h"
#include "quietblink.h"

namespace kx {
namespace {

constexpr int32_t kAreaW = 600, kAreaH = 300;
constexpr int32_t kMillion = 1000000;

// Sizes the trend so that its curve area is kAreaW x kAreaH.
void SizeCurveArea(TKxTrend& t) {
    t.SetBounds(0, 0, 760, 380);
    for (int i = 0; i < 3; ++i) {
        t.PaintToSurface();
        const TRect a = t.CurveArea();
        const int32_t dw = kAreaW - (a.Right - a.Left), dh = kAreaH - (a.Bottom - a.Top);
        if (dw == 0 && dh == 0) return;
        t.SetBounds(0, 0, t.width() + dw, t.height() + dh);
    }
    t.PaintToSurface();
}

// One reading per channel and one tick, the clock a second on.
class TTicker {
  public:
    explicit TTicker(TKxTrend& t, TFakeClock& clock) : t_(t), clock_(clock) {
        for (int i = 0; i < kSteps; ++i)
            for (int ch = 0; ch < 8; ++ch)
                values_[i][ch] =
                    float(50.0 + 45.0 * std::sin(2.0 * M_PI * (i / double(kSteps) + ch / 8.0)));
    }
    void Tick() {
        const int i = step_++ % kSteps;
        for (int ch = 0; ch < 8; ++ch)
            t_.Channel(ch + 1)->SetValue(values_[i][ch]);
        clock_.Advance(1000);
        TMessage m{KX_WM_FLASH, intptr_t(step_), 0, 0};
        t_.WMFlash(m);
    }

  private:
    static constexpr int kSteps = 97;  // not a divisor of the grid, so the curves vary
    TKxTrend& t_;
    TFakeClock& clock_;
    float values_[kSteps][8];
    int step_ = 0;
};

void trendTick(benchmark::State& state, int32_t prefill) {
    TQuietBlink quiet;
    {
        TKxTrend trend;
        trend.SetCaption(QStringLiteral("Bench"));
        trend.SetOptions(kTrendDefaultOptions | TrendOpt(opDate));
        trend.SetFlow(true);
        trend.SetCursorLine(false);
        trend.Loaded();
        SizeCurveArea(trend);
        TTicker ticker(trend, quiet.Clock());
        for (int32_t i = 0; i < prefill; ++i)
            ticker.Tick();
        for (auto _ : state) {
            ticker.Tick();
            benchmark::DoNotOptimize(trend.Surface().Image().constBits());
        }
        const TRect a = trend.CurveArea();
        state.counters["area_w"] = a.Right - a.Left;
        state.counters["area_h"] = a.Bottom - a.Top;
        state.counters["records"] = trend.RecordCount();
        state.counters["recording"] = trend.FlowActive();
    }
}

// A full view that scrolls every GridXPixel (60) ticks; 600 ticks hold ten scrolls.
void BM_TrendTick(benchmark::State& state) {
    trendTick(state, 700);
}
BENCHMARK(BM_TrendTick)->Iterations(1200)->Unit(benchmark::kMicrosecond);

// Past MaxRecords (2000): every 60 ticks the oldest records go as well.
void BM_TrendTickAtMaxRecords(benchmark::State& state) {
    trendTick(state, 2100);
}
BENCHMARK(BM_TrendTickAtMaxRecords)->Iterations(1200)->Unit(benchmark::kMicrosecond);

// A million records, as a day and a half of recording at one a second would give.
const QString& millionRecordFile() {
    static QTemporaryDir dir;
    static const QString name = [] {
        std::vector<TSignRec> recs(kMillion);
        for (int32_t i = 0; i < kMillion; ++i) {
            recs[size_t(i)].Time = 45000.0 + i / 86400.0;
            for (int ch = 0; ch < 8; ++ch)
                recs[size_t(i)].Ch[ch] = uint16_t((i * (ch + 3)) % 1001);
        }
        const QString n = dir.filePath(QStringLiteral("million.rec"));
        if (KxWriteRecordFile(n, recs.data(), recs.size()) != 0) return QString();
        return n;
    }();
    return name;
}

void BM_TrendLoad(benchmark::State& state) {
    const QString& name = millionRecordFile();
    TQuietBlink quiet;
    {
        TKxTrend trend;
        trend.setVisible(false);
        for (auto _ : state) {
            const int r = trend.LoadFromFileEx(name, true);
            if (r != 0 || trend.RecordCount() != kMillion) state.SkipWithError("load failed");
            benchmark::DoNotOptimize(trend.Records().Data());
        }
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * kMillion * int64_t(sizeof(TSignRec)));
}
BENCHMARK(BM_TrendLoad)->Unit(benchmark::kMillisecond);

void BM_TrendRead(benchmark::State& state) {
    const QString& name = millionRecordFile();
    for (auto _ : state) {
        QFile f(name);
        if (!f.open(QIODevice::ReadOnly)) state.SkipWithError("open failed");
        const QByteArray bytes = f.readAll();
        if (bytes.size() != qsizetype(kMillion) * qsizetype(sizeof(TSignRec)))
            state.SkipWithError("read failed");
        benchmark::DoNotOptimize(bytes.constData());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * kMillion * int64_t(sizeof(TSignRec)));
}
BENCHMARK(BM_TrendRead)->Unit(benchmark::kMillisecond);

// Bytes held per record, spare capacity included, at a million records.
void BM_TrendStoreBytes(benchmark::State& state, bool load) {
    TQuietBlink quiet;
    double perRecord = 0.0;
    for (auto _ : state) {
        TKxTrend trend;
        trend.setVisible(false);
        trend.SetStartRecording(false);
        if (load) {
            if (trend.LoadFromFileEx(millionRecordFile(), true) != 0)
                state.SkipWithError("load failed");
        } else {
            for (int32_t i = 0; i < kMillion; ++i)
                trend.AddDigit(i % 1000, 1, 2, 3, 4, 5, 6, 7);
        }
        perRecord = double(trend.Records().CapacityBytes()) / double(trend.RecordCount());
    }
    state.counters["bytes_per_record"] = perRecord;
}
BENCHMARK_CAPTURE(BM_TrendStoreBytes, append, false)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendStoreBytes, load, true)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kx
