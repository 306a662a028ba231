// FormatFloat with a signal picture against the shortest std::to_chars of the same values.
#include <benchmark/benchmark.h>

#include <charconv>
#include <random>
#include <vector>

#include "kx/host/formatfloat.h"

namespace {

// ~1000 readings between 0.001 and 99999, a quarter of them negative.
const std::vector<double>& Values() {
    static const std::vector<double> values = [] {
        std::mt19937_64 rng(7);
        std::uniform_real_distribution<double> exponent(-3.0, 5.0);
        std::uniform_int_distribution<int> sign(0, 3);
        std::vector<double> v(1000);
        for (double& x : v)
            x = std::pow(10.0, exponent(rng)) * (sign(rng) == 0 ? -1.0 : 1.0);
        return v;
    }();
    return values;
}

void BM_FormatFloat(benchmark::State& state) {
    const std::vector<double>& values = Values();
    const QString picture = QStringLiteral("##0.0");
    int64_t chars = 0;
    for (auto _ : state) {
        for (double v : values) {
            QString s = kx::FormatFloat(picture, v);
            chars += s.size();
            benchmark::DoNotOptimize(s);
        }
    }
    benchmark::DoNotOptimize(chars);
    state.SetItemsProcessed(state.iterations() * int64_t(values.size()));
}
BENCHMARK(BM_FormatFloat);

void BM_ToChars(benchmark::State& state) {
    const std::vector<double>& values = Values();
    char buf[64];
    int64_t chars = 0;
    for (auto _ : state) {
        for (double v : values) {
            const auto r = std::to_chars(buf, buf + sizeof buf, v);
            chars += r.ptr - buf;
            benchmark::DoNotOptimize(buf);
        }
    }
    benchmark::DoNotOptimize(chars);
    state.SetItemsProcessed(state.iterations() * int64_t(values.size()));
}
BENCHMARK(BM_ToChars);

}  // namespace
