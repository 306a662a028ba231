#pragma once
// String helpers and scale-label lists. A label list is the formatted values,
// each followed by ";" (the last one too): "100;75;50;25;0;".
#include <QChar>
#include <QString>
#include <cstdint>

namespace kx {

// Upper bound on the labels of one list. Real scales have a few dozen; the
// bound only keeps absurd arguments (a step count near the int32 maximum) from
// exhausting memory. A longer list is cut after this many labels.
constexpr int32_t kKxMaxLabels = 10000;

// Splits off the text before the first sep: returns it and removes it and the
// separator from s. Without a separator returns the whole of s and empties s.
QString KxStrToken(QString& s, QChar sep);
// Number of occurrences of ch in s.
int32_t KxCharCount(const QString& s, QChar ch);
// s with every ch removed.
QString KxRemoveSign(const QString& s, QChar ch);

// Linear labels from max down to min in steps steps: for k = 0..steps the value
// min + step * (steps - k), step = (max - min) / steps kept in single
// precision, each formatted with FormatFloat(format, ...) and followed by ";".
// steps < 0 gives "". steps = 0 gives the one label of min. A step beyond the
// single-precision range becomes infinite and the labels print as FormatFloat
// prints infinities and NaN. A label within a hundred-thousandth of a step of zero is
// zero, so that the single-precision residue of a reversed range never shows as "-0".
QString KxRangeStr(double min, double max, int32_t steps, const QString& format);

// Decade labels 10^e by exponent, e from minExp towards maxExp in increments of
// inc = (maxExp - minExp) div steps (reverse: from maxExp towards minExp);
// steps < 1 counts as 1. The last label may overshoot the far bound (0..5 in 2
// steps gives exponents 0, 2, 4, 6). Each 10^e is exact (the decimal text
// "1e<e>" read as a number); exponents beyond the double range give +inf or 0.
// A span smaller than steps would give inc = 0 and never reach the far bound:
// inc is then 1, so every exponent of the span gets a label. minExp == maxExp
// (or a far bound already passed) gives the single label of the start exponent.
QString KxLogRangeStr(int32_t minExp, int32_t maxExp, int32_t steps, const QString& format,
                      bool reverse);

// decades + 1 decade labels. reverse false: value itself (unrounded), then
// value times 10, 100, ... reverse true: from 10^E down to 10^(E - decades),
// with E = Round(KxLog10(value)) + decades. decades <= 0 gives one label. In
// reverse, a value of 0 has the lowest exponent (labels 0) and a negative or
// NaN value counts as exponent 0.
QString KxCalcLogStr(double value, int32_t decades, const QString& format, bool reverse);

}  // namespace kx
