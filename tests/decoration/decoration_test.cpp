// Decoration: the frames' content area per option, what a transparent frame leaves, the
// panel's client area and layout, the label's text choice and placement, the gradient's
// pixels per style, and what assistive tools learn.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>
#include <functional>
#include <memory>

#include "common/test_env.h"
#include "kx/decoration/kxbevel.h"
#include "kx/decoration/kxgradient.h"
#include "kx/decoration/kxlabel.h"
#include "kx/decoration/kxpanel.h"

namespace kx {
namespace {

using B = TKxCustomBevel;

// Surfaces are at ratio 1 here, so logical and device pixels are the same.
bool transparentAt(const TKxControl& c, int x, int y) {
    return qAlpha(c.Surface().Image().pixel(x, y)) == 0;
}

TEST(Bevel, ContentAreaPerOption) {
    const struct {
        B::TKxBevelOptions options;
        TRect content;
    } cases[] = {{0, {0, 0, 100, 100}},
                 {B::Option(B::opBevelOuter), {8, 8, 92, 92}},
                 {B::Option(B::opBevelInner), {8, 8, 92, 92}},
                 {B::kDefaultOptions, {16, 16, 84, 84}},
                 {B::kDefaultOptions | B::Option(B::opTranparent), {16, 16, 84, 84}}};
    for (const auto& c : cases) {
        TKxBevel b;
        b.SetOptions(c.options);
        b.PaintToSurface();
        EXPECT_EQ(b.ContentRect(), c.content) << int(c.options);
    }
}

TEST(Bevel, EmptyPaintsNothingAndTransparentLeavesTheFace) {
    TKxBevel none;
    none.SetOptions(0);
    none.PaintToSurface();
    for (int y = 0; y < 100; y += 3)
        for (int x = 0; x < 100; x += 3)
            ASSERT_TRUE(transparentAt(none, x, y)) << x << "," << y;

    TKxBevel filled, clear;
    clear.SetOptions(B::kDefaultOptions | B::Option(B::opTranparent));
    filled.PaintToSurface();
    clear.PaintToSurface();
    // Between the outer line and the rings (spacing) and inside the frame.
    for (TPoint p : {TPoint{50, 50}, TPoint{4, 50}, TPoint{12, 50}}) {
        EXPECT_FALSE(transparentAt(filled, p.X, p.Y)) << p.X;
        EXPECT_TRUE(transparentAt(clear, p.X, p.Y)) << p.X;
    }
    // The lines themselves are drawn alike.
    EXPECT_EQ(clear.Surface().Pixel(0, 50), filled.Surface().Pixel(0, 50));
    EXPECT_FALSE(transparentAt(clear, 0, 50));
}

// Settings given to a frame or a gradient are copied (null is ignored), and every change
// shows at the next paint.
TEST(Bevel, SettersCopyAndEveryChangeRepaints) {
    TKxBevel b;
    TKxSBevel wide;
    wide.SetWidth(6);
    b.SetBevelInner(&wide);
    b.SetBevelOuter(&wide);
    EXPECT_EQ(b.BevelInner()->Width(), 6);
    EXPECT_EQ(b.BevelOuter()->Width(), 6);
    b.SetBevelInner(nullptr);
    b.SetBevelOuter(nullptr);
    const std::function<void()> changes[] = {[&] { b.BevelInner()->SetColor(clRed); },
                                             [&] { b.BevelOuter()->SetColor(clBlue); },
                                             [&] { b.SetOptions(B::Option(B::opBevelInner)); }};
    for (const auto& change : changes) {
        b.PaintToSurface();
        const QImage before = b.Surface().Image();
        change();
        b.PaintToSurface();
        EXPECT_NE(b.Surface().Image(), before) << &change - changes;
    }
}

TEST(Gradient, SettersCopyAndEveryChangeRepaints) {
    TKxGradient g;
    EXPECT_TRUE(g.testAttribute(Qt::WA_OpaquePaintEvent));  // it covers every pixel
    TKxGradSettings s;
    s.SetColorFrom(clRed);
    g.SetGradSettings(&s);
    EXPECT_EQ(g.GradSettings()->ColorFrom(), clRed);
    g.SetGradSettings(nullptr);
    g.PaintToSurface();
    const QImage before = g.Surface().Image();
    g.GradSettings()->SetStyle(gsVertical1);
    g.PaintToSurface();
    EXPECT_NE(g.Surface().Image(), before);
}

class IndBevel : public TKxCustomIndBevel {
  public:
    IndBevel() : TKxCustomIndBevel(nullptr) {}
    int hooks = 0;

