// The binary base: status word, groups, modes, blinking, hooks and events.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFocusEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "common/test_env.h"
#include "kx/framework/binarycontrol.h"

namespace kx {
namespace {

// Logs hooks and events in one sequence.
class TProbe : public TKxBinGControl {
  public:
    explicit TProbe(QWidget* parent = nullptr, std::vector<std::string>* log = nullptr)
        : TKxBinGControl(parent), log_(log) {
        setFocusPolicy(Qt::StrongFocus);
        connect(this, &TKxBinGControl::OnStatusChanged, this, [this] { note("OnStatusChanged"); });
        connect(this, &TKxBinGControl::OnStatusIntChanged, this,
                [this] { note("OnStatusIntChanged"); });
    }
    int statusHooks = 0;
    int groupHooks = 0;
    std::vector<bool> flashes;
    int paramChanges = 0;

  protected:
    void StatusChanged() override {
        ++statusHooks;
        note("StatusChanged");
    }
    void GroupIndexChanged() override {
        ++groupHooks;
        note("GroupIndexChanged");
    }
    void StatusIntChanged() override { note("StatusIntChanged " + std::to_string(StatusInt())); }
    void Flash(bool on) override { flashes.push_back(on); }
    void ParamChange(QObject*) override { ++paramChanges; }

