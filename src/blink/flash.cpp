#include "kx/blink/flash.h"

namespace kx {

TKxFlash::TKxFlash(QObject* owner) : QObject(owner), source_(CreateTickSource()) {}

TKxFlash::~TKxFlash() {
    destroying_ = true;
    enabled_ = false;
    onTimer_ = nullptr;
    source_->Stop();
}

void TKxFlash::SetEnabled(bool value) {
    if (enabled_ == value) return;
    enabled_ = value;
    UpdateTimer();
}

void TKxFlash::SetInterval(uint32_t value) {
    if (interval_ == value) return;
    interval_ = value;
    UpdateTimer();
}

void TKxFlash::SetThreadPriority(TThreadPriority value) {
    if (priority_ == value) return;
    priority_ = value;
    UpdateTimer();
}

void TKxFlash::SetOnTimer(TNotifyEvent handler) {
    const bool wasAssigned = static_cast<bool>(onTimer_);
    onTimer_ = std::move(handler);
    if (wasAssigned != static_cast<bool>(onTimer_)) UpdateTimer();
}

void TKxFlash::UpdateTimer() {
    source_->Stop();
    if (interval_ == 0 || !enabled_ || !onTimer_ || destroying_) return;
    source_->Start(interval_, [this] { Timer(); });
}

void TKxFlash::Timer() {
    if (!enabled_ || destroying_ || !onTimer_) return;
    // Copy: the handler may destroy this component (and the stored handler).
    const TNotifyEvent handler = onTimer_;
    handler(this);
}

}  // namespace kx
