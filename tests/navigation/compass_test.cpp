// Compass: heading normalisation through every entry point, needle and card geometry,
// what a reading and a course change repaint, the readout, bad input and extreme sizes.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "common/pixels.h"
#include "kx/drawing/angles.h"
#include "kx/drawing/text.h"
#include "kx/framework/accessible.h"
#include "kx/navigation/compass.h"

namespace kx {
namespace {

using Opt = TKxCompass::TCompassOption;
constexpr TKxCompass::TCompassOptions bit(Opt o) {
    return TKxCompass::CompassOption(o);
}
constexpr float kInf = std::numeric_limits<float>::infinity();
const float kNaN = std::numeric_limits<float>::quiet_NaN();

std::unique_ptr<TKxCompass> painted(
    TKxCompass::TCompassOptions options = TKxCompass::kDefaultOptions, int w = 200, int h = 250) {
    auto c = std::make_unique<TKxCompass>();
    c->SetOptions(options);
    c->SetBounds(0, 0, w, h);
    c->Loaded();
    c->PaintToSurface();
    return c;
}

// Counts the value model's events on a compass.
struct Events {
    int overflow = 0, limit = 0, value = 0;
    explicit Events(TKxCompass& c) {
        QObject::connect(&c, &TKxAnalogGControl::OnOverflow, [this](QObject*, int) { ++overflow; });
        QObject::connect(&c, &TKxAnalogGControl::OnLimit,
                         [this](QObject*, bool, bool) { ++limit; });
        QObject::connect(&c, &TKxAnalogGControl::OnValueChange, [this](QObject*) { ++value; });
    }
};

int changedOutside(const QImage& a, const QImage& b, std::initializer_list<TRect> areas) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            bool inside = false;
            for (const TRect& r : areas)
                inside = inside || (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom);
            if (!inside && a.pixel(x, y) != b.pixel(x, y)) ++n;
        }
    return n;
}

// The image a full repaint gives in the compass's current state.
QImage repainted(TKxCompass& c) {
    c.Invalidate();
    c.PaintToSurface();
    return c.Surface().Image().copy();
}

// Whether a pixel within one pixel of p has colour col.
bool colourNear(const TKxCompass& c, TPoint p, TColor col) {
    for (int y = p.Y - 1; y <= p.Y + 1; ++y)
        for (int x = p.X - 1; x <= p.X + 1; ++x)
            if (c.Surface().Pixel(x, y) == col) return true;
    return false;
}

// --- normalisation -------------------------------------------------------------------------

struct WrapCase {
    float in, out;
};
class CompassWrap : public ::testing::TestWithParam<WrapCase> {};

TEST_P(CompassWrap, IntoTheCircle) {
    const float r = TKxCompass::WrapHeading(GetParam().in);
    EXPECT_EQ(r, GetParam().out) << GetParam().in;
    EXPECT_FALSE(std::signbit(r));
    EXPECT_LT(r, 360.0f);
}

INSTANTIATE_TEST_SUITE_P(Headings, CompassWrap,
                         ::testing::Values(WrapCase{-1.0f, 359.0f}, WrapCase{361.0f, 1.0f},
                                           WrapCase{720.0f, 0.0f}, WrapCase{-0.0f, 0.0f},
                                           WrapCase{360.0f, 0.0f}, WrapCase{-360.0f, 0.0f},
                                           WrapCase{359.5f, 359.5f}, WrapCase{-721.0f, 359.0f},
                                           // +360 rounds a tiny negative remainder to 360.
                                           WrapCase{-1e-7f, 0.0f}, WrapCase{1e9f, 280.0f}));

TEST(CompassWrapBad, NonFiniteGivesNaN) {
    for (float v : {kNaN, kInf, -kInf})
        EXPECT_TRUE(std::isnan(TKxCompass::WrapHeading(v))) << v;
}

// Every entry point that takes a reading: the value model sees only wrapped headings.
enum Entry { eSetValue, esetValue, ePostValue, eSetDigit };
struct EntryCase {
    Entry entry;
    double in;
    float value;
    int32_t digit;
};

void apply(TKxCompass& c, Entry e, double v) {
    switch (e) {
        case eSetValue:
            c.SetValue(float(v));
            break;
        case esetValue:
            c.setValue(v);
            break;
        case ePostValue:
            c.PostValue(v);
            QCoreApplication::processEvents();
            break;
        case eSetDigit:
            c.SetDigit(int32_t(v));
            break;
    }
}

class CompassEntry : public ::testing::TestWithParam<EntryCase> {};

