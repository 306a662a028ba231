#include "straightpage.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "kx/indicators/bar.h"
#include "kx/indicators/barinstrument.h"
#include "kx/indicators/flexmeter.h"
#include "kx/indicators/linearmeter.h"
#include "metercard.h"
#include "plantcolors.h"

namespace kxgallery {
namespace {

using kx::TColor;

constexpr uint32_t kSeedBase = 20251124u;

ProcessProfile wobble(double base, double amplitude, double period, double surge) {
    return ProcessProfile{base,
                          {Wave{amplitude, period, 0.3}, Wave{amplitude / 3, period / 2.7, 1.1},
                           Wave{0.03, 1.3, 0.0}},
                          0.01,
                          Surge{surge, period * 3.1, 0.4}};
}

void sectors(kx::TKxAnalogGControl& c, std::array<int32_t, 6> bounds,
             std::array<TColor, 3> colors) {
    kx::TSectorSettings& s = *c.SectorSettings();
    s.SetSector1From(bounds[0]), s.SetSector1To(bounds[1]), s.SetSector1Color(colors[0]);
    s.SetSector2From(bounds[2]), s.SetSector2To(bounds[3]), s.SetSector2Color(colors[1]);
    s.SetSector3From(bounds[4]), s.SetSector3To(bounds[5]), s.SetSector3Color(colors[2]);
}

void signal(kx::TKxAnalogGControl& c, const QString& name1, const QString& name2,
            const QString& unit, float from, float to, const QString& format) {
    kx::TSignalSettings& s = *c.SignalSettings();
    s.SetName1(name1);
    s.SetName2(name2);
    s.SetValueUnit(unit);
    s.SetValueFrom(from);
    s.SetValueTo(to);
    s.SetValueFormat(format);
}

}  // namespace

struct StraightPage::Preset {
    QString title;
    QStringList details;
    std::function<kx::TKxAnalogGControl*()> make;
    ProcessProfile process;
};

StraightPage::StraightPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(1), parent) {
    SetSection(QStringLiteral("Bars and linear meters"), QStringLiteral("-straight"));
    auto* content = new QWidget;
    // One row of cards per kind, each row as wide as its own cards.
    rows_ = new QVBoxLayout(content);
    rows_->setContentsMargins(12, 12, 12, 12);
    rows_->setSpacing(10);
    SetScrollContent(content);

    using namespace kx;
    const std::vector<std::pair<int, Preset>> presets = {
        {0,
         {QStringLiteral("TKxBar"),
          {QStringLiteral("solid, sector colour, value text")},
          [] {
              auto* b = new TKxBar;
              signal(*b, "Tank level", "LT-301", "%", 0, 100, "##0.0");
              sectors(*b, {0, 150, 151, 850, 851, 1000}, {kWarning, kNormal, kAlarm});
              b->BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opValue) |
                                           TBarSettings::BarOption(TBarSettings::opUnit) |
                                           TBarSettings::BarOption(TBarSettings::opUseSectorCol));
              b->BarSettings()->Font()->SetStyle(fsBold);
              b->SetBounds(0, 0, 220, 30);
              return b;
          },
          wobble(0.6, 0.3, 13.0, 0.0)}},
        {0,
         {QStringLiteral("TKxBar"),
          {QStringLiteral("LED chain over dimmed sectors")},
          [] {
              auto* b = new TKxBar;
              signal(*b, "Sound level", "", "dB", 40, 120, "##0");
              sectors(*b, {0, 600, 601, 850, 851, 1000}, {kNormal, kWarning, kAlarm});
              b->BarSettings()->SetStyle(bsLED_Bar);
              b->BarSettings()->SetBkAuto(true);
              b->BarSettings()->SetOptions(0);
              b->SetBounds(0, 0, 220, 26);
              return b;
          },
          wobble(0.55, 0.35, 3.0, 0.2)}},
        {0,
         {QStringLiteral("TKxBar"),
          {QStringLiteral("sector colours, bidirectional")},
          [] {
              auto* b = new TKxBar;
              signal(*b, "Torque", "", "Nm", -50, 50, "##0");
              sectors(*b, {0, 200, 201, 800, 801, 1000}, {kCold, kNormal, kAlarm});
              b->BarSettings()->SetStyle(bsMultiColor);
              b->BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opBidir) |
                                           TBarSettings::BarOption(TBarSettings::opValue) |
                                           TBarSettings::BarOption(TBarSettings::opUnit));
              b->SetBounds(0, 0, 220, 30);
              return b;
          },
          wobble(0.5, 0.4, 9.0, 0.0)}},
        {0,
         {QStringLiteral("TKxBar"),
          {QStringLiteral("point marker on a dimmed background")},
          [] {
              auto* b = new TKxBar;
              signal(*b, "Valve position", "", "%", 0, 100, "##0");
              b->BarSettings()->SetStyle(bsPoint);
              b->BarSettings()->SetBkAuto(true);
              b->BarSettings()->SetColor(clWhite);
              b->BarSettings()->SetOptions(0);
              b->SetBounds(0, 0, 220, 24);
              return b;
          },
          wobble(0.4, 0.3, 17.0, 0.0)}},
        {1,
         {QStringLiteral("TKxHBar"),
          {QStringLiteral("defaults, sector colour")},
          [] {
              auto* b = new TKxHBar;
              signal(*b, "Motor current", "M-12", "A", 0, 40, "#0.0");
              sectors(*b, {0, 700, 701, 900, 901, 1000}, {kNormal, kWarning, kAlarm});
              b->BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opUseSectorCol));
              b->BarSettings()->SetminWidth(160);
              return b;
          },
          wobble(0.65, 0.25, 7.0, 0.45)}},
        {1,
         {QStringLiteral("TKxHBar"),
          {QStringLiteral("LED chain, bevels, dimmed sectors")},
          [] {
              auto* b = new TKxHBar;
              signal(*b, "Speed", "SE-4", "rpm", 0, 3000, "###0");
              sectors(*b, {0, 300, 301, 800, 801, 1000}, {kCold, kNormal, kAlarm});
              b->SetOptions(0x7F);
              b->BarSettings()->SetStyle(bsLED_Bar);
              b->BarSettings()->SetBkAuto(true);
              b->BarSettings()->SetminWidth(160);
              return b;
          },
          wobble(0.5, 0.45, 11.0, 0.3)}},
        {1,
         {QStringLiteral("TKxHMeter"),
          {QStringLiteral("sectors, limits, unit above")},
          [] {
              auto* m = new TKxHMeter;
              signal(*m, "Line pressure", "PT-55", "bar", 0, 10, "#0.00");
              sectors(*m, {0, 200, 201, 800, 801, 1000}, {kWarning, kNormal, kAlarm});
              m->ScaleSettings()->Font()->SetSize(10);
              return m;
          },
          wobble(0.6, 0.35, 9.5, 0.4)}},
        {1,
         {QStringLiteral("TKxHMeter"),
          {QStringLiteral("labels on top, no bevels")},
          [] {
              auto* m = new TKxHMeter;
              signal(*m, "Frequency", "", "Hz", 45, 55, "#0");
              sectors(*m, {0, 100, 101, 899, 900, 1000}, {kAlarm, kNormal, kAlarm});
              m->ScaleSettings()->SetPosLeftTop(true);
              m->ScaleSettings()->Font()->SetSize(10);
              m->SetOptions(TKxHMeter::kAllHMeterOptions &
                            ~TKxHMeter::HMeterOption(TKxHMeter::opBevelInner) &
                            ~TKxHMeter::HMeterOption(TKxHMeter::opBevelOuter));
              return m;
          },
          wobble(0.5, 0.3, 5.0, -0.5)}},
        {2,
         {QStringLiteral("TKxVBar"),
          {QStringLiteral("defaults")},
          [] {
              auto* b = new TKxVBar;
              signal(*b, "Level", "LT-7", "m", 0, 8, "0.00");
              b->BarSettings()->SetminHeight(150);
              return b;
          },
          wobble(0.5, 0.45, 8.0, 0.35)}},
        {2,
         {QStringLiteral("TKxVBar"),
          {QStringLiteral("sector colours, bevels")},
          [] {
              auto* b = new TKxVBar;
              signal(*b, "Temperature", "TT-9", "\u00B0C", 0, 120, "##0");
              sectors(*b, {0, 250, 251, 750, 751, 1000}, {kCold, kNormal, kAlarm});
              b->SetOptions(0x7F);
              b->BarSettings()->SetStyle(bsMultiColor);
              b->BarSettings()->SetminHeight(150);
              b->BarSettings()->SetminWidth(13);
              return b;
          },
          wobble(0.55, 0.4, 12.0, -0.7)}},
        {2,
         {QStringLiteral("TKxVBar"),
          {QStringLiteral("bidirectional, LED chain")},
          [] {
              auto* b = new TKxVBar;
              signal(*b, "Balance", "", "kN", -10, 10, "#0.0");
              sectors(*b, {0, 150, 151, 850, 851, 1000}, {kAlarm, kNormal, kAlarm});
              b->BarSettings()->SetStyle(bsLED_Bar);
              b->BarSettings()->SetBkAuto(true);
              b->BarSettings()->SetOptions(TBarSettings::BarOption(TBarSettings::opBidir));
              b->BarSettings()->SetminHeight(150);
              b->BarSettings()->SetminWidth(11);
              b->MinMax()->SetMinVisible(false);
              b->MinMax()->SetMaxVisible(false);
              return b;
          },
          wobble(0.5, 0.5, 6.0, 0.0)}},
        {2,
         {QStringLiteral("TKxVMeter"),
          {QStringLiteral("sectors, value readout")},
          [] {
              auto* m = new TKxVMeter;
              signal(*m, "Coolant", "TT-12", "\u00B0C", 0, 120, "##0.0");
              sectors(*m, {0, 250, 251, 750, 751, 1000}, {kCold, kNormal, kAlarm});
              m->ScaleSettings()->Font()->SetSize(10);
              return m;
          },
          wobble(0.55, 0.35, 10.0, 0.6)}},
        {2,
         {QStringLiteral("TKxVMeter"),
          {QStringLiteral("labels left, logarithmic")},
          [] {
              auto* m = new TKxVMeter;
              signal(*m, "Vacuum", "PI-3", "mbar", 0.001f, 1000, "0.000");
              m->SetLogScale(true);
              m->ScaleSettings()->SetPosLeftTop(true);
              m->ScaleSettings()->Font()->SetSize(10);
              m->SetOptions(TKxVMeter::kAllVMeterOptions &
                            ~TKxVMeter::VMeterOption(TKxVMeter::opSector));
              return m;
          },
          wobble(0.5, 0.3, 14.0, 0.0)}},
    };
    std::vector<QHBoxLayout*> rows;
    for (size_t i = 0; i < presets.size(); ++i) {
        const size_t row = size_t(presets[i].first);
        while (rows.size() <= row) {
            rows.push_back(new QHBoxLayout);
            rows.back()->setSpacing(10);
            rows_->addLayout(rows.back());
        }
        add(presets[i].second, *rows[row], kSeedBase + uint32_t(i), startTime);
    }
    for (QHBoxLayout* row : rows)
        row->addStretch(1);
    addFlexRow(kSeedBase + 100u, startTime);
    rows_->addStretch(1);
}

