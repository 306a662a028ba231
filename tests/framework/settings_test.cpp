// Settings objects: the change protocol, range checks, copies and the min/max record.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "common/test_env.h"
#include "framework/arrowsettings.h"
#include "framework/bevelsettings.h"
#include "framework/btnbevel.h"
#include "framework/gradsettings.h"
#include "framework/led.h"
#include "framework/linesettings.h"
#include "framework/minmax.h"
#include "framework/offset.h"
#include "framework/sbevel.h"
#include "framework/textsettings.h"
#include "host/bitmap.h"

namespace kx {
namespace {

// Records every notification of one settings object.
struct ChangeLog {
    std::vector<QObject*> Senders;
    void Attach(TKxPersistent& p) {
        p.SetOnChange([this](QObject* s) { Senders.push_back(s); });
    }
    int Count() const { return int(Senders.size()); }
};

using Factory = std::function<std::unique_ptr<TKxPersistent>()>;
template <typename T>
Factory Make() {
    return [] { return std::make_unique<T>(); };
}
template <typename T, typename F>
std::function<void(TKxPersistent&)> On(F f) {
    return [f](TKxPersistent& p) { f(static_cast<T&>(p)); };
}

// Every simple property: a new value notifies once with the object as sender, the same
// value again notifies nothing.
struct SetterCase {
    const char* Name;
    Factory Create;
    std::function<void(TKxPersistent&)> SetNew;
};
void PrintTo(const SetterCase& c, std::ostream* os) {
    *os << c.Name;
}

class SetterRule : public ::testing::TestWithParam<SetterCase> {};

TEST_P(SetterRule, NotifiesOnlyWhenTheValueChanges) {
    auto obj = GetParam().Create();
    ChangeLog log;
    log.Attach(*obj);
    GetParam().SetNew(*obj);
    ASSERT_EQ(log.Count(), 1);
    EXPECT_EQ(log.Senders[0], obj.get());
    GetParam().SetNew(*obj);
    EXPECT_EQ(log.Count(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    AllClasses, SetterRule,
    ::testing::Values(
        SetterCase{"OffsetTop", Make<TKxOffset>(), On<TKxOffset>([](auto& o) { o.SetTop(3); })},
        SetterCase{"OffsetLeft", Make<TKxOffset>(), On<TKxOffset>([](auto& o) { o.SetLeft(-2); })},
        SetterCase{"OffsetRight", Make<TKxOffset>(), On<TKxOffset>([](auto& o) { o.SetRight(7); })},
        SetterCase{"OffsetBottom", Make<TKxOffset>(),
                   On<TKxOffset>([](auto& o) { o.SetBottom(1); })},
        SetterCase{"BevelColorFrom", Make<TKxBevelSettings>(),
                   On<TKxBevelSettings>([](auto& o) { o.SetColorFrom(clRed); })},
        SetterCase{"BevelColorTo", Make<TKxBevelSettings>(),
                   On<TKxBevelSettings>([](auto& o) { o.SetColorTo(clRed); })},
        SetterCase{"BevelWidth", Make<TKxBevelSettings>(),
                   On<TKxBevelSettings>([](auto& o) { o.SetWidth(5); })},
        SetterCase{"LineLength", Make<TKxLineSettings>(),
                   On<TKxLineSettings>([](auto& o) { o.SetLength(12); })},
        SetterCase{"LineOffset", Make<TKxLineSettings>(),
                   On<TKxLineSettings>([](auto& o) { o.SetOffset(4); })},
        SetterCase{"LineVisible", Make<TKxLineSettings>(),
                   On<TKxLineSettings>([](auto& o) { o.SetVisible(false); })},
        SetterCase{"TextText", Make<TKxText>(), On<TKxText>([](auto& o) { o.SetText("mbar"); })},
        SetterCase{"TextOffsetX", Make<TKxText>(), On<TKxText>([](auto& o) { o.SetOffsetX(2); })},
        SetterCase{"TextOffsetY", Make<TKxText>(), On<TKxText>([](auto& o) { o.SetOffsetY(2); })},
        SetterCase{"TextPos", Make<TKxText>(), On<TKxText>([](auto& o) { o.SetPos(toBotRight); })},
        SetterCase{"TextVisible", Make<TKxText>(),
                   On<TKxText>([](auto& o) { o.SetVisible(false); })},
        SetterCase{"GradColorFrom", Make<TKxGradSettings>(),
                   On<TKxGradSettings>([](auto& o) { o.SetColorFrom(clRed); })},
        SetterCase{"GradColorTo", Make<TKxGradSettings>(),
                   On<TKxGradSettings>([](auto& o) { o.SetColorTo(clRed); })},
        SetterCase{"GradVisible", Make<TKxGradSettings>(),
                   On<TKxGradSettings>([](auto& o) { o.SetVisible(true); })},
        SetterCase{"GradStyle", Make<TKxGradSettings>(),
                   On<TKxGradSettings>([](auto& o) { o.SetStyle(gsDiamond2); })},
        SetterCase{"ArrowShape", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetShape(3); })},
        SetterCase{"ArrowColorPen", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorPen(clRed); })},
        SetterCase{"ArrowColorBrush", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorBrush(clRed); })},
        SetterCase{"ArrowCP1Pen", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorCP1Pen(clRed); })},
        SetterCase{"ArrowCP1Brush", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorCP1Brush(clRed); })},
        SetterCase{"ArrowCP2Pen", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorCP2Pen(clRed); })},
        SetterCase{"ArrowCP2Brush", Make<TArrowSettings>(),
                   On<TArrowSettings>([](auto& o) { o.SetColorCP2Brush(clRed); })},
        SetterCase{"LedShape", Make<TLED>(), On<TLED>([](auto& o) { o.SetShape(sDiamondLeft); })},
        SetterCase{"LedColorOn", Make<TLED>(), On<TLED>([](auto& o) { o.SetColorOn(clRed); })},
        SetterCase{"LedColorOff", Make<TLED>(), On<TLED>([](auto& o) { o.SetColorOff(clRed); })},
        SetterCase{"LedWidth", Make<TLED>(), On<TLED>([](auto& o) { o.SetWidth(20); })},
        SetterCase{"LedHeight", Make<TLED>(), On<TLED>([](auto& o) { o.SetHeight(20); })},
        SetterCase{"BtnShadowFrom", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& o) { o.SetShadowColFrom(clRed); })},
        SetterCase{"BtnShadowTo", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& o) { o.SetShadowColTo(clRed); })},
        SetterCase{"BtnHighlightFrom", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& o) { o.SetHighlightColFrom(clRed); })},
        SetterCase{"BtnHighlightTo", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& o) { o.SetHighlightColTo(clRed); })},
        SetterCase{"BtnWidth", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& o) { o.SetWidth(0); })},
        SetterCase{"MinMaxMaxColor", Make<TMinMax>(),
                   On<TMinMax>([](auto& o) { o.SetMaxColor(clRed); })},
        SetterCase{"MinMaxMinColor", Make<TMinMax>(),
                   On<TMinMax>([](auto& o) { o.SetMinColor(clRed); })},
        SetterCase{"MinMaxUseSectorCol", Make<TMinMax>(),
                   On<TMinMax>([](auto& o) { o.SetUseSectorCol(false); })},
        SetterCase{"MinMaxMinVisible", Make<TMinMax>(),
                   On<TMinMax>([](auto& o) { o.SetMinVisible(false); })},
        SetterCase{"MinMaxMaxVisible", Make<TMinMax>(),
                   On<TMinMax>([](auto& o) { o.SetMaxVisible(false); })},
        SetterCase{"SBevelStyle", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetStyle(bsLowered); })},
        SetterCase{"SBevelSpacing", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetSpacing(0); })},
        SetterCase{"SBevelBevelLine", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetBevelLine(blInner); })},
        SetterCase{"SBevelWidth", Make<TKxSBevel>(), On<TKxSBevel>([](auto& o) { o.SetWidth(0); })},
        SetterCase{"SBevelColor", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetColor(clRed); })},
        SetterCase{"SBevelShadowFrom", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetColorShadowFrom(clRed); })},
        SetterCase{"SBevelShadowTo", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetColorShadowTo(clRed); })},
        SetterCase{"SBevelHighLightFrom", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetColorHighLightFrom(clRed); })},
        SetterCase{"SBevelHighLightTo", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetColorHighLightTo(clRed); })},
        SetterCase{"SBevelPenColor", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SetPenColor(clRed); })},
        SetterCase{"SBevelNestedOffset", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.Offset()->SetLeft(2); })},
        SetterCase{"SBevelNestedGrad", Make<TKxSBevel>(),
                   On<TKxSBevel>([](auto& o) { o.SurfaceGrad()->SetVisible(true); })}),
    [](const auto& info) { return std::string(info.param.Name); });

