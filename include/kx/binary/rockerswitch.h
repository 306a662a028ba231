#pragma once
// TKxRockerSwitch: a two-position rocker in a sunken bezel. The rocker is split across
// the pivot into the on half (top when vertical, right when horizontal) and the off half;
// the half that is pressed down - the on half while Checked - sits lowered and darker,
// the other stands raised. The on half's face is the lit colour (ColorOn while on and in
// a bright blink phase, else ColorOff); the off half's face is Color. CaptionOn ("I") and
// CaptionOff ("O") are the legends on the halves, shifted one pixel down and right on the
// pressed half; a legend that does not fit its half is left out.
//
// Properties, defaults and behaviour of the switch base (switchbase.h) and the binary
// base (binarycontrol.h); initial size 41 x 65 (vertical), Mode mSwitch.
//
// Geometry of a body B: the bezel is a lowered button frame (2 pixels) filled with
// Color; the rocker fills the rest and is split at its middle (the on half takes the odd
// pixel). Each half is a button frame (2 pixels) around its face.
//
// What moves: the whole rocker; a state change or blink phase composes it over the saved
// bezel and copies the body once.
#include "kx/binary/switchbase.h"

namespace kx {

class TKxRockerSwitch : public TKxCustomSwitch {
    Q_OBJECT
  public:
    explicit TKxRockerSwitch(QWidget* parent = nullptr);

    // The two halves of the rocker inside a body (on half first).
    static std::pair<TRect, TRect> Halves(const TRect& body, bool vertical);

  protected:
    void PaintStatic(TCanvas& canvas, const TRect& body) override;
    void PaintMoving(TCanvas& canvas, const TRect& body) override;
};

}  // namespace kx
