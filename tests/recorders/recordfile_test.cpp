// Record files and the trend's file functions: byte-exact round trips, crash-safe saves,
// appends that never damage earlier records, partial records, I/O error codes, partial
// saves and how a load joins or replaces what the trend holds.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/safefile.h"
#include "kx/recorders/recordfile.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

using Recs = std::vector<TSignRec>;

QByteArray Bytes(const TSignRec* r, size_t n) {
    return QByteArray(reinterpret_cast<const char*>(r), qsizetype(n * sizeof(TSignRec)));
}
QByteArray Bytes(const Recs& r) {
    return Bytes(r.data(), r.size());
}
QByteArray Bytes(const TKxSignStore& s) {
    return Bytes(s.Data(), size_t(s.Count()));
}

// Times a trend must carry through untouched, bit for bit.
TDateTime OddTime(std::mt19937& rng) {
    static const double kTimes[] = {std::numeric_limits<double>::quiet_NaN(),
                                    -std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::signaling_NaN(),
                                    std::numeric_limits<double>::infinity(),
                                    -std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::denorm_min(),
                                    std::numeric_limits<double>::max(),
                                    -std::numeric_limits<double>::max(),
                                    -1e300,
                                    0.0,
                                    -0.0,
                                    -693594.0,
                                    2958466.0,
                                    45000.5};
    return kTimes[rng() % std::size(kTimes)];
}

Recs RandomRecords(size_t n, uint32_t seed) {
    std::mt19937 rng(seed);
    Recs recs(n);
    for (TSignRec& r : recs) {
        if (rng() % 3 == 0) {
            r.Time = OddTime(rng);
        } else {
            // Any bit pattern at all, NaN payloads included.
            const uint64_t bits = (uint64_t(rng()) << 32) | rng();
            std::memcpy(&r.Time, &bits, sizeof bits);
        }
        for (uint16_t& d : r.Ch)
            d = static_cast<uint16_t>(rng());
    }
    return recs;
}

