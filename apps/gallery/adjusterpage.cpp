#include "adjusterpage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>
#include <functional>

#include "kx/adjusters/dial.h"
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
    TKxDial::TDialPointer pointer;
    std::function<TKxAnalogGControl*()> indicator;
};

void sectors(TKxAnalogGControl& c) {
    TSectorSettings& s = *c.SectorSettings();
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
         TKxDial::dpRound,
         [] {
             auto* m = new TKx270Meter;
             m->ScaleSettings()->SetSteps(8);
             sectors(*m);
             return m;
         }},
        {"Line mark and upright bar", "Feed flow", "%", 0.0f, 100.0f, 62.0f, TKxDial::dpLine,
         [] {
             auto* b = new TKxVBar;
             b->SetBounds(0, 0, 90, 200);
             return b;
         }},
        {"Triangle mark and linear meter", "Damper", "deg", -50.0f, 50.0f, 12.0f,
         TKxDial::dpTriangle, [] { return new TKxHMeter; }},
    };
    for (size_t i = 0; i < pairs.size(); ++i) {
        const Pair& p = pairs[i];
        auto* box = new QGroupBox(p.title);
        auto* row = new QGridLayout(box);
        auto* dial = new TKxDial;
        dial->SetBounds(0, 0, 150, 200);
        dial->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        TSignalSettings& sig = *dial->SignalSettings();
        sig.SetName1(p.name);
        sig.SetName2(QStringLiteral("setpoint"));
        sig.SetValueUnit(p.unit);
        sig.SetValueFrom(p.from);
        sig.SetValueTo(p.to);
        dial->SetPointerType(p.pointer);
        if (p.to - p.from == 16.0f) dial->ScaleSettings()->SetSteps(8);
        dial->SetValue(p.start);
        TKxAnalogGControl* indicator = p.indicator();
        indicator->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        dial->SetValueIndicator(indicator);
        auto* report = new QLabel(QStringLiteral("Turn, scroll or use the keys"));
        report->setObjectName(QStringLiteral("hintText"));
        connect(dial, &TKxAnalogCControl::OnValueChanged, report, [dial, report] {
            report->setText(QStringLiteral("Set to %1 %2")
                                .arg(dial->ValueText(), dial->SignalSettings()->ValueUnit()));
        });
        row->addWidget(dial, 0, 0, Qt::AlignTop);
        row->addWidget(indicator, 0, 1, Qt::AlignTop);
        row->addWidget(report, 1, 0, 1, 2);
        grid->addWidget(box, int(i / 2), int(i % 2));
        adjusters_.push_back(dial);
        indicators_.push_back(indicator);
        reports_.push_back(report);
    }
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
}

QString AdjusterPage::Report(int i) const {
    return reports_.at(size_t(i))->text();
}

}  // namespace kxgallery
