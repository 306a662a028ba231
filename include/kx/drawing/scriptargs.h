#pragma once
// The words of one drawing-script line and their typed reading. Every reader checks its
// argument and records the first error (with the argument's name from the usage text)
// instead of throwing; it then returns a harmless value (0, false, the lower bound), so
// a caller reads all its arguments first and draws only when Ok().
#include <QString>
#include <QStringList>
#include <cstdint>
#include <span>

#include "kx/host/color.h"

namespace kx {

class TScriptArgs {
  public:
    // op names the operation in messages; usage lists its argument names ("L T R B").
    TScriptArgs(QString op, const QString& usage);

    // Reads the next word of line from pos (skipping blanks), unquoting a quoted word.
    // Returns false at the end of the line or on an unterminated quote (error then set).
    static bool NextWord(const QString& line, qsizetype& pos, QString& word, QString* error);

    // Splits the arguments of line from pos. fixed < 0: every word is an argument.
    // fixed >= 0: that many words are arguments and the rest of the line (unquoted when
    // it is one quoted word) becomes Text(). Returns Ok().
    bool Split(const QString& line, qsizetype pos, int fixed);

    int Count() const { return int(words_.size()); }
    bool HasText() const { return hasText_; }
    const QString& Text() const { return text_; }

    int32_t Int(int i, int32_t lo, int32_t hi);
    // -32768..32767, the range of every coordinate.
    int32_t Coord(int i) { return Int(i, kMinCoord, kMaxCoord); }
    // 0..32767.
    int32_t Size(int i) { return Int(i, 0, kMaxCoord); }
    TColor Color(int i);
    float Angle(int i);
    bool Flag(int i);
    // An enumerator given by its name (with or without prefix, any case) or its ordinal.
    int32_t Choice(int i, std::span<const char* const> names, const char* prefix);
    // Whether word i names one of names (with or without prefix); sets nothing on failure.
    static int32_t FindChoice(const QString& word, std::span<const char* const> names,
                              const char* prefix);

    bool Ok() const { return error_.isEmpty(); }
    const QString& Error() const { return error_; }
    // Records msg unless an earlier error is already recorded.
    void Fail(const QString& msg);
    // Records "argument i+1 (NAME) of op: 'word' what".
    void FailArg(int i, const QString& what);
    const QString& Op() const { return op_; }
    const QString& Word(int i) const { return words_[i]; }

    static constexpr int32_t kMinCoord = -32768;
    static constexpr int32_t kMaxCoord = 32767;
    static constexpr double kMaxAngle = 1000000.0;

  private:
    QString argName(int i) const;

    QString op_;
    QStringList names_;
    QStringList words_;
    QString text_;
    bool hasText_ = false;
    QString error_;
};

// Parses an integer: optional sign, then decimal digits or 0x/$ and hex digits. False
// when malformed or beyond the int64 range.
bool ParseScriptInteger(const QString& s, int64_t& v);
// A colour: a 32-bit number (hex or decimal, -2147483648..4294967295) or a colour name.
bool ParseScriptColor(const QString& s, TColor& c);

}  // namespace kx
