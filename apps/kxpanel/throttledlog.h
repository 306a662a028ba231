#pragma once
// Counts a recurring problem (a malformed reply, a payload that is not a number) and logs
// it with qWarning at most once per interval: the first occurrence at once, later ones as
// "N more since the last report" with the newest detail, so a source sending garbage
// 50 times a second neither floods the log nor goes unnoticed. Ages come from
// kx::GetTickCount.
#include <QString>
#include <cstdint>

namespace kx::panel {

class ThrottledLog {
  public:
    static constexpr uint32_t kIntervalMs = 60000;

    // what names the problem and its source: "source \"plc\": malformed Modbus replies".
    explicit ThrottledLog(QString what) : what_(std::move(what)) {}

    // Counts one occurrence; returns whether it was logged.
    bool Note(const QString& detail);
    int64_t Count() const { return count_; }
    int64_t Reports() const { return reports_; }

  private:
    QString what_;
    int64_t count_ = 0;
    int64_t reported_ = 0;  // count_ at the last report
    int64_t reports_ = 0;
    uint32_t lastReport_ = 0;
};

}  // namespace kx::panel
