// The INI file: what a classic file reads as, that writing keeps every other line, that
// values round-trip exactly, the crash-safe save, and a bounded run of hostile texts.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <random>

#include "kx/host/inifile.h"
#include "kx/host/safefile.h"

namespace kx {
namespace {

TIniFile FromText(const char* text) {
    TIniFile ini{QString()};
    ini.SetText(QByteArray(text));
    return ini;
}

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

struct ReadCase {
    const char* text;
    const char* section;
    const char* key;
    const char* expected;  // nullptr: the default
};

const ReadCase kReads[] = {
    {"[A]\nx=1\n", "A", "x", "1"},
    {"[A]\r\nx=1\r\n", "A", "x", "1"},
    {"\xEF\xBB\xBF[A]\nx=1\n", "A", "x", "1"},  // byte-order mark
    {"  [ A ]  \n  x  =  hello world  \n", "A", "x", "hello world"},
    {"[a]\nX=1\n", "A", "x", "1"},              // names without case
    {"[A]\nx=\"  q  \"\n", "A", "x", "  q  "},  // quotes keep blanks
    {"[A]\nx='q'\n", "A", "x", "q"},
    {"[A]\nx=\"q'\n", "A", "x", "\"q'"},      // unmatched quotes stay
    {"[A]\nx=a=b\n", "A", "x", "a=b"},        // the first "=" splits
    {"[A]\nx=1\n[A]\nx=2\n", "A", "x", "1"},  // the first section counts
    {"[A]\nx=1\nx=2\n", "A", "x", "1"},       // the first key counts
    {"[A]\n;x=1\n", "A", "x", nullptr},       // comments
    {"[A]\n#x=1\n", "A", "x", nullptr},
    {"x=1\n[A]\n", "A", "x", nullptr},  // before any section
    {"[A]\n=1\n", "A", "", nullptr},    // no key
    {"[A]\nx=1\n[B]\n", "B", "x", nullptr},
    {"[A] trailing\nx=1", "A", "x", "1"},  // no line end at the end
    {"[A\nx=1\n", "A", "x", nullptr},      // not a section header
    {"", "A", "x", nullptr},
};

TEST(IniFile, ReadsClassicFiles) {
    for (const ReadCase& c : kReads) {
        SCOPED_TRACE(c.text);
        const TIniFile ini = FromText(c.text);
        const QString got = ini.ReadString(c.section, c.key, QStringLiteral("<def>"));
        EXPECT_EQ(got, c.expected ? QString::fromUtf8(c.expected) : QStringLiteral("<def>"));
    }
}

struct IntCase {
    const char* value;
    int32_t expected;
};

TEST(IniFile, IntegersAndBooleansFallBackToTheDefault) {
    const IntCase cases[] = {{"12", 12},          {"-5", -5},     {" 7 ", 7},
                             {"$1F", 31},         {"0x10", 16},   {"2147483647", 2147483647},
                             {"2147483648", -99}, {"abc", -99},   {"", -99},
                             {"1.5", -99},        {"12abc", -99}, {"-2147483648", INT32_MIN}};
    for (const IntCase& c : cases) {
        SCOPED_TRACE(c.value);
        const TIniFile ini = FromText(QByteArray("[S]\nv=").append(c.value).constData());
        EXPECT_EQ(ini.ReadInteger("S", "v", -99), c.expected);
        EXPECT_EQ(ini.ReadBool("S", "v", true), c.expected == -99 ? true : c.expected != 0);
    }
}

TEST(IniFile, WritingKeepsEveryOtherLine) {
    const char* original =
        "; made by another tool\r\n[Pump 1]\r\nh = 5\r\nname=\"a b\"\r\n\r\n; end of pump\r\n"
        "[Other]\r\nk=v\r\n";
    TIniFile ini = FromText(original);
    EXPECT_EQ(ini.Text(), QByteArray(original));  // unchanged: byte for byte
    ini.WriteInteger("pump 1", "H", 6);
    ini.WriteString("Pump 1", "new", "x");
    ini.WriteString("New Section", "a", "1");
    EXPECT_TRUE(ini.Modified());
    EXPECT_EQ(ini.Text(),
              QByteArray("; made by another tool\r\n[Pump 1]\r\nh=6\r\nname=\"a b\"\r\nnew=x\r\n"
                         "\r\n; end of pump\r\n[Other]\r\nk=v\r\n\r\n[New Section]\r\na=1\r\n"));
    EXPECT_EQ(ini.ReadSections(), QStringList({"Pump 1", "Other", "New Section"}));
    EXPECT_EQ(ini.ReadSection("PUMP 1"), QStringList({"h", "name", "new"}));
}

TEST(IniFile, ValuesReadBackExactly) {
    const QString values[] = {"",         " lead", "trail ",          "\"quoted\"",
                              "'q'",      "a=b",   "; not a comment", "[x]",
                              "ümlaut ∑", "100%",  "tab\there",       "x\"y"};
    TIniFile ini{QString()};
    for (const QString& v : values)
        ini.WriteString("S", "k" + QString::number(&v - values), v);
    const TIniFile again = FromText(ini.Text().constData());
    for (const QString& v : values)
        EXPECT_EQ(again.ReadString("S", "k" + QString::number(&v - values), "<def>"), v)
            << v.toStdString();
    // Line ends inside a value become blanks instead of breaking the file.
    ini.WriteString("S", "nl", "a\r\nb");
    EXPECT_EQ(FromText(ini.Text().constData()).ReadString("S", "nl", ""), "a  b");
}

TEST(IniFile, NamesThatCannotBeWrittenAreIgnored) {
    const char* sections[] = {"", "a]b", "a\nb"};
    const char* keys[] = {"", "  ", "a=b", "a\nb", "[k", ";k", "#k"};
    TIniFile ini{QString()};
    for (const char* s : sections)
        ini.WriteString(s, "k", "v");
    for (const char* k : keys)
        ini.WriteString("S", k, "v");
    EXPECT_FALSE(ini.Modified());
    EXPECT_TRUE(ini.Text().isEmpty());
}

TEST(IniFile, EraseAndDelete) {
    TIniFile ini = FromText("[A]\nx=1\ny=2\n[B]\nz=3\n");
    ini.DeleteKey("a", "X");
    ini.DeleteKey("A", "missing");
    ini.EraseSection("b");
    ini.EraseSection("missing");
    EXPECT_EQ(ini.Text(), QByteArray("[A]\ny=2\n"));
    EXPECT_TRUE(ini.SectionExists(" a "));
    EXPECT_FALSE(ini.SectionExists("B"));
    EXPECT_TRUE(ini.ValueExists("A", "y"));
    EXPECT_FALSE(ini.ValueExists("A", "x"));
}

class IniFileOnDisk : public ::testing::Test {
  protected:
    void TearDown() override { SetFileFaultHook(nullptr); }
    QString Path(const char* name) const { return dir_.filePath(name); }
    QStringList Entries() const {
        return QDir(dir_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QTemporaryDir dir_;
};

TEST_F(IniFileOnDisk, MissingFileIsEmptyAndSavesOnlyChanges) {
    const QString path = Path("a.ini");
    TIniFile ini(path);
    EXPECT_EQ(ini.ReadError(), 0);
    EXPECT_EQ(ini.UpdateFile(), 0);
    EXPECT_FALSE(QFile::exists(path));  // nothing changed, nothing written
    ini.WriteInteger("S", "h", 5);
    EXPECT_EQ(ini.UpdateFile(), 0);
    EXPECT_FALSE(ini.Modified());
    EXPECT_EQ(ReadAll(path), QByteArray("[S]\nh=5\n"));
    EXPECT_EQ(TIniFile(path).ReadInteger("S", "h", 0), 5);
}

TEST_F(IniFileOnDisk, UnreadableFileIsNeverOverwritten) {
    ASSERT_TRUE(QDir(dir_.path()).mkdir("dir.ini"));
    TIniFile ini(Path("dir.ini"));
    EXPECT_EQ(ini.ReadError(), EISDIR);
    ini.WriteInteger("S", "h", 1);
    EXPECT_EQ(ini.UpdateFile(), EISDIR);

    const QString big = Path("big.ini");
    QFile f(big);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    ASSERT_TRUE(f.resize(TIniFile::kMaxFileSize + 1));
    f.close();
    TIniFile large(big);
    EXPECT_EQ(large.ReadError(), EFBIG);
    large.WriteInteger("S", "h", 1);
    EXPECT_EQ(large.UpdateFile(), EFBIG);
    EXPECT_EQ(QFileInfo(big).size(), TIniFile::kMaxFileSize + 1);
}

// A byte-order mark is written back, so that a save changes no other line; a second mark
// is text of the first line (which then opens no section).
TEST(IniFile, ByteOrderMarkRoundTrips) {
    const struct {
        const char* text;
        bool sectionA;
    } cases[] = {
        {"\xEF\xBB\xBF[A]\nx=1\n", true},
        {"\xEF\xBB\xBF\xEF\xBB\xBF[A]\nx=1\n", false},
        {"\xEF\xBB\xBF\xEF\xBB\xBF\xEF\xBB\xBF\n", false},
        {"[A]\n\xEF\xBB\xBFx=1\n", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        TIniFile ini = FromText(c.text);
        EXPECT_EQ(ini.Text(), QByteArray(c.text));
        EXPECT_EQ(ini.SectionExists("A"), c.sectionA);
        ini.WriteInteger("B", "h", 5);
        EXPECT_TRUE(ini.Text().startsWith(QByteArray(c.text)));
        EXPECT_EQ(FromText(ini.Text().constData()).ReadInteger("B", "h", 0), 5);
    }
}

// Files are read in steps; the sizes around a step and the limit itself read whole.
TEST_F(IniFileOnDisk, FilesOfEverySizeUpToTheLimitReadWhole) {
    const qsizetype step = 64 * 1024;
    for (const qsizetype size :
         {step - 1, step, step + 1, 3 * step + 7, qsizetype(TIniFile::kMaxFileSize)}) {
        SCOPED_TRACE(size);
        const QByteArray tail("[End]\nlast=here\n");
        QByteArray text = "[Start]\nfirst=1\n;" + QByteArray(size - 17 - tail.size() - 1, 'x');
        text += '\n' + tail;
        ASSERT_EQ(text.size(), size);
        const QString path = Path("sized.ini");
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(f.write(text), text.size());
        f.close();
        const TIniFile ini(path);
        EXPECT_EQ(ini.ReadError(), 0);
        EXPECT_EQ(ini.ReadString("Start", "first", "?"), "1");
        EXPECT_EQ(ini.ReadString("End", "last", "?"), "here");
        EXPECT_EQ(ini.Text(), text);
    }
}

TEST_F(IniFileOnDisk, InterruptedSaveLeavesTheOldFile) {
    const QString path = Path("c.ini");
    {
        TIniFile ini(path);
        ini.WriteInteger("S", "h", 1);
        ASSERT_EQ(ini.UpdateFile(), 0);
    }
    const struct {
        TFileStep step;
        int error;
    } faults[] = {{TFileStep::Open, EACCES},
                  {TFileStep::Write, ENOSPC},
                  {TFileStep::Flush, EIO},
                  {TFileStep::Rename, EXDEV}};
    for (const auto& f : faults) {
        SCOPED_TRACE(int(f.step));
        SetFileFaultHook([&](TFileStep s) { return s == f.step ? f.error : 0; });
        TIniFile ini(path);
        ini.WriteInteger("S", "h", 2);
        EXPECT_EQ(ini.UpdateFile(), f.error);
        EXPECT_TRUE(ini.Modified());
        EXPECT_EQ(ReadAll(path), QByteArray("[S]\nh=1\n"));
        EXPECT_EQ(Entries(), QStringList{"c.ini"});  // no temporary file left
    }
}

// Random and mutated texts: parsing never fails, the text written for an unchanged
// file is the text read (less a byte-order mark and an unfinished last line), and a
// value written then reads back through a new parse.
TEST(IniFileFuzz, HostileTextsKeepTheirInvariants) {
    const std::string alphabet = "[]=;#\"' \t\r\nabcAB01$x\xC3\xBC";
    std::mt19937 rng(11);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    int runs = 0;
    // At least 1000 runs however slow the machine, then as many as the time allows.
    while ((runs < 1000 || std::chrono::steady_clock::now() < deadline) && runs < 200000) {
        ++runs;
        std::string s(rng() % 200, ' ');
        for (char& c : s)
            c = rng() % 8 == 0 ? char(rng()) : alphabet[rng() % alphabet.size()];
        TIniFile ini{QString()};
        ini.SetText(QByteArray::fromStdString(s));
        const QByteArray first = ini.Text();
        TIniFile again{QString()};
        again.SetText(first);
        ASSERT_EQ(again.Text(), first) << s;
        for (const QString& section : ini.ReadSections())
            for (const QString& key : ini.ReadSection(section))
                ASSERT_EQ(again.ReadString(section, key, "<def>"),
                          ini.ReadString(section, key, "<def>"));
        const QString value = QString::fromStdString(s.substr(0, rng() % 20));
        again.WriteString("Fuzz", "key", value);
        TIniFile third{QString()};
        third.SetText(again.Text());
        QString expected = value;
        expected.replace(u'\r', u' ').replace(u'\n', u' ');
        ASSERT_EQ(third.ReadString("Fuzz", "key", "<def>"), expected) << s;
    }
}

TEST(IniFile, FileNamePart) {
    const struct {
        const char* path;
        const char* name;
    } cases[] = {{"a.ini", "a.ini"},
                 {"/x/y/a.ini", "a.ini"},
                 {"C:\\data\\a.ini", "a.ini"},
                 {"dir/", ""},
                 {"", ""},
                 {"../../etc/passwd", "passwd"}};
    for (const auto& c : cases)
        EXPECT_EQ(ExtractFileName(c.path), c.name) << c.path;
    EXPECT_TRUE(KxApplicationDir().endsWith('/'));
}

}  // namespace
}  // namespace kx
