#pragma once
// Frames made of the library's double bevel (TKxSBevel).
//
// TKxCustomBevel paints BevelOuter and then BevelInner into its client rectangle, each
// shrinking the rectangle to its inside; what remains is ContentRect, where descendants
// draw. Filled (the default) each bevel paints its face (PaintFilledBevel); with
// opTranparent (the option's published spelling) only the lines and rings are drawn and
// the pixels between them stay transparent, so what lies behind the control (the parent
// and its other children, composed by Qt) shows through. Without opBevelOuter and
// opBevelInner nothing is drawn at all.
//
// TKxBevel is the plain frame (100 x 100). TKxCustomIndBevel adds a value and its format
// for descendants that show a value in a frame: setting a different Value stores it, emits
// OnValueChange(this), then calls ValueChange (empty here); a NaN is ignored.
//
// Defaults: BevelInner lowered, spacing 5, width 2, line blInner; BevelOuter raised,
// spacing 5, width 2, line blOuter; Options opBevelInner and opBevelOuter.
// Painting: a settings change repaints the whole control; nothing moves, so nothing is
// cached beyond the surface itself.
#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/sbevel.h"

namespace kx {

class TKxCustomBevel : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxSBevel* BevelInner READ BevelInner WRITE SetBevelInner DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
  public:
    enum TKxBevelOption : int { opBevelInner, opBevelOuter, opTranparent };
    Q_ENUM(TKxBevelOption)
    using TKxBevelOptions = uint8_t;  // bit n = option n
    static constexpr TKxBevelOptions Option(TKxBevelOption o) { return TKxBevelOptions(1u << o); }
    static constexpr TKxBevelOptions kDefaultOptions = (1u << opBevelInner) | (1u << opBevelOuter);

    // The setters copy the given object; null is ignored.
    TKxSBevel* BevelInner() const { return bevelInner_; }
    void SetBevelInner(const TKxSBevel* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);
    TKxBevelOptions Options() const { return options_; }
    void SetOptions(TKxBevelOptions v);
    bool HasOption(TKxBevelOption o) const { return options_ & Option(o); }
    void setOptions(int v) { SetOptions(TKxBevelOptions(v & 7)); }

    KX_FLAT_SBEVEL(BevelInner, BevelInner())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())

    // The area inside the bevels as the last paint left it.
    TRect ContentRect() const { return content_; }
    // Paints the bevels into canvas over the client rectangle (see above).
    void CanPaint(TCanvas& canvas);

  protected:
    explicit TKxCustomBevel(QWidget* parent);
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    TKxSBevel* bevelInner_;
    TKxSBevel* bevelOuter_;
    TKxBevelOptions options_ = kDefaultOptions;
    TRect content_{};
};

class TKxBevel : public TKxCustomBevel {
    Q_OBJECT
  public:
    explicit TKxBevel(QWidget* parent = nullptr);
};

class TKxCustomIndBevel : public TKxCustomBevel {
    Q_OBJECT
  public:
    double Value() const { return value_; }
    void SetValue(double v);
    const QString& ValueFormat() const { return valueFormat_; }
    // Stores only; shown at the next paint.
    void SetValueFormat(const QString& v) { valueFormat_ = v; }

  signals:
    void OnValueChange(QObject* sender);

  protected:
    explicit TKxCustomIndBevel(QWidget* parent);
    // Called after OnValueChange; empty here.
    virtual void ValueChange() {}

  private:
    double value_ = 0.0;
    QString valueFormat_;
};

// The two bevels as every frame of the library sets them up.
void KxInitFrameBevels(TKxSBevel& inner, TKxSBevel& outer);
// Paints the outer and then the inner bevel into r (each only when asked for), filled or
// as lines only, and leaves r the area inside them.
void KxPaintFrameBevels(TCanvas& canvas, TRect& r, const TKxSBevel* outer, const TKxSBevel* inner,
                        bool filled);

}  // namespace kx
