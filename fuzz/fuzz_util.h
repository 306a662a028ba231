#pragma once
// Shared pieces of the fuzz targets: the Qt application and a temporary folder, each made
// once per process, pinned format settings, and the report of a broken invariant (printed,
// then abort(), so that libFuzzer keeps the input as a crash file).
//
// Widgets the targets reuse are function-local statics made after the application, so
// they are destroyed before it: a widget outliving QApplication keeps fontconfig patterns
// that LeakSanitizer then reports at exit.
#include <fuzzer/FuzzedDataProvider.h>

#include <QApplication>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kx/host/formatsettings.h"

namespace kx::fuzz {

// A QApplication on the offscreen platform with the classic US settings. Qt gets its own
// argument list: it would otherwise take options such as -style out of libFuzzer's.
inline void InitQt() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "kx_fuzz";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    SetFormatSettings(DefaultFormatSettings());
}

// A folder that lives as long as the process; everything a target writes goes there. It
// is on tmpfs where there is one: the crash-safe saves flush to the disk, which would
// otherwise cost milliseconds per input.
inline const QTemporaryDir& TempDir() {
    static QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                                 ? QStringLiteral("/dev/shm/kx_fuzz-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/kx_fuzz-XXXXXX"));
    if (!dir.isValid()) {
        std::fprintf(stderr, "cannot create a temporary folder\n");
        std::abort();
    }
    return dir;
}

inline bool WriteFile(const QString& name, const QByteArray& bytes) {
    QFile f(name);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

inline QByteArray ReadFile(const QString& name) {
    QFile f(name);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The value and its bit pattern, so that -0, NaN payloads and denormals show in a report.
inline QString Show(double d) {
    uint64_t bits;
    std::memcpy(&bits, &d, sizeof bits);
    return QStringLiteral("%1 (0x%2)").arg(d, 0, 'g', 17).arg(bits, 16, 16, QLatin1Char('0'));
}

inline bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline double DoubleFromBits(uint64_t bits) {
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

[[noreturn]] inline void Fail(const char* condition, const char* file, int line,
                              const QString& detail) {
    std::fprintf(stderr, "%s:%d: invariant broken: %s\n%s\n", file, line, condition,
                 qUtf8Printable(detail));
    std::fflush(stderr);
    std::abort();
}

}  // namespace kx::fuzz

// Checks an invariant; detail (a QString) is built only when it fails.
#define KX_FUZZ_CHECK(condition, detail)                                              \
    do {                                                                              \
        if (!(condition)) ::kx::fuzz::Fail(#condition, __FILE__, __LINE__, (detail)); \
    } while (false)
