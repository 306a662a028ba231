#pragma once
// The alarm log: limit and overflow events of bound indicators appended to a CSV file,
// one line per event, flushed at once so that nothing is lost when the runner is killed:
//     time,widget,event,value
//     2026-11-26 14:03:07.250,Boiler,upper limit,13.42
// time is the wall clock (kx::Now) with milliseconds; event is one of "upper limit",
// "lower limit", "limits normal", "overflow high", "overflow low", "overflow cleared";
// value the reading that caused it. The header is written when the file is new or empty.
// Widget names with a comma, a quote or a line break are quoted as CSV requires.
#include <QFile>
#include <QString>

namespace kx::panel {

class AlarmLog {
  public:
    // Opens for appending; false with a message when the file cannot be written.
    bool Open(const QString& path, QString* error);
    bool IsOpen() const { return file_.isOpen(); }
    // Appends one line; false when it could not be written completely.
    bool Append(const QString& widget, const QString& event, double value);
    int Lines() const { return lines_; }

    static QString Quote(const QString& field);

  private:
    QFile file_;
    int lines_ = 0;
};

}  // namespace kx::panel