  protected:
    void ValueChange() override { ++hooks; }
};

TEST(Bevel, ValueNotifiesOnlyChanges) {
    IndBevel b;
    int events = 0;
    QObject::connect(&b, &TKxCustomIndBevel::OnValueChange, [&] { ++events; });
    for (double v : {0.0, 1.5, 1.5, std::nan(""), -2.0})
        b.SetValue(v);
    EXPECT_EQ(events, 2);
    EXPECT_EQ(b.hooks, 2);
    EXPECT_EQ(b.Value(), -2.0);
    b.SetValueFormat("0.00");
    EXPECT_EQ(b.ValueFormat(), "0.00");
}

// First of the panel tests: a panel alone (no label made yet) brings its interface.
TEST(Panel, IsAGroupForAssistiveTools) {
    TKxPanel p;
    p.setObjectName("Pumps");
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&p);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Grouping);
    EXPECT_EQ(a->text(QAccessible::Name), "Pumps");
}

TEST(Panel, SettersCopyAndEveryChangeRepaints) {
    TKxPanel p;
    TKxSBevel wide;
    wide.SetWidth(5);
    wide.SetBevelLine(blNone);
    p.SetBevelInner(&wide);
    p.SetBevelOuter(&wide);
    EXPECT_EQ(p.BevelInner()->Width(), 5);
    EXPECT_EQ(p.contentsMargins().left(), 2 * (5 + 5));
    p.SetBevelInner(nullptr);  // ignored
    p.SetBevelOuter(nullptr);
    const std::function<void()> changes[] = {
        [&] { p.BevelInner()->SetColor(clRed); }, [&] { p.BevelOuter()->SetColor(clBlue); },
        [&] { p.SetOptions(TKxPanel::Option(TKxPanel::opBevelOuter)); }};
    for (const auto& change : changes) {
        p.PaintToSurface();
        const QImage before = p.Surface().Image();
        change();
        p.PaintToSurface();
        EXPECT_NE(p.Surface().Image(), before) << &change - changes;
    }
    p.SetOptions(TKxPanel::Option(TKxPanel::opBevelInner));
    p.BevelInner()->SetWidth(1);  // the inner bevel's changes reach the margins too
    EXPECT_EQ(p.contentsMargins().left(), 5 + 1);
}

TEST(Panel, AutoSizeAsksTheEnclosingLayoutAgain) {
    QWidget outer;
    auto* outerLayout = new QVBoxLayout(&outer);
    auto* p = new TKxPanel;
    outerLayout->addWidget(p);
    auto* inner = new QVBoxLayout(p);
    auto* child = new QLabel("x");
    child->setFixedSize(40, 30);
    inner->addWidget(child);
    int requests = 0;
    struct Counter : QObject {
        int& n;
        explicit Counter(int& count) : n(count) {}
        bool eventFilter(QObject*, QEvent* e) override {
            n += e->type() == QEvent::LayoutRequest;
            return false;
        }
    } counter(requests);
    outer.show();  // a hidden widget's hint is not asked for
    QCoreApplication::processEvents();
    outer.installEventFilter(&counter);
    p->SetAutoSize(true);
    QCoreApplication::processEvents();
    EXPECT_GE(requests, 1);
}

TEST(Panel, ClientAreaLiesInsideTheFrame) {
    const struct {
        TKxPanel::TKxPanelOptions options;
        int width, offset;
        QMargins margins;
    } cases[] = {{3, 2, 0, {16, 16, 16, 16}},
                 {3, 0, 1, {1 + 1 + 4 + 4, 10, 10, 10}},  // thickness 4 (spacing 3, line 1)
                 {TKxPanel::Option(TKxPanel::opBevelOuter), 2, 0, {8, 8, 8, 8}},
                 {0, 2, 3, {0, 0, 0, 0}}};
    for (const auto& c : cases) {
        TKxPanel p;
        for (TKxSBevel* b : {p.BevelInner(), p.BevelOuter()}) {
            b->SetWidth(c.width);
            if (c.width == 0) b->SetSpacing(3);
            b->Offset()->SetLeft(c.offset);
            b->Offset()->SetTop(c.offset);
            b->Offset()->SetRight(c.offset);
            b->Offset()->SetBottom(c.offset);
        }
        p.SetOptions(c.options);
        EXPECT_EQ(p.contentsMargins(), c.margins) << int(c.options) << " " << c.width;
        TRect r{0, 0, 100, 100};
        p.AdjustClientRect(r);
        EXPECT_EQ(r, (TRect{c.margins.left(), c.margins.top(), 100 - c.margins.right(),
                            100 - c.margins.bottom()}));
    }
}

