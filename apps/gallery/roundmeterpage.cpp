#include "roundmeterpage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>

#include "kx/indicators/rmeter.h"
#include "metercard.h"
#include "meterpresets.h"

namespace kxgallery {
namespace {

constexpr int kColumns = 3;
constexpr int kShapeCount = 8;
constexpr int kMaxSteps = 20;
constexpr int kSliderMin = -50;
constexpr int kSliderMax = 1050;
constexpr int kMaxLogEntries = 200;
constexpr int kSidePanelWidth = 250;
// Seeds differ per meter so that no two needles wobble alike.
constexpr uint32_t kSeedBase = 20240611u;

QString number(double v) {
    return QString::number(v, 'g', 6);
}

}  // namespace

RoundMeterPage::RoundMeterPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(1), parent), startTime_(startTime), time_(startTime) {
    const std::vector<MeterPreset>& presets = GalleryMeters();
    channels_.reserve(presets.size());
    for (size_t i = 0; i < presets.size(); ++i) {
        const MeterPreset& p = presets[i];
        ProcessSignal process(p.process, kSeedBase + uint32_t(i), startTime);
        kx::TKxRMeter* meter = CreateMeter(p, process.Fraction(), nullptr);
        auto* card = new MeterCard(meter);
        channels_.push_back(
            Channel{meter, card, process, p.shape, meter->ScaleSettings()->Steps()});
    }

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->addWidget(buildMeterGrid(), 1);
    layout->addWidget(buildSidePanel());

    for (int i = 0; i < MeterCount(); ++i) {
        connectEvents(i);
        refreshCaption(i);
    }
}

QWidget* RoundMeterPage::buildMeterGrid() {
    auto* grid = new QWidget;
    auto* layout = new QGridLayout(grid);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    for (int i = 0; i < MeterCount(); ++i)
        layout->addWidget(channels_[size_t(i)].card, i / kColumns, i % kColumns);
    for (int c = 0; c < kColumns; ++c)
        layout->setColumnStretch(c, 1);
    return grid;
}

