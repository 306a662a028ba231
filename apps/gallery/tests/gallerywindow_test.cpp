#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QStatusBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>

#include "gallerywindow.h"
#include "miscpage.h"
#include "pages.h"
#include "roundmeterpage.h"
#include "screenshots.h"

namespace kxgallery {
namespace {

TEST(GalleryWindow, TabsFollowThePaletteOrder) {
    GalleryWindow w;
    const QStringList palette = {"KxMisc",      "KxAnalogInd", "KxAnalogInd", "KxAnalogInd",
                                 "KxAnalogInd", "KxAnalogAdj", "KxBinary"};
    const QStringList titles = {"KxMisc",
                                "KxAnalogInd",
                                "KxAnalogInd \u00B7 Bars and linear meters",
                                "KxAnalogInd \u00B7 Readouts, vessels and navigation",
                                "KxAnalogInd \u00B7 Trend recorder",
                                "KxAnalogAdj",
                                "KxBinary"};
    ASSERT_EQ(w.Tabs()->count(), palette.size());
    for (int i = 0; i < palette.size(); ++i) {
        EXPECT_EQ(w.Tabs()->tabText(i), titles[i]);
        EXPECT_EQ(w.Page(i)->PaletteName(), palette[i]);
    }
    EXPECT_EQ(w.Tabs()->widget(1), w.MeterPage());
    EXPECT_TRUE(qobject_cast<MiscPage*>(w.Page(0)));
    // The status bar shows the process's CPU load.
    ASSERT_TRUE(w.CpuLabel());
    EXPECT_TRUE(w.CpuLabel()->text().startsWith(QStringLiteral("CPU ")))
        << w.CpuLabel()->text().toStdString();
    EXPECT_EQ(w.CpuLabel()->parentWidget(), w.statusBar());
}

TEST(GalleryWindow, TimerStepsEveryFiftyMillisecondsWhenStarted) {
    GalleryWindow w;
    EXPECT_FALSE(w.SimulationRunning());
    const double before = w.MeterPage()->SimulatedTime();
    w.StepSimulation();
    EXPECT_NEAR(w.MeterPage()->SimulatedTime() - before, 0.05, 1e-12);
    w.StartSimulation();
    EXPECT_TRUE(w.SimulationRunning());
    EXPECT_EQ(w.Timer().interval(), 50);
    EXPECT_EQ(w.Timer().timerType(), Qt::PreciseTimer);
    w.StopSimulation();
    EXPECT_FALSE(w.SimulationRunning());
}

TEST(Screenshots, WritesOnePngPerPageAtTheFixedSizeAndPrintsThePaths) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    const QString dir = tmp.filePath(QStringLiteral("nested/out"));
    GalleryWindow w;
    QString printed, errors;
    QTextStream out(&printed), err(&errors);
    EXPECT_EQ(RunScreenshots(w, dir, out, err, 0), 0);
    EXPECT_TRUE(errors.isEmpty()) << errors.toStdString();
    QStringList expected;
    for (const char* page :
         {"KxMisc", "KxAnalogInd", "KxAnalogInd-straight", "KxAnalogInd-navigation",
          "KxAnalogInd-trend", "KxAnalogAdj", "KxBinary"}) {
        const QString path =
            QDir(dir).filePath(QStringLiteral("gallery-%1.png").arg(QLatin1String(page)));
        expected << path;
        const QImage image(path);
        ASSERT_FALSE(image.isNull()) << path.toStdString();
        EXPECT_EQ(image.size(), kScreenshotSize) << path.toStdString();
    }
    EXPECT_EQ(printed.split('\n', Qt::SkipEmptyParts), expected);
    // The meter page differs from a note page; the note pages show the same frame.
    EXPECT_NE(QImage(expected[0]), QImage(expected[1]));
    EXPECT_EQ(w.Tabs()->currentIndex(), 1);
    EXPECT_NEAR(w.MeterPage()->SimulatedTime(), kScreenshotSteps * GalleryWindow::kStepSeconds,
                1e-9);
}

TEST(Screenshots, FailingToWriteGivesExitCodeOne) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    // A directory cannot be made below a regular file.
    const QString file = tmp.filePath(QStringLiteral("file"));
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    GalleryWindow w;
    QString printed, errors;
    QTextStream out(&printed), err(&errors);
    EXPECT_EQ(RunScreenshots(w, file + QStringLiteral("/sub"), out, err, 0), 1);
    EXPECT_TRUE(printed.isEmpty());
    EXPECT_TRUE(errors.contains(QStringLiteral("cannot"))) << errors.toStdString();
}

TEST(Screenshots, FileNamesFollowThePageNames) {
    EXPECT_EQ(ScreenshotFileName(QStringLiteral("KxBinary")),
              QStringLiteral("gallery-KxBinary.png"));
    EXPECT_EQ(ScreenshotFileName(QStringLiteral("KxAnalogInd"), QStringLiteral("-straight")),
              QStringLiteral("gallery-KxAnalogInd-straight.png"));
}

}  // namespace
}  // namespace kxgallery