TEST_P(CompassEntry, WrapsWithoutOverflow) {
    const EntryCase& k = GetParam();
    auto c = painted();
    c->SetValue(100.0f);
    Events ev(*c);
    apply(*c, k.entry, k.in);
    EXPECT_FLOAT_EQ(c->Value(), k.value);
    EXPECT_EQ(c->Digit(), k.digit);
    EXPECT_EQ(ev.overflow, 0);
    EXPECT_EQ(ev.limit, 0);
    EXPECT_GE(ev.value, 1);  // twice when the reading is a new extreme
    EXPECT_FALSE(c->OverflowHigh() || c->OverflowLow());
    EXPECT_EQ(c->PPT(), c->Digit());  // 0..1000 digits over the circle
}

INSTANTIATE_TEST_SUITE_P(
    Readings, CompassEntry,
    ::testing::Values(EntryCase{eSetValue, -1.0, 359.0f, 997}, EntryCase{eSetValue, 361.0, 1.0f, 3},
                      EntryCase{eSetValue, 720.0, 0.0f, 0},
                      EntryCase{eSetValue, -90.0, 270.0f, 750},
                      EntryCase{esetValue, -1.0, 359.0f, 997}, EntryCase{esetValue, 361.0, 1.0f, 3},
                      EntryCase{esetValue, 720.0, 0.0f, 0},
                      EntryCase{ePostValue, -1.0, 359.0f, 997},
                      EntryCase{ePostValue, 361.0, 1.0f, 3}, EntryCase{ePostValue, 720.0, 0.0f, 0},
                      // Digits beyond 0..1000 wrap like the headings they stand for.
                      EntryCase{eSetDigit, 1250, 90.0f, 250},
                      EntryCase{eSetDigit, -250, 270.0f, 750}, EntryCase{eSetDigit, 2000, 0.0f, 0},
                      EntryCase{eSetDigit, 1000, 0.0f, 0}, EntryCase{eSetDigit, 500, 180.0f, 500}));

TEST(Compass, NonFiniteReadingsAreIgnoredEverywhere) {
    const std::function<void(TKxCompass&)> feeds[] = {
        [](TKxCompass& c) { c.SetValue(kNaN); },
        [](TKxCompass& c) { c.SetValue(kInf); },
        [](TKxCompass& c) { c.SetValue(-kInf); },
        [](TKxCompass& c) { c.setValue(1e300); },  // narrows to an infinity
        [](TKxCompass& c) {
            c.PostValue(-std::numeric_limits<double>::infinity());
            QCoreApplication::processEvents();
        },
        [](TKxCompass& c) { c.SetCourse(kInf); },
        [](TKxCompass& c) { c.setCourse(std::nan("")); },
    };
    for (const auto& feed : feeds) {
        auto c = painted();
        c->SetValue(42.0f);
        c->SetCourse(10.0f);
        const QImage before = c->Surface().Image().copy();
        Events ev(*c);
        feed(*c);
        EXPECT_EQ(c->Value(), 42.0f);
        EXPECT_EQ(c->Course(), 10.0f);
        EXPECT_EQ(ev.value, 0);
        EXPECT_TRUE(before == c->Surface().Image());
    }
}

TEST(Compass, NoHeadingBlinksOrAlarmsWithTheDefaults) {
    auto c = painted();
    Events ev(*c);
    for (float v = -400.0f; v <= 800.0f; v += 7.3f)
        c->SetValue(v);
    EXPECT_EQ(ev.overflow, 0);
    EXPECT_EQ(ev.limit, 0);
    EXPECT_FALSE(c->UpperExceeded() || c->LowerExceeded());
}

TEST(Compass, RangeStaysZeroTo360AndLogScaleIsRefused) {
    auto c = painted();
    c->SetValue(90.0f);
    c->SignalSettings()->SetValueFrom(10.0f);
    c->SignalSettings()->SetValueTo(100.0f);
    EXPECT_EQ(c->SignalSettings()->ValueFrom(), 0.0f);
    EXPECT_EQ(c->SignalSettings()->ValueTo(), 360.0f);
    EXPECT_EQ(c->Digit(), 250);
    c->SetLogScale(true);
    EXPECT_FALSE(c->LogScale());
    EXPECT_EQ(c->SignalSettings()->ValueFrom(), 0.0f);
    EXPECT_EQ(c->SignalSettings()->ValueTo(), 360.0f);
    c->SetValue(-90.0f);
    EXPECT_EQ(c->Value(), 270.0f);
    EXPECT_EQ(c->Digit(), 750);
    // A finer digit range only changes the resolution.
    c->SignalSettings()->SetDigitalTo(3600);
    c->SetDigit(3610);
    EXPECT_FLOAT_EQ(c->Value(), 1.0f);
    EXPECT_EQ(c->Digit(), 10);
}

