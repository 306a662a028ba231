#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "kx/drawing/strings.h"

namespace kx {
namespace {

// Plain strings, so that a failure prints the texts.
std::string S(const QString& s) {
    return s.toStdString();
}

TEST(Strings, StrTokenSplitsAtTheFirstSeparator) {
    struct Case {
        QString text;
        QString token, rest;
    } cases[] = {
        {"ab;cd", "ab", "cd"}, {"abc", "abc", ""},    {";x", "", "x"}, {"a;", "a", ""},
        {"", "", ""},          {"a;b;c", "a", "b;c"}, {";;", "", ";"},
    };
    for (const auto& c : cases) {
        QString s = c.text;
        EXPECT_EQ(S(KxStrToken(s, ';')), S(c.token)) << c.text.toStdString();
        EXPECT_EQ(S(s), S(c.rest)) << c.text.toStdString();
    }
}

TEST(Strings, CharCountAndRemoveSign) {
    struct Case {
        QString text;
        QChar ch;
        int32_t count;
        QString removed;
    } cases[] = {
        {"", ',', 0, ""},       {"1,234,567", ',', 2, "1234567"},
        {"-12-", '-', 2, "12"}, {"abc", 'x', 0, "abc"},
        {"aaa", 'a', 3, ""},    {"Abc", 'a', 0, "Abc"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KxCharCount(c.text, c.ch), c.count) << c.text.toStdString();
        EXPECT_EQ(S(KxRemoveSign(c.text, c.ch)), S(c.removed)) << c.text.toStdString();
    }
}

TEST(Strings, RangeStrRunsFromMaxDownToMin) {
    struct Case {
        double min, max;
        int32_t steps;
        const char* format;
        QString expected;
    } cases[] = {
        // clang-format off
        {0, 100, 4, "0", "100;75;50;25;0;"}, {-50, 50, 2, "0", "50;0;-50;"},
        {0, 1, 2, "0.0", "1.0;0.5;0.0;"}, {100, 0, 4, "0", "0;25;50;75;100;"},
        {0, 100, 1, "##0.0", "100.0;0.0;"},
        // The step is kept in single precision: 1/3 becomes 0.3333333433.
        {0, 1, 3, "0.0000000000", "1.0000000298;0.6666666865;0.3333333433;0.0000000000;"},
        {0, 100, -1, "0", ""}, {0, 100, INT_MIN, "0", ""}, {5, 100, 0, "0", "5;"},
        {5, 5, 0, "0", "5;"},
        // A reversed range's single-precision residue at zero (-1.5e-8) is not "-0".
        {1, 0, 5, "0", "0;0;0;1;1;1;"}, {1, 0, 5, "0.0", "0.0;0.2;0.4;0.6;0.8;1.0;"},
        {-1e-30, 1, 1, "0", "1;0;"},  // so is a bound that close to zero
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(S(KxRangeStr(c.min, c.max, c.steps, c.format)), S(c.expected))
            << c.min << ".." << c.max << " in " << c.steps;
    const QString bounded = KxRangeStr(0, 1, INT_MAX, "0");
    EXPECT_EQ(bounded.count(';'), kKxMaxLabels);
    EXPECT_TRUE(bounded.startsWith("1;"));
}

TEST(Strings, LogRangeStr) {
    struct Case {
        int32_t minExp, maxExp, steps;
        bool reverse;
        QString expected;
    } cases[] = {
        // clang-format off
        {0, 3, 3, false, "1e0;1e1;1e2;1e3;"}, {0, 3, 3, true, "1e3;1e2;1e1;1e0;"},
        {-2, 2, 2, false, "1e-2;1e0;1e2;"},
        // The last label overshoots when the span is not a multiple of the step.
        {0, 5, 2, false, "1e0;1e2;1e4;1e6;"}, {0, 5, 2, true, "1e5;1e3;1e1;1e-1;"},
        // steps < 1 counts as 1.
        {1, 4, 0, false, "1e1;1e4;"}, {1, 4, -7, true, "1e4;1e1;"},
        // A span smaller than steps steps by one decade instead of never ending.
        {0, 3, 10, false, "1e0;1e1;1e2;1e3;"}, {0, 3, 10, true, "1e3;1e2;1e1;1e0;"},
        // A single decade, or a start already past the far bound: one label.
        {2, 2, 5, false, "1e2;"}, {2, 2, 5, true, "1e2;"}, {5, 0, 1, false, "1e5;"},
        {5, 0, 1, true, "1e0;"},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(S(KxLogRangeStr(c.minExp, c.maxExp, c.steps, "0e-0", c.reverse)), S(c.expected))
            << c.minExp << ".." << c.maxExp << "/" << c.steps << (c.reverse ? " reverse" : "");
}

TEST(Strings, LogRangeStrValuesAreExactAndExtremeExponentsTerminate) {
    EXPECT_EQ(S(KxLogRangeStr(-3, 3, 6, "0.###", false)), "0.001;0.01;0.1;1;10;100;1000;");
    EXPECT_EQ(S(KxLogRangeStr(15, 17, 1, "0", false)), "1000000000000000;100000000000000000;");
    EXPECT_EQ(S(KxLogRangeStr(-400, 400, 1, "0", false)), "0;INF;");
    // The span of the int32 range overflows 32 bits, and the overshoot passes it.
    EXPECT_EQ(KxLogRangeStr(INT_MIN, INT_MAX, 1, "0", false).count(';'), 2);
    EXPECT_EQ(KxLogRangeStr(-4, INT_MAX, 2, "0", false).count(';'), 4);
    EXPECT_EQ(KxLogRangeStr(INT_MIN, INT_MAX, INT_MAX, "0", true).count(';'), kKxMaxLabels);
}

TEST(Strings, CalcLogStr) {
    struct Case {
        double value;
        int32_t decades;
        bool reverse;
        const char* format;
        QString expected;
    } cases[] = {
        // clang-format off
        {2, 3, false, "0", "2;20;200;2000;"}, {0.5, 2, false, "0.0", "0.5;5.0;50.0;"},
        {300, 2, true, "0", "10000;1000;100;"}, {400, 1, true, "0", "10000;1000;"},
        {0.01, 2, true, "0.##", "1;0.1;0.01;"}, {7, 0, false, "0", "7;"},
        {7, -3, true, "0.##", "0.01;"}, {-1, 1, true, "0", "10;1;"}, {0, 1, true, "0", "0;0;"},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(S(KxCalcLogStr(c.value, c.decades, c.format, c.reverse)), S(c.expected))
            << c.value << " " << c.decades << (c.reverse ? " reverse" : "");
}

}  // namespace
}  // namespace kx