// Enumerations and nested objects as the designer and form persistence see them.
TEST(PublishedObjects, EnumAndNestedObjectProperties) {
    TKxSBevel bevel;
    EXPECT_EQ(bevel.property("Style").value<TBevelStyle>(), bsRaised);
    EXPECT_EQ(bevel.property("BevelLine").value<TBevelLine>(), blNone);
    EXPECT_EQ(bevel.property("Offset").value<TKxOffset*>(), bevel.Offset());
    EXPECT_EQ(bevel.property("SurfaceGrad").value<TKxGradSettings*>(), bevel.SurfaceGrad());
    TKxLineSettings line;
    EXPECT_EQ(line.property("Pen").value<TPen*>(), line.Pen());
    TKxText text;
    EXPECT_EQ(text.property("Font").value<TFont*>(), text.Font());
}

// Range checks: a rejected value leaves the property and fires nothing.
struct RangeCase {
    const char* Name;
    Factory Create;
    std::function<void(TKxPersistent&)> Set;
    std::function<int(TKxPersistent&)> Get;
    int Expected;
    int Changes;
};
void PrintTo(const RangeCase& c, std::ostream* os) {
    *os << c.Name;
}

class RangeCheck : public ::testing::TestWithParam<RangeCase> {};

TEST_P(RangeCheck, AcceptsOnlyTheDocumentedRange) {
    auto obj = GetParam().Create();
    ChangeLog log;
    log.Attach(*obj);
    GetParam().Set(*obj);
    EXPECT_EQ(GetParam().Get(*obj), GetParam().Expected);
    EXPECT_EQ(log.Count(), GetParam().Changes);
}

