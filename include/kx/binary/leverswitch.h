#pragma once
// TKxLeverSwitch (not registered) and TKxToggleSwitch: a lever in a bezel that flips
// between two positions, as on an aircraft or test-bench panel.
//
// Drawing of a body B: a raised plate (button frame of 2 pixels, filled with Color);
// the legends CaptionOn at the on end (top when vertical, right when horizontal) and
// CaptionOff at the other, each only when it fits the plate beside the nut; a raised
// round nut of radius NutRadius = max(2, short side of the plate div 4) in the middle
// with a dark hole; the lever, a silver bar tapering from NutRadius * 2 div 3 to
// BallRadius * 2 div 3 (half widths, at least 1) from the nut's centre towards the on end
// while Checked (the off end otherwise), ending in a ball of radius
// BallRadius = max(2, NutRadius * 3 div 4) in the lit colour (ColorOn while on and in a bright
// blink phase, else ColorOff). The ball stops short of the legends, so the lever never covers them;
// where that would leave the ball's centre inside the nut, the legends are left out, and the ball's
// centre reaches at least the nut's rim.
//
// What moves: the lever and its ball; a state change or blink phase composes them over
// the saved plate and copies the body once.
//
// TKxToggleSwitch publishes the lever switch with legends "ON" and "OFF", Mode mSwitch,
// initial size 49 x 97 (vertical); the properties and behaviour are those of the switch
// base (switchbase.h) and the binary base (binarycontrol.h).
#include "kx/binary/switchbase.h"

namespace kx {

class TKxLeverSwitch : public TKxCustomSwitch {
    Q_OBJECT
  public:
    // Where the parts of a lever switch go in a body of the given size.
    struct TGeometry {
        TRect Plate;    // inside the plate's frame
        TPoint Centre;  // the nut's centre and the lever's pivot
        int32_t NutRadius = 0;
        int32_t BallRadius = 0;
        int32_t Reach = 0;  // pivot to ball centre
        bool LegendOn = false;
        bool LegendOff = false;
    };

    explicit TKxLeverSwitch(QWidget* parent = nullptr);

    // Legend sizes are measured on canvas in its current font.
    TGeometry Geometry(TCanvas& canvas, const TRect& body) const;
    // The ball's centre for the lever towards the on end (on) or the off end.
    TPoint BallCentre(const TGeometry& g, bool on) const;

  protected:
    void PaintStatic(TCanvas& canvas, const TRect& body) override;
    void PaintMoving(TCanvas& canvas, const TRect& body) override;

  private:
    TPoint legendPoint(const TGeometry& g, bool on, int32_t w, int32_t h) const;
};

class TKxToggleSwitch : public TKxLeverSwitch {
    Q_OBJECT
  public:
    explicit TKxToggleSwitch(QWidget* parent = nullptr);
};

}  // namespace kx
