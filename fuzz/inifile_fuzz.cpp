// Feeds INI files to TIniFile (from the bytes) and to the operating-hour counter's
// LoadFromIni / SaveToIni (through a file, section "Pump 1"). Invariants:
//  - TIniFile never crashes on any bytes, and writing back what it read gives the same
//    bytes but for line ends: one byte-order mark kept, each line without its CRs before
//    the LF, joined with the file's own line end;
//  - the counter loads exactly what TIniFile reads for "h", "m" and "s" (int32, default 0,
//    not normalised) and reports no error;
//  - after a save, the file reads back as the same count and a load gives the same state;
//    a second save writes the same bytes; every line of the file other than h/m/s entries
//    survives the save unchanged and in order, and nothing but such entries, blank lines
//    and the section header is added.
#include <QByteArray>
#include <QString>
#include <QStringDecoder>
#include <QStringList>

#include "fuzz_util.h"
#include "kx/host/inifile.h"
#include "kx/recorders/ophourcounter.h"

namespace {

using kx::TIniFile;
using kx::TKxOpHourCounter;

constexpr qsizetype kMaxFile = 4096;
constexpr int kMaxSections = 16;
const QString kSection = QStringLiteral("Pump 1");

const QByteArray kBom("\xEF\xBB\xBF");

// The text after one byte-order mark, decoded without skipping another.
QString Decode(const QByteArray& bytes) {
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decode(bytes.startsWith(kBom) ? bytes.mid(kBom.size()) : bytes);
}

// The lines of a file as TIniFile sees them.
QStringList Lines(const QByteArray& bytes) {
    QStringList lines = Decode(bytes).split(u'\n');
    if (lines.last().isEmpty()) lines.removeLast();
    for (QString& l : lines) {
        while (l.endsWith(u'\r'))
            l.chop(1);
    }
    return lines;
}

// The text TIniFile must write back for a file it read and did not change.
QString Unchanged(const QByteArray& bytes) {
    const bool crlf = Decode(bytes).contains(QStringLiteral("\r\n"));
    QString out = bytes.startsWith(kBom) ? QString(QChar(0xFEFF)) : QString();
    for (const QString& l : Lines(bytes))
        out += l + (crlf ? QStringLiteral("\r\n") : QStringLiteral("\n"));
    return out;
}

bool CounterEntry(const QString& line) {
    const qsizetype eq = line.indexOf(u'=');
    if (eq <= 0) return false;
    const QString key = line.left(eq).trimmed().toLower();
    return key == u"h" || key == u"m" || key == u"s";
}

QStringList OtherLines(const QStringList& lines) {
    QStringList out;
    for (const QString& l : lines) {
        if (!CounterEntry(l)) out += l;
    }
    return out;
}

// Every old line other than h/m/s entries is in the new lines in the same order, and the
// only lines added besides such entries are blank lines and the counter's section header.
bool Survives(const QStringList& before, const QStringList& after) {
    const QStringList old = OtherLines(before), now = OtherLines(after);
    qsizetype j = 0;
    for (const QString& line : old) {
        for (; j < now.size() && now[j] != line; ++j) {
            if (!now[j].trimmed().isEmpty() && now[j] != u'[' + kSection + u']') return false;
        }
        if (j == now.size()) return false;
        ++j;
    }
    return after.size() <= before.size() + 5;
}

void CheckIniFile(const QByteArray& bytes) {
    TIniFile ini(QString{});
    ini.SetText(bytes);
    const QByteArray text = ini.Text();
    KX_FUZZ_CHECK(text == Unchanged(bytes).toUtf8(), "read back as:\n" + QString::fromUtf8(text));
    const QStringList sections = ini.ReadSections();
    for (qsizetype i = 0; i < sections.size() && i < kMaxSections; ++i) {
        KX_FUZZ_CHECK(ini.SectionExists(sections[i]), sections[i]);
        for (const QString& key : ini.ReadSection(sections[i])) {
            KX_FUZZ_CHECK(ini.ValueExists(sections[i], key), sections[i] + " / " + key);
            ini.ReadString(sections[i], key, QString());
            ini.ReadInteger(sections[i], key, 0);
            ini.ReadBool(sections[i], key, false);
        }
    }
}

TKxOpHourCounter& Counter() {
    static TKxOpHourCounter counter;
    static const bool ready = [] {
        counter.IniSettings()->SetUseAppDir(false);
        counter.IniSettings()->SetFileName(
            kx::fuzz::TempDir().filePath(QStringLiteral("count.ini")));
        counter.IniSettings()->SetSection(kSection);
        return true;
    }();
    (void)ready;
    return counter;
}

QString State(const TKxOpHourCounter& c) {
    return QStringLiteral("%1:%2:%3").arg(c.Hours()).arg(c.Minutes()).arg(c.Seconds());
}

void CheckCounter(const QByteArray& bytes) {
    TKxOpHourCounter& counter = Counter();
    const QString path = counter.IniSettings()->Path();
    KX_FUZZ_CHECK(kx::fuzz::WriteFile(path, bytes), path);
    counter.LoadFromIni();
    KX_FUZZ_CHECK(!counter.IniSettings()->LastError(), counter.IniSettings()->LastErrorText());
    {
        const TIniFile ini(path);
        const QString read = QStringLiteral("%1:%2:%3")
                                 .arg(ini.ReadInteger(kSection, QStringLiteral("h"), 0))
                                 .arg(ini.ReadInteger(kSection, QStringLiteral("m"), 0))
                                 .arg(ini.ReadInteger(kSection, QStringLiteral("s"), 0));
        KX_FUZZ_CHECK(State(counter) == read, State(counter) + " loaded, file holds " + read);
    }
    const QString loaded = State(counter);

    counter.SaveToIni();
    KX_FUZZ_CHECK(!counter.IniSettings()->LastError(), counter.IniSettings()->LastErrorText());
    const QByteArray saved = kx::fuzz::ReadFile(path);
    KX_FUZZ_CHECK(Survives(Lines(bytes), Lines(saved)), "saved as:\n" + QString::fromUtf8(saved));
    counter.SetTime(1, 2, 3);
    counter.LoadFromIni();
    KX_FUZZ_CHECK(State(counter) == loaded, loaded + " saved, reloaded " + State(counter));
    counter.SaveToIni();
    KX_FUZZ_CHECK(kx::fuzz::ReadFile(path) == saved, "a second save changed the file");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes =
        QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)).left(kMaxFile);
    CheckIniFile(bytes);
    CheckCounter(bytes);
    return 0;
}
