#pragma once
// The separators, date/time pictures and names that number and date formatting use.
//
// Date and time formats are classic pictures (d, m, yy, h, n, s, z, AMPM, '/', ':',
// quoted literals; see datetimeformat.h). A '/' in a date picture prints
// DateSeparator and a ':' in a time picture prints TimeSeparator.
#include <QChar>
#include <QLocale>
#include <QString>
#include <array>

namespace kx {

struct TFormatSettings {
    QChar DecimalSeparator;
    QChar ThousandSeparator;
    QChar DateSeparator;
    QChar TimeSeparator;
    QString ShortDateFormat;
    QString LongTimeFormat;
    QString TimeAMString;
    QString TimePMString;
    // Used by the "t", "dddddd", "mmm", "mmmm", "ddd" and "dddd" date/time specifiers.
    QString ShortTimeFormat;
    QString LongDateFormat;
    std::array<QString, 12> ShortMonthNames;  // [0] = January
    std::array<QString, 12> LongMonthNames;
    std::array<QString, 7> ShortDayNames;  // [0] = Sunday
    std::array<QString, 7> LongDayNames;
};

// The process-wide settings. Initialised on first use from QLocale::system();
// all formatting runs on the user-interface thread, so it is not locked.
TFormatSettings& FormatSettings();
void SetFormatSettings(const TFormatSettings& settings);

// Classic US settings, pinned for tests: '.', ',', '/', ':', "m/d/yyyy",
// "h:nn:ss AMPM", "AM", "PM", "h:nn AMPM", "dddd, mmmm d, yyyy", English names.
TFormatSettings DefaultFormatSettings();

// Settings of a Qt locale: its decimal point and group separator (a multi-character
// separator falls back to the default), the first separator of its short date and
// short time formats, and its short date, long date, short time and long time
// formats translated into classic pictures (time-zone fields are dropped).
TFormatSettings FormatSettingsFromLocale(const QLocale& locale);

// Translates a Qt date/time format string into a classic picture; every Qt
// separator equal to dateSeparator becomes '/', equal to timeSeparator ':'.
QString ClassicPictureFromQt(const QString& qtFormat, QChar dateSeparator, QChar timeSeparator);

}  // namespace kx
