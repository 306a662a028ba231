#include "kx/framework/textsettings.h"

#include "kx/framework/setfield.h"

namespace kx {

TKxText::TKxText(QObject* parent) : TKxPersistent(parent), font_(new TFont(this)) {
    hookFont();
}

void TKxText::hookFont() {
    font_->SetOnChange([this](QObject* sender) { ChangeObject(sender); });
}

void TKxText::SetText(const QString& v) {
    SetField(*this, text_, v);
}

void TKxText::SetFont(const TFont* font) {
    if (font) font_->Assign(*font);
}

void TKxText::SetOffsetX(int32_t v) {
    SetField(*this, offsetX_, v);
}
void TKxText::SetOffsetY(int32_t v) {
    SetField(*this, offsetY_, v);
}
void TKxText::SetPos(toPos v) {
    if (v >= toTopLeft && v <= toBotRight) SetField(*this, pos_, v);
}
void TKxText::SetPosValue(int v) {
    if (v >= toTopLeft && v <= toBotRight) SetPos(static_cast<toPos>(v));
}
void TKxText::SetVisible(bool v) {
    SetField(*this, visible_, v);
}

void TKxText::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxText*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->font_->SetOnChange(nullptr);
    d->font_->Assign(*font_);
    d->hookFont();
    d->text_ = text_;
    d->offsetX_ = offsetX_;
    d->offsetY_ = offsetY_;
    d->pos_ = pos_;
    d->visible_ = visible_;
    d->Change();
}

}  // namespace kx