TEST(Panel, ChildrenOfALayoutSitInsideAndAutoSizeAsksForThem) {
    TKxPanel p;
    auto* layout = new QVBoxLayout(&p);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* child = new QLabel("x");
    child->setFixedSize(40, 30);
    layout->addWidget(child);
    p.resize(200, 100);
    layout->activate();
    EXPECT_EQ(p.contentsRect(), QRect(16, 16, 168, 68));
    EXPECT_TRUE(p.contentsRect().contains(child->geometry()));
    EXPECT_EQ(p.sizeHint(), QSize(200, 100));
    p.SetAutoSize(true);
    EXPECT_EQ(p.sizeHint(), QSize(40 + 32, 30 + 32));
    p.BevelOuter()->SetWidth(4);  // the frame grows: so do the margins
    EXPECT_EQ(p.contentsMargins().left(), 18);
}

TEST(Panel, IsPaintedFilledEverywhere) {
    TKxPanel p;
    EXPECT_TRUE(p.testAttribute(Qt::WA_OpaquePaintEvent));
    p.SetOptions(0);
    EXPECT_FALSE(p.testAttribute(Qt::WA_OpaquePaintEvent));
    p.PaintToSurface();
    EXPECT_TRUE(transparentAt(p, 50, 50));
    p.SetOptions(TKxPanel::Option(TKxPanel::opBevelInner));
    p.PaintToSurface();
    for (int y = 0; y < 100; y += 7)
        for (int x = 0; x < 100; x += 7)
            ASSERT_FALSE(transparentAt(p, x, y)) << x << "," << y;
}

class Label : public ::testing::Test {
  protected:
    void SetUp() override { test::ResetEnvironment(); }
    TKxLabel l_;
};

TEST_F(Label, ChoosesTheTextOrTheDefault) {
    QString numbers;
    for (int i = 0; i < 32; ++i)
        numbers += QString::number(i) + ';';
    EXPECT_EQ(l_.DigitText(), numbers);
    EXPECT_EQ(l_.ShownText(), "0");
    EXPECT_EQ(l_.Text(31), "31");
    l_.SetDigitText("RUNNING;FAULT;;MAINTENANCE");
    const struct {
        int digit;
        const char* shown;
    } cases[] = {{0, "RUNNING"}, {1, "FAULT"},    {2, "default"},  {3, "MAINTENANCE"},
                 {5, "default"}, {31, "default"}, {32, "default"}, {-1, "default"}};
    for (const auto& c : cases) {
        l_.SetDigit(c.digit);
        EXPECT_EQ(l_.ShownText(), c.shown) << c.digit;
    }
    QString many;
    for (int i = 0; i < 40; ++i)
        many += QString::number(i * 2) + ';';
    l_.SetDigitText(many);
    l_.SetDigit(31);
    EXPECT_EQ(l_.ShownText(), "62");  // the 33rd entry and later are dropped
    l_.SetDefaultText("?");
    l_.SetDigit(32);
    EXPECT_EQ(l_.ShownText(), "?");
}

TEST_F(Label, NothingIsDrawnBeforeTheFirstPaint) {
    l_.SetDigit(3);
    EXPECT_FALSE(l_.PaintedOnce());
    EXPECT_TRUE(l_.RedrawNeeded());
    l_.PaintToSurface();
    EXPECT_TRUE(l_.PaintedOnce());
    bool ink = false;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 60; ++x)
            ink = ink || !transparentAt(l_, x, y);
    EXPECT_TRUE(ink);
}

