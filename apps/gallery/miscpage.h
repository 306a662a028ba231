#pragma once
// The "KxMisc" page: numeric entry. Four numeric edits, one per notation, show one value
// (type 1.5k, $ff, &101 in any of them); a numeric spin sets the upper limit of a tank
// meter whose level the plant moves; a spin button and a repeating speed button step a
// count. The page's other components (clocks, counters, labels, bevels) come later.
#include <array>

#include "pages.h"

class QLabel;

namespace kx {
class TKx180Meter;
class TKxNumEdit;
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

    void Step(double seconds) override;

  private:
    QWidget* notationsBox();
    QWidget* limitBox();
    QWidget* countBox();
    void setCount(int count);

    std::array<kx::TKxNumEdit*, 4> edits_{};
    kx::TKxNumSpin* limit_ = nullptr;
    kx::TKx180Meter* tank_ = nullptr;
    kx::TKxSpinButton* spin_ = nullptr;
    kx::TKxTimerSpeedBtn* repeat_ = nullptr;
    QLabel* countLabel_ = nullptr;
    double time_;
    int count_ = 0;
};

}  // namespace kxgallery
