// The sliders: layout with fixed text metrics, the thumb's position, what a reading
// redraws, dragging the thumb and pressing beside it, the sectors on the track.
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QWidget>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "adjuster_fixture.h"
#include "common/ratio.h"
#include "common/test_env.h"
#include "kx/adjusters/slider.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

using test::Mouse;

std::unique_ptr<TKxSlider> Make(bool vertical, QWidget* parent) {
    if (vertical) return std::make_unique<TKxVSlider>(parent);
    return std::make_unique<TKxHSlider>(parent);
}

// A point on the track's middle line at position p along it.
QPoint OnTrack(const TKxSlider& s, int32_t p) {
    const TRect t = s.TrackRect();
    const int32_t middle = s.Vertical() ? (t.Left + t.Right) / 2 : (t.Top + t.Bottom) / 2;
    return s.Vertical() ? QPoint(middle, p) : QPoint(p, middle);
}

class Slider : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        s_ = Make(GetParam(), &form_);
        s_->Loaded();
        s_->PaintToSurface();
    }
    TKxSlider& s() { return *s_; }
    QWidget form_;
    std::unique_ptr<TKxSlider> s_;
};

INSTANTIATE_TEST_SUITE_P(Orientations, Slider, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vertical" : "Horizontal"; });

TEST(SliderDefaults, PropertiesAndTheirBounds) {
    test::ResetEnvironment();
    TKxHSlider h;
    TKxVSlider v;
    EXPECT_EQ(QSize(h.width(), h.height()), QSize(240, 128));
    EXPECT_EQ(QSize(v.width(), v.height()), QSize(112, 240));
    EXPECT_FALSE(h.Vertical());
    EXPECT_TRUE(v.Vertical());
    EXPECT_EQ(h.Options(), TKxSlider::kAllOptions);
    EXPECT_EQ(h.ThumbSize(), 20);
    EXPECT_EQ(h.TrackWidth(), 6);
    EXPECT_EQ(h.BevelTrack()->Style(), TKxSBevel::bsLowered);
    EXPECT_EQ(h.BevelTrack()->Width(), 1);
    EXPECT_EQ(h.BevelTrack()->Spacing(), 0);
    EXPECT_EQ(h.BevelTrack()->Color(), clBtnShadow);
    EXPECT_EQ(h.BevelOuter()->Spacing(), 5);
    EXPECT_EQ(h.BevelValue()->Color(), clBlack);
    EXPECT_EQ(h.FontValue()->Color(), clLime);
    EXPECT_EQ(h.ScaleSettings()->Font()->Size(), 8);
    EXPECT_EQ(h.SectorSettings()->Sector3To(), 1000);
    const struct {
        int32_t value;
        int32_t thumb, track;
    } sets[] = {// applied in turn; the thumb takes 8..200, the track 2..100
                {7, 20, 7}, {201, 20, 7},  {1, 20, 7},  {101, 101, 7},
                {8, 8, 8},  {200, 200, 8}, {2, 200, 2}, {100, 100, 100}};
    for (const auto& t : sets) {
        h.SetThumbSize(t.value);
        h.SetTrackWidth(t.value);
        EXPECT_EQ(h.ThumbSize(), t.thumb) << t.value;
        EXPECT_EQ(h.TrackWidth(), t.track) << t.value;
    }
}

TEST(SliderLayout, ExactWithFixedTextMetrics) {
    // 7-pixel characters, 13-pixel lines. The outer bevel takes 8 pixels a side, the value
    // box 17 + 5 at the top, the names 26 at the bottom; the labels "0" .. "100" are 21
    // wide, the thumb's half width is Round(0.2 x 20) = 4.
    test::ResetEnvironment();
    QWidget form;
    const struct {
        const char* name;
        bool vertical;
        std::function<void(TKxSlider&)> setup;
        int32_t start, end;   // the track's first and last position
        int32_t stripAcross;  // the strip's top (horizontal) or left (vertical)
        bool labels;
    } cases[] = {
        // Rest (8, 30, 232, 94): m = max(4, 21 div 2) + 1 = 11.
        {"horizontal", false, [](TKxSlider&) {}, 19, 220, -1, true},
        // Without labels only the thumb keeps the ends in: m = 5.
        {"horizontal, no labels", false,
         [](TKxSlider& s) {
             s.SetOptions(TKxSlider::kAllOptions &
                          ~TKxSlider::SliderOption(TKxSlider::opScaleText));
         },
         13, 226, -1, false},
        // No scale: the 21-pixel strip alone is centred in the 64 of the rest.
        {"horizontal, no scale", false,
         [](TKxSlider& s) {
             s.SetOptions(TKxSlider::kAllOptions & ~TKxSlider::SliderOption(TKxSlider::opScale));
         },
         13, 226, 30 + (64 - 21) / 2, false},
        // A thumb of 40 leaves no room for the scale in the 64 of the rest: the scale gives
        // way and the thumb's half width of 8 sets the margin.
        {"horizontal, big thumb", false, [](TKxSlider& s) { s.SetThumbSize(40); }, 17, 222,
         30 + (64 - 41) / 2, false},
        // Rest (8, 30, 104, 206): m = max(4, 13 div 2) + 1 = 7; the range starts below.
        {"vertical", true, [](TKxSlider&) {}, 198, 37, -1, true},
        {"vertical, no scale", true,
         [](TKxSlider& s) {
             s.SetOptions(TKxSlider::kAllOptions & ~TKxSlider::SliderOption(TKxSlider::opScale));
         },
         200, 35, 8 + (96 - 21) / 2, false},
    };
    for (const auto& t : cases) {
        auto s = Make(t.vertical, &form);
        t.setup(*s);
        s->Loaded();
        TRecordingCanvas rec(&s->SurfaceImage());
        s->SetCanvas(&rec);
        s->PaintToSurface();
        EXPECT_EQ(s->TrackStart(), t.start) << t.name;
        EXPECT_EQ(s->TrackEnd(), t.end) << t.name;
        EXPECT_EQ(rec.Log("TextOut").filter("'100'").size(), t.labels ? 1 : 0) << t.name;
        const TRect strip = s->StripRect(), track = s->TrackRect();
        const int32_t a = (s->ThumbSize() * 2 + 5) / 10;  // Round(0.2 x size) for these sizes
        if (t.vertical) {
            EXPECT_EQ(strip.Right - strip.Left, s->ThumbSize() + 1) << t.name;
            EXPECT_EQ(track.Top, t.end - a) << t.name;
            EXPECT_EQ(track.Bottom, t.start + a + 1) << t.name;
            EXPECT_EQ(track.Right - track.Left, 6) << t.name;
            if (t.stripAcross >= 0) {
                EXPECT_EQ(strip.Left, t.stripAcross) << t.name;
            }
        } else {
            EXPECT_EQ(strip.Bottom - strip.Top, s->ThumbSize() + 1) << t.name;
            EXPECT_EQ(track.Left, t.start - a) << t.name;
            EXPECT_EQ(track.Right, t.end + a + 1) << t.name;
            EXPECT_EQ(track.Bottom - track.Top, 6) << t.name;
            if (t.stripAcross >= 0) {
                EXPECT_EQ(strip.Top, t.stripAcross) << t.name;
            }
            // The track is centred on the strip's middle row.
            EXPECT_EQ(track.Top, strip.Top + s->ThumbSize() / 2 - 3) << t.name;
        }
        s->SetCanvas(nullptr);
    }
}

TEST(SliderLayout, TheTrackNeedsTwoPositionsAndLabelsTheirLength) {
    test::ResetEnvironment();
    QWidget form;
    // Horizontal, 8 pixels of bevel a side, labels crowded out below 173: the track runs
    // from 8 + 5 to width - 8 - 5 - 1, and needs two positions.
    const struct {
        int width;
        bool track;
        int32_t start, end;
        bool labels;
    } cases[] = {{27, false, 0, 0, false},
                 {28, true, 13, 14, false},
                 {172, true, 13, 158, false},
                 {173, true, 19, 153, true}};
    for (const auto& t : cases) {
        TKxHSlider s(&form);
        s.SetBounds(0, 0, t.width, 200);
        s.Loaded();
        TRecordingCanvas rec(&s.SurfaceImage());
        s.SetCanvas(&rec);
        s.PaintToSurface();
        EXPECT_EQ(s.TrackRect().Right > s.TrackRect().Left, t.track) << t.width;
        if (t.track) {
            EXPECT_EQ(s.TrackStart(), t.start) << t.width;
            EXPECT_EQ(s.TrackEnd(), t.end) << t.width;
        } else {
            EXPECT_EQ(s.HitRect, TRect{}) << t.width;
        }
        EXPECT_EQ(rec.Log("TextOut").filter("'100'").size(), t.labels ? 1 : 0) << t.width;
        s.SetCanvas(nullptr);
    }
}

TEST(SliderLayout, TheScaleSideFollowsPosLeftTop) {
    test::ResetEnvironment();
    QWidget form;
    for (bool vertical : {false, true}) {
        auto s = Make(vertical, &form);
        s->Loaded();
        TRecordingCanvas rec(&s->SurfaceImage());
        s->SetCanvas(&rec);
        s->PaintToSurface();
        const TRect below = s->StripRect();
        const QStringList labelsAfter = rec.Log("TextOut").filter("'100'");
        const auto labelAt = [&]() -> TPoint {
            for (const TCanvasCall& c : rec.CallsOf("TextOut"))
                if (c.Text == "100") return TPoint{c.Args[0], c.Args[1]};
            return TPoint{-1, -1};
        };
        // Labels right of (below) the strip, then left of (above) it.
        if (vertical)
            EXPECT_GE(labelAt().X, below.Right);
        else
            EXPECT_GE(labelAt().Y, below.Bottom);
        s->ScaleSettings()->SetPosLeftTop(true);
        rec.ClearCalls();
        s->PaintToSurface();
        const TRect above = s->StripRect();
        // The strip moves to the other side of the scale: down (right) by the scale.
        if (vertical)
            EXPECT_GT(above.Left, below.Left);
        else
            EXPECT_GT(above.Top, below.Top);
        const QStringList labelsBefore = rec.Log("TextOut").filter("'100'");
        if (vertical)
            EXPECT_LE(labelAt().X + 21, above.Left);
        else
            EXPECT_LE(labelAt().Y + 13, above.Top);
        ASSERT_EQ(labelsBefore.size(), 1);
        ASSERT_EQ(labelsAfter.size(), 1);
        EXPECT_NE(labelsBefore, labelsAfter);
        s->SetCanvas(nullptr);
    }
}

TEST_P(Slider, TheThumbStandsAtItsValue) {
    const int32_t start = s().TrackStart(), end = s().TrackEnd();
    const float f = float(end - start) / 1000.0f;
    const struct {
        float value;
        int32_t ppt;
    } cases[] = {{0.0f, 0}, {100.0f, 1000}, {50.0f, 500}, {33.3f, 333}, {99.9f, 999}};
    for (const auto& t : cases) {
        s().SetValue(t.value);
        EXPECT_EQ(s().ThumbPosition(), start + int32_t(std::nearbyint(double(f) * t.ppt)))
            << t.value;
        const TRect thumb = s().ThumbRect();
        const int32_t along = s().Vertical() ? thumb.Top : thumb.Left;
        EXPECT_EQ(along, s().ThumbPosition() - 4) << t.value;
    }
    // Readings that are not numbers or lie beyond the range keep it on the track.
    for (float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity(), 1e30f, -1e30f}) {
        s().SetValue(bad);
        EXPECT_GE(s().ThumbPosition(), std::min(start, end)) << bad;
        EXPECT_LE(s().ThumbPosition(), std::max(start, end)) << bad;
    }
    s().SetValue(std::numeric_limits<float>::infinity());
    EXPECT_EQ(s().ThumbPosition(), end);
}

