#include "kx/adjusters/framedadjuster.h"

#include "kx/drawing/text.h"

namespace kx {

TKxFramedAdjuster::TKxFramedAdjuster(QWidget* parent, uint8_t allOptions)
    : TKxAnalogCControl(parent),
      bevelOuter_(new TKxSBevel(this)),
      bevelValue_(new TKxSBevel(this)),
      fontValue_(new TFont(this)),
      allOptions_(allOptions),
      options_(allOptions) {
    bevelOuter_->SetSpacing(5);
    bevelOuter_->SetBevelLine(TKxSBevel::blOuter);
    bevelOuter_->SetWidth(2);
    bevelValue_->SetStyle(TKxSBevel::bsLowered);
    bevelValue_->SetWidth(2);
    bevelValue_->SetColor(clBlack);
    bevelValue_->SetSpacing(0);
    fontValue_->SetColor(clLime);
    fontValue_->SetName(QStringLiteral("System"));
    fontValue_->SetSize(10);
}

void TKxFramedAdjuster::repaintOnChange(std::initializer_list<TKxPersistent*> settings) {
    const auto repaint = [this](QObject* sender) {
        if (UpdateCount() == 0) ParamChange(sender);
    };
    for (TKxPersistent* p : settings)
        p->SetOnChange(repaint);
}

void TKxFramedAdjuster::Loaded() {
    repaintOnChange({bevelOuter_, bevelValue_});
    fontValue_->SetOnChange([this](QObject* sender) {
        if (UpdateCount() == 0) ParamChange(sender);
    });
    TKxAnalogCControl::Loaded();
}

void TKxFramedAdjuster::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxFramedAdjuster::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxFramedAdjuster::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}

void TKxFramedAdjuster::SetFontValue(const TFont* f) {
    if (f && f != fontValue_) fontValue_->Assign(*f);
}

void TKxFramedAdjuster::SetOptions(uint8_t o) {
    options_ = uint8_t(o & allOptions_);
    ParamChange(this);
}

void TKxFramedAdjuster::ParamChange(QObject* sender) {
    TKxAnalogCControl::ParamChange(sender);
    requestRepaint();
}

TRect TKxFramedAdjuster::paintFrame(int32_t minRest) {
    const TKxAdjusterFrameParts parts{*bevelOuter_,
                                      HasOptionBit(foBevelOuter),
                                      *bevelValue_,
                                      *fontValue_,
                                      *Font(),
                                      *SignalSettings(),
                                      HasOptionBit(foValue),
                                      HasOptionBit(foUnit),
                                      HasOptionBit(foName1),
                                      HasOptionBit(foName2),
                                      minRest};
    const TKxAdjusterFrame frame = KxPaintAdjusterFrame(Canvas(), ClientRect(), parts);
    number_ = frame.Number;
    return frame.Rest;
}

void TKxFramedAdjuster::drawNumber() {
    if (!HasOptionBit(foValue) || number_.Right <= number_.Left) return;
    const QString text = Designing() ? SignalSettings()->SampleValueText() : ValueText();
    KxDrawNumberBox(Canvas(), numberCache_, number_, bevelValue_->Color(), *fontValue_, text);
}

}  // namespace kx
