// TDateTime arithmetic on top of QDate's proleptic Gregorian calendar.
//
// Conventions kept here for every caller:
// - The integral part counts days from 1899-12-30; the time of day is the
//   distance from midnight. For negative values the fraction is read as a
//   positive distance too: -1.25 is 1899-12-29 06:00, not 1899-12-28 18:00.
// - Decoding rounds to whole milliseconds (half to even), so 23:59:59.9996
//   becomes midnight of the next day in both the date and the time.
// - A NaN or infinite TDateTime is read as 0 (1899-12-30 00:00).
// - Dates outside 0001-01-01..9999-12-31 decode to year, month and day 0; the
//   time is still decoded.
#include <algorithm>
#include <cmath>

#include "kx/host/datetime.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

constexpr int64_t kJulianDayOfZero = 2415019;  // 1899-12-30
constexpr int64_t kFirstDay = -693593;         // 0001-01-01
constexpr int64_t kLastDay = 2958465;          // 9999-12-31
constexpr int64_t kMSecsPerDay = 86400000;

struct TSplit {
    int64_t days;  // signed day number
    int64_t msec;  // 0 .. MSecsPerDay-1
};

// Splits d into its day number and its millisecond of the day.
TSplit Split(TDateTime d) {
    if (!std::isfinite(d)) d = 0.0;
    const double limit = double(kLastDay + 1);
    const double magnitude = std::min(std::fabs(d), limit);
    const int64_t total = Round64(magnitude * MSecsPerDay);
    const int64_t days = total / kMSecsPerDay;
    return TSplit{d < 0 ? -days : days, total % kMSecsPerDay};
}

bool DayInRange(int64_t days) {
    return days >= kFirstDay && days <= kLastDay;
}

}  // namespace

bool TryEncodeDate(int year, int month, int day, TDateTime& out) {
    if (year < 1 || year > 9999 || !QDate::isValid(year, month, day)) return false;
    out = double(QDate(year, month, day).toJulianDay() - kJulianDayOfZero);
    return true;
}

bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime& out) {
    if (hour < 0 || hour > 23 || min < 0 || min > 59 || sec < 0 || sec > 59 || msec < 0 ||
        msec > 999)
        return false;
    out = ((hour * 60.0 + min) * 60.0 + sec) * 1000.0 + msec;
    out /= MSecsPerDay;
    return true;
}

TDateTime EncodeDate(int year, int month, int day) {
    TDateTime d = 0.0;
    return TryEncodeDate(year, month, day, d) ? d : 0.0;
}

TDateTime EncodeTime(int hour, int min, int sec, int msec) {
    TDateTime t = 0.0;
    return TryEncodeTime(hour, min, sec, msec, t) ? t : 0.0;
}

void DecodeDate(TDateTime d, int& year, int& month, int& day) {
    const TSplit s = Split(d);
    if (!DayInRange(s.days)) {
        year = month = day = 0;
        return;
    }
    QDate::fromJulianDay(s.days + kJulianDayOfZero).getDate(&year, &month, &day);
}

void DecodeTime(TDateTime d, int& hour, int& min, int& sec, int& msec) {
    int64_t ms = Split(d).msec;
    msec = int(ms % 1000);
    ms /= 1000;
    sec = int(ms % 60);
    ms /= 60;
    min = int(ms % 60);
    hour = int(ms / 60);
}

int DayOfWeek(TDateTime d) {
    // Day 0 (1899-12-30) was a Saturday.
    const int64_t days = Split(d).days;
    const int64_t r = ((days % 7) + 7 + 6) % 7;  // 0 = Sunday
    return int(r) + 1;
}

TDateTime DateTimeFromQDateTime(const QDateTime& dt) {
    if (!dt.isValid()) return 0.0;
    const int64_t days = dt.date().toJulianDay() - kJulianDayOfZero;
    if (!DayInRange(days)) return 0.0;
    const double time = dt.time().msecsSinceStartOfDay() / MSecsPerDay;
    return days < 0 ? double(days) - time : double(days) + time;
}

QDateTime DateTimeToQDateTime(TDateTime d) {
    const TSplit s = Split(d);
    if (!DayInRange(s.days)) return QDateTime();
    return QDateTime(QDate::fromJulianDay(s.days + kJulianDayOfZero),
                     QTime::fromMSecsSinceStartOfDay(int(s.msec)));
}

}  // namespace kx