// --- geometry ------------------------------------------------------------------------------

TEST(Compass, DefaultsOfSizeAndReadoutBevel) {
    TKxCompass c;
    EXPECT_EQ(c.width(), 200);
    EXPECT_EQ(c.height(), 250);
    const TKxSBevel& b = *c.BevelValue();
    EXPECT_EQ(b.Style(), bsLowered);
    EXPECT_EQ(b.Spacing(), 0);
    EXPECT_EQ(b.Width(), 2);
    EXPECT_EQ(b.Color(), clBlack);
}

TEST(Compass, TheCardIsOutlinedInTheScaleColourWithDrawLine) {
    for (const bool line : {true, false}) {
        auto c = std::make_unique<TKxCompass>();
        c->ScaleSettings()->SetColor(clNavy);
        c->ScaleSettings()->SetDrawLine(line);
        c->Loaded();
        c->PaintToSurface();
        const TPoint m = c->Center();
        const int32_t r = c->CardRadius();
        // The outline's leftmost and rightmost pixels on the centre row, and nothing of it
        // just outside.
        for (const int32_t x : {m.X - r, m.X + r})
            EXPECT_EQ(c->Surface().Pixel(x, m.Y) == clNavy, line) << x << " " << line;
        EXPECT_NE(c->Surface().Pixel(m.X - r - 1, m.Y), clNavy) << line;
    }
}

TEST(Compass, LayoutFromTheClientRectangleInward) {
    auto c = painted();
    const TRect a = c->FaceArea(), f = c->FaceRect(), box = c->ReadoutBox();
    // Outer bevel 8, inner bevel 8; the face is the centred square of the area.
    EXPECT_EQ(a.Left, 16);
    EXPECT_EQ(a.Right, 184);
    EXPECT_EQ(f.Width(), f.Height());
    EXPECT_EQ(f.Width(), std::min(a.Width(), a.Height()));
    EXPECT_GE(f.Top, a.Top);
    EXPECT_LE(f.Bottom, a.Bottom);
    // The readout lies below the inner bevel, centred on the control, above the names.
    EXPECT_GT(box.Top, a.Bottom + 8);
    EXPECT_LT(box.Bottom, 250 - 8 - 13);
    EXPECT_NEAR((box.Left + box.Right) / 2, 100, 12);  // the unit sits to its right
    const int32_t R = (f.Width() - 1) / 2;
    EXPECT_EQ(c->MarkerRing(), std::max(3, R / 10));
    EXPECT_EQ(c->CardRadius(), R - c->MarkerRing() - 1);
    EXPECT_TRUE(c->LabelsShown());
}

struct NeedleCase {
    Entry entry;
    double in;
    float angle;
    int dx, dy;  // the tip's direction from the centre
};
class CompassNeedle : public ::testing::TestWithParam<NeedleCase> {};

// Kind 4's tip is outline point 6 of the field, the needle's fifth point.
TEST_P(CompassNeedle, TipPointsAtTheHeading) {
    const NeedleCase& k = GetParam();
    auto c = painted();
    c->SetValue(123.0f);
    apply(*c, k.entry, k.in);
    EXPECT_FLOAT_EQ(c->NeedleAngle(), k.angle);
    const TPoint m = c->Center();
    const int32_t T = std::max(2, c->CardRadius() / 8);
    const int32_t rn = c->CardRadius() - T - 1;
    const TPoint tip = c->Needle()[4];
    EXPECT_EQ(tip.X, m.X + k.dx * rn);
    EXPECT_EQ(tip.Y, m.Y + k.dy * rn);
    // Three fifths out along the shaft the needle's colour shows.
    EXPECT_EQ(c->Surface().Pixel(m.X + k.dx * rn * 3 / 5, m.Y + k.dy * rn * 3 / 5), clBlue);
}

INSTANTIATE_TEST_SUITE_P(PerMille, CompassNeedle,
                         ::testing::Values(NeedleCase{eSetDigit, 0, 0.0f, 0, -1},
                                           NeedleCase{eSetDigit, 250, 90.0f, 1, 0},
                                           NeedleCase{eSetDigit, 500, 180.0f, 0, 1},
                                           NeedleCase{eSetDigit, 1000, 0.0f, 0, -1},
                                           NeedleCase{eSetDigit, 1250, 90.0f, 1, 0},
                                           NeedleCase{eSetDigit, -250, 270.0f, -1, 0},
                                           NeedleCase{eSetValue, 450.0, 90.0f, 1, 0},
                                           NeedleCase{eSetValue, -180.0, 180.0f, 0, 1}));

