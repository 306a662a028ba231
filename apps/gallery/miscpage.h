#pragma once
// The "KxMisc" page: numeric entry. Four numeric edits, one per notation, show one value
// (type 1.5k, $ff, &101 in any of them); a numeric spin sets the upper limit of a tank
// meter whose level the plant moves; a spin button and a repeating speed button step a
// count. Two operating-hour counters (one counting up towards a service limit, one
// counting down to a filter change) keep their counts in kxgallery.ini in the gallery's
// output folder; two clocks show the time and the date. A status label cycles through
// machine states over a gradient in a bevel, and every section is a panel with a
// gradient title bar.
#include <array>

#include "pages.h"

class QLabel;

namespace kx {
class TKx180Meter;
class TKxClock;
class TKxLabel;
class TKxNumEdit;
class TKxOpHourCounter;
class TKxNumSpin;
class TKxSpinButton;
class TKxTimerSpeedBtn;
}  // namespace kx

namespace kxgallery {

class MiscPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit MiscPage(double startTime, QWidget* parent = nullptr);

    // The edits in the order floating point, integer, hexadecimal, binary.
    const std::array<kx::TKxNumEdit*, 4>& Edits() const { return edits_; }
    kx::TKxNumSpin* LimitSpin() const { return limit_; }
    kx::TKx180Meter* TankMeter() const { return tank_; }
    kx::TKxSpinButton* CountSpin() const { return spin_; }
    kx::TKxTimerSpeedBtn* CountButton() const { return repeat_; }
    int Count() const { return count_; }
    kx::TKxOpHourCounter* RunHours() const { return runHours_; }
    kx::TKxOpHourCounter* FilterCountdown() const { return filter_; }
    kx::TKxClock* TimeClock() const { return clock_; }
    kx::TKxClock* DateClock() const { return dateClock_; }
    // "Service due" / "Filter change due" while the counters say so.
    QLabel* ServiceLabel() const { return serviceLabel_; }
    QLabel* FilterLabel() const { return filterLabel_; }
    kx::TKxLabel* StateLabel() const { return state_; }

    void Step(double seconds) override;

  private:
    QWidget* notationsBox();
    QWidget* limitBox();
    QWidget* countBox();
    QWidget* hoursBox();
    QWidget* stateBox();
    void showState();
    void restartFilter();
    void setCount(int count);

    std::array<kx::TKxNumEdit*, 4> edits_{};
    kx::TKxNumSpin* limit_ = nullptr;
    kx::TKx180Meter* tank_ = nullptr;
    kx::TKxSpinButton* spin_ = nullptr;
    kx::TKxTimerSpeedBtn* repeat_ = nullptr;
    QLabel* countLabel_ = nullptr;
    kx::TKxOpHourCounter* runHours_ = nullptr;
    kx::TKxOpHourCounter* filter_ = nullptr;
    kx::TKxClock* clock_ = nullptr;
    kx::TKxClock* dateClock_ = nullptr;
    QLabel* serviceLabel_ = nullptr;
    QLabel* filterLabel_ = nullptr;
    kx::TKxLabel* state_ = nullptr;
    double time_;
    int count_ = 0;
};

}  // namespace kxgallery
