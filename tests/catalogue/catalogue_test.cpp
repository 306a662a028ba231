// The run-time catalogue: palette order, factories, headers and icons.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QFile>
#include <QWidget>
#include <functional>
#include <memory>

#include "kx/catalogue/catalogue.h"
#include "kx/framework/accessible.h"
#include "kx/framework/adjuster.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/control.h"
#include "kx/host/bitmap.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

QStringList classNames(const std::vector<const TKxCatalogueEntry*>& entries) {
    QStringList names;
    for (const TKxCatalogueEntry* e : entries)
        names << e->ClassName;
    return names;
}

TEST(Catalogue, ListsAllComponentsInPaletteOrder) {
    EXPECT_EQ(KxPalettePages(), (QStringList{"KxMisc", "KxAnalogInd", "KxAnalogAdj", "KxBinary"}));
    QStringList all;
    for (const TKxCatalogueEntry& e : KxCatalogue())
        all << e.Page + '/' + e.ClassName;
    EXPECT_EQ(all, (QStringList{"KxMisc/TKxClock",
                                "KxMisc/TKxOpHourCounter",
                                "KxMisc/TKxLabel",
                                "KxMisc/TKxBevel",
                                "KxMisc/TKxPanel",
                                "KxMisc/TKxGradient",
                                "KxMisc/TKxTimerSpeedBtn",
                                "KxMisc/TKxSpinButton",
                                "KxMisc/TKxNumEdit",
                                "KxMisc/TKxNumSpin",
                                "KxAnalogInd/TKxValueInd",
                                "KxAnalogInd/TKxBar",
                                "KxAnalogInd/TKxVBar",
                                "KxAnalogInd/TKxHBar",
                                "KxAnalogInd/TKxThermometer",
                                "KxAnalogInd/TKxTank",
                                "KxAnalogInd/TKxVMeter",
                                "KxAnalogInd/TKxHMeter",
                                "KxAnalogInd/TKxFlexHMeter",
                                "KxAnalogInd/TKxFlexVMeter",
                                "KxAnalogInd/TKx120Meter",
                                "KxAnalogInd/TKx180Meter",
                                "KxAnalogInd/TKx270Meter",
                                "KxAnalogInd/TKxCompass",
                                "KxAnalogInd/TKxVCInd",
                                "KxAnalogInd/TKxOperatingPoint",
                                "KxAnalogInd/TKxMiniTrend",
                                "KxAnalogInd/TKxTrend",
                                "KxAnalogInd/TKxPrintTrend",
                                "KxAnalogAdj/TKxDial",
                                "KxAnalogAdj/TKxGearDial",
                                "KxAnalogAdj/TKxHSlider",
                                "KxAnalogAdj/TKxVSlider",
                                "KxBinary/TKxLED",
                                "KxBinary/TKxColBitBtn",
                                "KxBinary/TKxRockerSwitch",
                                "KxBinary/TKxToggleSwitch"}));

    const struct {
        const char* page;
        QStringList classes;
    } pages[] = {
        {"KxMisc",
         {"TKxClock", "TKxOpHourCounter", "TKxLabel", "TKxBevel", "TKxPanel", "TKxGradient",
          "TKxTimerSpeedBtn", "TKxSpinButton", "TKxNumEdit", "TKxNumSpin"}},
        {"KxAnalogInd",
         {"TKxValueInd", "TKxBar", "TKxVBar", "TKxHBar", "TKxThermometer", "TKxTank", "TKxVMeter",
          "TKxHMeter", "TKxFlexHMeter", "TKxFlexVMeter", "TKx120Meter", "TKx180Meter",
          "TKx270Meter", "TKxCompass", "TKxVCInd", "TKxOperatingPoint", "TKxMiniTrend", "TKxTrend",
          "TKxPrintTrend"}},
        {"KxAnalogAdj", {"TKxDial", "TKxGearDial", "TKxHSlider", "TKxVSlider"}},
        {"KxBinary", {"TKxLED", "TKxColBitBtn", "TKxRockerSwitch", "TKxToggleSwitch"}},
        {"NoSuchPage", {}},
    };
    for (const auto& p : pages)
        EXPECT_EQ(classNames(KxCataloguePage(QString::fromLatin1(p.page))), p.classes) << p.page;
}

TEST(Catalogue, OnlyThePanelHoldsOtherWidgets) {
    QStringList containers;
    for (const TKxCatalogueEntry& e : KxCatalogue())
        if (e.Container) containers << e.ClassName;
    EXPECT_EQ(containers, QStringList{"TKxPanel"});
}

TEST(Catalogue, EntriesNameTheirClassAndHeader) {
    for (const TKxCatalogueEntry& e : KxCatalogue()) {
        SCOPED_TRACE(e.ClassName.toStdString());
        EXPECT_EQ(e.CppName, "kx::" + e.ClassName);
        EXPECT_FALSE(e.Description.isEmpty());
        // The header an application includes declares the class.
        QFile header(QStringLiteral(KX_INCLUDE_DIR "/") + e.Header);
        ASSERT_TRUE(header.open(QIODevice::ReadOnly)) << e.Header.toStdString();
        EXPECT_TRUE(QString::fromUtf8(header.readAll()).contains("class " + e.ClassName + " "));
    }
}

