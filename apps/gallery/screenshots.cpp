#include "screenshots.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPixmap>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>

#include "gallerywindow.h"
#include "kx/indicators/rmeter.h"
#include "pages.h"
#include "roundmeterpage.h"

namespace kxgallery {
namespace {

constexpr int kBlinkSettleMs = 1000;
constexpr int kBlinkPollMs = 4;

// Serves events, timers included, for about ms milliseconds (at least the pending ones).
void serveEvents(int ms) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    if (ms <= 0) return;
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// Blinking needles alternate between two colours; the pictures should not depend on the
// phase a run happens to end in. Waits (at most about a second) until the blink has just
// turned to its second colour, which then holds for a whole half-period (about a quarter
// of a second), enough to grab every page.
void settleBlinkPhase(GalleryWindow& window) {
    const RoundMeterPage* page = window.MeterPage();
    const auto phase = [page]() -> int {  // -1: nothing blinks, 1: second colour
        for (int i = 0; i < page->MeterCount(); ++i) {
            const kx::TKxRMeter* m = page->Meter(i);
            if (m->Blinking()) return m->BlinkColor() == m->BlinkColor2() ? 1 : 0;
        }
        return -1;
    };
    QElapsedTimer clock;
    clock.start();
    bool sawFirstColour = false;
    while (clock.elapsed() < kBlinkSettleMs) {
        const int p = phase();
        if (p < 0 || (p == 1 && sawFirstColour)) return;
        sawFirstColour = sawFirstColour || p == 0;
        serveEvents(kBlinkPollMs);
    }
}

}  // namespace

QString ScreenshotFileName(const QString& pageName, const QString& sectionSlug) {
    return QStringLiteral("gallery-%1%2.png").arg(pageName, sectionSlug);
}

void RunSimulation(GalleryWindow& window, int steps, int realMs) {
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < steps; ++i) {
        window.StepSimulation();
        // Keep to the schedule even when a step took long.
        const qint64 due = qint64(realMs) * (i + 1) / std::max(steps, 1);
        serveEvents(int(std::max<qint64>(0, due - clock.elapsed())));
    }
}

QStringList WritePages(GalleryWindow& window, const QString& dir, QTextStream& out,
                       QTextStream& err) {
    QStringList written;
    if (!QDir().mkpath(dir)) {
        err << "kxgallery: cannot create directory " << dir << Qt::endl;
        return written;
    }
    QTabWidget* tabs = window.Tabs();
    const int current = tabs->currentIndex();
    for (int i = 0; i < window.PageCount(); ++i) {
        tabs->setCurrentIndex(i);
        serveEvents(0);
        const QString path = QDir(dir).filePath(
            ScreenshotFileName(window.Page(i)->PaletteName(), window.Page(i)->SectionSlug()));
        if (window.grab().save(path, "PNG")) {
            out << path << Qt::endl;
            written << path;
        } else {
            err << "kxgallery: cannot write " << path << Qt::endl;
        }
    }
    tabs->setCurrentIndex(current);
    return written;
}

int RunScreenshots(GalleryWindow& window, const QString& dir, QTextStream& out, QTextStream& err,
                   int realMs) {
    window.StopSimulation();
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(kScreenshotSize);
    window.show();
    serveEvents(0);
    RunSimulation(window, kScreenshotSteps, realMs);
    if (realMs > 0) settleBlinkPhase(window);
    const QStringList written = WritePages(window, dir, out, err);
    return written.size() == window.PageCount() ? 0 : 1;
}

}  // namespace kxgallery