TEST_P(Slider, AReadingRedrawsOnlyTheThumbsAndTheNumber) {
    s().SetValue(10.0f);
    const TRect before = s().ThumbRect();
    const QImage image = s().Surface().Image().copy();
    s().SetValue(70.0f);
    int changed = 0;
    EXPECT_TRUE(test::ChangesOnlyIn(image, s().Surface().Image(), changed, before, s().ThumbRect(),
                                    s().ValueBoxRect()));
    EXPECT_GT(changed, 0);
    // Moving back restores the track exactly as painted.
    s().SetValue(10.0f);
    EXPECT_EQ(s().Surface().Image(), image);
}

TEST_P(Slider, DraggingTheThumbKeepsWhereItWasGrabbed) {
    const bool vertical = GetParam();
    const int32_t start = s().TrackStart(), end = s().TrackEnd();
    const int32_t dir = end > start ? 1 : -1, span = std::abs(end - start);
    const struct {
        const char* name;
        int32_t from;  // digit before
        int32_t grab;  // where on the thumb, along the track from its centre (upwards)
        int32_t move;  // how far the mouse goes, upwards
        int32_t expect;
    } cases[] = {
        {"a hundred pixels up", 0, 2, 100, int32_t(std::lround(1000.0 * 100 / span))},
        {"grabbed off centre", 0, -3, 100, int32_t(std::lround(1000.0 * 100 / span))},
        {"beyond the end", 0, 0, 1000, 1000},
        {"down beyond the start", 500, 1, -1000, 0},
        {"nowhere", 400, 0, 0, 400},
    };
    for (const auto& t : cases) {
        s().SetDigit(t.from);
        const int32_t at = s().ThumbPosition() + dir * t.grab;
        Mouse(&s(), QEvent::MouseButtonPress, OnTrack(s(), at));
        ASSERT_TRUE(s().Sliding()) << t.name;
        EXPECT_EQ(s().Digit(), t.from) << t.name;  // a press on the thumb moves nothing
        Mouse(&s(), QEvent::MouseMove, OnTrack(s(), at + dir * t.move / 2));
        Mouse(&s(), QEvent::MouseMove, OnTrack(s(), at + dir * t.move));
        EXPECT_EQ(s().Digit(), t.expect) << t.name << (vertical ? " vertical" : "");
        Mouse(&s(), QEvent::MouseButtonRelease, OnTrack(s(), at + dir * t.move));
        EXPECT_FALSE(s().Sliding());
    }
}

