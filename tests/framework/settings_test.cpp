// Settings objects: the change protocol, range checks, copies and the min/max record.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "common/test_env.h"
#include "kx/framework/arrowsettings.h"
#include "kx/framework/bevelsettings.h"
#include "kx/framework/btnbevel.h"
#include "kx/framework/gradsettings.h"
#include "kx/framework/led.h"
#include "kx/framework/linesettings.h"
#include "kx/framework/minmax.h"
#include "kx/framework/offset.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/textsettings.h"
#include "kx/host/bitmap.h"

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

// A settings object of class T, and a statement run on one (as T& o).
using Factory = std::unique_ptr<TKxPersistent> (*)();
using Action = void (*)(TKxPersistent&);
// clang-format off
#define KX_MAKE(T) [] { return std::unique_ptr<TKxPersistent>(new T); }
#define KX_DO(T, ...) [](TKxPersistent& p) { [[maybe_unused]] T& o = static_cast<T&>(p); __VA_ARGS__; }
#define KX_SETTER(T, call) SetterCase{#T "." #call, KX_MAKE(T), KX_DO(T, o.call)}
#define KX_RANGE(T, call, get, expected, changes) \
    RangeCase{#T "." #call, KX_MAKE(T), KX_DO(T, o.call), \
              [](TKxPersistent& p) { return int(static_cast<T&>(p).get); }, expected, changes}
// clang-format on

struct SetterCase {
    const char* Name;
    Factory Create;
    Action SetNew;
};
struct RangeCase {
    const char* Name;
    Factory Create;
    Action Set;
    int (*Get)(TKxPersistent&);
    int Expected, Changes;
};

