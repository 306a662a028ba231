#pragma once
// TDateTime: days since 1899-12-30 as a double; the fraction is the time of day.
// For negative values the fraction is still a positive distance from midnight:
// -1.25 is 1899-12-29 06:00. Decoding rounds to whole milliseconds (a carry moves
// to the next day), reads NaN and infinities as 0, and gives year, month and day 0
// for dates outside 0001-01-01..9999-12-31 (DateTimeToQDateTime: an invalid
// QDateTime). DateTimeFromQDateTime gives 0 for an invalid or out-of-range value.
#include <QDateTime>
#include <cstdint>

namespace kx {

using TDateTime = double;

constexpr double MSecsPerDay = 86400000.0;

// Builds a date; invalid parts give false and leave out untouched.
bool TryEncodeDate(int year, int month, int day, TDateTime& out);
bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime& out);
// As above, returning 0 for invalid parts (no exception).
TDateTime EncodeDate(int year, int month, int day);
TDateTime EncodeTime(int hour, int min, int sec, int msec);
void DecodeDate(TDateTime d, int& year, int& month, int& day);
void DecodeTime(TDateTime d, int& hour, int& min, int& sec, int& msec);
// Day of week 1 = Sunday .. 7 = Saturday.
int DayOfWeek(TDateTime d);

TDateTime DateTimeFromQDateTime(const QDateTime& dt);
QDateTime DateTimeToQDateTime(TDateTime d);

}  // namespace kx
