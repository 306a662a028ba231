#pragma once
// TKxBar: a plain bar that fills its control: the outer bevel, the bar's own bevel and
// the bar (any style of TBarSettings: solid, LED chain, marker, sector colours), with the
// value and unit printed across it in inverting ink.
//
// Painting: Paint draws the bevels and lays out the bar rectangle; a reading composes
// the bar off-screen (TBarSettings::PaintBar) and puts it on the surface in one copy,
// nothing else.
//
// Size: a control lower than 2 x (bar bevel + outer bevel) + BarSettings.minHeight or
// narrower than 2 x outer bevel + BarSettings.minWidth grows to that size at the next
// paint (the bar's own bevel counts only in the height, as in the classic bar); it never
// shrinks. It grows by itself to at most kKxMaxAutoSize pixels a side, so absurd
// minimum settings cannot make it allocate a surface of gigabytes; an application may
// still size it larger.
//
// Choices where the classic behaviour is silent:
//  - The bar colour is the colour of the sector the reading lies in when
//    BarSettings.Options holds opUseSectorCol, else BarSettings.Color.
//  - A bidirectional bar (opBidir) grows from the position of the value 0, clamped to
//    the range (a range that does not hold 0 grows from its nearer end).
//  - Every change of the bar settings repaints the control (layout included), not only
//    the bar, so a new bevel or minimum size takes effect at once.
//  - Readings are drawn while the control is Visible() (shown or not yet shown); NaN
//    readings are ignored by the value model, infinite ones pin the bar at its ends.
#include "kx/framework/analogcontrol.h"
#include "kx/framework/barsettings.h"
#include "kx/framework/sbevel.h"

namespace kx {

class TKxBar : public TKxAnalogGControl {
    Q_OBJECT
    Q_PROPERTY(kx::TBarSettings* BarSettings READ BarSettings WRITE SetBarSettings DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
  public:
    explicit TKxBar(QWidget* parent = nullptr);

    TBarSettings* BarSettings() const { return barSettings_; }
    // Copies (null is ignored).
    void SetBarSettings(const TBarSettings* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);

    KX_FLAT_BARSETTINGS(BarSettings, BarSettings())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())

    void Loaded() override;
    // The smallest size the bar needs (see above).
    int32_t MinimumWidth() const;
    int32_t MinimumHeight() const;

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;
    void ValueChange() override;
    // The change handler of the bar settings.
    void VChange(QObject* sender);

  private:
    void requestRepaint();

    TBarSettings* barSettings_;
    TKxSBevel* bevelOuter_;
};

// What every bar does on a reading: the value text, the bar colour and the sectors into
// the bar settings, then the bar at the reading's position.
void KxPaintBarReading(TKxAnalogGControl& control, TBarSettings& bar, TCanvas& canvas);

}  // namespace kx
