#pragma once
// Modal message box and beep behind a replaceable hook, so that library code can
// report to the user while tests and headless runs never block on a dialog.
#include <QString>
#include <cstdint>
#include <functional>

namespace kx {

// Button sets (low four bits of the flags).
constexpr int MB_OK = 0x0;
constexpr int MB_OKCANCEL = 0x1;
constexpr int MB_ABORTRETRYIGNORE = 0x2;
constexpr int MB_YESNOCANCEL = 0x3;
constexpr int MB_YESNO = 0x4;
constexpr int MB_RETRYCANCEL = 0x5;
// Icons (bits 4..7).
constexpr int MB_ICONHAND = 0x10;
constexpr int MB_ICONQUESTION = 0x20;
constexpr int MB_ICONEXCLAMATION = 0x30;
constexpr int MB_ICONASTERISK = 0x40;
// Default button (bits 8..11): the second or third button instead of the first.
constexpr int MB_DEFBUTTON2 = 0x100;
constexpr int MB_DEFBUTTON3 = 0x200;

// Results: the button that closed the box.
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

using TMessageBoxHook = std::function<int(const QString&, const QString&, int)>;

// Shows text under caption with the buttons and icon chosen by flags and returns the
// ID of the button pressed. A "\r" or "\r\n" in text starts a new line.
// The default hook shows a modal QMessageBox when a QApplication runs on a real
// display; otherwise (no application, offscreen or minimal platform) it writes
// "caption: text" to stderr and returns the default button's ID at once.
// Unknown button-set bits are treated as MB_OK.
int MessageBox(const QString& text, const QString& caption, int flags);

// Installs a hook that replaces the dialog; an empty hook restores the default.
void SetMessageBoxHook(TMessageBoxHook hook);

// Default button's ID for flags: what the box returns when the user just presses Enter.
int DefaultMessageBoxResult(int flags);

// The platform's alert sound; does nothing without a GUI application. A hook, when set,
// is called instead (tests count beeps with it; an empty hook restores the sound).
void Beep();
void SetBeepHook(std::function<void()> hook);

}  // namespace kx
