// Random and mutated record files loaded into a painted trend, bounded in time: every load
// succeeds with exactly the file's whole records, joined to what the trend held by the
// separator rule, and drawing, scrolling and the cursor survive absurd times and digits.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "common/test_env.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

constexpr int kMaxFileBytes = 10000;
constexpr int kRec = int(sizeof(TSignRec));

class FileSource {
  public:
    // Now and then a file of at most two records, where the edge cases sit; a tenth pure
    // noise; the rest records with odd times, half of those mutated.
    QByteArray Next() {
        if (pick(8) == 0) return noise(pick(2 * kRec + 1));
        const size_t kind = pick(10);
        if (kind == 0) return noise(pick(kMaxFileBytes + 1));
        QByteArray b = records(pick(kMaxFileBytes / kRec + 1));
        if (kind >= 5) mutate(b);
        return b.left(kMaxFileBytes);
    }
    size_t pick(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng_); }

  private:
    QByteArray noise(size_t n) {
        QByteArray b(qsizetype(n), '\0');
        for (char& c : b)
            c = char(pick(256));
        return b;
    }
    TDateTime time(size_t i) {
        using L = std::numeric_limits<double>;
        switch (pick(16)) {
            case 0:
                return L::quiet_NaN();
            case 1:
                return -L::signaling_NaN();
            case 2:
                return pick(2) ? L::infinity() : -L::infinity();
            case 3:
                return L::denorm_min() * double(pick(1000) + 1);
            case 4:
                return pick(2) ? L::max() : -L::max();
            case 5:
                return pick(2) ? 1e300 : -1e18;
            case 6:
            case 7:
                return 0.0;  // a separator
            case 8:
                return -0.0;
            case 9: {
                double d;
                const uint64_t bits = (uint64_t(rng_()) << 32) | rng_();
                std::memcpy(&d, &bits, sizeof d);
                return d;
            }
            default:
                return 45000.0 + double(i) / 86400.0;
        }
    }
    QByteArray records(size_t n) {
        std::vector<TSignRec> r(n);
        for (size_t i = 0; i < n; ++i) {
            r[i].Time = time(i);
            for (uint16_t& d : r[i].Ch)
                d = pick(4) == 0 ? uint16_t(pick(2) ? 65535 : 0) : uint16_t(pick(1200));
        }
        return QByteArray(reinterpret_cast<const char*>(r.data()), qsizetype(n) * kRec);
    }
    void mutate(QByteArray& b) {
        for (size_t k = pick(3) + 1; k > 0; --k) {
            switch (pick(3)) {
                case 0:
                    b.truncate(qsizetype(pick(size_t(b.size()) + 1)));
                    break;
                case 1:
                    b += noise(pick(100) + 1);
                    break;
                default:
                    for (size_t f = pick(30) + 1; f > 0 && !b.isEmpty(); --f)
                        b[qsizetype(pick(size_t(b.size())))] ^= char(1 << pick(8));
            }
        }
    }

    std::mt19937 rng_{20250611};
};

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
    std::memcpy(&sep, held.constData() + (n - 2) * kRec, kRec);
    sep.Time = 0.0;
    QByteArray block;
    for (int i = 0; i < 5; ++i)
        block += QByteArray(reinterpret_cast<const char*>(&sep), kRec);
    return held.left((n - 1) * kRec) + block + held.right(kRec) + whole;
}

void CheckRecordInfo(const TKxTrend& t) {
    const TRecInfo* info = t.RecordInfo();
    if (t.RecordCount() < 2) {
        ASSERT_EQ(info->TotalRecords(), 0u);
        return;
    }
    ASSERT_EQ(info->TotalRecords(), uint32_t(t.RecordCount()));
    const TDateTime first = info->FirstRecord(), last = info->LastRecord();
    ASSERT_EQ(std::memcmp(&first, &t.Records()[0].Time, sizeof first), 0);
    ASSERT_EQ(std::memcmp(&last, &t.Records()[t.Records().Last()].Time, sizeof last), 0);
}

// Sweeps the cursor over the curve area and just beyond it.
void SweepCursor(TKxTrend& t, size_t step) {
    const TRect a = t.CurveArea();
    const int32_t y = (a.Top + a.Bottom) / 2;
    for (int32_t x = a.Left - 3; x <= a.Right + 3; x += int32_t(step)) {
        t.SetCursorLineAt(x, y);
        if (!t.CursorShown()) continue;
        const TVAtCursor* v = t.ValueAtCursor();
        const int32_t record = t.CursorColumn() + t.FirstDisplayedRecord();
        ASSERT_EQ(v->RecordNo(), record);
        ASSERT_LE(record, t.Records().Last());
        ASSERT_EQ(v->DataValid(), !t.IsSeparator(record));
    }
    t.SetCursorLineAt(-1, -1);
    ASSERT_FALSE(t.CursorShown());
}

