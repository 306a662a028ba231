#pragma once
// The "KxAnalogInd" page's section of straight indicators: the plain bar in each style,
// the horizontal and upright bar instruments in several configurations (LED chain,
// sector colours, bidirectional, bevels, markers), each driven by a simulated process
// that leaves its range now and then so that the overflow triangles blink; and a row of
// flex meters that the layout stretches with the window.
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
    // The flex meters, laid out (not carded) so that they stretch with the page.
    int FlexCount() const { return int(flex_.size()); }
    kx::TKxAnalogGControl* Flex(int i) const { return flex_.at(size_t(i)).control; }

  private:
    struct Channel {
        kx::TKxAnalogGControl* control = nullptr;
        MeterCard* card = nullptr;
        ProcessSignal process;
    };
    struct Preset;
    void add(const Preset& preset, QHBoxLayout& row, uint32_t seed, double startTime);
    void feed(Channel& c);
    void addFlexRow(uint32_t seed, double startTime);

    std::vector<Channel> channels_;
    std::vector<Channel> flex_;
    QVBoxLayout* rows_ = nullptr;
};

}  // namespace kxgallery
