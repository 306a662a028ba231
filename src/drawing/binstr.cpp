#include "kx/drawing/binstr.h"

#include <bit>

namespace kx {

QString KxIntToBin(int32_t value, int32_t digits) {
    if (digits < 0) digits = 0;
    const uint32_t bits = static_cast<uint32_t>(value);
    // Bits are produced from bit 0 upwards and put in front, so fill from the end.
    QChar text[32];
    int count = 0;
    uint32_t sum = 0;
    for (int i = 0; i < 32; ++i) {
        const uint32_t bit = 1u << i;
        const bool set = (bits & bit) != 0;
        if (set) sum += bit;
        text[31 - i] = set ? QChar('1') : QChar('0');
        ++count;
        if (digits == 0 ? sum == bits : i == digits) break;
    }
    return QString(text + (32 - count), count);
}

QString KxSingleToBin(float x, int32_t digits) {
    return KxIntToBin(std::bit_cast<int32_t>(x), digits);
}

uint32_t KxBinToLWord(const QString& s) {
    uint32_t result = 0;
    uint32_t weight = 1;
    for (qsizetype i = s.size() - 1; i >= 0 && weight != 0; --i) {
        if (s[i] == QChar('1')) result += weight;
        weight <<= 1;
    }
    return result;
}

int32_t KxBinToInt(const QString& s) {
    return std::bit_cast<int32_t>(KxBinToLWord(s));
}

float KxBinToSingle(const QString& s) {
    return std::bit_cast<float>(KxBinToLWord(s));
}

}  // namespace kx
