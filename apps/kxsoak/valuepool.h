#pragma once
// The random stream of the soak: ordinary readings most of the time, and now and then
// the values that break arithmetic and layout (NaN, infinities, the type limits,
// denormals, -0, texts of 10 000 characters). Everything comes from one seeded engine,
// so a run is reproducible from its seed.
#include <QColor>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <random>

namespace kxsoak {

class TValuePool {
  public:
    explicit TValuePool(uint64_t seed);

    // True with probability 1/n (n >= 1).
    bool OneIn(int n);
    // Uniform in lo..hi (inclusive).
    int Between(int lo, int hi);
    // A reading in -50..150 or, one time in `badOneIn`, an extreme value.
    float Float(int badOneIn = 8);
    double Double(int badOneIn = 8);
    // A smooth reading that wanders over the range, so pointers sweep and sectors change.
    float Wave(int64_t step) const;
    // Small numbers mostly, the int32 limits sometimes.
    int Int();
    unsigned UInt();
    // Extreme range ends for signal ranges (huge, tiny, reversed, non-positive).
    float RangeEnd();
    QString Text();
    QColor Color();
    // A font size: 1, 500, or an ordinary one.
    int FontSize();
    // Moderate: ordinary font sizes only and no texts of 10 000 characters. The soak's
    // measured half runs moderate: Qt's font cache keeps the glyphs of a 500-pixel font or
    // of a text in every script, tens of MiB, until it ages them, which would swamp the
    // measurement.
    void SetModerate(bool moderate) { moderate_ = moderate; }

  private:
    std::mt19937_64 engine_;
    QStringList texts_;
    QStringList shortTexts_;
    bool moderate_ = false;
};

}  // namespace kxsoak
