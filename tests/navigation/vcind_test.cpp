// The course/attitude indicator: how readings are mapped, where the horizon, the roll
// pointer and the deviation needle stand, what a reading repaints, blinking, bad input
// and what assistive tools learn.
#include <gtest/gtest.h>

#include <QAccessible>
#include <cmath>
#include <limits>
#include <memory>

#include "common/flash_util.h"
#include "kx/blink/flashtimer.h"
#include "kx/navigation/vcind.h"

namespace kx {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class VCInd : public ::testing::Test {
  protected:
    void SetUp() override {
        v_ = std::make_unique<TKxVCInd>();
        v_->Loaded();
        v_->PaintToSurface();
    }
    void TearDown() override {
        v_.reset();
        ClearFlashList();
        SetFlashTickCounter(0);
    }
    // The window's centre and radius.
    double cx() const { return v_->WindowRect().Left + (v_->WindowRect().Width() - 1) / 2.0; }
    double cy() const { return v_->WindowRect().Top + (v_->WindowRect().Height() - 1) / 2.0; }
    int32_t rw() const { return v_->WindowRect().Width() / 2; }
    TColor pixelAt(double x, double y) const {
        return v_->Surface().Pixel(int32_t(std::lround(x)), int32_t(std::lround(y)));
    }
    std::unique_ptr<TKxVCInd> v_;
};

// Pixels that differ between two images outside r.
int changedOutside(const QImage& a, const QImage& b, const TRect& r) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if ((x < r.Left || x >= r.Right || y < r.Top || y >= r.Bottom) &&
                a.pixel(x, y) != b.pixel(x, y))
                ++n;
    return n;
}

int changedInside(const QImage& a, const QImage& b, const TRect& r) {
    int n = 0;
    for (int y = r.Top; y < r.Bottom; ++y)
        for (int x = r.Left; x < r.Right; ++x)
            if (a.pixel(x, y) != b.pixel(x, y)) ++n;
    return n;
}

// --- mapping of the readings ---------------------------------------------------------------

struct MapCase {
    const char* what;  // "pitch", "roll", "course"
    float in;
    float expected;  // NaN: unchanged from the start value 7
};

class VCIndMapping : public ::testing::TestWithParam<MapCase> {};

