#include "kx/drawing/scriptargs.h"

#include <cmath>
#include <utility>

namespace kx {

namespace {

struct NamedColor {
    const char* name;
    TColor color;
};

constexpr NamedColor kColorNames[] = {
    {"clBlack", clBlack},
    {"clMaroon", clMaroon},
    {"clGreen", clGreen},
    {"clOlive", clOlive},
    {"clNavy", clNavy},
    {"clPurple", clPurple},
    {"clTeal", clTeal},
    {"clGray", clGray},
    {"clSilver", clSilver},
    {"clRed", clRed},
    {"clLime", clLime},
    {"clYellow", clYellow},
    {"clBlue", clBlue},
    {"clFuchsia", clFuchsia},
    {"clAqua", clAqua},
    {"clWhite", clWhite},
    {"clNone", clNone},
    {"clScrollBar", clScrollBar},
    {"clBackground", clBackground},
    {"clActiveCaption", clActiveCaption},
    {"clInactiveCaption", clInactiveCaption},
    {"clMenu", clMenu},
    {"clWindow", clWindow},
    {"clWindowFrame", clWindowFrame},
    {"clMenuText", clMenuText},
    {"clWindowText", clWindowText},
    {"clCaptionText", clCaptionText},
    {"clActiveBorder", clActiveBorder},
    {"clInactiveBorder", clInactiveBorder},
    {"clAppWorkSpace", clAppWorkSpace},
    {"clHighlight", clHighlight},
    {"clHighlightText", clHighlightText},
    {"clBtnFace", clBtnFace},
    {"clBtnShadow", clBtnShadow},
    {"clGrayText", clGrayText},
    {"clBtnText", clBtnText},
    {"clInactiveCaptionText", clInactiveCaptionText},
    {"clBtnHighlight", clBtnHighlight},
    {"cl3DDkShadow", cl3DDkShadow},
    {"cl3DLight", cl3DLight},
    {"clInfoText", clInfoText},
    {"clInfoBk", clInfoBk},
};

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

int hexDigit(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9') return u - u'0';
    if (u >= u'a' && u <= u'f') return u - u'a' + 10;
    if (u >= u'A' && u <= u'F') return u - u'A' + 10;
    return -1;
}

}  // namespace

bool ParseScriptInteger(const QString& s, int64_t& v) {
    qsizetype i = 0;
    bool negative = false;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) negative = s[i++] == u'-';
    int base = 10;
    if (i + 1 < s.size() && s[i] == u'0' && (s[i + 1] == u'x' || s[i + 1] == u'X')) {
        base = 16;
        i += 2;
    } else if (i < s.size() && s[i] == u'$') {
        base = 16;
        i += 1;
    }
    if (i >= s.size()) return false;
    // Magnitudes are gathered in uint64 and capped well below overflow.
    uint64_t magnitude = 0;
    for (; i < s.size(); ++i) {
        const int d = hexDigit(s[i]);
        if (d < 0 || d >= base) return false;
        magnitude = magnitude * uint64_t(base) + uint64_t(d);
        if (magnitude > (uint64_t(1) << 40)) return false;
    }
    v = negative ? -int64_t(magnitude) : int64_t(magnitude);
    return true;
}

bool ParseScriptColor(const QString& s, TColor& c) {
    for (const NamedColor& n : kColorNames) {
        if (s.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0) {
            c = n.color;
            return true;
        }
    }
    int64_t v = 0;
    if (!ParseScriptInteger(s, v) || v < INT32_MIN || v > int64_t(UINT32_MAX)) return false;
    c = TColor(uint32_t(uint64_t(v)));
    return true;
}

TScriptArgs::TScriptArgs(QString op, const QString& usage)
    : op_(std::move(op)), names_(usage.split(u' ', Qt::SkipEmptyParts)) {
    for (QString& n : names_)
        n.remove(u'[').remove(u']');
}

bool TScriptArgs::NextWord(const QString& line, qsizetype& pos, QString& word, QString* error) {
    while (pos < line.size() && isBlank(line[pos]))
        ++pos;
    if (pos >= line.size()) return false;
    word.clear();
    if (line[pos] != u'"') {
        const qsizetype start = pos;
        while (pos < line.size() && !isBlank(line[pos]))
            ++pos;
        word = line.mid(start, pos - start);
        return true;
    }
    for (++pos; pos < line.size(); ++pos) {
        const QChar c = line[pos];
        if (c == u'"') {
            ++pos;
            return true;
        }
        if (c == u'\\' && pos + 1 < line.size() &&
            (line[pos + 1] == u'"' || line[pos + 1] == u'\\')) {
            word += line[++pos];
            continue;
        }
        word += c;
    }
    if (error) *error = QStringLiteral("unterminated quote");
    return false;
}

