#include "kx/recorders/seconddisplay.h"

#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/framework/accessible.h"
#include "kx/recorders/trendaccessible.h"

namespace kx {

TKxSecondDisplay::TKxSecondDisplay(QWidget* parent)
    : TKxGraphicControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      font_(new TFont(this)) {
    bevelOuter_->SetStyle(bsRaised);
    bevelOuter_->SetWidth(1);
    bevelOuter_->SetSpacing(1);
    bevelInner_->SetStyle(bsLowered);
    bevelInner_->SetWidth(1);
    bevelInner_->SetSpacing(0);
    font_->SetName(QStringLiteral("System"));
    auto handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    font_->SetOnChange(handler);
    KxInstallRecorderAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent, true);
}

TKxSecondDisplay::~TKxSecondDisplay() {
    DelControl(this);
}

void TKxSecondDisplay::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}

void TKxSecondDisplay::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxSecondDisplay::SetFont(const TFont* v) {
    if (v && v != font_) font_->Assign(*v);
}

void TKxSecondDisplay::ParamChange(QObject*) {
    Invalidate();
}

void TKxSecondDisplay::SubscribeSeconds(bool on) {
    if (on == subscribed_) return;
    subscribed_ = on;
    if (on)
        AddControl(this, kFlashSecondCode);
    else
        DelControl(this);
}

void TKxSecondDisplay::Paint() {
    TRect r = ClientRect();
    TCanvas& c = Canvas();
    bevelOuter_->PaintFilledBevel(c, r);
    bevelInner_->PaintFilledBevel(c, r);
    // A frame that grows outwards (negative spacing or offsets) must not make the text
    // bitmap larger than the control: nothing outside it shows anyway.
    const TRect client = ClientRect();
    textRect_ = TRect{std::max(r.Left, client.Left), std::max(r.Top, client.Top),
                      std::min(r.Right, client.Right), std::min(r.Bottom, client.Bottom)};
    PaintText();
}

void TKxSecondDisplay::PaintText() {
    // Saturating: a frame turned inside out by absurd spacings leaves any corners here.
    const int32_t aw = textRect_.Width(), ah = textRect_.Height();
    if (aw <= 0 || ah <= 0) return;
    MakeCompatibleBitmap(textBitmap_, aw, ah, TPoint{textRect_.Left, textRect_.Top});
    TCanvas& c = textBitmap_.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(bevelInner_->Color());
    c.FillRect(TRect{0, 0, aw, ah});
    c.SetFont(*font_);
    c.Brush().SetStyle(bsClear);
    const QString text = Text();
    const TPoint at = TextPosition(c.TextWidth(text), c.TextHeight(text), aw, ah);
    c.TextOut(at.X, at.Y, text);
    Canvas().Draw(textRect_.Left, textRect_.Top, textBitmap_);
    KxAccessibleTextChanged(this, text);
}

}  // namespace kx