TEST_F(Label, PlacesTheTextByPositionAndSpacing) {
    l_.PaintToSurface();
    TCanvas& c = l_.Canvas();
    c.SetFont(*l_.Font());
    const int th = c.TextHeight("X");
    const int tw = c.TextWidth("0");
    const struct {
        TKxLabel::TPosH h;
        TKxLabel::TPosV v;
        int spacing;
        TPoint origin;
    } cases[] = {
        {TKxLabel::phCenter, TKxLabel::pvCenter, 3, {30 - tw / 2, 10 - th / 2}},
        {TKxLabel::phLeft, TKxLabel::pvTop, 3, {3, 3 - int(std::nearbyint(th * 0.25))}},
        {TKxLabel::phRight,
         TKxLabel::pvBottom,
         3,
         {60 - tw - 3, 20 - int(std::nearbyint(th * 0.8)) - 3 - 1}},
        {TKxLabel::phRight, TKxLabel::pvTop, 7, {60 - tw - 7, 7 - int(std::nearbyint(th * 0.25))}},
        {TKxLabel::phLeft,
         TKxLabel::pvBottom,
         -2,
         {-2, 20 - int(std::nearbyint(th * 0.8)) + 2 - 1}}};
    for (const auto& k : cases) {
        l_.SetTextPosH(k.h);
        l_.SetTextPosV(k.v);
        l_.SetSpacing(k.spacing);
        l_.PaintToSurface();
        EXPECT_EQ(l_.TextOrigin(), k.origin) << int(k.h) << "," << int(k.v) << "," << k.spacing;
    }
}

TEST_F(Label, EveryChangeRedraws) {
    l_.PaintToSurface();
    const QImage before = l_.Surface().Image();
    // Spacing counts only at an edge, so it comes after the positions.
    const std::function<void()> changes[] = {[&] { l_.SetDigit(1); },
                                             [&] { l_.SetDigitText("A;B;C;"); },
                                             [&] { l_.SetTextPosH(TKxLabel::phLeft); },
                                             [&] { l_.SetTextPosV(TKxLabel::pvTop); },
                                             [&] { l_.SetSpacing(0); },
                                             [&] { l_.Font()->SetSize(12); }};
    QImage last = before;
    for (const auto& change : changes) {
        change();
        EXPECT_TRUE(l_.RedrawNeeded());
        l_.PaintToSurface();
        EXPECT_NE(l_.Surface().Image(), last);
        last = l_.Surface().Image();
    }
}

TEST_F(Label, WhatAssistiveToolsLearn) {
    l_.SetDigitText("RUNNING;FAULT;");
    l_.SetDigit(1);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&l_);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::StaticText);
    EXPECT_EQ(a->text(QAccessible::Name), "FAULT");
    EXPECT_EQ(a->text(QAccessible::Value), "FAULT");
    l_.setAccessibleName("Machine state");
    EXPECT_EQ(a->text(QAccessible::Name), "Machine state");
}

TEST(Gradient, EveryStyleRunsFromTheFirstColourToTheSecond) {
    const TColor from = 0x000000FF, to = 0x00FF0000;  // red to blue (BGR)
    const struct {
        TGradientStyle style;
        TPoint fromAt, toAt;
    } cases[] = {{gsHorizontal1, {20, 0}, {20, 39}}, {gsHorizontal2, {20, 0}, {20, 19}},
                 {gsVertical1, {0, 20}, {59, 20}},   {gsVertical2, {0, 20}, {29, 20}},
                 {gsTopLeft, {0, 0}, {59, 39}},      {gsTopRight, {59, 0}, {0, 39}},
                 {gsElliptic1, {30, 0}, {30, 20}},   {gsRectangle, {0, 0}, {30, 20}},
                 {gsDiamond1, {0, 0}, {30, 20}},     {gsElliptic3, {0, 0}, {30, 20}}};
    for (const auto& c : cases) {
        TKxGradient g;
        g.resize(60, 40);
        g.GradSettings()->SetColorFrom(from);
        g.GradSettings()->SetColorTo(to);
        g.GradSettings()->SetStyle(c.style);
        g.PaintToSurface();
        EXPECT_EQ(g.Surface().Pixel(c.fromAt.X, c.fromAt.Y), from) << int(c.style);
        EXPECT_EQ(g.Surface().Pixel(c.toAt.X, c.toAt.Y), to) << int(c.style);
    }
    TKxGradient d;
    EXPECT_EQ(d.size(), QSize(50, 50));
    d.PaintToSurface();
    EXPECT_EQ(d.Surface().Pixel(10, 0), 0x00E2E2E2);
    EXPECT_EQ(d.Surface().Pixel(10, 49), 0x008F8F8F);
}

}  // namespace
}  // namespace kx
