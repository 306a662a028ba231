#include "recorderpage.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <cmath>
#include <cstring>

#include "kx/host/clock.h"
#include "kx/host/datetimeformat.h"
#include "kx/host/formatfloat.h"
#include "kx/recorders/minitrend.h"
#include "kx/recorders/oppoint.h"
#include "kx/recorders/printtrend.h"
#include "kx/recorders/recordfile.h"
#include "kx/recorders/trend.h"
#include "pumpcurve.h"

namespace kxgallery {
namespace {

using namespace kx;

constexpr uint32_t kSeedBase = 20261125u;
constexpr int kHistoryRecords = 900;  // one per second before the page opens

struct ChannelPreset {
    const char* name;
    const char* unit;
    float from, to;
    ProcessProfile process;
};

ProcessProfile drift(double base, double amplitude, double period) {
    return ProcessProfile{base,
                          {Wave{amplitude, period, 0.4}, Wave{amplitude / 3, period / 3.3, 1.7},
                           Wave{0.01, 23.0, 0.0}},
                          0.002,
                          Surge{amplitude, period * 2.3, 0.9}};
}

const std::array<ChannelPreset, 8>& presets() {
    static const std::array<ChannelPreset, 8> p = {{
        {"Reactor temperature", "\u00B0C", 0, 200, drift(0.72, 0.12, 170)},
        {"Jacket temperature", "\u00B0C", 0, 200, drift(0.55, 0.1, 150)},
        {"Pressure", "bar", 0, 10, drift(0.45, 0.15, 90)},
        {"Feed flow", "m\u00B3/h", 0, 50, drift(0.35, 0.08, 60)},
        {"Level", "%", 0, 100, drift(0.62, 0.05, 300)},
        {"Stirrer speed", "rpm", 0, 600, drift(0.8, 0.03, 40)},
        {"pH", "", 0, 14, drift(0.5, 0.04, 220)},
        {"Conductivity", "mS/cm", 0, 20, drift(0.25, 0.06, 120)},
    }};
    return p;
}

}  // namespace

RecorderPage::RecorderPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(1), parent), time_(startTime) {
    SetSection(QStringLiteral("Trend recorder"), QStringLiteral("-trend"));
    for (size_t i = 0; i < presets().size(); ++i)
        processes_.emplace_back(presets()[i].process, kSeedBase + uint32_t(i), startTime);
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(12);
    grid->addWidget(trendBox(startTime), 0, 0);
    grid->addWidget(readoutBox(), 0, 1);
    grid->addWidget(buttonRow(), 1, 0, 1, 2);
    grid->addWidget(miniBox(), 2, 0, 1, 2);
    grid->addWidget(pumpBox(), 3, 0, 1, 2);
    grid->setRowStretch(4, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
}

QWidget* RecorderPage::trendBox(double startTime) {
    trend_ = new TKxTrend;
    trend_->setObjectName(QStringLiteral("reactorTrend"));
    trend_->SetBounds(0, 0, 720, 380);
    trend_->setFixedSize(720, 380);
    trend_->SetCaption(QStringLiteral("Reactor R-101"));
    trend_->SetInterval(250);
    trend_->SetInterval2(100);
    trend_->SetLeftScaleCh(3);
    trend_->SetAbsScaleCh(1);
    trend_->LimitUpper()->SetValue(170.0f);
    trend_->LimitUpper()->SetEnabled(true);
    for (int ch = 1; ch <= 8; ++ch) {
        const ChannelPreset& p = presets()[size_t(ch - 1)];
        TChSettings* c = trend_->Channel(ch);
        c->SetName1(QString::fromUtf8(p.name));
        c->SetValueUnit(QString::fromUtf8(p.unit));
        c->SetValueTo(p.to);
        c->SetValueFrom(p.from);
        c->SetValueFormat(QStringLiteral("##0.#"));
    }
    trend_->Channel3()->SetPenWidth(2);
    loadHistory(startTime);
    connect(trend_, &TKxTrend::OnNewCursorPos, this, [this] { showReadout(); });
    auto* box = new QGroupBox(QStringLiteral("TKxTrend: eight channels, 4 records a second"));
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(trend_);
    layout->addWidget(HintLabel(QStringLiteral(
        "Stop the flow and move the mouse over the curves to read the values of a past "
        "moment; the white lines are separators left by restarts.")));
    return box;
}

// An earlier run of the plant, one record a second, with a stop in the middle: written to
// a record file and loaded, as an application restores a saved shift.
void RecorderPage::loadHistory(double startTime) {
    std::vector<TSignRec> records;
    std::vector<ProcessSignal> past;
    for (size_t i = 0; i < presets().size(); ++i)
        past.emplace_back(presets()[i].process, kSeedBase + 100 + uint32_t(i),
                          startTime - kHistoryRecords);
    const TDateTime now = Now();
    for (int k = 0; k < kHistoryRecords; ++k) {
        TSignRec r{};
        r.Time = now - double(kHistoryRecords - k) / 86400.0;
        for (size_t i = 0; i < past.size(); ++i) {
            const double f = std::clamp(past[i].Advance(1.0), 0.0, 1.0);
            r.Ch[i] = uint16_t(std::lround(f * 1000.0));
        }
        records.push_back(r);
        if (k == kHistoryRecords / 2) {  // the plant was stopped here for a while
            TSignRec sep = r;
            sep.Time = trend_->SeparatorMarker();
            for (int s = 0; s < 5; ++s)
                records.push_back(sep);
        }
    }
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("history.rec"));
    if (KxWriteRecordFile(file, records.data(), records.size()) == 0)
        trend_->LoadFromFileEx(file, true);
    trend_->SetOptions(trend_->Options() | TrendOpt(opShowLast));
    trend_->SetStartRecording(true);  // a separator block between history and live records
}

