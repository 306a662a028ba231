#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>

#include "binarypage.h"
#include "kx/binary/kxled.h"

namespace kxgallery {
namespace {

TEST(BinaryPage, StatusLedsShowTheMachineWordAtEveryStep) {
    BinaryPage page(0.0);
    ASSERT_EQ(page.StatusLeds().size(), 16u);
    uint32_t seen = 0;
    for (int step = 0; step < 24 * 20 * 2; ++step) {
        page.Step(0.05);
        const uint32_t word = uint32_t(page.StatusLeds()[3]->StatusInt());
        seen |= word;
        for (int bit = 0; bit < 16; ++bit)
            ASSERT_EQ(page.StatusLeds()[size_t(bit)]->Checked(), bool(word & (1u << bit)))
                << step << " bit " << bit;
    }
    // Over two cycles every bit of the word is set at some time.
    EXPECT_EQ(seen, 0xFFFFu);
    EXPECT_TRUE(page.WordText().startsWith(QStringLiteral("Status word 0x")));
}

TEST(BinaryPage, EverySwitchDrivesItsLamp) {
    BinaryPage page(0.0);
    ASSERT_EQ(page.Switches().size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        auto* s = page.Switches()[i];
        EXPECT_EQ(page.SwitchLamps()[i]->Checked(), s->Checked()) << i;
        const QPointF p(s->width() / 2, s->height() / 2);
        QMouseEvent press(QEvent::MouseButtonPress, p, p, Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(s, &press);
        EXPECT_EQ(page.SwitchLamps()[i]->Checked(), s->Checked()) << i;
    }
}

}  // namespace
}  // namespace kxgallery