TEST_P(VCIndMapping, ClampsWrapsOrIgnores) {
    const MapCase& c = GetParam();
    TKxVCInd v;
    v.Loaded();
    const std::string what = c.what;
    auto set = [&](float x) {
        if (what == "pitch") v.SetPitch(x);
        if (what == "roll") v.SetRoll(x);
        if (what == "course") v.SetCourse(x);
    };
    auto get = [&] { return what == "pitch" ? v.Pitch() : what == "roll" ? v.Roll() : v.Course(); };
    set(7.0f);
    int events = 0;
    QObject::connect(&v, &TKxVCInd::OnAttitudeChange, [&] { ++events; });
    QObject::connect(&v, &TKxVCInd::OnCourseChange, [&] { ++events; });
    set(c.in);
    const float expected = std::isnan(c.expected) ? 7.0f : c.expected;
    EXPECT_FLOAT_EQ(get(), expected) << c.what << " " << c.in;
    // An event only when the stored reading changed.
    EXPECT_EQ(events, expected != 7.0f ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Readings, VCIndMapping,
    ::testing::Values(MapCase{"pitch", 45.0f, 45.0f}, MapCase{"pitch", 90.0f, 90.0f},
                      MapCase{"pitch", 95.0f, 90.0f}, MapCase{"pitch", -200.0f, -90.0f},
                      MapCase{"pitch", kInf, 90.0f}, MapCase{"pitch", -kInf, -90.0f},
                      MapCase{"pitch", kNaN, kNaN}, MapCase{"pitch", 7.0f, kNaN},
                      MapCase{"roll", 180.0f, 180.0f}, MapCase{"roll", -180.0f, 180.0f},
                      MapCase{"roll", 190.0f, -170.0f}, MapCase{"roll", -190.0f, 170.0f},
                      MapCase{"roll", 540.0f, 180.0f}, MapCase{"roll", 360.0f, 0.0f},
                      MapCase{"roll", -725.0f, -5.0f}, MapCase{"roll", kInf, kNaN},
                      MapCase{"roll", kNaN, kNaN}, MapCase{"roll", 367.0f, kNaN},
                      MapCase{"course", 370.0f, 10.0f}, MapCase{"course", -10.0f, 350.0f},
                      MapCase{"course", 720.0f, 0.0f}, MapCase{"course", 360.0f, 0.0f},
                      MapCase{"course", -1e-6f, 0.0f}, MapCase{"course", -kInf, kNaN},
                      MapCase{"course", kNaN, kNaN}));

TEST(VCIndCourse, WrapsIntoItsOwnTurn) {
    TKxVCInd v;
    v.Loaded();
    v.CourseSettings()->WriteRange(-200.0f, 200.0f);  // a 400-unit turn from -200
    const struct {
        float in, out;
    } cases[] = {{250.0f, -150.0f},
                 {-250.0f, 150.0f},
                 {200.0f, -200.0f},
                 {-200.0f, -200.0f},
                 {10.0f, 10.0f}};
    for (const auto& c : cases) {
        v.SetCourse(c.in);
        EXPECT_FLOAT_EQ(v.Course(), c.out) << c.in;
    }
    v.CourseSettings()->SetValueFormat(QStringLiteral("0.0"));
    v.CourseSettings()->SetValueUnit(QStringLiteral(" gon"));
    EXPECT_EQ(v.CourseText(), "10.0 gon");
}

TEST(VCIndAttitude, BothAtOnceFireOneEvent) {
    TKxVCInd v;
    v.Loaded();
    int events = 0;
    QObject::connect(&v, &TKxVCInd::OnAttitudeChange, [&] { ++events; });
    v.SetAttitude(5.0f, 10.0f);
    EXPECT_EQ(events, 1);
    v.SetAttitude(5.0f, 370.0f);  // the same attitude
    EXPECT_EQ(events, 1);
    v.SetAttitude(kNaN, -20.0f);  // the pitch is ignored, the roll taken
    EXPECT_EQ(events, 2);
    EXPECT_FLOAT_EQ(v.Pitch(), 5.0f);
    EXPECT_FLOAT_EQ(v.Roll(), -20.0f);
}

// --- geometry of the readings --------------------------------------------------------------

// Pitch at per mille p of the default range -30..30 (and beyond): the horizon's offset
// below the centre in window radii.
TEST_F(VCInd, HorizonFollowsThePitchRange) {
    const struct {
        float pitch;
        double radii;
    } cases[] = {{-30.0f, -1.0}, {-15.0f, -0.5}, {0.0f, 0.0},   {30.0f, 1.0},
                 {60.0f, 2.0},   {90.0f, 3.0},   {400.0f, 3.0}, {-kInf, -3.0}};
    for (const auto& c : cases) {
        v_->SetPitch(c.pitch);
        EXPECT_EQ(v_->HorizonOffset(), std::lround(c.radii * rw())) << c.pitch;
        // Without roll the horizon's ends lie level, that far below the centre.
        const int32_t y = int32_t(std::lround(cy() + c.radii * rw()));
        EXPECT_NEAR(v_->Horizon()[0].Y, y, 1) << c.pitch;
        EXPECT_NEAR(v_->Horizon()[1].Y, y, 1) << c.pitch;
    }
    // An inverted range turns the ladder upside down.
    v_->PitchSettings()->WriteRange(30.0f, -30.0f);
    v_->SetPitch(15.0f);
    EXPECT_EQ(v_->HorizonOffset(), -std::lround(0.5 * rw()));
}

// Roll at per mille 0, 500, 1000 of -60..60 and beyond: the pointer's apex on the rim at
// the angle -roll from straight up.
TEST_F(VCInd, RollPointerTurnsAgainstTheBank) {
    const float rolls[] = {-60.0f, 0.0f, 60.0f, 90.0f, 180.0f, -135.0f};
    for (float roll : rolls) {
        v_->SetRoll(roll);
        const double a = -roll * M_PI / 180.0, r = rw() - 1.0;
        const TPoint apex = v_->RollPointer()[0];
        EXPECT_NEAR(apex.X, cx() + r * std::sin(a), 1.0) << roll;
        EXPECT_NEAR(apex.Y, cy() - r * std::cos(a), 1.0) << roll;
        // The horizon line is turned by the same angle.
        const TPoint h0 = v_->Horizon()[0], h1 = v_->Horizon()[1];
        const double drawn = std::atan2(h1.Y - h0.Y, h1.X - h0.X) * 180.0 / M_PI;
        double diff = std::remainder(drawn - (-roll), 360.0);
        EXPECT_NEAR(diff, 0.0, 1.0) << roll;
    }
}

TEST_F(VCInd, NeedleStandsAtTheDeviationsPosition) {
    const struct {
        float value;
        int32_t ppt;
    } cases[] = {{-2.0f, 0},   {0.0f, 500},   {2.0f, 1000}, {1.0f, 750},
                 {2.5f, 1030}, {-10.0f, -30}, {kInf, 1030}, {-kInf, -30}};
    const float f = float(v_->TrackRight() - v_->TrackLeft()) / 1000.0f;
    for (const auto& c : cases) {
        v_->SetValue(c.value);
        const int32_t x = v_->TrackLeft() + int32_t(std::nearbyint(double(f) * c.ppt));
        EXPECT_EQ(v_->Needle()[0].X, x) << c.value;
        // Under the track, which lies T + 1 below the strip's top (the strip is 2 T + 3).
        const int32_t t = (v_->DeviationStrip().Height() - 3) / 2;
        EXPECT_EQ(v_->Needle()[0].Y, v_->DeviationStrip().Top + t + 2) << c.value;
    }
    EXPECT_EQ(v_->TrackLeft(), v_->WindowRect().Left);
    EXPECT_EQ(v_->TrackRight(), v_->WindowRect().Right - 1);
}

// --- pixels --------------------------------------------------------------------------------

// At ±90 the default range puts the horizon three radii away: the whole window is one
// colour (sampled on a circle between the ladder's reach and the rim, below the pointer).
TEST_F(VCInd, VerticalPitchFillsTheWindow) {
    const struct {
        float pitch, roll;
        TColor below, above;  // below and above the centre on the screen
    } cases[] = {
        {90.0f, 0.0f, v_->ColorSky(), v_->ColorSky()},
        {-90.0f, 0.0f, v_->ColorGround(), v_->ColorGround()},
        {90.0f, 180.0f, v_->ColorSky(), v_->ColorSky()},
        {0.0f, 0.0f, v_->ColorGround(), v_->ColorSky()},
        {0.0f, 180.0f, v_->ColorSky(), v_->ColorGround()},
        {0.0f, -180.0f, v_->ColorSky(), v_->ColorGround()},
        {-10.0f, 180.0f, v_->ColorSky(), v_->ColorGround()},
    };
    // The ladder has its own test; here only sky and ground count.
    v_->SetOptions(TKxVCInd::kAllVCIndOptions & ~TKxVCInd::VCIndOption(TKxVCInd::opPitchLadder));
    v_->PaintToSurface();
    for (const auto& c : cases) {
        v_->SetAttitude(c.pitch, c.roll);
        const double r = 0.75 * rw();  // inside the roll pointer
        for (int deg = 30; deg <= 330; deg += 15) {
            if (deg >= 75 && deg <= 105) continue;  // the horizon's ends when it is level
            if (deg >= 255 && deg <= 285) continue;
            const double a = deg * M_PI / 180.0;
            const double y = cy() - r * std::cos(a);
            const TColor want = y > cy() ? c.below : c.above;
            EXPECT_EQ(pixelAt(cx() + r * std::sin(a), y), ColorToRGB(want))
                << c.pitch << "/" << c.roll << " at " << deg;
        }
    }
}

TEST_F(VCInd, ReadingRepaintsOnlyItsPart) {
    const struct {
        const char* what;
        std::function<void(TKxVCInd&)> set;
        std::function<TRect(const TKxVCInd&)> part;
    } cases[] = {
        {"pitch", [](TKxVCInd& v) { v.SetPitch(12.0f); },
         [](const TKxVCInd& v) { return v.FaceRect(); }},
        {"roll", [](TKxVCInd& v) { v.SetRoll(-33.0f); },
         [](const TKxVCInd& v) { return v.FaceRect(); }},
        {"course", [](TKxVCInd& v) { v.SetCourse(273.0f); },
         [](const TKxVCInd& v) { return v.CourseBox(); }},
        {"deviation", [](TKxVCInd& v) { v.SetValue(1.2f); },
         [](const TKxVCInd& v) { return v.DeviationStrip(); }},
    };
    for (const auto& c : cases) {
        const QImage before = v_->Surface().Image().copy();
        v_->SetRedrawNeeded(false);
        c.set(*v_);
        EXPECT_FALSE(v_->RedrawNeeded()) << c.what;
        const QImage after = v_->Surface().Image().copy();
        EXPECT_EQ(changedOutside(before, after, c.part(*v_)), 0) << c.what;
        EXPECT_GT(changedInside(before, after, c.part(*v_)), 0) << c.what;
        // The composed reading looks exactly as a full paint of the same state.
        v_->Invalidate();
        v_->PaintToSurface();
        EXPECT_EQ(changedInside(after, v_->Surface().Image(), c.part(*v_)), 0) << c.what;
    }
}

TEST_F(VCInd, LayoutStacksBoxFaceAndStripInsideTheArea) {
    const TRect a = v_->InstrumentArea(), box = v_->CourseBox(), face = v_->FaceRect(),
                strip = v_->DeviationStrip(), win = v_->WindowRect();
    EXPECT_EQ(face.Width(), face.Height());
    EXPECT_EQ(box.Bottom + 2, face.Top);
    EXPECT_EQ(face.Bottom + 2, strip.Top);
    EXPECT_GE(box.Top, a.Top);
    EXPECT_LE(strip.Bottom, a.Bottom);
    EXPECT_NEAR(box.Left + box.Right, face.Left + face.Right, 1);
    const int32_t ring = std::max(1, face.Width() / 10);
    EXPECT_EQ(win.Left, face.Left + ring);
    EXPECT_EQ(win.Bottom, face.Bottom - ring);
    EXPECT_EQ(strip.Height(), 2 * std::clamp(std::min(a.Width(), a.Height()) / 20, 3, 10) + 3);
    // Without the course box and the strip the face takes the whole height.
    v_->SetOptions(TKxVCInd::kAllVCIndOptions & ~TKxVCInd::VCIndOption(TKxVCInd::opCourse) &
                   ~TKxVCInd::VCIndOption(TKxVCInd::opDeviation));
    v_->PaintToSurface();
    EXPECT_EQ(v_->FaceRect().Height(), std::min(a.Width(), a.Height()));
    EXPECT_EQ(v_->CourseBox(), TRect{});
    EXPECT_EQ(v_->DeviationStrip(), TRect{});
}

// --- blinking ------------------------------------------------------------------------------

TEST_F(VCInd, OverflowBlinksTheNeedleUntilBackInRange) {
    v_->SetValue(3.0f);
    EXPECT_TRUE(v_->Blinking());
    ASSERT_NE(test::Subscription(v_.get()), nullptr);
    TMessage m{0, 0, 1, 0};
    static_cast<TKxFlashClient&>(*v_).WMFlash(m);
    const TPoint apex = v_->Needle()[0];
    EXPECT_EQ(v_->Surface().Pixel(apex.X, apex.Y + 3), ColorToRGB(v_->BlinkColor2()));
    m.LParam = 0;
    static_cast<TKxFlashClient&>(*v_).WMFlash(m);
    EXPECT_EQ(v_->Surface().Pixel(apex.X, apex.Y + 3), ColorToRGB(v_->BlinkColor1()));
    v_->SetValue(0.5f);
    EXPECT_FALSE(v_->Blinking());
    EXPECT_EQ(test::Subscription(v_.get()), nullptr);
    const TPoint back = v_->Needle()[0];
    EXPECT_EQ(v_->Surface().Pixel(back.X, back.Y + 3), ColorToRGB(v_->PointerColor()));
}

TEST(VCIndBlink, NotAtDesignTimeNorWithoutTheOption) {
    for (int mode = 0; mode < 2; ++mode) {
        TKxVCInd v;
        if (mode == 0) v.SetDesigning(true);
        if (mode == 1)
            v.SetOptions(TKxVCInd::kAllVCIndOptions & ~TKxVCInd::VCIndOption(TKxVCInd::opOverflow) &
                         ~TKxVCInd::VCIndOption(TKxVCInd::opLimit));
        v.Loaded();
        v.PaintToSurface();
        v.SetValue(5.0f);
        EXPECT_FALSE(v.Blinking()) << mode;
        EXPECT_EQ(test::Subscription(&v), nullptr) << mode;
    }
    ClearFlashList();
}

// --- bad input and sizes -------------------------------------------------------------------

struct SizeCase {
    int32_t w, h;
    bool tooSmall;
};

class VCIndSizes : public ::testing::TestWithParam<SizeCase> {};

TEST_P(VCIndSizes, DrawAnyReadingInsideTheControl) {
    const SizeCase& c = GetParam();
    TKxVCInd v;
    v.SetBounds(0, 0, c.w, c.h);
    v.Loaded();
    v.PaintToSurface();
    EXPECT_EQ(v.TooSmall(), c.tooSmall);
    const float readings[] = {0.0f, 1e30f, -1e30f, kInf, -kInf, kNaN, 91.0f, -0.0f};
    for (float r : readings) {
        v.SetAttitude(r, r);
        v.SetCourse(r);
        v.SetValue(r);
    }
    if (!c.tooSmall) {
        const TRect a = v.InstrumentArea();
        for (const TPoint& p : v.Needle()) {
            EXPECT_GE(p.Y, a.Top);
            EXPECT_LE(p.Y, a.Bottom);
        }
    }
    EXPECT_EQ(v.Surface().Width(), c.w);
    ClearFlashList();
}

INSTANTIATE_TEST_SUITE_P(Sizes, VCIndSizes,
                         ::testing::Values(SizeCase{1, 1, true}, SizeCase{20, 20, true},
                                           SizeCase{40, 40, true}, SizeCase{60, 60, true},
                                           SizeCase{100, 100, false}, SizeCase{220, 220, false},
                                           SizeCase{400, 60, true}, SizeCase{400, 120, false},
                                           SizeCase{4000, 4000, false}));

TEST(VCIndRanges, ExtremeRangesGiveDefinedGeometry) {
    const struct {
        float from, to;
    } ranges[] = {{1e-30f, 2e-30f}, {-3e38f, 3e38f}, {30.0f, -30.0f}, {5.0f, 5.0f}};
    for (const auto& r : ranges) {
        TKxVCInd v;
        v.PitchSettings()->WriteRange(r.from, r.to);
        v.RollSettings()->WriteRange(r.from, r.to);
        v.SignalSettings()->WriteRange(r.from, r.to);
        v.Loaded();
        v.PaintToSurface();
        v.SetAttitude(45.0f, 30.0f);
        v.SetValue(1.0f);
        // A range without width leaves the horizon through the centre.
        if (r.from == r.to) {
            EXPECT_EQ(v.HorizonOffset(), 0);
        }
        const TRect f = v.FaceRect();
        EXPECT_TRUE(f.Left >= 0 && f.Right <= v.width() && f.Top >= 0 && f.Bottom <= v.height());
        ClearFlashList();
    }
}

TEST(VCIndLog, LogarithmicDeviationStillDraws) {
    TKxVCInd v;
    v.SignalSettings()->WriteRange(1.0f, 1000.0f);
    v.SetLogScale(true);
    v.Loaded();
    v.PaintToSurface();
    v.SetValue(100.0f);
    EXPECT_EQ(v.PPT(), 667);
    const float f = float(v.TrackRight() - v.TrackLeft()) / 1000.0f;
    EXPECT_EQ(v.Needle()[0].X, v.TrackLeft() + int32_t(std::nearbyint(double(f) * 667)));
    ClearFlashList();
}

TEST_F(VCInd, SettingsChangesRepaint) {
    const std::function<void(TKxVCInd&)> changes[] = {
        [](TKxVCInd& v) { v.PitchSettings()->SetValueTo(40.0f); },
        [](TKxVCInd& v) { v.RollSettings()->SetValueFrom(-90.0f); },
        [](TKxVCInd& v) { v.CourseSettings()->SetValueUnit(QStringLiteral("deg")); },
        [](TKxVCInd& v) { v.SetColorSky(clAqua); },
        [](TKxVCInd& v) { v.BevelOuter()->SetWidth(4); },
        [](TKxVCInd& v) { v.FontValue()->SetSize(14); },
    };
    for (const auto& change : changes) {
        v_->SetRedrawNeeded(false);
        change(*v_);
        EXPECT_TRUE(v_->RedrawNeeded());
    }
}

// --- accessibility -------------------------------------------------------------------------

TEST_F(VCInd, AssistiveToolsHearAllFourReadings) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(v_.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    v_->SetAttitude(5.0f, -12.0f);
    v_->SetCourse(273.0f);
    v_->SetValue(0.5f);
    EXPECT_EQ(a->text(QAccessible::Value).toStdString(),
              std::string("Pitch 5.0°; Roll -12.0°; Course 273°; Deviation 0.5"));
    v_->PitchSettings()->SetName1(QStringLiteral("Nose"));
    v_->SignalSettings()->SetValueUnit(QStringLiteral("dots"));
    EXPECT_EQ(a->text(QAccessible::Value).toStdString(),
              std::string("Nose 5.0°; Roll -12.0°; Course 273°; Deviation 0.5 dots"));
    v_->SetValue(3.0f);
    EXPECT_EQ(a->text(QAccessible::Description), "out of range");
}

}  // namespace
}  // namespace kx
