// Feeds FormatFloat / TFloatPicture a picture, a double taken from raw bytes (so NaN
// payloads, infinities, denormals and -0 occur) and the decimal and thousands separators.
// Invariants beyond "no crash":
//  - the same call twice gives the same text; FormatFloat, TFloatPicture::Format and
//    FormatTo agree, the text fits MaxLength() and MaxLength() stays within twice the
//    picture plus a constant; FormatTo with a short buffer writes only its cap;
//  - NaN and the infinities give "NAN", "INF" and "-INF" whatever the picture;
//  - sections: with quote-free sections A, B, C a positive value formats as A alone, a
//    negative one (below 1e18) as B alone with the value's magnitude, an exact zero as C
//    alone; a fourth section changes nothing; a negative value with B empty formats as
//    with A alone.
#include <QString>
#include <cmath>
#include <vector>

#include "fuzz_util.h"
#include "kx/host/formatfloat.h"

namespace {

using kx::TFloatPicture;
using kx::TFormatSettings;
using kx::fuzz::Show;

constexpr int kMaxPicture = 200;

QChar Separator(uint8_t pick) {
    static const char16_t kChoices[] = {u'.', u',', u' ', u'\'', u'\u00A0', u'0',
                                        u'#', u';', u'-', u'E',  u'\u066B', u'%'};
    return pick < std::size(kChoices) ? QChar(kChoices[pick]) : QChar(char16_t(pick));
}

QString Describe(const QString& picture, double value) {
    return QStringLiteral("picture \"%1\" value %2").arg(picture, Show(value));
}

void CheckPicture(const QString& picture, double value, const TFormatSettings& fs) {
    const QString text = kx::FormatFloat(picture, value, fs);
    KX_FUZZ_CHECK(text == kx::FormatFloat(picture, value, fs), Describe(picture, value));

    const TFloatPicture parsed(picture);
    KX_FUZZ_CHECK(parsed.Format(value, fs) == text, Describe(picture, value) + " -> " + text);
    const int max = parsed.MaxLength();
    KX_FUZZ_CHECK(text.size() <= max,
                  Describe(picture, value) + QStringLiteral(" max %1").arg(max));
    KX_FUZZ_CHECK(max <= 2 * picture.size() + 64,
                  Describe(picture, value) + QStringLiteral(" max %1").arg(max));

    std::vector<char16_t> buf(size_t(max) + 8, u'\x7f');
    const int n = parsed.FormatTo(buf.data(), max, value, fs);
    KX_FUZZ_CHECK(n == text.size() && QStringView(buf.data(), n) == text,
                  Describe(picture, value) + " -> " + text);
    // A short buffer gets the first characters only, and nothing beyond its cap.
    std::vector<char16_t> small(8, u'\x7f');
    const int m = parsed.FormatTo(small.data(), 4, value, fs);
    KX_FUZZ_CHECK(m == text.size(), Describe(picture, value));
    KX_FUZZ_CHECK(QStringView(small.data(), std::min(m, 4)) == text.left(4) &&
                      small[4] == u'\x7f' && small[7] == u'\x7f',
                  Describe(picture, value) + " -> " + text);

    if (std::isnan(value)) KX_FUZZ_CHECK(text == u"NAN", Describe(picture, value) + " -> " + text);
    if (std::isinf(value)) {
        KX_FUZZ_CHECK(text == (value > 0 ? u"INF" : u"-INF"),
                      Describe(picture, value) + " -> " + text);
    }
}

bool PlainSection(const QString& s) {
    return !s.contains(u';') && !s.contains(u'\'') && !s.contains(u'"');
}

void CheckSections(const QString& a, const QString& b, const QString& c, double value,
                   const TFormatSettings& fs) {
    if (a.isEmpty() || !PlainSection(a) || !PlainSection(b) || !PlainSection(c)) return;
    if (std::isnan(value) || std::isinf(value)) return;
    const QString three = a + u';' + b + u';' + c;
    const QString text = kx::FormatFloat(three, value, fs);
    const QString detail = Describe(three, value) + " -> " + text;
    KX_FUZZ_CHECK(kx::FormatFloat(three + QStringLiteral(";0.0"), value, fs) == text, detail);
    if (value > 0) {
        KX_FUZZ_CHECK(text == kx::FormatFloat(a, value, fs), detail);
    } else if (value == 0) {
        KX_FUZZ_CHECK(text == kx::FormatFloat(c.isEmpty() ? a : c, 0.0, fs), detail);
    } else if (b.isEmpty()) {
        KX_FUZZ_CHECK(text == kx::FormatFloat(a, value, fs), detail);
    } else if (value > -1e18) {
        KX_FUZZ_CHECK(text == kx::FormatFloat(b, -value, fs), detail);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const double value = kx::fuzz::DoubleFromBits(in.ConsumeIntegral<uint64_t>());
    TFormatSettings fs = kx::DefaultFormatSettings();
    fs.DecimalSeparator = Separator(in.ConsumeIntegral<uint8_t>());
    fs.ThousandSeparator = Separator(in.ConsumeIntegral<uint8_t>());
    const QString a = QString::fromUtf8(in.ConsumeRandomLengthString(kMaxPicture / 4));
    const QString b = QString::fromUtf8(in.ConsumeRandomLengthString(kMaxPicture / 4));
    const QString c = QString::fromUtf8(in.ConsumeRandomLengthString(kMaxPicture / 4));
    const QString picture = QString::fromUtf8(in.ConsumeRemainingBytesAsString()).left(kMaxPicture);

    CheckPicture(picture, value, fs);
    CheckPicture(a, value, fs);
    CheckSections(a, b, c, value, fs);
    return 0;
}
