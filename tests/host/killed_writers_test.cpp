// Power cuts while saving: a child process saves over and over and is killed at random
// moments; every kill must leave the previous or the new file, complete and readable.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstdio>
#include <random>

#include "common/killed_child.h"
#include "kx/host/bitmap.h"
#include "kx/host/inifile.h"

namespace kx {
namespace {

using namespace std::chrono_literals;

void SaveIni(const QString& path, int variant) {
    TIniFile ini(path);
    for (int k = 0; k < 40; ++k)
        ini.WriteString(QStringLiteral("Pump %1").arg(k / 8), QStringLiteral("Key%1").arg(k),
                        QStringLiteral("value %1 of variant %2").arg(k).arg(variant));
    ini.UpdateFile();
}

QByteArray LoadIni(const QString& path) {
    const TIniFile ini(path);
    return ini.ReadError() == 0 ? ini.Text() : QByteArray();
}

// Noise, so the file is large (some 60 kB) and a kill often lands inside the write.
void SaveBitmap(const QString& path, int variant) {
    TBitmap bitmap(160, 120);
    std::mt19937 rng(variant + 1);
    QImage& image = bitmap.MutableImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, 0xFF000000u | (rng() & 0xFFFFFFu));
    bitmap.SaveToFile(path);
}

QByteArray LoadBitmap(const QString& path) {
    const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32);
    return QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
}

TEST(KilledWhileSaving, HostWritersLeaveACompleteFile) {
    const test::TKilledWriter writers[] = {
        test::ReplacingWriter("ini", "panel.ini", SaveIni, LoadIni),
        test::ReplacingWriter("bitmap", "panel.png", SaveBitmap, LoadBitmap),
    };
    for (const test::TKilledWriter& writer : writers) {
        SCOPED_TRACE(writer.name.toStdString());
        QTemporaryDir dir;
        ASSERT_TRUE(dir.isValid());
        const test::TKillReport report = test::KillWhileSaving(writer, dir.path(), 2500ms);
        EXPECT_GE(report.kills, 10);
        EXPECT_TRUE(report.faults.isEmpty()) << report.faults.join('\n').toStdString();
        std::printf("[ killed   ] %s: %d kills\n", qPrintable(writer.name), report.kills);
    }
}

}  // namespace
}  // namespace kx
