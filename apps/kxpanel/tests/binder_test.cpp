// The binder on a panel built in code, fed by an in-process source: values reaching their
// properties, problems reported with their paths, write-back once per finished change,
// the stale overlay and the alarm log.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <memory>

#include "alarmlog.h"
#include "binder.h"
#include "common/test_env.h"
#include "inprocesssource.h"
#include "kx/adjusters/dial.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/indicators/rmeter.h"
#include "kx/recorders/trend.h"
#include "staleoverlay.h"

namespace kx::panel {
namespace {

// The bindings reach the in-process source through a simulator entry of the same name,
// whose signals name the addresses.
QByteArray fileWith(const QByteArray& bindings) {
    return R"({ "stale_after_ms": 3000,
                "sources": { "in": { "type": "simulator", "signals": {
                  "a": {"wave": "constant"}, "b": {"wave": "constant"},
                  "c": {"wave": "constant"} } } },
                "bindings": [)" +
           bindings + "]}";
}

class BinderTest : public ::testing::Test {
  protected:
    void SetUp() override {
        panel_ = std::make_unique<QWidget>();
        panel_->setObjectName("Panel");
        meter_ = make<TKx270Meter>("Boiler", QRect(0, 0, 150, 150));
        lamp_ = make<TKxLED>("Lamp3", QRect(160, 0, 80, 24));
        dial_ = make<TKxDial>("Set", QRect(160, 30, 120, 120));
        trend_ = make<TKxTrend>("Trend1", QRect(0, 160, 300, 160));
        pump_ = make<TKxToggleSwitch>("Pump", QRect(300, 0, 60, 60));
        meter_->setLimitUpper(13.0);
        panel_->setAttribute(Qt::WA_DontShowOnScreen);
        panel_->show();
        source_ = std::make_unique<InProcessSource>("in");
    }

  public:
    template <typename T>
    T* make(const char* name, QRect geometry) {
        auto* w = new T(panel_.get());
        w->setObjectName(name);
        w->setGeometry(geometry);
        return w;
    }

    Binder& bind(const QByteArray& bindings, AlarmLog* log = nullptr) {
        const BindingsParseResult r = ParseBindings(fileWith(bindings));
        EXPECT_TRUE(r.File) << r.Errors.join('\n').toStdString();
        binder_ = std::make_unique<Binder>(panel_.get());
        binder_->SetAlarmLog(log);
        binder_->Bind(r.File ? *r.File : BindingsFile{}, {{"in", source_.get()}});
        source_->Start();
        return *binder_;
    }

    static void key(QWidget* w, QEvent::Type type, int k, bool autoRepeat = false) {
        QKeyEvent e(type, k, Qt::NoModifier, QString(), autoRepeat);
        QCoreApplication::sendEvent(w, &e);
    }

