#pragma once
// The "KxAnalogInd" page's section of recorders: an eight-channel trend of a simulated
// reactor that records four times a second, with an hour of history loaded from a record
// file at start (a separator block marks where the history ends and live recording
// begins), the cursor readout in a table beside it, and buttons to stop and restart the
// flow (each restart leaves a separator), record fast for a while, zoom, and save, load
// or print the records. Below, four mini trends follow four of the channels, and an
// operating-point display shows where the feed pump runs on its curves as its speed
// changes, with a tail of its last positions.
#include <QString>
#include <array>
#include <vector>

#include "pages.h"
#include "processsimulator.h"

class QLabel;
class QPushButton;
class QTableWidget;

namespace kx {
class TKxMiniTrend;
class TKxOperatingPoint;
class TKxTrend;
}  // namespace kx

namespace kxgallery {

class RecorderPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit RecorderPage(double startTime, QWidget* parent = nullptr);

    kx::TKxTrend* Trend() const { return trend_; }
    QTableWidget* Readout() const { return readout_; }
    QPushButton* FlowButton() const { return flowButton_; }
    QLabel* Status() const { return status_; }
    const std::vector<kx::TKxMiniTrend*>& MiniTrends() const { return minis_; }
    kx::TKxOperatingPoint* OperatingPoint() const { return pump_; }
    // The pump's relative speed now (1 = full speed).
    double PumpSpeed() const;

    void Step(double seconds) override;
    // The file actions behind the buttons, without dialogs; each reports in Status().
    void SaveTo(const QString& file);
    void LoadFrom(const QString& file);
    void PrintTo(const QString& pdfFile);

  private:
    QWidget* trendBox(double startTime);
    QWidget* readoutBox();
    QWidget* buttonRow();
    QWidget* miniBox();
    QWidget* pumpBox();
    void loadHistory(double startTime);
    void showReadout();
    void toggleFlow();

    kx::TKxTrend* trend_ = nullptr;
    QTableWidget* readout_ = nullptr;
    QPushButton* flowButton_ = nullptr;
    QLabel* status_ = nullptr;
    std::vector<ProcessSignal> processes_;
    std::vector<kx::TKxMiniTrend*> minis_;
    kx::TKxOperatingPoint* pump_ = nullptr;
    double time_ = 0.0;
};

}  // namespace kxgallery
