// Accessibility: what assistive tools read from analog controls, adjusters and binary
// elements, what the actions of an element do, what setting a value does, and when
// notifications go out.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <QAccessible>
#include <QKeyEvent>
#include <QLocale>
#include <QWidget>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "kx/framework/accessible.h"
#include "kx/framework/adjuster.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/binarycontrol.h"

// Adjusters that only differ in their class names, which decide the role.
namespace kxtest {
class GaugeDial : public kx::TKxAnalogCControl {
    Q_OBJECT
  public:
    using TKxAnalogCControl::TKxAnalogCControl;
};
// A dial's descendant with a name of its own.
class Knob : public GaugeDial {
    Q_OBJECT
  public:
    using GaugeDial::GaugeDial;
};
// "dial" in lower case is part of another word.
class RadialFader : public kx::TKxAnalogCControl {
    Q_OBJECT
  public:
    using TKxAnalogCControl::TKxAnalogCControl;
};
}  // namespace kxtest

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

TEST(AccessibleAdjuster, RoleFromTheClassNameAndWidgetState) {
    const struct {
        const char* what;
        std::function<TKxAnalogCControl*()> make;
        QAccessible::Role role;
    } cases[] = {
        {"plain", [] { return new TKxAnalogCControl; }, QAccessible::Slider},
        {"GaugeDial", [] { return new kxtest::GaugeDial; }, QAccessible::Dial},
        {"Knob", [] { return new kxtest::Knob; }, QAccessible::Dial},
        {"RadialFader", [] { return new kxtest::RadialFader; }, QAccessible::Slider},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.what);
        std::unique_ptr<TKxAnalogCControl> c(t.make());
        c->Loaded();
        QAccessibleInterface* a = Query(c.get());
        ASSERT_TRUE(dynamic_cast<TKxAdjusterAccessible*>(a));
        EXPECT_EQ(a->role(), t.role);
        EXPECT_TRUE(a->state().focusable);
        EXPECT_FALSE(a->state().disabled);
        c->setEnabled(false);
        EXPECT_TRUE(a->state().disabled);
    }
}

TEST(AccessibleAdjuster, TextsFallBackInOrder) {
    const struct {
        const char *name1, *accessibleName, *accessibleDescription, *toolTip, *unit;
        const char *name, *value, *description, *help;
    } cases[] = {
        {"", "", "", "", "", "knob1", "42.5", "", ""},
        {"Setpoint", "", "", "Turn to set", "\u00b0C", "Setpoint", "42.5 \u00b0C", "",
         "Turn to set"},  // the tool tip is help, not description
        {"Setpoint", "Boiler setpoint", "TC-7", "", "bar", "Boiler setpoint", "42.5 bar", "TC-7",
         ""},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.name);
        TKxAnalogCControl c;
        c.setObjectName(QStringLiteral("knob1"));
        c.SignalSettings()->SetName1(QString::fromUtf8(t.name1));
        c.SignalSettings()->SetValueUnit(QString::fromUtf8(t.unit));
        c.setAccessibleName(QString::fromUtf8(t.accessibleName));
        c.setAccessibleDescription(QString::fromUtf8(t.accessibleDescription));
        c.setToolTip(QString::fromUtf8(t.toolTip));
        c.Loaded();
        c.SetValue(42.5f);
        QAccessibleInterface* a = Query(&c);
        EXPECT_EQ(a->text(QAccessible::Name), QString::fromUtf8(t.name));
        EXPECT_EQ(a->text(QAccessible::Value), QString::fromUtf8(t.value));
        EXPECT_EQ(a->text(QAccessible::Description), QString::fromUtf8(t.description));
        EXPECT_EQ(a->text(QAccessible::Help), QString::fromUtf8(t.help));
    }
}

TEST(AccessibleAdjuster, BoundsAndStepOfOneArrowKey) {
    const struct {
        float from, to;
        int32_t digits, changeSmall;
        double min, max, step;
    } cases[] = {
        {0.0f, 100.0f, 1000, 1, 0.0, 100.0, 0.1},  {-50.0f, 50.0f, 200, 5, -50.0, 50.0, 2.5},
        {0.0f, 1.0f, 100, 10, 0.0, 1.0, 0.1},      // decimal, not 0.01f x 10 widened
        {0.0f, 100.0f, 1000, 3, 0.0, 100.0, 0.3},  // not 0.1 x 3 = 0.30000000000000004
        {0.0f, 100.0f, 1000, -2, 0.0, 100.0, 0.2},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(testing::Message() << t.to << " " << t.changeSmall);
        TKxAnalogCControl c;
        c.SignalSettings()->SetValueFrom(t.from);
        c.SignalSettings()->SetValueTo(t.to);
        c.SignalSettings()->SetDigitalTo(t.digits);
        c.SetChangeSmall(t.changeSmall);
        c.Loaded();
        QAccessibleValueInterface* v = Query(&c)->valueInterface();
        ASSERT_TRUE(v);
        EXPECT_EQ(v->minimumValue().toDouble(), t.min);
        EXPECT_EQ(v->maximumValue().toDouble(), t.max);
        EXPECT_EQ(v->minimumStepSize().toDouble(), t.step);
    }
}

