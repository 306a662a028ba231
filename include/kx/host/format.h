#pragma once
// Classic text conversions: Format, FloatToStr, IntToStr, IntToHex, StrToFloat, StrToInt.
// All of them use FormatSettings() for the separators and never throw.
#include <QString>
#include <cstdint>
#include <initializer_list>

namespace kx {

// One argument of Format: an integer, a floating-point number or a text.
class TFormatArg {
  public:
    enum class TKind : uint8_t { Int, Float, String };

    TFormatArg(int v) : kind_(TKind::Int), int_(v), narrow_(true) {}
    TFormatArg(unsigned v) : kind_(TKind::Int), int_(int64_t(v)), narrow_(true) {}
    TFormatArg(long v) : kind_(TKind::Int), int_(v) {}
    TFormatArg(long long v) : kind_(TKind::Int), int_(v) {}
    TFormatArg(unsigned long v) : kind_(TKind::Int), int_(int64_t(v)) {}
    TFormatArg(unsigned long long v) : kind_(TKind::Int), int_(int64_t(v)) {}
    TFormatArg(double v) : kind_(TKind::Float), float_(v) {}
    TFormatArg(float v) : kind_(TKind::Float), float_(v) {}
    TFormatArg(const QString& s) : kind_(TKind::String), string_(s) {}
    TFormatArg(const char* s) : kind_(TKind::String), string_(QString::fromUtf8(s)) {}
    TFormatArg(const char16_t* s) : kind_(TKind::String), string_(QString::fromUtf16(s)) {}
    TFormatArg(QChar c) : kind_(TKind::String), string_(c) {}
    TFormatArg(char c) : kind_(TKind::String), string_(QChar::fromLatin1(c)) {}
    TFormatArg(bool) = delete;

    TKind Kind() const { return kind_; }
    int64_t Int() const { return int_; }
    // True for 32-bit integers: %u and %x then show them as 32-bit patterns.
    bool Narrow() const { return narrow_; }
    double Float() const { return float_; }
    const QString& String() const { return string_; }

  private:
    TKind kind_;
    int64_t int_ = 0;
    bool narrow_ = false;
    double float_ = 0.0;
    QString string_;
};

// printf-like formatting with the classic directives
//   "%" [index ":"] ["-"] [width] ["." precision] type
// where index, width and precision are digits or '*' (taken from the next
// integer argument), and type is (case-insensitive):
//   d  decimal integer; precision = minimum digits, zero-padded after the sign;
//   u  unsigned integer (a negative 32-bit argument as its 32-bit pattern);
//   x  hexadecimal with upper-case digits; precision = minimum digits; negative
//      values as their 32-bit (int/unsigned arguments) or 64-bit pattern;
//   f  fixed, precision decimals (default 2); n  the same with thousands separators;
//   e  scientific, precision significant digits (default 15), "E+ddd" exponent;
//   g  general, precision significant digits (default 15), as FloatToStr;
//   s  text; precision = maximum characters;
//   %% a percent sign.
// Numbers round half away from zero on their 17 significant digits, like
// FormatFloat; f and n fall back to the general form from 1e18 on. width pads
// with blanks on the left, or on the right with "-".
// A directive whose argument is missing, whose argument has the wrong kind
// (d, u, x want an integer; f, n, e, g a floating-point number; s a text) or
// whose type letter is unknown is copied literally; a wrong-kind argument is
// still consumed, a missing one is not. An index selects the argument for this
// and the following directives.
QString Format(const QString& fmt, std::initializer_list<TFormatArg> args);

// The general format with 15 significant digits: 0.1 -> "0.1", 1e20 -> "1E20",
// 1e-5 -> "1E-5"; NaN and infinities give "NAN", "INF", "-INF".
QString FloatToStr(double value);
QString IntToStr(int64_t value);
// Upper-case hexadecimal with at least `digits` digits (clamped to 0..64);
// a negative value prints as its 64-bit two's complement.
QString IntToHex(int64_t value, int digits);

// Accepts blanks around, an optional sign, digits with at most one
// DecimalSeparator (no thousands separators) and an optional exponent
// ("e"/"E", optional sign, digits). Anything else, and a magnitude that does
// not fit a double, gives false and leaves value untouched; a magnitude below
// the smallest denormal reads as zero.
bool TryStrToFloat(const QString& s, double& value);
// As above; invalid text gives 0.0.
double StrToFloat(const QString& s);
double StrToFloatDef(const QString& s, double def);
// Decimal, or hexadecimal after "$" or "0x", with blanks around and an optional
// sign. Decimal text must fit int32; hexadecimal up to FFFFFFFF, read as the
// 32-bit pattern ("$FFFFFFFF" is -1). Anything else gives false, value untouched.
bool TryStrToInt(const QString& s, int32_t& value);
int32_t StrToIntDef(const QString& s, int32_t def);

}  // namespace kx
