#pragma once
// Binary strings of "0" and "1", most significant bit first, for bit displays and
// the binary base of the numeric edit.
#include <QString>
#include <cstdint>

namespace kx {

// The bits of value from bit 0 upwards, at most 32 characters.
// digits <= 0: as few digits as show the value (0 gives "0", 5 gives "101"); a
// negative value needs all 32. digits = n > 0: bits 0..n, i.e. n + 1 characters
// (KxIntToBin(5, 8) is "000000101"); callers size their displays by that extra
// digit. n >= 31 gives 32 characters.
QString KxIntToBin(int32_t value, int32_t digits);

// The 32 bits of x taken unchanged as an integer, through KxIntToBin.
QString KxSingleToBin(float x, int32_t digits);

// Reads s from its last character to its first with weights 1, 2, 4, ...; every
// "1" adds its weight and any other character counts as 0. The weight is 32-bit,
// so only the last 32 characters matter. An empty string gives 0.
uint32_t KxBinToLWord(const QString& s);
// The bits of KxBinToLWord(s) as a signed integer.
int32_t KxBinToInt(const QString& s);
// The bits of KxBinToLWord(s) as a single-precision float (may be NaN or inf).
float KxBinToSingle(const QString& s);

}  // namespace kx
