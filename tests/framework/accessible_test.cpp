// Accessibility: what assistive tools read from analog controls and binary elements, what
// the actions of an element do, and when notifications go out.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <QAccessible>
#include <QLocale>
#include <QWidget>
#include <string>
#include <tuple>
#include <vector>

#include "kx/framework/accessible.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/binarycontrol.h"

namespace kx {
namespace {

QAccessibleInterface* Query(QObject* o) {
    KxInstallAccessibility();
    return QAccessible::queryAccessibleInterface(o);
}

// Qt has no public switch for "an assistive tool is listening", and without it Qt hands
// no event to an update handler. The platform layer's own switch is reached through its
// exported symbols; false when that fails, and the test is skipped.
bool SetAccessibilityActive(bool on) {
    using Getter = void* (*)(const void*);
    using Setter = void (*)(void*, bool);
    auto* integration = static_cast<void**>(
        dlsym(RTLD_DEFAULT, "_ZN22QGuiApplicationPrivate20platform_integrationE"));
    auto get = reinterpret_cast<Getter>(
        dlsym(RTLD_DEFAULT, "_ZNK20QPlatformIntegration13accessibilityEv"));
    auto set =
        reinterpret_cast<Setter>(dlsym(RTLD_DEFAULT, "_ZN22QPlatformAccessibility9setActiveEb"));
    if (!integration || !*integration || !get || !set) return false;
    void* platform = get(*integration);
    if (!platform) return false;
    set(platform, on);
    return QAccessible::isActive() == on;
}

TEST(AccessibleAnalog, ValueAndAlarmStateFollowEachReading) {
    const struct {
        float value;
        const char* text;
        const char* description;
    } steps[] = {
        {95.0f, "95.0 bar", "upper limit exceeded"},
        {50.0f, "50.0 bar", "normal"},
        {90.5f, "90.5 bar", "upper limit exceeded"},
        {150.0f, "150.0 bar", "out of range"},  // above the upper limit too
        {5.0f, "5.0 bar", "lower limit exceeded"},
        {-20.0f, "-20.0 bar", "out of range"},
        {10.0f, "10.0 bar", "normal"},  // limits are strict
    };
    TKxAnalogGControl c;  // limits 10 and 90 over 0..100
    c.SignalSettings()->SetName1(QStringLiteral("Boiler pressure"));
    c.SignalSettings()->SetValueUnit(QStringLiteral("bar"));
    c.SignalSettings()->SetValueFormat(QStringLiteral("0.0"));
    c.Loaded();
    QAccessibleInterface* a = Query(&c);
    ASSERT_TRUE(a);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    EXPECT_EQ(a->text(QAccessible::Name), QStringLiteral("Boiler pressure"));
    // Before the first evaluation there is no formatted text yet.
    EXPECT_EQ(a->text(QAccessible::Value), QStringLiteral("50 bar"));
    for (const auto& s : steps) {
        SCOPED_TRACE(s.value);
        c.SetValue(s.value);
        EXPECT_EQ(a->text(QAccessible::Value), QString::fromUtf8(s.text));
        EXPECT_EQ(a->text(QAccessible::Description), QString::fromUtf8(s.description));
        EXPECT_EQ(a->valueInterface()->currentValue().toDouble(), double(s.value));
    }
    c.SignalSettings()->SetValueUnit(QString());
    c.SetValue(12.5f);
    EXPECT_EQ(a->text(QAccessible::Value), QStringLiteral("12.5"));  // no trailing space
}

TEST(AccessibleAnalog, ApplicationTextsComeFirst) {
    const struct {
        const char* name1;
        const char* accessibleName;
        const char* accessibleDescription;
        const char* name;
        const char* description;
    } cases[] = {
        {"", "", "", "meter1", "normal"},
        {"Boiler pressure", "Main boiler", "PT-101", "Main boiler", "PT-101, normal"},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.name);
        TKxAnalogGControl c;
        c.setObjectName(QStringLiteral("meter1"));
        c.SignalSettings()->SetName1(QString::fromUtf8(t.name1));
        c.setAccessibleName(QString::fromUtf8(t.accessibleName));
        c.setAccessibleDescription(QString::fromUtf8(t.accessibleDescription));
        QAccessibleInterface* a = Query(&c);
        EXPECT_EQ(a->text(QAccessible::Name), QString::fromUtf8(t.name));
        EXPECT_EQ(a->text(QAccessible::Description), QString::fromUtf8(t.description));
    }
}

TEST(AccessibleAnalog, ValueBoundsAndReadOnlyReading) {
    const struct {
        float from, to;
        int32_t digits;
        bool log;
        double min, max, step;
    } cases[] = {
        {0.0f, 100.0f, 1000, false, 0.0, 100.0, 0.1},
        {-50.0f, 50.0f, 200, false, -50.0, 50.0, 0.5},
        {1.0f, 1000.0f, 1000, true, 1.0, 1000.0, 0.0},  // no constant step on a log scale
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.to);
        TKxAnalogGControl c;
        c.SignalSettings()->SetValueFrom(t.from);
        c.SignalSettings()->SetValueTo(t.to);
        c.SignalSettings()->SetDigitalTo(t.digits);
        c.SetLogScale(t.log);
        c.Loaded();
        c.SetValue(10.0f);
        QAccessibleValueInterface* v = Query(&c)->valueInterface();
        ASSERT_TRUE(v);
        // Decimal, not the float's binary expansion (0.1f is 0.100000001490116).
        EXPECT_EQ(v->minimumValue().toDouble(), t.min);
        EXPECT_EQ(v->maximumValue().toDouble(), t.max);
        EXPECT_EQ(v->minimumStepSize().toDouble(), t.step);
        int changes = 0;
        QObject::connect(&c, &TKxAnalogGControl::valueChanged, [&] { ++changes; });
        v->setCurrentValue(80.0);
        EXPECT_EQ(c.Value(), 10.0f);
        EXPECT_EQ(changes, 0);
    }
}

