#include "throttledlog.h"

#include <QtGlobal>

#include "kx/host/clock.h"

namespace kx::panel {

bool ThrottledLog::Note(const QString& detail) {
    ++count_;
    const uint32_t now = GetTickCount();
    if (reports_ > 0 && now - lastReport_ < kIntervalMs) return false;
    qWarning("kxpanel: %s: %lld since the last report (last: %s)", qPrintable(what_),
             static_cast<long long>(count_ - reported_), qPrintable(detail));
    reported_ = count_;
    lastReport_ = now;
    ++reports_;
    return true;
}

}  // namespace kx::panel
