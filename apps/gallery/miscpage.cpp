#include "miscpage.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "kx/decoration/kxbevel.h"
#include "kx/decoration/kxgradient.h"
#include "kx/decoration/kxlabel.h"
#include "kx/decoration/kxpanel.h"
#include "kx/entry/numspin.h"
#include "kx/framework/spinbutton.h"
#include "kx/indicators/rmeter.h"
#include "kx/recorders/kxclock.h"
#include "kx/recorders/ophourcounter.h"

namespace kxgallery {
namespace {

using namespace kx;

// A section of the page: a TKxPanel whose frame holds a gradient title bar and the
// section's components.
TKxPanel* section(const QString& title, QLayout* layout) {
    auto* panel = new TKxPanel;
    panel->BevelInner()->SetSpacing(2);
    panel->BevelOuter()->SetSpacing(2);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(6, 0, 6, 6);
    column->setSpacing(6);
    auto* bar = new TKxGradient;
    bar->GradSettings()->SetColorFrom(0x00602000);  // a deep blue
    bar->GradSettings()->SetColorTo(0x00B08040);    // a lighter blue: white text stays legible
    bar->GradSettings()->SetStyle(gsVertical1);
    bar->setFixedHeight(22);
    bar->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* caption = new QLabel(title, bar);
    caption->setStyleSheet(QStringLiteral("color: white; font-weight: bold;"));
    caption->move(6, 3);
    caption->adjustSize();
    column->addWidget(bar);
    column->addLayout(layout);
    return panel;
}

}  // namespace

MiscPage::MiscPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(0), parent), time_(startTime) {
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(12);
    grid->addWidget(notationsBox(), 0, 0);
    grid->addWidget(limitBox(), 0, 1);
    grid->addWidget(countBox(), 1, 0);
    grid->addWidget(hoursBox(), 1, 1);
    grid->addWidget(stateBox(), 2, 0, 1, 2);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
}

QWidget* MiscPage::notationsBox() {
    auto* form = new QFormLayout;
    const struct {
        const char* label;
        TKxNumEdit::TEditBase base;
    } rows[] = {{"Floating point", TKxNumEdit::ebFloat},
                {"Integer", TKxNumEdit::ebInt},
                {"Hexadecimal", TKxNumEdit::ebHex},
                {"Binary", TKxNumEdit::ebBin}};
    for (size_t i = 0; i < edits_.size(); ++i) {
        auto* edit = new TKxNumEdit;
        edit->SetEditBase(rows[i].base);
        edit->SetFormatStr(QStringLiteral("#,##0.0##"));
        edit->SetDigitsHex(4);
        edit->SetIncrement(1.0f);
        edit->setMinimumWidth(220);
        form->addRow(QString::fromLatin1(rows[i].label), edit);
        edits_[i] = edit;
    }
    // One value in four notations: an accepted entry in one shows in all.
    for (TKxNumEdit* from : edits_)
        connect(from, &TKxNumEdit::OnValueChanged, this, [this, from] {
            for (TKxNumEdit* to : edits_)
                if (to != from) to->SetValue(from->Value());
        });
    for (TKxNumEdit* e : edits_)  // still loading: they do not tell each other yet
        e->SetValue(1500.0);
    form->addRow(HintLabel(QStringLiteral(
        "Type 1.5k, 3m, -12.75E-3, $ff, &101 or %42 in any of them: Enter or Tab accepts, "
        "Esc undoes, the arrow keys step. A mistake turns red and is selected.")));
    return section(QStringLiteral("One value in four notations"), form);
}

QWidget* MiscPage::limitBox() {
    auto* row = new QHBoxLayout;
    limit_ = new TKxNumSpin;
    limit_->SetOptions(TKxNumEdit::NumEditOption(TKxNumEdit::eoLimitMin) |
                       TKxNumEdit::NumEditOption(TKxNumEdit::eoLimitMax));
    limit_->SetMinValue(10.0);
    limit_->SetMaxValue(95.0);
    limit_->SetIncrement(5.0f);
    limit_->setFixedWidth(90);
    tank_ = new TKx180Meter;
    TSignalSettings& sig = *tank_->SignalSettings();
    sig.SetName1(QStringLiteral("Tank level"));
    sig.SetName2(QStringLiteral("LT-230"));
    sig.SetValueUnit(QStringLiteral("%"));
    connect(limit_, &TKxNumEdit::OnValueChanged, this,
            [this] { tank_->SetLimitUpper(float(limit_->Value())); });
    limit_->SetValue(80.0);  // still loading: no event, so the meter is told here
    tank_->SetLimitUpper(80.0f);
    auto* column = new QVBoxLayout;
    column->addWidget(new QLabel(QStringLiteral("High limit (%)")));
    column->addWidget(limit_);
    column->addWidget(
        HintLabel(QStringLiteral("10 to 95 in steps of 5: the buttons stop at the "
                                 "limits and while an entry waits.")));
    column->addStretch(1);
    row->addLayout(column);
    row->addWidget(tank_, 0, Qt::AlignTop);
    return section(QStringLiteral("Numeric spin setting a meter's limit"), row);
}

