// panel.ui compiled by uic (AUTOUIC) must give the same components as the same settings
// made through the documented API: same published values, same pixels.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "designer/properties.h"
#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/entry/numspin.h"
#include "kx/indicators/rmeter.h"
#include "ui_panel.h"

namespace kx {
namespace {

// panel.ui's "boiler", written as code.
std::unique_ptr<TKxRMeter> boilerInCode() {
    auto m = std::make_unique<TKx270Meter>();
    m->SetBounds(8, 8, 252, 252);
    m->SetLimitUpper(13.0f);
    m->SetValue(12.4f);
    m->SignalSettings()->SetName1(QStringLiteral("Boiler pressure"));
    m->SignalSettings()->SetValueTo(16.0f);
    m->SignalSettings()->SetValueUnit(QStringLiteral("bar"));
    m->SectorSettings()->SetSector2To(700);
    m->SectorSettings()->SetSector3Color(clFuchsia);
    m->SectorSettings()->SetSector3From(701);
    m->ArrowSettings()->SetColorBrush(clBlue);
    m->BevelInner()->Offset()->SetTop(3);
    m->BevelOuter()->SetColor(clInfoBk);
    m->BevelOuter()->SurfaceGrad()->SetStyle(gsVertical3);
    m->ScaleSettings()->Font()->SetSize(12);
    m->ScaleSettings()->SetSteps(8);
    return m;
}

// panel.ui's "flow", written as code.
std::unique_ptr<TKxRMeter> flowInCode() {
    auto m = std::make_unique<TKx120Meter>();
    m->SetBounds(270, 8, 252, 155);
    m->SetHint(QStringLiteral("Feed water"));
    m->SetHintOptions(HintOption(hoAutoHint) | HintOption(hoValue));
    m->SetValue(50.0f);
    m->SetLogScale(true);
    m->Font()->SetStyle(fsBold);
    m->SignalSettings()->SetValueFrom(1.0f);
    m->SignalSettings()->SetValueTo(1000.0f);
    m->MinMax()->SetMaxColor(clGreen);
    m->SetOptions(kAllRMeterOptions & ~RMeterOption(opBevelOuter));
    m->FontUnit()->SetName(QStringLiteral("Times New Roman"));
    return m;
}

void finish(TKxRMeter& m) {
    m.Loaded();
    m.PaintToSurface();
}

struct TCase {
    const char* name;
    std::function<TKxRMeter*(Ui::KxPanel&)> fromUi;
    std::function<std::unique_ptr<TKxRMeter>()> inCode;
};

class UicPanel : public ::testing::TestWithParam<TCase> {};

TEST_P(UicPanel, MatchesTheSameSettingsInCode) {
    QWidget form;
    Ui::KxPanel ui;
    ui.setupUi(&form);
    TKxRMeter& loaded = *GetParam().fromUi(ui);
    std::unique_ptr<TKxRMeter> coded = GetParam().inCode();

    // Before the construction phase ends and after the first paint.
    EXPECT_EQ(test::DiffProperties(test::KxProperties(loaded), test::KxProperties(*coded)), "");
    finish(loaded);
    finish(*coded);
    EXPECT_EQ(test::DiffProperties(test::KxProperties(loaded), test::KxProperties(*coded)), "");
    EXPECT_EQ(loaded.geometry(), coded->geometry());
    EXPECT_TRUE(loaded.Surface().Image() == coded->Surface().Image());
}

INSTANTIATE_TEST_SUITE_P(
    Designer, UicPanel,
    ::testing::Values(
        TCase{"boiler", [](Ui::KxPanel& ui) -> TKxRMeter* { return ui.boiler; }, boilerInCode},
        TCase{"flow", [](Ui::KxPanel& ui) -> TKxRMeter* { return ui.flow; }, flowInCode}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(UicPanel, StoresWhatTheFileSays) {
    QWidget form;
    Ui::KxPanel ui;
    ui.setupUi(&form);
    // A system colour (transparent, index 24) and an RGB one, through the flat setters.
    EXPECT_EQ(ui.boiler->BevelOuter()->Color(), clInfoBk);
    EXPECT_EQ(ui.boiler->SectorSettings()->Sector3Color(), clFuchsia);
    EXPECT_EQ(ui.boiler->BevelInner()->Offset()->Top(), 3);
    EXPECT_EQ(ui.boiler->SignalSettings()->ValueTo(), 16.0f);
    EXPECT_EQ(ui.boiler->Value(), 12.4f);
    EXPECT_TRUE(ui.flow->LogScale());
    EXPECT_FALSE(ui.flow->Designing());
}

TEST(UicPanel, GroupsOfBinaryElementsKeepTheirSavedWords) {
    QWidget form;
    Ui::KxPanel ui;
    ui.setupUi(&form);
    // Two lamps in a group box and one beside it share the word of group 1.
    for (TKxLED* lamp : {ui.lamp0, ui.lamp1, ui.lamp2})
        EXPECT_EQ(lamp->StatusInt(), 5) << lamp->objectName().toStdString();
    EXPECT_TRUE(ui.lamp0->Checked());
    EXPECT_FALSE(ui.lamp1->Checked());
    EXPECT_TRUE(ui.lamp2->Checked());
    ui.lamp1->SetStatusInt(2);
    EXPECT_FALSE(ui.lamp2->Checked());
    // A radio group keeps its selected second bit: the mode is restored before the word.
    EXPECT_EQ(ui.modeA->Mode(), mRadioButton);
    EXPECT_EQ(ui.modeB->StatusInt(), 2);
    EXPECT_FALSE(ui.modeA->Checked());
    EXPECT_TRUE(ui.modeB->Checked());
    EXPECT_EQ(ui.modeA->Caption(), "Auto");
    // The other published properties reach their setters.
    EXPECT_TRUE(ui.lamp2->Flashing());
    EXPECT_EQ(ui.lamp2->LED_Position(), lpRight);
    EXPECT_EQ(ui.lamp2->Spacing(), 2);
    EXPECT_EQ(ui.lamp2->LED()->Shape(), sRectangle);
    EXPECT_EQ(ui.modeB->BevelWidth(), 3);
    EXPECT_EQ(ui.modeB->ColorOn(), clRed);
    EXPECT_TRUE(ui.pumpSwitch->Checked());
    EXPECT_EQ(ui.pumpSwitch->Orientation(), orHorizontal);
    EXPECT_EQ(ui.pumpSwitch->CaptionOn(), "RUN");
    EXPECT_EQ(ui.pumpSwitch->CaptionOff(), "STOP");
    EXPECT_EQ(ui.pumpSwitch->Color(), RGB(200, 200, 200));
    EXPECT_EQ(ui.pumpSwitch->Caption(), "");
}

TEST(UicPanel, ANumericSpinGetsItsLimitsBeforeItsValue) {
    QWidget form;
    Ui::KxPanel ui;
    ui.setupUi(&form);
    // 255 loaded after MaxValue 200 and eoLimitMax: limited, shown in 4 hexadecimal digits.
    EXPECT_EQ(ui.setpoint->Value(), 200.0);
    EXPECT_EQ(ui.setpoint->text(), QStringLiteral("00C8"));
    EXPECT_TRUE(ui.setpoint->AtUpperLimit());
    EXPECT_EQ(ui.setpoint->Increment(), 16.0f);
    EXPECT_FALSE(ui.setpoint->Designing());
    EXPECT_FALSE(ui.setpoint->SpinButton()->UpButton()->isEnabled());
}

}  // namespace
}  // namespace kx
