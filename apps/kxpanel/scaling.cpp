#include "scaling.h"

#include <QtEndian>
#include <bit>
#include <cmath>
#include <limits>

namespace kx::panel {
namespace {

uint16_t swapBytes(uint16_t w, Order byteOrder) {
    return byteOrder == Order::Little ? qbswap(w) : w;
}

// Rounds half away from zero and saturates at lo..hi; the value must not be NaN.
int64_t saturate(double v, int64_t lo, int64_t hi) {
    const double r = std::round(v);
    if (r <= double(lo)) return lo;
    if (r >= double(hi)) return hi;
    return static_cast<int64_t>(r);
}

uint32_t patternOf(double raw, RawType type) {
    switch (type) {
        case RawType::Int16:
            return uint16_t(int16_t(saturate(raw, INT16_MIN, INT16_MAX)));
        case RawType::Uint16:
            return uint32_t(saturate(raw, 0, UINT16_MAX));
        case RawType::Int32:
            return uint32_t(int32_t(saturate(raw, INT32_MIN, INT32_MAX)));
        case RawType::Uint32:
            return uint32_t(saturate(raw, 0, UINT32_MAX));
        case RawType::Float32:
            return std::bit_cast<uint32_t>(static_cast<float>(raw));
    }
    return 0;
}

}  // namespace

std::optional<uint32_t> Scaling::Assemble(const std::vector<uint16_t>& words, RawType type,
                                          Order byteOrder, Order wordOrder) {
    const size_t n = size_t(WordsOf(type));
    if (words.size() < n) return std::nullopt;
    if (n == 1) return swapBytes(words[0], byteOrder);
    const uint32_t first = swapBytes(words[0], byteOrder);
    const uint32_t second = swapBytes(words[1], byteOrder);
    return wordOrder == Order::Big ? (first << 16) | second : (second << 16) | first;
}

double Scaling::Interpret(uint32_t pattern, RawType type) {
    switch (type) {
        case RawType::Int16:
            return int16_t(uint16_t(pattern));
        case RawType::Uint16:
            return uint16_t(pattern);
        case RawType::Int32:
            return int32_t(pattern);
        case RawType::Uint32:
            return pattern;
        case RawType::Float32:
            return std::bit_cast<float>(pattern);
    }
    return 0.0;
}

std::vector<uint16_t> Scaling::Encode(double raw, RawType type, Order byteOrder, Order wordOrder) {
    const uint32_t p = patternOf(raw, type);
    if (WordsOf(type) == 1) return {swapBytes(uint16_t(p), byteOrder)};
    const uint16_t hi = swapBytes(uint16_t(p >> 16), byteOrder);
    const uint16_t lo = swapBytes(uint16_t(p), byteOrder);
    return wordOrder == Order::Big ? std::vector<uint16_t>{hi, lo} : std::vector<uint16_t>{lo, hi};
}

uint32_t Scaling::ExtractBits(uint32_t raw, int bit, int bits) {
    if (bit < 0 || bit > 31 || bits < 1) return 0;
    const uint32_t shifted = raw >> bit;
    return bits >= 32 - bit ? shifted : shifted & ((uint32_t(1) << bits) - 1);
}

std::optional<double> Scaling::ToValue(const SourceValue& raw) const {
    double field = 0.0;
    if (raw.IsWords) {
        const auto pattern = Assemble(raw.Words, Type, ByteOrder, WordOrder);
        if (!pattern) return std::nullopt;
        field =
            HasBitField() ? double(ExtractBits(*pattern, Bit, Bits)) : Interpret(*pattern, Type);
    } else if (HasBitField()) {
        // 2^63 is the first double beyond int64; the cast below must stay defined.
        if (!(std::fabs(raw.Number) < 9223372036854775808.0)) return std::nullopt;
        const auto whole = static_cast<int64_t>(raw.Number);
        field = double(ExtractBits(uint32_t(uint64_t(whole)), Bit, Bits));
    } else {
        field = raw.Number;
    }
    if (std::isnan(field)) return std::nullopt;
    const double value = field * Factor + Offset;
    if (std::isnan(value)) return std::nullopt;
    return value;
}

std::optional<SourceValue> Scaling::ToRaw(double value, bool asWords) const {
    if (Factor == 0.0 || !std::isfinite(Factor)) return std::nullopt;
    const double raw = (value - Offset) / Factor;
    if (std::isnan(raw)) return std::nullopt;
    if (!asWords) return SourceValue::FromNumber(raw);
    return SourceValue::FromWords(Encode(raw, Type, ByteOrder, WordOrder));
}

}  // namespace kx::panel
