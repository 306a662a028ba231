#pragma once
// Classic date/time pictures. Specifiers are case-insensitive:
//   c       ShortDateFormat, then " " and LongTimeFormat unless the time is midnight
//   d dd    day of month without / with leading zero
//   ddd dddd  short / long day name;  ddddd  ShortDateFormat;  dddddd  LongDateFormat
//   m mm    month without / with leading zero; right after an h or hh specifier
//           (literals in between allowed) the minutes instead
//   mmm mmmm  short / long month name
//   yy yyyy two-digit year / four-digit year (y and yyy and longer runs likewise)
//   h hh    hour without / with leading zero; 12-hour clock when an am/pm
//           specifier follows anywhere later in the picture
//   n nn    minutes;  s ss  seconds;  z zzz  milliseconds without / with padding
//   t tt    ShortTimeFormat / LongTimeFormat
//   am/pm a/p  the marker in the letters written in the picture ("am/pm" gives
//           "am" or "pm", "A/P" gives "A" or "P")
//   ampm    TimeAMString or TimePMString
//   /  :    DateSeparator / TimeSeparator
//   '..' ".."  literal text (an unclosed quote runs to the end)
// Anything else is copied. Nested formats (c, ddddd, dddddd, t, tt) expand two
// levels deep at most. TDateTime decoding follows datetime.h (NaN reads as 0,
// dates outside years 1..9999 show year, month and day 0 and empty names).
#include <QString>

#include "kx/host/datetime.h"
#include "kx/host/formatsettings.h"

namespace kx {

QString FormatDateTime(const QString& format, TDateTime dt);
QString FormatDateTime(const QString& format, TDateTime dt, const TFormatSettings& fs);
// ShortDateFormat of the date part.
QString DateToStr(TDateTime dt);
// LongTimeFormat of the time part.
QString TimeToStr(TDateTime dt);
// The date, then " " and the time only when the time is not exactly midnight.
QString DateTimeToStr(TDateTime dt);

}  // namespace kx