TEST_P(Slider, APressBesideTheThumbStepsOnceTowardsIt) {
    const int32_t start = s().TrackStart(), end = s().TrackEnd();
    const struct {
        const char* name;
        bool towardsEnd;
        int32_t expect;
    } cases[] = {{"towards the end", true, 510}, {"towards the start", false, 490}};
    for (const auto& t : cases) {
        s().SetDigit(500);
        int change = 0, changed = 0;
        QObject receiver;
        QObject::connect(&s(), &TKxAnalogCControl::OnValueChange, &receiver, [&] { ++change; });
        QObject::connect(&s(), &TKxAnalogCControl::OnValueChanged, &receiver, [&] { ++changed; });
        const QPoint p = OnTrack(s(), t.towardsEnd ? end : start);
        Mouse(&s(), QEvent::MouseButtonPress, p);
        EXPECT_EQ(s().Digit(), t.expect) << t.name;
        Mouse(&s(), QEvent::MouseMove, p + QPoint(1, 1));
        EXPECT_EQ(s().Digit(), t.expect) << t.name;  // no further steps while held
        EXPECT_EQ(changed, 0) << t.name;
        Mouse(&s(), QEvent::MouseButtonRelease, p);
        EXPECT_EQ(change, 1) << t.name;
        EXPECT_EQ(changed, 1) << t.name;
    }
    // Outside the strip nothing happens.
    s().SetDigit(500);
    Mouse(&s(), QEvent::MouseButtonPress, QPoint(1, 1));
    EXPECT_FALSE(s().Sliding());
    EXPECT_EQ(s().Digit(), 500);
}

