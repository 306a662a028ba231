#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "kx/host/datetime.h"
#include "kx/host/datetimeformat.h"
#include "kx/host/formatsettings.h"

namespace kx {
namespace {

struct TDecoded {
    int year, month, day, hour, min, sec, msec;
    friend bool operator==(const TDecoded&, const TDecoded&) = default;
};

std::ostream& operator<<(std::ostream& os, const TDecoded& d) {
    return os << d.year << '-' << d.month << '-' << d.day << ' ' << d.hour << ':' << d.min << ':'
              << d.sec << '.' << d.msec;
}

TDecoded DecodeAll(TDateTime dt) {
    TDecoded d{};
    DecodeDate(dt, d.year, d.month, d.day);
    DecodeTime(dt, d.hour, d.min, d.sec, d.msec);
    return d;
}

TEST(DateTime, EncodeDate) {
    struct TCase {
        int y, m, d;
        bool ok;
        double expected;
    };
    const TCase cases[] = {
        {1899, 12, 30, true, 0.0},  {1900, 1, 1, true, 2.0},         {2023, 3, 15, true, 45000.0},
        {1, 1, 1, true, -693593.0}, {9999, 12, 31, true, 2958465.0}, {2024, 2, 29, true, 45351.0},
        {1899, 12, 29, true, -1.0}, {2023, 2, 29, false, 0.0},       {0, 1, 1, false, 0.0},
        {10000, 1, 1, false, 0.0},  {2023, 13, 1, false, 0.0},       {2023, 1, 0, false, 0.0},
        {-5, 1, 1, false, 0.0},
    };
    for (const TCase& c : cases) {
        TDateTime out = -1234.0;
        EXPECT_EQ(TryEncodeDate(c.y, c.m, c.d, out), c.ok) << c.y << '-' << c.m << '-' << c.d;
        EXPECT_EQ(out, c.ok ? c.expected : -1234.0);
        EXPECT_EQ(EncodeDate(c.y, c.m, c.d), c.expected);
    }
}

TEST(DateTime, EncodeTime) {
    EXPECT_EQ(EncodeTime(12, 0, 0, 0), 0.5);
    EXPECT_EQ(EncodeTime(6, 0, 0, 0), 0.25);
    EXPECT_EQ(EncodeTime(0, 0, 0, 0), 0.0);
    EXPECT_DOUBLE_EQ(EncodeTime(23, 59, 59, 999), 86399999.0 / 86400000.0);
    for (auto [h, m, s, ms] :
         {std::array{24, 0, 0, 0}, std::array{0, 60, 0, 0}, std::array{0, 0, 60, 0},
          std::array{0, 0, 0, 1000}, std::array{-1, 0, 0, 0}, std::array{0, 0, 0, -1}}) {
        TDateTime out = 7.0;
        EXPECT_FALSE(TryEncodeTime(h, m, s, ms, out));
        EXPECT_EQ(out, 7.0);
        EXPECT_EQ(EncodeTime(h, m, s, ms), 0.0);
    }
}

TEST(DateTime, Decode) {
    struct TCase {
        double value;
        TDecoded expected;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const TCase cases[] = {
        // clang-format off
        {0.0, {1899, 12, 30, 0, 0, 0, 0}}, {45000.5, {2023, 3, 15, 12, 0, 0, 0}},
        {45000.0 + EncodeTime(13, 45, 30, 250), {2023, 3, 15, 13, 45, 30, 250}},
        // Negative values: the fraction is a positive distance from midnight.
        {-1.25, {1899, 12, 29, 6, 0, 0, 0}}, {-0.5, {1899, 12, 30, 12, 0, 0, 0}},
        {-693593.0, {1, 1, 1, 0, 0, 0, 0}},
        // Rounding to the millisecond carries into the next day.
        {0.99999999999, {1899, 12, 31, 0, 0, 0, 0}}, {2958465.75, {9999, 12, 31, 18, 0, 0, 0}},
        {2958466.0, {0, 0, 0, 0, 0, 0, 0}}, {-693594.0, {0, 0, 0, 0, 0, 0, 0}},
        {1e300, {0, 0, 0, 0, 0, 0, 0}}, {nan, {1899, 12, 30, 0, 0, 0, 0}},
        {inf, {1899, 12, 30, 0, 0, 0, 0}}, {-inf, {1899, 12, 30, 0, 0, 0, 0}},
        // clang-format on
    };
    for (const TCase& c : cases)
        EXPECT_EQ(DecodeAll(c.value), c.expected) << c.value;
}

TEST(DateTime, EncodeDecodeRoundTrip) {
    for (int y : {1, 1600, 1899, 1900, 2000, 2023, 9999}) {
        for (int m = 1; m <= 12; ++m) {
            const TDateTime d =
                EncodeDate(y, m, 28) + (y < 1900 ? -1 : 1) * EncodeTime(7, 8, 9, 10);
            EXPECT_EQ(DecodeAll(d), (TDecoded{y, m, 28, 7, 8, 9, 10})) << d;
        }
    }
}

TEST(DateTime, DayOfWeekRunsFromSunday) {
    // Saturday 1899-12-30, Wednesday 2023-03-15, Friday 1899-12-29, Monday 0001-01-01.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, int> cases[] = {
        // clang-format off
        {0.0, 7}, {45000.0, 4}, {45000.99, 4}, {-1.0, 6}, {-1.75, 6}, {EncodeDate(1, 1, 1), 2},
        {EncodeDate(2023, 3, 5), 1}, {nan, 7},
        // clang-format on
    };
    for (auto [value, day] : cases)
        EXPECT_EQ(DayOfWeek(value), day) << value;
}

TEST(DateTime, QDateTimeConversion) {
    const QDateTime q(QDate(2023, 3, 15), QTime(13, 45, 30, 250));
    const TDateTime d = DateTimeFromQDateTime(q);
    EXPECT_DOUBLE_EQ(d, 45000.0 + EncodeTime(13, 45, 30, 250));
    EXPECT_EQ(DateTimeToQDateTime(d), q);

    const QDateTime old(QDate(1899, 12, 29), QTime(6, 0));
    EXPECT_EQ(DateTimeFromQDateTime(old), -1.25);
    EXPECT_EQ(DateTimeToQDateTime(-1.25), old);

    EXPECT_EQ(DateTimeFromQDateTime(QDateTime()), 0.0);
    EXPECT_EQ(DateTimeFromQDateTime(QDateTime(QDate(10000, 1, 1), QTime(0, 0))), 0.0);
    EXPECT_FALSE(DateTimeToQDateTime(1e9).isValid());
    EXPECT_EQ(DateTimeToQDateTime(std::numeric_limits<double>::quiet_NaN()),
              QDateTime(QDate(1899, 12, 30), QTime(0, 0)));
}

// Sunday 2023-03-05 14:07:09.045.
const TDateTime kSample = EncodeDate(2023, 3, 5) + EncodeTime(14, 7, 9, 45);

TEST(FormatDateTime, Specifiers) {
    struct TCase {
        const char* format;
        TDateTime value;
        const char* expected;
    };
    const TDateTime morning = EncodeDate(2023, 11, 25) + EncodeTime(0, 5, 0, 0);
    const TDateTime noon = EncodeDate(2023, 11, 25) + EncodeTime(12, 30, 0, 0);
    const TCase cases[] = {
        // clang-format off
        {"d/m/yy", kSample, "5/3/23"}, {"dd/mm/yyyy", kSample, "05/03/2023"},
        {"DD.MM.YYYY", kSample, "05.03.2023"}, {"y", kSample, "23"}, {"yyy", kSample, "2023"},
        {"ddd dddd", kSample, "Sun Sunday"}, {"ddddd", kSample, "3/5/2023"},
        {"dddddd", kSample, "Sunday, March 5, 2023"}, {"mmm mmmm", kSample, "Mar March"},
        {"h:n:s", kSample, "14:7:9"}, {"hh:nn:ss.zzz", kSample, "14:07:09.045"},
        {"z", kSample, "45"}, {"m h", kSample, "3 14"},
        // m after h is the minute.
        {"h:mm", kSample, "14:07"}, {"hh mm", kSample, "14 07"}, {"hh:mm:ss", kSample, "14:07:09"},
        {"h ampm", kSample, "2 PM"}, {"hh:nn am/pm", kSample, "02:07 pm"},
        {"h:nn AM/PM", kSample, "2:07 PM"}, {"h a/p", kSample, "2 p"}, {"H A/P", kSample, "2 P"},
        {"h AMPM", morning, "12 AM"}, {"h AMPM", noon, "12 PM"}, {"h", morning, "0"},
        {"c", kSample, "3/5/2023 2:07:09 PM"}, {"c", EncodeDate(2023, 3, 5), "3/5/2023"},
        {"t", kSample, "2:07 PM"}, {"tt", kSample, "2:07:09 PM"},
        {"'Date:' yyyy", kSample, "Date: 2023"}, {"\"m\"m", kSample, "m3"},
        {"'unclosed", kSample, "unclosed"}, {"x", kSample, "x"}, {"", kSample, ""},
        {"dd/mm/yyyy", 1e300, "00/00/0000"}, {"ddd mmm", 1e300, " "},
        // clang-format on
    };
    for (const TCase& c : cases)
        EXPECT_EQ(FormatDateTime(c.format, c.value), QString::fromUtf8(c.expected)) << c.format;
}

TEST(FormatDateTime, SeparatorsAndNames) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.DateSeparator = u'.';
    fs.TimeSeparator = u'.';
    fs.LongMonthNames[2] = QStringLiteral("M\u00E4rz");
    EXPECT_EQ(FormatDateTime("dd/mm/yyyy hh:nn", kSample, fs), "05.03.2023 14.07");
    EXPECT_EQ(FormatDateTime("mmmm", kSample, fs), QStringLiteral("M\u00E4rz"));
}

TEST(FormatDateTime, NestedFormatsStopExpanding) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.ShortDateFormat = QStringLiteral("c");
    fs.LongTimeFormat = QStringLiteral("tt");
    SetFormatSettings(fs);
    // Expansion stops two levels down: what is left are the blanks of "c".
    EXPECT_EQ(DateToStr(kSample), "  ");
    EXPECT_EQ(TimeToStr(kSample), "");
    EXPECT_EQ(DateTimeToStr(kSample), "   ");
}

