// Feeds the numeric edit's entry reader an entry, a notation (binary, hexadecimal,
// floating point, integer) and the separators, both through TKxNumEdit::Parse and through
// an edit's text and CheckEdit. Invariants:
//  - Parse is deterministic; a valid entry has a finite value and no offending range, an
//    invalid one a range inside the text;
//  - the edit accepts exactly what Parse accepts; a rejected entry leaves Value as it was
//    and shows the error state; an accepted one sets Value to the entry's value clamped to
//    the notation's range;
//  - what the edit then shows reads back as that value (exactly: the float picture shows
//    17 significant digits).
#include <QString>
#include <algorithm>
#include <cmath>

#include "fuzz_util.h"
#include "kx/entry/numedit.h"

namespace {

using kx::TKxNumEdit;
using kx::fuzz::SameBits;
using kx::fuzz::Show;

constexpr int kMaxText = 128;
constexpr double kStart = 42.5;

// Every digit of a double, so that the float view reads back bit for bit.
const QString kExactPicture = QStringLiteral("0.################E+0");

QString Describe(const QString& text, TKxNumEdit::TEditBase base) {
    const kx::TFormatSettings& fs = kx::FormatSettings();
    // One arg() call: a chain would substitute into markers such as "%2" in the entry.
    return QStringLiteral("entry \"%1\" base %2 separators '%3' '%4'")
        .arg(text, QString::number(int(base)), QString(fs.DecimalSeparator),
             QString(fs.ThousandSeparator));
}

double ClampToBase(double v, TKxNumEdit::TEditBase base) {
    if (base == TKxNumEdit::ebFloat) return std::min(v, 1.7e308);
    return std::clamp(v, -2147483647.0, 2147483647.0);
}

TKxNumEdit::TEntry CheckParse(const QString& text, TKxNumEdit::TEditBase base) {
    const TKxNumEdit::TEntry e = TKxNumEdit::Parse(text, base, kx::FormatSettings());
    const TKxNumEdit::TEntry again = TKxNumEdit::Parse(text, base, kx::FormatSettings());
    const QString detail = Describe(text, base);
    KX_FUZZ_CHECK(e.Valid == again.Valid && e.Empty == again.Empty &&
                      e.FirstInvalid == again.FirstInvalid && e.LastInvalid == again.LastInvalid &&
                      SameBits(e.Value, again.Value) && e.Base == again.Base,
                  detail);
    KX_FUZZ_CHECK(e.Base >= TKxNumEdit::ebBin && e.Base <= TKxNumEdit::ebInt, detail);
    if (e.Valid) {
        KX_FUZZ_CHECK(e.FirstInvalid == -1 && e.LastInvalid == -1, detail);
        KX_FUZZ_CHECK(std::isfinite(e.Value), detail + " value " + Show(e.Value));
    } else {
        KX_FUZZ_CHECK(
            0 <= e.FirstInvalid && e.FirstInvalid <= e.LastInvalid && e.LastInvalid < text.size(),
            detail + QStringLiteral(" invalid %1..%2").arg(e.FirstInvalid).arg(e.LastInvalid));
    }
    return e;
}

// What the edit shows must read back as what it holds.
void CheckShown(TKxNumEdit& edit, TKxNumEdit::TEditBase base) {
    const QString shown = edit.text();
    const TKxNumEdit::TEntry e = TKxNumEdit::Parse(shown, base, kx::FormatSettings());
    const QString detail =
        Describe(shown, base) + " holds " + Show(edit.Value()) + " read " + Show(e.Value);
    KX_FUZZ_CHECK(e.Valid && !e.Empty, detail);
    switch (base) {
        case TKxNumEdit::ebFloat:
            KX_FUZZ_CHECK(e.Value == edit.Value(), detail);
            break;
        case TKxNumEdit::ebInt:
            KX_FUZZ_CHECK(e.Value == double(edit.ValueAsInt()), detail);
            break;
        default:
            // Hexadecimal and binary show the 32-bit pattern of the integer view.
            KX_FUZZ_CHECK(e.Value >= -2147483648.0 && e.Value <= 4294967295.0 &&
                              uint32_t(int64_t(e.Value)) == uint32_t(edit.ValueAsInt()),
                          detail);
    }
}

TKxNumEdit& Edit() {
    static TKxNumEdit edit;
    static const bool ready = [] {
        edit.Loaded();
        edit.SetFormatStr(kExactPicture);
        return true;
    }();
    (void)ready;
    return edit;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const auto base = TKxNumEdit::TEditBase(data[0] % 4);
    kx::TFormatSettings& fs = kx::FormatSettings();
    const bool comma = data[1] & 1;
    fs.DecimalSeparator = comma ? u',' : u'.';
    fs.ThousandSeparator = comma ? u'.' : u',';
    if (data[1] & 2) fs.ThousandSeparator = QChar(0x00A0);
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data) + 2, qsizetype(size) - 2)
            .left(kMaxText);
    CheckParse(text, base);

    TKxNumEdit& edit = Edit();
    edit.SetEditBase(base);
    edit.SetText(kStart);
    const double before = edit.Value();
    edit.setText(text);
    // The line edit may hold the text a little differently (a length cap); judge what it holds.
    const TKxNumEdit::TEntry entry = CheckParse(edit.text(), base);
    const bool accepted = edit.CheckEdit(true);
    const QString detail = Describe(text, base) + " now " + Show(edit.Value());
    KX_FUZZ_CHECK(accepted == entry.Valid, detail);
    if (!accepted) {
        KX_FUZZ_CHECK(SameBits(edit.Value(), before), detail);
        KX_FUZZ_CHECK(edit.State() == TKxNumEdit::esError, detail);
        return 0;
    }
    if (entry.Empty) {
        KX_FUZZ_CHECK(SameBits(edit.Value(), before), detail);
        return 0;
    }
    KX_FUZZ_CHECK(edit.Value() == ClampToBase(entry.Value, base),
                  detail + " read " + Show(entry.Value));
    CheckShown(edit, base);
    return 0;
}