QWidget* RecorderPage::readoutBox() {
    readout_ = new QTableWidget(9, 2);
    readout_->setHorizontalHeaderLabels({QStringLiteral("At the cursor"), QStringLiteral("Value")});
    readout_->verticalHeader()->hide();
    readout_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    readout_->setSelectionMode(QAbstractItemView::NoSelection);
    readout_->setItem(0, 0, new QTableWidgetItem(QStringLiteral("Time")));
    for (int ch = 1; ch <= 8; ++ch)
        readout_->setItem(ch, 0, new QTableWidgetItem(trend_->Channel(ch)->Name1()));
    for (int row = 0; row < 9; ++row)
        readout_->setItem(row, 1, new QTableWidgetItem);
    readout_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    readout_->horizontalHeader()->setStretchLastSection(true);
    readout_->setMinimumWidth(280);
    readout_->setFixedHeight(readout_->verticalHeader()->length() +
                             readout_->horizontalHeader()->height() + 4);
    showReadout();
    auto* box = new QGroupBox(QStringLiteral("ValueAtCursor"));
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(readout_);
    layout->addStretch(1);
    return box;
}

void RecorderPage::showReadout() {
    const TVAtCursor* v = trend_->ValueAtCursor();
    const QString none = QStringLiteral("\u2014");
    readout_->item(0, 1)->setText(v->DataValid() ? DateTimeToStr(v->Time()) : none);
    for (int ch = 1; ch <= 8; ++ch) {
        const TChSettings* c = trend_->Channel(ch);
        readout_->item(ch, 1)->setText(v->DataValid()
                                           ? FormatFloat(QStringLiteral("##0.0#"), v->ValueCh(ch)) +
                                                 QLatin1Char(' ') + c->ValueUnit()
                                           : none);
    }
}