template <typename T>
std::function<int(TKxPersistent&)> Width() {
    return [](TKxPersistent& p) { return static_cast<T&>(p).Width(); };
}
std::function<int(TKxPersistent&)> LedHeight() {
    return [](TKxPersistent& p) { return static_cast<TLED&>(p).Height(); };
}
template <typename T>
std::function<void(TKxPersistent&)> SetWidth(int v) {
    return [v](TKxPersistent& p) { static_cast<T&>(p).SetWidth(v); };
}
std::function<void(TKxPersistent&)> SetLedHeight(int v) {
    return [v](TKxPersistent& p) { static_cast<TLED&>(p).SetHeight(v); };
}
std::function<void(TKxPersistent&)> SetProp(const char* name, QVariant v) {
    return [name, v](TKxPersistent& p) { p.setProperty(name, v); };
}

INSTANTIATE_TEST_SUITE_P(
    Limits, RangeCheck,
    ::testing::Values(
        RangeCase{"LedWidth3", Make<TLED>(), SetWidth<TLED>(3), Width<TLED>(), 13, 0},
        RangeCase{"LedWidth4", Make<TLED>(), SetWidth<TLED>(4), Width<TLED>(), 4, 1},
        RangeCase{"LedWidth80", Make<TLED>(), SetWidth<TLED>(80), Width<TLED>(), 80, 1},
        RangeCase{"LedWidth81", Make<TLED>(), SetWidth<TLED>(81), Width<TLED>(), 13, 0},
        RangeCase{"LedWidthNegative", Make<TLED>(), SetWidth<TLED>(-13), Width<TLED>(), 13, 0},
        RangeCase{"LedHeight3", Make<TLED>(), SetLedHeight(3), LedHeight(), 13, 0},
        RangeCase{"LedHeight4", Make<TLED>(), SetLedHeight(4), LedHeight(), 4, 1},
        RangeCase{"LedHeight80", Make<TLED>(), SetLedHeight(80), LedHeight(), 80, 1},
        RangeCase{"LedHeight81", Make<TLED>(), SetLedHeight(81), LedHeight(), 13, 0},
        RangeCase{"LedWidthByProperty", Make<TLED>(), SetProp("Width", 81), Width<TLED>(), 13, 0},
        RangeCase{"BtnWidthMinus1", Make<TKxBtnBevel>(), SetWidth<TKxBtnBevel>(-1),
                  Width<TKxBtnBevel>(), 2, 0},
        RangeCase{"BtnWidth0", Make<TKxBtnBevel>(), SetWidth<TKxBtnBevel>(0), Width<TKxBtnBevel>(),
                  0, 1},
        RangeCase{"SBevelWidthMinus1", Make<TKxSBevel>(), SetWidth<TKxSBevel>(-1),
                  Width<TKxSBevel>(), 2, 0},
        RangeCase{"SBevelWidth0", Make<TKxSBevel>(), SetWidth<TKxSBevel>(0), Width<TKxSBevel>(), 0,
                  1},
        RangeCase{"BevelSettingsAnyWidth", Make<TKxBevelSettings>(), SetWidth<TKxBevelSettings>(-4),
                  Width<TKxBevelSettings>(), -4, 1}),
    [](const auto& info) { return std::string(info.param.Name); });

