#pragma once
// The decimal digits that every number format starts from: the value's 17
// significant digits, rounded half away from zero on the decimal string, so that
// a picture rounds what the user reads rather than the binary value.
#include <cstdint>

namespace kx {

// |value| = 0.d[0] d[1] ... d[count-1] x 10^exp; no trailing zeros; count == 0 is zero.
struct TDecimalDigits {
    char d[24];  // '0'..'9'
    int count = 0;
    int exp = 0;
    bool negative = false;

    bool IsZero() const { return count == 0; }
    // The digit with place value 10^place ('0' outside the stored digits).
    char DigitAt(int place) const {
        const int i = exp - 1 - place;
        return i >= 0 && i < count ? d[i] : '0';
    }
};

// The 17 significant digits of a finite value, rounded half away from zero (an
// exact tie, such as 100000000000000.125, rounds up in magnitude to ...13).
TDecimalDigits DecimalDigitsOf(double value);

// Rounds half away from zero, keeping the first keep significant digits
// (keep <= 0 keeps none: the value becomes zero or, at keep == 0 with a first
// digit of 5 or more, one unit of the next higher place).
void RoundDigits(TDecimalDigits& v, int keep);
// Rounds so that no digit below 10^-fraction remains.
inline void RoundFixed(TDecimalDigits& v, int fraction) {
    RoundDigits(v, v.exp + fraction);
}

// The digits of |value| rounded to `fraction` decimals, as RoundFixed(DecimalDigitsOf)
// would give them, computed without a string conversion when the binary value is
// safely away from a rounding tie and fraction is 0..18 (otherwise through the string).
TDecimalDigits FixedDigitsOf(double value, int fraction);

}  // namespace kx
