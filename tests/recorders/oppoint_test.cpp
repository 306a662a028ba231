// The operating point display: the per-mille mapping with its asymmetric clamp, where the
// marker and the tail land on the surface, what a pulse redraws and updates, the tail
// buffer, the subscription, the picture setter and loader, and bad input.
#include <gtest/gtest.h>

#include <QAccessible>

#include <QCoreApplication>
#include <QFile>
#include <QPaintEvent>
#include <QTemporaryDir>
#include <QWidget>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>

#include "common/flash_util.h"
#include "common/ratio.h"
#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/recordingcanvas.h"
#include "kx/recorders/oppoint.h"

namespace kx {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// A picture whose pixels differ from their neighbours and from yellow and aqua.
QImage pattern(int w, int h) {
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, qRgb((x * 2) & 255, (y * 4) & 255, 128));
    return img;
}
TColor patternAt(int x, int y) {
    return RGB((x * 2) & 255, (y * 4) & 255, 128);
}

// The marker around its centre: four 4 x 3 strokes 2..5 pixels off it.
bool inMarker(int64_t dx, int64_t dy) {
    const int64_t ax = std::abs(dx), ay = std::abs(dy);
    return (ax >= 2 && ax <= 5 && ay <= 1) || (ay >= 2 && ay <= 5 && ax <= 1);
}

// A 109 x 59 picture: IndRect (4, 4, 105, 55), indicator area (-1, -1, 110, 60), 111 x 61,
// so px = Round(x‰ / 10) + 5 and py = Round((1000 - y‰) / 20) + 5, one more than the
// control coordinates.
class OperatingPoint : public ::testing::Test {
  protected:
    static constexpr int kW = 109, kH = 59;
    void SetUp() override {
        op_ = std::make_unique<TKxOperatingPoint>(&form_);
        op_->SetCharacteristicBMP(pattern(kW, kH));
        op_->Loaded();
        op_->PaintToSurface();
    }
    void TearDown() override {
        op_.reset();
        ClearFlashList();
    }
    void pulse() {
        test::FakeClock().Advance(uint32_t(op_->Interval()));
        RunFlashTick();
    }
    void set(float x, float y) {
        op_->SetValueX(x);
        op_->SetValueY(y);
    }
    TColor at(int x, int y) const { return op_->Surface().Pixel(x, y); }
    // The whole control is the picture but for the marker centred on (cx, cy).
    void expectOnlyMarkerAt(int64_t cx, int64_t cy) const {
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x)
                ASSERT_EQ(at(x, y), inMarker(x - cx, y - cy) ? clYellow : patternAt(x, y))
                    << x << "," << y << " marker at " << cx << "," << cy;
    }

    QWidget form_;
    std::unique_ptr<TKxOperatingPoint> op_;
};

TEST_F(OperatingPoint, SettersClampTheirRangesAndSubscribe) {
    TKxOperatingPoint d;
    EXPECT_EQ(d.Color(), clYellow);
    EXPECT_EQ(d.TailColor(), clAqua);
    EXPECT_TRUE(d.Tail());
    EXPECT_EQ(d.IndRect()->GetxyRect(), (TRect{4, 4, 196, 146}));
    EXPECT_EQ(d.geometry(), QRect(0, 0, 200, 150));
    const struct {
        int32_t set, size, interval;
    } cases[] = {{1, 2, 1000},          {-5, 2, 1000},         {40000, 32766, 1000},
                 {49, 49, 1000},        {50, 50, 50},          {32766, 32766, 32766},
                 {32767, 32766, 32767}, {32768, 32766, 32767}, {0, 2, 32767}};
    EXPECT_EQ(d.TailArraySize(), 20);
    for (const auto& c : cases) {
        d.SetTailArraySize(c.set);
        d.SetInterval(c.set);
        EXPECT_EQ(d.TailArraySize(), c.size) << c.set;
        EXPECT_EQ(d.Interval(), c.interval) << c.set;
    }

    // Every size set empties the tail, also an unchanged one.
    for (int32_t size : {20, 20, 1}) {
        op_->SetTailArraySize(size);
        EXPECT_EQ(op_->TailCount(), 0) << size;
        EXPECT_EQ(op_->TailPoint(1), TPoint{}) << size;
        pulse();
        pulse();
        EXPECT_EQ(op_->TailCount(), 2) << size;
    }
    op_->SetTailArraySize(20);

    EXPECT_TRUE(op_->IsLoaded());
    ASSERT_TRUE(test::Subscription(op_.get()));
    EXPECT_EQ(test::Subscription(op_.get())->IntervalTime, 1000);
    op_->SetInterval(50);
    EXPECT_EQ(test::Subscription(op_.get())->IntervalTime, 50);
    test::FakeClock().Advance(49);
    RunFlashTick();
    EXPECT_EQ(op_->TailCount(), 0);
    test::FakeClock().Advance(1);
    RunFlashTick();
    EXPECT_EQ(op_->TailCount(), 1);

    // Not before Loaded, never while designing; the destructor unsubscribes.
    auto o = std::make_unique<TKxOperatingPoint>(&form_);
    o->SetInterval(300);
    o->SetDesigning(true);
    o->Loaded();
    EXPECT_FALSE(test::Subscription(o.get()));
    o->SetDesigning(false);
    o->Loaded();
    ASSERT_TRUE(test::Subscription(o.get()));
    EXPECT_EQ(test::Subscription(o.get())->IntervalTime, 300);
    TKxFlashClient* gone = o.get();
    o.reset();
    EXPECT_FALSE(test::Subscription(gone));
}

