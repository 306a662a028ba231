#include "kx/framework/inisettings.h"

namespace kx {

QString TIniSettings::Path() const {
    return useAppDir_ ? KxApplicationDir() + ExtractFileName(fileName_) : fileName_;
}

void TIniSettings::fail(const QString& text) {
    lastError_ = true;
    lastErrorText_ = text;
}

void TIniSettings::Handle(bool read) {
    lastError_ = false;
    lastErrorText_.clear();
    if (fileName_.isEmpty()) fail(QStringLiteral("Invalid FileName"));
    if (section_.isEmpty()) fail(QStringLiteral("Invalid SectionName"));
    if (lastError_) return;
    const QString path = Path();
    TIniFile ini(path);
    if (ini.ReadError() != 0) {
        fail((read ? QStringLiteral("Cannot read ") : QStringLiteral("Cannot write ")) + path);
        return;
    }
    if (onHandleIni_) onHandleIni_(ini, read);
    if (!read && ini.UpdateFile() != 0) fail(QStringLiteral("Cannot write ") + path);
}

void TIniSettings::AutoHandle(bool read) {
    if (autoLoadSave_) Handle(read);
}

void TIniSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TIniSettings*>(dest);
    if (!d) assignError(dest);
    d->fileName_ = fileName_;
    d->section_ = section_;
    d->useAppDir_ = useAppDir_;
    d->autoLoadSave_ = autoLoadSave_;
}

}  // namespace kx
