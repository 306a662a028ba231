#include "kx/host/messagebox.h"

#include <gtest/gtest.h>

#include <vector>

namespace kx {
namespace {

TEST(MessageBoxTest, HookReceivesTheCallAndItsResultIsReturned) {
    std::vector<QString> seen;
    SetMessageBoxHook([&](const QString& text, const QString& caption, int flags) {
        seen = {text, caption, QString::number(flags)};
        return IDNO;
    });
    EXPECT_EQ(MessageBox(QStringLiteral("Line 1\rLine 2"), QStringLiteral("Title"), MB_YESNO),
              IDNO);
    EXPECT_EQ(seen, (std::vector<QString>{"Line 1\rLine 2", "Title", "4"}));
    SetMessageBoxHook({});
}

TEST(MessageBoxTest, WithoutADisplayTheDefaultAnswersAtOnce) {
    SetMessageBoxHook({});
    EXPECT_EQ(
        MessageBox(QStringLiteral("headless"), QStringLiteral("Test"), MB_OKCANCEL | MB_DEFBUTTON2),
        IDCANCEL);
}

TEST(MessageBoxTest, DefaultResultIsTheDefaultButton) {
    struct Case {
        int Flags;
        int Result;
    };
    for (const Case& c :
         {Case{MB_OK, IDOK}, Case{MB_OK | MB_ICONHAND, IDOK}, Case{MB_YESNO, IDYES},
          Case{MB_YESNO | MB_DEFBUTTON2, IDNO}, Case{MB_YESNOCANCEL | MB_DEFBUTTON3, IDCANCEL},
          Case{MB_ABORTRETRYIGNORE | MB_DEFBUTTON2, IDRETRY}, Case{MB_RETRYCANCEL, IDRETRY},
          Case{MB_OKCANCEL | MB_DEFBUTTON3, IDOK},  // no third button
          Case{0xF, IDOK}}) {                       // unknown button set
        EXPECT_EQ(DefaultMessageBoxResult(c.Flags), c.Result) << c.Flags;
    }
}

}  // namespace
}  // namespace kx
