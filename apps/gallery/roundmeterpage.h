#pragma once
// The "KxAnalogInd" page: the round meters in several configurations, each driven by a
// simulated process, with a side panel that changes key properties live and logs the
// meters' limit and overflow events.
#include <vector>

#include "pages.h"
#include "processsimulator.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QSlider;
class QSpinBox;

namespace kx {
class TKxRMeter;
}

namespace kxgallery {

class MeterCard;

class RoundMeterPage : public GalleryPage {
    Q_OBJECT
  public:
    // The processes start at `startTime` seconds of simulated time.
    explicit RoundMeterPage(double startTime, QWidget* parent = nullptr);

    // Advances every process and feeds the meters; does nothing while paused.
    void Step(double seconds) override;
    // Seconds simulated since the page was made.
    double SimulatedTime() const { return time_ - startTime_; }
    bool Paused() const { return paused_; }

    int MeterCount() const { return int(channels_.size()); }
    kx::TKxRMeter* Meter(int i) const { return channels_.at(size_t(i)).meter; }
    MeterCard* Card(int i) const { return channels_.at(size_t(i)).card; }

    // The live controls (entry 0 of the shape combo and value 0 of the steps box keep
    // each meter's own setting).
    QComboBox* ShapeCombo() const { return shapeCombo_; }
    QSpinBox* StepsSpin() const { return stepsSpin_; }
    QCheckBox* LogCheck() const { return logCheck_; }
    QPushButton* PauseButton() const { return pauseButton_; }
    QPushButton* ResetButton() const { return resetButton_; }
    // Per mille of the manual meter's range, -50..1050; enabled while paused.
    QSlider* ManualSlider() const { return manualSlider_; }
    QListWidget* EventLog() const { return eventLog_; }

  private:
    struct Channel {
        kx::TKxRMeter* meter = nullptr;
        MeterCard* card = nullptr;
        ProcessSignal process;
        int32_t ownShape = 0;
        int32_t ownSteps = 0;
    };

    QWidget* buildMeterGrid();
    QWidget* buildSidePanel();
    void connectEvents(int index);

    void applyShape(int comboIndex);
    void applySteps(int steps);
    void applyLogScale(bool on);
    void setPaused(bool paused);
    void applyManual(int ppt);
    void resetMinMax();
    void refreshCaption(int index);
    void showManualValue();
    void logEvent(int index, const QString& text);
    void feed(int index, double fraction);

    std::vector<Channel> channels_;
    double startTime_;
    double time_;
    bool paused_ = false;

    QComboBox* shapeCombo_ = nullptr;
    QSpinBox* stepsSpin_ = nullptr;
    QCheckBox* logCheck_ = nullptr;
    QPushButton* pauseButton_ = nullptr;
    QPushButton* resetButton_ = nullptr;
    QSlider* manualSlider_ = nullptr;
    QLabel* manualValue_ = nullptr;
    QListWidget* eventLog_ = nullptr;
};

}  // namespace kxgallery