// Every simple property: a new value notifies once with the object as sender, the same
// value again notifies nothing.
TEST(SettingsSetters, NotifyOnlyWhenTheValueChanges) {
    const SetterCase cases[] = {
        // clang-format off
        KX_SETTER(TKxOffset, SetTop(3)), KX_SETTER(TKxOffset, SetLeft(-2)),
        KX_SETTER(TKxOffset, SetRight(7)), KX_SETTER(TKxOffset, SetBottom(1)),
        KX_SETTER(TKxBevelSettings, SetColorFrom(clRed)),
        KX_SETTER(TKxBevelSettings, SetColorTo(clRed)), KX_SETTER(TKxBevelSettings, SetWidth(5)),
        KX_SETTER(TKxLineSettings, SetLength(12)), KX_SETTER(TKxLineSettings, SetOffset(4)),
        KX_SETTER(TKxLineSettings, SetVisible(false)),
        KX_SETTER(TKxText, SetText("mbar")), KX_SETTER(TKxText, SetOffsetX(2)),
        KX_SETTER(TKxText, SetOffsetY(2)), KX_SETTER(TKxText, SetPos(toBotRight)),
        KX_SETTER(TKxText, SetVisible(false)),
        KX_SETTER(TKxGradSettings, SetColorFrom(clRed)), KX_SETTER(TKxGradSettings, SetColorTo(clRed)),
        KX_SETTER(TKxGradSettings, SetVisible(true)), KX_SETTER(TKxGradSettings, SetStyle(gsDiamond2)),
        KX_SETTER(TArrowSettings, SetShape(3)), KX_SETTER(TArrowSettings, SetColorPen(clRed)),
        KX_SETTER(TArrowSettings, SetColorBrush(clRed)),
        KX_SETTER(TArrowSettings, SetColorCP1Pen(clRed)),
        KX_SETTER(TArrowSettings, SetColorCP1Brush(clRed)),
        KX_SETTER(TArrowSettings, SetColorCP2Pen(clRed)),
        KX_SETTER(TArrowSettings, SetColorCP2Brush(clRed)),
        KX_SETTER(TLED, SetShape(sDiamondLeft)), KX_SETTER(TLED, SetColorOn(clRed)),
        KX_SETTER(TLED, SetColorOff(clRed)), KX_SETTER(TLED, SetWidth(20)),
        KX_SETTER(TLED, SetHeight(20)),
        KX_SETTER(TKxBtnBevel, SetShadowColFrom(clRed)), KX_SETTER(TKxBtnBevel, SetShadowColTo(clRed)),
        KX_SETTER(TKxBtnBevel, SetHighlightColFrom(clRed)),
        KX_SETTER(TKxBtnBevel, SetHighlightColTo(clRed)), KX_SETTER(TKxBtnBevel, SetWidth(0)),
        KX_SETTER(TMinMax, SetMaxColor(clRed)), KX_SETTER(TMinMax, SetMinColor(clRed)),
        KX_SETTER(TMinMax, SetUseSectorCol(false)), KX_SETTER(TMinMax, SetMinVisible(false)),
        KX_SETTER(TMinMax, SetMaxVisible(false)),
        KX_SETTER(TKxSBevel, SetStyle(bsLowered)), KX_SETTER(TKxSBevel, SetSpacing(0)),
        KX_SETTER(TKxSBevel, SetBevelLine(blInner)), KX_SETTER(TKxSBevel, SetWidth(0)),
        KX_SETTER(TKxSBevel, SetColor(clRed)), KX_SETTER(TKxSBevel, SetColorShadowFrom(clRed)),
        KX_SETTER(TKxSBevel, SetColorShadowTo(clRed)),
        KX_SETTER(TKxSBevel, SetColorHighLightFrom(clRed)),
        KX_SETTER(TKxSBevel, SetColorHighLightTo(clRed)), KX_SETTER(TKxSBevel, SetPenColor(clRed)),
        KX_SETTER(TKxSBevel, Offset()->SetLeft(2)), KX_SETTER(TKxSBevel, SurfaceGrad()->SetVisible(true)),
        // clang-format on
    };
    for (const SetterCase& c : cases) {
        SCOPED_TRACE(c.Name);
        auto obj = c.Create();
        ChangeLog log;
        log.Attach(*obj);
        c.SetNew(*obj);
        ASSERT_EQ(log.Count(), 1);
        EXPECT_EQ(log.Senders[0], obj.get());
        c.SetNew(*obj);
        EXPECT_EQ(log.Count(), 1);
    }
}

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
TEST(SettingsRanges, AcceptOnlyTheDocumentedRange) {
    const RangeCase cases[] = {
        // clang-format off
        KX_RANGE(TLED, SetWidth(3), Width(), 13, 0), KX_RANGE(TLED, SetWidth(4), Width(), 4, 1),
        KX_RANGE(TLED, SetWidth(80), Width(), 80, 1), KX_RANGE(TLED, SetWidth(81), Width(), 13, 0),
        KX_RANGE(TLED, SetWidth(-13), Width(), 13, 0), KX_RANGE(TLED, SetHeight(3), Height(), 13, 0),
        KX_RANGE(TLED, SetHeight(4), Height(), 4, 1), KX_RANGE(TLED, SetHeight(80), Height(), 80, 1),
        KX_RANGE(TLED, SetHeight(81), Height(), 13, 0),
        KX_RANGE(TLED, setProperty("Width", 81), Width(), 13, 0),
        KX_RANGE(TKxBtnBevel, SetWidth(-1), Width(), 2, 0),
        KX_RANGE(TKxBtnBevel, SetWidth(0), Width(), 0, 1),
        KX_RANGE(TKxSBevel, SetWidth(-1), Width(), 2, 0),
        KX_RANGE(TKxSBevel, SetWidth(0), Width(), 0, 1),
        KX_RANGE(TKxBevelSettings, SetWidth(-4), Width(), -4, 1),
        // clang-format on
    };
    for (const RangeCase& c : cases) {
        auto obj = c.Create();
        ChangeLog log;
        log.Attach(*obj);
        c.Set(*obj);
        EXPECT_EQ(c.Get(*obj), c.Expected) << c.Name;
        EXPECT_EQ(log.Count(), c.Changes) << c.Name;
    }
}