TEST(Compass, TheCourseBugStandsOnTheRimAtTheCourse) {
    auto c = painted();
    const TPoint m = c->Center();
    const int32_t top = m.Y - (c->FaceRect().Width() - 1) / 2;
    struct {
        float course;
        int dx, dy;
    } const cases[] = {{0.0f, 0, -1}, {90.0f, 1, 0}, {-90.0f, -1, 0}, {540.0f, 0, 1}};
    for (const auto& k : cases) {
        c->SetCourse(k.course);
        // The middle of the bug's outer edge lies on the rim in the course's direction.
        const TPoint mid{(c->Bug()[0].X + c->Bug()[1].X) / 2, (c->Bug()[0].Y + c->Bug()[1].Y) / 2};
        const TPoint expect =
            KxRotate(TPoint{m.X, top}, m, std::fmod(k.course + 360.0f, 360.0f), true);
        EXPECT_EQ(mid.X, expect.X) << k.course;
        EXPECT_EQ(mid.Y, expect.Y) << k.course;
        // Two pixels inward of that point the bug's colour shows.
        EXPECT_EQ(c->Surface().Pixel(mid.X - k.dx * 2, mid.Y - k.dy * 2), clFuchsia) << k.course;
    }
}

TEST(Compass, ARotatingCardPutsTheHeadingUnderTheLubberMark) {
    auto c = painted(TKxCompass::kDefaultOptions | bit(TKxCompass::opRotatingCard));
    c->SetValue(30.0f);
    EXPECT_FLOAT_EQ(c->CardAngle(), -30.0f);
    EXPECT_FLOAT_EQ(c->NeedleAngle(), -1.0f);
    const TPoint m = c->Center();
    // The lubber mark points straight down from the rim at the top.
    EXPECT_EQ(c->Needle()[2].X, m.X);
    EXPECT_LT(c->Needle()[0].Y, m.Y - c->CardRadius());
    // "N" has turned to 330 degrees: red ink there, none straight up.
    const int32_t T = std::max(2, c->CardRadius() / 8);
    const int32_t rl = c->CardRadius() - T - 2 - 17 / 2 - 1;
    auto redNear = [&](TPoint p) {  // text is smoothed: reddish pixels
        int n = 0;
        for (int y = p.Y - 6; y <= p.Y + 6; ++y)
            for (int x = p.X - 6; x <= p.X + 6; ++x) {
                const TColor px = c->Surface().Pixel(x, y);
                n += GetRValue(px) > 150 && GetGValue(px) < 100 && GetBValue(px) < 100;
            }
        return n;
    };
    EXPECT_GT(redNear(KxRotate(TPoint{m.X, m.Y - rl}, m, 330.0f, true)), 5);
    EXPECT_EQ(redNear(TPoint{m.X, m.Y - rl}), 0);
    // The bug turns with the card.
    c->SetCourse(90.0f);
    const TPoint mid{(c->Bug()[0].X + c->Bug()[1].X) / 2, (c->Bug()[0].Y + c->Bug()[1].Y) / 2};
    const TPoint expect =
        KxRotate(TPoint{m.X, m.Y - (c->FaceRect().Width() - 1) / 2}, m, 60.0f, true);
    EXPECT_NEAR(mid.X, expect.X, 1);  // the corners round one by one
    EXPECT_NEAR(mid.Y, expect.Y, 1);
}

TEST(Compass, MarkersStandAtTheRecordedExtremes) {
    auto c = std::make_unique<TKxCompass>();
    c->MinMax()->SetMinVisible(true);
    c->MinMax()->SetMaxVisible(true);
    c->MinMax()->SetUseSectorCol(false);
    c->Loaded();
    c->PaintToSurface();  // records the default heading 0 as both extremes
    c->SetValue(90.0f);
    c->ResetMinMax();
    c->SetValue(180.0f);
    c->SetValue(135.0f);
    const TPoint m = c->Center();
    // The straight edges lie on the directions of 90 (min) and 180 degrees (max).
    EXPECT_EQ(c->Markers()[0].Y, m.Y);
    EXPECT_GT(c->Markers()[0].X, m.X);
    EXPECT_EQ(c->Markers()[3].X, m.X);
    EXPECT_GT(c->Markers()[3].Y, m.Y);
    // The minimum's body lies anticlockwise of its edge (above it at 90 degrees).
    EXPECT_LT(c->Markers()[2].Y, m.Y);
    EXPECT_EQ(c->Surface().Pixel(c->Markers()[1].X - 1, m.Y - 2), clAqua);
}

