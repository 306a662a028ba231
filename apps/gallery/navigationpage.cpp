#include "navigationpage.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <cmath>
#include <numbers>

#include "kx/indicators/tank.h"
#include "kx/indicators/thermometer.h"
#include "kx/indicators/valueind.h"
#include "kx/navigation/compass.h"
#include "kx/navigation/vcind.h"
#include "metercard.h"
#include "plantcolors.h"

namespace kxgallery {
namespace {

using kx::TKxAnalogGControl;

double wave(double t, double period, double phase = 0.0) {
    return std::sin(2.0 * std::numbers::pi * t / period + phase);
}

void signal(TKxAnalogGControl& c, const QString& name1, const QString& name2, const QString& unit,
            float from, float to, const QString& format) {
    kx::TSignalSettings& s = *c.SignalSettings();
    s.SetName1(name1);
    s.SetName2(name2);
    s.SetValueUnit(unit);
    s.SetValueFrom(from);
    s.SetValueTo(to);
    s.SetValueFormat(format);
}

void sectors(TKxAnalogGControl& c, std::array<int32_t, 6> bounds,
             std::array<kx::TColor, 3> colors) {
    kx::TSectorSettings& s = *c.SectorSettings();
    s.SetSector1From(bounds[0]), s.SetSector1To(bounds[1]), s.SetSector1Color(colors[0]);
    s.SetSector2From(bounds[2]), s.SetSector2To(bounds[3]), s.SetSector2Color(colors[1]);
    s.SetSector3From(bounds[4]), s.SetSector3To(bounds[5]), s.SetSector3Color(colors[2]);
}

// A heading that swings through north: from about 330 over 0 to about 30 and back.
double swingThroughNorth(double t) {
    return 28.0 * wave(t, 36.0) + 9.0 * wave(t, 9.5, 0.8);
}

}  // namespace

struct NavigationPage::Preset {
    QString title;
    QStringList details;
    std::function<TKxAnalogGControl*()> make;
    Motion motion;
};

NavigationPage::NavigationPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(1), parent), time_(startTime) {
    SetSection(QStringLiteral("Readouts, vessels and navigation"), QStringLiteral("-navigation"));
    auto* content = new QWidget;
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins(12, 12, 12, 12);
    rows->setSpacing(10);
    SetScrollContent(content);

    using namespace kx;
    const std::vector<std::vector<Preset>> presetRows = {
        {
            {QStringLiteral("TKxValueInd"),
             {QStringLiteral("sector colour, blinks beyond the range")},
             [] {
                 auto* v = new TKxValueInd;
                 signal(*v, "Steam flow", "FT-101", "t/h", 0, 60, "#0.0");
                 sectors(*v, {0, 150, 151, 850, 851, 1000}, {kCold, kNormal, kAlarm});
                 v->SetOptions(TKxValueInd::kAllValueIndOptions);
                 return v;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(34.0 + 22.0 * wave(t, 23.0) + 1.5 * wave(t, 2.3)));
             }},
            {QStringLiteral("TKxValueInd"),
             {QStringLiteral("defaults, negative range")},
             [] {
                 auto* v = new TKxValueInd;
                 signal(*v, "Suction", "PT-7", "mbar", -500, 0, "##0");
                 return v;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(-250.0 + 180.0 * wave(t, 17.0, 1.0)));
             }},
            {QStringLiteral("TKxThermometer"),
             {QStringLiteral("defaults")},
             [] {
                 auto* m = new TKxThermometer;
                 signal(*m, "Flue gas", "TT-4", "\u00B0C", 0, 300, "##0");
                 m->ScaleSettings()->Font()->SetSize(10);
                 return m;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(180.0 + 70.0 * wave(t, 31.0) + 4.0 * wave(t, 3.1)));
             }},
            {QStringLiteral("TKxThermometer"),
             {QStringLiteral("sector colours, labels left,"), QStringLiteral("below freezing")},
             [] {
                 auto* m = new TKxThermometer;
                 signal(*m, "Outside", "TT-1", "\u00B0C", -30, 40, "##0");
                 sectors(*m, {0, 428, 429, 857, 858, 1000}, {kCold, kNormal, kAlarm});
                 m->SetOptions(TKxThermometer::kAllThermometerOptions);
                 m->ScaleSettings()->SetPosLeftTop(true);
                 m->ScaleSettings()->SetSteps(7);  // ten degrees a step
                 m->ScaleSettings()->Font()->SetSize(10);
                 return m;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(5.0 + 30.0 * wave(t, 41.0, 2.0)));
             }},
            {QStringLiteral("TKxTank"),
             {QStringLiteral("cylinder filling and emptying,"),
              QStringLiteral("overflows at the top")},
             [] {
                 auto* k = new TKxTank;
                 signal(*k, "Feed water", "LT-2", "m\u00B3", 0, 40, "#0.0");
                 k->ValInd()->SetFormatStr(QStringLiteral("#0.0"));
                 return k;
             },
             [](TKxAnalogGControl& c, double t) {
                 // A slow fill and drain that spills over now and then.
                 c.SetValue(float(20.0 + 20.8 * wave(t, 48.0, 0.5)));
             }},
        },
        {
            {QStringLiteral("TKxTank"),
             {QStringLiteral("rectangular, sector colours")},
             [] {
                 auto* k = new TKxTank;
                 signal(*k, "Sludge", "LT-9", "%", 0, 100, "##0");
                 sectors(*k, {0, 100, 101, 800, 801, 1000}, {kWarning, kNormal, kAlarm});
                 k->SetTankShape(TKxTank::tsRectangular);
                 k->SetOptions(TKxTank::kAllTankOptions);
                 k->SetLiquidColor(RGB(120, 96, 60));
                 return k;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(50.0 + 42.0 * wave(t, 63.0, 2.5)));
             }},
            {QStringLiteral("TKxCompass"),
             {QStringLiteral("heading pointer, course 010\u00B0"),
              QStringLiteral("swings through north")},
             [] {
                 auto* k = new TKxCompass;
                 k->SetCourse(10.0f);
                 return k;
             },
             [](TKxAnalogGControl& c, double t) { c.SetValue(float(swingThroughNorth(t))); }},
            {QStringLiteral("TKxCompass"),
             {QStringLiteral("rotating card, intercardinals"),
              QStringLiteral("a ship turning to 120\u00B0")},
             [] {
                 auto* k = new TKxCompass;
                 k->SetOptions(TKxCompass::kDefaultOptions |
                               TKxCompass::CompassOption(TKxCompass::opRotatingCard) |
                               TKxCompass::CompassOption(TKxCompass::opIntercardinal));
                 k->SetCourse(120.0f);
                 return k;
             },
             [](TKxAnalogGControl& c, double t) {
                 c.SetValue(float(60.0 + 70.0 * wave(t, 52.0, 0.4)));
             }},
            {QStringLiteral("TKxVCInd"),
             {QStringLiteral("rolling and pitching vehicle,"),
              QStringLiteral("course and deviation")},
             [] {
                 auto* v = new TKxVCInd;
                 v->SignalSettings()->SetName1(QStringLiteral("Attitude"));
                 v->SignalSettings()->SetName2(QStringLiteral("ADI-1"));
                 return v;
             },
             [](TKxAnalogGControl& c, double t) {
                 auto& v = static_cast<TKxVCInd&>(c);
                 v.SetAttitude(float(9.0 * wave(t, 11.0, 0.7) + 2.0 * wave(t, 2.9)),
                               float(32.0 * wave(t, 9.0) + 4.0 * wave(t, 2.3, 1.2)));
                 v.SetCourse(float(swingThroughNorth(t + 5.0)));
                 v.SetDeviation(float(1.7 * wave(t, 17.0, 0.3) + 0.6 * wave(t, 4.1)));
             }},
        },
    };
    for (const std::vector<Preset>& presets : presetRows) {
        auto* row = new QHBoxLayout;
        row->setSpacing(10);
        rows->addLayout(row);
        for (const Preset& p : presets)
            add(p, *row);
        row->addStretch(1);
    }
    rows->addStretch(1);
}

void NavigationPage::add(const Preset& preset, QHBoxLayout& row) {
    TKxAnalogGControl* control = preset.make();
    // Alarms at the range ends, so that the blinking shows the overflow; a compass has no
    // range to leave.
    if (!qobject_cast<kx::TKxCompass*>(control)) {
        control->SetLimitUpper(control->SignalSettings()->ValueTo());
        control->SetLimitLower(control->SignalSettings()->ValueFrom());
    }
    control->Loaded();
    auto* card = new MeterCard(control);
    card->SetCaption(preset.title, preset.details);
    row.addWidget(card);
    channels_.push_back(Channel{control, card, preset.motion});
    preset.motion(*control, time_);
}

void NavigationPage::Step(double seconds) {
    time_ += std::max(0.0, seconds);
    for (Channel& c : channels_)
        c.motion(*c.control, time_);
}

}  // namespace kxgallery