TEST_F(OperatingPoint, PictureFromImageOrFileSetsSizeAndArea) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QImage picture = pattern(33, 21);
    QImage doubled = picture;  // a high-DPI tag does not make its pixels any larger
    doubled.setDevicePixelRatio(2.0);
    ASSERT_TRUE(picture.save(dir.filePath("curves.png")));
    ASSERT_TRUE(picture.save(dir.filePath("curves.bmp")));
    QFile junk(dir.filePath("junk.png"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("not an image at all");
    junk.close();
    EXPECT_EQ(op_->IndicatorArea(), (TRect{-1, -1, kW + 1, kH + 1}));
    const struct {
        QString file;  // empty: the image is set directly
        bool ok;
    } cases[] = {{"curves.png", true}, {"missing.png", false},
                 {"curves.bmp", true}, {"junk.png", false},
                 {"", true},           {"", false}};
    for (const auto& c : cases) {
        op_->IndRect()->SetxyRect(TRect{10, 10, 20, 20});
        op_->SetBounds(0, 0, 50, 40);
        if (!c.file.isEmpty()) {
            EXPECT_EQ(op_->LoadCharacteristicBMP(dir.filePath(c.file)), c.ok);
        } else {
            op_->SetCharacteristicBMP(c.ok ? doubled : QImage());
        }
        op_->PaintToSurface();
        const std::string name = c.file.toStdString();
        if (c.ok) {
            EXPECT_EQ(op_->CharacteristicBMP().convertToFormat(QImage::Format_RGB32), picture)
                << name;
            EXPECT_EQ(op_->size(), QSize(33, 21)) << name;
            EXPECT_EQ(op_->CharacteristicBMP().devicePixelRatio(), 1.0) << name;
            EXPECT_EQ(op_->IndRect()->GetxyRect(), (TRect{4, 4, 29, 17})) << name;
            EXPECT_EQ(at(0, 0), patternAt(0, 0)) << name;
        } else {
            // Emptied: the size and the area stay, the text shows.
            EXPECT_TRUE(op_->CharacteristicBMP().isNull()) << name;
            EXPECT_EQ(op_->size(), QSize(50, 40)) << name;
            EXPECT_EQ(op_->IndRect()->GetxyRect(), (TRect{10, 10, 20, 20})) << name;
            EXPECT_EQ(at(0, 0), clBlack) << name;
            EXPECT_EQ(at(1, 1), ColorToRGB(clBtnHighlight)) << name;
        }
    }
    EXPECT_FALSE(op_->LoadCharacteristicBMP(QString()));
    // A resize from outside is undone by the next Paint.
    op_->LoadCharacteristicBMP(dir.filePath("curves.png"));
    op_->PaintToSurface();
    for (const QSize size : {QSize(70, 21), QSize(33, 70)}) {
        op_->SetBounds(3, 2, size.width(), size.height());
        op_->PaintToSurface();
        EXPECT_EQ(op_->geometry(), QRect(3, 2, 33, 21));
    }
}

TEST_F(OperatingPoint, WithoutPictureShowsTheTextAndNoMarker) {
    TKxOperatingPoint d(&form_);
    d.SetValueX(50.0f);
    d.Loaded();
    TRecordingCanvas rec(&d.SurfaceImage());
    d.SetCanvas(&rec);
    d.PaintToSurface();
    d.SetCanvas(nullptr);
    // 20 characters of 7 x 13 pixels centred on (100, 75), inside the frame.
    ASSERT_EQ(rec.Log().join(' ').toStdString(),
              "Rectangle(0,0,200,150) SetClipRegion(1,1,199,149) "
              "TextOut(30,69,'No CharacteristicBMP') ClearClipRegion()");
    EXPECT_EQ(rec.Calls()[0].PenColor, clBlack);
    EXPECT_EQ(rec.Calls()[0].BrushColor, clBtnHighlight);
    const QImage before = d.Surface().Image().copy();
    test::FakeClock().Advance(1000);
    RunFlashTick();
    d.DrawPoints();
    EXPECT_EQ(d.TailCount(), 0);
    EXPECT_EQ(d.Surface().Image(), before);

    // However small the control, the text leaves the frame whole.
    for (const QSize size : {QSize(60, 20), QSize(1, 1), QSize(3, 40)}) {
        d.SetBounds(0, 0, size.width(), size.height());
        d.PaintToSurface();
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                if (x == 0 || y == 0 || x == size.width() - 1 || y == size.height() - 1) {
                    EXPECT_EQ(d.Surface().Pixel(x, y), clBlack) << x << "," << y;
                }
    }
}

TEST_F(OperatingPoint, PerMilleAndMarkerPosition) {
    op_->SetTail(false);
    const struct {
        const char* name;
        float fromX, toX, fromY, toY, x, y;
        TPoint perMille, pos;
    } cases[] = {
        {"origin", 0, 100, 0, 100, 0, 0, {0, 0}, {5, 55}},
        {"top right", 0, 100, 0, 100, 100, 100, {1000, 1000}, {105, 5}},
        {"middle", 0, 100, 0, 100, 50, 50, {500, 500}, {55, 30}},
        {"off the grid", 0, 100, 0, 100, 37, 81, {370, 810}, {42, 15}},
        {"halves to even, down", 0, 100, 0, 100, 0.5f, 99, {5, 990}, {5, 5}},
        {"halves to even, up", 0, 100, 0, 100, 1.5f, 97, {15, 970}, {7, 7}},
        {"halves to even, 2.5", 0, 100, 0, 100, 2.5f, 95, {25, 950}, {7, 7}},
        {"beyond both", 0, 100, 0, 100, 150, 120, {1000, 1000}, {105, 5}},
        {"left of X", 0, 100, 0, 100, -20, 50, {0, 500}, {5, 30}},
        {"below Y: left edge, below the area", 0, 100, 0, 100, 50, -10, {0, -100}, {5, 60}},
        {"just below Y", 0, 100, 0, 100, 80, -0.06f, {0, -1}, {5, 55}},
        {"rounds to 0, not below", 0, 100, 0, 100, 80, -0.04f, {800, 0}, {85, 55}},
        {"negative ranges", -50, 50, -200, -100, 0, -150, {500, 500}, {55, 30}},
        {"reversed X mirrors", 100, 50, 0, 100, 75, 50, {500, 500}, {55, 30}},
        {"infinite values", 0, 100, 0, 100, kInf, kInf, {1000, 1000}, {105, 5}},
        {"minus infinity", 0, 100, 0, 100, 50, -kInf, {0, INT32_MIN}, {5, 107374232 + 5}},
    };
    for (const auto& c : cases) {
        op_->SignalSettingsX()->WriteRange(c.fromX, c.toX);
        op_->SignalSettingsY()->WriteRange(c.fromY, c.toY);
        set(c.x, c.y);
        EXPECT_EQ(op_->PerMille(), c.perMille) << c.name;
        EXPECT_EQ(TKxOperatingPoint::PointPosition(c.perMille, 111, 61), c.pos) << c.name;
        pulse();
        EXPECT_EQ(op_->TailPoint(1), c.pos) << c.name;
        expectOnlyMarkerAt(c.pos.X - 1, c.pos.Y - 1);
    }
}

TEST_F(OperatingPoint, TailRecordsNewestFirstAndDrawsCountMinusOneSegments) {
    op_->SetTailArraySize(3);
    const struct {
        float x, y;
        TPoint pos;
    } steps[] = {{50, 0, {55, 55}},
                 {20, 50, {25, 30}},
                 {80, 50, {85, 30}},
                 {80, 100, {85, 5}},
                 {10, 100, {15, 5}}};
    std::vector<TPoint> recorded;
    for (size_t i = 0; i < std::size(steps); ++i) {
        set(steps[i].x, steps[i].y);
        pulse();
        recorded.insert(recorded.begin(), steps[i].pos);
        EXPECT_EQ(op_->TailCount(), std::min<int>(int(i) + 1, 3)) << i;
        EXPECT_EQ(op_->TailPoint(0), steps[i].pos) << i;
        for (int32_t k = 0; k < op_->TailCount(); ++k)
            EXPECT_EQ(op_->TailPoint(k + 1), recorded[size_t(k)]) << i << " entry " << k;
        // (84, 29) to (24, 29): the first segment, drawn with the third and fourth points.
        for (int x = 30; x <= 78; ++x)
            EXPECT_EQ(at(x, 29), i == 2 || i == 3 ? clAqua : patternAt(x, 29)) << i << " " << x;
    }
    // The last drawing had count 3: the new point (14, 4) and the two before it, along
    // row 4 to (84, 4) and down to (84, 29); not on to the third one back, (24, 29).
    for (int x = 14; x <= 84; ++x)
        EXPECT_EQ(at(x, 4), x >= 16 && x <= 19 ? clYellow : clAqua) << x;
    for (int y = 4; y <= 28; ++y)
        EXPECT_EQ(at(84, y), clAqua) << y;

    // Without the tail the entries are still recorded.
    op_->SetTail(false);
    pulse();
    EXPECT_EQ(op_->TailCount(), 3);
    expectOnlyMarkerAt(14, 4);
}

TEST_F(OperatingPoint, APulseRedrawsAndUpdatesOnlyTheIndicatorArea) {
    op_->SetTail(false);
    op_->IndRect()->SetxyRect(TRect{30, 20, 70, 40});
    form_.resize(200, 100);
    form_.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(op_->IndicatorArea(), (TRect{25, 15, 75, 45}));
    // A ring just outside the area, which the pulse must leave alone.
    auto ring = [](int x, int y) { return x == 24 || x == 75 || y == 14 || y == 45; };
    for (int y = 14; y <= 45; ++y)
        for (int x = 24; x <= 75; ++x)
            if (ring(x, y)) op_->Canvas().SetPixel(x, y, clRed);
    QCoreApplication::processEvents();
    QRegion painted;
    struct Watch : QObject {
        QRegion* r;
        explicit Watch(QRegion* region) : r(region) {}
        bool eventFilter(QObject*, QEvent* e) override {
            if (e->type() == QEvent::Paint) *r += static_cast<QPaintEvent*>(e)->region();
            return false;
        }
    } watch(&painted);
    op_->installEventFilter(&watch);
    set(100.0f, 100.0f);
    pulse();
    QCoreApplication::processEvents();
    op_->removeEventFilter(&watch);
    EXPECT_EQ(painted, QRegion(25, 15, 50, 30));
    EXPECT_EQ(op_->IndicatorBitmap().Width(), 50);
    for (int y = 14; y <= 45; ++y)
        for (int x = 24; x <= 75; ++x)
            if (ring(x, y)) {
                EXPECT_EQ(at(x, y), clRed) << x << "," << y;
            }
    // Inside, the old marker (bottom left) is erased and the new one is at the top right.
    EXPECT_EQ(at(33, 39), patternAt(33, 39));
    EXPECT_EQ(at(69, 22), clYellow);
    EXPECT_EQ(at(69, 20), patternAt(69, 20));
}

TEST_F(OperatingPoint, PulsesRecordButDrawOnlyWhenShownAndPainted) {
    const std::function<void(TKxOperatingPoint&)> cases[] = {
        [](TKxOperatingPoint& o) { o.Invalidate(); },
        [](TKxOperatingPoint& o) { o.hide(); },
    };
    for (const auto& before : cases) {
        TKxOperatingPoint o(&form_);
        o.SetCharacteristicBMP(pattern(kW, kH));
        o.Loaded();
        o.PaintToSurface();
        const QImage image = o.Surface().Image().copy();
        before(o);
        o.SetValueX(100.0f);
        o.DrawPoints();
        EXPECT_EQ(o.TailCount(), 2);
        EXPECT_EQ(o.Surface().Image(), image);
    }
    // A canvas handed in from outside sees the pulse's one copy.
    TRecordingCanvas rec(&op_->SurfaceImage());
    op_->SetCanvas(&rec);
    pulse();
    op_->SetCanvas(nullptr);
    EXPECT_EQ(rec.Log().join(' ').toStdString(), "Draw(0,0,109,59)");
}

TEST_F(OperatingPoint, AtRatioTwoPictureAndMarkerKeepTheirLogicalPlaces) {
    test::AtRatio<TKxOperatingPoint> o(2.0, &form_);
    o.SetTail(false);
    o.SetCharacteristicBMP(pattern(kW, kH).mirrored(true, false));
    o.Loaded();
    o.PaintToSurface();
    // A new picture of the same size replaces the one drawn on the device grid.
    o.SetCharacteristicBMP(pattern(kW, kH));
    o.PaintToSurface();
    ASSERT_EQ(o.Surface().Image().size(), QSize(2 * kW, 2 * kH));
    const struct {
        float x, y;
        TPoint c;
    } steps[] = {{50, 50, {54, 29}}, {100, 100, {104, 4}}};
    for (const auto& [vx, vy, c] : steps) {
        o.SetValueX(vx);
        o.SetValueY(vy);
        o.DrawPoints();
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) {
                const int dx = std::abs(x - c.X), dy = std::abs(y - c.Y);
                // The strokes' inner pixels; their ends may blend at this ratio.
                if ((dx >= 2 && dx <= 4 && dy == 0) || (dy >= 2 && dy <= 4 && dx == 0)) {
                    ASSERT_EQ(o.Surface().Pixel(x, y), clYellow) << x << "," << y;
                } else if (dx > 6 || dy > 6 || (dx <= 1 && dy <= 1)) {
                    ASSERT_EQ(o.Surface().Pixel(x, y), patternAt(x, y)) << x << "," << y;
                }
            }
    }
}