TEST(AccessibleAdjuster, SettingTheValueClampsSnapsAndReports) {
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        QVariant input;
        double value;
        const char* text;
        int changes;
    } cases[] = {
        {150.0, 100.0, "100.0 %", 1},
        {-5.0, 0.0, "0.0 %", 1},
        {33.333, 33.3, "33.3 %", 1},
        {50.04, 50.0, "50.0 %", 0},  // rounds to the digit it is on: no change
        {QStringLiteral("75"), 75.0, "75.0 %", 1},
        {inf, 100.0, "100.0 %", 1},
        {std::nan(""), 50.0, "50.0 %", 0},
        {QVariant(), 50.0, "50.0 %", 0},
        {QStringLiteral("high"), 50.0, "50.0 %", 0},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.input.toString().toStdString());
        TKxAnalogCControl c;  // 0..100 % in 1000 digits
        c.Loaded();
        c.SetValue(50.0f);
        int changes = 0;
        QObject::connect(&c, &TKxAnalogCControl::OnValueChange, [&] { ++changes; });
        QAccessibleInterface* a = Query(&c);
        a->valueInterface()->setCurrentValue(t.input);
        EXPECT_EQ(a->valueInterface()->currentValue().toDouble(), t.value);
        EXPECT_EQ(a->text(QAccessible::Value), QString::fromUtf8(t.text));
        EXPECT_EQ(changes, t.changes);
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
    if (e->type() == QAccessible::ValueChanged) {
        const QVariant v = static_cast<QAccessibleValueChangeEvent*>(e)->value();
        what = v.typeId() == QMetaType::QString
                   ? "text " + v.toString()
                   : "value " + QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest);
    } else if (e->type() == QAccessible::StateChanged) {
        what = "state " + StateWords(static_cast<QAccessibleStateChangeEvent*>(e)->changedStates());
    } else if (e->type() == QAccessible::DescriptionChanged) {
        what = "description";
    } else {
        what = QString::number(e->type(), 16);
    }
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
    KxAccessibleTextChanged(&meter, "x");
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
    KxAccessibleTextChanged(&meter, "0012h:05m");
    KxAccessibleTextChanged(nullptr, "x");
    EXPECT_EQ(seen,
              (QStringList{"meter value 12.5", "meter value 0.1", "meter value 0.3333333333333333",
                           "meter value 1e+300", "switch state checked", "button state pressed",
                           "led state checked", "meter description", "meter text 0012h:05m"}));
    // The event and the interface report a reading alike.
    meter.SetValue(0.3f);
    seen.clear();
    KxAccessibleValueChanged(&meter, meter.Value());
    EXPECT_EQ(Query(&meter)->valueInterface()->currentValue().toDouble(), 0.3);
    EXPECT_EQ(seen, QStringList{"meter value 0.3"});
}

TEST_F(AccessibleEvents, AdjusterReportsEachAcceptedChangeBeforeItsHandlers) {
    TKxAnalogCControl knob;
    knob.setObjectName("knob");
    knob.Loaded();
    knob.SetValue(99.8f);
    QObject::connect(&knob, &TKxAnalogCControl::OnValueChange,
                     [&] { seen << "knob OnValueChange"; });
    const auto press = [&](Qt::Key key) {
        QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&knob, &e);
    };
    press(Qt::Key_Up);
    ASSERT_EQ(seen, QStringList{"knob OnValueChange"});  // nobody listens: no event

    if (!SetAccessibilityActive(true))
        GTEST_SKIP() << "cannot switch this platform's accessibility on";
    seen.clear();
    press(Qt::Key_Up);
    press(Qt::Key_Up);  // at the end already: nothing accepted, nothing sent
    press(Qt::Key_Home);
    Query(&knob)->valueInterface()->setCurrentValue(12.34);
    EXPECT_EQ(seen, (QStringList{"knob value 100", "knob OnValueChange", "knob value 0",
                                 "knob OnValueChange", "knob value 12.3", "knob OnValueChange"}));
}

}  // namespace
}  // namespace kx

#include "accessible_test.moc"
