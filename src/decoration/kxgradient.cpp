#include "kx/decoration/kxgradient.h"

#include "kx/drawing/gradient.h"

namespace kx {

TKxGradient::TKxGradient(QWidget* parent)
    : TKxGraphicControl(parent), grad_(new TKxGradSettings(this)) {
    resize(50, 50);
    grad_->SetOnChange([this](QObject* sender) { ParamChange(sender); });
    // The gradient covers every pixel: Qt need not paint what lies behind.
    setAttribute(Qt::WA_OpaquePaintEvent, true);
}

void TKxGradient::SetGradSettings(const TKxGradSettings* v) {
    if (v && v != grad_) grad_->Assign(v);
}

void TKxGradient::ParamChange(QObject*) {
    Invalidate();
}

void TKxGradient::Paint() {
    if (Visible() || Designing())
        KxGradFill(Canvas(), ClientRect(), grad_->ColorFrom(), grad_->ColorTo(), grad_->Style());
}

}  // namespace kx
