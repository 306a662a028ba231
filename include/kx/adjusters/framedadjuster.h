#pragma once
// TKxFramedAdjuster: what the dial, the gear dial and the sliders share. They sit in an
// outer bevel with a value box and unit at the top and the signal names at the bottom
// (adjusterframe.h); the first five bits of every adjuster's Options mean the same:
// bevel, unit, value box, Name1, Name2. Descendants add their own options above them.
//
// Properties in declaration order (besides TKxAnalogCControl's):
//   BevelOuter  TKxSBevel: Spacing 5, BevelLine blOuter, Width 2: the frame of the whole
//   BevelValue  TKxSBevel: Style bsLowered, Width 2, Color black, Spacing 0: the value box
//   FontValue   TFont: lime, "System", 10 points: the value box's digits
//   Options     the descendant's option set as bits; bits it does not know are dropped
// Changing any of them repaints the control. The value box shows ValueText, or the
// signal's sample value text at design time, drawn off-screen in one copy.
#include <cstdint>
#include <initializer_list>

#include "kx/adjusters/adjusterframe.h"
#include "kx/framework/adjuster.h"
#include "kx/framework/persistent.h"
#include "kx/framework/sbevel.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxFramedAdjuster : public TKxAnalogCControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelValue READ BevelValue WRITE SetBevelValue DESIGNABLE false)
    Q_PROPERTY(kx::TFont* FontValue READ FontValue WRITE SetFontValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
  public:
    // The option bits every adjuster shares.
    enum TFrameOption : int { foBevelOuter, foUnit, foValue, foName1, foName2 };

    // The settings setters copy the given object; null is ignored.
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxSBevel* BevelValue() const { return bevelValue_; }
    void SetBevelValue(const TKxSBevel* v);
    TFont* FontValue() const { return fontValue_; }
    void SetFontValue(const TFont* f);
    uint8_t Options() const { return options_; }
    void SetOptions(uint8_t o);
    bool HasOptionBit(int32_t bit) const { return (options_ >> bit) & 1u; }

    // Where the number went at the last Paint; empty without a value box.
    TRect ValueBoxRect() const { return number_; }

    void Loaded() override;

    void setOptions(int o) { SetOptions(uint8_t(o)); }

    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())
    KX_FLAT_SBEVEL(BevelValue, BevelValue())
    KX_FLAT_FONT(FontValue, FontValue())

  protected:
    // allOptions: the descendant's options, all of them on at first.
    TKxFramedAdjuster(QWidget* parent, uint8_t allOptions);
    void ParamChange(QObject* sender) override;
    // Repaints unless an update phase is in progress.
    void requestRepaint();
    // Makes the descendant's own settings objects repaint it (call from Loaded).
    void repaintOnChange(std::initializer_list<TKxPersistent*> settings);
    // Paints the frame; what is left for the moving part must be at least minRest high.
    TRect paintFrame(int32_t minRest);
    // The value box's digits, when there is a value box.
    void drawNumber();

  private:
    TKxSBevel* bevelOuter_;
    TKxSBevel* bevelValue_;
    TFont* fontValue_;
    TBitmap numberCache_;
    TRect number_{};
    uint8_t allOptions_;
    uint8_t options_;
};

}  // namespace kx
