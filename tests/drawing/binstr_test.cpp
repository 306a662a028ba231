#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>

#include "drawing/binstr.h"

namespace kx {
namespace {

TEST(BinStr, IntToBin) {
    const QString ones32(32, QChar('1'));
    struct Case {
        int32_t value, digits;
        QString expected;
    } cases[] = {
        {0, 0, "0"},
        {1, 0, "1"},
        {2, 0, "10"},
        {5, 0, "101"},
        {8, 0, "1000"},
        {255, 0, "11111111"},
        {INT_MAX, 0, QString(31, QChar('1'))},
        // A negative value needs every bit.
        {-1, 0, ones32},
        {INT_MIN, 0, "1" + QString(31, QChar('0'))},
        {-2, 0, QString(31, QChar('1')) + "0"},
        // digits = n gives n + 1 characters.
        {1, 3, "0001"},
        {5, 8, "000000101"},
        {0, 3, "0000"},
        {0, 1, "00"},
        {5, 1, "01"},
        {-1, 7, "11111111"},
        {1, 30, QString(30, QChar('0')) + "1"},
        // Never more than 32 characters.
        {1, 31, QString(31, QChar('0')) + "1"},
        {1, 100, QString(31, QChar('0')) + "1"},
        {-1, INT_MAX, ones32},
        // A negative digit count counts as 0.
        {5, -4, "101"},
        {0, INT_MIN, "0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxIntToBin(c.value, c.digits), c.expected) << c.value << "/" << c.digits;
}

TEST(BinStr, SingleToBinTakesTheRawBits) {
    EXPECT_EQ(KxSingleToBin(1.0f, 0), "1111111" + QString(23, QChar('0')));
    EXPECT_EQ(KxSingleToBin(-0.0f, 0), "1" + QString(31, QChar('0')));
    EXPECT_EQ(KxSingleToBin(0.0f, 3), "0000");
    EXPECT_EQ(KxSingleToBin(-2.0f, 0), "11" + QString(30, QChar('0')));
}

TEST(BinStr, BinToLWord) {
    const QString zeros31(31, QChar('0'));
    struct Case {
        QString text;
        uint32_t expected;
    } cases[] = {
        {"", 0},
        {"0", 0},
        {"1", 1},
        {"101", 5},
        {"1x1", 5},
        {"0000000101", 5},
        {" 1", 1},
        {"12", 2},
        {QString(32, QChar('1')), 0xFFFFFFFFu},
        {"1" + zeros31, 0x80000000u},
        // Only the last 32 characters carry weight.
        {"1" + zeros31 + "0", 0},
        {"11" + zeros31, 0x80000000u},
        {QString(40, QChar('1')), 0xFFFFFFFFu},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxBinToLWord(c.text), c.expected) << c.text.toStdString();
}

TEST(BinStr, BinToIntAndSingleReinterpretTheBits) {
    EXPECT_EQ(KxBinToInt(QString(32, QChar('1'))), -1);
    EXPECT_EQ(KxBinToInt("1" + QString(31, QChar('0'))), INT_MIN);
    EXPECT_EQ(KxBinToInt(QString(31, QChar('1'))), INT_MAX);
    EXPECT_EQ(KxBinToInt(""), 0);
    EXPECT_EQ(KxBinToSingle("1111111" + QString(23, QChar('0'))), 1.0f);
    EXPECT_TRUE(std::isnan(KxBinToSingle(QString(32, QChar('1')))));
    EXPECT_EQ(KxBinToSingle("11111111" + QString(23, QChar('0'))),
              std::numeric_limits<float>::infinity());
}

TEST(BinStr, RoundTrips) {
    for (int32_t v : {0, 1, 2, 3, 5, 127, 128, 255, 256, 65535, 123456789, INT_MAX, -1, -2, -255,
                      INT_MIN, INT_MIN + 1}) {
        EXPECT_EQ(KxBinToInt(KxIntToBin(v, 0)), v) << v;
        EXPECT_EQ(KxBinToInt(KxIntToBin(v, 31)), v) << v;
    }
    for (float x : {0.0f, -0.0f, 1.0f, -1.5f, 3.14159f, 1e-40f, 3.4e38f,
                    std::numeric_limits<float>::infinity()}) {
        const float back = KxBinToSingle(KxSingleToBin(x, 0));
        EXPECT_EQ(std::bit_cast<uint32_t>(back), std::bit_cast<uint32_t>(x)) << x;
    }
}

}  // namespace
}  // namespace kx
