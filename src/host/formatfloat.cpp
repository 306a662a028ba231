#include "kx/host/formatfloat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace kx {
namespace {

constexpr int kGeneralMax = 32;
constexpr double kGeneralLimit = 1e18;  // from here on no picture is used

int CopyAscii(char16_t* out, const char* s) {
    int n = 0;
    while (s[n] != '\0') {
        out[n] = char16_t(s[n]);
        ++n;
    }
    return n;
}

// Writes "NAN", "INF" or "-INF" for a non-finite value; returns 0 for a finite one.
int SpecialValue(char16_t* out, double value) {
    if (std::isnan(value)) return CopyAscii(out, "NAN");
    if (std::isinf(value)) return CopyAscii(out, value < 0 ? "-INF" : "INF");
    return 0;
}

// Writes |e| with at least minDigits digits.
char16_t* WriteExponentDigits(char16_t* o, int e, int minDigits) {
    char tmp[16];
    int len = 0;
    unsigned u = e < 0 ? 0u - unsigned(e) : unsigned(e);
    do {
        tmp[len++] = char('0' + u % 10);
        u /= 10;
    } while (u > 0);
    for (int i = len; i < minDigits; ++i)
        *o++ = u'0';
    while (len > 0)
        *o++ = char16_t(tmp[--len]);
    return o;
}

// A small per-thread cache of parsed pictures, most recent first.
const TFloatPicture& CachedPicture(const QString& format) {
    struct TEntry {
        QString key;
        TFloatPicture picture;
    };
    thread_local std::array<TEntry, 8> cache;
    thread_local int used = 0;
    for (int i = 0; i < used; ++i) {
        if (cache[i].key.size() == format.size() && cache[i].key == format) {
            if (i > 0) std::rotate(cache.begin(), cache.begin() + i, cache.begin() + i + 1);
            return cache[0].picture;
        }
    }
    if (used < int(cache.size())) ++used;
    std::rotate(cache.begin(), cache.begin() + used - 1, cache.begin() + used);
    // A deep copy, so that a caller's raw-data string cannot change the key.
    cache[0].key = QString(format.constData(), format.size());
    cache[0].picture = TFloatPicture(format);
    return cache[0].picture;
}

}  // namespace

TFloatPicture::TFloatPicture(const QString& format) {
    qsizetype begin = 0;
    bool quoted = false;
    QChar quote;
    for (qsizetype i = 0; i <= format.size() && sectionCount_ < 3; ++i) {
        if (i < format.size()) {
            const QChar c = format[i];
            if (quoted) {
                if (c == quote) quoted = false;
                continue;
            }
            if (c == u'\'' || c == u'"') {
                quoted = true;
                quote = c;
                continue;
            }
            if (c != u';') continue;
        }
        sections_[sectionCount_++] = Parse(format, begin, i);
        begin = i + 1;
    }
    if (format.isEmpty()) sectionCount_ = 0;
    for (int i = 0; i < sectionCount_; ++i)
        maxLength_ = std::max(maxLength_, sections_[i].maxLength);
}

