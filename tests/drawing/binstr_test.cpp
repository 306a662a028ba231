#include "kx/drawing/binstr.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>

namespace kx {
namespace {

QString Ones(int n) {
    return QString(n, QChar('1'));
}
QString Zeros(int n) {
    return QString(n, QChar('0'));
}

TEST(BinStr, IntToBin) {
    struct Case {
        int32_t value, digits;
        QString expected;
    } cases[] = {
        // clang-format off
        {0, 0, "0"}, {5, 0, "101"}, {8, 0, "1000"}, {INT_MAX, 0, Ones(31)},
        // A negative value needs every bit.
        {-1, 0, Ones(32)}, {INT_MIN, 0, "1" + Zeros(31)}, {-2, 0, Ones(31) + "0"},
        // digits = n gives n + 1 characters, never more than 32.
        {1, 3, "0001"}, {0, 1, "00"}, {5, 1, "01"}, {-1, 7, "11111111"},
        {1, 30, Zeros(30) + "1"}, {1, 31, Zeros(31) + "1"}, {1, 100, Zeros(31) + "1"},
        {-1, INT_MAX, Ones(32)},
        // A negative digit count counts as 0.
        {5, -4, "101"}, {0, INT_MIN, "0"},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxIntToBin(c.value, c.digits), c.expected) << c.value << "/" << c.digits;
}

TEST(BinStr, BinToLWordWeighsTheLast32Characters) {
    struct Case {
        QString text;
        uint32_t expected;
    } cases[] = {
        // clang-format off
        {"", 0}, {"1", 1}, {"101", 5}, {"1x1", 5}, {"0000000101", 5}, {" 1", 1}, {"12", 2},
        {Ones(32), 0xFFFFFFFFu}, {"1" + Zeros(31), 0x80000000u}, {"1" + Zeros(32), 0},
        {"11" + Zeros(31), 0x80000000u}, {Ones(40), 0xFFFFFFFFu},
        // clang-format on
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxBinToLWord(c.text), c.expected) << c.text.toStdString();
}

TEST(BinStr, IntAndSingleReinterpretTheBits) {
    EXPECT_EQ(KxSingleToBin(1.0f, 0), Ones(7) + Zeros(23));
    EXPECT_EQ(KxSingleToBin(-0.0f, 0), "1" + Zeros(31));
    EXPECT_EQ(KxSingleToBin(0.0f, 3), "0000");
    EXPECT_EQ(KxBinToInt(Ones(32)), -1);
    EXPECT_EQ(KxBinToInt("1" + Zeros(31)), INT_MIN);
    EXPECT_TRUE(std::isnan(KxBinToSingle(Ones(32))));
    EXPECT_EQ(KxBinToSingle(Ones(8) + Zeros(23)), std::numeric_limits<float>::infinity());
    for (int32_t v : {0, 1, 255, 256, 123456789, INT_MAX, -1, -255, INT_MIN, INT_MIN + 1}) {
        EXPECT_EQ(KxBinToInt(KxIntToBin(v, 0)), v) << v;
        EXPECT_EQ(KxBinToInt(KxIntToBin(v, 31)), v) << v;
    }
    for (float x : {-0.0f, -1.5f, 3.14159f, 1e-40f, 3.4e38f}) {
        const float back = KxBinToSingle(KxSingleToBin(x, 0));
        EXPECT_EQ(std::bit_cast<uint32_t>(back), std::bit_cast<uint32_t>(x)) << x;
    }
}

}  // namespace
}  // namespace kx
