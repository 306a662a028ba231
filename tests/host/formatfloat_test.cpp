#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "drawing/qstring_print.h"
#include "kx/host/decimaldigits.h"
#include "kx/host/formatfloat.h"

namespace kx {
namespace {

struct TCase {
    const char* format;
    double value;
    const char16_t* expected;
};

void ExpectCases(const std::vector<TCase>& cases, const TFormatSettings& fs) {
    for (const TCase& c : cases) {
        EXPECT_EQ(FormatFloat(QString::fromUtf8(c.format), c.value, fs),
                  QString::fromUtf16(c.expected))
            << "format \"" << c.format << "\" value " << c.value;
    }
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(FormatFloat, RoundsHalfAwayOnTheDecimalString) {
    ExpectCases(
        {
            // clang-format off
            {"0", 0.5, u"1"}, {"0", 1.5, u"2"}, {"0", 2.5, u"3"}, {"0", -2.5, u"-3"},
            {"0", 0.49999999999999994, u"0"},
            {"0.00", 1.015, u"1.01"},            // 1.0149999999999999
            {"0.00", 123456.015, u"123456.02"},  // 123456.01500000000
            {"0.0", 0.05, u"0.1"},               // 0.050000000000000003
            {"0.0", 0.25, u"0.3"},
            {"0.0", 0.35, u"0.3"},  // 0.34999999999999998
            {"0.0", 0.45, u"0.5"},  // 0.45000000000000001
            {"0.00", 9.995, u"9.99"}, {"0.0", 9.995, u"10.0"}, {"0.00", 9.9951, u"10.00"},
            {"##0.0", 123.45, u"123.5"},
            {"##0.0", 99.95, u"100.0"},  // 99.950000000000003
            {"0.000", 2.0005, u"2.001"}, {"0", 999.5, u"1000"}, {"0.0", 1e-20, u"0.0"},
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, Placeholders) {
    ExpectCases(
        {
            // clang-format off
            {"##0.0", 5, u"5.0"}, {"##0.0", 0.04, u"0.0"}, {"##0.0", 12345.67, u"12345.7"},
            {"#0", 12345, u"12345"}, {"#", 0, u""}, {"#", 7, u"7"}, {"0000", 12, u"0012"},
            {"#.##", 0.5, u".5"}, {"0.##", 1, u"1"}, {"0.##", 1.5, u"1.5"},
            {"0.##", 1.256, u"1.26"}, {"0.#0", 1.5, u"1.50"}, {"0.0#", 1.999, u"2.0"},
            {".00", 12.5, u"12.50"}, {"0.", 3, u"3"}, {"##0.#", 0.96, u"1"},
            {"0.00000000000000000000", 0.1, u"0.10000000000000001000"},
            {"0.0.0", 1.25, u"1.2.5"},  // a second point is text
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, ThousandsGrouping) {
    ExpectCases(
        {
            // clang-format off
            {"#,##0", 1234567, u"1,234,567"}, {"#,##0", 999, u"999"}, {"#,##0", 1000, u"1,000"},
            {"#,##0", 0, u"0"}, {"#,##0", 123456789012.0, u"123,456,789,012"},
            {"#,##0.00", -1234.5, u"-1,234.50"}, {"0,000", 12, u"0,012"}, {"#,#", 1234, u"1,234"},
            {"0,", 5, u"5,"},          // after the last placeholder: text
            {",0", 5, u",5"},          // before the first: text
            {"0.0,0", 1.5, u"1.5,0"},  // in the fraction: text
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, Literals) {
    ExpectCases(
        {
            // clang-format off
            {"##0.0\xC2\xB0", 21.34, u"21.3\u00B0"}, {"##0 %", 50, u"50 %"},
            {"'Value: '0.0", 3, u"Value: 3.0"}, {"\"#0;\"0", 1, u"#0;1"}, {"0' E+0'", 5, u"5 E+0"},
            {"00-00", 1234, u"12-34"}, {"Temp 0 C", -4, u"-Temp 4 C"},
            {"'unclosed 0", 5, u"unclosed 0"}, {"abc", 5, u"abc"}, {"abc", -5, u"-abc"},
            {"zero", 0, u"zero"},  // 'e' before 'r' is no exponent
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, Sections) {
    ExpectCases(
        {
            // clang-format off
            {"0.0;(0.0)", -1.25, u"(1.3)"}, {"0.0;(0.0)", 1.25, u"1.3"},
            {"##0.0\xC2\xB0;-##0.0\xC2\xB0", -12.34, u"-12.3\u00B0"}, {"0;-0;'zero'", 0, u"zero"},
            {"0;-0;'zero'", -0.0, u"zero"}, {"0;", -3, u"-3"}, {"0;;'z'", -3, u"-3"},
            {"0;;'z'", 0, u"z"}, {"0;(0);", 0, u"0"}, {"0;(0);zero;extra", 0, u"zero"},
            {"0;(0);zero;extra", -1, u"(1)"},
            {";(0)", 2.5, u"2.5"},  // empty first section: general format
            {";(0)", -2.5, u"(3)"}, {"0;'neg'", -7, u"neg"},
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, ExponentForms) {
    ExpectCases(
        {
            // clang-format off
            {"0.00E+00", 12345, u"1.23E+04"}, {"0.00E+00", -12345, u"-1.23E+04"},
            {"0.00E+00", 0, u"0.00E+00"}, {"0.00E-00", 0.00012345, u"1.23E-04"},
            {"0.00E-00", 12345, u"1.23E04"}, {"0e-0", 1000, u"1e3"}, {"0e-0", 0.001, u"1e-3"},
            {"0e-0", 1, u"1e0"}, {"0e+0", 0.001, u"1e-3"}, {"0.00e+000", 1.5e100, u"1.50e+100"},
            {"00.0E+0", 12345, u"12.3E+3"}, {"0.##E+00", 1000, u"1E+03"},
            {"0.00E+00", 9.995, u"9.99E+00"}, {"0.00E+00", 9.996, u"1.00E+01"},
            {"0E+0", 5e-324, u"5E-324"}, {"0.0E+0", DBL_MAX, u"1.8E+308"}, {"0E+", 12345, u"1E+4"},
            {"E+0", 5, u"5E+0"}, {".00E+00", 12345, u".12E+05"},
            {"0E+00 0.0", 5, u"5E+00 0.0"},  // after the exponent all is text
        },
        // clang-format on
        DefaultFormatSettings());
}

TEST(FormatFloat, SpecialAndHugeValues) {
    ExpectCases(
        {
            // clang-format off
            {"0.0", kNaN, u"NAN"}, {"0.0", kInf, u"INF"}, {"0.0", -kInf, u"-INF"},
            {"0;(0);'z'", -kInf, u"-INF"}, {"", 0.1, u"0.1"}, {"", -2.5, u"-2.5"},
            {"", 1e20, u"1E20"}, {"0", 1e18, u"1E18"}, {"0", 1.5e20, u"1.5E20"},
            {"0", -1e20, u"-1E20"}, {"0;(0)", -1e20, u"-1E20"},
            {"0", 123456789012345678.0, u"123456789012345680"},
            {"#,##0", 999999999999999872.0, u"999,999,999,999,999,870"},
            {"0.00", DBL_MAX, u"1.79769313486232E308"}, {"0.00", DBL_MIN, u"0.00"},
            {"0.00", 4.9e-324, u"0.00"}, {"0.00", -4.9e-324, u"-0.00"},
            {"0", -999999999999999872.0, u"-999999999999999870"}, {"0", -1e18, u"-1E18"},
            {"0;(0)", -999999999999999872.0, u"(999999999999999870)"},
            {"0.00E+00", 1e300, u"1.00E+300"}, {"0.0E+0", -1e-310, u"-1.0E-310"},
            {"#,##0", 1e17, u"100,000,000,000,000,000"}, {"0.0;(0.0);z", kNaN, u"NAN"},
            {"", 5e-324, u"4.94065645841247E-324"},
        },
        // clang-format on
        DefaultFormatSettings());
}

// The table of examples of the classic documentation: 1234, -1234, 0.5 and 0.
TEST(FormatFloat, ClassicExampleTable) {
    struct TRow {
        const char* format;
        const char16_t* expected[4];
    };
    const TRow rows[] = {
        // clang-format off
        {"", {u"1234", u"-1234", u"0.5", u"0"}},
        {"0", {u"1234", u"-1234", u"1", u"0"}},
        {"0.00", {u"1234.00", u"-1234.00", u"0.50", u"0.00"}},
        {"#.##", {u"1234", u"-1234", u".5", u""}},
        {"#,##0.00", {u"1,234.00", u"-1,234.00", u"0.50", u"0.00"}},
        {"#,##0.00;(#,##0.00)", {u"1,234.00", u"(1,234.00)", u"0.50", u"0.00"}},
        {"#,##0.00;;Zero", {u"1,234.00", u"-1,234.00", u"0.50", u"Zero"}},
        {"0.000E+00", {u"1.234E+03", u"-1.234E+03", u"5.000E-01", u"0.000E+00"}},
        {"#.###E-0", {u"1.234E3", u"-1.234E3", u"5E-1", u"0E0"}},
        // clang-format on
    };
    const double values[4] = {1234, -1234, 0.5, 0};
    const TFormatSettings fs = DefaultFormatSettings();
    for (const TRow& row : rows) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(FormatFloat(QString::fromUtf8(row.format), values[i], fs),
                      QString::fromUtf16(row.expected[i]))
                << "format \"" << row.format << "\" value " << values[i];
        }
    }
}

// The value picks the section before rounding: a value that merely rounds to zero
// keeps its sign and its section; only an exact zero (either sign) takes the third.
TEST(FormatFloat, ValueNotItsRoundingPicksTheSection) {
    ExpectCases(
        {
            // clang-format off
            {"0", -0.25, u"-0"}, {"0.0", -0.01, u"-0.0"}, {"0", 0.25, u"0"}, {"0", -0.0, u"0"},
            {"0;(0);z", -0.25, u"(0)"}, {"0;(0);z", 0.25, u"0"}, {"0;(0);z", 0, u"z"},
            {"0;(0);z", -0.0, u"z"}, {"0;(0);z", 1e-300, u"0"}, {"0;(0);z", -1e-300, u"(0)"},
            {"0;-0;'zero'", 0.4, u"0"}, {"0;-0;'zero'", -0.4, u"-0"},
            {"0.0;-0.0", -0.04, u"-0.0"}, {"0.00;(0)", -0.004, u"(0)"},
            {"0;(0)", -0.0, u"0"}, {"0;(0);", -0.25, u"(0)"}, {"0;;z", -0.25, u"-0"},
            {"0.00;(0);", 0, u"0.00"}, {"0.00;", -0.0, u"0.00"},  // empty zero section
            {"0;;z", 0.25, u"0"}, {"#", -0.25, u"-"}, {"#.##", -0.001, u"-"},
            {"0.#", -0.04, u"-0"}, {"#,##0", -0.4, u"-0"}, {"#,##0.00;;Zero", 0.001, u"0.00"},
            {"#,##0.00;;Zero", -0.001, u"-0.00"}, {"0.00E+00;(0.00E+00);z", -0.0, u"z"},
            {"0.00E+00;(0.00E+00);z", -2e-300, u"(2.00E-300)"},
            {";(0);z", 0, u"z"}, {";(0)", 0, u"0"}, {";;z", -0.25, u"-0.25"},
            {"0;'neg';'zero'", -0.0001, u"neg"}, {"'pos';'neg';'zero'", 0.0001, u"pos"},
            // clang-format on
        },
        DefaultFormatSettings());
}

// The 17 significant digits break an exact tie half away from zero, like the picture.
TEST(FormatFloat, SeventeenDigitTiesRoundAwayFromZero) {
    ExpectCases(
        {
            // clang-format off
            {"0.00", 100000000000000.125, u"100000000000000.13"},
            {"0.00", -100000000000000.125, u"-100000000000000.13"},
            {"0.00;(0.00)", -100000000000000.125, u"(100000000000000.13)"},
            {"#,##0.00", 100000000000000.125, u"100,000,000,000,000.13"},
            {"0.000", 100000000000000.125, u"100000000000000.130"},
            {"0.0", 100000000000000.125, u"100000000000000.1"},
            {"0.00", 100000000000000.109375, u"100000000000000.11"},  // neighbours: no tie
            {"0.00", 100000000000000.140625, u"100000000000000.14"},
            {"0.00", 171052464074481.125, u"171052464074481.13"},
            {"0.00000", 229554342305.890625, u"229554342305.89063"},
            {"0.000000000000000", 196.112213134765625, u"196.112213134765630"},
            {"0.0000000000000000000", 0.00862216949462890625, u"0.0086221694946289063"},
            {"0.0000000000000000E+00", 2.98023223876953125e-8, u"2.9802322387695313E-08"},
            {"0.00", 0.125, u"0.13"}, {"0.00", -0.375, u"-0.38"}, {"0.0", 0.0625 * 3, u"0.2"},
            // clang-format on
        },
        DefaultFormatSettings());
}

TEST(FormatFloat, MorePlaceholdersGroupsAndExponents) {
    ExpectCases(
        {
            // clang-format off
            {"0.0", 123456.78, u"123456.8"}, {"00.00", 1.5, u"01.50"}, {"#0.0#", 0.05, u"0.05"},
            {"#0.0#", 0.04999, u"0.05"}, {"0.#", 0.04, u"0"}, {".##", 0.5, u".5"},
            {"#.#", 12.34, u"12.3"}, {"#", 12.5, u"13"}, {"000.000", -1.5, u"-001.500"},
            {"0,0", 1234567, u"1,234,567"}, {"#,0", 12, u"12"}, {"##,##", 123456, u"123,456"},
            {"#,##0.0", 999.95, u"1,000.0"}, {"#,###", 0, u""}, {"0,00", 100, u"100"},
            {"#,##0", -1234567.5, u"-1,234,568"},
            {"0.0E+000", 1.5e-7, u"1.5E-007"}, {"0.0E-0", 1.5e7, u"1.5E7"},
            {"0.0e-00", 1.5e-7, u"1.5e-07"}, {"0.0e+0", 1.5e7, u"1.5e+7"},
            {"##0.0E+0", 12345, u"123.5E+2"}, {"00E+0", 0.5, u"50E-2"},
            {"0.00E+00", -0.00012345, u"-1.23E-04"}, {"0.00E+00;(0.00E+00)", -12345, u"(1.23E+04)"},
            {"0E+0", 9.5, u"1E+1"}, {"0.0E+0", 0.96, u"9.6E-1"}, {"0.0E+0", 0.999, u"1.0E+0"},
            {"0.###E+0", 1.5, u"1.5E+0"}, {"#E+0", 0, u"0E+0"}, {"0.0E+0", 1e-310, u"1.0E-310"},
            {"0.00E+00", 1e100, u"1.00E+100"}, {"0E-0", 1e-100, u"1E-100"},
            {"'x'0.0E+0' y'", 25, u"x2.5E+1 y"}, {"0.0E", 5, u"5.0E"},
            // clang-format on
        },
        DefaultFormatSettings());
}

TEST(FormatFloat, QuotesAndSectionSplits) {
    ExpectCases(
        {
            // clang-format off
            {"0;'a;b'", -1, u"a;b"}, {"\"x\"0", 5, u"x5"}, {"0'", 5, u"5"},
            {"0;\"(\"0\")\"", -5, u"(5)"}, {"'a''b'0", 1, u"ab1"}, {"0 \"'\"", 2, u"2 '"},
            {"0'#,0.E+0;'", 3, u"3#,0.E+0;"}, {"0;(0);\"none\";x", 0, u"none"},
            // clang-format on
        },
        DefaultFormatSettings());
}

TEST(FormatFloat, GeneralFormat) {
    struct TGeneral {
        double value;
        int precision;
        const char* expected;
    };
    const TGeneral cases[] = {
        // clang-format off
        {0.1, 15, "0.1"}, {1.0 / 3, 15, "0.333333333333333"}, {2.0 / 3, 15, "0.666666666666667"},
        {123456, 5, "1.2346E5"}, {12345, 5, "12345"}, {99999.5, 5, "1E5"}, {-99999.4, 5, "-99999"},
        {0.0001, 15, "0.0001"}, {0.00001, 15, "1E-5"}, {0.000123, 15, "0.000123"},
        {-0.000012345, 15, "-1.2345E-5"}, {1.5, 0, "2"}, {2.5, -3, "3"},
        {0.1, 20, "0.10000000000000001"}, {0.1, 17, "0.10000000000000001"},
        {0.1, 16, "0.1"}, {-0.0, 15, "0"}, {0, 15, "0"}, {1e15, 15, "1E15"},
        {999999999999999, 15, "999999999999999"}, {123.456, 15, "123.456"}, {-7, 15, "-7"},
        {1e100, 15, "1E100"}, {1.25e-300, 15, "1.25E-300"}, {-1.5e20, 15, "-1.5E20"},
        {100, 1, "1E2"}, {5, 1, "5"}, {0.5, 15, "0.5"}, {10.25, 3, "10.3"},
        {std::numeric_limits<double>::quiet_NaN(), 15, "NAN"}, {-kInf, 15, "-INF"},
        // clang-format on
    };
    const TFormatSettings fs = DefaultFormatSettings();
    for (const TGeneral& c : cases) {
        EXPECT_EQ(FormatGeneral(c.value, c.precision, fs), QString::fromUtf8(c.expected))
            << c.value << " precision " << c.precision;
    }
    TFormatSettings comma = fs;
    comma.DecimalSeparator = u',';
    EXPECT_EQ(FormatGeneral(-0.25, 15, comma), "-0,25");
    EXPECT_EQ(FormatGeneral(1.5e-7, 15, comma), "1,5E-7");
    EXPECT_EQ(FormatGeneral(1234.5, 15, comma), "1234,5");
}

TEST(FormatFloat, UsesSeparatorsOfTheSettings) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.DecimalSeparator = u',';
    fs.ThousandSeparator = u'.';
    ExpectCases(
        {
            // clang-format off
            {"#,##0.00", 1234567.891, u"1.234.567,89"}, {"0.0", 2.5, u"2,5"}, {"", 0.5, u"0,5"},
            {"0.00E+00", 12345, u"1,23E+04"}, {"#,##0", 1e20, u"1E20"},
        },
        // clang-format on
        fs);
    // The overload without settings reads the process-wide ones.
    SetFormatSettings(fs);
    EXPECT_EQ(FormatFloat("##0.0", 3.25), "3,3");
}

TEST(FormatFloat, PictureObjectMatchesFormatFloat) {
    const TFormatSettings fs = DefaultFormatSettings();
    const TFloatPicture picture(QStringLiteral("#,##0.00;(#,##0.00);'nil'"));
    for (double v : {0.0, 1234.567, -1234.567, 0.001, -0.004}) {
        EXPECT_EQ(picture.Format(v, fs), FormatFloat("#,##0.00;(#,##0.00);'nil'", v, fs));
    }
    char16_t buf[4];
    const int n = picture.FormatTo(buf, 4, 1234.567, fs);
    EXPECT_EQ(n, 8);  // "1,234.57"
    EXPECT_EQ(QString::fromUtf16(buf, 4), "1,23");
    // Short caps write a prefix and nothing beyond it, yet report the full length.
    buf[0] = buf[1] = u'?';
    EXPECT_EQ(picture.FormatTo(buf, 1, -5, fs), 6);  // "(5.00)"
    EXPECT_EQ(buf[0], u'(');
    EXPECT_EQ(buf[1], u'?');
    buf[0] = u'?';
    EXPECT_EQ(picture.FormatTo(buf, 0, -5, fs), 6);
    EXPECT_EQ(buf[0], u'?');
    EXPECT_EQ(picture.FormatTo(buf, 2, 0, fs), 3);  // "nil"
    EXPECT_EQ(QString::fromUtf16(buf, 2), "ni");
    EXPECT_EQ(TFloatPicture().Format(0.25, fs), "0.25");
}

// The cache must tell apart pictures that are used alternately, also pictures of
// the same length, and keep giving each its own text after others pushed it out.
TEST(FormatFloat, CacheKeepsPicturesApart) {
    const TFormatSettings fs = DefaultFormatSettings();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 12; ++i) {
            const QString picture = QString(i + 1, u'0');
            EXPECT_EQ(FormatFloat(picture, 7, fs).size(), i + 1);
        }
    }
    const QString pictures[] = {"0.0", "#.0", "0.#",  "#.#",  "0,0",  "0;0",
                                "0E0", "E+0", "0.00", "#.00", "0.0#", "00.0"};
    std::mt19937 rng(99);
    std::uniform_int_distribution<int> pick(0, int(std::size(pictures)) - 1);
    for (int i = 0; i < 400; ++i) {
        const QString& picture = pictures[i < 24 ? i % 12 : pick(rng)];
        for (double v : {0.04, -1234.5}) {
            ASSERT_EQ(FormatFloat(picture, v, fs), TFloatPicture(picture).Format(v, fs))
                << picture.toStdString() << " step " << i;
        }
    }
    EXPECT_EQ(FormatFloat("0.0", 0.04, fs), "0.0");
    EXPECT_EQ(FormatFloat("#.0", 0.04, fs), ".0");
    EXPECT_EQ(FormatFloat("0.#", 0.04, fs), "0");
}

// Fast digit path versus the string conversion, near ties and everywhere else.
TEST(DecimalDigits, FastFixedPathAgreesWithStringPath) {
    std::mt19937_64 rng(12345);
    std::uniform_real_distribution<double> mant(1.0, 10.0);
    std::uniform_int_distribution<int> expo(-8, 12);
    std::uniform_int_distribution<int> frac(0, 6);
    auto check = [](double v, int f) {
        TDecimalDigits slow = DecimalDigitsOf(v);
        RoundFixed(slow, f);
        const TDecimalDigits fast = FixedDigitsOf(v, f);
        ASSERT_EQ(fast.count, slow.count) << v << " f=" << f;
        if (slow.count == 0) return;
        ASSERT_EQ(fast.exp, slow.exp) << v << " f=" << f;
        ASSERT_EQ(std::string(fast.d, fast.count), std::string(slow.d, slow.count)) << v;
    };
    for (int i = 0; i < 200000; ++i) {
        const int f = frac(rng);
        const double v = mant(rng) * std::pow(10.0, expo(rng));
        check(v, f);
        // Values at and next to decimal ties.
        const double tie = (std::floor(v * std::pow(10.0, f)) + 0.5) / std::pow(10.0, f);
        check(tie, f);
        check(std::nextafter(tie, 0.0), f);
        check(std::nextafter(tie, 1e300), f);
    }
    // Values exactly halfway between two 17-digit decimals: m * 2^-k == P * 10^-k with
    // P = m * 5^k of 18 digits. Both paths must round them up in magnitude.
    std::uniform_int_distribution<int> power(2, 25);
    for (int i = 0; i < 20000; ++i) {
        const int k = power(rng);
        uint64_t five = 1;
        for (int j = 0; j < k; ++j)
            five *= 5;
        const uint64_t lo = std::max<uint64_t>(100000000000000000ULL / five + 1, 1);
        const uint64_t hi = std::min<uint64_t>(1000000000000000000ULL / five, 1ULL << 53);
        if (lo >= hi) continue;
        const uint64_t m = std::uniform_int_distribution<uint64_t>(lo, hi - 1)(rng) | 1;
        const uint64_t p = m * five;
        if (p < 100000000000000000ULL || p >= 1000000000000000000ULL) continue;
        const double v = std::ldexp(double(m), -k) * (i % 2 == 0 ? 1 : -1);
        const TDecimalDigits d = DecimalDigitsOf(v);
        std::string expected = std::to_string(p / 10 + 1);
        const int exp = 18 - k + int(expected.size()) - 17;  // 99..9 carries to 10..0
        while (expected.back() == '0')
            expected.pop_back();
        ASSERT_EQ(std::string(d.d, d.count), expected) << v;
        ASSERT_EQ(d.exp, exp) << v;
        ASSERT_EQ(d.negative, v < 0);
        for (int f = 0; f <= 18; ++f)
            check(v, f);
    }
}

// FormatTo promises that MaxLength() characters always suffice, also for pictures
// with long runs of placeholders, exponent digits or text.
TEST(FormatFloat, MaxLengthBoundsEveryText) {
    const TFormatSettings fs = DefaultFormatSettings();
    const QString pictures[] = {
        QStringLiteral("0.") + QString(300, u'0'),
        QStringLiteral("#.") + QString(300, u'#'),
        QStringLiteral("0E+") + QString(60, u'0'),
        QStringLiteral("0.0E-") + QString(60, u'0') + QString(60, u'x'),
        u'\'' + QString(200, u'a') + QStringLiteral("'0"),
        QStringLiteral("#,##0;'") + QString(120, u'n') + u'\'',
        QString(120, u'0') + QStringLiteral(";;") + QString(150, u'z'),
        QStringLiteral("#,") + QString(60, u'#'),
    };
    for (const QString& picture : pictures) {
        const TFloatPicture p(picture);
        for (double v : {0.0, -1.0 / 3, 123456789.25, -9.875e17, 1e-300, -1e300, 5e-324}) {
            const QString text = p.Format(v, fs);
            ASSERT_LE(text.size(), p.MaxLength()) << picture.toStdString() << " " << v;
            std::u16string buf(size_t(p.MaxLength()), u'\0');
            const int n = p.FormatTo(buf.data(), p.MaxLength(), v, fs);
            ASSERT_EQ(QString::fromUtf16(buf.data(), n), text) << picture.toStdString() << " " << v;
        }
    }
}

TEST(FormatFloat, NeverCrashesOnRandomPictures) {
    std::mt19937 rng(4711);
    const char16_t alphabet[] = u"0#.,;'\"Ee+- %a\u00B0\u20AC0#0#.E";
    std::uniform_int_distribution<int> pick(0, int(std::size(alphabet)) - 2);
    std::uniform_int_distribution<int> length(0, 24);
    const double values[] = {0.0,  -0.0, 1.5,   -1.5,    123456.789, -0.0004, 1e17,  1e-300,
                             1e30, kNaN, -kInf, DBL_MAX, 5e-324,     999.5,   -99.95};
    TFormatSettings fs = DefaultFormatSettings();
    for (int i = 0; i < 20000; ++i) {
        QString picture;
        const int n = length(rng);
        for (int k = 0; k < n; ++k)
            picture += QChar(alphabet[pick(rng)]);
        const TFloatPicture p(picture);
        for (double v : values) {
            const QString text = p.Format(v, fs);
            ASSERT_LE(text.size(), p.MaxLength()) << picture.toStdString();
        }
    }
    // Long runs of placeholders and exponent digits.
    const QString longPicture =
        QString(300, u'0') + u'.' + QString(300, u'#') + QStringLiteral("E+") + QString(50, u'0');
    EXPECT_EQ(FormatFloat(longPicture, 1.0, fs).size(), 300 + 2 + 50);
    EXPECT_EQ(FormatFloat(QString(400, u','), 12.0, fs), QString(400, u','));
}

}  // namespace
}  // namespace kx