TEST_F(OperatingPoint, DesignTimeOutlinesTheAreaAndRepaintsOnEdits) {
    TKxOperatingPoint d(&form_);
    d.SetDesigning(true);
    d.SetCharacteristicBMP(pattern(kW, kH));
    d.Loaded();
    d.PaintToSurface();
    auto aqua = [&](int x0, int y0, int x1, int y1) {
        int n = 0;
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                n += d.Surface().Pixel(x, y) == clAqua;
        return n;
    };
    // Dotted along IndRect (4..104 x 4..54), nothing just outside it.
    EXPECT_GE(aqua(4, 4, 104, 4), 25);
    EXPECT_LE(aqua(4, 4, 104, 4), 60);
    EXPECT_GE(aqua(104, 4, 104, 54), 10);
    EXPECT_GE(aqua(4, 4, 4, 54), 10);
    EXPECT_GE(aqua(4, 54, 104, 54), 25);
    EXPECT_EQ(aqua(3, 3, 105, 3) + aqua(3, 55, 105, 55) + aqua(105, 3, 105, 55), 0);
    TMessage m{KX_WM_FLASH, 0, 0, 0};
    d.WMFlash(m);
    EXPECT_EQ(d.TailCount(), 1);

    // Designer edits repaint at once; at run time only the area's do.
    const std::function<void(TKxOperatingPoint&)> edits[] = {
        [](TKxOperatingPoint& o) { o.SetValueX(60.0f); },
        [](TKxOperatingPoint& o) { o.SetDigitY(700); },
        [](TKxOperatingPoint& o) { o.SetColor(clRed); },
        [](TKxOperatingPoint& o) { o.SetTail(false); },
        [](TKxOperatingPoint& o) { o.SetTailColor(clLime); },
        [](TKxOperatingPoint& o) { o.SignalSettingsX()->SetValueTo(90.0f); },
        [](TKxOperatingPoint& o) { o.IndRect()->SetLeft(6); },
    };
    for (size_t i = 0; i < std::size(edits); ++i)
        for (TKxOperatingPoint* o : {&d, op_.get()}) {
            const int32_t n = o->TailCount();
            edits[i](*o);
            o->PaintToSurface();
            const bool repaints = o->Designing() || i == std::size(edits) - 1;
            EXPECT_EQ(o->TailCount(), n + (repaints ? 1 : 0)) << i << o->Designing();
        }
}

