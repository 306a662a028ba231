#include "kx/host/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "kx/host/decimaldigits.h"
#include "kx/host/formatfloat.h"
#include "kx/host/formatsettings.h"

namespace kx {
namespace {

QString Ascii(const char* s, int n) {
    return QString::fromLatin1(s, n);
}

// Digits of u in the given base, upper-case, at least minDigits long.
QString UnsignedText(uint64_t u, unsigned base, int minDigits) {
    char tmp[80];
    int len = 0;
    do {
        tmp[len++] = "0123456789ABCDEF"[u % base];
        u /= base;
    } while (u > 0);
    minDigits = std::clamp(minDigits, 0, 64);
    while (len < minDigits)
        tmp[len++] = '0';
    std::reverse(tmp, tmp + len);
    return Ascii(tmp, len);
}

uint64_t Magnitude(int64_t v) {
    return v < 0 ? 0 - uint64_t(v) : uint64_t(v);
}

// Fixed notation with `decimals` decimals through a cached picture. A value that
// rounds to zero prints without sign (a picture would keep the sign of -0.0001).
QString FixedText(double value, int decimals, bool group) {
    decimals = std::clamp(decimals, 0, 40);
    if (std::isfinite(value) && FixedDigitsOf(value, decimals).IsZero()) value = 0;
    QString picture = group ? QStringLiteral("#,##0") : QStringLiteral("0");
    if (decimals > 0) picture += u'.' + QString(decimals, u'0');
    return FormatFloat(picture, value);
}

// "d.ddddE+ddd" with `precision` significant digits.
QString ScientificText(double value, int precision) {
    if (std::isnan(value)) return QStringLiteral("NAN");
    if (std::isinf(value)) return value < 0 ? QStringLiteral("-INF") : QStringLiteral("INF");
    precision = std::clamp(precision, 1, 40);
    TDecimalDigits d = DecimalDigitsOf(value);
    RoundDigits(d, precision);
    QString out;
    if (!d.IsZero() && value < 0) out += u'-';
    for (int i = 0; i < precision; ++i) {
        if (i == 1) out += FormatSettings().DecimalSeparator;
        out += QLatin1Char(i < d.count ? d.d[i] : '0');
    }
    const int e = d.IsZero() ? 0 : d.exp - 1;
    out += e < 0 ? u"E-" : u"E+";
    out += UnsignedText(uint64_t(std::abs(e)), 10, 3);
    return out;
}

struct TDirective {
    int index = -1;
    bool left = false;
    int width = -1;
    int precision = -1;
    QChar type;
};

class TFormatter {
  public:
    TFormatter(const QString& fmt, std::initializer_list<TFormatArg> args)
        : fmt_(fmt), args_(args.begin()), count_(int(args.size())) {}

    QString Run() {
        qsizetype i = 0;
        while (i < fmt_.size()) {
            const qsizetype pct = fmt_.indexOf(u'%', i);
            if (pct < 0) {
                out_ += QStringView(fmt_).mid(i);
                break;
            }
            out_ += QStringView(fmt_).mid(i, pct - i);
            i = Directive(pct);
        }
        return out_;
    }

  private:
    // Handles the directive at fmt_[start] == '%'; returns the position after it.
    qsizetype Directive(qsizetype start) {
        qsizetype i = start + 1;
        if (i < fmt_.size() && fmt_[i] == u'%') {
            out_ += u'%';
            return i + 1;
        }
        TDirective d;
        int n = -1;
        bool ok = Number(i, n);
        if (ok && i < fmt_.size() && fmt_[i] == u':') {
            d.index = n;
            ok = n >= 0;
            ++i;
            n = -1;
        }
        if (ok && n < 0 && i < fmt_.size() && fmt_[i] == u'-') {
            d.left = true;
            ++i;
        }
        if (ok && n < 0) ok = Number(i, n);
        d.width = n;
        if (ok && i < fmt_.size() && fmt_[i] == u'.') {
            ++i;
            ok = Number(i, d.precision);
            if (ok && d.precision < 0) d.precision = 0;
        }
        if (i >= fmt_.size()) {
            out_ += QStringView(fmt_).mid(start);
            return fmt_.size();
        }
        d.type = fmt_[i].toLower();
        ++i;
        if (!ok || !Convert(d)) out_ += QStringView(fmt_).mid(start, i - start);
        return i;
    }