void StraightPage::addFlexRow(uint32_t seed, double startTime) {
    using namespace kx;
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    rows_->addLayout(row);
    auto* h = new TKxFlexHMeter;
    signal(*h, "Line speed", "flex: stretches with the window", "m/min", 0, 250, "##0");
    sectors(*h, {0, 80, 81, 900, 901, 1000}, {kWarning, kNormal, kAlarm});
    h->setMinimumWidth(200);
    h->Scale()->Font()->SetSize(20);
    auto* v1 = new TKxFlexVMeter;
    signal(*v1, "Draft", "flex", "Pa", -50, 50, "##0");
    sectors(*v1, {0, 100, 101, 899, 900, 1000}, {kAlarm, kNormal, kAlarm});
    auto* v2 = new TKxFlexVMeter;
    signal(*v2, "Vacuum", "flex, log", "mbar", 0.01f, 1000, "0.00");
    v2->SetLogScale(true);
    const std::pair<TKxFlexMeter*, ProcessProfile> meters[] = {
        {h, wobble(0.55, 0.35, 9.0, 0.55)},
        {v1, wobble(0.5, 0.3, 7.0, -0.6)},
        {v2, wobble(0.5, 0.35, 15.0, 0.0)},
    };
    uint32_t n = 0;
    for (const auto& [m, profile] : meters) {
        m->SetLimitUpper(m->SignalSettings()->ValueTo());
        m->SetLimitLower(m->SignalSettings()->ValueFrom());
        m->Loaded();
        if (m != h) m->setFixedWidth(130);
        m->setMinimumHeight(220);
        row->addWidget(m, m == h ? 1 : 0);
        flex_.push_back(Channel{m, nullptr, ProcessSignal(profile, seed + n++, startTime)});
        feed(flex_.back());
    }
}

void StraightPage::add(const Preset& preset, QHBoxLayout& row, uint32_t seed, double startTime) {
    kx::TKxAnalogGControl* control = preset.make();
    control->SetLimitUpper(control->SignalSettings()->ValueTo());
    control->SetLimitLower(control->SignalSettings()->ValueFrom());
    ProcessSignal process(preset.process, seed, startTime);
    control->Loaded();
    auto* card = new MeterCard(control);
    card->SetCaption(preset.title, preset.details);
    row.addWidget(card);
    channels_.push_back(Channel{control, card, process});
    feed(channels_.back());
}

void StraightPage::feed(Channel& c) {
    const kx::TSignalSettings& s = *c.control->SignalSettings();
    c.control->SetValue(
        float(ValueAt(c.process.Fraction(), s.ValueFrom(), s.ValueTo(), c.control->LogScale())));
}

void StraightPage::Step(double seconds) {
    for (std::vector<Channel>* list : {&channels_, &flex_}) {
        for (Channel& c : *list) {
            c.process.Advance(seconds);
            feed(c);
        }
    }
}

}  // namespace kxgallery
