#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QTemporaryDir>

#include "kx/decoration/kxlabel.h"
#include "kx/entry/numspin.h"
#include "kx/framework/spinbutton.h"
#include "kx/indicators/rmeter.h"
#include "kx/recorders/ophourcounter.h"
#include "miscpage.h"

namespace kxgallery {
namespace {

void Enter(QWidget* w, const QString& text) {
    auto* edit = static_cast<kx::TKxNumEdit*>(w);
    edit->selectAll();
    QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, text);
    QCoreApplication::sendEvent(w, &typed);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &enter);
}

void Click(QWidget* w) {
    const QPointF p(2, 2);
    QMouseEvent press(QEvent::MouseButtonPress, p, w->mapToGlobal(p), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, p, w->mapToGlobal(p), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &release);
}

TEST(MiscPage, OneValueInFourNotations) {
    MiscPage page(0.0);
    const auto& edits = page.Edits();
    for (kx::TKxNumEdit* e : edits)
        e->Loaded();
    Enter(edits[2], QStringLiteral("&101"));  // binary typed into the hexadecimal edit
    const QStringList shown = {edits[0]->text(), edits[1]->text(), edits[2]->text(),
                               edits[3]->text()};
    EXPECT_EQ(shown, (QStringList{"5.0", "5", "0005", "101"}));
}

TEST(MiscPage, TheSpinSetsTheMetersLimitAndTheButtonsCount) {
    MiscPage page(0.0);
    page.LimitSpin()->Loaded();
    EXPECT_FLOAT_EQ(page.TankMeter()->LimitUpper(), 80.0f);
    Enter(page.LimitSpin(), QStringLiteral("120"));  // beyond the spin's own limit
    EXPECT_FLOAT_EQ(page.TankMeter()->LimitUpper(), 95.0f);
    EXPECT_FALSE(page.LimitSpin()->SpinButton()->UpButton()->isEnabled());
    Click(page.CountSpin()->UpButton());
    Click(page.CountSpin()->UpButton());
    Click(page.CountSpin()->DownButton());
    Click(page.CountButton());
    EXPECT_EQ(page.Count(), 11);
    page.Step(15.0);  // a quarter of the tank's cycle: full
    EXPECT_NEAR(page.TankMeter()->Value(), 95.0f, 0.01f);
}

TEST(MiscPage, TheStateLabelCyclesThroughTheMachineStates) {
    MiscPage page(0.0);
    kx::TKxLabel* l = page.StateLabel();
    QStringList seen;
    for (int i = 0; i < 10; ++i) {
        if (!seen.contains(l->ShownText())) seen << l->ShownText();
        page.Step(3.0);
    }
    EXPECT_EQ(seen, (QStringList{"RUNNING", "FAULT", "MAINTENANCE", "STOPPED"}));
    EXPECT_EQ(l->Font()->Color(), kx::clLime);  // back to running after a full cycle
}

TEST(MiscPage, CountersGoOnWhereTheyStopped) {
    QTemporaryDir dir;
    SetGalleryOutputDir(dir.path());
    {
        MiscPage page(0.0);
        EXPECT_EQ(page.RunHours()->Hours(), 1999);  // no file yet: the page's start
        EXPECT_TRUE(page.ServiceLabel()->text().isEmpty());
        page.RunHours()->SetTime(2000, 0, 5);
        EXPECT_EQ(page.ServiceLabel()->text(), "Service due");
        page.FilterCountdown()->SetTime(0, 0, 9);
    }  // closing the page saves both counts
    MiscPage again(0.0);
    EXPECT_EQ(again.RunHours()->Text(), "2000h:00m:05s");
    EXPECT_EQ(again.ServiceLabel()->text(), "Service due");
    EXPECT_EQ(again.FilterCountdown()->Text(), "00h:00m:09s");
    EXPECT_FALSE(again.RunHours()->IniSettings()->LastError());
    SetGalleryOutputDir(QStringLiteral("out"));
}

}  // namespace
}  // namespace kxgallery