TEST(FormatDateTime, ShortcutRoutines) {
    EXPECT_EQ(DateToStr(45000.75), "3/15/2023");
    EXPECT_EQ(TimeToStr(0.5), "12:00:00 PM");
    EXPECT_EQ(TimeToStr(45000.0), "12:00:00 AM");
    EXPECT_EQ(DateTimeToStr(45000.0), "3/15/2023");
    EXPECT_EQ(DateTimeToStr(45000.5), "3/15/2023 12:00:00 PM");
    EXPECT_EQ(DateTimeToStr(45000.0 + EncodeTime(0, 0, 0, 1)), "3/15/2023 12:00:00 AM");
}

TEST(FormatSettings, TranslatesQtPictures) {
    const struct {
        const char* qt;
        bool time;
        char16_t separator;
        const char* expected;
    } cases[] = {
        {"dd.MM.yyyy", false, u'.', "dd/mm/yyyy"},
        {"M/d/yy", false, u'/', "m/d/yy"},
        {"d.M.yy", false, u'/', "d.m.yy"},  // '.' is not the separator here
        {"dddd, MMMM d, yyyy", false, u'/', "dddd, mmmm d, yyyy"},
        {"d 'de' MMMM", false, u'/', "d \"d\"\"e\" mmmm"},
        {"yyyy'年'M'月'd'日'", false, u'/', "yyyy\"年\"m\"月\"d\"日\""},
        {"dd 'o''clock'", false, u'/', "dd \"o\"\"'\"\"c\"\"l\"\"o\"\"c\"\"k\""},
        {"yyyy-MM-dd HH:mm", false, u'-', "yyyy/mm/dd hh\":\"nn"},
        {"h:mm:ss AP t", true, u':', "h:nn:ss AMPM"},
        {"HH.mm", true, u'.', "hh:nn"},
        {"t HH:mm:ss.zzz", true, u':', "hh:nn:ss.zzz"},
        {"ap h:m", true, u':', "AMPM h:n"},
        {"HH'h'mm", true, u':', "hh\"h\"nn"},
    };
    for (const auto& c : cases) {
        const QChar sep(c.separator);
        EXPECT_EQ(ClassicPictureFromQt(QString::fromUtf8(c.qt), c.time ? QChar() : sep,
                                       c.time ? sep : QChar()),
                  QString::fromUtf8(c.expected))
            << c.qt;
    }
}

