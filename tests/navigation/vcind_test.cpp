// The course/attitude indicator: how readings are mapped, where the horizon, the roll
// pointer and the deviation needle stand, what a reading repaints, blinking, bad input
// and what assistive tools learn.
#include <gtest/gtest.h>

#include <QAccessible>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "common/flash_util.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/numeric.h"
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
    const struct {
        float from, to, in, out;
    } cases[] = {
        // A 400-unit turn from -200.
        {-200.0f, 200.0f, 250.0f, -150.0f},
        {-200.0f, 200.0f, -250.0f, 150.0f},
        {-200.0f, 200.0f, 200.0f, -200.0f},
        {-200.0f, 200.0f, -200.0f, -200.0f},
        // A full turn from 10: the turn's start, not 0, is where it wraps.
        {10.0f, 370.0f, 5.0f, 365.0f},
        {10.0f, 370.0f, 370.0f, 10.0f},
        {10.0f, 370.0f, 400.0f, 40.0f},
        {10.0f, 370.0f, 100.0f, 100.0f},
        // An inverted range still turns upward from its start.
        {100.0f, -260.0f, 99.0f, 459.0f},
        {-200.0f, 200.0f, 10.0f, 10.0f},
    };
    for (const auto& c : cases) {
        v.CourseSettings()->WriteRange(c.from, c.to);
        v.SetCourse(c.in);
        EXPECT_FLOAT_EQ(v.Course(), c.out) << c.from << ".." << c.to << ": " << c.in;
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
// the angle -roll from straight up, turned about the window's exact centre (a half pixel
// off for an even window moves it to the next pixel).
TEST_F(VCInd, RollPointerTurnsAgainstTheBank) {
    const float rolls[] = {-60.0f, 0.0f, 60.0f, 90.0f, 180.0f, -135.0f, 7.0f};
    for (float roll : rolls) {
        v_->SetRoll(roll);
        const double a = -roll * M_PI / 180.0, r = rw() - 1.0;
        const TPoint apex = v_->RollPointer()[0];
        EXPECT_EQ(apex.X, Round(cx() + r * std::sin(a))) << roll;
        EXPECT_EQ(apex.Y, Round(cy() - r * std::cos(a))) << roll;
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

// Outside the window a reading leaves the face as Paint left it (ring, roll ticks,
// corners), and the vehicle symbol stays on top of the moved horizon, whatever parts
// are shown.
TEST_F(VCInd, BezelAndSymbolStayOnTopOfTheMovedHorizon) {
    using V = TKxVCInd;
    const V::TVCIndOptions all = V::kAllVCIndOptions;
    const struct {
        V::TVCIndOptions options;
        TColor symbol;
    } sets[] = {
        {all, clYellow},
        {V::TVCIndOptions(all & ~V::VCIndOption(V::opRollScale)), clLime},
        {V::TVCIndOptions(all & ~V::VCIndOption(V::opPitchLadder)), clYellow},
        {V::TVCIndOptions(all & ~V::VCIndOption(V::opCourse) & ~V::VCIndOption(V::opDeviation)),
         clFuchsia},
    };
    const struct {
        float pitch, roll;
    } attitudes[] = {
        {0.0f, 0.0f}, {20.0f, 45.0f}, {-90.0f, 0.0f}, {90.0f, -170.0f}, {-12.0f, 100.0f}};
    enum Part { fill, outline };
    for (const auto& set : sets) {
        v_->SetOptions(set.options);
        v_->SetColorSymbol(set.symbol);
        v_->PaintToSurface();
        const TRect a = v_->InstrumentArea(), f = v_->FaceRect(), w = v_->WindowRect();
        // The symbol's centre square (2 t + 1 across, outlined), its wings and legs.
        const int32_t r = rw(), sx = w.Left + r, sy = w.Top + r, t = std::max(2, r / 20);
        const int32_t inner = Round(r * 0.22), mid = (inner + Round(r * 0.6)) / 2;
        const struct {
            int32_t dx, dy;
            Part part;
        } symbol[] = {
            {0, 0, fill},
            {-t, 0, outline},
            {t, 0, outline},
            {0, -t, outline},
            {0, t, outline},
            {-mid, 0, fill},
            {mid, 0, fill},
            {-mid, -t / 2, outline},
            {mid, -t / 2 + t, outline},
            {inner + t / 2, t, fill},
            {-inner - t + t / 2, t, fill},
        };
        for (const auto& at : attitudes) {
            v_->SetAttitude(at.pitch, at.roll);
            int outside = 0, changed = 0;
            for (int32_t y = f.Top; y < f.Bottom; ++y)
                for (int32_t x = f.Left; x < f.Right; ++x) {
                    if (std::hypot(x - cx(), y - cy()) < r + 1.5) continue;
                    ++outside;
                    if (v_->Surface().Pixel(x, y) != v_->Background().Pixel(x - a.Left, y - a.Top))
                        ++changed;
                }
            EXPECT_GT(outside, 0);
            EXPECT_EQ(changed, 0) << set.options << " at " << at.pitch << "/" << at.roll;
            for (const auto& p : symbol)
                EXPECT_EQ(v_->Surface().Pixel(sx + p.dx, sy + p.dy),
                          ColorToRGB(p.part == fill ? set.symbol : clBlack))
                    << set.options << " at " << at.pitch << "/" << at.roll << ": symbol " << p.dx
                    << "," << p.dy;
        }
    }
}

// The roll scale: a tick on the ring for each listed angle within RollSettings' range
// (0 always), where the pointer stands at that roll, from one pixel inside the face's
// rim inward: nearly the ring's width at 0, 30, 60 and 90 degrees, half that between.
TEST_F(VCInd, RollTicksMarkTheRangeOnTheRing) {
    enum Kind { none, minor, major };
    const struct {
        float from, to;
        int32_t roll;
        Kind kind;
    } cases[] = {
        {-60.0f, 60.0f, 0, major},   {-60.0f, 60.0f, 10, minor},  {-60.0f, 60.0f, -20, minor},
        {-60.0f, 60.0f, 30, major},  {-60.0f, 60.0f, -30, major}, {-60.0f, 60.0f, 45, minor},
        {-60.0f, 60.0f, -45, minor}, {-60.0f, 60.0f, 60, major},  {-60.0f, 60.0f, -60, major},
        {-60.0f, 60.0f, 90, none},   {-60.0f, 60.0f, -90, none},  {-90.0f, 90.0f, 90, major},
        {-90.0f, 90.0f, -90, major}, {-90.0f, 90.0f, -45, minor}, {10.0f, 45.0f, 0, major},
        {10.0f, 45.0f, -10, none},   {10.0f, 45.0f, 20, minor},   {10.0f, 45.0f, 45, minor},
        {10.0f, 45.0f, 60, none},    {60.0f, -60.0f, -30, major}, {60.0f, -60.0f, 45, minor},
    };
    // The ladder and the horizon line stay clear of the ring anyway; sky behind it all.
    v_->SetAttitude(90.0f, 0.0f);
    const TColor white = ColorToRGB(clWhite);
    for (const auto& c : cases) {
        v_->RollSettings()->WriteRange(c.from, c.to);
        v_->Invalidate();
        v_->PaintToSurface();
        const TRect f = v_->FaceRect();
        const int32_t ring = std::max(1, f.Width() / 10);
        const double fx = f.Left + (f.Width() - 1) / 2.0, fy = f.Top + (f.Height() - 1) / 2.0;
        const double a = -c.roll * M_PI / 180.0, ro = f.Width() / 2.0;
        auto at = [&](int32_t depth) {
            const double d = ro - 1.0 - depth;
            return TPoint{Round(fx + d * std::sin(a)), Round(fy - d * std::cos(a))};
        };
        auto whiteNear = [&](TPoint p) {
            for (int32_t dy = -1; dy <= 1; ++dy)
                for (int32_t dx = -1; dx <= 1; ++dx)
                    if (v_->Surface().Pixel(p.X + dx, p.Y + dy) == white) return true;
            return false;
        };
        const TPoint rim = at(0);
        EXPECT_EQ(v_->Surface().Pixel(rim.X, rim.Y) == white, c.kind != none)
            << c.from << ".." << c.to << " at " << c.roll << ": the tick's outer end";
        EXPECT_EQ(whiteNear(at(ring - 3)), c.kind == major)
            << c.from << ".." << c.to << " at " << c.roll << ": the tick's depth";
    }
}

// The course box's frame belongs to the static painting; the readout inside it is redrawn.
TEST_F(VCInd, CourseBoxIsFramedInBlack) {
    const TColor black = ColorToRGB(clBlack), white = ColorToRGB(clWhite);
    for (float course : {0.0f, 273.0f, 8.0f}) {
        v_->SetCourse(course);
        const TRect b = v_->CourseBox();
        ASSERT_GT(b.Width(), 2);
        const int32_t mx = (b.Left + b.Right) / 2, my = (b.Top + b.Bottom) / 2;
        const struct {
            int32_t x, y;
            TColor want;
        } pixels[] = {
            {b.Left, b.Top, black},
            {b.Right - 1, b.Top, black},
            {b.Left, b.Bottom - 1, black},
            {b.Right - 1, b.Bottom - 1, black},
            {mx, b.Top, black},
            {mx, b.Bottom - 1, black},
            {b.Left, my, black},
            {b.Right - 1, my, black},
            {b.Left + 1, b.Top + 1, white},
            {b.Right - 2, b.Bottom - 2, white},
            // One pixel wide: left of it the area's background goes on.
            {b.Left - 1, my, v_->Surface().Pixel(b.Left - 2, my)},
        };
        for (const auto& p : pixels)
            EXPECT_EQ(v_->Surface().Pixel(p.x, p.y), p.want)
                << course << " at " << p.x << "," << p.y;
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

// A blink tick that arrives while a reading is being evaluated (from one of its event
// handlers) paints nothing: the strip is drawn once, when the evaluation is done.
TEST_F(VCInd, FlashTickInsideAValueHandlerPaintsNothing) {
    int ticks = 0, painted = 0;
    QObject::connect(v_.get(), &TKxVCInd::OnValueChange, [&] {
        const QImage before = v_->Surface().Image().copy();
        TMessage m{0, 0, ticks % 2, 0};
        static_cast<TKxFlashClient&>(*v_).WMFlash(m);
        ++ticks;
        if (v_->Surface().Image() != before) ++painted;
    });
    for (float value : {3.0f, -3.0f, 2.5f, 0.0f})
        v_->SetValue(value);
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(painted, 0);
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

// The settings setters copy another object; null and the own object leave all as it was.
TEST(VCIndSettings, SettersCopyOthersAndIgnoreNull) {
    const struct {
        const char* what;
        std::function<void(TKxVCInd&, bool)> set;  // true: with null, false: with another
        std::function<bool(const TKxVCInd&)> copied;
    } cases[] = {
        {"BevelInner",
         [](TKxVCInd& v, bool null) {
             TKxSBevel b;
             b.SetWidth(7);
             v.SetBevelInner(null ? nullptr : &b);
         },
         [](const TKxVCInd& v) { return v.BevelInner()->Width() == 7; }},
        {"BevelOuter",
         [](TKxVCInd& v, bool null) {
             TKxSBevel b;
             b.SetWidth(7);
             v.SetBevelOuter(null ? nullptr : &b);
         },
         [](const TKxVCInd& v) { return v.BevelOuter()->Width() == 7; }},
        {"CourseSettings",
         [](TKxVCInd& v, bool null) {
             TSignalSettings s;
             s.SetValueUnit(QStringLiteral("gon"));
             v.SetCourseSettings(null ? nullptr : &s);
         },
         [](const TKxVCInd& v) { return v.CourseSettings()->ValueUnit() == "gon"; }},
        {"PitchSettings",
         [](TKxVCInd& v, bool null) {
             TSignalSettings s;
             s.SetValueUnit(QStringLiteral("gon"));
             v.SetPitchSettings(null ? nullptr : &s);
         },
         [](const TKxVCInd& v) { return v.PitchSettings()->ValueUnit() == "gon"; }},
        {"RollSettings",
         [](TKxVCInd& v, bool null) {
             TSignalSettings s;
             s.SetValueUnit(QStringLiteral("gon"));
             v.SetRollSettings(null ? nullptr : &s);
         },
         [](const TKxVCInd& v) { return v.RollSettings()->ValueUnit() == "gon"; }},
        {"FontValue",
         [](TKxVCInd& v, bool null) {
             TFont font;
             font.SetSize(23);
             v.SetFontValue(null ? nullptr : &font);
         },
         [](const TKxVCInd& v) { return v.FontValue()->Size() == 23; }},
    };
    for (const auto& c : cases) {
        TKxVCInd v;
        v.Loaded();
        EXPECT_NO_THROW(c.set(v, true)) << c.what;
        EXPECT_FALSE(c.copied(v)) << c.what;
        EXPECT_NO_THROW(c.set(v, false)) << c.what;
        EXPECT_TRUE(c.copied(v)) << c.what;
    }
    // The own objects: nothing to copy.
    TKxVCInd v;
    v.Loaded();
    EXPECT_NO_THROW(v.SetBevelInner(v.BevelInner()));
    EXPECT_NO_THROW(v.SetBevelOuter(v.BevelOuter()));
    EXPECT_NO_THROW(v.SetCourseSettings(v.CourseSettings()));
    EXPECT_NO_THROW(v.SetFontValue(v.FontValue()));
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

namespace kx {
namespace {

// Each reading's own settings start as the header documents them.
TEST(VCIndDefaults, EachReadingHasItsOwnSettings) {
    TKxVCInd v;
    const struct {
        const char* name;
        const TSignalSettings* s;
        float from, to;
        const char* format;
        QString unit;
    } cases[] = {
        {"Course", v.CourseSettings(), 0.0f, 360.0f, "000", QStringLiteral("\u00B0")},
        {"Pitch", v.PitchSettings(), -30.0f, 30.0f, "##0.0", QStringLiteral("\u00B0")},
        {"Roll", v.RollSettings(), -60.0f, 60.0f, "##0.0", QStringLiteral("\u00B0")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.s->Name1(), QString::fromLatin1(c.name));
        EXPECT_EQ(c.s->ValueFrom(), c.from) << c.name;
        EXPECT_EQ(c.s->ValueTo(), c.to) << c.name;
        EXPECT_EQ(c.s->ValueFormat(), QString::fromLatin1(c.format)) << c.name;
        EXPECT_EQ(c.s->ValueUnit(), c.unit) << c.name;
    }
    EXPECT_EQ(v.SignalSettings()->ValueFormat(), QStringLiteral("##0.0"));
    EXPECT_EQ(v.SignalSettings()->ValueUnit(), QString());
    EXPECT_EQ(v.SignalSettings()->ValueFrom(), -2.0f);
    EXPECT_EQ(v.SignalSettings()->ValueTo(), 2.0f);
    EXPECT_EQ(v.width(), 220);
    EXPECT_EQ(v.height(), 220);
}

}  // namespace
}  // namespace kx

namespace kx {
namespace {

std::unique_ptr<TKxVCInd> paintedVCInd(int w, int h,
                                       const std::function<void(TKxVCInd&)>& setup = {}) {
    auto v = std::make_unique<TKxVCInd>();
    v->SetBounds(0, 0, w, h);
    if (setup) setup(*v);
    v->Loaded();
    v->PaintToSurface();
    return v;
}

// A window of radius 4 is the smallest that still shows the horizon.
TEST(VCIndSmall, AWindowOfRadiusFourIsDrawn) {
    bool atFour = false, belowFour = false;
    for (int s = 20; s <= 160; ++s) {
        auto v = paintedVCInd(s, s);
        const int32_t r = v->WindowRect().Width() / 2;
        if (r == 4) {
            atFour = true;
            EXPECT_FALSE(v->TooSmall()) << s;
        } else if (r > 0 && r < 4) {
            belowFour = true;
            EXPECT_TRUE(v->TooSmall()) << s;
        }
    }
    EXPECT_TRUE(atFour);
    EXPECT_TRUE(belowFour);
}

TEST(VCIndHorizon, TheHorizonLineIsWhite) {
    for (const float pitch : {0.0f, 6.0f, -9.0f}) {
        auto v = paintedVCInd(220, 220);
        v->SetAttitude(pitch, 0.0f);
        const TRect w = v->WindowRect();
        const int32_t y = v->Horizon()[0].Y;
        ASSERT_EQ(v->Horizon()[1].Y, y);
        EXPECT_EQ(v->Surface().Pixel(w.Left + w.Width() / 6, y), ColorToRGB(clWhite)) << pitch;
    }
}

// A pitch range without span has no scale: no ladder is drawn, whatever the option says.
TEST(VCIndHorizon, AnEmptyPitchRangeDrawsNoLadder) {
    auto flat = [](bool ladder) {
        return paintedVCInd(220, 220, [ladder](TKxVCInd& v) {
            v.PitchSettings()->WriteRange(5.0f, 5.0f);
            TKxVCInd::TVCIndOptions o = TKxVCInd::kAllVCIndOptions;
            if (!ladder) o &= ~TKxVCInd::VCIndOption(TKxVCInd::opPitchLadder);
            v.SetOptions(o);
        });
    };
    auto with = flat(true), without = flat(false);
    EXPECT_TRUE(with->Surface().Image() == without->Surface().Image());
}

}  // namespace
}  // namespace kx
