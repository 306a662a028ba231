#pragma once
// The "KxAnalogInd" page's section of straight indicators: the plain bar in each style,
// the horizontal and upright bar instruments in several configurations (LED chain,
// sector colours, bidirectional, bevels, markers), each driven by a simulated process
// that leaves its range now and then so that the overflow triangles blink.
#include <functional>
#include <vector>

#include "pages.h"
#include "processsimulator.h"

class QHBoxLayout;
class QVBoxLayout;

namespace kx {
class TKxAnalogGControl;
}

namespace kxgallery {

class MeterCard;

class StraightPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit StraightPage(double startTime, QWidget* parent = nullptr);

    void Step(double seconds) override;
    int InstrumentCount() const { return int(channels_.size()); }
    kx::TKxAnalogGControl* Instrument(int i) const { return channels_.at(size_t(i)).control; }
    MeterCard* Card(int i) const { return channels_.at(size_t(i)).card; }

  private:
    struct Channel {
        kx::TKxAnalogGControl* control = nullptr;
        MeterCard* card = nullptr;
        ProcessSignal process;
    };
    struct Preset;
    void add(const Preset& preset, QHBoxLayout& row, uint32_t seed, double startTime);
    void feed(Channel& c);

    std::vector<Channel> channels_;
    QVBoxLayout* rows_ = nullptr;
};

}  // namespace kxgallery