TFloatPicture::TSection TFloatPicture::Parse(const QString& format, qsizetype begin,
                                             qsizetype end) {
    TSection s;
    s.empty = begin >= end;
    int firstZero = -1;
    bool seenPoint = false;
    bool seenExp = false;
    auto push = [&](TKind kind, int a) { s.tokens.push_back(TToken{kind, a, 0}); };
    auto literal = [&](char16_t c) {
        const int offset = int(s.text.size());
        if (!s.tokens.empty() && s.tokens.back().kind == TKind::Literal &&
            s.tokens.back().a + s.tokens.back().b == offset)
            ++s.tokens.back().b;
        else
            s.tokens.push_back(TToken{TKind::Literal, offset, 1});
        s.text.push_back(c);
    };

    qsizetype i = begin;
    while (i < end) {
        const char16_t c = format[i].unicode();
        if (c == u'\'' || c == u'"') {
            qsizetype j = i + 1;
            while (j < end && format[j].unicode() != c)
                literal(format[j++].unicode());
            i = j + 1;
            continue;
        }
        if (!seenExp) {
            if (c == u'0' || c == u'#') {
                if (!seenPoint) {
                    if (c == u'0' && firstZero < 0) firstZero = s.intCount;
                    push(TKind::IntDigit, s.intCount++);
                } else {
                    push(TKind::FracDigit, s.fracCount++);
                    if (c == u'0') s.minFrac = s.fracCount;
                }
                ++i;
                continue;
            }
            if (c == u'.' && !seenPoint) {
                seenPoint = s.hasPoint = true;
                push(TKind::Point, 0);
                ++i;
                continue;
            }
            if (c == u',' && !seenPoint) {
                push(TKind::Comma, 0);
                ++i;
                continue;
            }
            if ((c == u'E' || c == u'e') && i + 1 < end &&
                (format[i + 1] == u'+' || format[i + 1] == u'-')) {
                seenExp = s.sci = true;
                s.expChar = c;
                s.expPlus = format[i + 1] == u'+';
                i += 2;
                while (i < end && format[i] == u'0') {
                    ++s.expDigits;
                    ++i;
                }
                push(TKind::Exponent, 0);
                continue;
            }
        }
        literal(c);
        ++i;
    }
    s.minInt = firstZero < 0 ? 0 : s.intCount - firstZero;

    // A ',' among the integer placeholders switches grouping on; any other is text.
    int first = -1;
    int last = -1;
    for (int k = 0; k < int(s.tokens.size()); ++k) {
        if (s.tokens[k].kind != TKind::IntDigit) continue;
        if (first < 0) first = k;
        last = k;
    }
    std::vector<TToken> tokens;
    tokens.reserve(s.tokens.size());
    for (int k = 0; k < int(s.tokens.size()); ++k) {
        const TToken& t = s.tokens[k];
        if (t.kind != TKind::Comma) {
            tokens.push_back(t);
        } else if (first >= 0 && k > first && k < last) {
            s.group = true;
        } else {
            tokens.push_back(TToken{TKind::Literal, int(s.text.size()), 1});
            s.text.push_back(u',');
        }
    }
    s.tokens = std::move(tokens);

    // Sign, literals, placeholders with a separator each, point, up to 19 integer
    // digits beyond the placeholders with their separators, exponent.
    s.maxLength = 1 + int(s.text.size()) + 2 * s.intCount + s.fracCount + 1 + 28 + s.expDigits + 16;
    return s;
}

TDecimalDigits TFloatPicture::DigitsFor(const TSection& s, double value) {
    if (!s.sci) return FixedDigitsOf(value, s.fracCount);
    TDecimalDigits d = DecimalDigitsOf(value);
    RoundDigits(d, std::max(1, s.intCount + s.fracCount));
    return d;
}

int TFloatPicture::Emit(const TSection& s, const TDecimalDigits& v, bool minus,
                        const TFormatSettings& fs, char16_t* out) {
    char16_t* o = out;
    if (minus) *o++ = u'-';
    const int places = s.intCount;
    int layoutExp = v.exp;  // integer digits of the layout
    int printedExp = 0;
    int nInt = 0;
    if (s.sci) {
        layoutExp = places + s.fracCount == 0 ? 1 : places;
        printedExp = v.IsZero() ? 0 : v.exp - layoutExp;
        nInt = layoutExp;
    } else {
        nInt = std::max(v.IsZero() ? 0 : std::max(v.exp, 0), s.minInt);
    }
    const int fracAvail = v.IsZero() ? 0 : v.count - layoutExp;
    const int fracShown = std::max(s.minFrac, std::min(s.fracCount, fracAvail));
    const char16_t groupSep = s.group ? fs.ThousandSeparator.unicode() : u'\0';

    auto digit = [&](int idx) -> char16_t {
        return idx >= 0 && idx < v.count ? char16_t(v.d[idx]) : u'0';
    };
    auto emitInt = [&](int place) {
        *o++ = digit(layoutExp - 1 - place);
        if (groupSep != u'\0' && place > 0 && place % 3 == 0) *o++ = groupSep;
    };
    auto emitAllInt = [&] {
        for (int p = nInt - 1; p >= 0; --p)
            emitInt(p);
    };

    for (const TToken& t : s.tokens) {
        switch (t.kind) {
            case TKind::Literal:
                std::memcpy(o, s.text.data() + t.a, sizeof(char16_t) * size_t(t.b));
                o += t.b;
                break;
            case TKind::IntDigit: {
                const int place = places - 1 - t.a;
                if (t.a == 0)
                    for (int q = nInt - 1; q > place; --q)
                        emitInt(q);
                if (place < nInt) emitInt(place);
                break;
            }
            case TKind::Point:
                if (places == 0) emitAllInt();
                if (fracShown > 0) *o++ = fs.DecimalSeparator.unicode();
                break;
            case TKind::FracDigit:
                if (t.a < fracShown) *o++ = digit(layoutExp + t.a);
                break;
            case TKind::Exponent:
                if (places == 0 && !s.hasPoint) emitAllInt();
                *o++ = s.expChar;
                if (printedExp < 0)
                    *o++ = u'-';
                else if (s.expPlus)
                    *o++ = u'+';
                o = WriteExponentDigits(o, printedExp, s.expDigits);
                break;
            case TKind::Comma:
                break;  // resolved while parsing
        }
    }
    return int(o - out);
}

