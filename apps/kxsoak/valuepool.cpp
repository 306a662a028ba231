#include "valuepool.h"

#include <array>
#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>

namespace kxsoak {

namespace {

constexpr std::array kBadFloats = {
    std::numeric_limits<float>::quiet_NaN(),
    std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(),
    FLT_MAX,
    -FLT_MAX,
    std::numeric_limits<float>::denorm_min(),
    -std::numeric_limits<float>::denorm_min(),
    FLT_MIN,
    -0.0f,
    0.0f,
    1e-30f,
    1e30f,
};
constexpr std::array kBadDoubles = {
    std::numeric_limits<double>::quiet_NaN(),
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    DBL_MAX,
    -DBL_MAX,
    std::numeric_limits<double>::denorm_min(),
    -std::numeric_limits<double>::denorm_min(),
    -0.0,
    1e300,
    -1e300,
    3.5e38,
    -3.5e38,
};
constexpr std::array kBadInts = {INT_MIN, INT_MAX, INT_MIN + 1, INT_MAX - 1, -1, 0, 65536, -65536};
constexpr std::array kRangeEnds = {-FLT_MAX, FLT_MAX, -1e30f, 1e30f, 1e-30f, -1e-30f,
                                   0.0f,     -0.0f,   -1.0f,  1.0f,  1e-6f,  1e6f};

QStringList MakeTexts() {
    QString mixed;
    for (int i = 0; mixed.size() < 10000; ++i)
        mixed += QChar(0x20 + (i * 7919) % 0x2fd0);
    return {QString(),          "kPa",
            "Flow rate",        QString(10000, 'W'),
            mixed.left(10000),  QString(10000, '|'),
            "%s%n%d|%%|\r\n\t", QString::fromUtf8("\xe2\x80\xae\xf0\x9f\x98\x80 \xcc\x81\xcc\x81")};
}

}  // namespace

TValuePool::TValuePool(uint64_t seed) : engine_(seed), texts_(MakeTexts()) {
    for (const QString& t : std::as_const(texts_)) {
        if (t.size() < 100) shortTexts_ << t;
    }
}

bool TValuePool::OneIn(int n) {
    return n <= 1 || Between(1, n) == 1;
}

int TValuePool::Between(int lo, int hi) {
    return std::uniform_int_distribution<int>(lo, hi)(engine_);
}

float TValuePool::Float(int badOneIn) {
    if (OneIn(badOneIn)) return kBadFloats[size_t(Between(0, int(kBadFloats.size()) - 1))];
    return std::uniform_real_distribution<float>(-50.0f, 150.0f)(engine_);
}

double TValuePool::Double(int badOneIn) {
    if (OneIn(badOneIn)) return kBadDoubles[size_t(Between(0, int(kBadDoubles.size()) - 1))];
    return std::uniform_real_distribution<double>(-50.0, 150.0)(engine_);
}

float TValuePool::Wave(int64_t step) const {
    return float(50.0 + 70.0 * std::sin(double(step % 6283) / 100.0));
}

int TValuePool::Int() {
    if (OneIn(10)) return kBadInts[size_t(Between(0, int(kBadInts.size()) - 1))];
    return Between(-20, 1200);
}

unsigned TValuePool::UInt() {
    if (OneIn(10)) return OneIn(2) ? UINT_MAX : 0u;
    return unsigned(Between(0, 5000));
}

float TValuePool::RangeEnd() {
    return kRangeEnds[size_t(Between(0, int(kRangeEnds.size()) - 1))];
}

QString TValuePool::Text() {
    const QStringList& from = moderate_ ? shortTexts_ : texts_;
    return from[Between(0, int(from.size()) - 1)];
}

QColor TValuePool::Color() {
    if (OneIn(10)) return QColor();  // invalid
    return QColor::fromRgb(Between(0, 255), Between(0, 255), Between(0, 255), Between(0, 255));
}

int TValuePool::FontSize() {
    if (moderate_) return Between(6, 24);
    switch (Between(0, 5)) {
        case 0:
            return 1;
        case 1:
            return 500;
        default:
            return Between(6, 24);
    }
}

}  // namespace kxsoak
