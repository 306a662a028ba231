#include "timetext.h"

#include "kx/host/datetimeformat.h"
#include "kx/host/formatsettings.h"

namespace kx::panel {
namespace {

TFormatSettings fixedSeparators() {
    TFormatSettings fs = FormatSettings();
    fs.DateSeparator = QLatin1Char('-');
    fs.TimeSeparator = QLatin1Char(':');
    return fs;
}

}  // namespace

QString ClockText(TDateTime t) {
    return FormatDateTime(QStringLiteral("hh:nn:ss"), t, fixedSeparators());
}

QString StampText(TDateTime t) {
    return FormatDateTime(QStringLiteral("yyyy/mm/dd hh:nn:ss.zzz"), t, fixedSeparators());
}

}  // namespace kx::panel
