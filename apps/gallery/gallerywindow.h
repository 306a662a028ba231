#pragma once
// The gallery's main window: one tab per gallery page (see pages.h), in palette order,
// the timer that drives the simulated plant behind the live components, and a status bar
// that shows what the live panel costs (the process's CPU load, refreshed every second).
#include <QMainWindow>
#include <QTimer>
#include <vector>

#include "cpumeter.h"

class QLabel;
class QTabWidget;

namespace kxgallery {

class GalleryPage;
class RoundMeterPage;

class GalleryWindow : public QMainWindow {
    Q_OBJECT
  public:
    static constexpr int kStepMs = 50;
    static constexpr double kStepSeconds = kStepMs / 1000.0;
    // Simulated time at which the processes start: chosen so that the first seconds
    // show an overflow, a limit alarm and well spread min/max marks.
    static constexpr double kStartTime = 158.5;

    explicit GalleryWindow(QWidget* parent = nullptr);

    QTabWidget* Tabs() const { return tabs_; }
    int PageCount() const { return int(pages_.size()); }
    GalleryPage* Page(int index) const { return pages_.at(size_t(index)); }
    RoundMeterPage* MeterPage() const { return meterPage_; }

    // The timer (kStepMs, precise) steps the simulation while running.
    void StartSimulation();
    void StopSimulation();
    bool SimulationRunning() const { return timer_.isActive(); }
    const QTimer& Timer() const { return timer_; }
    // One simulation step on every page.
    void StepSimulation();
    // The status bar's "CPU 4.2 %" and the refresh behind it.
    QLabel* CpuLabel() const { return cpuLabel_; }
    void RefreshCpu();

  private:
    QTabWidget* tabs_;
    std::vector<GalleryPage*> pages_;
    RoundMeterPage* meterPage_ = nullptr;
    QTimer timer_;
    QLabel* cpuLabel_;
    CpuMeter cpuMeter_;
    QTimer cpuTimer_;
};

}  // namespace kxgallery