QWidget* RecorderPage::buttonRow() {
    auto* row = new QHBoxLayout;
    auto button = [row](const QString& text) {
        auto* b = new QPushButton(text);
        row->addWidget(b);
        return b;
    };
    flowButton_ = button(QStringLiteral("Stop recording"));
    connect(flowButton_, &QPushButton::clicked, this, [this] { toggleFlow(); });
    connect(button(QStringLiteral("Fast for 10 s")), &QPushButton::clicked, this,
            [this] { trend_->RunInterval2(100); });
    connect(button(QStringLiteral("Zoom in")), &QPushButton::clicked, this,
            [this] { trend_->ZoomYIn(); });
    connect(button(QStringLiteral("Zoom out")), &QPushButton::clicked, this,
            [this] { trend_->ZoomYOut(); });
    connect(button(QStringLiteral("Follow")), &QPushButton::clicked, this, [this] {
        trend_->SetFlow(true);
        trend_->SetYDefault();
    });
    connect(button(QStringLiteral("Save\u2026")), &QPushButton::clicked, this, [this] {
        const QString f = QFileDialog::getSaveFileName(this, QStringLiteral("Save records"),
                                                       QString(), QStringLiteral("*.rec"));
        if (!f.isEmpty()) SaveTo(f);
    });
    connect(button(QStringLiteral("Load\u2026")), &QPushButton::clicked, this, [this] {
        const QString f = QFileDialog::getOpenFileName(this, QStringLiteral("Load records"),
                                                       QString(), QStringLiteral("*.rec"));
        if (!f.isEmpty()) LoadFrom(f);
    });
    connect(button(QStringLiteral("Print to PDF\u2026")), &QPushButton::clicked, this, [this] {
        const QString f = QFileDialog::getSaveFileName(this, QStringLiteral("Print to PDF"),
                                                       QString(), QStringLiteral("*.pdf"));
        if (!f.isEmpty()) PrintTo(f);
    });
    status_ = new QLabel;
    status_->setObjectName(QStringLiteral("hintText"));
    row->addWidget(status_, 1);
    auto* w = new QWidget;
    w->setLayout(row);
    return w;
}

QWidget* RecorderPage::miniBox() {
    auto* row = new QHBoxLayout;
    for (int i = 0; i < 4; ++i) {
        const ChannelPreset& p = presets()[size_t(i + 2)];
        auto* m = new TKxMiniTrend;
        m->SetBounds(0, 0, 180, 48);
        m->setFixedSize(180, 48);
        m->SetInterval(250);
        m->SetShowLastValue(true);
        TChSettings* c = m->Channel(1);
        c->SetName1(QString::fromUtf8(p.name));
        c->SetValueUnit(QString::fromUtf8(p.unit));
        c->SetValueTo(p.to);
        c->SetValueFrom(p.from);
        c->SetColor(trend_->Channel(i + 3)->Color());
        // The same recent history as the trend's channel.
        m->SetStartRecording(false);
        for (int32_t r = std::max(0, trend_->RecordCount() - 170); r < trend_->RecordCount(); ++r)
            if (!trend_->IsSeparator(r))
                m->AddValue(trend_->DigitToValue(i + 3, trend_->Records()[r].Ch[i + 2]));
        m->SetStartRecording(true);
        minis_.push_back(m);
        auto* cell = new QVBoxLayout;
        cell->addWidget(new QLabel(QString::fromUtf8(p.name)));
        cell->addWidget(m);
        row->addLayout(cell);
    }
    row->addStretch(1);
    auto* box = new QGroupBox(QStringLiteral("TKxMiniTrend: one channel each, for dense panels"));
    box->setLayout(row);
    return box;
}

