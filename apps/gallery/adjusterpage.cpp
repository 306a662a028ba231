#include "adjusterpage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>
#include <functional>

#include "kx/adjusters/dial.h"
#include "kx/adjusters/geardial.h"
#include "kx/adjusters/slider.h"
#include "kx/indicators/barinstrument.h"
#include "kx/indicators/linearmeter.h"
#include "kx/indicators/rmeter.h"
#include "plantcolors.h"

namespace kxgallery {
namespace {

using namespace kx;

struct Pair {
    QString title;
    QString name, unit;
    float from, to, start;
    std::function<TKxAnalogCControl*()> adjuster;
    std::function<TKxAnalogGControl*()> indicator;
};

TKxDial* dial(TKxDial::TDialPointer pointer, int steps = 0) {
    auto* d = new TKxDial;
    d->SetBounds(0, 0, 150, 200);
    d->SetPointerType(pointer);
    if (steps > 0) d->ScaleSettings()->SetSteps(steps);
    return d;
}

void sectors(TSectorSettings& s) {
    s.SetSector1From(0), s.SetSector1To(150), s.SetSector1Color(kCold);
    s.SetSector2From(151), s.SetSector2To(850), s.SetSector2Color(kNormal);
    s.SetSector3From(851), s.SetSector3To(1000), s.SetSector3Color(kAlarm);
}

}  // namespace

AdjusterPage::AdjusterPage(QWidget* parent) : GalleryPage(PalettePageNames().at(2), parent) {
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(12);
    const std::vector<Pair> pairs = {
        {"Setpoint dial and round meter", "Boiler setpoint", "bar", 0.0f, 16.0f, 11.5f,
         [] { return dial(TKxDial::dpRound, 8); },
         [] {
             auto* m = new TKx270Meter;
             m->ScaleSettings()->SetSteps(8);
             sectors(*m->SectorSettings());
             return m;
         }},
        {"Line mark and upright bar", "Feed flow", "%", 0.0f, 100.0f, 62.0f,
         [] { return dial(TKxDial::dpLine); },
         [] {
             auto* b = new TKxVBar;
             b->SetBounds(0, 0, 90, 200);
             return b;
         }},
        {"Triangle mark and linear meter", "Damper", "deg", -50.0f, 50.0f, 12.0f,
         [] { return dial(TKxDial::dpTriangle); }, [] { return new TKxHMeter; }},
        {"Gear dial for fine setting, ten turns", "Heater power", "kW", 0.0f, 100.0f, 42.5f,
         [] {
             auto* g = new TKxGearDial;
             g->SetBounds(0, 0, 150, 200);
             g->SignalSettings()->SetDigitalTo(1000);
             return g;
         },
         [] {
             auto* m = new TKx180Meter;
             sectors(*m->SectorSettings());
             return m;
         }},
        {"Horizontal slider and bar", "Pump speed", "rpm", 0.0f, 3000.0f, 1450.0f,
         [] {
             auto* h = new TKxHSlider;
             h->SetBounds(0, 0, 260, 128);
             h->SetChangeLarge(100);
             h->SignalSettings()->SetDigitalTo(3000);
             sectors(*h->SectorSettings());
             return h;
         },
         [] {
             auto* b = new TKxHBar;
             b->SetBounds(0, 0, 200, 90);
             return b;
         }},
        {"Vertical slider and upright meter", "Level setpoint", "m", 0.0f, 10.0f, 6.2f,
         [] {
             auto* v = new TKxVSlider;
             v->SetBounds(0, 0, 112, 240);
             sectors(*v->SectorSettings());
             return v;
         },
         [] { return new TKxVMeter; }},
    };
    for (size_t i = 0; i < pairs.size(); ++i) {
        const Pair& p = pairs[i];
        auto* box = new QGroupBox(p.title);
        auto* row = new QGridLayout(box);
        TKxAnalogCControl* adjuster = p.adjuster();
        adjuster->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        TSignalSettings& sig = *adjuster->SignalSettings();
        sig.SetName1(p.name);
        sig.SetName2(QStringLiteral("setpoint"));
        sig.SetValueUnit(p.unit);
        sig.SetValueFrom(p.from);
        sig.SetValueTo(p.to);
        adjuster->SetValue(p.start);
        TKxAnalogGControl* indicator = p.indicator();
        indicator->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        adjuster->SetValueIndicator(indicator);
        auto* report = new QLabel(QStringLiteral("Drag, scroll or use the keys"));
        report->setObjectName(QStringLiteral("hintText"));
        connect(adjuster, &TKxAnalogCControl::OnValueChanged, report, [adjuster, report] {
            report->setText(
                QStringLiteral("Set to %1 %2")
                    .arg(adjuster->ValueText(), adjuster->SignalSettings()->ValueUnit()));
        });
        row->addWidget(adjuster, 0, 0, Qt::AlignTop);
        row->addWidget(indicator, 0, 1, Qt::AlignTop);
        row->addWidget(report, 1, 0, 1, 2);
        grid->addWidget(box, int(i / 2), int(i % 2));
        adjusters_.push_back(adjuster);
        indicators_.push_back(indicator);
        reports_.push_back(report);
    }
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
}

QString AdjusterPage::Report(int i) const {
    return reports_.at(size_t(i))->text();
}

}  // namespace kxgallery
