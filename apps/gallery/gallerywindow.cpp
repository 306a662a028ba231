#include "gallerywindow.h"

#include <QLabel>
#include <QStatusBar>
#include <QTabWidget>

#include "adjusterpage.h"
#include "binarypage.h"
#include "miscpage.h"
#include "navigationpage.h"
#include "pages.h"
#include "recorderpage.h"
#include "roundmeterpage.h"
#include "straightpage.h"

namespace kxgallery {
namespace {

// A quiet frame for the components: light cards on the neutral window colour.
QString styleSheetText() {
    return QStringLiteral(
        "#meterCard { background: #fbfbfc; border: 1px solid #d3d6db; border-radius: 6px; }"
        "#meterCaption { font-size: 11px; background: transparent; }"
        "#eventLog { font-size: 11px; }"
        "#hintText { color: #5f6670; }");
}

}  // namespace

GalleryWindow::GalleryWindow(QWidget* parent)
    : QMainWindow(parent), tabs_(new QTabWidget), cpuLabel_(new QLabel) {
    setWindowTitle(QStringLiteral("Kx instruments gallery"));
    tabs_->setDocumentMode(true);
    meterPage_ = new RoundMeterPage(kStartTime);
    pages_ = {
        new MiscPage(kStartTime),     meterPage_,
        new StraightPage(kStartTime), new NavigationPage(kStartTime),
        new RecorderPage(kStartTime), new AdjusterPage,
        new BinaryPage(kStartTime),
    };
    for (GalleryPage* page : pages_)
        tabs_->addTab(page, page->Title());
    tabs_->setCurrentWidget(meterPage_);
    setCentralWidget(tabs_);
    setStyleSheet(styleSheetText());

    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(kStepMs);
    connect(&timer_, &QTimer::timeout, this, &GalleryWindow::StepSimulation);

    cpuLabel_->setToolTip(
        QStringLiteral("CPU time of the gallery over the last seconds, in per "
                       "cent of one core"));
    statusBar()->addPermanentWidget(cpuLabel_);
    RefreshCpu();
    cpuTimer_.setInterval(1000);
    connect(&cpuTimer_, &QTimer::timeout, this, &GalleryWindow::RefreshCpu);
    cpuTimer_.start();
}

void GalleryWindow::RefreshCpu() {
    cpuLabel_->setText(CpuMeter::Text(cpuMeter_.Sample()));
}

void GalleryWindow::StartSimulation() {
    timer_.start();
}

void GalleryWindow::StopSimulation() {
    timer_.stop();
}

void GalleryWindow::StepSimulation() {
    for (GalleryPage* page : pages_)
        page->Step(kStepSeconds);
}

}  // namespace kxgallery
