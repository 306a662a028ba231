#include "kx/host/formatsettings.h"

namespace kx {
namespace {

// Number of times ch repeats from position i.
qsizetype RunLength(const QString& s, qsizetype i) {
    qsizetype n = 1;
    while (i + n < s.size() && s[i + n] == s[i])
        ++n;
    return n;
}

bool NeedsQuotes(QChar c) {
    return c.isLetter() || c == u'/' || c == u':' || c == u'"' || c == u'\'';
}

void AppendLiteral(QString& out, QChar c) {
    if (!NeedsQuotes(c)) {
        out += c;
        return;
    }
    const QChar quote = c == u'"' ? u'\'' : u'"';
    out += quote;
    out += c;
    out += quote;
}

// The first character of a Qt format that separates two fields, or fallback.
QChar FirstSeparator(const QString& qtFormat, QChar fallback) {
    bool quoted = false;
    bool afterField = false;
    for (QChar c : qtFormat) {
        if (c == u'\'') {
            quoted = !quoted;
            continue;
        }
        if (quoted) continue;
        if (c.isLetter()) {
            afterField = true;
        } else if (afterField && !c.isSpace() && c != u',') {
            return c;
        }
    }
    return fallback;
}

QChar SingleChar(const QString& s, QChar fallback) {
    return s.size() == 1 ? s[0] : fallback;
}

}  // namespace

QString ClassicPictureFromQt(const QString& qtFormat, QChar dateSeparator, QChar timeSeparator) {
    QString out;
    qsizetype i = 0;
    while (i < qtFormat.size()) {
        const QChar c = qtFormat[i];
        if (c == u'\'') {
            // Quoted text; '' inside or outside quotes is one quote character.
            qsizetype j = i + 1;
            if (j < qtFormat.size() && qtFormat[j] == u'\'') {
                AppendLiteral(out, u'\'');
                i = j + 1;
                continue;
            }
            while (j < qtFormat.size()) {
                if (qtFormat[j] == u'\'') {
                    if (j + 1 < qtFormat.size() && qtFormat[j + 1] == u'\'') {
                        AppendLiteral(out, u'\'');
                        j += 2;
                        continue;
                    }
                    break;
                }
                AppendLiteral(out, qtFormat[j]);
                ++j;
            }
            i = j + 1;
            continue;
        }
        const qsizetype n = RunLength(qtFormat, i);
        switch (c.unicode()) {
            case u'd':
                out += QString(std::min<qsizetype>(n, 4), u'd');
                break;
            case u'M':
                out += QString(std::min<qsizetype>(n, 4), u'm');
                break;
            case u'y':
                out += n >= 3 ? u"yyyy" : u"yy";
                break;
            case u'h':
            case u'H':
                out += n >= 2 ? u"hh" : u"h";
                break;
            case u'm':
                out += n >= 2 ? u"nn" : u"n";
                break;
            case u's':
                out += n >= 2 ? u"ss" : u"s";
                break;
            case u'z':
                out += n >= 2 ? u"zzz" : u"z";
                break;
            case u'a':
            case u'A': {
                // "AP", "ap", "A" and "a" are the am/pm marker.
                qsizetype len = 1;
                if (i + 1 < qtFormat.size() && (qtFormat[i + 1] == u'p' || qtFormat[i + 1] == u'P'))
                    len = 2;
                out += u"AMPM";
                i += len;
                continue;
            }
            case u't':
                break;  // time zone: no classic counterpart
            default:
                for (qsizetype k = 0; k < n; ++k) {
                    if (c == dateSeparator)
                        out += u'/';
                    else if (c == timeSeparator)
                        out += u':';
                    else
                        AppendLiteral(out, c);
                }
                break;
        }
        i += n;
    }
    return out.trimmed();
}

TFormatSettings DefaultFormatSettings() {
    TFormatSettings s;
    s.DecimalSeparator = u'.';
    s.ThousandSeparator = u',';
    s.DateSeparator = u'/';
    s.TimeSeparator = u':';
    s.ShortDateFormat = QStringLiteral("m/d/yyyy");
    s.LongTimeFormat = QStringLiteral("h:nn:ss AMPM");
    s.TimeAMString = QStringLiteral("AM");
    s.TimePMString = QStringLiteral("PM");
    s.ShortTimeFormat = QStringLiteral("h:nn AMPM");
    s.LongDateFormat = QStringLiteral("dddd, mmmm d, yyyy");
    static const char16_t* const kLongMonths[12] = {
        u"January", u"February", u"March",     u"April",   u"May",      u"June",
        u"July",    u"August",   u"September", u"October", u"November", u"December"};
    static const char16_t* const kLongDays[7] = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                 u"Thursday", u"Friday", u"Saturday"};
    for (int i = 0; i < 12; ++i) {
        s.LongMonthNames[i] = QString::fromUtf16(kLongMonths[i]);
        s.ShortMonthNames[i] = s.LongMonthNames[i].left(3);
    }
    for (int i = 0; i < 7; ++i) {
        s.LongDayNames[i] = QString::fromUtf16(kLongDays[i]);
        s.ShortDayNames[i] = s.LongDayNames[i].left(3);
    }
    return s;
}

TFormatSettings FormatSettingsFromLocale(const QLocale& locale) {
    TFormatSettings s = DefaultFormatSettings();
    s.DecimalSeparator = SingleChar(locale.decimalPoint(), s.DecimalSeparator);
    s.ThousandSeparator = SingleChar(locale.groupSeparator(), s.ThousandSeparator);
    if (s.ThousandSeparator == s.DecimalSeparator)
        s.ThousandSeparator = s.DecimalSeparator == u',' ? u'.' : u',';

    const QString shortDate = locale.dateFormat(QLocale::ShortFormat);
    const QString shortTime = locale.timeFormat(QLocale::ShortFormat);
    s.DateSeparator = FirstSeparator(shortDate, s.DateSeparator);
    s.TimeSeparator = FirstSeparator(shortTime, s.TimeSeparator);

    const QChar none;
    s.ShortDateFormat = ClassicPictureFromQt(shortDate, s.DateSeparator, none);
    s.LongDateFormat =
        ClassicPictureFromQt(locale.dateFormat(QLocale::LongFormat), s.DateSeparator, none);
    s.ShortTimeFormat = ClassicPictureFromQt(shortTime, none, s.TimeSeparator);
    s.LongTimeFormat =
        ClassicPictureFromQt(locale.timeFormat(QLocale::LongFormat), none, s.TimeSeparator);
    if (!locale.amText().isEmpty()) s.TimeAMString = locale.amText();
    if (!locale.pmText().isEmpty()) s.TimePMString = locale.pmText();

    for (int i = 0; i < 12; ++i) {
        s.LongMonthNames[i] = locale.monthName(i + 1, QLocale::LongFormat);
        s.ShortMonthNames[i] = locale.monthName(i + 1, QLocale::ShortFormat);
    }
    for (int i = 0; i < 7; ++i) {
        const int qtDay = i == 0 ? 7 : i;  // Qt counts from Monday = 1
        s.LongDayNames[i] = locale.dayName(qtDay, QLocale::LongFormat);
        s.ShortDayNames[i] = locale.dayName(qtDay, QLocale::ShortFormat);
    }
    return s;
}

TFormatSettings& FormatSettings() {
    static TFormatSettings settings = FormatSettingsFromLocale(QLocale::system());
    return settings;
}

void SetFormatSettings(const TFormatSettings& settings) {
    FormatSettings() = settings;
}

}  // namespace kx