QWidget* MiscPage::countBox() {
    auto* row = new QHBoxLayout;
    spin_ = new TKxSpinButton;
    spin_->SetBounds(0, 0, 17, 34);
    spin_->setFixedSize(17, 34);
    connect(spin_, &TKxSpinButton::OnUpClick, this, [this] { setCount(count_ + 1); });
    connect(spin_, &TKxSpinButton::OnDownClick, this, [this] { setCount(count_ - 1); });
    repeat_ = new TKxTimerSpeedBtn;
    repeat_->SetArrowGlyph(TKxTimerSpeedBtn::agUp);
    repeat_->setFixedSize(34, 34);
    connect(repeat_, &QAbstractButton::clicked, this, [this] { setCount(count_ + 10); });
    countLabel_ = new QLabel;
    countLabel_->setMinimumWidth(60);
    countLabel_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setCount(0);
    row->addWidget(countLabel_);
    row->addWidget(spin_);
    row->addSpacing(16);
    row->addWidget(repeat_);
    row->addWidget(HintLabel(QStringLiteral("Hold a button: it repeats after half a second, ten "
                                            "times a second. The right one adds 10.")),
                   1);
    return section(QStringLiteral("Spin button and repeating speed button"), row);
}

namespace {

// A counter persisted in kxgallery.ini, section `section`, starting at h:m:s when the
// file does not know it yet.
TKxOpHourCounter* persistentCounter(const QString& section, int h, int m, int s) {
    auto* c = new TKxOpHourCounter;
    TIniSettings& ini = *c->IniSettings();
    ini.SetUseAppDir(false);
    ini.SetFileName(GalleryOutputDir() + QStringLiteral("/kxgallery.ini"));
    ini.SetSection(section);
    ini.SetAutoLoadSave(true);
    c->SetSaveInterval(10);
    c->Font()->SetSize(10);
    c->Limit()->SetHour(1000000);  // no limit unless the page sets one
    const bool known = TIniFile(ini.Path()).SectionExists(section);
    c->Loaded();  // loads the persisted count
    if (!known) c->SetTime(h, m, s);
    return c;
}

QLabel* statusLabel() {
    auto* l = new QLabel;
    l->setMinimumWidth(130);
    return l;
}

void showStatus(QLabel* label, const QString& text, bool on) {
    label->setText(on ? text : QString());
    label->setStyleSheet(on ? QStringLiteral("color: #b00000; font-weight: bold;") : QString());
}

}  // namespace