TEST_P(Slider, SectorsColourTheTrack) {
    s().SetValue(0.0f);  // the thumb stays at the start
    const int32_t start = s().TrackStart(), end = s().TrackEnd();
    const float f = float(end - start) / 1000.0f;
    const auto colourAt = [&](int32_t ppt) {
        const QPoint p = OnTrack(s(), start + int32_t(std::nearbyint(double(f) * ppt)));
        return s().Surface().Pixel(p.x(), p.y());
    };
    const struct {
        int32_t ppt;
        TColor colour;
    } cases[] = {{100, clYellow}, {300, clYellow}, {400, clGreen},
                 {600, clGreen},  {700, clRed},    {990, clRed}};
    for (const auto& t : cases)
        EXPECT_EQ(colourAt(t.ppt), t.colour) << t.ppt;
    // The bands fill the inside of the track's bevel, not its far edge.
    const TRect track = s().TrackRect();
    const int32_t at = start + int32_t(std::nearbyint(double(f) * 500));
    const QPoint inner =
        s().Vertical() ? QPoint(track.Right - 2, at) : QPoint(at, track.Bottom - 2);
    const QPoint edge = s().Vertical() ? QPoint(track.Right - 1, at) : QPoint(at, track.Bottom - 1);
    EXPECT_EQ(s().Surface().Pixel(inner.x(), inner.y()), clGreen);
    EXPECT_NE(s().Surface().Pixel(edge.x(), edge.y()), clGreen);
    s().SetOptions(TKxSlider::kAllOptions & ~TKxSlider::SliderOption(TKxSlider::opSector));
    s().PaintToSurface();
    for (const auto& t : cases)
        EXPECT_EQ(colourAt(t.ppt), ColorToRGB(clBtnShadow)) << t.ppt;
}