QWidget* RecorderPage::pumpBox() {
    const PumpChart chart = DrawPumpChart(360, 230);
    pump_ = new TKxOperatingPoint;
    pump_->SetCharacteristicBMP(chart.picture);
    // The marker's range is the chart's axes: flow 0..30 left to right, head 0..50 up.
    const QRect& a = chart.plot;
    pump_->IndRect()->SetxyRect(TRect{a.left(), a.top(), a.right() + 1, a.bottom() + 1});
    pump_->SignalSettingsX()->SetValueTo(float(PumpChart::kFlowMax));
    pump_->SignalSettingsX()->SetValueFrom(0.0f);
    pump_->SignalSettingsY()->SetValueTo(float(PumpChart::kHeadMax));
    pump_->SignalSettingsY()->SetValueFrom(0.0f);
    pump_->SetInterval(250);
    pump_->SetTailArraySize(24);
    pump_->setFixedSize(chart.picture.size());
    Step(0.0);
    pump_->Loaded();
    auto* row = new QHBoxLayout;
    row->addWidget(pump_);
    row->addWidget(HintLabel(QStringLiteral(
                       "The feed pump's speed follows the demand: its operating point (the "
                       "yellow cross) runs along the system curve, where the pump curve of "
                       "the speed meets it, and the tail shows the last six seconds. The "
                       "chart is a picture the application draws; the component only "
                       "moves the marker over it, four times a second.")),
                   1, Qt::AlignTop);
    auto* box = new QGroupBox(QStringLiteral("TKxOperatingPoint: the feed pump on its curves"));
    box->setLayout(row);
    return box;
}

double RecorderPage::PumpSpeed() const {
    return 0.84 + 0.12 * std::sin(time_ * 2.0 * M_PI / 40.0) +
           0.03 * std::sin(time_ * 2.0 * M_PI / 7.3);
}

void RecorderPage::toggleFlow() {
    const bool on = !trend_->StartRecording();
    trend_->SetStartRecording(on);
    if (on) trend_->SetFlow(true);
    flowButton_->setText(on ? QStringLiteral("Stop recording") : QStringLiteral("Start recording"));
}

void RecorderPage::SaveTo(const QString& file) {
    const int e = trend_->SaveToFile(file);
    status_->setText(
        e == 0 ? QStringLiteral("Saved %1 records.").arg(trend_->RecordCount())
               : QStringLiteral("Not saved: %1").arg(QString::fromLocal8Bit(std::strerror(e))));
}

void RecorderPage::LoadFrom(const QString& file) {
    // A load that replaces the records clears them before it opens the file: check first,
    // so that a wrong name does not cost the shift on screen.
    if (!QFileInfo(file).isReadable()) {
        status_->setText(QStringLiteral("Not loaded: %1 cannot be read").arg(file));
        return;
    }
    const int e = trend_->LoadFromFileEx(file, true);
    flowButton_->setText(QStringLiteral("Start recording"));
    status_->setText(
        e == 0 ? QStringLiteral("Loaded %1 records; recording stopped.").arg(trend_->RecordCount())
               : QStringLiteral("Not loaded: %1").arg(QString::fromLocal8Bit(std::strerror(e))));
}

void RecorderPage::PrintTo(const QString& pdfFile) {
    TKxPrintTrend printer;
    printer.SetTrend(trend_);
    printer.SetTitle(QStringLiteral("Reactor R-101, last records"));
    const bool ok = printer.PrintToPdf(pdfFile);
    status_->setText(ok ? QStringLiteral("Printed to %1.").arg(pdfFile)
                        : QStringLiteral("Not printed."));
}

void RecorderPage::Step(double seconds) {
    time_ += seconds;
    if (pump_) {
        const QPointF op = PumpOperatingPoint(PumpSpeed());
        pump_->SetValueX(float(op.x()));
        pump_->SetValueY(float(op.y()));
    }
    for (size_t i = 0; i < processes_.size(); ++i) {
        const ChannelPreset& p = presets()[i];
        const float v = float(ValueAt(processes_[i].Advance(seconds), p.from, p.to, false));
        trend_->Channel(int(i) + 1)->SetValue(v);
        if (i >= 2 && i < 2 + minis_.size()) minis_[i - 2]->Channel(1)->SetValue(v);
    }
}

}  // namespace kxgallery