// Enumerations written as integers (designer, form files) reject unknown values.
TEST(EnumRange, EnumPropertiesIgnoreUnknownValues) {
    TLED led;
    TKxGradSettings grad;
    TKxText text;
    ChangeLog a, b, c;
    a.Attach(led);
    b.Attach(grad);
    c.Attach(text);
    for (int bad : {-1, 99}) {
        led.setProperty("Shape", bad);
        grad.setProperty("Style", bad);
        text.setProperty("Pos", bad);
    }
    EXPECT_EQ(led.Shape(), sRound);
    EXPECT_EQ(grad.Style(), gsHorizontal1);
    EXPECT_EQ(text.Pos(), toTopLeft);
    EXPECT_EQ(a.Count() + b.Count() + c.Count(), 0);
    led.setProperty("Shape", int(sDiamondRight));
    grad.setProperty("Style", int(gsTopRight));
    text.setProperty("Pos", int(toBotRight));
    EXPECT_EQ(led.Shape(), sDiamondRight);
    EXPECT_EQ(grad.Style(), gsTopRight);
    EXPECT_EQ(text.Pos(), toBotRight);
}

TEST(BevelSettings, SwapColorsAlwaysNotifies) {
    TKxBevelSettings b;
    ChangeLog log;
    log.Attach(b);
    b.SwapColors();
    EXPECT_EQ(b.ColorFrom(), 0x737373);
    EXPECT_EQ(b.ColorTo(), clWhite);
    EXPECT_EQ(log.Count(), 1);
    b.SetColorFrom(clRed);
    b.SetColorTo(clRed);
    log.Senders.clear();
    b.SwapColors();
    EXPECT_EQ(log.Count(), 1);
    EXPECT_EQ(log.Senders[0], &b);
}

// Copies: which notifications the destination fires.
struct AssignCase {
    const char* Name;
    Factory Create;
    std::function<void(TKxPersistent&)> PrepareSource;
    int Notifications;
};
void PrintTo(const AssignCase& c, std::ostream* os) {
    *os << c.Name;
}

class AssignCount : public ::testing::TestWithParam<AssignCase> {};

TEST_P(AssignCount, DestinationNotifiesAsDocumented) {
    auto src = GetParam().Create();
    auto dst = GetParam().Create();
    GetParam().PrepareSource(*src);
    ChangeLog log;
    log.Attach(*dst);
    dst->Assign(src.get());
    EXPECT_EQ(log.Count(), GetParam().Notifications);
    for (QObject* s : log.Senders)
        EXPECT_EQ(s, dst.get());
}