TEST_F(OperatingPoint, DigitsAndValuesFollowEachOther) {
    const struct {
        float from, to;
        int32_t dfrom, dto;
        int16_t digit;
        float value;
    } cases[] = {{0, 100, 0, 1000, 250, 25.0f},
                 {0, 100, 0, 1000, -100, -10.0f},
                 {-50, 50, 100, 4100, 0, -50.0f},  // counted from ValueFrom, not DigitalFrom
                 {-50, 50, 100, 4100, 4000, 50.0f},
                 {10, 20, 0, 100, 55, 15.5f}};
    for (const auto& c : cases) {
        TSignalSettings s;
        s.WriteRange(c.from, c.to);
        s.SetDigitalFrom(c.dfrom);
        s.SetDigitalTo(c.dto);
        op_->SetSignalSettingsX(&s);
        op_->SetSignalSettingsY(&s);
        op_->SetDigitX(c.digit);
        op_->SetDigitY(c.digit);
        EXPECT_FLOAT_EQ(op_->ValueX(), c.value) << c.digit;
        EXPECT_FLOAT_EQ(op_->ValueY(), c.value) << c.digit;
        op_->SetDigitX(int16_t(c.digit + 1));
        op_->SetDigitY(int16_t(c.digit + 1));
        set(c.value, c.value);
        EXPECT_EQ(op_->DigitX(), c.digit) << c.value;
        EXPECT_EQ(op_->DigitY(), c.digit) << c.value;
    }
    // An axis change derives the digits anew from the values; the setters copy.
    TSignalSettings s;
    op_->SetSignalSettingsX(&s);
    set(50.0f, 50.0f);
    EXPECT_EQ(op_->DigitX(), 500);
    op_->SignalSettingsX()->SetValueTo(200.0f);
    EXPECT_EQ(op_->DigitX(), 250);
    EXPECT_EQ(s.ValueTo(), 100.0f);
    op_->SetSignalSettingsX(nullptr);
    op_->SetSignalSettingsY(nullptr);
    op_->SetIndRect(nullptr);

    // Digits saturate to 16 bits; NaN is ignored.
    set(1e9f, -kInf);
    EXPECT_EQ(op_->DigitX(), 32767);
    EXPECT_EQ(op_->DigitY(), -32768);
    op_->SetValueX(kNaN);
    op_->setValueY(double(kNaN));
    EXPECT_EQ(op_->ValueX(), 1e9f);
    EXPECT_EQ(op_->ValueY(), -kInf);
    op_->setDigitX(100000);
    op_->setDigitY(-100000);
    EXPECT_EQ(op_->DigitX(), 32767);
    EXPECT_EQ(op_->DigitY(), -32768);

    // Flat properties reach the objects; IndRect's edges saturate, a copy sets all four.
    EXPECT_TRUE(op_->setProperty("SignalSettingsY_ValueTo", 30.0));
    EXPECT_EQ(op_->SignalSettingsY()->ValueTo(), 30.0f);
    EXPECT_TRUE(op_->setProperty("IndRect_Left", 12));
    EXPECT_EQ(op_->property("IndRect_Bottom").toInt(), kH - 4);
    EXPECT_TRUE(op_->setProperty("ValueX", 42.0));
    EXPECT_EQ(op_->property("DigitX").toInt(), 210);  // X spans 0..200 now
    op_->IndRect()->SetRight(70000);
    op_->IndRect()->SetTop(-70000);
    EXPECT_EQ(op_->IndRect()->GetxyRect(), (TRect{12, -32768, 32767, kH - 4}));
    TIndRect r;
    r.SetxyRect(TRect{1, 2, 3, 4});
    op_->PaintToSurface();
    const int32_t n = op_->TailCount();
    op_->SetIndRect(&r);
    EXPECT_EQ(op_->IndRect()->GetxyRect(), (TRect{1, 2, 3, 4}));
    op_->PaintToSurface();  // a new area repaints
    EXPECT_EQ(op_->TailCount(), n + 1);
}

