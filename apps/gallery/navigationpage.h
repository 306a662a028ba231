#pragma once
// The "KxAnalogInd" page's section of readouts, vessels and navigation instruments: the
// value indicator, thermometers, tanks that fill and empty, compasses whose heading
// swings through north and a course/attitude indicator on a rolling, pitching vehicle.
// Each instrument is driven by its own simulated motion.
#include <functional>
#include <vector>

#include "pages.h"

class QHBoxLayout;
class QVBoxLayout;

namespace kx {
class TKxAnalogGControl;
}

namespace kxgallery {

class MeterCard;

class NavigationPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit NavigationPage(double startTime, QWidget* parent = nullptr);

    void Step(double seconds) override;
    double Time() const { return time_; }
    int InstrumentCount() const { return int(channels_.size()); }
    kx::TKxAnalogGControl* Instrument(int i) const { return channels_.at(size_t(i)).control; }
    MeterCard* Card(int i) const { return channels_.at(size_t(i)).card; }

  private:
    // Sets the instrument's readings for a simulated time in seconds.
    using Motion = std::function<void(kx::TKxAnalogGControl&, double)>;
    struct Channel {
        kx::TKxAnalogGControl* control = nullptr;
        MeterCard* card = nullptr;
        Motion motion;
    };
    struct Preset;
    void add(const Preset& preset, QHBoxLayout& row);

    std::vector<Channel> channels_;
    double time_;
};

}  // namespace kxgallery
