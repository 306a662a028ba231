// Power cuts while saving: a child process saves or appends over and over and is killed at
// random moments. A replaced file must be the previous or the new one, complete; an
// appended file must keep every record it had, a partial last one being ignored on load.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "common/killed_child.h"
#include "kx/recorders/ophourcounter.h"
#include "kx/recorders/recordfile.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

using namespace std::chrono_literals;

constexpr int32_t kSequence = 20000;

// Record j of the sequence the appenders write, distinct in every field.
TSignRec SequenceRecord(int32_t j) {
    TSignRec r;
    r.Time = 45000.0 + j;
    for (int c = 0; c < 8; ++c)
        r.Ch[c] = static_cast<uint16_t>(j * 8 + c);
    return r;
}

std::vector<TSignRec> Sequence(int32_t first, int32_t count) {
    std::vector<TSignRec> recs;
    for (int32_t j = first; j < first + count; ++j)
        recs.push_back(SequenceRecord(j));
    return recs;
}

// Appends records first..first + count - 1 of the sequence: 0 or an errno value.
using TAppend = std::function<int(int32_t first, int32_t count)>;

struct AppendCase {
    const char* name;
    int32_t minChunk;
    std::function<TAppend(const QString& dir, const QString& path)> start;
};

test::TKilledWriter AppendingWriter(const AppendCase& c) {
    test::TKilledWriter w;
    w.name = c.name;
    w.run = [c](const QString& dir, const std::function<void()>& saved) {
        const QString path = QDir(dir).filePath("append.rec");
        TKxSignStore held;
        KxReadRecordFile(path, held);
        int32_t n = held.Count();
        const TAppend append = c.start(dir, path);
        for (;;) {
            const int32_t count = c.minChunk + n % 3;
            if (n + count > kSequence)
                QThread::msleep(10);  // done; wait for the kill
            else if (append(n, count) == 0)
                n += count;
            saved();
        }
    };
    w.check = [held = std::make_shared<int32_t>(0)](const QString& dir) -> QString {
        const QString path = QDir(dir).filePath("append.rec");
        TKxSignStore store;
        if (const int e = KxReadRecordFile(path, store)) return QStringLiteral("errno %1").arg(e);
        if (store.Count() < *held)
            return QStringLiteral("%1 records left of %2").arg(store.Count()).arg(*held);
        for (int32_t j = 0; j < store.Count(); ++j) {
            const TSignRec expected = SequenceRecord(j);
            if (std::memcmp(&store[j], &expected, sizeof expected) != 0)
                return QStringLiteral("record %1 damaged").arg(j);
        }
        *held = store.Count();
        return {};
    };
    return w;
}

void SaveTrend(const QString& path, int variant) {
    TKxTrend trend;
    trend.SetStartRecording(false);
    for (int j = 0; j < 400; ++j) {
        const int d = variant * 1000 + j;
        trend.AddDigit(d, d + 1, d + 2, d + 3, d + 4, d + 5, d + 6, d + 7);
    }
    trend.SaveToFile(path);
}

QByteArray LoadRecords(const QString& path) {
    TKxSignStore store;
    if (KxReadRecordFile(path, store) != 0) return {};
    return QByteArray(reinterpret_cast<const char*>(store.Data()),
                      qsizetype(store.Count()) * qsizetype(sizeof(TSignRec)));
}

void SetIniFile(TKxOpHourCounter& counter, const QString& path) {
    counter.IniSettings()->SetUseAppDir(false);
    counter.IniSettings()->SetFileName(path);
    counter.IniSettings()->SetSection("Pump");
}

void SaveHours(const QString& path, int variant) {
    TKxOpHourCounter counter;
    SetIniFile(counter, path);
    counter.SetTime(variant ? 123456 : 78, 7 + variant, 30 + variant);
    counter.SaveToIni();
}

QByteArray LoadHours(const QString& path) {
    TKxOpHourCounter counter;
    SetIniFile(counter, path);
    counter.LoadFromIni();
    if (counter.IniSettings()->LastError()) return {};
    return QByteArray::number(counter.Hours()) + ':' + QByteArray::number(counter.Minutes()) + ':' +
           QByteArray::number(counter.Seconds());
}

TEST(KilledWhileSaving, RecorderWritersKeepTheirFiles) {
    const AppendCase appends[] = {
        {"append records", 1,
         [](const QString&, const QString& path) -> TAppend {
             return [path](int32_t first, int32_t count) {
                 const std::vector<TSignRec> recs = Sequence(first, count);
                 return KxAppendRecordFile(path, recs.data(), recs.size());
             };
         }},
        {"trend save part", 2,
         [](const QString& dir, const QString& path) -> TAppend {
             const QString source = QDir(dir).filePath("source.rec");
             const std::vector<TSignRec> all = Sequence(0, kSequence);
             KxWriteRecordFile(source, all.data(), all.size());
             auto trend = std::make_shared<TKxTrend>();
             trend->LoadFromFileEx(source, true);
             return [trend, path](int32_t first, int32_t count) {
                 return trend->SavePartToFile(path, first, first + count - 1);
             };
         }},
    };
    const test::TKilledWriter writers[] = {
        test::ReplacingWriter("trend save", "trend.rec", SaveTrend, LoadRecords),
        test::ReplacingWriter("hour counter", "hours.ini", SaveHours, LoadHours),
        AppendingWriter(appends[0]),
        AppendingWriter(appends[1]),
    };
    for (const test::TKilledWriter& writer : writers) {
        SCOPED_TRACE(writer.name.toStdString());
        QTemporaryDir dir;
        ASSERT_TRUE(dir.isValid());
        const test::TKillReport report = test::KillWhileSaving(writer, dir.path(), 2500ms);
        EXPECT_GE(report.kills, 10);
        EXPECT_TRUE(report.faults.isEmpty()) << report.faults.join('\n').toStdString();
        const qint64 size = QFileInfo(dir.filePath("append.rec")).size();
        std::printf("[ killed   ] %s: %d kills", qPrintable(writer.name), report.kills);
        if (size > 0)
            std::printf(", %lld records appended, %lld bytes of a partial one at the end",
                        size / qint64(sizeof(TSignRec)), size % qint64(sizeof(TSignRec)));
        std::printf("\n");
    }
}

}  // namespace
}  // namespace kx
