// Feeds the text-to-number conversions (TryStrToFloat, StrToFloat, StrToFloatDef,
// TryStrToInt, StrToIntDef) a text and a decimal separator. Invariants:
//  - a rejected text leaves the value untouched and gives 0.0 / the default; an accepted
//    one gives a finite value that all three float forms agree on, bit for bit;
//  - round trips: the 17-digit general form of an accepted value reads back exactly; the
//    15-digit FloatToStr form reads back within its rounding and prints the same again
//    (it only fails to read for values that round up beyond the double range);
//  - an accepted integer reads back from IntToStr and from "$" + its 32-bit hexadecimal.
#include <QString>
#include <cmath>
#include <limits>

#include "fuzz_util.h"
#include "kx/host/format.h"
#include "kx/host/formatfloat.h"

namespace {

using kx::fuzz::SameBits;
using kx::fuzz::Show;

constexpr int kMaxText = 256;
constexpr double kSentinel = -12345.678;
constexpr double kDefault = 7.25;

QChar Separator(uint8_t pick) {
    switch (pick % 4) {
        case 0:
            return u'.';
        case 1:
            return u',';
        case 2:
            return QChar(0x066B);  // Arabic decimal separator
        default:
            return QChar(char16_t(pick));
    }
}

// A separator that cannot be mistaken for another part of a number.
bool Unambiguous(QChar sep) {
    return !sep.isDigit() && !sep.isSpace() && sep != u'+' && sep != u'-' && sep != u'e' &&
           sep != u'E' && sep != QChar(0) && !sep.isSurrogate();
}

void CheckFloat(const QString& text, QChar sep) {
    // The separator first: arg() after the text would substitute into a "%2" in it.
    const QString detail = QStringLiteral("text \"%2\" separator U+%1")
                               .arg(sep.unicode(), 4, 16, QLatin1Char('0'))
                               .arg(text);
    double value = kSentinel;
    const bool ok = kx::TryStrToFloat(text, value);
    if (!ok) {
        KX_FUZZ_CHECK(SameBits(value, kSentinel), detail + " changed to " + Show(value));
        KX_FUZZ_CHECK(SameBits(kx::StrToFloat(text), 0.0), detail);
        KX_FUZZ_CHECK(SameBits(kx::StrToFloatDef(text, kDefault), kDefault), detail);
        return;
    }
    KX_FUZZ_CHECK(std::isfinite(value), detail + " gave " + Show(value));
    KX_FUZZ_CHECK(SameBits(kx::StrToFloat(text), value), detail + " gave " + Show(value));
    KX_FUZZ_CHECK(SameBits(kx::StrToFloatDef(text, kDefault), value), detail);
    if (!Unambiguous(sep)) return;

    const QString exact = kx::FormatGeneral(value, 17, kx::FormatSettings());
    double back = kSentinel;
    KX_FUZZ_CHECK(kx::TryStrToFloat(exact, back) && back == value,
                  detail + " value " + Show(value) + " as \"" + exact + "\" read " + Show(back));

    const QString shown = kx::FloatToStr(value);
    back = kSentinel;
    if (!kx::TryStrToFloat(shown, back)) {
        KX_FUZZ_CHECK(std::fabs(value) > 1.7976931348623e308,
                      detail + " value " + Show(value) + " as \"" + shown + "\" unreadable");
        return;
    }
    if (std::fabs(value) < std::numeric_limits<double>::min()) return;  // fewer digits held
    KX_FUZZ_CHECK(std::fabs(back - value) <= 1e-14 * std::fabs(value),
                  detail + " value " + Show(value) + " as \"" + shown + "\" read " + Show(back));
    KX_FUZZ_CHECK(kx::FloatToStr(back) == shown, detail + " \"" + shown + "\" read " + Show(back) +
                                                     " prints " + kx::FloatToStr(back));
}

void CheckInt(const QString& text) {
    const QString detail = QStringLiteral("text \"%1\"").arg(text);
    constexpr int32_t kIntSentinel = 0x5A5A5A5A;
    int32_t value = kIntSentinel;
    if (!kx::TryStrToInt(text, value)) {
        KX_FUZZ_CHECK(value == kIntSentinel, detail + QStringLiteral(" changed to %1").arg(value));
        KX_FUZZ_CHECK(kx::StrToIntDef(text, -17) == -17, detail);
        return;
    }
    KX_FUZZ_CHECK(kx::StrToIntDef(text, -17) == value, detail);
    int32_t back = kIntSentinel;
    const QString decimal = kx::IntToStr(value);
    KX_FUZZ_CHECK(
        kx::TryStrToInt(decimal, back) && back == value,
        detail + QStringLiteral(" %1 as \"%2\" read %3").arg(value).arg(decimal).arg(back));
    back = kIntSentinel;
    const QString hex = u'$' + kx::IntToHex(int64_t(uint32_t(value)), 8);
    KX_FUZZ_CHECK(kx::TryStrToInt(hex, back) && back == value,
                  detail + QStringLiteral(" %1 as \"%2\" read %3").arg(value).arg(hex).arg(back));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    kx::TFormatSettings& fs = kx::FormatSettings();
    fs.DecimalSeparator = Separator(data[0]);
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1)
            .left(kMaxText);
    CheckFloat(text, fs.DecimalSeparator);
    CheckInt(text);
    return 0;
}
