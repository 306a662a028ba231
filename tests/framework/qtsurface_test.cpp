// The Qt-shaped surface of an analog control: the value property and its change signal,
// the Qt-style setter names, and readings handed over from other threads.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMetaProperty>
#include <QPropertyAnimation>
#include <QThread>
#include <cmath>
#include <limits>

#include "analog_probe.h"

namespace kx {
namespace {

using test::AnalogProbe;

// Logs valueChanged into the probe's event log, after the events of the evaluation.
void logValueChanged(AnalogProbe& c) {
    QObject::connect(&c, &TKxAnalogGControl::valueChanged, &c,
                     [&c](double v) { c.log << QStringLiteral("valueChanged(%1)").arg(v); });
}

TEST(QtSurface, ValueChangedFollowsTheEvaluationOncePerChange) {
    const struct {
        const char* what;
        std::function<void(AnalogProbe&)> act;
        QStringList log;
    } cases[] = {
        {"SetValue", [](AnalogProbe& c) { c.SetValue(60.0f); }, {"Value", "valueChanged(60)"}},
        {"into the upper limit",
         [](AnalogProbe& c) { c.SetValue(95.0f); },
         {"Sector(010,leave)", "Sector(001,enter)", "limitHook", "Limit(0,1)", "Value",
          "valueChanged(95)"}},
        {"same value", [](AnalogProbe& c) { c.SetValue(50.0f); }, {}},
        {"NaN", [](AnalogProbe& c) { c.SetValue(std::nanf("")); }, {}},
        {"setValue(double)",
         [](AnalogProbe& c) { c.setValue(25.0); },
         {"Sector(100,enter)", "Sector(010,leave)", "Value", "valueChanged(25)"}},
        {"value property",
         [](AnalogProbe& c) { c.setProperty("value", 70.0); },
         {"Sector(010,leave)", "Sector(001,enter)", "Value", "valueChanged(70)"}},
        {"Value property",
         [](AnalogProbe& c) { c.setProperty("Value", 70.0); },
         {"Sector(010,leave)", "Sector(001,enter)", "Value", "valueChanged(70)"}},
        {"SetDigit", [](AnalogProbe& c) { c.SetDigit(400); }, {"Value", "valueChanged(40)"}},
        {"same digit", [](AnalogProbe& c) { c.SetDigit(500); }, {}},
        {"beyond the float range",
         [](AnalogProbe& c) { c.setValue(1e300); },
         // A new maximum re-runs the evaluation, as every new extreme does.
         {"Sector(010,leave)", "limitHook", "Limit(0,1)", "overflowHook(2147483647,PPT=2147483647)",
          "Overflow(2147483647)", "MinMax", "Value", "Value", "valueChanged(inf)"}},
        // The value stays, but its digit moves onto the logarithmic span.
        {"log scale keeps a positive value",
         [](AnalogProbe& c) { c.SetLogScale(true); },
         {"Settings", "valueChanged(50)"}},
        {"a limit is no reading",
         [](AnalogProbe& c) { c.SetLimitUpper(40.0f); },
         {"limitHook", "Limit(0,1)", "Value"}},
    };
    for (const auto& c : cases) {
        AnalogProbe probe;
        probe.LoadQuiet();
        logValueChanged(probe);
        c.act(probe);
        EXPECT_EQ(probe.Take(), c.log) << c.what;
    }
}

TEST(QtSurface, SwitchingToLogScaleMovesANonPositiveValue) {
    AnalogProbe c;
    c.LoadQuiet();
    c.SetValue(-5.0f);
    logValueChanged(c);
    c.log.clear();
    c.SetLogScale(true);
    EXPECT_EQ(c.Value(), 0.001f);
    EXPECT_TRUE(c.log.contains(QStringLiteral("valueChanged(%1)").arg(double(0.001f))))
        << c.log.join(' ').toStdString();
}

TEST(QtSurface, DesignTimeReadingsStillNotify) {
    AnalogProbe c;
    c.SetDesigning(true);
    c.LoadQuiet();
    logValueChanged(c);
    c.SetValue(80.0f);
    EXPECT_EQ(c.Take(), (QStringList{"Settings", "valueChanged(80)"}));
}

TEST(QtSurface, PropertiesCarryTheQtNames) {
    AnalogProbe c;
    const QMetaObject& m = *c.metaObject();
    const struct {
        const char* name;
        bool designable, stored, notifies;
    } props[] = {
        {"value", false, false, true},   {"Value", true, true, true},
        {"Digit", true, false, true},    {"LimitUpper", true, true, false},
        {"ShowHint", true, true, false},
    };
    for (const auto& p : props) {
        const QMetaProperty mp = m.property(m.indexOfProperty(p.name));
        ASSERT_TRUE(mp.isValid()) << p.name;
        EXPECT_EQ(mp.isDesignable(), p.designable) << p.name;
        EXPECT_EQ(mp.isStored(), p.stored) << p.name;
        EXPECT_EQ(mp.hasNotifySignal(), p.notifies) << p.name;
        if (p.notifies) {
            EXPECT_EQ(mp.notifySignal().name(), QByteArray("valueChanged")) << p.name;
        }
    }
    // The settings objects are published flat for Designer, not as objects.
    EXPECT_FALSE(m.property(m.indexOfProperty("SignalSettings")).isDesignable());
}

TEST(QtSurface, AnimatesThroughTheValueProperty) {
    AnalogProbe c;
    c.LoadQuiet();
    QPropertyAnimation animation(&c, "value");
    animation.setStartValue(0.0);
    animation.setEndValue(100.0);
    animation.setDuration(1000);
    animation.start();
    animation.setCurrentTime(250);
    EXPECT_EQ(c.Value(), 25.0f);
    animation.setCurrentTime(1000);
    EXPECT_EQ(c.Value(), 100.0f);
}

// --- PostValue -------------------------------------------------------------------------

TEST(PostValue, AppliesTheNewestReadingOnceTheEventLoopRuns) {
    AnalogProbe c;
    c.LoadQuiet();
    QList<double> seen;
    QObject::connect(&c, &TKxAnalogGControl::valueChanged, [&](double v) { seen << v; });
    c.PostValue(10.0);
    c.PostValue(20.0);
    c.PostValue(30.0);
    EXPECT_EQ(c.Value(), 50.0f);  // nothing before the loop runs
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, QList<double>{30.0});
    // A reading after that is a new queued call; NaN is ignored like SetValue does.
    c.PostValue(std::numeric_limits<double>::quiet_NaN());
    QCoreApplication::processEvents();
    c.PostValue(40.0);
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, (QList<double>{30.0, 40.0}));
}