TEST(Catalogue, FactoriesMakeRunTimeComponents) {
    QWidget parent;
    for (const TKxCatalogueEntry& e : KxCatalogue()) {
        SCOPED_TRACE(e.ClassName.toStdString());
        std::unique_ptr<QWidget> loose(e.Create(nullptr));
        ASSERT_TRUE(loose);
        EXPECT_EQ(QString::fromLatin1(loose->metaObject()->className()), e.CppName);
        EXPECT_EQ(loose->parentWidget(), nullptr);
        if (auto* control = qobject_cast<TKxControl*>(loose.get())) {
            EXPECT_FALSE(control->Designing());
            EXPECT_FALSE(control->IsLoaded());
        } else {
            // Components on Qt's own widgets carry the flag as a property.
            EXPECT_EQ(loose->property("Designing"), QVariant(false));
        }

        QWidget* child = e.Create(&parent);
        EXPECT_EQ(child->parentWidget(), &parent);
        EXPECT_EQ(QString::fromLatin1(child->metaObject()->className()), e.CppName);
    }
}

TEST(Catalogue, FindsClassesWithOrWithoutTheNamespace) {
    const struct {
        const char* name;
        const char* found;  // null: not in the catalogue
    } cases[] = {
        {"TKx270Meter", "kx::TKx270Meter"},
        {"kx::TKx180Meter", "kx::TKx180Meter"},
        {"TKxBar", "kx::TKxBar"},
        {"TKxVCInd", "kx::TKxVCInd"},
        {"kx::TKxFlexMeter", nullptr},
        {"kx::TKxRMeter", nullptr},
        {"kx::TKxBarInstrument", nullptr},
        {"tkx270meter", nullptr},
        {"", nullptr},
    };
    for (const auto& c : cases) {
        const TKxCatalogueEntry* e = KxFindComponent(QString::fromLatin1(c.name));
        std::unique_ptr<QWidget> w(KxCreateComponent(QString::fromLatin1(c.name), nullptr));
        if (c.found) {
            ASSERT_TRUE(e) << c.name;
            EXPECT_EQ(e->CppName, c.found);
            ASSERT_TRUE(w) << c.name;
            EXPECT_STREQ(w->metaObject()->className(), c.found);
        } else {
            EXPECT_FALSE(e) << c.name;
            EXPECT_FALSE(w) << c.name;
        }
    }
}

// --- icons ------------------------------------------------------------------------------

const QRgb kFace = ToQRgb(clBtnFace);

struct TInk {
    QRect bounds;  // of the pixels of the given colours
    int count = 0;
};

TInk ink(const QImage& image, std::function<bool(QRgb)> match) {
    TInk r;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (match(image.pixel(x, y))) {
                r.bounds |= QRect(x, y, 1, 1);
                ++r.count;
            }
    return r;
}

bool isSector(QRgb p) {
    return p == ToQRgb(clYellow) || p == ToQRgb(clGreen) || p == ToQRgb(clRed);
}

TEST(CatalogueIcons, HaveTheRequestedSizeOnTheButtonFace) {
    const TKxCatalogueEntry& e = *KxFindComponent(QStringLiteral("TKx270Meter"));
    const struct {
        int requested, size;
    } sizes[] = {{-5, 1}, {0, 1}, {1, 1}, {2, 2}, {16, 16}, {22, 22}, {256, 256}, {300, 256}};
    for (const auto& s : sizes) {
        const QImage icon = e.Icon(s.requested);
        EXPECT_EQ(icon.size(), QSize(s.size, s.size)) << s.requested;
        EXPECT_EQ(icon.pixel(0, 0), kFace) << s.requested;
        // Too small for a glyph: only the face.
        if (s.size <= 2) {
            EXPECT_EQ(ink(icon, [](QRgb p) { return p != kFace; }).count, 0);
        }
    }
}

// Each round meter's glyph shows its own arc: three sector colours, a black needle, and
// an outline as wide and as high as the arc of its sweep, centred in the icon.
TEST(CatalogueIcons, RoundMeterGlyphsShowTheirSweep) {
    const struct {
        const char* className;
        double minRatio, maxRatio;  // band height / width
    } glyphs[] = {
        {"TKx120Meter", 0.30, 0.45},
        {"TKx180Meter", 0.45, 0.60},
        {"TKx270Meter", 0.78, 0.92},
    };
    QList<QImage> seen;
    for (const auto& g : glyphs) {
        SCOPED_TRACE(g.className);
        const QImage icon = KxFindComponent(QString::fromLatin1(g.className))->Icon(64);
        for (QRgb colour : {ToQRgb(clYellow), ToQRgb(clGreen), ToQRgb(clRed), ToQRgb(clBlack)})
            EXPECT_GT(ink(icon, [colour](QRgb p) { return p == colour; }).count, 20);
        const QRect band = ink(icon, isSector).bounds;
        const double ratio = double(band.height()) / band.width();
        EXPECT_GE(ratio, g.minRatio);
        EXPECT_LE(ratio, g.maxRatio);
        const QRect all = ink(icon, [](QRgb p) { return p != kFace; }).bounds;
        EXPECT_LE(std::abs(all.left() - (63 - all.right())), 1);
        EXPECT_LE(std::abs(all.top() - (63 - all.bottom())), 2);
        EXPECT_GE(all.left(), 1);
        EXPECT_GE(all.top(), 1);
        EXPECT_FALSE(seen.contains(icon));
        seen << icon;
    }
}