TEST_P(Slider, TheGripShowsTheStateColour) {
    s().SetValue(50.0f);
    const TRect thumb = s().ThumbRect();
    const int32_t cx = (thumb.Left + thumb.Right - 1) / 2, cy = (thumb.Top + thumb.Bottom - 1) / 2;
    EXPECT_EQ(s().Surface().Pixel(cx, cy), clGreen);
    s().SetColorNonFocus(clFuchsia);
    s().PaintToSurface();
    EXPECT_EQ(s().Surface().Pixel(cx, cy), clFuchsia);
    s().setEnabled(false);
    EXPECT_EQ(s().Surface().Pixel(cx, cy), ColorToRGB(clBtnShadow));
}

TEST_P(Slider, TooSmallControlsShowTheFrameOnly) {
    for (QSize size : {QSize(5, 5), QSize(20, 20), QSize(30, 200), QSize(200, 30)}) {
        s().SetBounds(0, 0, size.width(), size.height());
        s().PaintToSurface();
        const bool fits = s().TrackRect().Right > s().TrackRect().Left;
        if (!fits) {
            EXPECT_EQ(s().HitRect, TRect{}) << size.width() << "x" << size.height();
            s().SetValue(60.0f);  // a reading draws no thumb
            continue;
        }
        const TRect strip = s().StripRect();
        EXPECT_GE(strip.Left, 0);
        EXPECT_GE(strip.Top, 0);
        EXPECT_LE(strip.Right, size.width());
        EXPECT_LE(strip.Bottom, size.height());
    }
}