  private:
    void note(const std::string& s) {
        if (log_) log_->push_back(s);
    }
    std::vector<std::string>* log_;
};

void Press(QWidget* w, Qt::MouseButton b = Qt::LeftButton) {
    QMouseEvent e(QEvent::MouseButtonPress, QPointF(2, 2), QPointF(2, 2), b, b, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}
void Release(QWidget* w, Qt::MouseButton b = Qt::LeftButton) {
    QMouseEvent e(QEvent::MouseButtonRelease, QPointF(2, 2), QPointF(2, 2), b, Qt::NoButton,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}
void Key(QWidget* w, QEvent::Type type, int key = Qt::Key_Space, bool repeat = false) {
    QKeyEvent e(type, key, Qt::NoModifier, QString(), repeat);
    QCoreApplication::sendEvent(w, &e);
}

std::vector<bool> CheckedOf(const std::vector<TProbe*>& group) {
    std::vector<bool> out;
    for (auto* c : group)
        out.push_back(c->Checked());
    return out;
}

class BinaryControl : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        ClearFlashList();
    }
    void TearDown() override { ClearFlashList(); }
    // n elements in one window with GroupIndex g and bits 0..n-1.
    std::vector<TProbe*> Group(int n, int32_t g, QWidget* parent = nullptr) {
        std::vector<TProbe*> out;
        for (int i = 0; i < n; ++i) {
            auto* c = new TProbe(parent ? parent : &form_);
            c->SetStatusBit(i);
            c->SetGroupIndex(g);
            out.push_back(c);
        }
        return out;
    }
    static int64_t CodeOf(const TKxFlashClient* c) {
        for (const auto& e : FlashList())
            if (e && e->Control == c) return e->IntervalTime;
        return -1;
    }
    QWidget form_;
};

TEST_F(BinaryControl, AWordSetOnAnyMemberReachesTheWholeGroup) {
    auto g = Group(3, 1);
    for (auto* setter : g) {
        for (auto* c : g)
            c->SetStatusInt(0);
        setter->SetStatusInt(5);
        EXPECT_EQ(CheckedOf(g), (std::vector<bool>{true, false, true}));
        for (auto* c : g) {
            EXPECT_EQ(c->StatusInt(), 5);
            EXPECT_EQ(c->FirstSetBit(), 0);
        }
    }
}

TEST_F(BinaryControl, CheckingAnElementSetsOrClearsItsBitInTheSharedWord) {
    auto g = Group(3, 1);
    g[1]->SetChecked(true);
    g[2]->SetChecked(true);
    for (auto* c : g)
        EXPECT_EQ(c->StatusInt(), 6);
    g[1]->SetChecked(false);
    for (auto* c : g)
        EXPECT_EQ(c->StatusInt(), 4);
    EXPECT_EQ(CheckedOf(g), (std::vector<bool>{false, false, true}));
}

TEST_F(BinaryControl, GroupsAreSeparatedByIndexAndWindowButNotByGroupBox) {
    QGroupBox boxA(&form_), boxB(&form_);
    auto a = Group(2, 1, &boxA);
    auto b = Group(2, 1, &boxB);
    auto other = Group(2, 2);
    QWidget otherWindow;
    auto foreign = Group(2, 1, &otherWindow);
    a[0]->SetStatusInt(3);
    EXPECT_EQ(b[0]->StatusInt(), 3);
    EXPECT_EQ(b[1]->StatusInt(), 3);
    EXPECT_EQ(other[0]->StatusInt(), 0);
    EXPECT_EQ(foreign[0]->StatusInt(), 0);
    EXPECT_EQ(a[0]->GroupMembers().size(), 4u);
    // Group 0 is no group.
    auto loose = Group(2, 0);
    loose[0]->SetStatusInt(1);
    EXPECT_EQ(loose[1]->StatusInt(), 0);
    EXPECT_TRUE(loose[0]->GroupMembers().empty());
}

TEST_F(BinaryControl, RadioGroupKeepsOneBitAndTheWordOfThePressedElement) {
    auto g = Group(4, 2);
    for (auto* c : g)
        c->SetMode(mRadioButton);
    EXPECT_EQ(g[0]->StatusInt(), 1);
    EXPECT_EQ(CheckedOf(g), (std::vector<bool>{true, false, false, false}));
    Press(g[3]);
    for (auto* c : g)
        EXPECT_EQ(c->StatusInt(), 8);
    EXPECT_EQ(CheckedOf(g), (std::vector<bool>{false, false, false, true}));
    EXPECT_EQ(g[3]->FirstSetBit(), 3);
    Release(g[3]);
    // Unchecking a radio element leaves the word alone.
    g[3]->SetChecked(false);
    EXPECT_EQ(g[3]->StatusInt(), 8);
    EXPECT_FALSE(g[3]->Checked());
}

TEST_F(BinaryControl, StatusBitOutsideTheWordIsIgnored) {
    TProbe c(&form_);
    c.SetStatusInt(int32_t(0x80000004));
    for (int32_t bit : {32, -1, 100, INT_MIN}) {
        c.SetStatusBit(bit);
        EXPECT_EQ(c.StatusBit(), 0) << bit;
    }
    c.SetStatusBit(31);
    EXPECT_TRUE(c.Checked());
    c.SetStatusBit(1);
    EXPECT_FALSE(c.Checked());
    c.SetStatusBit(2);
    EXPECT_TRUE(c.Checked());
    c.SetStatusBit(0);
    EXPECT_EQ(c.StatusBit(), 0);
    EXPECT_FALSE(c.Checked());
}

TEST_F(BinaryControl, FirstSetBitIsTheLowestSetBit) {
    const struct {
        int32_t word;
        int32_t first;
    } cases[] = {{0, 32}, {12, 2}, {1, 0}, {-1, 0}, {INT_MIN, 31}, {0x00F00000, 20}};
    TProbe c(&form_);
    for (const auto& t : cases) {
        c.SetStatusInt(t.word);
        EXPECT_EQ(c.FirstSetBit(), t.first) << t.word;
        EXPECT_EQ(KxFirstSetBit(t.word), t.first) << t.word;
    }
}

TEST_F(BinaryControl, ModeResetsTheWordOnEveryAssignment) {
    const struct {
        TKxBinGControl::TMode mode;
        int32_t word;
    } cases[] = {{mButton, 0}, {mRadioButton, 1}, {mSwitch, 6}, {mIndicator, 6}};
    TProbe c(&form_);
    for (const auto& t : cases)
        for (int again = 0; again < 2; ++again) {
            c.SetStatusInt(6);
            c.SetMode(t.mode);
            EXPECT_EQ(c.Mode(), t.mode);
            EXPECT_EQ(c.StatusInt(), t.word) << t.mode << " pass " << again;
        }
    c.SetMode(TKxBinGControl::TMode(7));
    EXPECT_EQ(c.Mode(), mIndicator);
}

TEST_F(BinaryControl, GroupIndexTakesTheWordOfTheFirstMember) {
    auto g = Group(2, 3);
    g[0]->SetStatusInt(9);
    TProbe late(&form_);
    late.SetStatusInt(6);
    late.SetGroupIndex(3);
    EXPECT_EQ(late.StatusInt(), 9);
    EXPECT_EQ(late.groupHooks, 1);
    // The first member of a group keeps its own word.
    TProbe first(&form_);
    first.SetStatusInt(2);
    first.SetGroupIndex(4);
    EXPECT_EQ(first.StatusInt(), 2);
    // Negative and unchanged indexes are ignored.
    late.SetGroupIndex(-1);
    late.SetGroupIndex(3);
    EXPECT_EQ(late.GroupIndex(), 3);
    EXPECT_EQ(late.groupHooks, 1);
    // Index 0 leaves the group: the element keeps its word and shares it no more.
    late.SetGroupIndex(0);
    EXPECT_EQ(late.GroupIndex(), 0);
    EXPECT_EQ(late.groupHooks, 2);
    EXPECT_EQ(late.StatusInt(), 9);
    g[0]->SetStatusInt(1);
    EXPECT_EQ(late.StatusInt(), 9);
    // Group 1 is a group like any other.
    TProbe one(&form_), two(&form_);
    one.SetStatusInt(4);
    one.SetGroupIndex(1);
    two.SetGroupIndex(1);
    EXPECT_EQ(two.StatusInt(), 4);
}

TEST_F(BinaryControl, MouseFollowsTheMode) {
    const struct {
        TKxBinGControl::TMode mode;
        bool before;
        bool afterPress, downAfterPress;
        bool afterRelease, downAfterRelease;
        int hooksOnRelease;
    } cases[] = {
        {mButton, false, true, true, false, false, 2},
        {mSwitch, false, true, true, true, false, 1},
        {mSwitch, true, false, true, false, false, 1},
        {mIndicator, false, false, true, false, true, 0},
        {mRadioButton, false, true, true, true, false, 1},
    };
    for (const auto& t : cases) {
        TProbe c(&form_);
        c.SetMode(t.mode);
        c.SetStatusBit(1);
        c.SetChecked(t.before);
        Press(&c);
        EXPECT_EQ(c.Checked(), t.afterPress) << t.mode;
        EXPECT_EQ(c.MouseIsDown(), t.downAfterPress) << t.mode;
        const int hooks = c.statusHooks;
        Release(&c, Qt::RightButton);  // only the left button's release counts
        EXPECT_EQ(c.Checked(), t.afterPress) << t.mode;
        EXPECT_EQ(c.statusHooks, hooks) << t.mode;
        Release(&c);
        EXPECT_EQ(c.Checked(), t.afterRelease) << t.mode;
        EXPECT_EQ(c.MouseIsDown(), t.downAfterRelease) << t.mode;
        EXPECT_EQ(c.statusHooks - hooks, t.hooksOnRelease) << t.mode;
        // Other buttons do nothing.
        Press(&c, Qt::RightButton);
        EXPECT_EQ(c.Checked(), t.afterRelease) << t.mode;
    }
}

TEST_F(BinaryControl, SpaceBarWorksLikeTheMouseAndLosingFocusReleases) {
    TProbe c(&form_);
    c.SetMode(mButton);
    Key(&c, QEvent::KeyPress);
    EXPECT_TRUE(c.Checked());
    Key(&c, QEvent::KeyPress, Qt::Key_Space, true);  // auto-repeat changes nothing
    EXPECT_TRUE(c.Checked());
    Key(&c, QEvent::KeyRelease);
    EXPECT_FALSE(c.Checked());
    Key(&c, QEvent::KeyRelease);  // a release without its press
    EXPECT_FALSE(c.MouseIsDown());
    Key(&c, QEvent::KeyPress);
    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(&c, &out);
    EXPECT_FALSE(c.Checked());
    c.SetMode(mSwitch);
    Key(&c, QEvent::KeyPress, Qt::Key_Enter);
    EXPECT_FALSE(c.Checked());
    Key(&c, QEvent::KeyPress);
    Key(&c, QEvent::KeyRelease);
    EXPECT_TRUE(c.Checked());
}

TEST_F(BinaryControl, HooksAndEventsComeInTheirOrder) {
    std::vector<std::string> log;
    TProbe c(&form_, &log);
    c.SetStatusBit(1);
    log.clear();
    c.SetStatusInt(2);
    EXPECT_EQ(log, (std::vector<std::string>{"StatusChanged", "OnStatusChanged",
                                             "StatusIntChanged 2", "OnStatusIntChanged"}));
    log.clear();
    c.SetChecked(false);
    EXPECT_EQ(log, (std::vector<std::string>{"StatusIntChanged 0", "OnStatusIntChanged",
                                             "StatusChanged", "OnStatusChanged"}));
    log.clear();
    c.SetStatusInt(0);
    c.SetFlashing(true);
    EXPECT_EQ(log, (std::vector<std::string>{"StatusChanged", "OnStatusChanged"}));
}

TEST_F(BinaryControl, BlinksOnlyWhileCheckedAndFlashing) {
    TProbe c(&form_);
    c.SetFlashing(true);
    EXPECT_EQ(CodeOf(&c), -1);
    EXPECT_FALSE(c.Blinking());
    c.SetChecked(true);
    EXPECT_EQ(CodeOf(&c), FlashFreqCode(ff1Hz));
    EXPECT_TRUE(c.Blinking());
    const struct {
        TFlashFreq f;
        int64_t code;
    } rates[] = {{ff8Hz, 2}, {ff4Hz, 3}, {ff2Hz, 4}, {ff1Hz, 5}, {ff05Hz, 6}};
    for (const auto& r : rates) {
        c.SetFrequency(r.f);
        EXPECT_EQ(CodeOf(&c), r.code);
    }
    c.SetFrequencyValue(9);
    c.SetFrequency(TFlashFreq(-1));
    c.SetFrequency(TFlashFreq(5));
    EXPECT_EQ(c.Frequency(), ff05Hz);
    EXPECT_EQ(FlashList().size(), 1u);
    c.SetChecked(false);
    EXPECT_EQ(CodeOf(&c), -1);
    c.SetFrequency(ff8Hz);  // stored, not subscribed
    EXPECT_EQ(CodeOf(&c), -1);
    c.SetChecked(true);
    EXPECT_EQ(CodeOf(&c), 2);
    c.SetFlashing(false);
    EXPECT_EQ(CodeOf(&c), -1);
    EXPECT_FALSE(c.Blinking());
    c.SetFlashing(true);
    c.SetDesigning(true);
    c.SetChecked(false);
    c.SetChecked(true);
    EXPECT_EQ(CodeOf(&c), -1);
}

TEST_F(BinaryControl, FlashMessagesReachTheHookWithTheirPhase) {
    TProbe c(&form_);
    for (intptr_t phase : {1, 0, 7}) {
        TMessage m{KX_WM_FLASH, 0, phase, 0};
        c.WMFlash(m);
    }
    TMessage other{KX_WM_FLASH + 1, 0, 1, 0};
    c.WMFlash(other);
    EXPECT_EQ(c.flashes, (std::vector<bool>{true, false, true}));
}

TEST_F(BinaryControl, TheGroupGuardIsProcessWide) {
    auto a = Group(2, 1);
    auto b = Group(2, 2);
    // While group 1 propagates, a change made in group 2 stays with its element.
    QObject::connect(a[1], &TKxBinGControl::OnStatusIntChanged, a[1],
                     [&] { b[0]->SetStatusInt(a[1]->StatusInt()); });
    a[0]->SetStatusInt(1);
    EXPECT_EQ(b[0]->StatusInt(), 1);
    EXPECT_EQ(b[1]->StatusInt(), 0);
    // Outside a propagation group 2 propagates as usual.
    b[1]->SetStatusInt(2);
    EXPECT_EQ(b[0]->StatusInt(), 2);
}

TEST_F(BinaryControl, GroupSurvivesDeletedMembers) {
    auto g = Group(4, 1);
    delete g[1];
    g[0]->SetStatusInt(15);
    EXPECT_EQ(g[3]->StatusInt(), 15);
    EXPECT_EQ(g[0]->GroupMembers().size(), 3u);
    // A handler that deletes a member during the propagation.
    QObject::connect(g[0], &TKxBinGControl::OnStatusIntChanged, g[0], [&] {
        delete g[2];
        g[2] = nullptr;
    });
    g[3]->SetStatusInt(1);
    EXPECT_EQ(g[0]->StatusInt(), 1);
    EXPECT_EQ(g[3]->StatusInt(), 1);
    EXPECT_EQ(g[0]->GroupMembers().size(), 2u);
    // A handler that deletes the element whose word it reports.
    QPointer<TProbe> victim(g[0]);
    QObject::disconnect(g[0], nullptr, g[0], nullptr);
    QObject::connect(g[0], &TKxBinGControl::OnStatusChanged, &form_, [&] { delete victim; });
    g[3]->SetStatusInt(0);
    EXPECT_TRUE(victim.isNull());
    EXPECT_EQ(g[3]->StatusInt(), 0);
}

TEST_F(BinaryControl, CaptionFollowsTheObjectNameUntilAssigned) {
    TProbe c(&form_);
    c.setObjectName("Pump1");
    EXPECT_EQ(c.Caption(), "Pump1");
    const int before = c.paramChanges;
    c.SetCaption("Pump|running");
    EXPECT_EQ(c.paramChanges, before + 1);
    c.setObjectName("Other");
    EXPECT_EQ(c.Caption(), "Pump|running");
    EXPECT_EQ(c.paramChanges, before + 1);
    c.SetCaption("Pump|running");
    EXPECT_EQ(c.paramChanges, before + 1);
}

TEST_F(BinaryControl, ParentFontFollowsTheWidgetFontUntilFontIsSet) {
    QFont big("Liberation Serif");
    big.setPixelSize(20);
    big.setBold(true);
    form_.setFont(big);
    TProbe c(&form_);
    EXPECT_TRUE(c.ParentFont());
    EXPECT_EQ(c.Font()->Name(), "Liberation Serif");
    EXPECT_EQ(c.Font()->Height(), -20);
    EXPECT_EQ(c.Font()->Style(), fsBold);
    QFont points("Liberation Sans", 9);
    form_.setFont(points);
    EXPECT_EQ(c.Font()->Height(), -12);  // 9 pt at 96 dpi
    EXPECT_TRUE(c.ParentFont());
    c.SetFont(nullptr);
    c.SetFont(c.Font());
    EXPECT_TRUE(c.ParentFont());
    c.Font()->SetSize(14);
    EXPECT_FALSE(c.ParentFont());
    form_.setFont(big);
    EXPECT_EQ(c.Font()->Size(), 14);
    c.SetParentFont(true);
    EXPECT_EQ(c.Font()->Height(), -20);
    TFont mono;
    mono.SetName("Liberation Mono");
    c.SetFont(&mono);
    EXPECT_FALSE(c.ParentFont());
    EXPECT_EQ(c.Font()->Name(), "Liberation Mono");
}

}  // namespace
}  // namespace kx
