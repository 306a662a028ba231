#include "meterpresets.h"

#include <QWidget>

#include "kx/indicators/rmeter.h"
#include "plantcolors.h"

namespace kxgallery {
namespace {

using kx::RGB;
using kx::TColor;

constexpr TColor kNeedleDark = RGB(40, 44, 52);
constexpr TColor kNeedleOrange = RGB(255, 140, 0);

ProcessProfile profile(double base, Wave a, Wave b, Wave c, double noise, Surge surge) {
    return ProcessProfile{base, {a, b, c}, noise, surge};
}

std::vector<MeterPreset> makeMeters() {
    std::vector<MeterPreset> m;
    {
        MeterPreset p;
        p.kind = MeterKind::k120;
        p.name1 = QStringLiteral("Flow");
        p.name2 = QStringLiteral("FT-201");
        p.unit = QStringLiteral("m\u00B3/h");
        p.valueFormat = QStringLiteral("##0");
        p.from = 0.0f;
        p.to = 250.0f;
        p.limitLower = 40.0f;
        p.limitUpper = 215.0f;
        p.sectors = {{{0, 160, kWarning}, {160, 860, kNormal}, {860, 1000, kAlarm}}};
        p.shape = 1;
        p.process = profile(0.55, {0.28, 11.0, 0.4}, {0.10, 4.3, 1.9}, {0.04, 1.7, 0.3}, 0.012,
                            {0.30, 47.0, 0.0});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k180;
        p.name1 = QStringLiteral("Boiler pressure");
        p.name2 = QStringLiteral("PT-101");
        p.unit = QStringLiteral("bar");
        p.valueFormat = QStringLiteral("#0.0");
        p.from = 0.0f;
        p.to = 16.0f;
        p.limitLower = 2.0f;
        p.limitUpper = 13.0f;
        p.sectors = {{{0, 125, kWarning}, {125, 750, kNormal}, {750, 1000, kAlarm}}};
        p.sectorOffset = -8;
        p.shape = 2;
        p.steps = 8;
        p.needleColor = kNeedleDark;
        p.process = profile(0.66, {0.30, 9.0, 2.2}, {0.12, 3.7, 0.9}, {0.05, 1.3, 0.0}, 0.010,
                            {-0.35, 61.0, 1.0});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k120;
        p.name1 = QStringLiteral("Filter \u0394p");
        p.name2 = QStringLiteral("PDT-305");
        p.unit = QStringLiteral("mbar");
        p.valueFormat = QStringLiteral("#0.0");
        p.from = 0.0f;
        p.to = 60.0f;
        p.limitLower = 3.0f;
        p.limitUpper = 45.0f;
        p.sectors = {{{0, 600, kNormal}, {600, 800, kWarning}, {800, 1000, kAlarm}}};
        p.sectorOffset = -6;
        p.shape = 6;
        p.steps = 6;
        p.needleColor = kNeedleOrange;
        p.process = profile(0.45, {0.30, 14.0, 4.0}, {0.10, 5.9, 0.2}, {0.05, 2.3, 1.0}, 0.010,
                            {0.30, 53.0, 2.0});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k270;
        p.name1 = QStringLiteral("Temperature");
        p.name2 = QStringLiteral("TT-110");
        p.unit = QStringLiteral("\u00B0C");
        p.valueFormat = QStringLiteral("##0");
        p.from = 0.0f;
        p.to = 400.0f;
        p.limitLower = 40.0f;
        p.limitUpper = 340.0f;
        p.sectors = {{{0, 150, kCold}, {150, 800, kNormal}, {800, 1000, kAlarm}}};
        p.shape = 0;
        p.steps = 8;
        p.process = profile(0.50, {0.32, 13.0, 1.0}, {0.14, 6.1, 2.5}, {0.04, 2.9, 0.7}, 0.008,
                            {-0.30, 71.0, 0.5});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k270;
        p.name1 = QStringLiteral("Vacuum");
        p.name2 = QStringLiteral("PT-420");
        p.unit = QStringLiteral("mbar");
        p.valueFormat = QStringLiteral("0.0e-0");
        p.from = 1.0f;
        p.to = 10000.0f;
        p.logarithmic = true;
        p.limitLower = 2.0f;
        p.limitUpper = 3000.0f;
        p.sectors = {{{0, 250, kNormal}, {250, 750, kWarning}, {750, 1000, kAlarm}}};
        p.sectorOffset = -8;
        p.shape = 3;
        p.needleColor = kNeedleDark;
        p.process = profile(0.42, {0.30, 12.0, 5.1}, {0.12, 4.9, 3.3}, {0.05, 1.9, 2.0}, 0.010,
                            {0.40, 59.0, 1.5});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k270;
        p.name1 = QStringLiteral("Level");
        p.name2 = QStringLiteral("LT-230");
        p.unit = QStringLiteral("%");
        p.valueFormat = QStringLiteral("##0");
        p.from = 0.0f;
        p.to = 100.0f;
        p.limitLower = 10.0f;
        p.limitUpper = 90.0f;
        p.sectors = {{{0, 100, kAlarm}, {100, 900, kNormal}, {900, 1000, kAlarm}}};
        p.sectorWidthOffset = 3;
        p.shape = 4;
        p.process = profile(0.50, {0.36, 16.0, 0.0}, {0.10, 7.3, 1.4}, {0.03, 2.6, 0.5}, 0.006,
                            {0.22, 43.0, 3.0});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k180;
        p.name1 = QStringLiteral("Pump speed");
        p.name2 = QStringLiteral("SE-501");
        p.unit = QStringLiteral("rpm");
        p.valueFormat = QStringLiteral("###0");
        p.from = 0.0f;
        p.to = 3000.0f;
        p.limitLower = 300.0f;
        p.limitUpper = 2700.0f;
        p.sectors = {{{0, 100, kWarning}, {100, 900, kNormal}, {900, 1000, kAlarm}}};
        p.shape = 5;
        p.steps = 3;
        p.needleColor = kNeedleOrange;
        p.process = profile(0.60, {0.25, 10.0, 3.0}, {0.10, 4.1, 0.6}, {0.04, 1.5, 1.2}, 0.010,
                            {-0.45, 67.0, 0.0});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k120;
        p.name1 = QStringLiteral("Motor current");
        p.name2 = QStringLiteral("IT-502");
        p.unit = QStringLiteral("A");
        p.valueFormat = QStringLiteral("#0.0");
        p.from = 0.0f;
        p.to = 40.0f;
        p.limitLower = 4.0f;
        p.limitUpper = 32.0f;
        p.sectors = {{{0, 700, kNormal}, {700, 800, kWarning}, {800, 1000, kAlarm}}};
        p.sectorOffset = -8;
        p.shape = 7;
        p.steps = 4;
        p.process = profile(0.55, {0.30, 8.0, 1.7}, {0.12, 3.3, 2.8}, {0.05, 1.1, 0.4}, 0.012,
                            {0.22, 37.0, 2.5});
        m.push_back(p);
    }
    {
        MeterPreset p;
        p.kind = MeterKind::k180;
        p.name1 = QStringLiteral("Flue gas O\u2082");
        p.name2 = QStringLiteral("AT-601");
        p.unit = QStringLiteral("%");
        p.valueFormat = QStringLiteral("#0.0");
        p.from = 0.0f;
        p.to = 25.0f;
        p.limitLower = 2.0f;
        p.limitUpper = 12.0f;
        p.sectors = {{{0, 80, kAlarm}, {80, 480, kNormal}, {480, 1000, kWarning}}};
        p.shape = 1;
        p.needleColor = kNeedleDark;
        p.process = profile(0.30, {0.18, 15.0, 0.9}, {0.08, 6.7, 4.4}, {0.03, 2.2, 1.6}, 0.008,
                            {0.60, 51.0, 1.0});
        m.push_back(p);
    }
    return m;
}

kx::TKxRMeter* newMeter(MeterKind kind, QWidget* parent) {
    switch (kind) {
        case MeterKind::k120:
            return new kx::TKx120Meter(parent);
        case MeterKind::k180:
            return new kx::TKx180Meter(parent);
        case MeterKind::k270:
            break;
    }
    return new kx::TKx270Meter(parent);
}

}  // namespace

const std::vector<MeterPreset>& GalleryMeters() {
    static const std::vector<MeterPreset> meters = makeMeters();
    return meters;
}

int32_t LogSwitchMeter() {
    return 4;
}

int32_t ManualMeter() {
    return 1;
}

QString MeterClassName(MeterKind kind) {
    switch (kind) {
        case MeterKind::k120:
            return QStringLiteral("TKx120Meter");
        case MeterKind::k180:
            return QStringLiteral("TKx180Meter");
        case MeterKind::k270:
            break;
    }
    return QStringLiteral("TKx270Meter");
}

kx::TKxRMeter* CreateMeter(const MeterPreset& preset, double fraction, QWidget* parent) {
    kx::TKxRMeter* meter = newMeter(preset.kind, parent);
    kx::TSignalSettings* signal = meter->SignalSettings();
    signal->SetName1(preset.name1);
    signal->SetName2(preset.name2);
    signal->SetValueUnit(preset.unit);
    signal->SetValueFormat(preset.valueFormat);
    // The end first: a start equal to the current end would be refused.
    signal->SetValueTo(preset.to);
    signal->SetValueFrom(preset.from);
    meter->SetLogScale(preset.logarithmic);

    kx::TSectorSettings* sectors = meter->SectorSettings();
    sectors->SetSector1From(preset.sectors[0].from);
    sectors->SetSector1To(preset.sectors[0].to);
    sectors->SetSector1Color(preset.sectors[0].color);
    sectors->SetSector2From(preset.sectors[1].from);
    sectors->SetSector2To(preset.sectors[1].to);
    sectors->SetSector2Color(preset.sectors[1].color);
    sectors->SetSector3From(preset.sectors[2].from);
    sectors->SetSector3To(preset.sectors[2].to);
    sectors->SetSector3Color(preset.sectors[2].color);
    sectors->SetOffset(preset.sectorOffset);
    sectors->SetWidthOffset(preset.sectorWidthOffset);

    meter->ArrowSettings()->SetShape(preset.shape);
    meter->ArrowSettings()->SetColorBrush(preset.needleColor);
    if (preset.steps > 0) meter->ScaleSettings()->SetSteps(preset.steps);
    meter->ScaleSettings()->Font()->SetSize(preset.scaleFontSize);
    meter->SetLimitUpper(preset.limitUpper);
    meter->SetLimitLower(preset.limitLower);
    meter->SetValue(float(ValueAt(fraction, preset.from, preset.to, preset.logarithmic)));
    meter->Loaded();
    meter->CalcSize();
    return meter;
}

}  // namespace kxgallery
