#include "kx/framework/customscale.h"

#include <cmath>

#include "kx/framework/setfield.h"
#include "kx/host/color.h"

namespace kx {

TKxCustomScale::TKxCustomScale(QObject* parent)
    : TKxPersistent(parent),
      font_(new TFont(this)),
      stepLines_(new TKxLineSettings(this)),
      subStepLines_(new TKxLineSettings(this)) {
    stepLines_->Pen()->SetColor(clWhite);
    stepLines_->Pen()->SetWidth(2);
    subStepLines_->Pen()->SetColor(clSilver);
    hookNested();
}

void TKxCustomScale::hookNested() {
    auto forward = [this](QObject* sender) { ChangeObject(sender); };
    font_->SetOnChange(forward);
    stepLines_->SetOnChange(forward);
    subStepLines_->SetOnChange(forward);
}

void TKxCustomScale::SetAngle(float v) {
    if (std::isfinite(v)) SetField(*this, angle_, v);
}

void TKxCustomScale::SetAngleMode(TAngleMode v) {
    if (v == amAuto || v == amManual) SetField(*this, angleMode_, v);
}

void TKxCustomScale::SetAngleModeValue(int v) {
    if (v == amAuto || v == amManual) SetAngleMode(static_cast<TAngleMode>(v));
}

void TKxCustomScale::SetFont(const TFont* font) {
    if (font) font_->Assign(*font);
}

void TKxCustomScale::SetStepLines(const TKxLineSettings* v) {
    if (v) stepLines_->Assign(v);
}

void TKxCustomScale::SetSubStepLines(const TKxLineSettings* v) {
    if (v) subStepLines_->Assign(v);
}

void TKxCustomScale::SetTextAlignment(toPos v) {
    if (v >= toTopLeft && v <= toBotRight) SetField(*this, textAlignment_, v);
}

void TKxCustomScale::SetTextAlignmentValue(int v) {
    if (v >= toTopLeft && v <= toBotRight) SetTextAlignment(static_cast<toPos>(v));
}

void TKxCustomScale::SetTextOffsetX(int32_t v) {
    SetField(*this, textOffsetX_, v);
}
void TKxCustomScale::SetTextOffsetY(int32_t v) {
    SetField(*this, textOffsetY_, v);
}
void TKxCustomScale::SetFormatStr(const QString& v) {
    SetField(*this, formatStr_, v);
}
void TKxCustomScale::SetText(const QString& v) {
    SetField(*this, text_, v);
}

void TKxCustomScale::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxCustomScale*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    if (d == this) return d->Change();
    copyTo(*d);
    d->Change();
}

void TKxCustomScale::copyTo(TKxCustomScale& d) const {
    // Mute the nested objects so that the copy notifies once, at the end.
    d.font_->SetOnChange(nullptr);
    d.stepLines_->SetOnChange(nullptr);
    d.subStepLines_->SetOnChange(nullptr);
    d.font_->Assign(*font_);
    d.stepLines_->Assign(stepLines_);
    d.subStepLines_->Assign(subStepLines_);
    d.hookNested();
    d.angle_ = angle_;
    d.angleMode_ = angleMode_;
    d.textAlignment_ = textAlignment_;
    d.textOffsetX_ = textOffsetX_;
    d.textOffsetY_ = textOffsetY_;
    d.formatStr_ = formatStr_;
    d.text_ = text_;
}

void TKxFlexScale::SetSubStepAt(float v) {
    if (std::isfinite(v) && v > 0) SetField(*this, subStepAt_, v);
}

void TKxFlexScale::SetStepMulti(int32_t v) {
    if (v >= 1) SetField(*this, stepMulti_, v);
}

void TKxFlexScale::SetSubStepsVis(int32_t v) {
    if (v >= 1) SetField(*this, subStepsVis_, v);
}

void TKxFlexScale::copyTo(TKxCustomScale& dest) const {
    TKxCustomScale::copyTo(dest);
    if (auto* d = qobject_cast<TKxFlexScale*>(&dest)) {
        d->subStepAt_ = subStepAt_;
        d->stepMulti_ = stepMulti_;
        d->subStepsVis_ = subStepsVis_;
    }
}

}  // namespace kx