bool TScriptArgs::Split(const QString& line, qsizetype pos, int fixed) {
    words_.clear();
    text_.clear();
    hasText_ = false;
    QString word, error;
    while ((fixed < 0 || words_.size() < fixed) && NextWord(line, pos, word, &error))
        words_.append(word);
    if (!error.isEmpty()) {
        Fail(op_ + QStringLiteral(": ") + error);
        return false;
    }
    if (fixed < 0) return true;
    const QString rest = line.mid(pos).trimmed();
    if (rest.isEmpty()) return true;
    hasText_ = true;
    text_ = rest;
    qsizetype p = 0;
    QString quoted;
    // A rest that is exactly one quoted word loses its quotes.
    if (rest.startsWith(u'"') && NextWord(rest, p, quoted, nullptr) && p == rest.size())
        text_ = quoted;
    return true;
}

QString TScriptArgs::argName(int i) const {
    if (i < names_.size() && names_[i] != QStringLiteral("...")) return names_[i];
    return QString();
}

void TScriptArgs::Fail(const QString& msg) {
    if (error_.isEmpty()) error_ = msg;
}

void TScriptArgs::FailArg(int i, const QString& what) {
    const QString name = argName(i);
    const QString label = name.isEmpty() ? QStringLiteral("argument %1").arg(i + 1)
                                         : QStringLiteral("argument %1 (%2)").arg(i + 1).arg(name);
    Fail(QStringLiteral("%1 of %2: '%3' %4").arg(label, op_, Word(i), what));
}

int32_t TScriptArgs::Int(int i, int32_t lo, int32_t hi) {
    if (i < 0 || i >= Count()) return lo;
    int64_t v = 0;
    if (!ParseScriptInteger(Word(i), v)) {
        FailArg(i, QStringLiteral("is not an integer"));
        return lo;
    }
    if (v < lo || v > hi) {
        FailArg(i, QStringLiteral("is out of range %1..%2").arg(lo).arg(hi));
        return lo;
    }
    return int32_t(v);
}

TColor TScriptArgs::Color(int i) {
    TColor c = clBlack;
    if (i < 0 || i >= Count()) return c;
    if (!ParseScriptColor(Word(i), c)) {
        FailArg(i, QStringLiteral("is not a colour"));
        return clBlack;
    }
    return c;
}

float TScriptArgs::Angle(int i) {
    if (i < 0 || i >= Count()) return 0.0f;
    bool ok = false;
    const double v = Word(i).toDouble(&ok);
    if (!ok || !std::isfinite(v)) {
        FailArg(i, QStringLiteral("is not a number"));
        return 0.0f;
    }
    if (std::fabs(v) > kMaxAngle) {
        FailArg(i, QStringLiteral("is out of range -%1..%1").arg(kMaxAngle, 0, 'f', 0));
        return 0.0f;
    }
    return float(v);
}

bool TScriptArgs::Flag(int i) {
    if (i < 0 || i >= Count()) return false;
    const QString& w = Word(i);
    if (w == u'1' || w.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0) return true;
    if (w == u'0' || w.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0) return false;
    FailArg(i, QStringLiteral("is not 0 or 1"));
    return false;
}

int32_t TScriptArgs::FindChoice(const QString& word, std::span<const char* const> names,
                                const char* prefix) {
    const QLatin1String pre(prefix);
    for (size_t k = 0; k < names.size(); ++k) {
        const QLatin1String full(names[k]);
        if (word.compare(full, Qt::CaseInsensitive) == 0) return int32_t(k);
        if (full.startsWith(pre) && word.compare(full.sliced(pre.size()), Qt::CaseInsensitive) == 0)
            return int32_t(k);
    }
    return -1;
}

int32_t TScriptArgs::Choice(int i, std::span<const char* const> names, const char* prefix) {
    if (i < 0 || i >= Count()) return 0;
    const int32_t k = FindChoice(Word(i), names, prefix);
    if (k >= 0) return k;
    int64_t v = 0;
    if (ParseScriptInteger(Word(i), v) && v >= 0 && v < int64_t(names.size())) return int32_t(v);
    FailArg(i, QStringLiteral("is not one of %1..%2 or 0..%3")
                   .arg(QLatin1String(names.front()), QLatin1String(names.back()))
                   .arg(names.size() - 1));
    return 0;
}

}  // namespace kx
