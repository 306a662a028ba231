#pragma once
// TKxClock: the current date, time or both as text inside two bevels, refreshed once per
// wall-clock second from the blink service.
//
// Painting: see TKxSecondDisplay. The text (DateToStr, TimeToStr or DateTimeToStr of
// Now, in the locale's formats) stands at the top-left corner of the area inside the
// bevels, on the inner bevel's Color (black), in the font's colour (lime); a text wider
// than the area is cut at its right edge (and a taller one at its bottom). Each second
// pulse redraws that area alone, when the control is visible or designing.
//
// The pulses follow the blink service's own second count, so the shown second may lag
// the true second boundary by up to one second. Loaded joins the pulses (the clock ticks
// only once the form is loaded); the destructor leaves them.
//
// AutoHint: while set (and not designing), each redraw makes the hint the current date
// (the tool tip changes only when the date does).
//
// Defaults: 69 x 24; ClockOption coTime; AutoHint true; Font "System", 10 points, lime;
// BevelInner lowered, width 1, spacing 0, Color black; BevelOuter raised, width 1,
// spacing 1.
#include "kx/recorders/seconddisplay.h"

namespace kx {

class TKxClock : public TKxSecondDisplay {
    Q_OBJECT
    Q_PROPERTY(TClockOption ClockOption READ ClockOption WRITE setClockOption)
    Q_PROPERTY(bool AutoHint READ AutoHint WRITE setAutoHint)
  public:
    enum TClockOption : int { coDate, coTime, coDateTime };
    Q_ENUM(TClockOption)

    explicit TKxClock(QWidget* parent = nullptr);

    TClockOption ClockOption() const { return option_; }
    void SetClockOption(TClockOption v);
    bool AutoHint() const { return autoHint_; }
    void SetAutoHint(bool v) { autoHint_ = v; }
    void setClockOption(TClockOption v) { SetClockOption(v); }
    void setAutoHint(bool v) { SetAutoHint(v); }

    QString Text() const override;
    void Loaded() override;
    void WMFlash(TMessage& message) override;

  protected:
    TPoint TextPosition(int32_t w, int32_t h, int32_t aw, int32_t ah) const override;
    void Paint() override;

  private:
    void updateHint();

    TClockOption option_ = coTime;
    bool autoHint_ = true;
};

}  // namespace kx