// --- the card and the colours --------------------------------------------------------------

struct TickCase {
    bool rotating;
    float heading;
};
class CompassTicks : public ::testing::TestWithParam<TickCase> {};

// At headings of 2.5 + 5n a card turned the wrong way would put its long ticks where the
// short ones belong, so the inner end of a long tick tells the card's turn.
TEST_P(CompassTicks, LongTicksStandAtTheirCardDirections) {
    const TickCase& k = GetParam();
    auto c = painted(TKxCompass::kDefaultOptions | (k.rotating ? bit(TKxCompass::opRotatingCard)
                                                               : TKxCompass::TCompassOptions(0)));
    c->SetValue(k.heading);
    const TPoint m = c->Center();
    const int32_t T = std::max(2, c->CardRadius() / 8);
    // Two pixels short of a long tick's inner end, where no short tick reaches.
    const TPoint inner{m.X, m.Y - c->CardRadius() + 1 + T - 2};
    const float turn = k.rotating ? -k.heading : 0.0f;
    for (float a : {90.0f, 180.0f, 270.0f}) {
        EXPECT_TRUE(colourNear(*c, KxRotate(inner, m, a + turn, true), clBlack)) << a;
        EXPECT_FALSE(colourNear(*c, KxRotate(inner, m, a + 5.0f + turn, true), clBlack)) << a;
    }
}

INSTANTIATE_TEST_SUITE_P(Turns, CompassTicks,
                         ::testing::Values(TickCase{false, 7.5f}, TickCase{true, 7.5f},
                                           TickCase{true, 2.5f}, TickCase{true, 122.5f}));

struct LabelCase {
    bool rotating;
    float heading;
    const char* text;
    float direction;  // on the card
    bool inner;       // on the intercardinal ring
    TColor colour;
};
class CompassLabels : public ::testing::TestWithParam<LabelCase> {};

// A label on the card matches its text drawn alone, upright and centred on its ring.
TEST_P(CompassLabels, StandUprightOnTheirRings) {
    const LabelCase& k = GetParam();
    auto c =
        painted(TKxCompass::kDefaultOptions | bit(TKxCompass::opIntercardinal) |
                (k.rotating ? bit(TKxCompass::opRotatingCard) : TKxCompass::TCompassOptions(0)));
    c->SetValue(k.heading);
    TBitmap ref;
    ref.SetSize(c->width(), c->height());
    TCanvas& r = ref.Canvas();
    r.SetFont(*c->ScaleSettings()->Font());
    auto widest = [&](std::initializer_list<const char*> texts) {
        int32_t w = 0;
        for (const char* t : texts)
            w = std::max(w, r.TextWidth(QString::fromLatin1(t)));
        return w;
    };
    const int32_t extent =
        std::max(r.TextHeight(QStringLiteral("W")),
                 widest({"N", "3", "6", "E", "12", "15", "S", "21", "24", "W", "30", "33"}));
    const int32_t T = std::max(2, c->CardRadius() / 8);
    const int32_t rl = c->CardRadius() - T - 2 - extent / 2;
    const int32_t ri = rl - extent - widest({"NE", "SE", "SW", "NW"}) / 2;
    const TPoint m = c->Center();
    const TPoint at = KxRotate(TPoint{m.X, m.Y - (k.inner ? ri : rl)}, m,
                               k.direction + (k.rotating ? -k.heading : 0.0f), true);
    r.Brush().SetStyle(bsSolid);
    r.Brush().SetColor(clWhite);
    r.FillRect(TRect{0, 0, ref.Width(), ref.Height()});
    r.Brush().SetStyle(bsClear);
    r.Font().SetColor(k.colour);
    KxTextOut(r, at.X, at.Y, QString::fromLatin1(k.text), toMidCenter);
    const TRect ink = test::InkBounds(ref);
    ASSERT_LT(ink.Left, ink.Right);
    int differ = 0;
    for (int y = ink.Top; y < ink.Bottom; ++y)
        for (int x = ink.Left; x < ink.Right; ++x)
            differ += ref.Pixel(x, y) != c->Surface().Pixel(x, y);
    EXPECT_EQ(differ, 0) << k.text;
}

