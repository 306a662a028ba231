#include <gtest/gtest.h>

#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include "kx/host/format.h"
#include "kx/host/formatfloat.h"
#include "kx/host/formatsettings.h"

namespace kx {
namespace {

TEST(Format, IntegerDirectives) {
    const int64_t minusOne64 = -1;
    EXPECT_EQ(Format("%d", {42}), "42");
    EXPECT_EQ(Format("%d", {-42}), "-42");
    EXPECT_EQ(Format("%.4d", {-5}), "-0005");
    EXPECT_EQ(Format("%.4d", {123456}), "123456");
    EXPECT_EQ(Format("%5d|", {42}), "   42|");
    EXPECT_EQ(Format("%-5d|", {42}), "42   |");
    EXPECT_EQ(Format("%5.3d", {7}), "  007");
    EXPECT_EQ(Format("%d", {std::numeric_limits<int64_t>::min()}), "-9223372036854775808");
    EXPECT_EQ(Format("%u", {-1}), "4294967295");
    EXPECT_EQ(Format("%x", {255}), "FF");
    EXPECT_EQ(Format("%X", {255}), "FF");
    EXPECT_EQ(Format("%.4x", {255}), "00FF");
    EXPECT_EQ(Format("%x", {-1}), "FFFFFFFF");
    EXPECT_EQ(Format("%x", {minusOne64}), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(Format("%D", {3}), "3");
    EXPECT_EQ(Format("%d %x %u", {4294967295u, 4294967295u, 4294967295u}),
              "4294967295 FFFFFFFF 4294967295");
}

TEST(Format, FloatDirectives) {
    EXPECT_EQ(Format("%f", {1.005}), "1.00");    // 1.00499999999999989
    EXPECT_EQ(Format("%.2f", {2.345}), "2.35");  // 2.3450000000000002
    EXPECT_EQ(Format("%.0f", {2.5}), "3");
    EXPECT_EQ(Format("%.3f", {-0.0001}), "0.000");
    EXPECT_EQ(Format("%.0f", {-0.4}), "0");
    EXPECT_EQ(Format("%.2n", {-0.004}), "0.00");
    EXPECT_EQ(Format("%.0f", {-0.5}), "-1");
    EXPECT_EQ(Format("%8.2f|", {-3.14159}), "   -3.14|");
    EXPECT_EQ(Format("%f", {1e20}), "1E20");
    EXPECT_EQ(Format("%e", {1234.5}), "1.23450000000000E+003");
    EXPECT_EQ(Format("%.3e", {-0.00012345}), "-1.23E-004");
    EXPECT_EQ(Format("%.1e", {0.0}), "0E+000");
    EXPECT_EQ(Format("%.2e", {1e300}), "1.0E+300");
    EXPECT_EQ(Format("%g", {0.1}), "0.1");
    EXPECT_EQ(Format("%g", {1e20}), "1E20");
    EXPECT_EQ(Format("%.3g", {1234.5}), "1.23E3");
    EXPECT_EQ(Format("%n", {1234567.891}), "1,234,567.89");
    EXPECT_EQ(Format("%.0n", {1234.5}), "1,235");
    EXPECT_EQ(Format("%f %e", {std::numeric_limits<double>::quiet_NaN(),
                               -std::numeric_limits<double>::infinity()}),
              "NAN -INF");
    float single = 0.5f;
    EXPECT_EQ(Format("%.1f", {single}), "0.5");
}

TEST(Format, FloatDirectivesUseTheSeparators) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.DecimalSeparator = u',';
    fs.ThousandSeparator = u'.';
    SetFormatSettings(fs);
    EXPECT_EQ(Format("%n", {1234567.891}), "1.234.567,89");
    EXPECT_EQ(Format("%.1f", {2.25}), "2,3");
    EXPECT_EQ(Format("%.3e", {1234.5}), "1,23E+003");
    EXPECT_EQ(Format("%g", {0.5}), "0,5");
}

TEST(Format, TextDirectivesAndPadding) {
    EXPECT_EQ(Format("%s", {"abc"}), "abc");
    EXPECT_EQ(Format("[%6s]", {QStringLiteral("ab")}), "[    ab]");
    EXPECT_EQ(Format("[%-6s]", {"ab"}), "[ab    ]");
    EXPECT_EQ(Format("%.2s", {"abcdef"}), "ab");
    EXPECT_EQ(Format("%s%s", {'x', QChar(u'\u00B0')}), "x\u00B0");
    EXPECT_EQ(Format("%s = %d%%", {"rate", 50}), "rate = 50%");
    EXPECT_EQ(Format("%%", {}), "%");
    EXPECT_EQ(Format("no directives", {}), "no directives");
}

TEST(Format, IndexAndStar) {
    EXPECT_EQ(Format("%1:s %0:s", {"a", "b"}), "b a");
    EXPECT_EQ(Format("%1:s %s", {"a", "b", "c"}), "b c");
    EXPECT_EQ(Format("%*d|", {5, 42}), "   42|");
    EXPECT_EQ(Format("%-*d|", {4, 7}), "7   |");
    EXPECT_EQ(Format("%.*f", {1, 2.25}), "2.3");
}

// Bad directives are copied literally; a wrong-kind argument is consumed.
TEST(Format, BadDirectivesAreCopied) {
    EXPECT_EQ(Format("%d %d", {1}), "1 %d");
    EXPECT_EQ(Format("%d", {"x"}), "%d");
    EXPECT_EQ(Format("%d %s", {"x", "y"}), "%d y");
    EXPECT_EQ(Format("%f", {5}), "%f");
    EXPECT_EQ(Format("%s", {5}), "%s");
    EXPECT_EQ(Format("%q %d", {1}), "%q 1");
    EXPECT_EQ(Format("50%", {}), "50%");
    EXPECT_EQ(Format("%5", {1}), "%5");
    EXPECT_EQ(Format("%5.", {1}), "%5.");
    EXPECT_EQ(Format("%9:d", {1}), "%9:d");
    EXPECT_EQ(Format("%*d", {"x", 1}), "%*d");
    EXPECT_EQ(Format("%99999999999d", {1}).size(), 1 << 20);
}

TEST(Format, NeverCrashesOnRandomText) {
    std::mt19937 rng(99);
    const char alphabet[] = "%%%-.*:0123456789dDuxXefgnsSq ";
    std::uniform_int_distribution<int> pick(0, int(sizeof alphabet) - 2);
    std::uniform_int_distribution<int> length(0, 12);
    for (int i = 0; i < 20000; ++i) {
        QString fmt;
        const int n = length(rng);
        for (int k = 0; k < n; ++k)
            fmt += QLatin1Char(alphabet[pick(rng)]);
        const QString text = Format(fmt, {3, -2.5, "s", 7});
        ASSERT_FALSE(text.isNull() && !fmt.isEmpty()) << fmt.toStdString();
    }
}

TEST(FloatToStr, GeneralFormat) {
    struct TCase {
        double value;
        const char* expected;
    };
    const TCase cases[] = {
        // clang-format off
        {0.1, "0.1"}, {1e20, "1E20"}, {1e-5, "1E-5"}, {0.0001, "0.0001"}, {123.456, "123.456"},
        {100, "100"}, {-2.5, "-2.5"}, {0.0, "0"}, {-0.0, "0"}, {1e15, "1E15"},
        {123456789012345.0, "123456789012345"}, {999999999999999.9, "1E15"},
        {1.0 / 3.0, "0.333333333333333"}, {2.0 / 3.0, "0.666666666666667"}, {1.5e-10, "1.5E-10"},
        {-1.5e20, "-1.5E20"}, {DBL_MAX, "1.79769313486232E308"}, {5e-324, "4.94065645841247E-324"},
        {std::numeric_limits<double>::quiet_NaN(), "NAN"},
        {std::numeric_limits<double>::infinity(), "INF"},
        // clang-format on
    };
    for (const TCase& c : cases)
        EXPECT_EQ(FloatToStr(c.value), c.expected) << c.value;
}

TEST(IntToStr, Values) {
    EXPECT_EQ(IntToStr(0), "0");
    EXPECT_EQ(IntToStr(-1), "-1");
    EXPECT_EQ(IntToStr(std::numeric_limits<int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(IntToStr(std::numeric_limits<int64_t>::min()), "-9223372036854775808");
}

TEST(IntToHex, Values) {
    EXPECT_EQ(IntToHex(255, 4), "00FF");
    EXPECT_EQ(IntToHex(0, 0), "0");
    EXPECT_EQ(IntToHex(0xABC, 1), "ABC");
    EXPECT_EQ(IntToHex(-1, 2), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(IntToHex(1, 1000).size(), 64);
    EXPECT_EQ(IntToHex(0x00FF8040u, 6), "FF8040");
}

TEST(StrToFloat, AcceptedText) {
    struct TCase {
        const char* text;
        double expected;
    };
    const TCase cases[] = {
        {"1e5", 100000.0},    {"1e-3", 0.001}, {" 2.5 ", 2.5},
        {"-1.5", -1.5},       {"+3", 3.0},     {".5", 0.5},
        {"5.", 5.0},          {"1E+2", 100.0}, {"0.1", 0.1},
        {"-0", -0.0},         {"1e-400", 0.0}, {"\t7\n", 7.0},
        {"4.9e-324", 5e-324}, {"00012", 12.0}, {"1.7976931348623157e308", DBL_MAX},
    };
    for (const TCase& c : cases) {
        double v = -99.0;
        EXPECT_TRUE(TryStrToFloat(c.text, v)) << c.text;
        EXPECT_EQ(v, c.expected) << c.text;
        EXPECT_EQ(StrToFloat(c.text), c.expected) << c.text;
    }
}

TEST(StrToFloat, RejectedText) {
    for (const char* text : {"", " ", "abc", "1.5.2", "1,5", "1e", "e5", "1e+", "1e400", "-1e400",
                             "inf", "nan", "0x10", "1 2", "--1", ".", "+", "1,000", "2e5x"}) {
        double v = -99.0;
        EXPECT_FALSE(TryStrToFloat(text, v)) << text;
        EXPECT_EQ(v, -99.0) << text;
        EXPECT_EQ(StrToFloat(text), 0.0) << text;
        EXPECT_EQ(StrToFloatDef(text, 7.5), 7.5) << text;
    }
}

TEST(StrToFloat, UsesTheDecimalSeparator) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.DecimalSeparator = u',';
    fs.ThousandSeparator = u'.';
    SetFormatSettings(fs);
    EXPECT_EQ(StrToFloat("1,5"), 1.5);
    EXPECT_EQ(StrToFloat("-2,5e1"), -25.0);
    EXPECT_EQ(StrToFloatDef("1.5", -1.0), -1.0);
}

// Seventeen significant digits read back to the same double.
TEST(StrToFloat, RoundTripsGeneralFormat) {
    std::mt19937_64 rng(2024);
    std::uniform_int_distribution<uint64_t> bits;
    const TFormatSettings fs = DefaultFormatSettings();
    for (int i = 0; i < 50000; ++i) {
        const uint64_t b = bits(rng);
        double v;
        std::memcpy(&v, &b, sizeof v);
        if (!std::isfinite(v)) continue;
        const QString text = FormatGeneral(v, 17, fs);
        double back = 0.0;
        ASSERT_TRUE(TryStrToFloat(text, back)) << text.toStdString();
        if (v == 0.0) {
            ASSERT_EQ(back, 0.0);
        } else {
            ASSERT_EQ(back, v) << text.toStdString();
        }
    }
}

TEST(StrToInt, AcceptedAndRejected) {
    struct TCase {
        const char* text;
        bool ok;
        int32_t value;
    };
    const TCase cases[] = {
        // clang-format off
        {"123", true, 123}, {" -45 ", true, -45}, {"+7", true, 7}, {"$FF", true, 255},
        {"0x7fffffff", true, 2147483647}, {"$FFFFFFFF", true, -1}, {"-$10", true, -16},
        {"2147483647", true, 2147483647},
        {"-2147483648", true, std::numeric_limits<int32_t>::min()}, {"2147483648", false, 0},
        {"-2147483649", false, 0}, {"$100000000", false, 0}, {"12a", false, 0}, {"", false, 0},
        {"$", false, 0}, {"+", false, 0}, {"1 2", false, 0}, {"1.0", false, 0},
        {"99999999999999999999999", false, 0},
        // clang-format on
    };
    for (const TCase& c : cases) {
        int32_t v = -99;
        EXPECT_EQ(TryStrToInt(c.text, v), c.ok) << c.text;
        EXPECT_EQ(v, c.ok ? c.value : -99) << c.text;
        EXPECT_EQ(StrToIntDef(c.text, -7), c.ok ? c.value : -7) << c.text;
    }
}

}  // namespace
}  // namespace kx