QWidget* RoundMeterPage::buildSidePanel() {
    auto* panel = new QWidget;
    panel->setObjectName(QStringLiteral("sidePanel"));
    panel->setFixedWidth(kSidePanelWidth);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);

    auto* settings = new QGroupBox(QStringLiteral("Live settings"));
    auto* form = new QFormLayout(settings);
    shapeCombo_ = new QComboBox;
    shapeCombo_->addItem(QStringLiteral("As configured"));
    for (int s = 0; s < kShapeCount; ++s)
        shapeCombo_->addItem(QStringLiteral("Shape %1").arg(s));
    form->addRow(QStringLiteral("Needle"), shapeCombo_);
    stepsSpin_ = new QSpinBox;
    stepsSpin_->setRange(0, kMaxSteps);
    stepsSpin_->setSpecialValueText(QStringLiteral("As configured"));
    form->addRow(QStringLiteral("Scale steps"), stepsSpin_);
    const MeterPreset& logPreset = GalleryMeters().at(size_t(LogSwitchMeter()));
    logCheck_ = new QCheckBox(QStringLiteral("Logarithmic (%1)").arg(logPreset.name1));
    logCheck_->setChecked(Meter(LogSwitchMeter())->LogScale());
    form->addRow(logCheck_);
    pauseButton_ = new QPushButton(QStringLiteral("Pause"));
    pauseButton_->setCheckable(true);
    resetButton_ = new QPushButton(QStringLiteral("Reset min/max"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(pauseButton_);
    buttons->addWidget(resetButton_);
    form->addRow(buttons);
    column->addWidget(settings);

    const MeterPreset& manualPreset = GalleryMeters().at(size_t(ManualMeter()));
    auto* manual = new QGroupBox(QStringLiteral("Manual reading"));
    auto* manualLayout = new QVBoxLayout(manual);
    auto* hint = new QLabel(QStringLiteral("Drives \u201C%1\u201D while paused, "
                                           "past both ends of the range.")
                                .arg(manualPreset.name1));
    hint->setWordWrap(true);
    hint->setObjectName(QStringLiteral("hintText"));
    manualSlider_ = new QSlider(Qt::Horizontal);
    manualSlider_->setRange(kSliderMin, kSliderMax);
    manualSlider_->setEnabled(false);
    manualValue_ = new QLabel;
    manualValue_->setAlignment(Qt::AlignRight);
    manualLayout->addWidget(hint);
    manualLayout->addWidget(manualSlider_);
    manualLayout->addWidget(manualValue_);
    column->addWidget(manual);

    auto* events = new QGroupBox(QStringLiteral("Events"));
    auto* eventsLayout = new QVBoxLayout(events);
    eventLog_ = new QListWidget;
    eventLog_->setObjectName(QStringLiteral("eventLog"));
    eventLog_->setSelectionMode(QAbstractItemView::NoSelection);
    eventLog_->setFocusPolicy(Qt::NoFocus);
    eventLog_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    eventLog_->setTextElideMode(Qt::ElideRight);
    eventsLayout->addWidget(eventLog_);
    column->addWidget(events, 1);

    connect(shapeCombo_, &QComboBox::currentIndexChanged, this, &RoundMeterPage::applyShape);
    connect(stepsSpin_, &QSpinBox::valueChanged, this, &RoundMeterPage::applySteps);
    connect(logCheck_, &QCheckBox::toggled, this, &RoundMeterPage::applyLogScale);
    connect(pauseButton_, &QPushButton::toggled, this, &RoundMeterPage::setPaused);
    connect(resetButton_, &QPushButton::clicked, this, &RoundMeterPage::resetMinMax);
    connect(manualSlider_, &QSlider::valueChanged, this, &RoundMeterPage::applyManual);
    showManualValue();
    return panel;
}

void RoundMeterPage::connectEvents(int index) {
    kx::TKxRMeter* meter = Meter(index);
    const MeterPreset& p = GalleryMeters().at(size_t(index));
    connect(meter, &kx::TKxAnalogGControl::OnLimit, this,
            [this, index, p](QObject*, bool lower, bool upper) {
                if (upper)
                    logEvent(
                        index,
                        QStringLiteral("high limit (%1 %2)").arg(number(p.limitUpper), p.unit));
                else if (lower)
                    logEvent(index,
                             QStringLiteral("low limit (%1 %2)").arg(number(p.limitLower), p.unit));
                else
                    logEvent(index, QStringLiteral("limits OK"));
            });
    connect(meter, &kx::TKxAnalogGControl::OnOverflow, this, [this, index](QObject*, int ppt) {
        if (ppt > 1000)
            logEvent(index, QStringLiteral("over range"));
        else if (ppt < 0)
            logEvent(index, QStringLiteral("under range"));
        else
            logEvent(index, QStringLiteral("in range"));
    });
}

void RoundMeterPage::Step(double seconds) {
    if (paused_) return;
    if (std::isfinite(seconds) && seconds > 0.0) time_ += seconds;
    for (int i = 0; i < MeterCount(); ++i) {
        Channel& c = channels_[size_t(i)];
        feed(i, c.process.Advance(seconds));
    }
    showManualValue();
}

void RoundMeterPage::feed(int index, double fraction) {
    const MeterPreset& p = GalleryMeters().at(size_t(index));
    // The process itself stays logarithmic when the display is switched to linear.
    Meter(index)->SetValue(float(ValueAt(fraction, p.from, p.to, p.logarithmic)));
}

void RoundMeterPage::applyShape(int comboIndex) {
    for (int i = 0; i < MeterCount(); ++i) {
        const Channel& c = channels_[size_t(i)];
        c.meter->ArrowSettings()->SetShape(comboIndex <= 0 ? c.ownShape : comboIndex - 1);
        refreshCaption(i);
    }
}

void RoundMeterPage::applySteps(int steps) {
    for (int i = 0; i < MeterCount(); ++i) {
        const Channel& c = channels_[size_t(i)];
        c.meter->ScaleSettings()->SetSteps(steps <= 0 ? c.ownSteps : steps);
        refreshCaption(i);
    }
}

void RoundMeterPage::applyLogScale(bool on) {
    const int i = LogSwitchMeter();
    Meter(i)->SetLogScale(on);
    // Switching to logarithmic may have moved the reading; show the process again.
    feed(i, channels_[size_t(i)].process.Fraction());
    refreshCaption(i);
}

void RoundMeterPage::setPaused(bool paused) {
    paused_ = paused;
    pauseButton_->setText(paused ? QStringLiteral("Resume") : QStringLiteral("Pause"));
    manualSlider_->setEnabled(paused);
    if (paused) {
        const double f = channels_[size_t(ManualMeter())].process.Fraction();
        const QSignalBlocker block(manualSlider_);
        manualSlider_->setValue(int(std::lround(std::clamp(f, -0.05, 1.05) * 1000.0)));
    } else {
        // The process takes the meter back from where it is now.
        feed(ManualMeter(), channels_[size_t(ManualMeter())].process.Fraction());
    }
    showManualValue();
}

void RoundMeterPage::applyManual(int ppt) {
    if (!paused_) return;
    feed(ManualMeter(), ppt / 1000.0);
    showManualValue();
}

void RoundMeterPage::showManualValue() {
    const MeterPreset& p = GalleryMeters().at(size_t(ManualMeter()));
    manualValue_->setText(
        QStringLiteral("%1 %2").arg(double(Meter(ManualMeter())->Value()), 0, 'f', 1).arg(p.unit));
}

void RoundMeterPage::resetMinMax() {
    for (int i = 0; i < MeterCount(); ++i)
        Meter(i)->ResetMinMax();
}

void RoundMeterPage::refreshCaption(int index) {
    const Channel& c = channels_[size_t(index)];
    const MeterPreset& p = GalleryMeters().at(size_t(index));
    const kx::TSignalSettings* s = c.meter->SignalSettings();
    const QString range =
        QStringLiteral("%1 %2\u2013%3 %4 \u00B7 %5 steps")
            .arg(c.meter->LogScale() ? QStringLiteral("logarithmic") : QStringLiteral("linear"),
                 number(s->ValueFrom()), number(s->ValueTo()), p.unit)
            .arg(c.meter->ScaleSettings()->Steps());
    const int32_t offset = c.meter->SectorSettings()->Offset();
    const QString sectors = offset < 0 ? QStringLiteral("sectors over the scale (%1)").arg(offset)
                                       : QStringLiteral("sectors inside the scale");
    const QString needle = QStringLiteral("needle %1").arg(c.meter->ArrowSettings()->Shape());
    c.card->SetCaption(MeterClassName(p.kind),
                       {range, sectors + QStringLiteral(" \u00B7 ") + needle});
}

void RoundMeterPage::logEvent(int index, const QString& text) {
    const MeterPreset& p = GalleryMeters().at(size_t(index));
    const QString line =
        QStringLiteral("%1 s  %2  %3").arg(SimulatedTime(), 0, 'f', 1).arg(p.name2, text);
    eventLog_->insertItem(0, line);
    while (eventLog_->count() > kMaxLogEntries)
        delete eventLog_->takeItem(eventLog_->count() - 1);
}

}  // namespace kxgallery
