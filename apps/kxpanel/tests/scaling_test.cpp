// Raw words and numbers to values and back: types, byte and word orders, bit fields.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "scaling.h"

namespace kx::panel {
namespace {

Scaling scaling(RawType t, Order bytes = Order::Big, Order words = Order::Big) {
    Scaling s;
    s.Type = t;
    s.ByteOrder = bytes;
    s.WordOrder = words;
    return s;
}

TEST(Scaling, WordsReadAsTheirType) {
    struct Case {
        RawType type;
        Order bytes, words;
        std::vector<uint16_t> raw;
        double expected;
    };
    const Case cases[] = {
        {RawType::Uint16, Order::Big, Order::Big, {0xFFFF}, 65535.0},
        {RawType::Int16, Order::Big, Order::Big, {0xFFFF}, -1.0},
        {RawType::Int16, Order::Big, Order::Big, {0x8000}, -32768.0},
        {RawType::Int16, Order::Little, Order::Big, {0x0180}, -32767.0},
        {RawType::Uint16, Order::Little, Order::Big, {0x3412}, 0x1234},
        {RawType::Uint32, Order::Big, Order::Big, {0x0001, 0x0002}, 65538.0},
        {RawType::Uint32, Order::Big, Order::Little, {0x0002, 0x0001}, 65538.0},
        {RawType::Uint32, Order::Little, Order::Little, {0x0200, 0x0100}, 65538.0},
        {RawType::Int32, Order::Big, Order::Big, {0xFFFF, 0xFFFE}, -2.0},
        {RawType::Int32, Order::Big, Order::Big, {0x8000, 0x0000}, -2147483648.0},
        {RawType::Uint32, Order::Big, Order::Big, {0xFFFF, 0xFFFF}, 4294967295.0},
        {RawType::Float32, Order::Big, Order::Big, {0x4148, 0x0000}, 12.5},
        {RawType::Float32, Order::Big, Order::Little, {0x0000, 0x4148}, 12.5},
        {RawType::Float32, Order::Little, Order::Big, {0x4841, 0x0000}, 12.5},
        {RawType::Float32, Order::Big, Order::Big, {0xC2C8, 0x0000}, -100.0},
        {RawType::Uint16, Order::Big, Order::Big, {7, 9}, 7.0},  // extra words unused
    };
    for (const Case& c : cases) {
        const auto v = scaling(c.type, c.bytes, c.words).ToValue(SourceValue::FromWords(c.raw));
        ASSERT_TRUE(v.has_value()) << c.expected;
        EXPECT_EQ(*v, c.expected);
    }
}

TEST(Scaling, UnusableRawGivesNoValue) {
    const auto nanWords = SourceValue::FromWords({0x7FC0, 0x0000});
    EXPECT_FALSE(scaling(RawType::Float32).ToValue(nanWords));
    EXPECT_FALSE(scaling(RawType::Int32).ToValue(SourceValue::FromWords({1})));
    EXPECT_FALSE(scaling(RawType::Uint16).ToValue(SourceValue::FromWords({})));
    EXPECT_FALSE(scaling(RawType::Uint16).ToValue(SourceValue::FromNumber(std::nan(""))));
    Scaling bits;
    bits.Bit = 0;
    EXPECT_FALSE(bits.ToValue(SourceValue::FromNumber(1e300)));
    EXPECT_FALSE(bits.ToValue(SourceValue::FromNumber(std::numeric_limits<double>::infinity())));
    // An infinite number passes: the components clamp it as an overflow.
    EXPECT_EQ(*scaling(RawType::Uint16).ToValue(SourceValue::FromNumber(INFINITY)), INFINITY);
}

TEST(Scaling, FactorAndOffset) {
    Scaling s = scaling(RawType::Int16);
    s.Factor = 0.1;
    s.Offset = -5.0;
    EXPECT_DOUBLE_EQ(*s.ToValue(SourceValue::FromWords({0xFFF6})), -6.0);  // -10
    EXPECT_DOUBLE_EQ(*s.ToValue(SourceValue::FromNumber(250.0)), 20.0);
}

TEST(Scaling, BitFields) {
    struct Case {
        int bit, bits;
        SourceValue raw;
        double expected;
    };
    const Case cases[] = {
        {0, 1, SourceValue::FromWords({0x0005}), 1},
        {1, 1, SourceValue::FromWords({0x0005}), 0},
        {2, 1, SourceValue::FromWords({0x0005}), 1},
        {15, 1, SourceValue::FromWords({0x8000}), 1},
        {4, 4, SourceValue::FromWords({0x00A5}), 0xA},
        {0, 16, SourceValue::FromWords({0xBEEF}), 0xBEEF},
        {31, 1, SourceValue::FromNumber(-1.0), 1},
        {0, 32, SourceValue::FromNumber(-1.0), 4294967295.0},
        {0, 1, SourceValue::FromNumber(3.9), 1},   // truncated to 3
        {1, 1, SourceValue::FromNumber(-2.5), 1},  // -2 = ...1110
        {28, 4, SourceValue::FromNumber(4294967296.0 + 0xF0000000), 0xF},
    };
    for (const Case& c : cases) {
        Scaling s;
        s.Bit = c.bit;
        s.Bits = c.bits;
        if (c.raw.IsWords && c.bits > 16) s.Type = RawType::Uint32;
        EXPECT_EQ(*s.ToValue(c.raw), c.expected) << c.bit << "/" << c.bits;
    }
    EXPECT_EQ(Scaling::ExtractBits(0xFFFFFFFF, 31, 32), 1u);  // clipped at bit 31
    EXPECT_EQ(Scaling::ExtractBits(0xFFFFFFFF, 32, 1), 0u);
}

TEST(Scaling, WriteBackEncodesTheInverse) {
    struct Case {
        RawType type;
        Order bytes, words;
        double factor, value;
        std::vector<uint16_t> expected;
    };
    const Case cases[] = {
        {RawType::Uint16, Order::Big, Order::Big, 1, 1234, {1234}},
        {RawType::Int16, Order::Big, Order::Big, 0.1, -1.0, {0xFFF6}},
        {RawType::Int16, Order::Big, Order::Big, 1, 1e9, {0x7FFF}},  // saturated
        {RawType::Uint16, Order::Big, Order::Big, 1, -3, {0}},
        {RawType::Uint16, Order::Big, Order::Big, 1, 2.5, {3}},  // half away from zero
        {RawType::Uint16, Order::Little, Order::Big, 1, 0x1234, {0x3412}},
        {RawType::Int32, Order::Big, Order::Big, 1, -2, {0xFFFF, 0xFFFE}},
        {RawType::Uint32, Order::Big, Order::Little, 1, 65538, {0x0002, 0x0001}},
        {RawType::Float32, Order::Big, Order::Big, 1, 12.5, {0x4148, 0x0000}},
        {RawType::Float32, Order::Little, Order::Little, 1, 12.5, {0x0000, 0x4841}},
    };
    for (const Case& c : cases) {
        Scaling s = scaling(c.type, c.bytes, c.words);
        s.Factor = c.factor;
        const auto raw = s.ToRaw(c.value, true);
        ASSERT_TRUE(raw && raw->IsWords) << c.value;
        EXPECT_EQ(raw->Words, c.expected) << c.value;
    }
    Scaling s;
    s.Factor = 2.0;
    s.Offset = 1.0;
    EXPECT_EQ(s.ToRaw(9.0, false)->Number, 4.0);
    EXPECT_FALSE(s.ToRaw(std::nan(""), false));
    s.Factor = 0.0;
    EXPECT_FALSE(s.ToRaw(1.0, true));
}

}  // namespace
}  // namespace kx::panel