// The state flags an element may set, as words.
QString StateWords(QAccessible::State s) {
    QStringList w;
    if (s.checkable) w << "checkable";
    if (s.checked) w << "checked";
    if (s.pressed) w << "pressed";
    if (s.readOnly) w << "readOnly";
    return w.join(' ');
}

TEST(AccessibleBinary, RoleStateAndTextsFollowFocusModeAndState) {
    const struct {
        Qt::FocusPolicy policy;
        TKxBinGControl::TMode mode;
        bool checked, flashing;
        QAccessible::Role role;
        const char* state;
        const char* value;
        const char* description;
        const char* actions;
    } cases[] = {
        // LEDs: no focus, whatever the mode.
        {Qt::NoFocus, mIndicator, true, true, QAccessible::Indicator, "checkable checked readOnly",
         "on", "blinking", ""},
        {Qt::NoFocus, mIndicator, false, true, QAccessible::Indicator, "checkable readOnly", "off",
         "", ""},
        {Qt::NoFocus, mSwitch, true, false, QAccessible::Indicator, "checkable checked readOnly",
         "on", "", ""},
        // Switches and colour bit buttons.
        {Qt::StrongFocus, mSwitch, true, true, QAccessible::CheckBox, "checkable checked", "",
         "blinking", "Toggle SetFocus"},
        {Qt::StrongFocus, mRadioButton, false, false, QAccessible::RadioButton, "checkable", "", "",
         "Toggle SetFocus"},
        {Qt::StrongFocus, mButton, true, false, QAccessible::Button, "pressed", "", "",
         "Press SetFocus"},
        {Qt::StrongFocus, mIndicator, false, false, QAccessible::Indicator, "checkable readOnly",
         "off", "", "SetFocus"},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << t.policy << " mode " << t.mode << " " << t.checked);
        TKxBinGControl b;
        b.setFocusPolicy(t.policy);
        b.SetMode(t.mode);
        b.SetFlashing(t.flashing);
        b.SetChecked(t.checked);
        QAccessibleInterface* a = Query(&b);
        EXPECT_EQ(a->role(), t.role);
        EXPECT_EQ(StateWords(a->state()), QString::fromUtf8(t.state));
        EXPECT_EQ(a->text(QAccessible::Value), QString::fromUtf8(t.value));
        EXPECT_EQ(a->text(QAccessible::Description), QString::fromUtf8(t.description));
        EXPECT_EQ(a->actionInterface()->actionNames().join(' '), QString::fromUtf8(t.actions));
    }
}

