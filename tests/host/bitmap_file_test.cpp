// TBitmap::SaveToFile: the format follows the suffix, and a save that fails at any step,
// or cannot encode at all, reports false and leaves the old file as it was.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <cerrno>
#include <vector>

#include "common/killed_child.h"
#include "kx/host/bitmap.h"
#include "kx/host/safefile.h"

namespace kx {
namespace {

class BitmapFile : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        bitmap_.Canvas().SetPixel(3, 2, clRed);
    }
    void TearDown() override { SetFileFaultHook(nullptr); }
    QString Path(const QString& name) const { return dir_.filePath(name); }
    QStringList Entries() const {
        return QDir(dir_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir dir_;
    TBitmap bitmap_{8, 6};
};

TEST_F(BitmapFile, SavesInTheFormatOfTheSuffixThroughEveryStep) {
    for (const char* name : {"a.png", "b.BMP", "c.ppm"}) {
        SCOPED_TRACE(name);
        std::vector<TFileStep> steps;
        SetFileFaultHook([&](TFileStep s) {
            steps.push_back(s);
            return 0;
        });
        ASSERT_TRUE(bitmap_.SaveToFile(Path(name)));
        EXPECT_EQ(steps, (std::vector<TFileStep>{TFileStep::Open, TFileStep::Write,
                                                 TFileStep::Flush, TFileStep::Rename}));
        const QImage read(Path(name));
        ASSERT_EQ(read.size(), QSize(8, 6));
        EXPECT_EQ(read.pixel(3, 2), qRgb(255, 0, 0));
        EXPECT_EQ(read.pixel(0, 0), qRgb(255, 255, 255));
    }
}

TEST_F(BitmapFile, AFailedStepLeavesTheOldFileAndNoTemporary) {
    const QString path = Path("old.png");
    ASSERT_TRUE(TBitmap(5, 5).SaveToFile(path));
    const QByteArray old = test::ReadFileBytes(path);
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
        EXPECT_FALSE(bitmap_.SaveToFile(path));
        EXPECT_EQ(test::ReadFileBytes(path), old);
        EXPECT_EQ(Entries(), QStringList{"old.png"});
    }
}

TEST_F(BitmapFile, WhatCannotBeEncodedTouchesNoFile) {
    const QString old = Path("old.bmp");
    ASSERT_TRUE(bitmap_.SaveToFile(old));
    const QByteArray bytes = test::ReadFileBytes(old);
    int steps = 0;
    SetFileFaultHook([&](TFileStep) { return ++steps, 0; });
    const struct {
        const char* what;
        int width;
        QString path;
    } cases[] = {
        {"empty bitmap", 0, old},
        {"unknown suffix", 8, Path("x.nosuchformat")},
        {"no suffix", 8, Path("noformat")},
        {"empty name", 8, QString()},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(TBitmap(c.width, 6).SaveToFile(c.path)) << c.what;
    }
    EXPECT_EQ(steps, 0);
    EXPECT_EQ(test::ReadFileBytes(old), bytes);
    EXPECT_EQ(Entries(), QStringList{"old.bmp"});
}

}  // namespace
}  // namespace kx