// The translated pictures print what Qt prints for the same locale.
TEST(FormatSettings, FromLocaleMatchesQt) {
    const QDate date(2023, 3, 5);
    const QTime time(14, 7, 9);
    const TDateTime dt = DateTimeFromQDateTime(QDateTime(date, time));
    for (const QLocale& locale :
         {QLocale(QLocale::English, QLocale::UnitedStates),
          QLocale(QLocale::German, QLocale::Germany), QLocale(QLocale::French, QLocale::France),
          QLocale(QLocale::Japanese, QLocale::Japan), QLocale(QLocale::Finnish, QLocale::Finland),
          QLocale::c()}) {
        const TFormatSettings fs = FormatSettingsFromLocale(locale);
        const QString name = locale.name();
        EXPECT_EQ(FormatDateTime(fs.ShortDateFormat, dt, fs),
                  locale.toString(date, QLocale::ShortFormat))
            << name.toStdString();
        EXPECT_EQ(FormatDateTime(fs.LongDateFormat, dt, fs),
                  locale.toString(date, QLocale::LongFormat))
            << name.toStdString();
        EXPECT_EQ(FormatDateTime(fs.ShortTimeFormat, dt, fs),
                  locale.toString(time, QLocale::ShortFormat))
            << name.toStdString();
        EXPECT_EQ(fs.DecimalSeparator, locale.decimalPoint().at(0)) << name.toStdString();
    }
    const TFormatSettings de = FormatSettingsFromLocale(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(de.DecimalSeparator, u',');
    EXPECT_EQ(de.ThousandSeparator, u'.');
    EXPECT_EQ(de.DateSeparator, u'.');
}

}  // namespace
}  // namespace kx