auto Nothing = [](TKxPersistent&) {};

INSTANTIATE_TEST_SUITE_P(
    AllClasses, AssignCount,
    ::testing::Values(
        AssignCase{"ArrowIdentical", Make<TArrowSettings>(), Nothing, 1},
        AssignCase{"ArrowAllDiffer", Make<TArrowSettings>(), On<TArrowSettings>([](auto& a) {
                       a.SetShape(2);
                       a.SetColorPen(clRed);
                       a.SetColorCP2Brush(clNavy);
                   }),
                   1},
        AssignCase{"OffsetIdentical", Make<TKxOffset>(), Nothing, 1},
        AssignCase{"OffsetDiffers", Make<TKxOffset>(),
                   On<TKxOffset>([](auto& o) { o.Write(1, 2, 3, 4); }), 1},
        AssignCase{"BtnBevelIdentical", Make<TKxBtnBevel>(), Nothing, 1},
        AssignCase{"BtnBevelDiffers", Make<TKxBtnBevel>(),
                   On<TKxBtnBevel>([](auto& b) { b.SetWidth(5); }), 1},
        AssignCase{"GradIdentical", Make<TKxGradSettings>(), Nothing, 1},
        AssignCase{"GradTwoDiffer", Make<TKxGradSettings>(), On<TKxGradSettings>([](auto& g) {
                       g.SetColorTo(clRed);
                       g.SetStyle(gsTopLeft);
                   }),
                   3},
        AssignCase{"GradAllDiffer", Make<TKxGradSettings>(), On<TKxGradSettings>([](auto& g) {
                       g.SetColorFrom(clBlue);
                       g.SetColorTo(clRed);
                       g.SetVisible(true);
                       g.SetStyle(gsTopLeft);
                   }),
                   5},
        AssignCase{"BevelSettings", Make<TKxBevelSettings>(),
                   On<TKxBevelSettings>([](auto& b) { b.SwapColors(); }), 1},
        AssignCase{"LineWithPen", Make<TKxLineSettings>(), On<TKxLineSettings>([](auto& l) {
                       l.Pen()->SetColor(clRed);
                       l.SetLength(9);
                   }),
                   1},
        AssignCase{"TextWithFont", Make<TKxText>(), On<TKxText>([](auto& t) {
                       t.Font()->SetName("Arial");
                       t.SetText("x");
                   }),
                   1},
        AssignCase{"LED", Make<TLED>(), On<TLED>([](auto& l) { l.SetWidth(40); }), 1},
        AssignCase{"MinMax", Make<TMinMax>(), On<TMinMax>([](auto& m) { m.SetMin(3.0f); }), 1},
        AssignCase{"SBevelWithNested", Make<TKxSBevel>(), On<TKxSBevel>([](auto& b) {
                       b.Offset()->SetTop(4);
                       b.SurfaceGrad()->SetVisible(true);
                       b.SetBevelLine(blBoth);
                   }),
                   1}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(SettingsAssign, CopiesEveryPublishedValue) {
    TKxGradSettings g1, g2;
    g1.SetColorFrom(0x102030);
    g1.SetColorTo(0x405060);
    g1.SetVisible(true);
    g1.SetStyle(gsElliptic3);
    g2.Assign(&g1);
    EXPECT_EQ(g2.ColorFrom(), 0x102030);
    EXPECT_EQ(g2.ColorTo(), 0x405060);
    EXPECT_TRUE(g2.Visible());
    EXPECT_EQ(g2.Style(), gsElliptic3);

    TKxText t1, t2;
    t1.SetText("bar");
    t1.Font()->SetName("Courier New");
    t1.Font()->SetColor(clRed);
    t1.SetPos(toMidCenter);
    t1.SetOffsetY(-3);
    t2.Assign(&t1);
    EXPECT_EQ(t2.Text(), "bar");
    EXPECT_TRUE(t2.Font()->SameAs(*t1.Font()));
    EXPECT_NE(t2.Font(), t1.Font());
    EXPECT_EQ(t2.Pos(), toMidCenter);
    EXPECT_EQ(t2.OffsetY(), -3);

    TKxSBevel b1, b2;
    b1.SetBevelLine(blBoth);
    b1.SetStyle(bsLowered);
    b1.Offset()->Write(1, 2, 3, 4);
    b1.SurfaceGrad()->SetColorTo(clRed);
    b2.Assign(&b1);
    EXPECT_EQ(b2.BevelLine(), blBoth);
    EXPECT_EQ(b2.Style(), bsLowered);
    EXPECT_EQ(b2.TotalWidth(), 9);
    EXPECT_EQ(b2.Offset()->SetOffset(TRect{0, 0, 10, 10}), (TRect{2, 1, 7, 6}));
    EXPECT_EQ(b2.SurfaceGrad()->ColorTo(), clRed);
}

// After a copy the nested pen and font still report to their own settings object.
TEST(SettingsAssign, NestedObjectsStayHooked) {
    TKxText t1, t2;
    TKxLineSettings l1, l2;
    t2.Assign(&t1);
    l2.Assign(&l1);
    ChangeLog tl, ll;
    tl.Attach(t2);
    ll.Attach(l2);
    t2.Font()->SetColor(clRed);
    l2.Pen()->SetColor(clRed);
    ASSERT_EQ(tl.Count(), 1);
    ASSERT_EQ(ll.Count(), 1);
    EXPECT_EQ(tl.Senders[0], t2.Font());
    EXPECT_EQ(ll.Senders[0], l2.Pen());
}

TEST(SettingsAssign, UnrelatedClassesRaiseTheConversionError) {
    TKxOffset offset;
    TLED led;
    led.SetWidth(20);
    ChangeLog log;
    log.Attach(led);
    try {
        led.Assign(&offset);
        FAIL() << "no exception";
    } catch (const EConvertError& e) {
        EXPECT_STREQ(e.what(), "Cannot assign a TKxOffset to a TLED");
    }
    EXPECT_EQ(led.Width(), 20);
    EXPECT_EQ(log.Count(), 0);

    TKxGradSettings grad;
    TKxSBevel bevel;
    TArrowSettings arrow;
    TKxBtnBevel btn;
    TMinMax mm;
    EXPECT_THROW(bevel.Assign(&grad), EConvertError);
    EXPECT_THROW(grad.Assign(&bevel), EConvertError);
    EXPECT_THROW(arrow.Assign(&btn), EConvertError);
    EXPECT_THROW(mm.Assign(&led), EConvertError);
}

TEST(OffsetMargins, WriteIsSilentAndSetOffsetShrinks) {
    TKxOffset o;
    ChangeLog log;
    log.Attach(o);
    o.Write(1, 2, 3, 4);
    EXPECT_EQ(log.Count(), 0);
    EXPECT_EQ(o.Top(), 1);
    EXPECT_EQ(o.Left(), 2);
    EXPECT_EQ(o.Right(), 3);
    EXPECT_EQ(o.Bottom(), 4);
    EXPECT_EQ(o.SetOffset(TRect{10, 20, 110, 220}), (TRect{12, 21, 107, 216}));
    o.Write(-1, -1, -1, -1);
    EXPECT_EQ(o.SetOffset(TRect{10, 20, 110, 220}), (TRect{9, 19, 111, 221}));
}

TEST(NestedObjects, FontChangeReachesTheHandlerWithTheFontAsSender) {
    TKxText text;
    ChangeLog log;
    log.Attach(text);
    text.Font()->SetSize(14);
    ASSERT_EQ(log.Count(), 1);
    EXPECT_EQ(log.Senders[0], text.Font());

    TFont other;
    other.SetName("Arial");
    text.SetFont(&other);
    ASSERT_EQ(log.Count(), 2);
    EXPECT_EQ(log.Senders[1], text.Font());
    EXPECT_EQ(text.Font()->Name(), "Arial");
    text.SetFont(nullptr);
    EXPECT_EQ(log.Count(), 2);
}

TEST(NestedObjects, SetPenCopiesThenNotifiesTheLine) {
    TKxLineSettings line;
    ChangeLog log;
    log.Attach(line);
    TPen pen;
    pen.SetColor(clRed);
    pen.SetWidth(3);
    line.SetPen(&pen);
    ASSERT_EQ(log.Count(), 2);
    EXPECT_EQ(log.Senders[0], line.Pen());  // the copy, reported by the pen
    EXPECT_EQ(log.Senders[1], &line);       // then the line's own Change
    EXPECT_NE(line.Pen(), &pen);
    EXPECT_EQ(line.Pen()->Color(), clRed);
    EXPECT_EQ(line.Pen()->Width(), 3);

    log.Senders.clear();
    line.SetPen(line.Pen());  // no copy onto itself, only the Change
    ASSERT_EQ(log.Count(), 1);
    EXPECT_EQ(log.Senders[0], &line);
}

TEST(NestedObjects, StandAloneObjectsOnlyStore) {
    TKxText text;
    text.Font()->SetColor(clRed);
    text.SetText("x");
    TKxSBevel bevel;
    bevel.Offset()->SetTop(3);
    EXPECT_EQ(text.Text(), "x");
    EXPECT_EQ(bevel.Offset()->Top(), 3);
}

TEST(MinMaxRecord, CreationStampsBothDatesWithNow) {
    test::FakeClock().SetNow(45123.25);
    TMinMax mm;
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45123.25);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45123.25);
    EXPECT_EQ(mm.Min(), TMinMax::kNoMin);
    EXPECT_EQ(mm.Max(), TMinMax::kNoMax);
}

