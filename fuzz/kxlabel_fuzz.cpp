// Feeds TKxLabel's DigitText (UTF-8 text) and a Digit taken from the input. Invariants:
// Text(i) is entry i of the text split at ";" for 0..31 and empty outside (including the
// int32 extremes), and ShownText() is Text(Digit) when that is not empty, else DefaultText.
#include <QString>
#include <QStringList>
#include <limits>

#include "fuzz_util.h"
#include "kx/decoration/kxlabel.h"

namespace {

using kx::TKxLabel;

constexpr int kMaxText = 1024;

TKxLabel& Label() {
    static TKxLabel label;
    return label;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const int32_t digit = in.ConsumeBool() ? in.ConsumeIntegralInRange<int32_t>(-2, 33)
                                           : in.ConsumeIntegral<int32_t>();
    const QString text = QString::fromUtf8(in.ConsumeRemainingBytesAsString()).left(kMaxText);
    TKxLabel& label = Label();
    label.SetDigitText(text);
    label.SetDigit(digit);

    const QStringList parts = text.split(u';');
    const QString detail = QStringLiteral("digit %1 text \"%2\"").arg(digit).arg(text);
    for (int i = 0; i < TKxLabel::kTexts; ++i) {
        const QString expected = i < parts.size() ? parts[i] : QString();
        KX_FUZZ_CHECK(label.Text(i) == expected,
                      detail + QStringLiteral(" text %1 is \"%2\"").arg(i).arg(label.Text(i)));
    }
    for (const int32_t outside :
         {-1, 32, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        KX_FUZZ_CHECK(label.Text(outside).isEmpty(), detail);
    }
    const QString own = label.Text(digit);
    KX_FUZZ_CHECK(label.ShownText() == (own.isEmpty() ? label.DefaultText() : own),
                  detail + " shows " + label.ShownText());
    return 0;
}