int TFloatPicture::FormatFull(char16_t* out, double value, const TFormatSettings& fs) const {
    if (const int n = SpecialValue(out, value)) return n;
    if (sectionCount_ == 0) return FormatGeneralTo(out, value, 15, fs);
    // The value picks the section, not its rounded digits: -0.25 under "0" prints "-0".
    const TSection* s = &sections_[0];
    bool minus = false;
    if (value == 0) {
        if (sectionCount_ >= 3 && !sections_[2].empty) s = &sections_[2];
    } else if (value < 0) {
        if (sectionCount_ >= 2 && !sections_[1].empty)
            s = &sections_[1];
        else
            minus = true;
    }
    if (s->empty || (!s->sci && std::fabs(value) >= kGeneralLimit))
        return FormatGeneralTo(out, value, 15, fs);
    return Emit(*s, DigitsFor(*s, value), minus, fs, out);
}

int TFloatPicture::FormatTo(char16_t* out, int cap, double value, const TFormatSettings& fs) const {
    if (cap >= maxLength_) return FormatFull(out, value, fs);
    std::u16string tmp(size_t(maxLength_), u'\0');
    const int n = FormatFull(tmp.data(), value, fs);
    if (cap > 0) std::memcpy(out, tmp.data(), sizeof(char16_t) * size_t(std::min(n, cap)));
    return n;
}

QString TFloatPicture::Format(double value, const TFormatSettings& fs) const {
    constexpr int kStack = 256;
    if (maxLength_ <= kStack) {
        char16_t buf[kStack];
        const int n = FormatFull(buf, value, fs);
        return QString(reinterpret_cast<const QChar*>(buf), n);
    }
    std::u16string tmp(size_t(maxLength_), u'\0');
    const int n = FormatFull(tmp.data(), value, fs);
    return QString(reinterpret_cast<const QChar*>(tmp.data()), n);
}

QString FormatFloat(const QString& format, double value, const TFormatSettings& fs) {
    return CachedPicture(format).Format(value, fs);
}

QString FormatFloat(const QString& format, double value) {
    return FormatFloat(format, value, FormatSettings());
}

int FormatGeneralTo(char16_t* out, double value, int precision, const TFormatSettings& fs) {
    if (const int n = SpecialValue(out, value)) return n;
    precision = std::clamp(precision, 1, 17);
    TDecimalDigits d = DecimalDigitsOf(value);
    RoundDigits(d, precision);
    char16_t* o = out;
    if (d.IsZero()) {
        *o++ = u'0';
        return 1;
    }
    if (value < 0) *o++ = u'-';
    const char16_t point = fs.DecimalSeparator.unicode();
    if (d.exp > precision || d.exp < -3) {
        *o++ = char16_t(d.d[0]);
        if (d.count > 1) {
            *o++ = point;
            for (int i = 1; i < d.count; ++i)
                *o++ = char16_t(d.d[i]);
        }
        *o++ = u'E';
        const int e = d.exp - 1;
        if (e < 0) *o++ = u'-';
        o = WriteExponentDigits(o, e, 0);
        return int(o - out);
    }
    if (d.exp <= 0) {
        *o++ = u'0';
        *o++ = point;
        for (int i = d.exp; i < 0; ++i)
            *o++ = u'0';
        for (int i = 0; i < d.count; ++i)
            *o++ = char16_t(d.d[i]);
        return int(o - out);
    }
    for (int i = 0; i < d.exp; ++i)
        *o++ = i < d.count ? char16_t(d.d[i]) : u'0';
    if (d.count > d.exp) {
        *o++ = point;
        for (int i = d.exp; i < d.count; ++i)
            *o++ = char16_t(d.d[i]);
    }
    return int(o - out);
}

QString FormatGeneral(double value, int precision, const TFormatSettings& fs) {
    char16_t buf[kGeneralMax];
    const int n = FormatGeneralTo(buf, value, precision, fs);
    return QString(reinterpret_cast<const QChar*>(buf), n);
}

}  // namespace kx
