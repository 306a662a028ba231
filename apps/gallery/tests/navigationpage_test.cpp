#include <gtest/gtest.h>

#include <set>

#include "kx/navigation/compass.h"
#include "kx/navigation/vcind.h"
#include "metercard.h"
#include "navigationpage.h"

namespace kxgallery {
namespace {

TEST(NavigationPage, ShowsEachInstrumentInItsCardAndMovesIt) {
    NavigationPage page(0.0);
    EXPECT_EQ(page.PaletteName(), QStringLiteral("KxAnalogInd"));
    EXPECT_EQ(page.SectionSlug(), QStringLiteral("-navigation"));
    std::set<QString> classes;
    for (int i = 0; i < page.InstrumentCount(); ++i) {
        classes.insert(QString::fromLatin1(page.Instrument(i)->metaObject()->className()));
        EXPECT_EQ(page.Card(i)->Meter(), page.Instrument(i));
        EXPECT_TRUE(page.Instrument(i)->IsLoaded());
    }
    EXPECT_EQ(classes, (std::set<QString>{"kx::TKxValueInd", "kx::TKxThermometer", "kx::TKxTank",
                                          "kx::TKxCompass", "kx::TKxVCInd"}));
    std::vector<float> first;
    for (int i = 0; i < page.InstrumentCount(); ++i)
        first.push_back(page.Instrument(i)->Value());
    // Over two simulated minutes: every reading moves, the first compass crosses north both
    // ways without an overflow, the horizon banks both ways and a tank spills over.
    bool west = false, east = false, bankLeft = false, bankRight = false;
    int overflows = 0;
    for (int step = 0; step < 2400; ++step) {
        page.Step(0.05);
        for (int i = 0; i < page.InstrumentCount(); ++i) {
            kx::TKxAnalogGControl* c = page.Instrument(i);
            if (auto* k = qobject_cast<kx::TKxCompass*>(c); k && i == 6) {
                west |= k->Value() > 330.0f;
                east |= k->Value() < 30.0f;
                EXPECT_FALSE(k->OverflowHigh() || k->OverflowLow());
            } else if (auto* v = qobject_cast<kx::TKxVCInd*>(c)) {
                bankLeft |= v->Roll() < -20.0f;
                bankRight |= v->Roll() > 20.0f;
            } else {
                overflows += c->OverflowHigh() || c->OverflowLow();
            }
        }
    }
    for (int i = 0; i < page.InstrumentCount(); ++i)
        EXPECT_NE(page.Instrument(i)->Value(), first[size_t(i)]) << i;
    EXPECT_TRUE(west && east);
    EXPECT_TRUE(bankLeft && bankRight);
    EXPECT_GT(overflows, 0);
}

}  // namespace
}  // namespace kxgallery