TEST_F(OperatingPoint, APictureFileNamedInAFormIsLoaded) {
    QTemporaryDir dir;
    const QString file = dir.filePath("curves.png");
    ASSERT_TRUE(pattern(30, 20).save(file));
    op_->setProperty("CharacteristicFile", file);  // as a loaded form sets it
    EXPECT_EQ(op_->CharacteristicFile(), file);
    EXPECT_EQ(op_->size(), QSize(30, 20));
    EXPECT_EQ(op_->IndRect()->GetxyRect(), (TRect{4, 4, 26, 16}));
    op_->SetCharacteristicFile(dir.filePath("missing.png"));
    EXPECT_TRUE(op_->CharacteristicBMP().isNull());
    op_->SetCharacteristicFile(file);
    op_->SetCharacteristicBMP(pattern(10, 10));
    EXPECT_TRUE(op_->CharacteristicFile().isEmpty());  // the picture no longer comes from it
}

TEST_F(OperatingPoint, WhatAssistiveToolsLearn) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(op_.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    EXPECT_EQ(a->text(QAccessible::Name), "operating point");
    op_->setObjectName("P1");
    EXPECT_EQ(a->text(QAccessible::Name), "P1");
    op_->SignalSettingsX()->SetName1("Flow");
    op_->SignalSettingsX()->SetValueUnit("m3/h");
    op_->SignalSettingsX()->SetValueFormat("0.00");
    op_->SignalSettingsY()->SetName1("Head");
    op_->SignalSettingsY()->SetValueUnit("m");
    op_->SignalSettingsY()->SetValueFormat("0");
    const struct {
        float x, y;
        const char* value;
        const char* description;
    } cases[] = {{25.5f, 40.0f, "Flow 25.50 m3/h; Head 40 m", "normal"},
                 {100.0f, 0.0f, "Flow 100.00 m3/h; Head 0 m", "normal"},
                 {100.5f, 50.0f, "Flow 100.50 m3/h; Head 50 m", "out of range"},
                 {50.0f, -1.0f, "Flow 50.00 m3/h; Head -1 m", "out of range"}};
    for (const auto& c : cases) {
        set(c.x, c.y);
        EXPECT_EQ(a->text(QAccessible::Value), c.value);
        EXPECT_EQ(a->text(QAccessible::Description), c.description);
    }
}

