// The trend's display: layout of the curve bitmap, the vertical mapping, grid, labels and
// separators, what a tick puts on the surface, and the cursor line and its readout.
#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "common/ratio.h"
#include "kx/host/recordingcanvas.h"
#include "recorders/trend_fixture.h"

namespace kx::test {
namespace {

bool near(QRgb a, QRgb b, int tolerance) {
    return std::abs(qRed(a) - qRed(b)) <= tolerance &&
           std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
           std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

// The centre columns of the labels among columns holding text (gaps of 10 or more part
// two labels).
std::vector<int> LabelCentres(const std::vector<int>& cols) {
    std::vector<int> centres;
    for (size_t i = 0; i < cols.size();) {
        size_t j = i;
        while (j + 1 < cols.size() && cols[j + 1] - cols[j] < 10)
            ++j;
        centres.push_back((cols[i] + cols[j] + 1) / 2);
        i = j + 1;
    }
    return centres;
}

class TrendDisplayTest : public TrendTest {
  protected:
    // Curves off, so that only grid, labels and separators draw.
    void HideChannels() {
        for (int ch = 1; ch <= 8; ++ch)
            trend->Channel(ch)->SetVisible(false);
    }
    QRgb CurvePixel(int x, int y) const { return trend->CurveBitmap().Image().pixel(x, y); }
    QRgb SurfacePixel(int x, int y) const {
        return trend->Surface().Image().pixel(trend->CurveArea().Left + x,
                                              trend->CurveArea().Top + y);
    }
    // Whether the curve area on the surface holds exactly the curve bitmap.
    bool SurfaceShowsCurves() const {
        const TRect a = trend->CurveArea();
        if (a.Right <= a.Left || a.Bottom <= a.Top)
            return trend->CurveBitmap().Width() * trend->CurveBitmap().Height() == 0;
        const QImage shown =
            trend->Surface().Image().copy(a.Left, a.Top, a.Right - a.Left, a.Bottom - a.Top);
        return shown == trend->CurveBitmap().Image();
    }
    // Columns of the curve bitmap holding colour c between rows y0 and y1.
    // Text is anti-aliased: within tolerance counts as the colour.
    std::vector<int> ColumnsWith(TColor c, int y0, int y1, int tolerance = 0) const {
        std::vector<int> out;
        const QImage& img = trend->CurveBitmap().Image();
        for (int x = 0; x < img.width(); ++x)
            for (int y = std::max(y0, 0); y <= std::min(y1, img.height() - 1); ++y)
                if (near(img.pixel(x, y), ToQRgb(c), tolerance)) {
                    out.push_back(x);
                    break;
                }
        return out;
    }
};

TEST_F(TrendDisplayTest, BottomReserveFollowsTheOptions) {
    struct Case {
        const char* what;
        TTrendOptions options;
        int labelRows;
        int extra;  // beyond the label rows
    };
    const TTrendOptions scales = TrendOpt(opRightScale);
    const Case cases[] = {
        {"time", TrendOpt(opTime) | scales, 1, 4},
        {"date and time", TrendOpt(opDate) | TrendOpt(opTime) | scales, 2, 4},
        {"date", TrendOpt(opDate), 1, 4},
        {"scale without labels", scales, 1, 4},
        {"nothing", 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        trend->SetOptions(c.options);
        Paint();
        const TRect a = trend->CurveArea();
        EXPECT_EQ(trend->CurveBitmap().Width(), a.Right - a.Left);
        EXPECT_EQ(trend->CurveBitmap().Height(), a.Bottom - a.Top);
        EXPECT_EQ(trend->Baseline(),
                  a.Bottom - a.Top - 1 - c.labelRows * trend->LabelHeight() - c.extra);
    }
}

TEST_F(TrendDisplayTest, LayoutStaysOnTheControl) {
    const QString longText(300, QChar(u'W'));
    trend->SetCaption(longText);
    trend->Channel1()->SetValueUnit(longText);
    trend->SetLeftScaleCh(2);
    trend->SetOptions(trend->Options() | TrendOpt(opDate));
    AddDigits(300);
    for (QSize s : {QSize(1, 1), QSize(30, 20), QSize(120, 60), QSize(400, 250), QSize(4000, 300),
                    QSize(200, 2000)}) {
        SCOPED_TRACE(s.width() * 10000 + s.height());
        Paint(s.width(), s.height());
        const TRect a = trend->CurveArea();
        EXPECT_GE(a.Left, 0);
        EXPECT_GE(a.Top, 0);
        EXPECT_LE(a.Right, s.width());
        EXPECT_LE(a.Bottom, s.height());
        EXPECT_LE(a.Left, a.Right);
        EXPECT_LE(a.Top, a.Bottom);
        EXPECT_TRUE(SurfaceShowsCurves());
    }
}

// The texts of the top row and the scales, measured with fixed metrics: the caption in the
// middle of the row, a label on every grid line, each centred on its line.
TEST_F(TrendDisplayTest, CaptionAndScaleLabelsStandOnTheirLines) {
    trend->SetCaption(QStringLiteral("Reactor"));
    Paint();
    TRecordingCanvas rec(&trend->SurfaceImage());
    trend->SetCanvas(&rec);
    trend->Invalidate();
    trend->PaintToSurface();
    trend->SetCanvas(nullptr);
    const TRect a = trend->CurveArea();
    const int inner = trend->BevelOuter()->TotalWidth();
    std::vector<std::pair<QString, int>> texts;  // text, vertical centre
    for (const TCanvasCall& c : rec.CallsOf(QStringLiteral("TextOut")))
        texts.emplace_back(c.Text, c.Args[1] + rec.LineHeight / 2);
    const auto caption = std::find_if(texts.begin(), texts.end(), [](const auto& t) {
        return t.first == QStringLiteral("Reactor");
    });
    ASSERT_NE(caption, texts.end());
    EXPECT_NEAR(caption->second, (inner + a.Top) / 2, 1);
    std::vector<QString> labels;
    for (const auto& [text, centre] : texts) {
        if (!text.endsWith(QStringLiteral(".0"))) continue;
        labels.push_back(text);
        const int k = int(std::lround(text.toDouble() / 10.0));
        EXPECT_NEAR(centre, a.Top + trend->Baseline() - trend->Baseline() * k / 10, 1) << k;
    }
    EXPECT_EQ(labels.size(), 11u);  // 0.0 .. 100.0
    EXPECT_EQ(labels.front(), QStringLiteral("0.0"));
    EXPECT_EQ(labels.back(), QStringLiteral("100.0"));
}

// Scale labels tell the value at their grid line, also with the curves moved or zoomed.
TEST_F(TrendDisplayTest, ScaleLabelsFollowOffsetAndZoom) {
    Paint();
    struct Case {
        int offset;
        float zoom;
    };
    for (const Case& c : {Case{0, 1.0f}, Case{20, 1.0f}, Case{-20, 1.0f}, Case{0, 2.0f}}) {
        SCOPED_TRACE(c.offset);
        trend->SetYDefault();
        trend->MoveY(c.offset);
        trend->SetZoomY(c.zoom);
        TRecordingCanvas rec(&trend->SurfaceImage());
        trend->SetCanvas(&rec);
        trend->PaintToSurface();
        trend->SetCanvas(nullptr);
        QStringList labels;
        for (const TCanvasCall& call : rec.CallsOf(QStringLiteral("TextOut")))
            labels << call.Text;
        // Grid line 0 (the baseline) stands for digit offset * zoom / (b / 1000).
        const double digit0 = c.offset * c.zoom * 1000.0 / trend->Baseline();
        EXPECT_TRUE(labels.contains(trend->ScaleLabelText(1, digit0)))
            << labels.join(' ').toStdString();
        EXPECT_TRUE(labels.contains(trend->ScaleLabelText(1, digit0 + 1000.0 * c.zoom)));
    }
    // A one-digit channel spans the whole height.
    trend->Channel2()->SetDigitalTo(1);
    EXPECT_DOUBLE_EQ(trend->PixelFactor(2), trend->Baseline());
    trend->Channel2()->SetDigitalTo(0);
}

TEST_F(TrendDisplayTest, GridLinesStandOnEveryDivision) {
    HideChannels();
    trend->SetColorGrid(clRed);
    AddDigits(300);
    Paint();
    const int b = trend->Baseline();
    for (int x : {60, 120, 180})
        for (int y : {0, b / 3, b})
            EXPECT_EQ(CurvePixel(x, y), ToQRgb(clRed)) << x << "," << y;
    EXPECT_NE(CurvePixel(59, b / 3 + 1), ToQRgb(clRed));
    EXPECT_NE(CurvePixel(0, b / 3 + 1), ToQRgb(clRed));  // none at column 0
    EXPECT_NE(CurvePixel(60, b + 2), ToQRgb(clRed));     // none through the labels
    trend->SetOptions(trend->Options() & ~TrendOpt(opGrid));
    trend->PaintToSurface();
    EXPECT_NE(CurvePixel(60, b / 3), ToQRgb(clRed));
}

// Channels 7 and 8 as limits: a curve in the limit's colour, or the band beyond it.
TEST_F(TrendDisplayTest, LimitChannels) {
    struct Case {
        bool upper, filled;
    };
    for (const Case& c :
         {Case{true, false}, Case{true, true}, Case{false, false}, Case{false, true}}) {
        SCOPED_TRACE(std::to_string(c.upper) + std::to_string(c.filled));
        SetUp();
        HideChannels();
        TTrendLimit& l = c.upper ? *trend->LimitUpper() : *trend->LimitLower();
        l.SetColor(clBlue);
        l.SetFilled(c.filled);
        trend->SetOptions(trend->Options() | TrendOpt(c.upper ? opCh7isUL : opCh8isLL));
        for (int i = 0; i < 100; ++i)
            trend->AddDigit(0, 0, 0, 0, 0, 0, 730, 270);
        Paint();
        const int ch = c.upper ? 7 : 8;
        const int y = trend->DigitY(ch, c.upper ? 730 : 270);
        EXPECT_EQ(CurvePixel(50, y), ToQRgb(clBlue));
        // Beyond the limit: filled or not.
        const int beyond = c.upper ? y / 2 : (y + trend->Baseline()) / 2 + 1;
        EXPECT_EQ(CurvePixel(50, beyond) == ToQRgb(clBlue), c.filled) << beyond;
    }
}

TEST_F(TrendDisplayTest, DisplayableRecordsBeforeTheFirstLayout) {
    TKxTrend tiny;
    tiny.SetBounds(0, 0, 4, 4);
    EXPECT_EQ(tiny.DisplayableRecords(), 1);
    TKxTrend wide;
    wide.SetBounds(0, 0, 400, 100);
    EXPECT_EQ(wide.DisplayableRecords(), 400 - 2 * wide.BevelOuter()->TotalWidth());
    wide.PaintToSurface();
    EXPECT_EQ(wide.DisplayableRecords(), wide.CurveBitmap().Width());
    EXPECT_EQ(wide.CurveArea().Bottom, 100 - wide.BevelOuter()->TotalWidth());
    EXPECT_EQ(wide.BevelOuter()->TotalWidth(), 4);  // spacing 2, width 1, one line
}

TEST_F(TrendDisplayTest, DigitsMapThroughZoomAndOffset) {
    Paint();
    const int b = trend->Baseline();
    struct Case {
        float zoom;
        int offset;
        int digit;
        int expected;
    };
    const Case cases[] = {
        {1.0f, 0, 0, b},
        {1.0f, 0, 1000, 0},
        {1.0f, 0, 500, b - int(std::nearbyint(b / 2.0))},
        {2.0f, 0, 1000, b - int(std::nearbyint(b / 2.0))},
        {0.5f, 0, 250, b - int(std::nearbyint(b / 2.0))},
        {1.0f, 7, 0, b + 7},
        {1.0f, -7, 1000, -7},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.digit);
        trend->SetYDefault();
        trend->SetZoomY(c.zoom);
        trend->MoveY(c.offset);
        EXPECT_EQ(trend->DigitY(1, c.digit), c.expected);
    }
    EXPECT_DOUBLE_EQ(trend->PixelFactor(1), b / 1000.0);
    EXPECT_EQ(trend->PixelFactor(0), 0.0);
}

TEST_F(TrendDisplayTest, TimeLabelsStandOnGridColumnsButNeverOnColumnZero) {
    HideChannels();
    trend->SetTimeFormat(QStringLiteral("hh:nn"));
    trend->SetColorTime(clRed);
    AddDigits(300);
    Paint(420, 250);
    ASSERT_EQ(trend->TimeLabelStep(), 1);
    const int h = trend->CurveBitmap().Height();
    const std::vector<int> cols = ColumnsWith(clRed, h - trend->LabelHeight(), h - 1, 90);
    ASSERT_FALSE(cols.empty());
    // Every label is centred on a multiple of 60; none lies around column 0.
    const std::vector<int> centres = LabelCentres(cols);
    const int count = int(centres.size());
    EXPECT_EQ(count, std::min(299, trend->CurveBitmap().Width() - 1) / 60);  // records 0..299
    for (int i = 0; i < count; ++i)
        EXPECT_NEAR(centres[i], 60 * (i + 1), 2);
}

TEST_F(TrendDisplayTest, WideLabelsSkipGridColumns) {
    HideChannels();
    trend->SetOptions(trend->Options() | TrendOpt(opDate));
    trend->SetColorTime(clRed);
    AddDigits(600);
    Paint(700, 250);
    const int step = trend->TimeLabelStep();
    ASSERT_GT(step, 1);
    const int h = trend->CurveBitmap().Height();
    const std::vector<int> centres = LabelCentres(
        ColumnsWith(clRed, h - 2 * trend->LabelHeight(), h - trend->LabelHeight() - 1, 90));
    ASSERT_FALSE(centres.empty());
    for (size_t i = 0; i < centres.size(); ++i)
        EXPECT_NEAR(centres[i], 60 * step * int(i + 1), 2);
}

TEST_F(TrendDisplayTest, SeparatorsAreFullHeightLines) {
    HideChannels();
    trend->SetOptions(trend->Options() & ~TrendOpt(opGrid));
    trend->SetColorSeparator(clRed);
    AddDigits(10);
    trend->SetStartRecording(true);  // five separators at 9..13
    trend->SetStartRecording(false);
    Paint();
    const int h = trend->CurveBitmap().Height();
    EXPECT_EQ(ColumnsWith(clRed, 0, h - 1), (std::vector<int>{9, 10, 11, 12, 13}));
    for (int y = 0; y < h; ++y)
        ASSERT_EQ(CurvePixel(11, y), ToQRgb(clRed)) << y;
}

TEST_F(TrendDisplayTest, FillChannelAndLimitBandsLieUnderTheGrid) {
    trend->SetFillChannelNo(2);
    trend->Channel2()->SetColor(clBlue);
    trend->SetColorGrid(clRed);
    for (int i = 0; i < 100; ++i)
        trend->AddDigit(0, 500, 0, 0, 0, 0, 0, 0);
    Paint();
    const int b = trend->Baseline();
    const int y = trend->DigitY(2, 500);
    // Between the curve and the baseline: blue, except on grid lines, which stay red.
    int blue = 0, red = 0;
    for (int row = y + 1; row < b; ++row) {
        const QRgb p = CurvePixel(30, row);
        blue += p == ToQRgb(clBlue);
        red += p == ToQRgb(clRed);
    }
    EXPECT_EQ(blue + red, b - y - 1);
    EXPECT_GT(red, 0);
    EXPECT_NE(CurvePixel(30, y - 3), ToQRgb(clBlue));
}

TEST_F(TrendDisplayTest, ATickPutsOnlyTheNewColumnsOnTheSurface) {
    AddDigits(50);
    Paint();
    TRecordingCanvas rec(&trend->SurfaceImage());
    trend->SetCanvas(&rec);
    Tick();
    trend->SetCanvas(nullptr);
    const auto copies = rec.CallsOf(QStringLiteral("CopyRect"));
    ASSERT_EQ(copies.size(), 1u);
    const auto& a = copies[0].Args;  // dest left, top, right, bottom, then the source
    EXPECT_LE(a[2] - a[0], 6);
    EXPECT_EQ(a[3] - a[1], trend->CurveBitmap().Height());
    EXPECT_LE(a[0], trend->CurveArea().Left + 50);
    EXPECT_GE(a[2], trend->CurveArea().Left + 51);
    EXPECT_TRUE(SurfaceShowsCurves());
}

// However the columns reach the surface (single ticks, scrolls, labels), the curve area
// always shows exactly the curve bitmap.
TEST_F(TrendDisplayTest, TicksKeepTheSurfaceEqualToTheCurveBitmap) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> value(-20.0f, 120.0f);
    trend->SetOptions(trend->Options() | TrendOpt(opDate));
    trend->SetFillChannelNo(3);
    trend->Channel2()->SetPenWidth(3);
    trend->SetMaxRecords(300);
    Paint(260, 200);
    for (int i = 0; i < 400; ++i) {
        for (int ch = 1; ch <= 8; ++ch)
            trend->Channel(ch)->SetValue(value(rng));
        Tick();
        ASSERT_TRUE(SurfaceShowsCurves()) << i;
    }
    EXPECT_LE(trend->RecordCount(), 301);
}

// A scroll moves the picture and draws only its edges anew; with one curve of pen width 1
// and no separators (where the order of drawing cannot matter) that must give exactly the
// bitmap a whole drawing gives, at every scroll, also when the bound deletes records.
TEST_F(TrendDisplayTest, ScrollingGivesTheBitmapOfAWholeDrawing) {
    struct Case {
        const char* what;
        int maxRecords;
        int fill;
        bool dates;
    };
    const Case cases[] = {{"unbounded", 100000, 0, false},
                          {"at the bound", 500, 0, false},
                          {"filled", 100000, 2, false},
                          {"dates on every other division", 100000, 0, true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetUp();
        std::mt19937 rng(11);
        std::uniform_real_distribution<float> value(0.0f, 100.0f);
        HideChannels();
        trend->Channel1()->SetVisible(true);
        trend->Channel2()->SetVisible(c.fill == 2);  // a band, not a second curve
        trend->SetFillChannelNo(c.fill);
        trend->SetOptions(trend->Options() & ~TrendOpt(opSeparator));
        trend->SetTimeFormat(QStringLiteral("nn:ss"));
        if (c.dates) trend->SetOptions(trend->Options() | TrendOpt(opDate));
        trend->SetMaxRecords(c.maxRecords);
        Paint(300, 200);
        int scrolls = 0;
        for (int i = 0; i < 900; ++i) {
            trend->Channel1()->SetValue(value(rng));
            trend->Channel2()->SetValue(value(rng) / 2);
            const int32_t first = trend->FirstDisplayedRecord();
            Tick();
            if (trend->FirstDisplayedRecord() == first) continue;
            ++scrolls;
            if (c.dates) {
                ASSERT_GT(trend->TimeLabelStep(), 1);
            }
            const QImage scrolled = trend->CurveBitmap().Image();
            trend->Invalidate();
            trend->PaintToSurface();
            ASSERT_EQ(scrolled, trend->CurveBitmap().Image()) << i;
        }
        EXPECT_GT(scrolls, 5);
    }
}

// On high-DPI screens the curve bitmap holds device pixels: ticks and scrolls (moved on a
// whole ratio, drawn anew on a fractional one) keep the surface equal to it and the scrolled
// picture equal to a whole drawing.
TEST_F(TrendDisplayTest, TicksAndScrollsAtDeviceRatios) {
    for (double ratio : {2.0, 1.5}) {
        SCOPED_TRACE(ratio);
        trend = std::make_unique<AtRatio<TKxTrend>>(ratio);
        trend->SetStartRecording(false);
        HideChannels();
        trend->Channel1()->SetVisible(true);
        trend->SetOptions(trend->Options() & ~TrendOpt(opSeparator));
        Paint(240, 160);
        ASSERT_EQ(trend->SurfaceRatio(), ratio);
        const TRect a = trend->CurveArea();
        int scrolls = 0;
        for (int i = 0; i < 400; ++i) {
            trend->Channel1()->SetValue(float((i * 37) % 100));
            const int32_t first = trend->FirstDisplayedRecord();
            Tick();
            const QImage& curves = trend->CurveBitmap().Image();
            const QImage shown = trend->Surface().Image().copy(
                trend->Surface().Image().width() * a.Left / trend->width(),
                trend->Surface().Image().height() * a.Top / trend->height(), curves.width(),
                curves.height());
            ASSERT_EQ(shown, curves) << i;
            if (trend->FirstDisplayedRecord() == first) continue;
            ++scrolls;
            const QImage scrolled = curves;
            trend->Invalidate();
            trend->PaintToSurface();
            ASSERT_EQ(scrolled, trend->CurveBitmap().Image()) << i;
        }
        EXPECT_GT(scrolls, 3);
    }
}

TEST_F(TrendDisplayTest, CursorReadoutFollowsTheMouse) {
    trend->Channel1()->SetValueFrom(-10.0f);
    AddDigits(100);
    trend->SetCursorLine(true);
    Paint();
    const TRect a = trend->CurveArea();
    int events = 0;
    QObject::connect(trend.get(), &TKxTrend::OnNewCursorPos, [&] { ++events; });
    TVAtCursor* v = trend->ValueAtCursor();
    struct Step {
        int x, y;
        bool valid;
        int record;
        int events;
    };
    const Step steps[] = {
        {a.Left + 10, a.Top + 5, true, 10, 1},
        {a.Left + 10, a.Top + 50, true, 10, 1},  // same column: nothing
        {a.Left + 40, a.Top + 5, true, 40, 2},
        {a.Left + 150, a.Top + 5, false, 40, 3},  // beyond the records
        {a.Left + 20, a.Top + 5, true, 20, 4},
        {a.Left - 1, a.Top + 5, false, 20, 5},  // leaving the area
        {a.Left - 5, a.Top + 5, false, 20, 5},  // once only
        {INT32_MIN, a.Top + 5, false, 20, 5},   // far outside, either way
        {INT32_MAX, INT32_MIN, false, 20, 5},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(int64_t(s.x) - a.Left);
        trend->SetCursorLineAt(s.x, s.y);
        EXPECT_EQ(v->DataValid(), s.valid);
        EXPECT_EQ(v->RecordNo(), s.record);
        EXPECT_EQ(events, s.events);
    }
    trend->SetCursorLineAt(a.Left + 30, a.Top + 5);
    // ValueFrom + stored digit x value per digit (0.11 per digit over -10..100).
    EXPECT_FLOAT_EQ(v->ValueCh1(), -10.0f + 30.0f * trend->Channel1()->ValuePerDigit());
    EXPECT_EQ(v->Time(), trend->Records()[30].Time);
}

TEST_F(TrendDisplayTest, CursorLineNeverEntersTheCurveBitmap) {
    HideChannels();
    AddDigits(100);
    Paint();
    const QImage before = trend->CurveBitmap().Image();
    trend->SetCursorLineAt(trend->CurveArea().Left + 33, trend->CurveArea().Top + 5);
    ASSERT_TRUE(trend->CursorShown());
    EXPECT_EQ(trend->CurveBitmap().Image(), before);
    // Not-mask: NOT (lime AND black) is white.
    EXPECT_EQ(SurfacePixel(33, 5), qRgb(255, 255, 255));
    EXPECT_EQ(SurfacePixel(34, 5), CurvePixel(34, 5));  // one pixel wide
    EXPECT_EQ(SurfacePixel(32, 5), CurvePixel(32, 5));
    // The line stops above the time labels.
    const int h = trend->CurveBitmap().Height();
    EXPECT_EQ(SurfacePixel(33, h - trend->LabelHeight() - 3), qRgb(255, 255, 255));
    EXPECT_EQ(SurfacePixel(33, h - trend->LabelHeight() - 1),
              CurvePixel(33, h - trend->LabelHeight() - 1));
    // Moving on restores the old column; leaving restores everything.
    trend->SetCursorLineAt(trend->CurveArea().Left + 40, trend->CurveArea().Top + 5);
    EXPECT_EQ(SurfacePixel(33, 5), CurvePixel(33, 5));
    trend->SetCursorLineAt(-1, -1);
    EXPECT_TRUE(SurfaceShowsCurves());
}

// Whatever moves the curves under it hides the cursor line until the mouse moves again.
TEST_F(TrendDisplayTest, ZoomAndOffsetHideTheCursor) {
    AddDigits(100);
    const std::function<void(TKxTrend&)> moves[] = {
        [](TKxTrend& t) { t.MoveY(3); }, [](TKxTrend& t) { t.SetZoomY(2.0f); },
        [](TKxTrend& t) { t.SetYDefault(); }, [](TKxTrend& t) { t.MoveX(10); },
        [](TKxTrend& t) { t.SetCursorLine(false); }};
    for (const auto& move : moves) {
        trend->SetCursorLine(true);
        trend->SetZoomY(1.5f);
        Paint();
        trend->SetCursorLineAt(trend->CurveArea().Left + 33, trend->CurveArea().Top + 5);
        ASSERT_TRUE(trend->CursorShown());
        move(*trend);
        EXPECT_FALSE(trend->CursorShown());
        trend->PaintToSurface();
        EXPECT_TRUE(SurfaceShowsCurves());
    }
}

// Every change of a limit shows at the next paint: value, colour, filling and switching.
TEST_F(TrendDisplayTest, LimitChangesRepaint) {
    HideChannels();
    AddDigits(100);
    struct Case {
        bool upper;
        std::function<void(TTrendLimit&)> change;
    };
    const Case cases[] = {
        {true, [](TTrendLimit& l) { l.SetValue(20.0f); }},
        {true, [](TTrendLimit& l) { l.SetColor(clBlue); }},
        {true, [](TTrendLimit& l) { l.SetFilled(true); }},
        {true, [](TTrendLimit& l) { l.SetEnabled(false); }},
        {false, [](TTrendLimit& l) { l.SetValue(20.0f); }},
        {false, [](TTrendLimit& l) { l.SetColor(clBlue); }},
        {false, [](TTrendLimit& l) { l.SetFilled(true); }},
        {false, [](TTrendLimit& l) { l.SetEnabled(false); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.upper ? "upper " : "lower ") + std::to_string(&c - cases));
        SetUp();
        HideChannels();
        AddDigits(100);
        TTrendLimit& l = c.upper ? *trend->LimitUpper() : *trend->LimitLower();
        l.SetValue(50.0f);
        l.SetColor(clRed);
        l.SetEnabled(true);
        Paint();
        const QImage before = trend->CurveBitmap().Image();
        c.change(l);
        trend->PaintToSurface();
        EXPECT_NE(trend->CurveBitmap().Image(), before);
    }
}

// After a load the view starts at record 0, or with opShowLast so that the newest record
// stands in the last column.
TEST_F(TrendDisplayTest, ALoadShowsTheStartOrTheNewestRecords) {
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("r.rec"));
    AddDigits(1000);
    ASSERT_EQ(trend->SaveToFile(name), 0);
    for (const bool showLast : {false, true}) {
        SCOPED_TRACE(showLast);
        trend->SetOptions(showLast ? trend->Options() | TrendOpt(opShowLast)
                                   : trend->Options() & ~TrendOpt(opShowLast));
        Paint();
        trend->MoveX(300);
        ASSERT_EQ(trend->LoadFromFileEx(name, true), 0);
        const int32_t w = trend->CurveBitmap().Width();
        EXPECT_EQ(trend->FirstDisplayedRecord(), showLast ? 1000 - w : 0);
        EXPECT_EQ(trend->RecordInfo()->LastDisplayedRec(), 999);
        EXPECT_TRUE(SurfaceShowsCurves());
    }
}

TEST_F(TrendDisplayTest, CursorIsIgnoredWhileFlowingWithoutTheOption) {
    AddDigits(100);
    Paint();
    trend->SetStartRecording(true);
    trend->SetOptions(trend->Options() & ~TrendOpt(opCursorOnRec));
    int events = 0;
    QObject::connect(trend.get(), &TKxTrend::OnNewCursorPos, [&] { ++events; });
    trend->SetCursorLineAt(trend->CurveArea().Left + 10, trend->CurveArea().Top + 5);
    EXPECT_EQ(events, 0);
    trend->SetOptions(trend->Options() | TrendOpt(opCursorOnRec));
    trend->SetCursorLineAt(trend->CurveArea().Left + 10, trend->CurveArea().Top + 5);
    EXPECT_EQ(events, 1);
    trend->SetCursorLine(false);
    EXPECT_FALSE(trend->CursorShown());
    trend->SetCursorLineAt(trend->CurveArea().Left + 20, trend->CurveArea().Top + 5);
    EXPECT_EQ(events, 1);
}

TEST_F(TrendDisplayTest, ARepaintKeepsTheCursorEvenInColumnZero) {
    AddDigits(100);
    Paint();
    trend->SetCursorLineAt(trend->CurveArea().Left, trend->CurveArea().Top + 5);
    ASSERT_TRUE(trend->CursorShown());
    trend->Invalidate();
    trend->PaintToSurface();
    EXPECT_TRUE(trend->CursorShown());
    EXPECT_EQ(SurfacePixel(0, 5), qRgb(255, 255, 255));
}

TEST_F(TrendDisplayTest, ATickRedrawsTheCursorLine) {
    AddDigits(100);
    Paint();
    trend->SetCursorLineAt(trend->CurveArea().Left + 33, trend->CurveArea().Top + 5);
    const QRgb line = SurfacePixel(33, 5);
    Tick();
    EXPECT_EQ(SurfacePixel(33, 5), line);
    EXPECT_EQ(SurfacePixel(101, trend->Baseline()), CurvePixel(101, trend->Baseline()));
}

}  // namespace
}  // namespace kx::test
