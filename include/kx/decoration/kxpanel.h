#pragma once
// TKxPanel: a windowed container framed by the library's double bevel. Children (and a
// layout set on the panel) sit inside the frame: the panel's contents margins (what
// contentsRect() and layouts use) are the frame's thickness on each side.
//
// Client area, per side: the offsets of the bevels drawn (BevelOuter.Offset with
// opBevelOuter, BevelInner.Offset with opBevelInner) plus their TotalWidth. With both
// bevels of thickness 4 and offsets of 1, children get a rectangle shrunk by
// 1 + 1 + 4 + 4 = 10 on every side. The margins follow every change of the bevels or
// Options at once; a side that would come out negative (negative offsets) is 0.
//
// Painting: the outer bevel filled, then the inner one filled (each only with its option),
// so the whole panel is opaque; children paint over it. Without either option nothing is
// drawn and the parent shows through.
//
// AutoSize: when set and the panel has a layout, the panel's size hint is the layout's
// (frame included), so an enclosing layout gives it the room its children ask for; when
// clear, the hint is the panel's current size.
//
// Defaults: 100 x 100; bevels as TKxBevel's; Options opBevelInner and opBevelOuter;
// AutoSize false.
#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/sbevel.h"

namespace kx {

class TKxPanel : public TKxCustomControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
  public:
    enum TKxPanelOption : int { opBevelInner, opBevelOuter };
    Q_ENUM(TKxPanelOption)
    using TKxPanelOptions = uint8_t;  // bit n = option n
    static constexpr TKxPanelOptions Option(TKxPanelOption o) { return TKxPanelOptions(1u << o); }

    explicit TKxPanel(QWidget* parent = nullptr);

    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxPanelOptions Options() const { return options_; }
    void SetOptions(TKxPanelOptions v);
    bool HasOption(TKxPanelOption o) const { return options_ & Option(o); }
    bool AutoSize() const { return autoSize_; }
    void SetAutoSize(bool v);
    void setOptions(int v) { SetOptions(TKxPanelOptions(v & 3)); }
    void setAutoSize(bool v) { SetAutoSize(v); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())

    // Shrinks r to the area inside the frame (see above).
    void AdjustClientRect(TRect& r) const;
    QSize sizeHint() const override;

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    void updateMargins();
    void updateOpacity();

    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxPanelOptions options_ = 3;
    bool autoSize_ = false;
};

}  // namespace kx