INSTANTIATE_TEST_SUITE_P(Rings, CompassLabels,
                         ::testing::Values(LabelCase{false, 135.0f, "N", 0.0f, false, clRed},
                                           LabelCase{false, 135.0f, "E", 90.0f, false, clRed},
                                           LabelCase{false, 135.0f, "3", 30.0f, false, clBlack},
                                           LabelCase{false, 135.0f, "NE", 45.0f, true, clBlack},
                                           LabelCase{false, 135.0f, "SW", 225.0f, true, clBlack},
                                           LabelCase{true, 60.0f, "N", 0.0f, false, clRed},
                                           LabelCase{true, 60.0f, "E", 90.0f, false, clRed},
                                           LabelCase{true, 60.0f, "33", 330.0f, false, clBlack},
                                           LabelCase{true, 60.0f, "SE", 135.0f, true, clBlack}));

TEST(Compass, EachPartShowsItsColour) {
    for (bool rotating : {false, true}) {
        auto c = std::make_unique<TKxCompass>();
        c->SetOptions(TKxCompass::kDefaultOptions | (rotating ? bit(TKxCompass::opRotatingCard)
                                                              : TKxCompass::TCompassOptions(0)));
        c->ScaleSettings()->SetColor(clMaroon);
        c->ScaleSettings()->SetPointerColor(clTeal);
        c->SetCardColor(clYellow);
        c->SetCourseColor(clOlive);
        c->SetCourse(90.0f);
        c->Loaded();
        c->PaintToSurface();
        const TPoint m = c->Center();
        const int32_t rc = c->CardRadius();
        const int32_t rn = rc - std::max(2, rc / 8) - 1;
        auto at = [&](int32_t x, int32_t y) { return c->Surface().Pixel(x, y); };
        EXPECT_EQ(at(m.X, m.Y), clMaroon) << rotating;  // the cap, over the needle's root
        // The needle up its shaft, or the lubber mark in the marker ring.
        EXPECT_EQ(rotating ? at(m.X, m.Y - rc - 2) : at(m.X, m.Y - rn * 3 / 5), clTeal) << rotating;
        EXPECT_EQ(at(m.X + (c->FaceRect().Width() - 1) / 2 - 2, m.Y), clOlive) << rotating;
        EXPECT_EQ(at(m.X - rc / 4, m.Y + rc / 4), clYellow) << rotating;
    }
}

// --- what a reading repaints ---------------------------------------------------------------

struct RedrawCase {
    TKxCompass::TCompassOptions options;
    bool markers;
};
class CompassRedraw : public ::testing::TestWithParam<RedrawCase> {};

TEST_P(CompassRedraw, CompositionEqualsAFullRepaint) {
    auto c = std::make_unique<TKxCompass>();
    c->SetOptions(GetParam().options);
    c->MinMax()->SetMinVisible(GetParam().markers);
    c->MinMax()->SetMaxVisible(GetParam().markers);
    c->Loaded();
    c->PaintToSurface();
    for (float v : {10.0f, 13.0f, 200.0f, 359.9f, 0.2f, 91.0f}) {
        c->SetValue(v);
        const QImage composed = c->Surface().Image().copy();
        EXPECT_TRUE(composed == repainted(*c)) << v;
    }
    c->SetCourse(250.0f);
    const QImage composed = c->Surface().Image().copy();
    EXPECT_TRUE(composed == repainted(*c));
}

INSTANTIATE_TEST_SUITE_P(Modes, CompassRedraw,
                         ::testing::Values(RedrawCase{TKxCompass::kDefaultOptions, false},
                                           RedrawCase{TKxCompass::kDefaultOptions, true},
                                           RedrawCase{TKxCompass::kAllOptions, true},
                                           RedrawCase{bit(TKxCompass::opCourse), false}));

TEST(Compass, AReadingRepaintsOnlyTheMovingShapesAndTheNumber) {
    auto c = painted();
    c->SetValue(20.0f);
    const QImage before = c->Surface().Image().copy();
    const std::array<TPoint, 7> old = c->Needle();
    c->SetValue(25.0f);
    EXPECT_NE(before, c->Surface().Image());
    // Inside the face only the old and the new needle's boxes (and the cap) changed.
    TRect needles{old[0].X, old[0].Y, old[0].X, old[0].Y};
    for (const auto& set : {old, c->Needle()})
        for (const TPoint& p : set) {
            needles.Left = std::min(needles.Left, p.X - 2);
            needles.Top = std::min(needles.Top, p.Y - 2);
            needles.Right = std::max(needles.Right, p.X + 3);
            needles.Bottom = std::max(needles.Bottom, p.Y + 3);
        }
    TRect box = c->ReadoutBox();
    EXPECT_EQ(changedOutside(before, c->Surface().Image(), {needles, box}), 0);
    // A course change moves the bug alone.
    const QImage beforeBug = c->Surface().Image().copy();
    c->SetCourse(180.0f);
    EXPECT_EQ(changedOutside(beforeBug, c->Surface().Image(),
                             {TRect{c->FaceRect().Left, c->FaceRect().Top, c->FaceRect().Right,
                                    c->FaceRect().Top + c->MarkerRing() + 3},
                              TRect{c->FaceRect().Left, c->FaceRect().Bottom - c->MarkerRing() - 4,
                                    c->FaceRect().Right, c->FaceRect().Bottom}}),
              0);
}

