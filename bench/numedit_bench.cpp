// The numeric edit's check of one typical entry, as it runs on every change of the text,
// on an edit that is not shown (no painting), and the reader alone.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>

#include "kx/entry/numedit.h"
#include "kx/host/formatsettings.h"

namespace kx {
namespace {

const std::array<QString, 3> kEntries = {QStringLiteral("1.5k"), QStringLiteral("$ff"),
                                         QStringLiteral("-12.75E-3")};

void BM_NumEditParse(benchmark::State& state) {
    std::array<std::unique_ptr<TKxNumEdit>, 3> edits;
    for (size_t i = 0; i < edits.size(); ++i) {
        edits[i] = std::make_unique<TKxNumEdit>();
        edits[i]->Loaded();
        edits[i]->SetValue(1.0);
        edits[i]->setText(kEntries[i]);
    }
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(edits[i]->CheckEdit(false));
        i = i == 2 ? 0 : i + 1;
    }
}
BENCHMARK(BM_NumEditParse);

void BM_NumEntryRead(benchmark::State& state) {
    const TFormatSettings& fs = FormatSettings();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(TKxNumEdit::Parse(kEntries[i], TKxNumEdit::ebFloat, fs).Value);
        i = i == 2 ? 0 : i + 1;
    }
}
BENCHMARK(BM_NumEntryRead);

}  // namespace
}  // namespace kx
