#include "kx/host/decimaldigits.h"

#include <charconv>
#include <cmath>

namespace kx {
namespace {

constexpr double kPow10[19] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                               1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

void StripTrailingZeros(TDecimalDigits& v) {
    while (v.count > 0 && v.d[v.count - 1] == '0')
        --v.count;
}

// Whether a finite a > 0 lies exactly halfway between two 17-digit decimals, that is
// a == P * 10^-f with P an integer of exactly 18 digits ending in 5. With a == m * 2^-f
// and m odd, P == m * 5^f: odd, so it never ends in 0, and below 10^18 only for f <= 25.
bool IsSeventeenDigitTie(double a) {
    int e2 = 0;
    const double mant = std::frexp(a, &e2);
    auto m = static_cast<uint64_t>(std::ldexp(mant, 53));
    int f = 53 - e2;
    while ((m & 1) == 0) {
        m >>= 1;
        --f;
    }
    if (f < 1 || f > 25) return false;
    constexpr uint64_t kLow = 100000000000000000ULL;  // 10^17
    uint64_t p = m;
    for (int i = 0; i < f; ++i) {
        if (p > kLow * 2) return false;  // p * 5 > 10^18 from here on
        p *= 5;
    }
    return p > kLow;
}

}  // namespace

TDecimalDigits DecimalDigitsOf(double value) {
    TDecimalDigits r;
    r.negative = std::signbit(value);
    const double a = std::fabs(value);
    if (!(a > 0.0) || !std::isfinite(a)) return r;
    // The conversion breaks an exact tie to even; such a value is converted with one
    // digit more, exactly, and rounded here half away from zero like every other step.
    const bool tie = IsSeventeenDigitTie(a);
    const int digits = tie ? 18 : 17;
    char buf[40];
    const auto res =
        std::to_chars(buf, buf + sizeof buf, a, std::chars_format::scientific, digits - 1);
    // "d.dddddddddddddddd[d]e[+-]XX[X]"
    const char* p = buf;
    r.d[0] = *p++;
    ++p;  // '.'
    for (int i = 1; i < digits; ++i)
        r.d[i] = *p++;
    ++p;  // 'e'
    const bool negExp = *p++ == '-';
    int x = 0;
    while (p < res.ptr)
        x = x * 10 + (*p++ - '0');
    r.count = digits;
    r.exp = (negExp ? -x : x) + 1;
    if (tie)
        RoundDigits(r, 17);
    else
        StripTrailingZeros(r);
    return r;
}

void RoundDigits(TDecimalDigits& v, int keep) {
    if (v.count == 0 || keep >= v.count) return;
    if (keep < 0) {
        v.count = 0;
        return;
    }
    const bool up = v.d[keep] >= '5';
    int n = keep;
    if (up) {
        int i = n - 1;
        while (i >= 0 && v.d[i] == '9')
            --i;
        if (i < 0) {
            // All kept digits were nines (or none were kept): one unit of the next place.
            v.d[0] = '1';
            v.count = 1;
            v.exp += 1;
            return;
        }
        ++v.d[i];
        n = i + 1;
    }
    v.count = n;
    StripTrailingZeros(v);
}

TDecimalDigits FixedDigitsOf(double value, int fraction) {
    if (fraction >= 0 && fraction <= 18 && std::isfinite(value)) {
        const double y = std::fabs(value) * kPow10[fraction];
        if (y < 4e15) {
            // y is within 2^-53 of |value| * 10^fraction and the 17-digit string is
            // within 5e-17 of it; away from a tie both round the same way.
            const double n = std::floor(y);
            const double frac = y - n;
            if (std::fabs(frac - 0.5) > y * 4e-16) {
                uint64_t k = static_cast<uint64_t>(n) + (frac > 0.5 ? 1 : 0);
                TDecimalDigits r;
                r.negative = std::signbit(value);
                if (k == 0) return r;
                char tmp[24];
                int len = 0;
                while (k > 0) {
                    tmp[len++] = char('0' + k % 10);
                    k /= 10;
                }
                for (int i = 0; i < len; ++i)
                    r.d[i] = tmp[len - 1 - i];
                r.count = len;
                r.exp = len - fraction;
                StripTrailingZeros(r);
                return r;
            }
        }
    }
    TDecimalDigits r = DecimalDigitsOf(value);
    RoundFixed(r, fraction);
    return r;
}

}  // namespace kx