struct SettingCase {
    const char* name;
    std::function<void(TKxCompass&)> change;
};
class CompassSetting : public ::testing::TestWithParam<SettingCase> {};

// A loaded compass shows a settings change at the next update, without being asked to.
TEST_P(CompassSetting, RepaintsTheCompass) {
    auto c = painted();
    const QImage before = c->Surface().Image().copy();
    GetParam().change(*c);
    c->PaintToSurface();
    EXPECT_NE(before, c->Surface().Image());
}

INSTANTIATE_TEST_SUITE_P(
    Changes, CompassSetting,
    ::testing::Values(
        SettingCase{"BevelInner", [](TKxCompass& c) { c.BevelInner()->SetColor(clNavy); }},
        SettingCase{"BevelOuter", [](TKxCompass& c) { c.BevelOuter()->SetColor(clNavy); }},
        SettingCase{"BevelValue", [](TKxCompass& c) { c.BevelValue()->SetColor(clNavy); }},
        SettingCase{"SetBevelValue",
                    [](TKxCompass& c) {
                        TKxSBevel b;
                        b.Assign(c.BevelValue());
                        b.SetColor(clNavy);
                        c.SetBevelValue(&b);
                    }},
        SettingCase{"FontValue", [](TKxCompass& c) { c.FontValue()->SetColor(clRed); }},
        SettingCase{"ScaleColor", [](TKxCompass& c) { c.ScaleSettings()->SetColor(clRed); }},
        SettingCase{"PointerColor",
                    [](TKxCompass& c) { c.ScaleSettings()->SetPointerColor(clRed); }},
        SettingCase{"ScaleFont", [](TKxCompass& c) { c.ScaleSettings()->Font()->SetSize(14); }},
        SettingCase{"SetScaleSettings",
                    [](TKxCompass& c) {
                        TScaleSettings s;
                        s.Assign(c.ScaleSettings());
                        s.SetColor(clRed);
                        c.SetScaleSettings(&s);
                    }},
        SettingCase{"CardColor", [](TKxCompass& c) { c.SetCardColor(clSilver); }},
        SettingCase{"CardinalColor", [](TKxCompass& c) { c.SetCardinalColor(clBlue); }},
        SettingCase{"CourseColor", [](TKxCompass& c) { c.SetCourseColor(clLime); }},
        SettingCase{"Options",
                    [](TKxCompass& c) {
                        c.SetOptions(TKxCompass::kDefaultOptions |
                                     bit(TKxCompass::opIntercardinal));
                    }}),
    [](const ::testing::TestParamInfo<SettingCase>& i) { return std::string(i.param.name); });

TEST(Compass, NullSettingsAreIgnored) {
    const std::function<void(TKxCompass&)> setters[] = {
        [](TKxCompass& c) { c.SetBevelInner(nullptr); },
        [](TKxCompass& c) { c.SetBevelOuter(nullptr); },
        [](TKxCompass& c) { c.SetBevelValue(nullptr); },
        [](TKxCompass& c) { c.SetScaleSettings(nullptr); },
        [](TKxCompass& c) { c.SetFontValue(nullptr); },
    };
    for (const auto& set : setters) {
        auto c = painted();
        const QImage before = c->Surface().Image().copy();
        EXPECT_NO_THROW(set(*c));
        c->PaintToSurface();
        EXPECT_TRUE(before == c->Surface().Image());
    }
}

// --- readout -------------------------------------------------------------------------------

struct ReadoutCase {
    QString format;
    float value;
    QString text;
};
class CompassReadout : public ::testing::TestWithParam<ReadoutCase> {};

