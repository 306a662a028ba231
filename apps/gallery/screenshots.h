#pragma once
// Headless renders of the gallery: run the simulation for a few seconds, then grab the
// window with each page current and save it as PNG.
#include <QSize>
#include <QString>
#include <QStringList>

class QTextStream;

namespace kxgallery {

class GalleryWindow;

inline constexpr QSize kScreenshotSize{1100, 980};
inline constexpr int kScreenshotSteps = 60;
// Real time over which the steps are spread, so that the blink service ticks between
// them and blinking needles show their blink colours.
inline constexpr int kScreenshotRealMs = 2000;

// "gallery-<page>.png", or "gallery-<page><slug>.png" for a section with a slug.
QString ScreenshotFileName(const QString& pageName, const QString& sectionSlug = QString());

// Runs `steps` simulation steps spread evenly over about `realMs` milliseconds, serving
// events (timers included) in between.
void RunSimulation(GalleryWindow& window, int steps, int realMs);

// Grabs every page into dir (created when missing), printing each written path on `out`
// and each failure on `err`. Returns the paths written; all pages were written when it
// holds one entry per page.
QStringList WritePages(GalleryWindow& window, const QString& dir, QTextStream& out,
                       QTextStream& err);

// The whole headless run on a window made for it: fixed size, simulation, pages.
// Returns the process exit code: 0 when every page was written, 1 otherwise.
int RunScreenshots(GalleryWindow& window, const QString& dir, QTextStream& out, QTextStream& err,
                   int realMs = kScreenshotRealMs);

}  // namespace kxgallery