    // Reads digits or '*' at i; value stays -1 when there is neither. False when
    // '*' has no integer argument.
    bool Number(qsizetype& i, int& value) {
        if (i < fmt_.size() && fmt_[i] == u'*') {
            ++i;
            if (next_ >= count_ || args_[next_].Kind() != TFormatArg::TKind::Int) return false;
            value = int(std::clamp<int64_t>(args_[next_++].Int(), -1, 1 << 20));
            return true;
        }
        int64_t v = -1;
        while (i < fmt_.size() && fmt_[i] >= u'0' && fmt_[i] <= u'9') {
            v = std::min<int64_t>((v < 0 ? 0 : v) * 10 + (fmt_[i].unicode() - u'0'), 1 << 20);
            ++i;
        }
        value = int(v);
        return true;
    }

    bool Convert(const TDirective& d) {
        static const QString kTypes = QStringLiteral("duxefgns");
        if (!kTypes.contains(d.type)) return false;
        if (d.index >= 0) next_ = d.index;
        if (next_ >= count_) return false;
        const TFormatArg& a = args_[next_++];
        QString text;
        using K = TFormatArg::TKind;
        switch (d.type.unicode()) {
            case u'd':
                if (a.Kind() != K::Int) return false;
                text = UnsignedText(Magnitude(a.Int()), 10, d.precision);
                if (a.Int() < 0) text.prepend(u'-');
                break;
            case u'u':
            case u'x': {
                if (a.Kind() != K::Int) return false;
                const uint64_t u = a.Narrow() ? uint64_t(uint32_t(a.Int())) : uint64_t(a.Int());
                text = UnsignedText(u, d.type == u'u' ? 10 : 16, d.precision);
                break;
            }
            case u'f':
            case u'n':
                if (a.Kind() != K::Float) return false;
                text = FixedText(a.Float(), d.precision < 0 ? 2 : d.precision, d.type == u'n');
                break;
            case u'e':
                if (a.Kind() != K::Float) return false;
                text = ScientificText(a.Float(), d.precision < 0 ? 15 : d.precision);
                break;
            case u'g':
                if (a.Kind() != K::Float) return false;
                text =
                    FormatGeneral(a.Float(), d.precision < 0 ? 15 : d.precision, FormatSettings());
                break;
            case u's':
                if (a.Kind() != K::String) return false;
                text = d.precision >= 0 ? a.String().left(d.precision) : a.String();
                break;
        }
        if (d.width > text.size()) {
            const QString pad(d.width - text.size(), u' ');
            text = d.left ? text + pad : pad + text;
        }
        out_ += text;
        return true;
    }

