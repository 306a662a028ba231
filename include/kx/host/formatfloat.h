#pragma once
// Classic numeric pictures ("##0.0", "#,##0.00;(#,##0.00);'zero'", "0.00E+00", ...).
//
// A picture has up to three sections separated by ';' (positive; negative; zero);
// further sections are ignored. In a section:
//   0      digit placeholder, shows a digit or a zero;
//   #      digit placeholder, shows a digit or nothing;
//   .      the first one marks the decimal point and prints DecimalSeparator, but
//          only when a fraction digit follows; later ones are literal;
//   ,      between the first and the last integer placeholder: group the integer
//          digits by three with ThousandSeparator (the ',' itself is not printed);
//          elsewhere it is literal;
//   E+ E- e+ e-  scientific form; the '0's that follow give the minimum number
//          of exponent digits; "+" prints the sign always, "-" only when negative;
//   '..' ".."  literal text without the quotes (an unclosed quote runs to the end);
//   anything else is literal and printed where it stands (after the exponent
//   digits even '0', '#', '.' and ',' are literal).
// Digits: the value's 17 significant digits, themselves rounded half away from
// zero when the value lies exactly halfway between two 17-digit decimals, are
// rounded half away from zero, on the decimal string, to the places the picture
// shows (100000000000000.125 under "0.00" gives "100000000000000.13", 1.015, stored
// as 1.0149999999999999, gives "1.01"). Integer digits beyond the placeholders all
// print at the first one; a picture with no integer placeholder prints the integer
// digits at its decimal point (or exponent). In scientific form every integer
// placeholder shows a digit and the exponent is adjusted to them.
// Sections: the value itself picks the section, before any rounding. An exact zero
// (also -0) uses the third section when it is present and not empty, else the
// first, without sign. A negative value uses the second section when it is present
// and not empty, without any sign of its own; otherwise the first section with '-'
// in front. Every other value uses the first section. So a value that merely rounds
// to zero keeps its section and sign: "0" gives "-0" for -0.25, "0;(0);z" gives
// "(0)" for -0.25 and "0" for 0.25, and only 0 gives "z".
// An empty first section (or an empty picture) means the general format.
// Special values: NaN gives "NAN", infinities "INF" and "-INF". A section
// without exponent cannot show |value| >= 1e18: such a value gets the general
// format ("1E20", "-1.5E20") instead.
#include <QString>
#include <vector>

#include "kx/host/decimaldigits.h"
#include "kx/host/formatsettings.h"

namespace kx {

// A picture parsed once; formatting with it allocates only the resulting QString.
class TFloatPicture {
  public:
    TFloatPicture() = default;  // the general format
    explicit TFloatPicture(const QString& format);

    QString Format(double value, const TFormatSettings& fs) const;
    // Writes the text into out and returns its length. When the text is longer
    // than cap only the first cap characters are written (the full length is
    // still returned); a cap of MaxLength() always suffices.
    int FormatTo(char16_t* out, int cap, double value, const TFormatSettings& fs) const;
    // An upper bound of the length of any text this picture produces.
    int MaxLength() const { return maxLength_; }

  private:
    enum class TKind : uint8_t { Literal, IntDigit, FracDigit, Point, Exponent, Comma };
    struct TToken {
        TKind kind;
        int32_t a;  // literal: offset into text; digit: placeholder index
        int32_t b;  // literal: length
    };
    struct TSection {
        std::vector<TToken> tokens;
        std::u16string text;
        int intCount = 0;   // integer placeholders
        int minInt = 0;     // integer digits always shown ('0' onward)
        int fracCount = 0;  // fraction placeholders
        int minFrac = 0;    // fraction digits always shown (up to the last '0')
        int expDigits = 0;
        bool group = false;
        bool sci = false;
        bool hasPoint = false;
        bool expPlus = false;
        char16_t expChar = u'E';
        bool empty = true;
        int maxLength = 0;
    };

    static TSection Parse(const QString& format, qsizetype begin, qsizetype end);
    static TDecimalDigits DigitsFor(const TSection& s, double value);
    static int Emit(const TSection& s, const TDecimalDigits& v, bool minus,
                    const TFormatSettings& fs, char16_t* out);
    int FormatFull(char16_t* out, double value, const TFormatSettings& fs) const;

    TSection sections_[3];
    int sectionCount_ = 0;
    int maxLength_ = 40;
};

QString FormatFloat(const QString& format, double value);
QString FormatFloat(const QString& format, double value, const TFormatSettings& fs);

// The general format with `precision` significant digits (clamped to 1..17):
// fixed notation unless the value has more than `precision` integer digits or
// is below 1e-4, then "d.dddE[-]x" with the shortest exponent; trailing zeros
// dropped; a value that rounds to zero prints "0" without sign; NaN and
// infinities as in FormatFloat.
QString FormatGeneral(double value, int precision, const TFormatSettings& fs);
// The same into a buffer of at least 32 characters; returns the length.
int FormatGeneralTo(char16_t* out, double value, int precision, const TFormatSettings& fs);

}  // namespace kx
