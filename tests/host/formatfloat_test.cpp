#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

#include "host/decimaldigits.h"
#include "host/formatfloat.h"

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

TEST(FormatFloat, RoundsHalfAwayOnSeventeenDigits) {
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
            {"0;-0;'zero'", 0.4, u"zero"}, {"0;-0;'zero'", -0.4, u"zero"},
            {"0;-0;'zero'", -0.0, u"zero"}, {"0.0;-0.0", -0.04, u"0.0"},
            {"0.00;(0)", -0.004, u"0.00"},  // zero under the negative section
            {"0", -0.4, u"0"}, {"0", -0.0, u"0"}, {"0;", -3, u"-3"}, {"0;;'z'", -3, u"-3"},
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
            {"0.00", 4.9e-324, u"0.00"}, {"0.00", -4.9e-324, u"0.00"},
            {"", 5e-324, u"4.94065645841247E-324"},
        },
        // clang-format on
        DefaultFormatSettings());
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
    EXPECT_EQ(TFloatPicture().Format(0.25, fs), "0.25");
}

// The cache must tell apart pictures that are used alternately.
TEST(FormatFloat, CacheKeepsPicturesApart) {
    const TFormatSettings fs = DefaultFormatSettings();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 12; ++i) {
            const QString picture = QString(i + 1, u'0');
            EXPECT_EQ(FormatFloat(picture, 7, fs).size(), i + 1);
        }
    }
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