QWidget* MiscPage::hoursBox() {
    auto* grid = new QGridLayout;
    runHours_ = persistentCounter(QStringLiteral("PumpP1"), 1999, 59, 45);
    serviceLabel_ = statusLabel();
    // The pump is serviced every 2000 hours: a limit of 2000:00:00 is met from then on.
    connect(runHours_, &TKxOpHourCounter::OnLimit, this,
            [this] { showStatus(serviceLabel_, QStringLiteral("Service due"), true); });
    runHours_->Limit()->SetValue(2000, 0, 0);
    runHours_->CheckTime();
    runHours_->SetCount(true);

    filter_ = persistentCounter(QStringLiteral("FilterF1"), 0, 0, 40);
    filter_->SetHourDigits(2);
    filter_->SetCountDown(true);
    filterLabel_ = statusLabel();
    connect(filter_, &TKxOpHourCounter::OnZero, this,
            [this] { showStatus(filterLabel_, QStringLiteral("Filter change due"), true); });
    filter_->SetCount(true);
    if (filter_->ZeroFlag() || (filter_->Hours() | filter_->Minutes() | filter_->Seconds()) == 0)
        showStatus(filterLabel_, QStringLiteral("Filter change due"), true);
    auto* reset = new QPushButton(QStringLiteral("Filter changed"));
    connect(reset, &QPushButton::clicked, this, &MiscPage::restartFilter);

    clock_ = new TKxClock;
    dateClock_ = new TKxClock;
    dateClock_->SetClockOption(TKxClock::coDate);
    dateClock_->resize(90, 24);
    for (TKxClock* c : {clock_, dateClock_}) {
        c->setFixedSize(c->size());
        c->Loaded();
    }
    for (TKxOpHourCounter* c : {runHours_, filter_})
        c->setFixedSize(c->size());

    grid->addWidget(new QLabel(QStringLiteral("Pump P1 running")), 0, 0);
    grid->addWidget(runHours_, 0, 1);
    grid->addWidget(serviceLabel_, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("Filter F1 change in")), 1, 0);
    grid->addWidget(filter_, 1, 1);
    grid->addWidget(filterLabel_, 1, 2);
    grid->addWidget(reset, 2, 1);
    auto* clocks = new QHBoxLayout;
    clocks->addWidget(clock_);
    clocks->addWidget(dateClock_);
    clocks->addStretch(1);
    grid->addWidget(new QLabel(QStringLiteral("Time and date")), 3, 0);
    grid->addLayout(clocks, 3, 1, 1, 2);
    grid->addWidget(HintLabel(QStringLiteral("The counters keep their counts in kxgallery.ini "
                                             "in the gallery's output folder, every ten "
                                             "seconds and when the gallery closes: start it "
                                             "again and they go on where they stopped.")),
                    4, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    return section(QStringLiteral("Operating hours and clocks"), grid);
}

QWidget* MiscPage::stateBox() {
    auto* row = new QHBoxLayout;
    // The label stands on a gradient inside a bevel frame: its surface is transparent
    // around the text, so the gradient shows through and a new state never flickers.
    auto* frame = new TKxBevel;
    frame->setFixedSize(200, 56);
    auto* back = new TKxGradient(frame);
    back->GradSettings()->SetColorFrom(0x00303030);
    back->GradSettings()->SetColorTo(0x00101010);
    back->GradSettings()->SetStyle(gsHorizontal2);
    state_ = new TKxLabel(frame);
    state_->SetDigitText(QStringLiteral("RUNNING;FAULT;MAINTENANCE;STOPPED;"));
    state_->Font()->SetName(QStringLiteral("Arial"));
    state_->Font()->SetSize(14);
    state_->Font()->SetStyle(fsBold);
    frame->PaintToSurface();  // lays out the content area
    const TRect c = frame->ContentRect();
    for (QWidget* w : {static_cast<QWidget*>(back), static_cast<QWidget*>(state_)})
        w->setGeometry(c.Left, c.Top, c.Width(), c.Height());
    state_->resize(c.Width(), c.Height());
    showState();
    row->addWidget(frame);
    row->addWidget(HintLabel(QStringLiteral(
                       "A TKxLabel cycles through the machine states every few seconds over a "
                       "TKxGradient in a TKxBevel. Each section of this page is a TKxPanel "
                       "with a gradient title bar.")),
                   1);
    return section(QStringLiteral("Machine state"), row);
}

void MiscPage::showState() {
    // RUNNING most of the time, now and then a fault, maintenance or a stop.
    static constexpr int kCycle[] = {0, 0, 0, 1, 0, 0, 2, 0, 0, 3};
    const int step = int(std::floor(time_ / 3.0)) % 10;
    const int digit = kCycle[step < 0 ? step + 10 : step];
    static constexpr TColor kColors[] = {clLime, clRed, clYellow, clSilver};
    state_->Font()->SetColor(kColors[digit]);
    state_->SetDigit(digit);
}

void MiscPage::restartFilter() {
    filter_->SetCount(false);
    filter_->SetTime(0, 0, 40);
    filter_->SetCount(true);
    showStatus(filterLabel_, QString(), false);
}

void MiscPage::setCount(int count) {
    count_ = count;
    countLabel_->setText(QString::number(count));
}

void MiscPage::Step(double seconds) {
    time_ += seconds;
    // The tank fills and empties over a minute, now and then above the limit.
    tank_->SetValue(float(55.0 + 40.0 * std::sin(time_ * 2.0 * M_PI / 60.0)));
    showState();
}

}  // namespace kxgallery
