#pragma once
// Wall-clock texts of the runner with fixed separators, whatever the locale: the stale
// hint's "HH:MM:SS" and the alarm log's "yyyy-mm-dd hh:mm:ss.zzz".
#include <QString>

#include "kx/host/datetime.h"

namespace kx::panel {

QString ClockText(TDateTime t);
QString StampText(TDateTime t);

}  // namespace kx::panel
