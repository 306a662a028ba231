#pragma once
// Remembering a form's screen position between runs of an application.
//
// Store: one entry per form class, the value "Position" under the group
// "SOFTWARE/Kexano VCL/Data/<class name>" of a QSettings store in the user scope. On
// Windows the store is the registry root HKEY_CURRENT_USER, so the entry is the key
// HKEY_CURRENT_USER\SOFTWARE\Kexano VCL\Data\<class name>; the classic root
// HKEY_LOCAL_MACHINE is not writable for ordinary users. Elsewhere it is the native user
// settings file of organisation "Kexano VCL", application "Data" (on Linux
// ~/.config/Kexano VCL/Data.conf), which falls back to the system-wide file for reading,
// so an administrator may provide first positions.
//
// Class name: form->metaObject()->className(), with its namespace ("ui::TMainForm"). A
// form class without Q_OBJECT has the class name of its nearest base that has one, and
// shares that base's entry.
//
// Value: a QByteArray of exactly 8 bytes, the left coordinate then the top coordinate,
// each a signed 32-bit little-endian integer.
//
// Position: the form's pos() (for a window, the top-left corner of its frame) and, for
// clamping, the size of its frame. These routines are meant for top-level windows.
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <functional>
#include <memory>

class QSettings;
class QWidget;

namespace kx {

// Clamps the top-left corner p of a form of the given size onto one of the screens
// (their available geometries): the screen whose area overlaps the form's rectangle
// most (the earlier one on a tie), or screens[primary] when none overlaps (screens[0]
// when primary is out of range). A form without area is placed by its top-left pixel.
// On that screen, left..right and top..bottom (right and bottom exclusive):
//   X < left gives X = left; then X + W > right gives X = right - W;
//   the same for Y with top, bottom and H.
// A form wider (taller) than the screen therefore ends left of (above) it, which is kept,
// so that its title and left edge stay where they were. A negative width or height counts
// as 0. No screens: p comes back unchanged. Results that would leave the 32-bit range
// saturate.
QPoint KxClampFormPos(QPoint p, QSize size, const QList<QRect>& screens, int primary);

// Stores the form's position, clamped onto the application's screens, and writes the store
// out. The result is a QSettings::Status: 0 (NoError) on success, AccessError (1) when the
// store could not be written (a folder that cannot be created, a full disk, its lock held
// elsewhere for 5 s), FormatError (2) when the existing store cannot be parsed (it is then
// left alone). A null form does nothing and gives 0; a settings factory that returns no
// store gives AccessError. An INI file store (the default one outside Windows and macOS)
// is replaced crash-safely (KxReplaceFile, safefile.h) and only by a complete file that
// reads back as written: a failed save, or a crash, leaves the previous store intact.
int KxSaveFormPos(QWidget* form);

// Moves the form to its stored position, clamped onto the application's screens, so a
// position saved on a monitor that is gone comes back onto a visible one; the size is
// unchanged. A missing entry, or a value that is not exactly 8 bytes, leaves the form
// where it is (not clamped either). A null form does nothing.
void KxLoadFormPos(QWidget* form);

// Replaces the store both routines open, for tests and for applications that keep their
// own settings file; each call of KxSaveFormPos or KxLoadFormPos asks the factory for a
// fresh store and destroys it (writing it out) before returning. An empty factory restores
// the default store described above.
using TFormPosSettingsFactory = std::function<std::unique_ptr<QSettings>()>;
void SetFormPosSettingsFactory(TFormPosSettingsFactory factory);

}  // namespace kx
