#pragma once
// TIniSettings: the INI-file persistence a component embeds. It knows nothing of what is
// stored: Handle checks the names, opens the file, hands it to the owner's callback with
// the direction (read or write) and, after a write, saves it.
//
// Handle(Read):
//  1. LastError false, LastErrorText empty.
//  2. An empty FileName: LastError, "Invalid FileName"; an empty Section: LastError,
//     "Invalid SectionName" (when both are empty this second text remains).
//  3. The path: with UseAppDir the application directory (KxApplicationDir) followed by
//     the file-name part of FileName ("/" and "\" both separate); otherwise FileName.
//  4. Without an error: the file is read (TIniFile), OnHandleIniEvent(ini, Read) runs,
//     and after a write the file is saved.
// Failures are reported, never thrown: a file that exists but cannot be read gives
// LastError and "Cannot read <path>" and the callback does not run (so a count is not
// reset to the defaults of a file that is only unreadable for now, nor written over it);
// a failed save gives LastError and "Cannot write <path>". A missing file reads as empty.
// The save is crash-safe: the file is replaced only when the new one is complete on the
// disk, so a crash or a full disk leaves the previous file readable.
#include <QObject>
#include <QString>
#include <functional>

#include "kx/framework/persistent.h"
#include "kx/host/inifile.h"

namespace kx {

// The owner's load or save routine: Read true loads, false saves.
using THandleIniEvent = std::function<void(TIniFile& ini, bool read)>;

class TIniSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(QString FileName READ FileName WRITE SetFileName)
    Q_PROPERTY(QString Section READ Section WRITE SetSection)
    Q_PROPERTY(bool UseAppDir READ UseAppDir WRITE SetUseAppDir)
    Q_PROPERTY(bool AutoLoadSave READ AutoLoadSave WRITE SetAutoLoadSave)
  public:
    explicit TIniSettings(QObject* parent = nullptr) : TKxPersistent(parent) {}

    const QString& FileName() const { return fileName_; }
    void SetFileName(const QString& v) { fileName_ = v; }
    const QString& Section() const { return section_; }
    void SetSection(const QString& v) { section_ = v; }
    bool UseAppDir() const { return useAppDir_; }
    void SetUseAppDir(bool v) { useAppDir_ = v; }
    bool AutoLoadSave() const { return autoLoadSave_; }
    void SetAutoLoadSave(bool v) { autoLoadSave_ = v; }
    const THandleIniEvent& OnHandleIniEvent() const { return onHandleIni_; }
    void SetOnHandleIniEvent(THandleIniEvent handler) { onHandleIni_ = std::move(handler); }

    bool LastError() const { return lastError_; }
    const QString& LastErrorText() const { return lastErrorText_; }

    // The file Handle opens (see step 3).
    QString Path() const;
    void Handle(bool read);
    // Handle(read) when AutoLoadSave is set; otherwise nothing, not even a reset of the
    // error state of the previous call.
    void AutoHandle(bool read);

    // All four published properties (the callback stays).
    void AssignTo(TKxPersistent* dest) const override;

  private:
    void fail(const QString& text);

    QString fileName_;
    QString section_;
    bool useAppDir_ = true;
    bool autoLoadSave_ = false;
    THandleIniEvent onHandleIni_;
    bool lastError_ = false;
    QString lastErrorText_;
};

// The flat properties of a TIniSettings (see flatproperty.h).
#define KX_FLAT_INISETTINGS(Prefix, Object)               \
    KX_FLAT(QString, Prefix##_FileName, Object, FileName) \
    KX_FLAT(QString, Prefix##_Section, Object, Section)   \
    KX_FLAT(bool, Prefix##_UseAppDir, Object, UseAppDir)  \
    KX_FLAT(bool, Prefix##_AutoLoadSave, Object, AutoLoadSave)

}  // namespace kx