TEST(AccessibleBinary, NameIsTheCaptionOnOneLine) {
    const struct {
        const char* caption;  // null: never assigned
        const char* accessibleName;
        const char* name;
    } cases[] = {
        {"Pump|running", "", "Pump running"},
        {" Feed||pump| ", "", "Feed pump"},
        {nullptr, "", "led7"},
        {"Pump", "Feed pump", "Feed pump"},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.name);
        TKxBinGControl b;
        b.setObjectName(QStringLiteral("led7"));
        if (t.caption) b.SetCaption(QString::fromUtf8(t.caption));
        b.setAccessibleName(QString::fromUtf8(t.accessibleName));
        EXPECT_EQ(Query(&b)->text(QAccessible::Name), QString::fromUtf8(t.name));
    }
}

TEST(AccessibleBinary, ActionClicksAsTheMouseDoes) {
    const struct {
        TKxBinGControl::TMode mode;
        bool checked, enabled;
        std::vector<std::string> log;
        bool after;
    } cases[] = {
        {mSwitch, false, true, {"status 1", "click"}, true},
        {mSwitch, true, true, {"status 0", "click"}, false},
        {mButton, false, true, {"status 1", "click", "status 0"}, false},  // momentary
        {mRadioButton, false, true, {"status 1", "click"}, true},
        {mRadioButton, true, true, {"click"}, true},  // a radio click never clears
        {mSwitch, false, false, {}, false},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << t.mode << " " << t.checked);
        TKxBinGControl b;
        b.resize(40, 20);
        b.setFocusPolicy(Qt::StrongFocus);
        b.SetMode(t.mode);
        b.SetStatusBit(1);
        b.SetChecked(t.checked);
        b.setEnabled(t.enabled);
        std::vector<std::string> log;
        QObject::connect(&b, &TKxBinGControl::OnStatusChanged,
                         [&] { log.push_back(b.Checked() ? "status 1" : "status 0"); });
        QObject::connect(&b, &TKxControl::OnClick, [&] { log.push_back("click"); });
        QAccessibleActionInterface* actions = Query(&b)->actionInterface();
        const QString name = t.mode == mButton ? QAccessibleActionInterface::pressAction()
                                               : QAccessibleActionInterface::toggleAction();
        EXPECT_EQ(actions->keyBindingsForAction(name),
                  t.enabled ? QStringList{"Space"} : QStringList());
        actions->doAction(name);
        EXPECT_EQ(log, t.log);
        EXPECT_EQ(b.Checked(), t.after);
        EXPECT_FALSE(b.MouseIsDown());
    }
}

TEST(AccessibleFactory, AnswersForTheComponentsOnlyAndInstallsOnce) {
    TKxGraphicControl plain;
    QWidget widget;
    EXPECT_EQ(KxAccessibleFactory(QStringLiteral("kx::TKxGraphicControl"), &plain), nullptr);
    EXPECT_EQ(KxAccessibleFactory(QStringLiteral("QWidget"), &widget), nullptr);
    EXPECT_EQ(KxAccessibleFactory(QStringLiteral("QObject"), nullptr), nullptr);

    KxInstallAccessibility();
    KxInstallAccessibility();
    QAccessible::removeFactory(&KxAccessibleFactory);
    // Removed once, gone; making a component installs it again.
    QWidget generic;
    EXPECT_EQ(KxAccessibleFactory(QStringLiteral("QWidget"), &generic), nullptr);
    TKxAnalogGControl analog;
    TKxBinGControl binary;
    EXPECT_TRUE(dynamic_cast<TKxAnalogAccessible*>(QAccessible::queryAccessibleInterface(&analog)));
    EXPECT_TRUE(dynamic_cast<TKxBinAccessible*>(QAccessible::queryAccessibleInterface(&binary)));
}