    const QString& fmt_;
    const TFormatArg* args_;
    int count_;
    int next_ = 0;
    QString out_;
};

}  // namespace

QString Format(const QString& fmt, std::initializer_list<TFormatArg> args) {
    return TFormatter(fmt, args).Run();
}

QString FloatToStr(double value) {
    return FormatGeneral(value, 15, FormatSettings());
}

QString IntToStr(int64_t value) {
    QString text = UnsignedText(Magnitude(value), 10, 0);
    if (value < 0) text.prepend(u'-');
    return text;
}

QString IntToHex(int64_t value, int digits) {
    return UnsignedText(uint64_t(value), 16, digits);
}

bool TryStrToFloat(const QString& s, double& value) {
    const QString t = s.trimmed();
    const QChar point = FormatSettings().DecimalSeparator;
    std::string buf;
    buf.reserve(size_t(t.size()));
    qsizetype i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == u'+' || t[i] == u'-')) negative = t[i++] == u'-';
    int mantissaDigits = 0;
    int firstNonZero = -1;  // place of the first non-zero digit, 0 = units
    int intDigits = 0;
    bool seenPoint = false;
    int fracDigits = 0;
    for (; i < t.size(); ++i) {
        const QChar c = t[i];
        if (c >= u'0' && c <= u'9') {
            if (firstNonZero == -1 && c != u'0')
                firstNonZero = seenPoint ? -(fracDigits + 1) : intDigits;
            (seenPoint ? fracDigits : intDigits)++;
            ++mantissaDigits;
            buf += char(c.unicode());
        } else if (c == point && !seenPoint) {
            seenPoint = true;
            buf += '.';
        } else {
            break;
        }
    }
    if (mantissaDigits == 0) return false;
    int64_t exponent = 0;
    if (i < t.size() && (t[i] == u'e' || t[i] == u'E')) {
        buf += 'e';
        ++i;
        bool negExp = false;
        if (i < t.size() && (t[i] == u'+' || t[i] == u'-')) {
            negExp = t[i] == u'-';
            buf += char(t[i++].unicode());
        }
        const qsizetype digitsStart = i;
        for (; i < t.size() && t[i] >= u'0' && t[i] <= u'9'; ++i) {
            buf += char(t[i].unicode());
            exponent = std::min<int64_t>(exponent * 10 + (t[i].unicode() - u'0'), 1000000000);
        }
        if (i == digitsStart) return false;
        if (negExp) exponent = -exponent;
    }
    if (i != t.size()) return false;

    double v = 0.0;
    const auto r = std::from_chars(buf.data(), buf.data() + buf.size(), v);
    if (r.ptr != buf.data() + buf.size()) return false;
    if (r.ec == std::errc::result_out_of_range) {
        // Underflow reads as zero; overflow fails. firstNonZero is set: a zero
        // mantissa never is out of range.
        const int64_t leadingIntPlace =
            firstNonZero >= 0 ? intDigits - 1 - firstNonZero : firstNonZero;
        if (leadingIntPlace + exponent >= 0) return false;
        v = 0.0;
    } else if (r.ec != std::errc()) {
        return false;
    }
    value = negative ? -v : v;
    return true;
}

double StrToFloat(const QString& s) {
    return StrToFloatDef(s, 0.0);
}

double StrToFloatDef(const QString& s, double def) {
    double v = def;
    return TryStrToFloat(s, v) ? v : def;
}

bool TryStrToInt(const QString& s, int32_t& value) {
    const QString t = s.trimmed();
    qsizetype i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == u'+' || t[i] == u'-')) negative = t[i++] == u'-';
    unsigned base = 10;
    if (i < t.size() && t[i] == u'$') {
        base = 16;
        ++i;
    } else if (i + 1 < t.size() && t[i] == u'0' && (t[i + 1] == u'x' || t[i + 1] == u'X')) {
        base = 16;
        i += 2;
    }
    if (i >= t.size()) return false;
    const uint64_t limit = base == 16 ? 0xFFFFFFFFull : (negative ? 2147483648ull : 2147483647ull);
    uint64_t u = 0;
    for (; i < t.size(); ++i) {
        const char16_t c = t[i].unicode();
        int digit = -1;
        if (c >= u'0' && c <= u'9')
            digit = c - u'0';
        else if (base == 16 && c >= u'a' && c <= u'f')
            digit = c - u'a' + 10;
        else if (base == 16 && c >= u'A' && c <= u'F')
            digit = c - u'A' + 10;
        if (digit < 0) return false;
        u = u * base + unsigned(digit);
        if (u > limit) return false;
    }
    const uint32_t bits = uint32_t(u);
    value = int32_t(negative ? 0u - bits : bits);
    return true;
}

int32_t StrToIntDef(const QString& s, int32_t def) {
    int32_t v = def;
    return TryStrToInt(s, v) ? v : def;
}

}  // namespace kx
