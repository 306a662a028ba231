#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <set>

#include "gallerywindow.h"
#include "kx/indicators/rmeter.h"
#include "metercard.h"
#include "meterpresets.h"
#include "roundmeterpage.h"
#include "screenshots.h"

namespace kxgallery {
namespace {

bool overflowing(const kx::TKxRMeter* m) {
    return m->OverflowHigh() || m->OverflowLow();
}

bool inLimitAlarm(const kx::TKxRMeter* m) {
    return !overflowing(m) && (m->UpperExceeded() || m->LowerExceeded());
}

TEST(RoundMeterPage, ShowsTheConfigurationsTheGalleryPromises) {
    RoundMeterPage page(GalleryWindow::kStartTime);
    std::set<QString> classes;
    std::set<int32_t> shapes;
    bool logarithmic = false, sectorsOver = false, sectorsInside = false;
    for (int i = 0; i < page.MeterCount(); ++i) {
        const kx::TKxRMeter* m = page.Meter(i);
        classes.insert(QString::fromLatin1(m->metaObject()->className()));
        shapes.insert(m->ArrowSettings()->Shape());
        logarithmic = logarithmic || m->LogScale();
        sectorsOver = sectorsOver || m->SectorSettings()->Offset() < 0;
        sectorsInside = sectorsInside || m->SectorSettings()->Offset() >= 0;
        EXPECT_FALSE(m->SignalSettings()->Name1().isEmpty());
        EXPECT_FALSE(m->SignalSettings()->ValueUnit().isEmpty());
        EXPECT_TRUE(m->IsLoaded());
        EXPECT_EQ(m->UpdateCount(), 0) << "meter " << i << " still in its update phase";
    }
    EXPECT_EQ(classes,
              (std::set<QString>{"kx::TKx120Meter", "kx::TKx180Meter", "kx::TKx270Meter"}));
    EXPECT_EQ(shapes, (std::set<int32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_TRUE(logarithmic);
    EXPECT_TRUE(sectorsOver);
    EXPECT_TRUE(sectorsInside);
    const kx::TKxRMeter* log = page.Meter(LogSwitchMeter());
    EXPECT_TRUE(log->LogScale());
    EXPECT_FLOAT_EQ(log->SignalSettings()->ValueFrom(), 1.0f);
    EXPECT_FLOAT_EQ(log->SignalSettings()->ValueTo(), 10000.0f);
}

// The screenshots are taken after kScreenshotSteps steps from kStartTime; the phase is
// chosen so that they show every state worth seeing.
TEST(RoundMeterPage, ScreenshotPhaseShowsOverflowLimitAlarmAndSpreadMarks) {
    RoundMeterPage page(GalleryWindow::kStartTime);
    for (int i = 0; i < kScreenshotSteps; ++i)
        page.Step(GalleryWindow::kStepSeconds);
    int over = 0, alarm = 0, spread = 0;
    for (int i = 0; i < page.MeterCount(); ++i) {
        const kx::TKxRMeter* m = page.Meter(i);
        if (overflowing(m)) {
            ++over;
            EXPECT_TRUE(m->Blinking()) << "meter " << i;
            // The needle stands beyond the arc.
            EXPECT_TRUE(m->NeedlePosition() < 0 || m->NeedlePosition() > 1000) << "meter " << i;
        }
        if (inLimitAlarm(m)) {
            ++alarm;
            EXPECT_TRUE(m->Blinking()) << "meter " << i;
        }
        if (m->MaxPPT() - m->MinPPT() >= 150) ++spread;
    }
    EXPECT_GE(over, 1);
    EXPECT_GE(alarm, 1);
    EXPECT_GE(spread, page.MeterCount() * 2 / 3);
    EXPECT_NEAR(page.SimulatedTime(), kScreenshotSteps * GalleryWindow::kStepSeconds, 1e-9);
}

TEST(RoundMeterPage, NeedleComboSetsEveryMeterAndEntryZeroRestoresTheirOwn) {
    RoundMeterPage page(0.0);
    std::vector<int32_t> own;
    for (int i = 0; i < page.MeterCount(); ++i)
        own.push_back(page.Meter(i)->ArrowSettings()->Shape());
    for (int shape = 0; shape < 8; ++shape) {
        page.ShapeCombo()->setCurrentIndex(shape + 1);
        for (int i = 0; i < page.MeterCount(); ++i) {
            EXPECT_EQ(page.Meter(i)->ArrowSettings()->Shape(), shape);
            EXPECT_TRUE(
                page.Card(i)->CaptionText().contains(QStringLiteral("needle %1").arg(shape)));
        }
    }
    page.ShapeCombo()->setCurrentIndex(0);
    for (int i = 0; i < page.MeterCount(); ++i)
        EXPECT_EQ(page.Meter(i)->ArrowSettings()->Shape(), own[size_t(i)]);
}

TEST(RoundMeterPage, StepsBoxSetsEveryScaleAndZeroRestoresTheirOwn) {
    RoundMeterPage page(0.0);
    std::vector<int32_t> own;
    for (int i = 0; i < page.MeterCount(); ++i)
        own.push_back(page.Meter(i)->ScaleSettings()->Steps());
    for (int steps : {1, 7, 20}) {
        page.StepsSpin()->setValue(steps);
        for (int i = 0; i < page.MeterCount(); ++i)
            EXPECT_EQ(page.Meter(i)->ScaleSettings()->Steps(), steps);
    }
    page.StepsSpin()->setValue(0);
    for (int i = 0; i < page.MeterCount(); ++i)
        EXPECT_EQ(page.Meter(i)->ScaleSettings()->Steps(), own[size_t(i)]);
}

TEST(RoundMeterPage, LogarithmicSwitchTogglesOnlyItsMeterAndKeepsTheRange) {
    RoundMeterPage page(0.0);
    const kx::TKxRMeter* m = page.Meter(LogSwitchMeter());
    ASSERT_TRUE(page.LogCheck()->isChecked());
    // Halfway through the process's decades: 100 mbar, at mid scale only when logarithmic.
    page.PauseButton()->setChecked(true);
    for (bool on : {false, true, false}) {
        page.LogCheck()->setChecked(on);
        EXPECT_EQ(m->LogScale(), on);
        EXPECT_FLOAT_EQ(m->SignalSettings()->ValueFrom(), 1.0f);
        EXPECT_FLOAT_EQ(m->SignalSettings()->ValueTo(), 10000.0f);
        EXPECT_TRUE(page.Card(LogSwitchMeter())
                        ->CaptionText()
                        .contains(on ? QStringLiteral("logarithmic") : QStringLiteral("linear")));
    }
    for (int i = 0; i < page.MeterCount(); ++i) {
        if (i == LogSwitchMeter()) continue;
        EXPECT_FALSE(page.Meter(i)->LogScale()) << i;
    }
}

TEST(RoundMeterPage, PauseFreezesTheProcessesAndHandsOneMeterToTheSlider) {
    RoundMeterPage page(GalleryWindow::kStartTime);
    kx::TKxRMeter* manual = page.Meter(ManualMeter());
    page.Step(GalleryWindow::kStepSeconds);
    EXPECT_FALSE(page.ManualSlider()->isEnabled());
    page.ManualSlider()->setValue(1050);  // ignored while running
    const float running = manual->Value();

    page.PauseButton()->setChecked(true);
    EXPECT_TRUE(page.Paused());
    EXPECT_TRUE(page.ManualSlider()->isEnabled());
    EXPECT_EQ(manual->Value(), running);
    std::vector<float> frozen;
    for (int i = 0; i < page.MeterCount(); ++i)
        frozen.push_back(page.Meter(i)->Value());
    const double time = page.SimulatedTime();
    for (int k = 0; k < 10; ++k)
        page.Step(GalleryWindow::kStepSeconds);
    EXPECT_EQ(page.SimulatedTime(), time);
    for (int i = 0; i < page.MeterCount(); ++i)
        EXPECT_EQ(page.Meter(i)->Value(), frozen[size_t(i)]);

    struct Case {
        int ppt;
        bool high, low;
    };
    const float from = manual->SignalSettings()->ValueFrom();
    const float to = manual->SignalSettings()->ValueTo();
    for (const Case& c : {Case{1050, true, false}, Case{500, false, false}, Case{-50, false, true},
                          Case{0, false, false}}) {
        page.ManualSlider()->setValue(c.ppt);
        EXPECT_NEAR(manual->Value(), from + (to - from) * c.ppt / 1000.0f, 1e-4f) << c.ppt;
        EXPECT_EQ(manual->OverflowHigh(), c.high) << c.ppt;
        EXPECT_EQ(manual->OverflowLow(), c.low) << c.ppt;
    }

    page.PauseButton()->setChecked(false);
    EXPECT_FALSE(page.ManualSlider()->isEnabled());
    EXPECT_EQ(manual->Value(), running);  // the process has the meter back
    page.Step(GalleryWindow::kStepSeconds);
    EXPECT_GT(page.SimulatedTime(), time);
}

TEST(RoundMeterPage, EventLogListsLimitAndRangeTransitionsNewestFirst) {
    RoundMeterPage page(GalleryWindow::kStartTime);
    page.PauseButton()->setChecked(true);
    page.ManualSlider()->setValue(500);
    page.EventLog()->clear();
    const QString tag = GalleryMeters().at(size_t(ManualMeter())).name2;

    page.ManualSlider()->setValue(1050);  // above the upper limit and the range at once
    ASSERT_EQ(page.EventLog()->count(), 2);
    EXPECT_TRUE(page.EventLog()->item(0)->text().contains(tag + QStringLiteral("  over range")));
    EXPECT_TRUE(page.EventLog()->item(1)->text().contains(tag + QStringLiteral("  high limit")));

    page.ManualSlider()->setValue(1000);  // back in range, still above the limit
    ASSERT_EQ(page.EventLog()->count(), 3);
    EXPECT_TRUE(page.EventLog()->item(0)->text().contains(QStringLiteral("in range")));

    page.ManualSlider()->setValue(1001);  // not far enough to change the state again
    page.ManualSlider()->setValue(1000);
    EXPECT_EQ(page.EventLog()->count(), 5);
    page.ManualSlider()->setValue(999);
    EXPECT_EQ(page.EventLog()->count(), 5);
    page.ManualSlider()->setValue(500);
    ASSERT_EQ(page.EventLog()->count(), 6);
    EXPECT_TRUE(page.EventLog()->item(0)->text().contains(QStringLiteral("limits OK")));
}

TEST(RoundMeterPage, ResetMinMaxCollapsesTheMarksOntoTheReading) {
    RoundMeterPage page(GalleryWindow::kStartTime);
    for (int k = 0; k < 40; ++k)
        page.Step(GalleryWindow::kStepSeconds);
    page.ResetButton()->click();
    for (int i = 0; i < page.MeterCount(); ++i) {
        EXPECT_EQ(page.Meter(i)->MinPPT(), page.Meter(i)->PPT()) << i;
        EXPECT_EQ(page.Meter(i)->MaxPPT(), page.Meter(i)->PPT()) << i;
    }
}

TEST(MeterCard, KeepsItsMeterCentredAboveTheCaptionWhenTheMeterResizes) {
    const MeterPreset& preset = GalleryMeters().front();
    auto* meter = CreateMeter(preset, 0.5, nullptr);
    MeterCard card(meter);
    card.SetCaption(QStringLiteral("Title"), {QStringLiteral("line")});
    card.resize(400, 360);
    card.show();  // resize events reach shown widgets at once
    for (int size : {9, 14, 6}) {
        meter->ScaleSettings()->Font()->SetSize(size);
        meter->CalcSize();  // AutoSize applies the new size
        const QRect g = meter->geometry();
        EXPECT_EQ(g.left(), (card.width() - g.width()) / 2) << size;
        EXPECT_GE(g.top(), 10) << size;
        EXPECT_GE(card.sizeHint().width(), g.width()) << size;
        EXPECT_GE(card.sizeHint().height(), g.height()) << size;
    }
    EXPECT_GT(card.sizeHint().height(), meter->height() + 20);
}

}  // namespace
}  // namespace kxgallery