TEST(PostValue, PendingCallDiesWithTheControl) {
    auto* c = new AnalogProbe;
    c->PostValue(10.0);
    delete c;
    QCoreApplication::processEvents();  // must not touch the deleted control
    SUCCEED();
}

// A producer thread that posts 1..count as fast as it can.
class Producer : public QThread {
  public:
    Producer(TKxAnalogGControl& c, int count) : control_(c), count_(count) {}
    void run() override {
        for (int i = 1; i <= count_; ++i)
            control_.PostValue(i);
    }

  private:
    TKxAnalogGControl& control_;
    int count_;
};

TEST(PostValue, ReadingsFromAThreadCollapseIntoTheNewest) {
    constexpr int kCount = 20000;
    AnalogProbe c;
    c.SignalSettings()->SetValueTo(float(kCount));
    c.LoadQuiet();
    QList<double> seen;
    QObject::connect(&c, &TKxAnalogGControl::valueChanged, [&](double v) { seen << v; });

    // While the GUI thread is busy elsewhere, everything collapses into one reading.
    Producer quiet(c, kCount);
    quiet.start();
    quiet.wait();
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, QList<double>{double(kCount)});

    // While it keeps up, the readings it applies only ever go forward and end at the
    // last one.
    c.SetValue(0.0f);
    seen.clear();
    Producer busy(c, kCount);
    busy.start();
    while (!busy.isFinished())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_EQ(seen.last(), double(kCount));
    EXPECT_LE(seen.size(), kCount);
    for (int i = 1; i < seen.size(); ++i)
        ASSERT_GT(seen[i], seen[i - 1]) << i;
    EXPECT_EQ(c.Value(), float(kCount));
}

}  // namespace
}  // namespace kx