// NaN times compare by their bits.
bool SameTime(TDateTime a, TDateTime b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void WriteRaw(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(f.write(bytes), bytes.size());
}

class RecordFileTest : public ::testing::Test {
  protected:
    void TearDown() override { SetFileFaultHook(nullptr); }
    QString Path(const QString& name) const { return dir_.filePath(name); }
    // Everything in the folder, hidden files included, so a left-over temporary shows.
    QStringList Entries() const {
        return QDir(dir_.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir dir_;
};

// A trend that does not record, holding records stamped one second apart.
void AddRecords(TKxTrend& t, int n, int seed) {
    for (int i = 0; i < n; ++i) {
        test::FakeClock().Advance(1000);
        const int d = seed * 100 + i;
        ASSERT_TRUE(t.AddDigit(d, d + 1, d + 2, d + 3, d + 4, d + 5, d + 6, d + 7));
    }
}

TEST_F(RecordFileTest, RandomRecordsRoundTripByteForByte) {
    ASSERT_TRUE(dir_.isValid());
    for (size_t n : {size_t(0), size_t(1), size_t(2), size_t(5), size_t(4099)}) {
        SCOPED_TRACE(n);
        const Recs recs = RandomRecords(n, uint32_t(n) + 7);
        const QString written = Path("written.rec");
        ASSERT_EQ(KxWriteRecordFile(written, recs.data(), recs.size()), 0);
        EXPECT_EQ(ReadAll(written), Bytes(recs));

        // Appending in two parts gives the same file.
        const QString appended = Path("appended.rec");
        QFile::remove(appended);
        const size_t half = n / 2;
        ASSERT_EQ(KxAppendRecordFile(appended, recs.data(), half), 0);
        ASSERT_EQ(KxAppendRecordFile(appended, recs.data() + half, n - half), 0);
        EXPECT_EQ(ReadAll(appended), Bytes(recs));

        TKxSignStore store;
        ASSERT_EQ(KxReadRecordFile(written, store), 0);
        EXPECT_EQ(Bytes(store), Bytes(recs));

        // Through a trend: loaded, then saved again.
        TKxTrend trend;
        ASSERT_EQ(trend.LoadFromFileEx(written, true), 0);
        EXPECT_EQ(Bytes(trend.Records()), Bytes(recs));
        const QString saved = Path("saved.rec");
        ASSERT_EQ(trend.SaveToFile(saved), 0);
        EXPECT_EQ(ReadAll(saved), Bytes(recs));
        EXPECT_EQ(Entries(), QStringList({"appended.rec", "saved.rec", "written.rec"}));
    }
}

TEST_F(RecordFileTest, ASuccessfulSaveGoesThroughItsStepsInOrder) {
    std::vector<TFileStep> steps;
    SetFileFaultHook([&](TFileStep s) {
        steps.push_back(s);
        return 0;
    });
    const Recs recs = RandomRecords(3, 1);
    ASSERT_EQ(KxWriteRecordFile(Path("a.rec"), recs.data(), recs.size()), 0);
    EXPECT_EQ(steps, (std::vector<TFileStep>{TFileStep::Open, TFileStep::Write, TFileStep::Flush,
                                             TFileStep::Rename}));
}

struct FaultCase {
    TFileStep step;
    int error;
};
const FaultCase kFaults[] = {{TFileStep::Open, EACCES},
                             {TFileStep::Write, ENOSPC},
                             {TFileStep::Flush, EIO},
                             {TFileStep::Rename, EXDEV}};

TEST_F(RecordFileTest, AFailedSaveLeavesThePreviousFileAndNoTemporary) {
    const Recs old = RandomRecords(7, 2);
    TKxTrend trend;
    trend.SetStartRecording(false);
    AddRecords(trend, 12, 1);
    for (const FaultCase& f : kFaults) {
        for (const bool previous : {true, false}) {
            SCOPED_TRACE(testing::Message() << int(f.step) << " previous " << previous);
            const QString name = Path("trend.rec");
            QFile::remove(name);
            if (previous) {
                ASSERT_EQ(KxWriteRecordFile(name, old.data(), old.size()), 0);
            }
            std::vector<TFileStep> steps;
            SetFileFaultHook([&](TFileStep s) {
                steps.push_back(s);
                return s == f.step ? f.error : 0;
            });
            EXPECT_EQ(trend.SaveToFile(name), f.error);
            SetFileFaultHook(nullptr);
            // Nothing after the failing step is attempted.
            ASSERT_FALSE(steps.empty());
            EXPECT_EQ(steps.back(), f.step);
            if (previous) {
                EXPECT_EQ(ReadAll(name), Bytes(old));
                EXPECT_EQ(Entries(), QStringList{"trend.rec"});
            } else {
                EXPECT_EQ(Entries(), QStringList{});
            }
        }
    }
    // Without a fault the save replaces the file.
    ASSERT_EQ(trend.SaveToFile(Path("trend.rec")), 0);
    EXPECT_EQ(ReadAll(Path("trend.rec")), Bytes(trend.Records()));
}

TEST_F(RecordFileTest, AFailedAppendLeavesTheEarlierRecords) {
    const Recs old = RandomRecords(4, 3), more = RandomRecords(6, 4);
    for (const FaultCase& f : kFaults) {
        SCOPED_TRACE(int(f.step));
        const QString name = Path("log.rec");
        ASSERT_EQ(KxWriteRecordFile(name, old.data(), old.size()), 0);
        SetFileFaultHook([&](TFileStep s) { return s == f.step ? f.error : 0; });
        const int result = KxAppendRecordFile(name, more.data(), more.size());
        SetFileFaultHook(nullptr);
        if (f.step == TFileStep::Rename) {
            // An append renames nothing.
            EXPECT_EQ(result, 0);
            EXPECT_EQ(ReadAll(name), Bytes(old) + Bytes(more));
        } else {
            EXPECT_EQ(result, f.error);
            EXPECT_EQ(ReadAll(name), Bytes(old));
        }
        EXPECT_EQ(Entries(), QStringList{"log.rec"});
    }
}

TEST_F(RecordFileTest, OnlyWholeRecordsLoadAndAnAppendCutsThePartOneFirst) {
    struct Case {
        int whole;
        int extra;  // bytes of a record cut short
    };
    for (const Case c : {Case{3, 1}, Case{3, 10}, Case{3, 23}, Case{0, 23}, Case{1, 0}}) {
        SCOPED_TRACE(testing::Message() << c.whole << " + " << c.extra);
        const Recs recs = RandomRecords(size_t(c.whole), 5), cut = RandomRecords(1, 6);
        const QString name = Path("partial.rec");
        WriteRaw(name, Bytes(recs) + Bytes(cut).left(c.extra));

        TKxSignStore store;
        EXPECT_EQ(KxReadRecordFile(name, store), 0);
        EXPECT_EQ(Bytes(store), Bytes(recs));
        TKxTrend trend;
        EXPECT_EQ(trend.LoadFromFileEx(name, true), 0);
        EXPECT_EQ(Bytes(trend.Records()), Bytes(recs));

        const Recs more = RandomRecords(2, 7);
        ASSERT_EQ(KxAppendRecordFile(name, more.data(), more.size()), 0);
        EXPECT_EQ(ReadAll(name), Bytes(recs) + Bytes(more));
    }
}

TEST_F(RecordFileTest, AFailedAppendAfterAPartRecordKeepsTheWholeOnes) {
    const Recs recs = RandomRecords(3, 8), more = RandomRecords(2, 9);
    const QString name = Path("partial.rec");
    WriteRaw(name, Bytes(recs) + QByteArray(11, '\x5a'));
    SetFileFaultHook([](TFileStep s) { return s == TFileStep::Flush ? EIO : 0; });
    EXPECT_EQ(KxAppendRecordFile(name, more.data(), more.size()), EIO);
    // The cut-short record may go or stay; the whole ones must not change.
    const QByteArray after = ReadAll(name);
    EXPECT_EQ(after.left(3 * 24), Bytes(recs));
    EXPECT_LE(after.size(), 3 * 24 + 11);
}

TEST_F(RecordFileTest, LoadErrorsAreReportedAndLeaveTheStoreConsistent) {
    WriteRaw(Path("empty.rec"), QByteArray());
    ASSERT_TRUE(QDir(dir_.path()).mkdir("folder.rec"));
    struct Case {
        QString name;
        int error;
    };
    const Case cases[] = {{Path("empty.rec"), 0},
                          {Path("missing.rec"), ENOENT},
                          {Path("nofolder/x.rec"), ENOENT},
                          {Path("folder.rec"), EISDIR},
                          {QString(), ENOENT}};
    const Recs before = RandomRecords(2, 10);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        TKxSignStore store;
        ASSERT_TRUE(store.Append(before[0]));
        ASSERT_TRUE(store.Append(before[1]));
        EXPECT_EQ(KxReadRecordFile(c.name, store), c.error);
        EXPECT_EQ(Bytes(store), Bytes(before));

        TKxTrend trend;
        trend.SetStartRecording(false);
        AddRecords(trend, 3, 2);
        EXPECT_EQ(trend.LoadFromFileEx(c.name, true), c.error);
        EXPECT_EQ(trend.RecordCount(), 0);
        EXPECT_EQ(trend.RecordInfo()->TotalRecords(), 0u);
    }
}

TEST_F(RecordFileTest, AnUnreadableFileGivesEACCES) {
    if (::geteuid() == 0) GTEST_SKIP() << "root reads any file";
    const Recs recs = RandomRecords(2, 11);
    const QString name = Path("locked.rec");
    ASSERT_EQ(KxWriteRecordFile(name, recs.data(), recs.size()), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(name).constData(), 0), 0);
    TKxSignStore store;
    EXPECT_EQ(KxReadRecordFile(name, store), EACCES);
    EXPECT_EQ(store.Count(), 0);
    TKxTrend trend;
    EXPECT_EQ(trend.LoadFromFileEx(name, true), EACCES);
    EXPECT_EQ(trend.RecordCount(), 0);
    ::chmod(QFile::encodeName(name).constData(), 0600);
}

TEST_F(RecordFileTest, SaveErrorsAreReportedAndLeaveNoTemporary) {
    ASSERT_TRUE(QDir(dir_.path()).mkdir("folder.rec"));
    struct Case {
        QString name;
        int error;
    };
    const Case cases[] = {
        {Path("nofolder/x.rec"), ENOENT}, {Path("folder.rec"), EISDIR}, {QString(), ENOENT}};
    TKxTrend trend;
    trend.SetStartRecording(false);
    AddRecords(trend, 4, 3);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        EXPECT_EQ(trend.SaveToFile(c.name), c.error);
        EXPECT_EQ(Entries(), QStringList{"folder.rec"});
        EXPECT_TRUE(QFileInfo(Path("folder.rec")).isDir());
    }
}

