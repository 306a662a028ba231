#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>

#include "adjusterpage.h"
#include "kx/framework/adjuster.h"

namespace kxgallery {
namespace {

TEST(AdjusterPage, EveryAdjusterDrivesItsIndicatorAndReportsFinishedChanges) {
    AdjusterPage page;
    QStringList classes;
    for (const kx::TKxAnalogCControl* a : page.Adjusters())
        classes << QString::fromLatin1(a->metaObject()->className());
    EXPECT_EQ(classes, (QStringList{"kx::TKxDial", "kx::TKxDial", "kx::TKxDial", "kx::TKxGearDial",
                                    "kx::TKxHSlider", "kx::TKxVSlider"}));
    for (size_t i = 0; i < page.Adjusters().size(); ++i) {
        kx::TKxAnalogCControl* dial = page.Adjusters()[i];
        EXPECT_EQ(dial->ValueIndicator(), page.Indicators()[i]) << i;
        EXPECT_FLOAT_EQ(page.Indicators()[i]->Value(), dial->Value()) << i;
        const float before = dial->Value();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_PageUp, Qt::NoModifier);
        QCoreApplication::sendEvent(dial, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_PageUp, Qt::NoModifier);
        QCoreApplication::sendEvent(dial, &release);
        EXPECT_GT(dial->Value(), before) << i;
        EXPECT_FLOAT_EQ(page.Indicators()[i]->Value(), dial->Value()) << i;
        EXPECT_TRUE(page.Report(int(i)).startsWith(QStringLiteral("Set to ") + dial->ValueText()))
            << page.Report(int(i)).toStdString();
    }
}

}  // namespace
}  // namespace kxgallery
