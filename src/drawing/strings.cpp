#include "kx/drawing/strings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "kx/drawing/logvalues.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

// 10^e, read from the decimal text "1e<e>" so that it is exactly the double
// nearest to the power (a computed power drifts in the last digit).
double Decade(int64_t e) {
    const std::string text = "1e" + std::to_string(e);
    double value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec == std::errc::result_out_of_range)
        return e > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return value;
}

void AppendLabel(QString& list, const QString& format, double value) {
    list += FormatFloat(format, value);
    list += QChar(';');
}

}  // namespace

QString KxStrToken(QString& s, QChar sep) {
    const qsizetype p = s.indexOf(sep);
    QString token;
    if (p < 0) {
        token.swap(s);
    } else {
        token = s.left(p);
        s.remove(0, p + 1);
    }
    return token;
}

int32_t KxCharCount(const QString& s, QChar ch) {
    return static_cast<int32_t>(std::min<qsizetype>(s.count(ch), INT32_MAX));
}

QString KxRemoveSign(const QString& s, QChar ch) {
    QString result = s;
    result.remove(ch);
    return result;
}

QString KxRangeStr(double min, double max, int32_t steps, const QString& format) {
    QString list;
    if (steps < 0) return list;
    const float step = steps == 0 ? 0.0f : static_cast<float>((max - min) / steps);
    const int32_t last = std::min(steps, kKxMaxLabels - 1);
    for (int32_t k = 0; k <= last; ++k) {
        double v = min + static_cast<double>(step) * (steps - k);
        // A single-precision step leaves a residue where a label should be zero (1 + 5 *
        // -0.2f is -1.5e-8), which would print as "-0".
        if (std::fabs(v) < std::fabs(static_cast<double>(step)) * 1e-5) v = 0;
        AppendLabel(list, format, v);
    }
    return list;
}

QString KxLogRangeStr(int32_t minExp, int32_t maxExp, int32_t steps, const QString& format,
                      bool reverse) {
    if (steps < 1) steps = 1;
    // In 64 bits: the span of two int32 bounds, and an overshooting exponent, may
    // leave the int32 range.
    const int64_t span = int64_t(maxExp) - minExp;
    int64_t inc = span / steps;
    if (inc == 0 && span != 0) inc = 1;
    QString list;
    int64_t e = reverse ? maxExp : minExp;
    AppendLabel(list, format, Decade(e));
    for (int32_t n = 1; n < kKxMaxLabels && (reverse ? e > minExp : e < maxExp); ++n) {
        e = reverse ? e - inc : e + inc;
        AppendLabel(list, format, Decade(e));
    }
    return list;
}

QString KxCalcLogStr(double value, int32_t decades, const QString& format, bool reverse) {
    const int32_t count = std::min(std::max(decades, 0), kKxMaxLabels - 1);
    QString list;
    double v = reverse ? Decade(int64_t(Round(KxLog10(value))) + decades) : value;
    AppendLabel(list, format, v);
    for (int32_t n = 0; n < count; ++n) {
        v = reverse ? v / 10 : v * 10;
        AppendLabel(list, format, v);
    }
    return list;
}

}  // namespace kx
