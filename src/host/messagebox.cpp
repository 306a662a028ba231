#include "kx/host/messagebox.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>
#include <vector>

namespace kx {
namespace {

struct TButtonSpec {
    QMessageBox::StandardButton Button;
    int Id;
};

std::vector<TButtonSpec> ButtonsFor(int flags) {
    switch (flags & 0xF) {
        case MB_OKCANCEL:
            return {{QMessageBox::Ok, IDOK}, {QMessageBox::Cancel, IDCANCEL}};
        case MB_ABORTRETRYIGNORE:
            return {{QMessageBox::Abort, IDABORT},
                    {QMessageBox::Retry, IDRETRY},
                    {QMessageBox::Ignore, IDIGNORE}};
        case MB_YESNOCANCEL:
            return {{QMessageBox::Yes, IDYES},
                    {QMessageBox::No, IDNO},
                    {QMessageBox::Cancel, IDCANCEL}};
        case MB_YESNO:
            return {{QMessageBox::Yes, IDYES}, {QMessageBox::No, IDNO}};
        case MB_RETRYCANCEL:
            return {{QMessageBox::Retry, IDRETRY}, {QMessageBox::Cancel, IDCANCEL}};
        default:
            return {{QMessageBox::Ok, IDOK}};
    }
}

size_t DefaultIndex(int flags, size_t count) {
    size_t index = static_cast<size_t>((flags >> 8) & 0xF);
    return index < count ? index : 0;
}

QMessageBox::Icon IconFor(int flags) {
    switch (flags & 0xF0) {
        case MB_ICONHAND:
            return QMessageBox::Critical;
        case MB_ICONQUESTION:
            return QMessageBox::Question;
        case MB_ICONEXCLAMATION:
            return QMessageBox::Warning;
        case MB_ICONASTERISK:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

QString WithNewlines(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

bool HasRealDisplay() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int ShowDialog(const QString& text, const QString& caption, int flags) {
    const std::vector<TButtonSpec> buttons = ButtonsFor(flags);
    QMessageBox box(IconFor(flags), caption, WithNewlines(text));
    for (const TButtonSpec& b : buttons)
        box.addButton(b.Button);
    box.setDefaultButton(buttons[DefaultIndex(flags, buttons.size())].Button);
    const int pressed = box.exec();
    for (const TButtonSpec& b : buttons)
        if (pressed == b.Button) return b.Id;
    // Closed without a button: Cancel where there is one, else the only button (OK).
    for (const TButtonSpec& b : buttons)
        if (b.Id == IDCANCEL) return IDCANCEL;
    return buttons.front().Id;
}

int DefaultHook(const QString& text, const QString& caption, int flags) {
    if (HasRealDisplay()) return ShowDialog(text, caption, flags);
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(caption), qUtf8Printable(WithNewlines(text)));
    return DefaultMessageBoxResult(flags);
}

TMessageBoxHook& InstalledHook() {
    static TMessageBoxHook hook;
    return hook;
}

}  // namespace

int DefaultMessageBoxResult(int flags) {
    const std::vector<TButtonSpec> buttons = ButtonsFor(flags);
    return buttons[DefaultIndex(flags, buttons.size())].Id;
}

int MessageBox(const QString& text, const QString& caption, int flags) {
    // Copy first: a hook may replace itself while it runs.
    const TMessageBoxHook hook = InstalledHook();
    return hook ? hook(text, caption, flags) : DefaultHook(text, caption, flags);
}

void SetMessageBoxHook(TMessageBoxHook hook) {
    InstalledHook() = std::move(hook);
}

namespace {
std::function<void()>& beepHook() {
    static std::function<void()> hook;
    return hook;
}
}  // namespace

void Beep() {
    if (const std::function<void()> hook = beepHook()) {
        hook();
        return;
    }
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) QApplication::beep();
}

void SetBeepHook(std::function<void()> hook) {
    beepHook() = std::move(hook);
}

}  // namespace kx