    std::unique_ptr<QWidget> panel_;
    std::unique_ptr<InProcessSource> source_;
    std::unique_ptr<Binder> binder_;
    TKx270Meter* meter_ = nullptr;
    TKxLED* lamp_ = nullptr;
    TKxDial* dial_ = nullptr;
    TKxTrend* trend_ = nullptr;
    TKxToggleSwitch* pump_ = nullptr;
};

TEST_F(BinderTest, ValuesReachTheirTargets) {
    struct Case {
        QByteArray binding;
        double pushed;
        std::function<QVariant(BinderTest&)> read;
        QVariant expected;
    };
    const Case cases[] = {
        {R"({"target": "Boiler.Value", "source": "in", "address": "a"})", 7.5,
         [](BinderTest& t) { return QVariant(double(t.meter_->Value())); }, 7.5},
        {R"({"target": "Boiler.Value", "source": "in", "address": "a", "factor": 0.5, "offset": 1})",
         10, [](BinderTest& t) { return QVariant(double(t.meter_->Value())); }, 6.0},
        {R"({"target": "Lamp3.Checked", "source": "in", "address": "a", "bit": 3})", 8,
         [](BinderTest& t) { return QVariant(t.lamp_->Checked()); }, true},
        {R"({"target": "Lamp3.Checked", "source": "in", "address": "a", "bit": 3})", 7,
         [](BinderTest& t) { return QVariant(t.lamp_->Checked()); }, false},
        {R"({"target": "Lamp3.Checked", "source": "in", "address": "a"})", 0.25,
         [](BinderTest& t) { return QVariant(t.lamp_->Checked()); }, true},
        {R"({"target": "Lamp3.StatusInt", "source": "in", "address": "a"})", 4294967295.0,
         [](BinderTest& t) { return QVariant(t.lamp_->StatusInt()); }, -1},
        {R"({"target": "Lamp3.StatusInt", "source": "in", "address": "a"})", 1e12,
         [](BinderTest& t) { return QVariant(t.lamp_->StatusInt()); }, INT32_MAX},
        {R"({"target": "Lamp3.StatusInt", "source": "in", "address": "a"})", 2.5,
         [](BinderTest& t) { return QVariant(t.lamp_->StatusInt()); }, 3},
        {R"({"target": "Trend1.Channel[2]", "source": "in", "address": "a"})", 42,
         [](BinderTest& t) { return QVariant(double(t.trend_->Channel(2)->Value())); }, 42.0},
        {R"({"target": "Set.Value", "source": "in", "address": "a"})", 30,
         [](BinderTest& t) { return QVariant(double(t.dial_->Value())); }, 30.0},
    };
    for (const Case& c : cases) {
        SetUp();
        Binder& b = bind(c.binding);
        EXPECT_TRUE(b.Problems().isEmpty()) << b.Problems().join('\n').toStdString();
        source_->Push("a", c.pushed);
        EXPECT_EQ(c.read(*this), c.expected) << c.binding.toStdString();
        EXPECT_EQ(b.Applied(), 1);
    }
}

TEST_F(BinderTest, OneAddressFeedsEveryBindingOfIt) {
    bind(R"({"target": "Boiler.Value", "source": "in", "address": "a"},
            {"target": "Trend1.Channel[1]", "source": "in", "address": "a"},
            {"target": "Lamp3.StatusInt", "source": "in", "address": "b"})");
    source_->Push("a", 5.0);
    source_->Push("c", 9.0);  // bound to nothing
    EXPECT_EQ(meter_->Value(), 5.0f);
    EXPECT_EQ(trend_->Channel(1)->Value(), 5.0f);
    EXPECT_EQ(lamp_->StatusInt(), 0);
    EXPECT_EQ(source_->Watched(), (QMap<QString, int>{{"a", 1}, {"b", 1}}));
}

TEST_F(BinderTest, UnusableReadingsAreDroppedAndCounted) {
    Binder& b =
        bind(R"({"target": "Boiler.Value", "source": "in", "address": "a", "type": "int32"})");
    source_->Push("a", 4.0);
    source_->Push("a", SourceValue::FromWords({1}));  // an int32 needs two words
    source_->Push("a", std::nan(""));
    EXPECT_EQ(meter_->Value(), 4.0f);
    EXPECT_EQ(b.Applied(), 1);
    EXPECT_EQ(b.Dropped(), 2);
}

TEST_F(BinderTest, ProblemsNameTheBindingAndTheRestRuns) {
    Binder& b = bind(R"({"target": "Boiler2.Value", "source": "in", "address": "a"},
            {"target": "Boiler.Valu", "source": "in", "address": "a"},
            {"target": "Lamp3.Caption", "source": "in", "address": "a"},
            {"target": "Boiler.Channel[1]", "source": "in", "address": "a"},
            {"target": "Boiler.Value", "source": "in", "address": "a", "write": true},
            {"target": "Trend1.RecordCount", "source": "in", "address": "a"},
            {"target": "Lamp3.Checked", "source": "in", "address": "b"})");
    EXPECT_EQ(b.Problems(),
              (QStringList{
                  "bindings[0].target: no widget \"Boiler2\" in the panel",
                  "bindings[1].target: \"Boiler\" has no property \"Valu\"",
                  "bindings[2].target: property \"Caption\" of \"Lamp3\" is not a number or bool",
                  "bindings[3].target: \"Boiler\" is not a trend, it has no channels",
                  "bindings[4].write: \"Boiler\" (kx::TKx270Meter) takes no operator input to "
                  "write back",
                  "bindings[5].target: \"Trend1\" has no property \"RecordCount\"",
              }));
    EXPECT_EQ(b.BoundCount(), 2);  // the meter without write-back, and the lamp
    source_->Push("b", 1.0);
    source_->Push("a", 3.0);
    EXPECT_TRUE(lamp_->Checked());
    EXPECT_EQ(meter_->Value(), 3.0f);
}

TEST_F(BinderTest, MissingSourceIsAProblem) {
    const BindingsParseResult r =
        ParseBindings(fileWith(R"({"target": "Boiler.Value", "source": "in", "address": "a"})"));
    Binder b(panel_.get());
    b.Bind(*r.File, {});
    EXPECT_EQ(b.Problems(), QStringList{"bindings[0].source: source \"in\" is not running"});
}

TEST_F(BinderTest, AdjusterWritesOncePerFinishedChange) {
    bind(
        R"({"target": "Set.Value", "source": "in", "address": "a", "factor": 0.5, "write": true})");
    source_->Push("a", 40.0);  // Value 20: applying it writes nothing
    EXPECT_TRUE(source_->Writes().isEmpty());
    key(dial_, QEvent::KeyPress, Qt::Key_Up);
    key(dial_, QEvent::KeyPress, Qt::Key_Up, true);
    key(dial_, QEvent::KeyPress, Qt::Key_Up, true);
    EXPECT_TRUE(source_->Writes().isEmpty());
    key(dial_, QEvent::KeyRelease, Qt::Key_Up);
    ASSERT_EQ(source_->Writes().size(), 1);
    EXPECT_EQ(source_->Writes()[0].first, "a");
    EXPECT_FALSE(source_->Writes()[0].second.IsWords);
    EXPECT_EQ(source_->Writes()[0].second.Number, dial_->Value() / 0.5);
    EXPECT_GT(dial_->Value(), 20.0f);
}

TEST_F(BinderTest, ValuesWaitWhileTheOperatorAdjusts) {
    bind(R"({"target": "Set.Value", "source": "in", "address": "a", "write": true})");
    source_->Push("a", 20.0);
    key(dial_, QEvent::KeyPress, Qt::Key_Up);
    const float moved = dial_->Value();
    source_->Push("a", 50.0);
    EXPECT_EQ(dial_->Value(), moved);  // held back
    key(dial_, QEvent::KeyRelease, Qt::Key_Up);
    ASSERT_EQ(source_->Writes().size(), 1);
    EXPECT_EQ(source_->Writes()[0].second.Number, double(moved));  // the operator's value first
    EXPECT_EQ(dial_->Value(), 50.0f);                              // then the newest reading
}

TEST_F(BinderTest, SwitchWritesTheOperatorsChangesOnly) {
    Binder& b =
        bind(R"({"target": "Pump.Checked", "source": "in", "address": "b", "write": true})");
    source_->Push("b", 1.0);
    EXPECT_TRUE(pump_->Checked());
    EXPECT_TRUE(source_->Writes().isEmpty());
    key(pump_, QEvent::KeyPress, Qt::Key_Space);
    key(pump_, QEvent::KeyRelease, Qt::Key_Space);
    EXPECT_FALSE(pump_->Checked());
    ASSERT_EQ(source_->Writes().size(), 1);
    EXPECT_EQ(source_->Writes()[0].second.Number, 0.0);

    QStringList failed;
    QObject::connect(&b, &Binder::writeFailed, [&](const QString& m) { failed << m; });
    source_->SetAcceptWrites(false);
    key(pump_, QEvent::KeyPress, Qt::Key_Space);
    key(pump_, QEvent::KeyRelease, Qt::Key_Space);
    ASSERT_EQ(failed.size(), 1);
    EXPECT_EQ(failed[0], "bindings[0]: write to in b failed: refused by the source");
    EXPECT_EQ(source_->Writes().size(), 1);  // not retried
}

TEST_F(BinderTest, StaleOverlayAppearsAndClears) {
    TFakeClock& clock = test::FakeClock();
    lamp_->setToolTip("Burner");
    Binder& b = bind(R"({"target": "Lamp3.Checked", "source": "in", "address": "a"},
            {"target": "Boiler.Value", "source": "in", "address": "b", "stale_after_ms": 0})");
    clock.Advance(1500);
    source_->Push("a", 1.0);
    clock.Advance(2999);
    b.CheckStale();
    EXPECT_EQ(b.OverlayOf(lamp_), nullptr);
    clock.Advance(1);
    b.CheckStale();
    StaleOverlay* overlay = b.OverlayOf(lamp_);
    ASSERT_NE(overlay, nullptr);
    EXPECT_TRUE(overlay->isVisibleTo(lamp_));
    EXPECT_EQ(overlay->geometry(), lamp_->rect());
    EXPECT_EQ(lamp_->toolTip(), "no data since 00:00:01");
    EXPECT_EQ(lamp_->accessibleDescription(), "no data since 00:00:01");
    EXPECT_EQ(b.OverlayOf(meter_), nullptr);  // never stale with 0

    lamp_->resize(100, 30);
    EXPECT_EQ(overlay->geometry(), QRect(0, 0, 100, 30));
    clock.Advance(60000);
    b.CheckStale();
    EXPECT_EQ(lamp_->toolTip(), "no data since 00:00:01");  // still the last data's time

    source_->Push("a", 0.0);
    EXPECT_FALSE(overlay->isVisibleTo(lamp_));
    EXPECT_EQ(lamp_->toolTip(), "Burner");
    EXPECT_EQ(lamp_->accessibleDescription(), "");
}

TEST_F(BinderTest, StaleOverlayDrawsAHatchOverTheComponent) {
    lamp_->resize(40, 40);
    StaleOverlay overlay(lamp_);
    overlay.ShowStale("12:00:00");
    const QImage before = lamp_->grab().toImage();
    overlay.Clear();
    const QImage after = lamp_->grab().toImage();
    int changed = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            changed += before.pixel(x, y) != after.pixel(x, y);
    EXPECT_EQ(changed, 40 * 40);  // the veil covers every pixel
}

TEST_F(BinderTest, ComponentIsStaleWhileAnyOfItsBindingsIs) {
    TFakeClock& clock = test::FakeClock();
    Binder& b = bind(R"({"target": "Trend1.Channel[1]", "source": "in", "address": "a"},
            {"target": "Trend1.Channel[2]", "source": "in", "address": "b", "stale_after_ms": 500})");
    source_->Push("a", 1.0);
    source_->Push("b", 1.0);
    clock.Advance(400);
    source_->Push("a", 2.0);
    clock.Advance(100);
    b.CheckStale();
    ASSERT_NE(b.OverlayOf(trend_), nullptr);
    EXPECT_TRUE(b.OverlayOf(trend_)->IsStale());
    source_->Push("a", 3.0);  // the other binding is still stale
    EXPECT_TRUE(b.OverlayOf(trend_)->IsStale());
    source_->Push("b", 3.0);
    EXPECT_FALSE(b.OverlayOf(trend_)->IsStale());
}

TEST_F(BinderTest, AlarmLogRecordsLimitAndOverflowEvents) {
    QTemporaryDir dir;
    const QString path = dir.filePath("alarms.csv");
    AlarmLog log;
    ASSERT_TRUE(log.Open(path, nullptr));
    meter_->SignalSettings()->SetValueTo(16.0f);
    meter_->setLimitLower(2.0);
    meter_->setValue(12.0);
    bind(R"({"target": "Boiler.Value", "source": "in", "address": "a"})", &log);
    for (double v : {12.0, 14.0, 12.0, 20.0, 5.0})
        source_->Push("a", v);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(),
              "time,widget,event,value\n"
              "2023-03-15 00:00:00.000,Boiler,upper limit,14\n"
              "2023-03-15 00:00:00.000,Boiler,limits normal,12\n"
              "2023-03-15 00:00:00.000,Boiler,upper limit,20\n"
              "2023-03-15 00:00:00.000,Boiler,overflow high,20\n"
              "2023-03-15 00:00:00.000,Boiler,limits normal,5\n"
              "2023-03-15 00:00:00.000,Boiler,overflow cleared,5\n");
    EXPECT_EQ(log.Lines(), 6);
}

TEST(AlarmLog, AppendsToAnExistingFileAndQuotes) {
    QTemporaryDir dir;
    const QString path = dir.filePath("a.csv");
    {
        AlarmLog log;
        ASSERT_TRUE(log.Open(path, nullptr));
        log.Append("A,B", "upper limit", 1.5);
    }
    AlarmLog log;
    ASSERT_TRUE(log.Open(path, nullptr));
    log.Append("say \"hi\"", "overflow low", -2);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()),
              "time,widget,event,value\n"
              "2023-03-15 00:00:00.000,\"A,B\",upper limit,1.5\n"
              "2023-03-15 00:00:00.000,\"say \"\"hi\"\"\",overflow low,-2\n");
    QString error;
    AlarmLog bad;
    EXPECT_FALSE(bad.Open(dir.filePath("no/such/dir/a.csv"), &error));
    EXPECT_TRUE(error.startsWith(dir.filePath("no/such/dir/a.csv") + ": cannot write"));
    EXPECT_FALSE(bad.Append("x", "upper limit", 1));
}

}  // namespace
}  // namespace kx::panel
