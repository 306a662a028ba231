#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

#include "kx/drawing/logvalues.h"

namespace kx {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(LogValues, PowersOfTenStayExact) {
    for (int e = -15; e <= 15; ++e) {
        const double exact = std::stod("1e" + std::to_string(e));
        EXPECT_EQ(KxPower(10, e), exact) << e;
        EXPECT_EQ(KxLog10(exact), e) << e;
    }
    EXPECT_EQ(KxPower(2, 10), 1024.0);
    EXPECT_DOUBLE_EQ(KxPower(9, 0.5), 3.0);
}

TEST(LogValues, DomainEdges) {
    EXPECT_EQ(KxLog10(0), -kInf);
    EXPECT_TRUE(std::isnan(KxLog10(-1)));
    EXPECT_EQ(KxLog10(kInf), kInf);
    // No real logarithm for a base <= 0: a plain 0, never NaN.
    for (double base : {0.0, -0.0, -8.0, -kInf, kNaN})
        for (double exponent : {0.0, 1.0, 1.0 / 3, -2.0})
            EXPECT_EQ(KxPower(base, exponent), 0.0);
}

TEST(LogValues, RoundLogValueSnapsToTheNearestDecade) {
    struct Case {
        double value;
        double expected;
        int32_t exponent;
    } cases[] = {
        {0, 1, 0},        {-5, 1, 0},
        {1, 1, 0},        {300, 100, 2},
        {400, 1000, 3},   {3162, 1000, 3},
        {3163, 10000, 4}, {0.03, 0.01, -2},
        {0.04, 0.1, -1},  {1e-300, 1e-300, -300},
        {kNaN, 1, 0},
    };
    for (const auto& c : cases) {
        int32_t exponent = 12345;
        EXPECT_EQ(KxRoundLogValue(c.value, exponent), c.expected) << c.value;
        EXPECT_EQ(exponent, c.exponent) << c.value;
    }
    int32_t exponent = 0;
    EXPECT_EQ(KxRoundLogValue(kInf, exponent), kInf);
    EXPECT_EQ(exponent, INT_MAX);
}

}  // namespace
}  // namespace kx
