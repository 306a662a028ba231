// Reading an entry of the numeric edit: notation prefix, engineering letter, the scan for
// offending characters and the conversion.
#include <algorithm>
#include <cmath>

#include "kx/drawing/binstr.h"
#include "kx/entry/numedit.h"
#include "kx/host/format.h"

namespace kx {

namespace {

struct TBaseProperties {
    QString Valid;
    bool Float;
    bool Engineering;
    QString Signs;
};

TBaseProperties propertiesOf(TKxNumEdit::TEditBase base, const TFormatSettings& fs) {
    switch (base) {
        case TKxNumEdit::ebBin:
            return {QStringLiteral("01"), false, false, QString()};
        case TKxNumEdit::ebHex:
            return {QStringLiteral("0123456789abcdefABCDEF"), false, false, QString()};
        case TKxNumEdit::ebFloat:
            return {QStringLiteral("0123456789") + fs.DecimalSeparator + fs.ThousandSeparator, true,
                    true, QStringLiteral("+-")};
        case TKxNumEdit::ebInt:
            break;
    }
    return {QStringLiteral("0123456789") + fs.ThousandSeparator, false, true, QStringLiteral("+-")};
}

// The factor of an engineering letter, in single precision as the classic table held it;
// 0 for any other character.
float factorOf(QChar c) {
    static const QString letters = QStringLiteral("EPTGMkmunpfa");
    static const float factors[] = {1e18f, 1e15f, 1e12f, 1e9f,   1e6f,   1e3f,
                                    1e-3f, 1e-6f, 1e-9f, 1e-12f, 1e-15f, 1e-18f};
    const qsizetype i = letters.indexOf(c);
    return i < 0 ? 0.0f : factors[i];
}

TKxNumEdit::TEditBase baseOfPrefix(QChar c, TKxNumEdit::TEditBase fallback) {
    switch (c.unicode()) {
        case u'$':
            return TKxNumEdit::ebHex;
        case u'%':
            return TKxNumEdit::ebInt;
        case u'&':
            return TKxNumEdit::ebBin;
        case u'!':
            return TKxNumEdit::ebFloat;
        default:
            return fallback;
    }
}

// Marks the offending characters of body (which starts at offset in the whole text).
void scan(const QString& body, qsizetype offset, const TBaseProperties& p, QChar decimal,
          TKxNumEdit::TEntry& e) {
    const auto bad = [&](qsizetype i) {
        // The two scans report out of order: keep the outermost positions.
        const int32_t at = int32_t(offset + i);
        e.FirstInvalid = e.FirstInvalid < 0 ? at : std::min(e.FirstInvalid, at);
        e.LastInvalid = std::max(e.LastInvalid, at);
        e.Valid = false;
    };
    qsizetype i = 0;
    if (i < body.size() && p.Signs.contains(body[i])) ++i;
    bool exponent = false;
    for (; i < body.size(); ++i) {
        const QChar c = body[i];
        if (!exponent && p.Float && (c == u'E' || c == u'e')) {
            exponent = true;
            if (i + 1 < body.size() && p.Signs.contains(body[i + 1])) ++i;
            continue;
        }
        if (!p.Valid.contains(c)) bad(i);
    }
    bool seen = false;
    for (qsizetype k = 0; k < body.size(); ++k) {
        if (body[k] != decimal) continue;
        if (seen) bad(k);
        seen = true;
    }
}

bool convert(QString body, TKxNumEdit::TEditBase base, const TFormatSettings& fs, double& value) {
    body.remove(fs.ThousandSeparator);
    if (body.isEmpty()) {
        value = 0.0;
        return true;
    }
    int32_t i = 0;
    switch (base) {
        case TKxNumEdit::ebBin:
            value = KxBinToInt(body);
            return true;
        case TKxNumEdit::ebHex:
            if (!TryStrToInt(QStringLiteral("$") + body, i)) return false;
            value = i;
            return true;
        case TKxNumEdit::ebFloat:
            // The reader knows the process-wide separator only.
            body.replace(fs.DecimalSeparator, FormatSettings().DecimalSeparator);
            return TryStrToFloat(body, value) && std::isfinite(value);
        case TKxNumEdit::ebInt:
            break;
    }
    if (!TryStrToInt(body, i)) return false;
    value = i;
    return true;
}

}  // namespace

TKxNumEdit::TEntry TKxNumEdit::Parse(const QString& text, TEditBase editBase,
                                     const TFormatSettings& fs) {
    TEntry e;
    e.Base = editBase;
    if (text.isEmpty()) {
        e.Empty = true;
        return e;
    }
    qsizetype start = 0;
    if (QStringLiteral("$%&!").contains(text[0])) {
        e.Base = baseOfPrefix(text[0], editBase);
        start = 1;
    }
    const TBaseProperties p = propertiesOf(e.Base, fs);
    qsizetype end = text.size();
    float factor = 1.0f;
    bool letter = false;
    if (p.Engineering && end > start) {
        const float f = factorOf(text[end - 1]);
        // A sub-unit letter stays in an integer entry, where the scan refuses it.
        if (f != 0.0f && (p.Float || f > 1.0f)) {
            factor = f;
            letter = true;
            --end;
        }
    }
    QString body = text.mid(start, end - start);
    scan(body, start, p, fs.DecimalSeparator, e);
    if (!e.Valid) return e;
    if (body.size() == 1 && p.Signs.contains(body[0])) body += u'0';
    if (p.Float && !body.isEmpty() && (body[0] == u'E' || body[0] == u'e')) body.prepend(u'1');
    if (letter && body.isEmpty()) body = QStringLiteral("1");
    double value = 0.0;
    if (!convert(body, e.Base, fs, value)) {
        // All characters allowed, yet no number: the whole entry is at fault.
        e.Valid = false;
        e.FirstInvalid = int32_t(start);
        e.LastInvalid = int32_t(std::max<qsizetype>(start, text.size() - 1));
        return e;
    }
    if (factor != 1.0f) value *= double(factor);
    if (!std::isfinite(value)) {
        e.Valid = false;
        e.FirstInvalid = int32_t(start);
        e.LastInvalid = int32_t(text.size() - 1);
        return e;
    }
    e.Value = value;
    return e;
}

}  // namespace kx
