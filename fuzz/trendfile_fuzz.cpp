// Feeds TKxTrend::LoadFromFileEx record files: the input after its first byte is written
// to a file and loaded into a trend that holds three known records; the first byte picks
// clearing, the separator option and a failing load. Invariants:
//  - a load succeeds and the store holds exactly the file's whole records (a partial
//    trailing record is dropped), after the earlier records joined by the separator rule
//    (a block of five separators before the last earlier record when opSeparator is set
//    and at least two were held), or alone when clearing;
//  - a load that fails (the path is a folder) keeps the earlier records, with that block;
//  - saving writes the store byte for byte, and loading that file back (clearing) gives
//    the same store; RecordInfo counts the records.
#include <QByteArray>
#include <QString>
#include <cstring>

#include "fuzz_util.h"
#include "kx/recorders/trend.h"

namespace {

using kx::TKxTrend;
using kx::TSignRec;

constexpr qsizetype kRec = qsizetype(sizeof(TSignRec));
constexpr qsizetype kMaxFile = 200 * kRec;

QByteArray StoreBytes(const TKxTrend& t) {
    return QByteArray(reinterpret_cast<const char*>(t.Records().Data()),
                      qsizetype(t.RecordCount()) * kRec);
}

// The store a load must give (see LoadFromFileEx and AddSeparator).
QByteArray Expected(const QByteArray& held, bool clear, bool separators, const QByteArray& file) {
    const QByteArray whole = file.left(file.size() / kRec * kRec);
    if (clear) return whole;
    const qsizetype n = held.size() / kRec;
    if (n < 2 || !separators) return held + whole;
    TSignRec sep;
    std::memcpy(&sep, held.constData() + (n - 2) * kRec, size_t(kRec));
    sep.Time = 0.0;
    QByteArray block;
    for (int i = 0; i < 5; ++i)
        block += QByteArray(reinterpret_cast<const char*>(&sep), kRec);
    return held.left((n - 1) * kRec) + block + held.right(kRec) + whole;
}

QString Describe(const QByteArray& file, bool clear, bool separators) {
    return QStringLiteral("file of %1 bytes, clear %2, separators %3")
        .arg(file.size())
        .arg(clear)
        .arg(separators);
}

TKxTrend& Trend() {
    static TKxTrend trend;
    static const bool ready = [] {
        trend.Loaded();
        trend.SetStartRecording(false);
        return true;
    }();
    (void)ready;
    return trend;
}

void Reset(TKxTrend& trend, bool separators) {
    trend.ClearRecords();
    trend.SetOptions(separators ? kx::kTrendDefaultOptions
                                : kx::kTrendDefaultOptions & ~kx::TrendOpt(kx::opSeparator));
    trend.AddDigit(1, 2, 3, 4, 5, 6, 7, 8);
    trend.AddDigit(100, 200, 300, 400, 500, 600, 700, 800);
    trend.AddDigit(65535, 0, 1, 65534, 9, 99, 999, 9999);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const bool clear = data[0] & 1;
    const bool separators = data[0] & 2;
    const bool failing = data[0] & 4;
    const QByteArray file =
        QByteArray(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1).left(kMaxFile);
    static const QString name = kx::fuzz::TempDir().filePath(QStringLiteral("in.rec"));
    static const QString saved = kx::fuzz::TempDir().filePath(QStringLiteral("saved.rec"));
    const QString detail = Describe(file, clear, separators);
    KX_FUZZ_CHECK(kx::fuzz::WriteFile(name, file), detail + " cannot be written");

    TKxTrend& trend = Trend();
    Reset(trend, separators);
    const QByteArray held = StoreBytes(trend);
    KX_FUZZ_CHECK(trend.LoadFromFileEx(name, clear) == 0, detail);
    KX_FUZZ_CHECK(!trend.StartRecording(), detail);
    KX_FUZZ_CHECK(StoreBytes(trend) == Expected(held, clear, separators, file),
                  detail + QStringLiteral(" holds %1 records").arg(trend.RecordCount()));
    const uint32_t total = trend.RecordInfo()->TotalRecords();
    KX_FUZZ_CHECK(total == (trend.RecordCount() < 2 ? 0u : uint32_t(trend.RecordCount())),
                  detail + QStringLiteral(" RecordInfo %1").arg(total));

    if (failing) {
        const QByteArray before = StoreBytes(trend);
        KX_FUZZ_CHECK(trend.LoadFromFileEx(kx::fuzz::TempDir().path(), false) != 0, detail);
        KX_FUZZ_CHECK(StoreBytes(trend) == Expected(before, false, separators, QByteArray()),
                      detail + " after a failed load");
    }

    const QByteArray store = StoreBytes(trend);
    KX_FUZZ_CHECK(trend.SaveToFile(saved) == 0, detail + " cannot be saved");
    KX_FUZZ_CHECK(kx::fuzz::ReadFile(saved) == store, detail + " saved differently");
    KX_FUZZ_CHECK(trend.LoadFromFileEx(saved, true) == 0 && StoreBytes(trend) == store,
                  detail + " reloads differently");
    if (trend.RecordCount() > 0) KX_FUZZ_CHECK(trend.FindMinMax(0, trend.Records().Last()), detail);
    return 0;
}