TEST(TrendFileFuzz, AnyFileLoadsItsWholeRecordsAndDraws) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString name = dir.filePath("fuzz.rec");
    FileSource source;

    TKxTrend trend;
    trend.SetCaption(QStringLiteral("Fuzz"));
    trend.SetFillChannelNo(3);
    trend.LimitUpper()->SetEnabled(true);
    trend.LimitUpper()->SetValue(70.0f);
    trend.LimitLower()->SetEnabled(true);
    trend.LimitLower()->SetFilled(true);
    trend.LimitLower()->SetValue(10.0f);
    trend.Channel(2)->SetPenWidth(3);
    trend.Loaded();
    trend.PaintToSurface();

    const TTrendOptions optionSets[] = {
        kTrendDefaultOptions,
        kTrendDefaultOptions | TrendOpt(opDate) | TrendOpt(opShowLast),
        kTrendAllOptions,
        TrendOpt(opGrid) | TrendOpt(opCh7isUL) | TrendOpt(opCh8isLL) | TrendOpt(opShowLast),
        TrendOpt(opDate) | TrendOpt(opTime) | TrendOpt(opSeparator) | TrendOpt(opLeftScale),
    };
    const TPoint sizes[] = {{420, 260}, {640, 330}, {200, 120}, {90, 60}, {30, 20}, {4, 4}};

    QElapsedTimer clock;
    clock.start();
    int cases = 0;
    // At least 50 cases however slow the machine, then as many as 3 s allow.
    for (; cases < 20000 && (cases < 50 || clock.elapsed() < 3000); ++cases) {
        SCOPED_TRACE(cases);
        if (source.pick(16) == 0) {
            trend.SetOptions(optionSets[source.pick(std::size(optionSets))]);
            const TPoint s = sizes[source.pick(std::size(sizes))];
            trend.SetBounds(0, 0, s.X, s.Y);
            trend.SetZoomY(float(source.pick(30) + 1) / 10.0f);
            trend.MoveY(int32_t(source.pick(41)) - 20);
            trend.PaintToSurface();
        }
        if (trend.RecordCount() > 30000) trend.ClearRecords();

        const QByteArray file = source.Next();
        {
            QFile f(name);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            ASSERT_EQ(f.write(file), file.size());
        }
        const QByteArray held = StoreBytes(trend);
        const bool clear = source.pick(3) == 0;
        const bool separators = trend.HasOption(opSeparator);

        ASSERT_EQ(trend.LoadFromFileEx(name, clear), 0);

        ASSERT_FALSE(trend.StartRecording());
        const int32_t before = int32_t(held.size() / kRec);
        const int32_t added = !clear && separators && before >= 2 ? 5 : 0;
        ASSERT_EQ(trend.RecordCount(), (clear ? 0 : before + added) + file.size() / kRec);
        // Compared as a whole rather than with EXPECT_EQ, which would print megabytes.
        ASSERT_TRUE(StoreBytes(trend) == Expected(held, clear, separators, file));
        ASSERT_NO_FATAL_FAILURE(CheckRecordInfo(trend));
        if (trend.HasOption(opShowLast)) {
            ASSERT_EQ(trend.FirstDisplayedRecord(),
                      std::max(0, trend.RecordCount() - trend.DisplayableRecords()));
        } else {
            ASSERT_EQ(trend.FirstDisplayedRecord(), 0);
        }

        switch (source.pick(4)) {
            case 0:
                ASSERT_NO_FATAL_FAILURE(SweepCursor(trend, source.pick(24) + 3));
                break;
            case 1:
                trend.MoveX(int32_t(source.pick(801)) - 400);
                trend.Invalidate();
                trend.PaintToSurface();
                break;
            case 2:
                // A hand-added record draws like a tick, even after absurd ones.
                ASSERT_TRUE(trend.AddDigit(1, 2, 3, 4, 5, 6, 7, 8));
                ASSERT_NO_FATAL_FAILURE(CheckRecordInfo(trend));
                break;
            default:
                if (trend.RecordCount() > 0) {
                    ASSERT_TRUE(trend.FindMinMax(0, trend.Records().Last()));
                }
        }
    }
    RecordProperty("cases", cases);
}

}  // namespace
}  // namespace kx
