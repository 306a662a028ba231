#pragma once
// Raw source data to an engineering value and back. Raw words come as a field bus reads
// them; type, byte order and word order say how they form a number, an optional bit field
// takes part of it, and factor and offset scale the result:
//     value = field(raw) * Factor + Offset
// 16-bit types read words[0]; 32-bit types read words[0..1], the high word first with
// big word order. Little byte order swaps the two bytes of every word.
//
// Bad input: too few words, a NaN float32, a number with a bit field that is not finite
// or beyond the int64 range give no value (the reading is dropped). Write-back rounds to
// the nearest integer (half away from zero) and saturates at the type's range; a NaN or a
// zero factor gives nothing to write.
#include <cstdint>
#include <optional>
#include <vector>

#include "source.h"

namespace kx::panel {

enum class RawType { Int16, Uint16, Int32, Uint32, Float32 };
enum class Order { Big, Little };

struct Scaling {
    double Factor = 1.0;
    double Offset = 0.0;
    RawType Type = RawType::Uint16;
    Order ByteOrder = Order::Big;
    Order WordOrder = Order::Big;
    int Bit = -1;  // no bit field
    int Bits = 1;

    int Words() const { return WordsOf(Type); }
    bool HasBitField() const { return Bit >= 0; }
    std::optional<double> ToValue(const SourceValue& raw) const;
    // The raw data that reads back as value: words when asWords, else a number.
    std::optional<SourceValue> ToRaw(double value, bool asWords) const;

    static int WordsOf(RawType t) { return t == RawType::Int16 || t == RawType::Uint16 ? 1 : 2; }
    // The bit pattern the words hold (16-bit types in the low half); nothing when short.
    static std::optional<uint32_t> Assemble(const std::vector<uint16_t>& words, RawType type,
                                            Order byteOrder, Order wordOrder);
    // The number the pattern stands for.
    static double Interpret(uint32_t pattern, RawType type);
    static std::vector<uint16_t> Encode(double raw, RawType type, Order byteOrder, Order wordOrder);
    // bits bits from bit on (bit 0..31, bits 1..32, clipped at bit 31).
    static uint32_t ExtractBits(uint32_t raw, int bit, int bits);
};

}  // namespace kx::panel