TEST_F(RecordFileTest, SavePartClipsToTheStoreAndAppends) {
    struct Case {
        int32_t first, last;
        int prior;  // records already in the file
        int result;
        int from, to;  // the records appended, when result is 0
    };
    const Case cases[] = {
        {5, 5, 0, -1, 0, 0},   {6, 2, 0, -1, 0, 0}, {-5, 0, 0, -1, 0, 0}, {9, 100, 0, -1, 0, 0},
        {-3, 100, 0, 0, 0, 9}, {2, 6, 0, 0, 2, 6},  {8, 100, 0, 0, 8, 9}, {-5, 1, 0, 0, 0, 1},
        {2, 6, 2, 0, 2, 6},    {5, 5, 2, -1, 0, 0},
    };
    TKxTrend trend;
    trend.SetStartRecording(false);
    AddRecords(trend, 10, 4);
    const Recs prior = RandomRecords(2, 12);
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.first << ".." << c.last << " prior " << c.prior);
        const QString name = Path("part.rec");
        QFile::remove(name);
        if (c.prior > 0) {
            ASSERT_EQ(KxWriteRecordFile(name, prior.data(), size_t(c.prior)), 0);
        }
        EXPECT_EQ(trend.SavePartToFile(name, c.first, c.last), c.result);
        QByteArray expected = Bytes(prior.data(), size_t(c.prior));
        if (c.result == 0)
            expected += Bytes(trend.Records().Data() + c.from, size_t(c.to - c.from + 1));
        if (c.result != 0 && c.prior == 0) {
            EXPECT_FALSE(QFile::exists(name));
        } else {
            EXPECT_EQ(ReadAll(name), expected);
        }
    }
}

