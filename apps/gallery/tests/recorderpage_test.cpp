#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

#include "kx/recorders/minitrend.h"
#include "kx/recorders/oppoint.h"
#include "kx/recorders/trend.h"
#include "pumpcurve.h"
#include "recorderpage.h"

namespace kxgallery {
namespace {

using namespace kx;

// The page opens with the loaded history, a stop in it and the block that marks the start
// of live recording.
TEST(RecorderPage, OpensWithHistoryAndRecording) {
    RecorderPage page(158.5);
    TKxTrend* t = page.Trend();
    EXPECT_TRUE(t->StartRecording());
    EXPECT_EQ(t->RecordCount(), 900 + 5 + 5);
    int separators = 0;
    for (int32_t i = 0; i < t->RecordCount(); ++i)
        separators += t->IsSeparator(i);
    EXPECT_EQ(separators, 10);
    EXPECT_EQ(page.MiniTrends().size(), 4u);
    EXPECT_EQ(page.Title(), QStringLiteral("KxAnalogInd \u00B7 Trend recorder"));
}

TEST(RecorderPage, StepsFeedTheChannels) {
    RecorderPage page(158.5);
    page.Step(0.05);
    for (int ch = 1; ch <= 8; ++ch) {
        const TChSettings* c = page.Trend()->Channel(ch);
        EXPECT_GE(page.Trend()->ChArray(ch), 0);
        EXPECT_GT(c->Value(), c->ValueFrom() - 1.0f) << ch;
    }
    EXPECT_EQ(page.MiniTrends()[0]->Channel(1)->Value(), page.Trend()->Channel3()->Value());
}

// The pump's operating point is where its curve at the speed meets the system curve, and
// the display follows it from step to step.
TEST(RecorderPage, OperatingPointFollowsThePump) {
    for (double speed : {0.7, 0.84, 1.0}) {
        const QPointF op = PumpOperatingPoint(speed);
        EXPECT_NEAR(op.y(), 10.0 + 0.025 * op.x() * op.x(), 1e-9);
        EXPECT_NEAR(op.y(), speed * speed * 48.0 - 0.035 * op.x() * op.x(), 1e-9);
    }
    RecorderPage page(158.5);
    TKxOperatingPoint* p = page.OperatingPoint();
    EXPECT_EQ(p->size(), QSize(360, 230));
    EXPECT_EQ(p->Interval(), 250);
    for (double dt : {0.0, 3.0, 11.0}) {
        page.Step(dt);
        const QPointF op = PumpOperatingPoint(page.PumpSpeed());
        EXPECT_FLOAT_EQ(p->ValueX(), float(op.x()));
        EXPECT_FLOAT_EQ(p->ValueY(), float(op.y()));
        const TPoint pm = p->UnclampedPerMille();
        EXPECT_GT(pm.X, 0);
        EXPECT_LT(pm.X, 1000);
        EXPECT_GT(pm.Y, 0);
        EXPECT_LT(pm.Y, 1000);
    }
}

TEST(RecorderPage, FlowButtonStopsAndRestartsWithASeparator) {
    RecorderPage page(158.5);
    TKxTrend* t = page.Trend();
    page.FlowButton()->click();
    EXPECT_FALSE(t->StartRecording());
    const int32_t before = t->RecordCount();
    page.FlowButton()->click();
    EXPECT_TRUE(t->StartRecording());
    EXPECT_EQ(t->RecordCount(), before + 5);
}

TEST(RecorderPage, SaveLoadAndPrintReportTheirResults) {
    QTemporaryDir dir;
    RecorderPage page(158.5);
    const int32_t count = page.Trend()->RecordCount();
    page.SaveTo(dir.filePath(QStringLiteral("shift.rec")));
    EXPECT_EQ(page.Status()->text(), QStringLiteral("Saved %1 records.").arg(count));
    page.LoadFrom(dir.filePath(QStringLiteral("shift.rec")));
    EXPECT_EQ(page.Trend()->RecordCount(), count);
    EXPECT_FALSE(page.Trend()->StartRecording());
    page.LoadFrom(dir.filePath(QStringLiteral("missing.rec")));
    EXPECT_TRUE(page.Status()->text().startsWith(QStringLiteral("Not loaded: ")));
    EXPECT_EQ(page.Trend()->RecordCount(), count);  // a wrong name keeps what is shown
    page.PrintTo(dir.filePath(QStringLiteral("shift.pdf")));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("shift.pdf"))));
    page.SaveTo(dir.filePath(QStringLiteral("no/such/dir/x.rec")));
    EXPECT_TRUE(page.Status()->text().startsWith(QStringLiteral("Not saved: ")));
}

TEST(RecorderPage, CursorReadoutFillsTheTable) {
    RecorderPage page(158.5);
    TKxTrend* t = page.Trend();
    page.FlowButton()->click();  // stopped: the cursor follows the mouse
    t->PaintToSurface();
    EXPECT_EQ(page.Readout()->item(1, 1)->text(), QStringLiteral("\u2014"));
    t->SetCursorLineAt(t->CurveArea().Left + 40, t->CurveArea().Top + 10);
    ASSERT_TRUE(t->ValueAtCursor()->DataValid());
    EXPECT_TRUE(page.Readout()->item(1, 1)->text().endsWith(QStringLiteral(" \u00B0C")));
    EXPECT_NE(page.Readout()->item(0, 1)->text(), QStringLiteral("\u2014"));
}

}  // namespace
}  // namespace kxgallery