TEST(MinMaxRecord, MinAndMaxStampTheirDateAndFireNothing) {
    TMinMax mm;
    ChangeLog log;
    log.Attach(mm);
    test::FakeClock().SetNow(45001.5);
    mm.SetMin(-3.5f);
    EXPECT_EQ(mm.Min(), -3.5f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45001.5);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45000.0);
    test::FakeClock().SetNow(45002.0);
    mm.SetMin(-3.5f);  // the same value still stamps
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45002.0);
    mm.SetMax(12.0f);
    EXPECT_EQ(mm.Max(), 12.0f);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45002.0);
    mm.setProperty("Min", 1.0f);
    EXPECT_EQ(mm.Min(), 1.0f);
    EXPECT_EQ(log.Count(), 0);
}

TEST(MinMaxRecord, DirectWritesAndNaN) {
    TMinMax mm;
    ChangeLog log;
    log.Attach(mm);
    mm.SetMinDirect(1.0f, 100.0);
    mm.SetMaxDirect(2.0f, 200.0);
    EXPECT_EQ(mm.Min(), 1.0f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 100.0);
    EXPECT_EQ(mm.Max(), 2.0f);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 200.0);
    test::FakeClock().SetNow(46000.0);
    mm.SetMin(std::nanf(""));
    mm.SetMax(std::nanf(""));
    EXPECT_EQ(mm.Min(), 1.0f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 100.0);
    EXPECT_EQ(mm.Max(), 2.0f);
    EXPECT_EQ(log.Count(), 0);
}

TEST(Led, DrawUsesTheRectAndTheStateColour) {
    TBitmap bmp(20, 20);
    TLED led;
    led.SetShape(sRectangle);
    led.SetColorOn(clRed);
    led.SetColorOff(clBlue);
    led.Rect = TRect{2, 3, 12, 13};
    led.Draw(bmp.Canvas(), true);
    EXPECT_EQ(bmp.Pixel(7, 8), clRed);
    EXPECT_EQ(bmp.Pixel(2, 3), ColorToRGB(clBtnShadow));
    EXPECT_EQ(bmp.Pixel(1, 2), clWhite);
    EXPECT_EQ(bmp.Pixel(13, 14), clWhite);
    led.Draw(bmp.Canvas(), false);
    EXPECT_EQ(bmp.Pixel(7, 8), clBlue);
}

}  // namespace
}  // namespace kx
