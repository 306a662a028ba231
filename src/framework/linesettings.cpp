#include "kx/framework/linesettings.h"

#include "kx/framework/setfield.h"

namespace kx {

TKxLineSettings::TKxLineSettings(QObject* parent) : TKxPersistent(parent), pen_(new TPen(this)) {
    hookPen();
}

void TKxLineSettings::hookPen() {
    pen_->SetOnChange([this](QObject* sender) { ChangeObject(sender); });
}

void TKxLineSettings::SetPen(const TPen* pen) {
    if (!pen) return;
    if (pen != pen_) pen_->Assign(*pen);
    Change();
}

void TKxLineSettings::SetLength(int32_t v) {
    SetField(*this, length_, v);
}
void TKxLineSettings::SetOffset(int32_t v) {
    SetField(*this, offset_, v);
}
void TKxLineSettings::SetVisible(bool v) {
    SetField(*this, visible_, v);
}

void TKxLineSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxLineSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->pen_->SetOnChange(nullptr);
    d->pen_->Assign(*pen_);
    d->hookPen();
    d->length_ = length_;
    d->offset_ = offset_;
    d->visible_ = visible_;
    d->Change();
}

}  // namespace kx
