#include <gtest/gtest.h>

#include <QMetaProperty>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "kx/framework/customscale.h"
#include "kx/framework/rscale.h"

namespace kx {
namespace {

bool HasProperty(const QObject& o, const char* name) {
    return o.metaObject()->indexOfProperty(name) >= 0;
}

TEST(CustomScale, EachFormPublishesItsOwnText) {
    TKxScale scale;
    TKxFlexScale flex;
    EXPECT_TRUE(HasProperty(scale, "Text"));
    EXPECT_FALSE(HasProperty(scale, "FormatStr"));
    EXPECT_TRUE(HasProperty(flex, "FormatStr"));
    EXPECT_FALSE(HasProperty(flex, "Text"));
    for (const char* common : {"Angle", "AngleMode", "Font", "StepLines", "SubStepLines",
                               "TextAlignment", "TextOffsetX", "TextOffsetY"}) {
        EXPECT_TRUE(HasProperty(scale, common)) << common;
        EXPECT_TRUE(HasProperty(flex, common)) << common;
    }
    EXPECT_TRUE(flex.setProperty("FormatStr", QStringLiteral("0.00")));
    EXPECT_EQ(flex.FormatStr(), u"0.00");
}

TEST(CustomScale, SettersStoreValidChangesOnly) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    using Flex = TKxFlexScale;
    // (setter, value, notifications, value read back)
    struct Case {
        const char* what;
        std::function<void(Flex&)> set;
        int changes;
        std::function<double(const Flex&)> get;
        double after;
    } cases[] = {
        {"Angle same", [](Flex& s) { s.SetAngle(0); }, 0, &Flex::Angle, 0},
        {"Angle", [](Flex& s) { s.SetAngle(45.5f); }, 1, &Flex::Angle, 45.5},
        {"Angle NaN", [=](Flex& s) { s.SetAngle(nan); }, 0, &Flex::Angle, 0},
        {"Angle inf", [=](Flex& s) { s.SetAngle(inf); }, 0, &Flex::Angle, 0},
        {"AngleMode", [](Flex& s) { s.SetAngleModeValue(1); }, 1, &Flex::AngleMode, amManual},
        {"AngleMode 2", [](Flex& s) { s.SetAngleModeValue(2); }, 0, &Flex::AngleMode, amAuto},
        {"Alignment 9", [](Flex& s) { s.SetTextAlignmentValue(9); }, 0, &Flex::TextAlignment,
         toMidCenter},
        {"SubStepAt", [](Flex& s) { s.SetSubStepAt(2.5f); }, 1, &Flex::SubStepAt, 2.5},
        {"SubStepAt 0", [](Flex& s) { s.SetSubStepAt(0); }, 0, &Flex::SubStepAt, 0},
        {"SubStepAt -1", [](Flex& s) { s.SetSubStepAt(-1); }, 0, &Flex::SubStepAt, 0},
        {"SubStepAt NaN", [=](Flex& s) { s.SetSubStepAt(nan); }, 0, &Flex::SubStepAt, 0},
        {"SubStepAt twice",
         [](Flex& s) {
             s.SetSubStepAt(1);
             s.SetSubStepAt(1);
         },
         1, &Flex::SubStepAt, 1},
        {"StepMulti 0", [](Flex& s) { s.SetStepMulti(0); }, 0, &Flex::StepMulti, 1},
        {"StepMulti 4", [](Flex& s) { s.SetStepMulti(4); }, 1, &Flex::StepMulti, 4},
        {"SubStepsVis -2", [](Flex& s) { s.SetSubStepsVis(-2); }, 0, &Flex::SubStepsVis, 1},
        {"SubStepsVis 3", [](Flex& s) { s.SetSubStepsVis(3); }, 1, &Flex::SubStepsVis, 3},
    };
    for (const auto& c : cases) {
        Flex s;
        int changes = 0;
        s.SetOnChange([&](QObject*) { ++changes; });
        c.set(s);
        EXPECT_EQ(changes, c.changes) << c.what;
        EXPECT_EQ(c.get(s), c.after) << c.what;
    }
}

TEST(CustomScale, NestedObjectsReportThemselves) {
    TKxScale s;
    std::vector<QObject*> senders;
    s.SetOnChange([&](QObject* sender) { senders.push_back(sender); });
    s.Font()->SetSize(20);
    s.StepLines()->SetLength(5);
    s.StepLines()->Pen()->SetColor(clRed);
    s.SubStepLines()->SetVisible(false);
    TKxLineSettings lines;
    lines.SetLength(9);
    s.SetSubStepLines(&lines);
    s.SetStepLines(nullptr);
    const std::vector<QObject*> expected = {s.Font(), s.StepLines(), s.StepLines()->Pen(),
                                            s.SubStepLines(), s.SubStepLines()};
    EXPECT_EQ(senders, expected);
    EXPECT_EQ(s.SubStepLines()->Length(), 9);
    EXPECT_NE(s.SubStepLines(), &lines);
}

TEST(CustomScale, AssignCopiesEverythingWithOneChange) {
    TKxFlexScale src;
    src.SetAngle(30);
    src.SetAngleMode(amManual);
    src.Font()->SetName("Courier New");
    src.StepLines()->SetLength(8);
    src.SubStepLines()->Pen()->SetColor(clRed);
    src.SetTextAlignment(toTopLeft);
    src.SetTextOffsetX(4);
    src.SetFormatStr("0.0");
    src.SetSubStepAt(0.5f);
    src.SetStepMulti(3);
    src.SetSubStepsVis(2);

    TKxFlexScale dst;
    std::vector<QObject*> senders;
    dst.SetOnChange([&](QObject* sender) { senders.push_back(sender); });
    dst.Assign(&src);
    EXPECT_EQ(senders, std::vector<QObject*>{&dst});
    EXPECT_EQ(dst.Angle(), 30.0f);
    EXPECT_EQ(dst.AngleMode(), amManual);
    EXPECT_EQ(dst.Font()->Name(), u"Courier New");
    EXPECT_EQ(dst.StepLines()->Length(), 8);
    EXPECT_EQ(dst.SubStepLines()->Pen()->Color(), clRed);
    EXPECT_EQ(dst.TextAlignment(), toTopLeft);
    EXPECT_EQ(dst.TextOffsetX(), 4);
    EXPECT_EQ(dst.FormatStr(), u"0.0");
    EXPECT_EQ(dst.SubStepAt(), 0.5f);
    EXPECT_EQ(dst.StepMulti(), 3);
    EXPECT_EQ(dst.SubStepsVis(), 2);

    // The nested objects still report after the copy.
    senders.clear();
    dst.StepLines()->SetLength(1);
    EXPECT_EQ(senders, std::vector<QObject*>{dst.StepLines()});

    // A sibling form takes the common part.
    TKxScale plain;
    plain.Assign(&src);
    EXPECT_EQ(plain.FormatStr(), u"0.0");
    TKxPersistent other;
    EXPECT_THROW(src.AssignTo(&other), EConvertError);
}

TEST(RScale, RangesAreCheckedSilently) {
    struct Case {
        const char* what;
        std::function<void(TKxRScale&, int32_t)> set;
        std::function<int32_t(const TKxRScale&)> get;
        int32_t value;
        bool accepted;
    } cases[] = {
        {"AlphaStart", &TKxRScale::SetAlphaStart, &TKxRScale::AlphaStart, 0, true},
        {"AlphaStart", &TKxRScale::SetAlphaStart, &TKxRScale::AlphaStart, 360, true},
        {"AlphaStart", &TKxRScale::SetAlphaStart, &TKxRScale::AlphaStart, -1, false},
        {"AlphaStart", &TKxRScale::SetAlphaStart, &TKxRScale::AlphaStart, 361, false},
        {"Alpha", &TKxRScale::SetAlpha, &TKxRScale::Alpha, 1, true},
        {"Alpha", &TKxRScale::SetAlpha, &TKxRScale::Alpha, 360, true},
        {"Alpha", &TKxRScale::SetAlpha, &TKxRScale::Alpha, 0, false},
        {"Alpha", &TKxRScale::SetAlpha, &TKxRScale::Alpha, 361, false},
        {"Steps", &TKxRScale::SetSteps, &TKxRScale::Steps, 30, true},
        {"Steps", &TKxRScale::SetSteps, &TKxRScale::Steps, 31, false},
        {"Steps", &TKxRScale::SetSteps, &TKxRScale::Steps, 0, false},
        {"SubSteps", &TKxRScale::SetSubSteps, &TKxRScale::SubSteps, 1, true},
        {"SubSteps", &TKxRScale::SetSubSteps, &TKxRScale::SubSteps, 31, false},
        {"Diameter", &TKxRScale::SetDiameter, &TKxRScale::Diameter, 10, true},
        {"Diameter", &TKxRScale::SetDiameter, &TKxRScale::Diameter, 9, false},
        {"Diameter", &TKxRScale::SetDiameter, &TKxRScale::Diameter, INT_MAX, true},
        {"OffsetX", &TKxRScale::SetOffsetX, &TKxRScale::OffsetX, INT_MIN, true},
        {"OffsetY", &TKxRScale::SetOffsetY, &TKxRScale::OffsetY, -7, true},
    };
    for (const auto& c : cases) {
        TKxRScale s;
        const int32_t before = c.get(s);
        int changes = 0;
        s.SetOnChange([&](QObject*) { ++changes; });
        c.set(s, c.value);
        EXPECT_EQ(c.get(s), c.accepted ? c.value : before) << c.what << " " << c.value;
        EXPECT_EQ(changes, c.accepted && c.value != before ? 1 : 0) << c.what << " " << c.value;
    }
}

TEST(RScale, CopyNotifiesOnce) {
    TKxRScale s;
    s.SetAlpha(180);
    s.SetSwapDir(true);
    s.SetDiameter(64);
    s.SetText("rpm");
    TKxRScale copy;
    int changes = 0;
    copy.SetOnChange([&](QObject*) { ++changes; });
    copy.Assign(&s);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(copy.Alpha(), 180);
    EXPECT_TRUE(copy.SwapDir());
    EXPECT_EQ(copy.Diameter(), 64);
    EXPECT_EQ(copy.Text(), u"rpm");
}

}  // namespace
}  // namespace kx
