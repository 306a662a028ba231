// INI settings: the name checks and their texts, the path rule, when the owner's routine
// runs, and failures reported instead of thrown.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "kx/framework/inisettings.h"
#include "kx/host/safefile.h"

namespace kx {
namespace {

struct NameCase {
    const char* file;
    const char* section;
    bool error;
    const char* text;
};

TEST(IniSettings, NameChecks) {
    QTemporaryDir dir;
    const QString file = dir.filePath("n.ini");
    const NameCase cases[] = {{"", "", true, "Invalid SectionName"},
                              {"", "S", true, "Invalid FileName"},
                              {"x", "", true, "Invalid SectionName"},
                              {"x", "S", false, ""}};
    for (const NameCase& c : cases) {
        SCOPED_TRACE(c.text);
        TIniSettings s;
        s.SetUseAppDir(false);
        s.SetFileName(*c.file ? file : QString());
        s.SetSection(c.section);
        int calls = 0;
        s.SetOnHandleIniEvent([&](TIniFile&, bool) { ++calls; });
        s.Handle(true);
        EXPECT_EQ(s.LastError(), c.error);
        EXPECT_EQ(s.LastErrorText(), c.text);
        EXPECT_EQ(calls, c.error ? 0 : 1);  // nothing is opened after a bad name
    }
}

TEST(IniSettings, PathUsesTheApplicationDirectory) {
    TIniSettings s;
    EXPECT_TRUE(s.UseAppDir());
    EXPECT_FALSE(s.AutoLoadSave());
    s.SetFileName("/some/where/else/k.ini");
    EXPECT_EQ(s.Path(), QCoreApplication::applicationDirPath() + "/k.ini");
    s.SetFileName("C:\\old\\k.ini");
    EXPECT_EQ(s.Path(), QCoreApplication::applicationDirPath() + "/k.ini");
    s.SetUseAppDir(false);
    EXPECT_EQ(s.Path(), "C:\\old\\k.ini");
}

class IniSettingsFile : public ::testing::Test {
  protected:
    void SetUp() override {
        s_.SetUseAppDir(false);
        s_.SetFileName(dir_.filePath("p.ini"));
        s_.SetSection("Counter");
        s_.SetOnHandleIniEvent([this](TIniFile& ini, bool read) {
            events_ << (read ? "read" : "write");
            if (read)
                value_ = ini.ReadInteger("Counter", "v", -1);
            else
                ini.WriteInteger("Counter", "v", value_);
        });
    }
    void TearDown() override { SetFileFaultHook(nullptr); }

    QTemporaryDir dir_;
    TIniSettings s_;
    QStringList events_;
    int value_ = 0;
};

TEST_F(IniSettingsFile, SaveAndLoadThroughTheOwnersRoutine) {
    value_ = 42;
    s_.Handle(false);
    EXPECT_FALSE(s_.LastError());
    value_ = 0;
    s_.Handle(true);
    EXPECT_EQ(value_, 42);
    EXPECT_EQ(events_, QStringList({"write", "read"}));
}

TEST_F(IniSettingsFile, AutoHandleActsOnlyWithAutoLoadSaveAndKeepsTheLastError) {
    s_.SetSection("");
    s_.Handle(true);
    ASSERT_TRUE(s_.LastError());
    s_.SetSection("Counter");
    s_.AutoHandle(true);
    EXPECT_TRUE(events_.isEmpty());
    EXPECT_TRUE(s_.LastError());  // untouched
    EXPECT_EQ(s_.LastErrorText(), "Invalid SectionName");
    s_.SetAutoLoadSave(true);
    s_.AutoHandle(false);
    EXPECT_EQ(events_, QStringList{"write"});
    EXPECT_FALSE(s_.LastError());
    EXPECT_TRUE(s_.LastErrorText().isEmpty());
}

TEST_F(IniSettingsFile, FailuresAreReportedNotThrown) {
    value_ = 7;
    s_.Handle(false);
    SetFileFaultHook([](TFileStep s) { return s == TFileStep::Rename ? ENOSPC : 0; });
    value_ = 8;
    s_.Handle(false);
    EXPECT_TRUE(s_.LastError());
    EXPECT_EQ(s_.LastErrorText(), "Cannot write " + s_.Path());
    SetFileFaultHook(nullptr);
    s_.Handle(true);
    EXPECT_EQ(value_, 7);  // the interrupted save left the previous file

    // A file that cannot be read is neither handed to the owner nor written over.
    ASSERT_TRUE(QDir(dir_.path()).mkdir("d.ini"));
    s_.SetFileName(dir_.filePath("d.ini"));
    events_.clear();
    s_.Handle(true);
    EXPECT_EQ(s_.LastErrorText(), "Cannot read " + s_.Path());
    s_.Handle(false);
    EXPECT_EQ(s_.LastErrorText(), "Cannot write " + s_.Path());
    EXPECT_TRUE(events_.isEmpty());
}

TEST(IniSettings, AssignCopiesThePublishedProperties) {
    TIniSettings a, b;
    a.SetFileName("f.ini");
    a.SetSection("S");
    a.SetUseAppDir(false);
    a.SetAutoLoadSave(true);
    b.Assign(&a);
    EXPECT_EQ(b.FileName(), "f.ini");
    EXPECT_EQ(b.Section(), "S");
    EXPECT_FALSE(b.UseAppDir());
    EXPECT_TRUE(b.AutoLoadSave());
}

}  // namespace
}  // namespace kx
