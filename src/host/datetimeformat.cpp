#include "kx/host/datetimeformat.h"

namespace kx {
namespace {

constexpr int kMaxDepth = 2;

struct TParts {
    int year, month, day, hour, min, sec, msec, dayOfWeek;
    bool Midnight() const { return hour == 0 && min == 0 && sec == 0 && msec == 0; }
};

TParts Decode(TDateTime dt) {
    TParts p{};
    DecodeDate(dt, p.year, p.month, p.day);
    DecodeTime(dt, p.hour, p.min, p.sec, p.msec);
    p.dayOfWeek = DayOfWeek(dt);
    return p;
}

bool StartsWith(const QString& s, qsizetype i, const char16_t* what) {
    return QStringView(s).mid(i).startsWith(QStringView(what), Qt::CaseInsensitive);
}

// Length of the am/pm specifier at i, or 0.
qsizetype AmPmLength(const QString& s, qsizetype i) {
    if (StartsWith(s, i, u"am/pm")) return 5;
    if (StartsWith(s, i, u"ampm")) return 4;
    if (StartsWith(s, i, u"a/p")) return 3;
    return 0;
}

bool AmPmFollows(const QString& s, qsizetype i) {
    QChar quote;
    for (; i < s.size(); ++i) {
        const QChar c = s[i];
        if (!quote.isNull()) {
            if (c == quote) quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (AmPmLength(s, i) > 0) {
            return true;
        }
    }
    return false;
}

void AppendNumber(QString& out, int v, int width) {
    out += QString::number(v).rightJustified(width, u'0');
}

class TDateWriter {
  public:
    TDateWriter(const TParts& p, const TFormatSettings& fs) : p_(p), fs_(fs) {}

    void Write(const QString& f, int depth) {
        if (depth > kMaxDepth) return;
        bool afterHour = false;
        qsizetype i = 0;
        while (i < f.size()) {
            const QChar c = f[i];
            if (c == u'"' || c == u'\'') {
                const qsizetype close = f.indexOf(c, i + 1);
                const qsizetype end = close < 0 ? f.size() : close;
                out_ += QStringView(f).mid(i + 1, end - i - 1);
                i = end + 1;
                continue;
            }
            if (const qsizetype len = AmPmLength(f, i)) {
                AppendAmPm(f, i, len);
                afterHour = false;
                i += len;
                continue;
            }
            const char16_t lc = c.toLower().unicode();
            qsizetype n = 1;
            while (i + n < f.size() && f[i + n].toLower() == c.toLower())
                ++n;
            bool hour = false;
            switch (lc) {
                case u'c':
                    n = 1;
                    Write(fs_.ShortDateFormat, depth + 1);
                    if (!p_.Midnight()) {
                        out_ += u' ';
                        Write(fs_.LongTimeFormat, depth + 1);
                    }
                    break;
                case u'd':
                    Day(std::min<qsizetype>(n, 6), depth);
                    break;
                case u'm':
                    if (afterHour && n <= 2)
                        AppendNumber(out_, p_.min, int(n));
                    else
                        Month(std::min<qsizetype>(n, 4));
                    break;
                case u'y':
                    if (n <= 2)
                        AppendNumber(out_, p_.year % 100, 2);
                    else
                        AppendNumber(out_, p_.year, 4);
                    break;
                case u'h': {
                    int h = p_.hour;
                    if (AmPmFollows(f, i + n)) h = h % 12 == 0 ? 12 : h % 12;
                    AppendNumber(out_, h, n >= 2 ? 2 : 1);
                    hour = true;
                    break;
                }
                case u'n':
                    AppendNumber(out_, p_.min, n >= 2 ? 2 : 1);
                    break;
                case u's':
                    AppendNumber(out_, p_.sec, n >= 2 ? 2 : 1);
                    break;
                case u'z':
                    AppendNumber(out_, p_.msec, n >= 2 ? 3 : 1);
                    break;
                case u't':
                    Write(n >= 2 ? fs_.LongTimeFormat : fs_.ShortTimeFormat, depth + 1);
                    break;
                case u'/':
                    n = 1;
                    out_ += fs_.DateSeparator;
                    break;
                case u':':
                    n = 1;
                    out_ += fs_.TimeSeparator;
                    break;
                default:
                    out_ += QStringView(f).mid(i, n);
                    i += n;
                    continue;  // literal: keeps the hour context for "h:mm"
            }
            afterHour = hour || ((lc == u'/' || lc == u':') && afterHour);
            i += n;
        }
    }

    const QString& Text() const { return out_; }

  private:
    void Day(qsizetype n, int depth) {
        const int dow = p_.dayOfWeek - 1;
        const bool valid = p_.day > 0 && dow >= 0 && dow < 7;
        switch (n) {
            case 1:
            case 2:
                AppendNumber(out_, p_.day, int(n));
                break;
            case 3:
                if (valid) out_ += fs_.ShortDayNames[dow];
                break;
            case 4:
                if (valid) out_ += fs_.LongDayNames[dow];
                break;
            case 5:
                Write(fs_.ShortDateFormat, depth + 1);
                break;
            default:
                Write(fs_.LongDateFormat, depth + 1);
                break;
        }
    }

    void Month(qsizetype n) {
        const bool valid = p_.month >= 1 && p_.month <= 12;
        if (n <= 2)
            AppendNumber(out_, p_.month, int(n));
        else if (valid)
            out_ += n == 3 ? fs_.ShortMonthNames[p_.month - 1] : fs_.LongMonthNames[p_.month - 1];
    }

    void AppendAmPm(const QString& f, qsizetype i, qsizetype len) {
        const bool pm = p_.hour >= 12;
        if (len == 4) {
            out_ += pm ? fs_.TimePMString : fs_.TimeAMString;
        } else if (len == 5) {
            out_ += QStringView(f).mid(pm ? i + 3 : i, 2);  // "am/pm" as written
        } else {
            out_ += f[pm ? i + 2 : i];  // "a/p" as written
        }
    }

    const TParts& p_;
    const TFormatSettings& fs_;
    QString out_;
};

}  // namespace

QString FormatDateTime(const QString& format, TDateTime dt, const TFormatSettings& fs) {
    const TParts p = Decode(dt);
    TDateWriter w(p, fs);
    w.Write(format, 0);
    return w.Text();
}

QString FormatDateTime(const QString& format, TDateTime dt) {
    return FormatDateTime(format, dt, FormatSettings());
}

QString DateToStr(TDateTime dt) {
    return FormatDateTime(QStringLiteral("ddddd"), dt);
}

QString TimeToStr(TDateTime dt) {
    return FormatDateTime(QStringLiteral("tt"), dt);
}

QString DateTimeToStr(TDateTime dt) {
    return FormatDateTime(QStringLiteral("c"), dt);
}

}  // namespace kx
