#include "kx/decoration/kxpanel.h"

#include <QLayout>
#include <algorithm>

#include "kx/decoration/kxbevel.h"
#include "kx/decoration/labelaccessible.h"
#include "kx/drawing/geometry.h"
#include "kx/host/numeric.h"

namespace kx {

TKxPanel::TKxPanel(QWidget* parent)
    : TKxCustomControl(parent), bevelInner_(new TKxSBevel(this)), bevelOuter_(new TKxSBevel(this)) {
    resize(100, 100);
    KxInitFrameBevels(*bevelInner_, *bevelOuter_);
    auto handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    updateMargins();
    KxInstallDecorationAccessibility();
    updateOpacity();
}

void TKxPanel::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}

void TKxPanel::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxPanel::SetOptions(TKxPanelOptions v) {
    options_ = v;
    updateMargins();
    updateOpacity();
    Invalidate();
}

void TKxPanel::SetAutoSize(bool v) {
    if (v == autoSize_) return;
    autoSize_ = v;
    updateGeometry();
}

void TKxPanel::ParamChange(QObject*) {
    updateMargins();
    Invalidate();
}

void TKxPanel::AdjustClientRect(TRect& r) const {
    int32_t total = 0;
    for (const TKxSBevel* b : {bevelOuter_, bevelInner_}) {
        if (!HasOption(b == bevelOuter_ ? opBevelOuter : opBevelInner)) continue;
        total += b->TotalWidth();
        const TKxOffset& o = *b->Offset();
        KxMultiBorder(r, o.Left(), o.Top(), o.Right(), o.Bottom());
    }
    KxBorder(r, total);
}

void TKxPanel::updateMargins() {
    constexpr int32_t kBig = 1 << 20;  // any rectangle larger than the frame
    TRect r{0, 0, kBig, kBig};
    AdjustClientRect(r);
    // Negative offsets would put children over the frame's outside; Qt wants margins >= 0.
    // In 64 bits and saturated: absurd spacings leave the corners anywhere in the int32 range.
    setContentsMargins(std::max(0, r.Left), std::max(0, r.Top),
                       std::max(0, Saturate(int64_t(kBig) - r.Right)),
                       std::max(0, Saturate(int64_t(kBig) - r.Bottom)));
}

void TKxPanel::updateOpacity() {
    // Either bevel fills the whole panel, so Qt need not paint what lies behind it; without
    // both the panel draws nothing and its parent shows through.
    setAttribute(Qt::WA_OpaquePaintEvent, options_ != 0);
}

QSize TKxPanel::sizeHint() const {
    if (autoSize_ && layout()) return layout()->totalSizeHint();
    return TKxCustomControl::sizeHint();
}

void TKxPanel::Paint() {
    if (!Visible() && !Designing()) return;
    TRect r = ClientRect();
    KxPaintFrameBevels(Canvas(), r, HasOption(opBevelOuter) ? bevelOuter_ : nullptr,
                       HasOption(opBevelInner) ? bevelInner_ : nullptr, true);
}

}  // namespace kx