// Enumerations written as integers (designer, form files) reject unknown values.
TEST(EnumRange, EnumPropertiesIgnoreUnknownValues) {
    TLED led;
    TKxGradSettings grad;
    TKxText text;
    ChangeLog log;
    for (TKxPersistent* p : std::initializer_list<TKxPersistent*>{&led, &grad, &text})
        log.Attach(*p);
    for (int bad : {-1, 99}) {
        led.setProperty("Shape", bad);
        grad.setProperty("Style", bad);
        text.setProperty("Pos", bad);
    }
    EXPECT_EQ(led.Shape(), sRound);
    EXPECT_EQ(grad.Style(), gsHorizontal1);
    EXPECT_EQ(text.Pos(), toTopLeft);
    EXPECT_EQ(log.Count(), 0);
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

// Copies: which notifications the destination fires, all with itself as sender.
TEST(SettingsAssign, DestinationNotifiesAsDocumented) {
    const struct {
        const char* Name;
        Factory Create;
        Action PrepareSource;
        int Notifications;
    } cases[] = {
        {"Arrow identical", KX_MAKE(TArrowSettings), KX_DO(TArrowSettings, ), 1},
        {"Arrow differs", KX_MAKE(TArrowSettings),
         KX_DO(TArrowSettings, o.SetShape(2); o.SetColorCP2Brush(clNavy)), 1},
        {"Offset identical", KX_MAKE(TKxOffset), KX_DO(TKxOffset, ), 1},
        {"Offset differs", KX_MAKE(TKxOffset), KX_DO(TKxOffset, o.Write(1, 2, 3, 4)), 1},
        {"BtnBevel identical", KX_MAKE(TKxBtnBevel), KX_DO(TKxBtnBevel, ), 1},
        {"BtnBevel differs", KX_MAKE(TKxBtnBevel), KX_DO(TKxBtnBevel, o.SetWidth(5)), 1},
        // The gradient copies through its setters, then notifies once more.
        {"Grad identical", KX_MAKE(TKxGradSettings), KX_DO(TKxGradSettings, ), 1},
        {"Grad two differ", KX_MAKE(TKxGradSettings),
         KX_DO(TKxGradSettings, o.SetColorTo(clRed); o.SetStyle(gsTopLeft)), 3},
        {"Grad all differ", KX_MAKE(TKxGradSettings),
         KX_DO(TKxGradSettings, o.SetColorFrom(clBlue); o.SetColorTo(clRed); o.SetVisible(true);
               o.SetStyle(gsTopLeft)),
         5},
        {"BevelSettings", KX_MAKE(TKxBevelSettings), KX_DO(TKxBevelSettings, o.SwapColors()), 1},
        {"Line with pen", KX_MAKE(TKxLineSettings),
         KX_DO(TKxLineSettings, o.Pen()->SetColor(clRed); o.SetLength(9)), 1},
        {"Text with font", KX_MAKE(TKxText),
         KX_DO(TKxText, o.Font()->SetName("Arial"); o.SetText("x")), 1},
        {"LED", KX_MAKE(TLED), KX_DO(TLED, o.SetWidth(40)), 1},
        {"MinMax", KX_MAKE(TMinMax), KX_DO(TMinMax, o.SetMin(3.0f)), 1},
        {"SBevel with nested", KX_MAKE(TKxSBevel),
         KX_DO(TKxSBevel, o.Offset()->SetTop(4); o.SurfaceGrad()->SetVisible(true);
               o.SetBevelLine(blBoth)),
         1},
    };
    for (const auto& c : cases) {
        auto src = c.Create();
        auto dst = c.Create();
        c.PrepareSource(*src);
        ChangeLog log;
        log.Attach(*dst);
        dst->Assign(src.get());
        EXPECT_EQ(log.Count(), c.Notifications) << c.Name;
        for (QObject* s : log.Senders)
            EXPECT_EQ(s, dst.get()) << c.Name;
    }
}

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

    // Related by painting, not by class: still no copy.
    TKxSBevel bevel;
    TKxBtnBevel btn;
    EXPECT_THROW(bevel.Assign(&btn), EConvertError);
    EXPECT_THROW(btn.Assign(&bevel), EConvertError);
}

TEST(OffsetMargins, WriteIsSilentAndSetOffsetShrinks) {
    TKxOffset o;
    ChangeLog log;
    log.Attach(o);
    o.Write(1, 2, 3, 4);  // top, left, right, bottom
    EXPECT_EQ(log.Count(), 0);
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

// Min and Max stamp their date on every write, even of the same value; nothing fires.
TEST(MinMaxRecord, WritesStampTheirDateAndFireNothing) {
    test::FakeClock().SetNow(45123.25);
    TMinMax mm;
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45123.25);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45123.25);
    EXPECT_EQ(mm.Min(), TMinMax::kNoMin);
    EXPECT_EQ(mm.Max(), TMinMax::kNoMax);
    ChangeLog log;
    log.Attach(mm);
    test::FakeClock().SetNow(45001.5);
    mm.SetMin(-3.5f);
    EXPECT_EQ(mm.Min(), -3.5f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45001.5);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45123.25);
    test::FakeClock().SetNow(45002.0);
    mm.SetMin(-3.5f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 45002.0);
    mm.setProperty("Max", 12.0f);
    EXPECT_EQ(mm.Max(), 12.0f);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 45002.0);

    // Direct writes take the given date; NaN is ignored.
    mm.SetMinDirect(1.0f, 100.0);
    mm.SetMaxDirect(2.0f, 200.0);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 100.0);
    EXPECT_DOUBLE_EQ(mm.MaxDateTime(), 200.0);
    mm.SetMin(std::nanf(""));
    mm.SetMax(std::nanf(""));
    EXPECT_EQ(mm.Min(), 1.0f);
    EXPECT_EQ(mm.Max(), 2.0f);
    EXPECT_DOUBLE_EQ(mm.MinDateTime(), 100.0);
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