TEST(CatalogueIcons, GlyphAnglesCountFromTwelveOClockInAnyTurn) {
    auto glyph = [](int32_t start, int32_t sweep) {
        TBitmap b(40, 40);
        b.Canvas().Brush().SetColor(clBtnFace);
        b.Canvas().FillRect(TRect{0, 0, 40, 40});
        KxPaintRoundMeterGlyph(b.Canvas(), TRect{0, 0, 40, 40}, start, sweep);
        return b.Image().copy();
    };
    EXPECT_EQ(glyph(-135, 270), glyph(225, 270));
    EXPECT_EQ(glyph(585, 270), glyph(225, 270));
    EXPECT_EQ(glyph(270, 400), glyph(270, 360));
    EXPECT_EQ(glyph(270, -20), glyph(270, 1));
    // The sectors lie on the side of the pivot (the black cap) that the sweep covers:
    // twelve to three o'clock up and right, three to six down and right.
    auto isBlack = [](QRgb p) { return p == ToQRgb(clBlack); };
    const struct {
        int32_t start;
        bool right, up;
    } quarters[] = {{0, true, true}, {90, true, false}, {180, false, false}, {270, false, true}};
    for (const auto& q : quarters) {
        const QImage image = glyph(q.start, 90);
        const QRect sector = ink(image, isSector).bounds;
        const QRect cap = ink(image, isBlack).bounds;
        ASSERT_FALSE(sector.isEmpty()) << q.start;
        if (q.right) {
            EXPECT_GE(sector.left(), cap.left()) << q.start;
        } else {
            EXPECT_LE(sector.right(), cap.right()) << q.start;
        }
        if (q.up) {
            EXPECT_LE(sector.bottom(), cap.bottom()) << q.start;
        } else {
            EXPECT_GE(sector.top(), cap.top()) << q.start;
        }
    }
}

TEST(CatalogueIcons, WithoutAGlyphTheComponentIsDrawnSmall) {
    TKxCatalogueEntry e = *KxFindComponent(QStringLiteral("TKx180Meter"));
    e.IconPainter = nullptr;
    const QImage icon = e.Icon(48);
    ASSERT_EQ(icon.size(), QSize(48, 48));
    // The 252 x 174 meter scaled to 48 x 33, centred: face above and below it.
    const QRect drawn = ink(icon, [](QRgb p) { return p != kFace; }).bounds;
    EXPECT_EQ(drawn.width(), 48);
    EXPECT_NEAR(drawn.height(), 33, 1);
    EXPECT_NEAR(drawn.top(), (48 - 33) / 2, 1);
}

// Every component answers assistive tools: analog ones with their name from Name1, their
// reading or setting through the value interface and the role of what they are.
TEST(Catalogue, EveryComponentIsAccessible) {
    KxInstallAccessibility();
    QWidget form;
    for (const TKxCatalogueEntry& e : KxCatalogue()) {
        SCOPED_TRACE(e.ClassName.toStdString());
        QWidget* w = e.Create(&form);
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
        ASSERT_TRUE(a);
        EXPECT_TRUE(a->isValid());
        if (auto* adjuster = qobject_cast<TKxAnalogCControl*>(w)) {
            adjuster->SignalSettings()->SetName1(QStringLiteral("Boiler setpoint"));
            EXPECT_EQ(a->text(QAccessible::Name), QStringLiteral("Boiler setpoint"));
            EXPECT_EQ(a->role(), e.ClassName.contains(QStringLiteral("Dial"))
                                     ? QAccessible::Dial
                                     : QAccessible::Slider);
            ASSERT_TRUE(a->valueInterface());
            EXPECT_EQ(a->valueInterface()->maximumValue().toDouble(),
                      double(adjuster->SignalSettings()->ValueTo()));
            EXPECT_TRUE(a->state().focusable);
        } else if (qobject_cast<TKxAnalogGControl*>(w)) {
            EXPECT_EQ(a->role(), QAccessible::Indicator);
            EXPECT_FALSE(a->text(QAccessible::Name).isEmpty());  // "SignalName1" at first
            EXPECT_TRUE(a->valueInterface());
        }
    }
}

}  // namespace
}  // namespace kx