TEST_P(Slider, PartsNeverOverlapOrLeaveTheControl) {
    s().SignalSettings()->SetName1("A very long name for the setpoint of the second heater");
    s().SignalSettings()->SetValueUnit("m3/h at normal conditions");
    for (QSize size : {QSize(60, 60), QSize(240, 128), QSize(112, 240), QSize(300, 70),
                       QSize(80, 300), QSize(800, 400)}) {
        s().SetBounds(0, 0, size.width(), size.height());
        TRecordingCanvas rec(&s().SurfaceImage());
        s().SetCanvas(&rec);
        s().PaintToSurface();
        const std::string at = std::to_string(size.width()) + "x" + std::to_string(size.height());
        const TRect strip = s().StripRect(), box = s().ValueBoxRect();
        if (strip.Right > strip.Left && box.Right > box.Left) {
            EXPECT_GE(strip.Top, box.Bottom) << at;
        }
        for (const TCanvasCall& c : rec.CallsOf("TextOut")) {
            EXPECT_GE(c.Args[0], 0) << at << " " << c.Text.toStdString();
            EXPECT_LE(c.Args[0] + 7 * c.Text.size(), size.width())
                << at << " " << c.Text.toStdString();
        }
        s().SetCanvas(nullptr);
    }
}

TEST_P(Slider, SettingsChangesRepaintTheWhole) {
    const struct {
        const char* name;
        std::function<void()> change;
    } cases[] = {
        {"track bevel", [&] { s().BevelTrack()->SetWidth(2); }},
        {"scale", [&] { s().ScaleSettings()->SetSteps(4); }},
        {"sectors", [&] { s().SectorSettings()->SetSector1Color(clBlue); }},
        {"thumb size", [&] { s().SetThumbSize(30); }},
        {"track width", [&] { s().SetTrackWidth(10); }},
        {"options", [&] { s().SetOptions(0); }},
        {"outer bevel", [&] { s().BevelOuter()->SetWidth(3); }},
    };
    for (const auto& t : cases) {
        s().PaintToSurface();
        s().SetRedrawNeeded(false);
        t.change();
        EXPECT_TRUE(s().RedrawNeeded()) << t.name;
    }
    s().PaintToSurface();
    s().SetRedrawNeeded(false);
    s().SetThumbSize(s().ThumbSize());
    s().SetTrackWidth(1);
    EXPECT_FALSE(s().RedrawNeeded());
}

TEST_P(Slider, SettingsObjectsAreCopiedAndNullIsIgnored) {
    TKxSBevel bevel;
    bevel.SetWidth(3);
    TSectorSettings sectors;
    sectors.SetSector2Color(clNavy);
    s().SetBevelTrack(&bevel);
    s().SetSectorSettings(&sectors);
    s().SetBevelTrack(nullptr);
    s().SetSectorSettings(nullptr);
    s().SetScaleSettings(nullptr);
    EXPECT_EQ(s().BevelTrack()->Width(), 3);
    EXPECT_EQ(s().SectorSettings()->Sector2Color(), clNavy);
    EXPECT_NE(s().BevelTrack(), &bevel);
}

TEST(SliderHiDpi, AReadingMatchesAFullPaint) {
    test::ResetEnvironment();
    for (double ratio : {1.0, 1.5, 2.0}) {
        test::AtRatio<TKxHSlider> h(ratio);
        test::AtRatio<TKxVSlider> v(ratio);
        for (TKxSlider* s : {static_cast<TKxSlider*>(&h), static_cast<TKxSlider*>(&v)}) {
            s->Loaded();
            s->PaintToSurface();
            s->SetValue(63.0f);
            const QImage read = s->Surface().Image().copy();
            s->Invalidate();
            s->PaintToSurface();
            EXPECT_EQ(read, s->Surface().Image()) << ratio << " " << s->Vertical();
        }
    }
}

TEST_P(Slider, KeysMoveTheThumbUpTheScale) {
    s().SetDigit(500);
    const int32_t before = s().ThumbPosition();
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&s(), &up);
    EXPECT_EQ(s().Digit(), 501);
    QKeyEvent page(QEvent::KeyPress, Qt::Key_PageUp, Qt::NoModifier);
    QCoreApplication::sendEvent(&s(), &page);
    EXPECT_EQ(s().Digit(), 511);
    // Up the scale is right, or up on the screen.
    if (s().Vertical())
        EXPECT_LT(s().ThumbPosition(), before);
    else
        EXPECT_GT(s().ThumbPosition(), before);
}

}  // namespace
}  // namespace kx
