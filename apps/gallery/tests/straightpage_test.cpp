#include <gtest/gtest.h>

#include <QApplication>
#include <set>

#include "kx/framework/analogcontrol.h"
#include "metercard.h"
#include "straightpage.h"

namespace kxgallery {
namespace {

TEST(StraightPage, ShowsEachInstrumentInItsCardAndFeedsItTheProcess) {
    StraightPage page(0.0);
    ASSERT_GE(page.InstrumentCount(), 13);
    EXPECT_EQ(page.PaletteName(), QStringLiteral("KxAnalogInd"));
    EXPECT_EQ(page.SectionSlug(), QStringLiteral("-straight"));
    std::set<QString> classes;
    for (int i = 0; i < page.InstrumentCount(); ++i) {
        classes.insert(QString::fromLatin1(page.Instrument(i)->metaObject()->className()));
        EXPECT_EQ(page.Card(i)->Meter(), page.Instrument(i));
        EXPECT_TRUE(page.Instrument(i)->IsLoaded());
    }
    EXPECT_EQ(classes, (std::set<QString>{"kx::TKxBar", "kx::TKxHBar", "kx::TKxVBar",
                                          "kx::TKxHMeter", "kx::TKxVMeter"}));
    // Over a simulated minute every reading moves and some leave their range.
    std::vector<float> first;
    for (int i = 0; i < page.InstrumentCount(); ++i)
        first.push_back(page.Instrument(i)->Value());
    int overflows = 0;
    for (int step = 0; step < 1200; ++step) {
        page.Step(0.05);
        for (int i = 0; i < page.InstrumentCount(); ++i)
            overflows += page.Instrument(i)->OverflowHigh() || page.Instrument(i)->OverflowLow();
    }
    for (int i = 0; i < page.InstrumentCount(); ++i)
        EXPECT_NE(page.Instrument(i)->Value(), first[size_t(i)]) << i;
    EXPECT_GT(overflows, 0);
}

TEST(StraightPage, FlexMetersStretchWithThePage) {
    StraightPage page(0.0);
    ASSERT_EQ(page.FlexCount(), 3);
    page.resize(900, 1600);
    page.show();
    QApplication::processEvents();
    const int narrow = page.Flex(0)->width();
    page.resize(1400, 1600);
    QApplication::processEvents();
    EXPECT_GE(page.Flex(0)->width(), narrow + 300);
    const float before = page.Flex(1)->Value();
    for (int i = 0; i < 40; ++i)
        page.Step(0.05);
    EXPECT_NE(page.Flex(1)->Value(), before);
}

}  // namespace
}  // namespace kxgallery
