#include "kx/decoration/kxbevel.h"

#include <QPointer>
#include <cmath>

namespace kx {

void KxPaintFrameBevels(TCanvas& canvas, TRect& r, const TKxSBevel* outer, const TKxSBevel* inner,
                        bool filled) {
    for (const TKxSBevel* b : {outer, inner}) {
        if (!b) continue;
        if (filled)
            b->PaintFilledBevel(canvas, r);
        else
            b->PaintBevel(canvas, r);
    }
}

void KxInitFrameBevels(TKxSBevel& inner, TKxSBevel& outer) {
    inner.SetStyle(bsLowered);
    inner.SetSpacing(5);
    inner.SetWidth(2);
    inner.SetBevelLine(blInner);
    outer.SetSpacing(5);
    outer.SetWidth(2);
    outer.SetBevelLine(blOuter);
}

TKxCustomBevel::TKxCustomBevel(QWidget* parent)
    : TKxGraphicControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)) {
    resize(100, 100);
    KxInitFrameBevels(*bevelInner_, *bevelOuter_);
    auto handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
}

void TKxCustomBevel::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}

void TKxCustomBevel::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxCustomBevel::SetOptions(TKxBevelOptions v) {
    options_ = v;
    Invalidate();
}

void TKxCustomBevel::ParamChange(QObject*) {
    Invalidate();
}

void TKxCustomBevel::CanPaint(TCanvas& canvas) {
    TRect r = ClientRect();
    KxPaintFrameBevels(canvas, r, HasOption(opBevelOuter) ? bevelOuter_ : nullptr,
                       HasOption(opBevelInner) ? bevelInner_ : nullptr, !HasOption(opTranparent));
    content_ = r;
}

void TKxCustomBevel::Paint() {
    if (Visible() || Designing()) CanPaint(Canvas());
}

TKxBevel::TKxBevel(QWidget* parent) : TKxCustomBevel(parent) {}

TKxCustomIndBevel::TKxCustomIndBevel(QWidget* parent) : TKxCustomBevel(parent) {}

void TKxCustomIndBevel::SetValue(double v) {
    if (std::isnan(v) || v == value_) return;
    value_ = v;
    QPointer<TKxCustomIndBevel> self(this);
    emit OnValueChange(this);
    if (self) ValueChange();  // a handler may have deleted the control
}

}  // namespace kx