TEST_F(OperatingPoint, OddGeometryAndSpansStayDefined) {
    const struct {
        const char* name;
        QSize picture;
        TRect indRect;
        QSize work;
    } cases[] = {
        {"1 x 1 picture", QSize(1, 1), TRect{4, 4, -3, -3}, QSize(1, 1)},
        {"area beyond the picture", QSize(40, 30), TRect{-50, -50, 500, 500}, QSize(40, 30)},
        {"widest area", QSize(40, 30), TRect{-32768, -32768, 32767, 32767}, QSize(40, 30)},
        {"inverted", QSize(40, 30), TRect{30, 25, 10, 5}, QSize(0, 0)},
        {"area of no width", QSize(40, 30), TRect{20, 10, 10, 20}, QSize(0, 0)},
        {"area of no height", QSize(40, 30), TRect{10, 20, 20, 10}, QSize(0, 0)},
        {"off the picture", QSize(40, 30), TRect{100, 100, 120, 120}, QSize(0, 0)},
        {"part off the picture", QSize(40, 30), TRect{20, 10, 60, 50}, QSize(25, 25)},
    };
    for (const auto& c : cases) {
        TKxOperatingPoint o(&form_);
        o.SetCharacteristicBMP(pattern(c.picture.width(), c.picture.height()));
        o.IndRect()->SetxyRect(c.indRect);
        o.Loaded();
        o.PaintToSurface();
        for (float v : {0.0f, 100.0f, -kInf, 50.0f}) {
            o.SetValueX(v);
            o.SetValueY(v);
            o.DrawPoints();
        }
        EXPECT_EQ(o.TailCount(), 5) << c.name;
        EXPECT_EQ(o.size(), c.picture) << c.name;
        const TBitmap& work = o.IndicatorBitmap();
        EXPECT_EQ(QSize(work.Width(), work.Height()), c.work) << c.name;
    }
    // Spans that cannot divide leave the point at the axis start.
    const struct {
        float from, to, value;
    } spans[] = {{5, 5, 7}, {5, 5, 3}, {-3e38f, 3e38f, 1}, {-3e38f, 3e38f, kInf}};
    for (const auto& s : spans) {
        op_->SignalSettingsX()->WriteRange(s.from, s.to);
        op_->SetValueX(s.value);
        EXPECT_EQ(op_->PerMille().X, 0) << s.from << " " << s.value;
        pulse();
    }
}

}  // namespace
}  // namespace kx