// Each event as "<object name> <what>", in the order sent.
QStringList seen;

void Record(QAccessibleEvent* e) {
    QString what;
    if (e->type() == QAccessible::ValueChanged)
        what = "value " +
               QString::number(static_cast<QAccessibleValueChangeEvent*>(e)->value().toDouble(),
                               'g', QLocale::FloatingPointShortest);
    else if (e->type() == QAccessible::StateChanged)
        what = "state " + StateWords(static_cast<QAccessibleStateChangeEvent*>(e)->changedStates());
    else if (e->type() == QAccessible::DescriptionChanged)
        what = "description";
    else
        what = QString::number(e->type(), 16);
    seen << e->object()->objectName() + ' ' + what;
}

int lookups = 0;
QAccessibleInterface* CountLookups(const QString&, QObject*) {
    ++lookups;
    return nullptr;
}

class AccessibleEvents : public ::testing::Test {
  protected:
    void SetUp() override {
        KxInstallAccessibility();
        seen.clear();
        previous_ = QAccessible::installUpdateHandler(&Record);
        meter.setObjectName("meter");
        for (auto [b, name, policy, mode] :
             {std::tuple{&toggle, "switch", Qt::StrongFocus, mSwitch},
              std::tuple{&button, "button", Qt::StrongFocus, mButton},
              std::tuple{&led, "led", Qt::NoFocus, mButton}}) {
            b->setObjectName(name);
            b->setFocusPolicy(policy);
            b->SetMode(mode);
        }
    }
    void TearDown() override {
        SetAccessibilityActive(false);
        QAccessible::installUpdateHandler(previous_);
    }
    TKxAnalogGControl meter;
    TKxBinGControl toggle, button, led;

  private:
    QAccessible::UpdateHandler previous_ = nullptr;
};

TEST_F(AccessibleEvents, NothingIsSentNorLookedUpWhileNoToolListens) {
    ASSERT_FALSE(QAccessible::isActive());
    lookups = 0;
    QAccessible::installFactory(&CountLookups);
    KxAccessibleValueChanged(&meter, 1.0);
    KxAccessibleStateChanged(&toggle);
    KxAccessibleDescriptionChanged(&meter);
    QAccessible::removeFactory(&CountLookups);
    EXPECT_EQ(lookups, 0);
    EXPECT_TRUE(seen.empty());
}

TEST_F(AccessibleEvents, SentWithWhatChangedWhileAToolListens) {
    if (!SetAccessibilityActive(true))
        GTEST_SKIP() << "cannot switch this platform's accessibility on";
    KxAccessibleValueChanged(&meter, 12.5);
    KxAccessibleValueChanged(&meter, double(0.1f));  // a widened float: its decimal
    KxAccessibleValueChanged(&meter, 1.0 / 3);
    KxAccessibleValueChanged(&meter, 1e300);  // beyond single precision
    KxAccessibleValueChanged(nullptr, 1.0);
    KxAccessibleStateChanged(&toggle);
    KxAccessibleStateChanged(&button);
    KxAccessibleStateChanged(&led);  // an indicator: lit, not pressed
    KxAccessibleStateChanged(nullptr);
    KxAccessibleDescriptionChanged(&meter);
    EXPECT_EQ(seen,
              (QStringList{"meter value 12.5", "meter value 0.1", "meter value 0.3333333333333333",
                           "meter value 1e+300", "switch state checked", "button state pressed",
                           "led state checked", "meter description"}));
    // The event and the interface report a reading alike.
    meter.SetValue(0.3f);
    seen.clear();
    KxAccessibleValueChanged(&meter, meter.Value());
    EXPECT_EQ(Query(&meter)->valueInterface()->currentValue().toDouble(), 0.3);
    EXPECT_EQ(seen, QStringList{"meter value 0.3"});
}

}  // namespace
}  // namespace kx