TEST_P(CompassReadout, NorthReadsAsZero) {
    auto c = painted();
    c->SignalSettings()->SetValueFormat(GetParam().format);
    c->SetValue(GetParam().value);
    EXPECT_EQ(c->ReadoutText(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CompassReadout,
    ::testing::Values(ReadoutCase{"000", 273.4f, "273"}, ReadoutCase{"000", 359.6f, "000"},
                      ReadoutCase{"000", 359.4f, "359"}, ReadoutCase{"000", 0.4f, "000"},
                      ReadoutCase{"000", 5.0f, "005"}, ReadoutCase{"##0.0", 359.96f, "0.0"},
                      ReadoutCase{"##0.0", 359.94f, "359.9"},
                      // Two digits round 359 up as well: only headings past 359 read as north.
                      ReadoutCase{"0.0E+0", 359.0f, "3.6E+2"},
                      ReadoutCase{"0.0E+0", 359.5f, "0.0E+0"}));

TEST(Compass, TheReadoutShowsTheHeadingInItsBox) {
    auto c = painted();
    const TRect box = c->ReadoutBox();
    auto ink = [&] {
        QImage digits = c->Surface().Image().copy(box.Left, box.Top, box.Width(), box.Height());
        int n = 0;
        for (int y = 0; y < digits.height(); ++y)
            for (int x = 0; x < digits.width(); ++x)
                n += (digits.pixel(x, y) & 0xFFFFFF) != 0;  // not the black fill
        return std::make_pair(n, digits);
    };
    const auto zero = ink();
    EXPECT_GT(zero.first, 0);
    c->SetValue(111.0f);
    EXPECT_NE(ink().second, zero.second);
    c->SetValue(360.0f);
    EXPECT_EQ(ink().second, zero.second);
    // Without the readout the face takes the room (on a control taller than wide, the
    // area grows only in height).
    auto bare = painted(TKxCompass::kDefaultOptions & ~bit(TKxCompass::opReadout), 250, 200);
    auto boxed = painted(TKxCompass::kDefaultOptions, 250, 200);
    EXPECT_TRUE(bare->ReadoutBox().Width() <= 0);
    EXPECT_GT(bare->FaceRect().Width(), boxed->FaceRect().Width());
}

// --- sizes and bad input -------------------------------------------------------------------

struct SizeCase {
    int w, h;
    bool tooSmall, labels;
};
class CompassSize : public ::testing::TestWithParam<SizeCase> {};

TEST_P(CompassSize, DrawsInsideTheControl) {
    const SizeCase& k = GetParam();
    auto c = painted(TKxCompass::kAllOptions, k.w, k.h);
    EXPECT_EQ(c->TooSmall(), k.tooSmall);
    for (float v : {kInf, -1e30f, 1e30f, 359.999f, -0.0f, kNaN, 17.0f}) {
        c->SetValue(v);
        c->SetCourse(v);
    }
    EXPECT_EQ(c->width(), k.w);
    EXPECT_EQ(c->height(), k.h);
    if (k.tooSmall) {
        EXPECT_EQ(c->Background().Width(), 0);
        return;
    }
    EXPECT_EQ(c->LabelsShown(), k.labels);
    const TRect f = c->FaceRect();
    EXPECT_GE(f.Width(), TKxCompass::kMinFace);
    for (const TPoint& p : c->Needle()) {
        EXPECT_TRUE(p.X >= f.Left && p.X < f.Right && p.Y >= f.Top && p.Y < f.Bottom)
            << p.X << "," << p.Y;
    }
    EXPECT_TRUE(c->Surface().Image().copy() == repainted(*c));
}

INSTANTIATE_TEST_SUITE_P(
    Extremes, CompassSize,
    ::testing::Values(SizeCase{1, 1, true, false}, SizeCase{30, 30, true, false},
                      SizeCase{80, 300, false, false}, SizeCase{120, 90, true, false},
                      SizeCase{400, 150, false, false}, SizeCase{200, 250, false, true},
                      SizeCase{1200, 1200, false, true}, SizeCase{4000, 40, true, false},
                      SizeCase{4000, 4000, false, true}));

// Without bevels, names and readout the face is the control's square.
TEST(Compass, TheCardNeedsAFaceOfAtLeastKMinFace) {
    struct {
        int w, h;
        bool tooSmall;
    } const cases[] = {{40, 40, false}, {39, 40, true}, {40, 39, true}, {60, 40, false}};
    for (const auto& k : cases) {
        auto c = painted(0, k.w, k.h);
        EXPECT_EQ(c->TooSmall(), k.tooSmall) << k.w << "x" << k.h;
        EXPECT_EQ(c->Background().Width(), k.tooSmall ? 0 : TKxCompass::kMinFace);
    }
}

TEST(Compass, AccessibleNameAndValueReadAsAHeading) {
    KxInstallAccessibility();
    auto c = painted();
    c->SetValue(273.0f);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(c.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->text(QAccessible::Name), QStringLiteral("Heading"));
    EXPECT_EQ(a->text(QAccessible::Value), QStringLiteral("273 °"));
}

}  // namespace
}  // namespace kx