// How a load of a file joins the records a trend holds.
TEST_F(RecordFileTest, ALoadAppendsAfterSeparatorsOrReplaces) {
    struct Case {
        int held;
        bool clear;
        bool separators;  // opSeparator
        int fileRecords;
    };
    const Case cases[] = {
        {0, false, true, 4}, {1, false, true, 4},  {2, false, true, 4}, {6, false, true, 4},
        {6, false, true, 0}, {6, false, false, 4}, {6, true, true, 4},  {1, true, true, 1},
        {1, false, true, 1}, {3, true, true, 0},
    };
    const Recs file = RandomRecords(4, 13);
    const QString name = Path("load.rec");
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.held << (c.clear ? " clear" : " append")
                     << (c.separators ? "" : " no separators") << " + " << c.fileRecords);
        ASSERT_EQ(KxWriteRecordFile(name, file.data(), size_t(c.fileRecords)), 0);
        TKxTrend trend;
        trend.SetStartRecording(false);
        if (!c.separators) trend.SetOptions(kTrendDefaultOptions & ~TrendOpt(opSeparator));
        AddRecords(trend, c.held, 5);
        const Recs held(trend.Records().Data(), trend.Records().Data() + c.held);
        int notices = 0;
        QObject::connect(&trend, &TKxTrend::OnRecNoChanged, [&] { ++notices; });

        ASSERT_EQ(c.clear ? trend.LoadFromFileEx(name, true) : trend.LoadFromFile(name), 0);

        // Appending to two or more records puts five separators before the last one,
        // carrying the digits of the record before them.
        Recs expected;
        if (!c.clear) expected = held;
        if (!c.clear && c.separators && c.held >= 2) {
            TSignRec sep = held[size_t(c.held) - 2];
            sep.Time = 0.0;
            expected.insert(expected.end() - 1, 5, sep);
        }
        expected.insert(expected.end(), file.begin(), file.begin() + c.fileRecords);
        EXPECT_EQ(Bytes(trend.Records()), Bytes(expected));
        EXPECT_GE(notices, 1);
        const int count = int(expected.size());
        const TRecInfo* info = trend.RecordInfo();
        if (count < 2) {
            EXPECT_EQ(info->TotalRecords(), 0u);
        } else {
            EXPECT_EQ(info->TotalRecords(), uint32_t(count));
            EXPECT_TRUE(SameTime(info->FirstRecord(), expected.front().Time));
            EXPECT_TRUE(SameTime(info->LastRecord(), expected.back().Time));
        }
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(trend.IsSeparator(i), expected[size_t(i)].Time == 0.0) << i;
    }
}

TEST_F(RecordFileTest, LoadingStopsRecording) {
    const Recs file = RandomRecords(3, 14);
    const QString name = Path("stop.rec");
    ASSERT_EQ(KxWriteRecordFile(name, file.data(), file.size()), 0);
    for (const bool clear : {true, false}) {
        SCOPED_TRACE(clear);
        TKxTrend trend;
        trend.Loaded();
        ASSERT_TRUE(trend.StartRecording());
        // A tick while recording stores a record...
        test::FakeClock().Advance(1000);
        RunFlashTick();
        ASSERT_EQ(trend.RecordCount(), 1);

        ASSERT_EQ(trend.LoadFromFileEx(name, clear), 0);
        EXPECT_FALSE(trend.StartRecording());
        const int32_t count = trend.RecordCount();
        EXPECT_EQ(count, clear ? 3 : 4);
        // ...and none after the load.
        for (int i = 0; i < 3; ++i) {
            test::FakeClock().Advance(1000);
            RunFlashTick();
        }
        EXPECT_EQ(trend.RecordCount(), count);
        // Adding by hand works again now that it does not record.
        EXPECT_TRUE(trend.AddDigit(1, 2, 3, 4, 5, 6, 7, 8));
    }
}

}  // namespace
}  // namespace kx
