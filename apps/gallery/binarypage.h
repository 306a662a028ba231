#pragma once
// The "KxBinary" page: a 16-bit machine status word on a group of LEDs driven by a
// simulated machine, LEDs of every shape and caption position, lamps blinking at each
// frequency, colour bit buttons as a radio group and as a bit editor, and the switches in
// both orientations, each switching a lamp.
#include <QString>
#include <vector>

#include "pages.h"

class QLabel;

namespace kx {
class TKxBinGControl;
class TKxLED;
}  // namespace kx

namespace kxgallery {

class BinaryPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit BinaryPage(double startTime, QWidget* parent = nullptr);

    void Step(double seconds) override;

    // The simulated machine's status word at a time (seconds).
    static int32_t MachineWord(double time);
    const std::vector<kx::TKxLED*>& StatusLeds() const { return statusLeds_; }
    const std::vector<kx::TKxBinGControl*>& Switches() const { return switches_; }
    // The lamp each switch drives, in the order of Switches().
    const std::vector<kx::TKxLED*>& SwitchLamps() const { return switchLamps_; }
    QString WordText() const;

  private:
    QWidget* statusSection();
    QWidget* shapeSection();
    QWidget* buttonSection();
    QWidget* switchSection();

    double time_;
    std::vector<kx::TKxLED*> statusLeds_;
    std::vector<kx::TKxBinGControl*> switches_;
    std::vector<kx::TKxLED*> switchLamps_;
    QLabel* wordLabel_ = nullptr;
    QLabel* editorLabel_ = nullptr;
    kx::TKxBinGControl* editorFirst_ = nullptr;
};

}  // namespace kxgallery
