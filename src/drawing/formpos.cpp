#include "kx/drawing/formpos.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLockFile>
#include <QScreen>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>
#include <QWidget>
#include <QtEndian>
#include <algorithm>
#include <cstdint>
#include <limits>

#include "kx/host/safefile.h"

namespace kx {
namespace {

constexpr int kLockWaitMs = 5000;

TFormPosSettingsFactory& settingsFactory() {
    static TFormPosSettingsFactory factory;
    return factory;
}

std::unique_ptr<QSettings> OpenStore() {
    if (settingsFactory()) return settingsFactory()();
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(QStringLiteral("HKEY_CURRENT_USER"),
                                       QSettings::NativeFormat);
#else
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QStringLiteral("Kexano VCL"), QStringLiteral("Data"));
#endif
}

QString PositionKey(const QWidget& form) {
    return QStringLiteral("SOFTWARE/Kexano VCL/Data/") +
           QString::fromLatin1(form.metaObject()->className()) + QStringLiteral("/Position");
}

bool IsIniFile(const QSettings& store) {
#if defined(Q_OS_WIN) || defined(Q_OS_DARWIN)
    return store.format() == QSettings::IniFormat;
#else
    return store.format() == QSettings::IniFormat || store.format() == QSettings::NativeFormat;
#endif
}

QVariantMap AllValues(const QSettings& settings) {
    QVariantMap values;
    for (const QString& key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

// QSettings (Qt 6.4) renames a truncated file over the store when the disk fills during its
// write, and reports no error. So QSettings encodes the store into a scratch file, which is
// read back under a new name (QSettings caches the files it wrote) and compared; only then
// does the complete file replace the store, crash-safely. The lock is the one QSettings takes.
int SaveIntoIniFile(const QString& file, const QString& key, const QByteArray& value) {
    const QTemporaryDir scratch;
    QLockFile lock(file + QStringLiteral(".lock"));
    if (!scratch.isValid() || !QDir().mkpath(QFileInfo(file).absolutePath()) ||
        !lock.tryLock(kLockWaitMs))
        return QSettings::AccessError;
    QVariantMap wanted;
    {
        const QSettings current(file, QSettings::IniFormat);
        if (current.status() != QSettings::NoError) return current.status();
        wanted = AllValues(current);
    }
    wanted.insert(key, value);
    const QString written = scratch.filePath(QStringLiteral("written.ini"));
    const QString reread = scratch.filePath(QStringLiteral("reread.ini"));
    {
        QSettings encoder(written, QSettings::IniFormat);
        for (auto it = wanted.cbegin(); it != wanted.cend(); ++it)
            encoder.setValue(it.key(), it.value());
        encoder.sync();
        if (encoder.status() != QSettings::NoError) return encoder.status();
    }
    if (!QFile::rename(written, reread)) return QSettings::AccessError;
    if (AllValues(QSettings(reread, QSettings::IniFormat)) != wanted) return QSettings::AccessError;
    QFile encoded(reread);
    if (!encoded.open(QIODevice::ReadOnly)) return QSettings::AccessError;
    const QByteArray bytes = encoded.readAll();
    return KxReplaceFile(file, bytes.constData(), static_cast<size_t>(bytes.size())) == 0
               ? QSettings::NoError
               : QSettings::AccessError;
}

// The classic rule on one axis: the far edge wins over the near one.
int64_t ClampAxis(int64_t x, int64_t extent, int64_t low, int64_t high) {
    if (x < low) x = low;
    if (x + extent > high) x = high - extent;
    return x;
}

int Saturate(int64_t v) {
    return static_cast<int>(
        std::clamp<int64_t>(v, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int64_t OverlapArea(int64_t left, int64_t top, int64_t w, int64_t h, const QRect& screen) {
    const int64_t l = std::max<int64_t>(left, screen.left());
    const int64_t t = std::max<int64_t>(top, screen.top());
    const int64_t r = std::min<int64_t>(left + w, int64_t(screen.left()) + screen.width());
    const int64_t b = std::min<int64_t>(top + h, int64_t(screen.top()) + screen.height());
    return r > l && b > t ? (r - l) * (b - t) : 0;
}

QPoint ClampOntoScreens(QPoint p, QSize size) {
    QList<QRect> screens;
    int primary = 0;
    const QList<QScreen*> all = QGuiApplication::screens();
    for (QScreen* s : all) {
        if (s == QGuiApplication::primaryScreen()) primary = int(screens.size());
        screens.append(s->availableGeometry());
    }
    return KxClampFormPos(p, size, screens, primary);
}

}  // namespace

QPoint KxClampFormPos(QPoint p, QSize size, const QList<QRect>& screens, int primary) {
    if (screens.isEmpty()) return p;
    const int64_t w = std::max(size.width(), 0);
    const int64_t h = std::max(size.height(), 0);
    qsizetype best = primary >= 0 && primary < screens.size() ? primary : 0;
    int64_t bestArea = 0;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const int64_t area =
            OverlapArea(p.x(), p.y(), std::max<int64_t>(w, 1), std::max<int64_t>(h, 1), screens[i]);
        if (area > bestArea) best = i, bestArea = area;
    }
    const QRect& s = screens[best];
    return QPoint(Saturate(ClampAxis(p.x(), w, s.left(), int64_t(s.left()) + s.width())),
                  Saturate(ClampAxis(p.y(), h, s.top(), int64_t(s.top()) + s.height())));
}

int KxSaveFormPos(QWidget* form) {
    if (!form) return QSettings::NoError;
    std::unique_ptr<QSettings> store = OpenStore();
    if (!store) return QSettings::AccessError;
    const QPoint p = ClampOntoScreens(form->pos(), form->frameGeometry().size());
    QByteArray bytes(8, '\0');
    qToLittleEndian<int32_t>(p.x(), bytes.data());
    qToLittleEndian<int32_t>(p.y(), bytes.data() + 4);
    if (IsIniFile(*store)) return SaveIntoIniFile(store->fileName(), PositionKey(*form), bytes);
    store->setValue(PositionKey(*form), bytes);
    store->sync();
    return store->status();
}

void KxLoadFormPos(QWidget* form) {
    if (!form) return;
    const std::unique_ptr<QSettings> store = OpenStore();
    if (!store) return;
    const QByteArray bytes = store->value(PositionKey(*form)).toByteArray();
    if (bytes.size() != 8) return;
    const QPoint stored(qFromLittleEndian<int32_t>(bytes.constData()),
                        qFromLittleEndian<int32_t>(bytes.constData() + 4));
    form->move(ClampOntoScreens(stored, form->frameGeometry().size()));
}

void SetFormPosSettingsFactory(TFormPosSettingsFactory factory) {
    settingsFactory() = std::move(factory);
}

}  // namespace kx
