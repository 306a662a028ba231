// The MQTT source against a real mosquitto broker that each test starts on a free
// loopback port and kills at its end: numbers and JSON pointers through scaling and bit
// fields onto the panel, write-back published to the write topics, malformed payloads
// dropped and counted, the stale state while the broker is gone and recovery after its
// restart. The broker must be installed (scripts/deps.sh installs it); without it the
// tests fail and say so.
#include <mosquitto.h>

#include <gtest/gtest.h>

#include <QProcess>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <cmath>
#include <vector>

#include "binder.h"
#include "bindingsfile.h"
#include "kx/host/clock.h"
#include "livepanel.h"
#include "mqttsource.h"
#include "staleoverlay.h"

namespace kx::panel {
namespace {

using test::WaitUntil;

TEST(MqttPayload, NumbersAndPointers) {
    const struct {
        const char* payload;
        const char* pointer;
        std::optional<double> expected;
    } cases[] = {
        {"21.5", "", 21.5},
        {" -3e2\n", "", -300.0},
        {"0", "", 0.0},
        {"", "", std::nullopt},
        {"hot", "", std::nullopt},
        {"21.5 bar", "", std::nullopt},
        {"nan", "", std::nullopt},
        {"inf", "", std::nullopt},
        {R"({"temp": 21.5})", "/temp", 21.5},
        {R"({"a": {"b": [1, 2, 3]}})", "/a/b/2", 3.0},
        {R"({"m/s": 4, "~": 5})", "/m~1s", 4.0},
        {R"({"m/s": 4, "~": 5})", "/~0", 5.0},
        {R"([7, 8])", "/1", 8.0},
        {R"({"on": true, "off": false})", "/on", 1.0},
        {R"({"on": true, "off": false})", "/off", 0.0},
        {R"({"temp": "21.5"})", "/temp", std::nullopt},  // a string is no number
        {R"({"temp": null})", "/temp", std::nullopt},
        {R"({"temp": {}})", "/temp", std::nullopt},
        {R"({"temp": 1})", "/tmp", std::nullopt},
        {R"({"temp": 1)", "/temp", std::nullopt},  // not JSON
        {"21.5", "/temp", std::nullopt},
        {"\xff\xfe", "/temp", std::nullopt},
    };
    for (const auto& c : cases) {
        const auto v =
            MqttSource::ParsePayload(QByteArray(c.payload), QString::fromUtf8(c.pointer));
        EXPECT_EQ(v, c.expected) << c.payload << " @ " << c.pointer;
    }
}

// A mosquitto broker on 127.0.0.1:port, started and killed by the test.
class Broker {
  public:
    ~Broker() { Stop(); }

    static QString Executable() {
        QString exe = QStandardPaths::findExecutable("mosquitto");
        if (exe.isEmpty())
            exe = QStandardPaths::findExecutable("mosquitto", {"/usr/sbin", "/usr/local/sbin"});
        return exe;
    }

    // Starts it and waits until it accepts connections; false with the reason.
    bool Start(int port, QString* why) {
        const QString exe = Executable();
        if (exe.isEmpty()) {
            *why =
                "the mosquitto broker is not installed (Debian package mosquitto; "
                "scripts/deps.sh installs it)";
            return false;
        }
        const QString conf = dir_.filePath("mosquitto.conf");
        QFile f(conf);
        if (!f.open(QIODevice::WriteOnly) ||
            f.write(QStringLiteral("listener %1 127.0.0.1\nallow_anonymous true\n"
                                   "persistence false\n")
                        .arg(port)
                        .toUtf8()) < 0) {
            *why = "cannot write " + conf;
            return false;
        }
        f.close();
        proc_.setProcessChannelMode(QProcess::MergedChannels);
        proc_.start(exe, {"-c", conf});
        if (!proc_.waitForStarted(3000)) {
            *why = exe + ": " + proc_.errorString();
            return false;
        }
        const bool up = WaitUntil(
            [&] {
                if (proc_.state() != QProcess::Running) return true;
                QTcpSocket s;
                s.connectToHost(QHostAddress::LocalHost, quint16(port));
                return s.waitForConnected(200);
            },
            5000);
        if (!up || proc_.state() != QProcess::Running) {
            *why = "mosquitto did not come up: " + QString::fromUtf8(proc_.readAll());
            Stop();
            return false;
        }
        return true;
    }

    void Stop() {
        if (proc_.state() == QProcess::NotRunning) return;
        proc_.kill();
        proc_.waitForFinished(3000);
    }

  private:
    QTemporaryDir dir_;
    QProcess proc_;
};

// A second, plain libmosquitto client: the plant publishing and listening to setpoints.
class Plant {
  public:
    Plant() {
        MqttSource::InitLibrary();
        m_ = mosquitto_new(nullptr, true, this);
        mosquitto_message_callback_set(
            m_, [](mosquitto*, void* self, const mosquitto_message* msg) {
                static_cast<Plant*>(self)->Received.emplace_back(
                    QByteArray(msg->topic),
                    QByteArray(static_cast<const char*>(msg->payload), msg->payloadlen));
            });
    }
    ~Plant() {
        mosquitto_disconnect(m_);
        mosquitto_destroy(m_);
    }

    bool Connect(int port) {
        if (mosquitto_connect(m_, "127.0.0.1", port, 30) != MOSQ_ERR_SUCCESS) return false;
        Pump(50);
        return true;
    }
    // Retained, so that a subscriber that comes later still gets the newest value.
    void Publish(const char* topic, const QByteArray& payload) {
        mosquitto_publish(m_, nullptr, topic, int(payload.size()), payload.constData(), 0, true);
        Pump(20);
    }
    void Subscribe(const char* filter) {
        mosquitto_subscribe(m_, nullptr, filter, 0);
        Pump(50);
    }
    void Pump(int ms = 0) {
        QElapsedTimer t;
        t.start();
        do {
            mosquitto_loop(m_, 5, 1);
        } while (t.elapsed() < ms);
    }

    std::vector<std::pair<QByteArray, QByteArray>> Received;

  private:
    mosquitto* m_;
};

class MqttIntegration : public ::testing::Test {
  protected:
    void SetUp() override {
        SetClock(nullptr);  // the stale state and the broker run in real time here
        port_ = test::FreePort();
        ASSERT_GT(port_, 0);
        QString why;
        if (!broker_.Start(port_, &why)) FAIL() << why.toStdString();
        ASSERT_TRUE(plant_.Connect(port_));
    }

    void TearDown() override {
        binder_.reset();
        source_.reset();
        broker_.Stop();
    }

    // -12.3 degrees in tenths, 70000 l/h, 42.5 kWh in a nested array, status word 0x28
    // (bit 3 set, bits 4..5 = 2), setpoint 40, pump off.
    void publishPlant() {
        plant_.Publish("plant/boiler",
                       R"({"temp": -123, "flow/h": 70000, "energy": {"kWh": [1, 42.5]}})");
        plant_.Publish("plant/status", "40");
        plant_.Publish("plant/setpoint", "40");
        plant_.Publish("plant/pump", "0");
    }

    void bind(int staleMs = 5000) {
        const QByteArray json = QStringLiteral(R"({ "stale_after_ms": %1,
            "sources": { "mq": { "type": "mqtt", "host": "127.0.0.1", "port": %2,
              "client_id": "kxpanel-test",
              "topics": {
                "temp": { "topic": "plant/boiler", "pointer": "/temp" },
                "flow": { "topic": "plant/boiler", "pointer": "/flow~1h" },
                "energy": { "topic": "plant/boiler", "pointer": "/energy/kWh/1" },
                "status": "plant/status",
                "setpoint": { "topic": "plant/setpoint", "write_topic": "plant/setpoint/set" },
                "pump": { "topic": "plant/pump", "write_topic": "plant/pump/set" } } } },
            "bindings": [
              { "target": "Temp.Value", "source": "mq", "address": "temp", "factor": 0.1 },
              { "target": "Flow.Value", "source": "mq", "address": "flow" },
              { "target": "Energy.Value", "source": "mq", "address": "energy" },
              { "target": "Lamp3.Checked", "source": "mq", "address": "status", "bit": 3 },
              { "target": "Word.StatusInt", "source": "mq", "address": "status",
                "bit": 4, "bits": 2 },
              { "target": "Set.Value", "source": "mq", "address": "setpoint", "write": true },
              { "target": "Pump.Checked", "source": "mq", "address": "pump", "write": true }
            ] })")
                                    .arg(staleMs)
                                    .arg(port_)
                                    .toUtf8();
        const BindingsParseResult r = ParseBindings(json);
        ASSERT_TRUE(r.File) << r.Errors.join('\n').toStdString();
        source_ = std::make_unique<MqttSource>(r.File->Sources.front());
        binder_ = std::make_unique<Binder>(panel_.Panel.get());
        binder_->Bind(*r.File, {{"mq", source_.get()}});
        ASSERT_TRUE(binder_->Problems().isEmpty()) << binder_->Problems().join('\n').toStdString();
        source_->Start();
    }

    bool tempIs(float v) const { return panel_.Temp->Value() == v; }
    bool staleShown(QWidget* w) const { return test::StaleShown(*binder_, w); }
    // Serves the panel's event loop and the plant's client until done() or ms.
    bool waitWithPlant(const std::function<bool()>& done, int ms = 3000) {
        return WaitUntil(
            [&] {
                plant_.Pump();
                return done();
            },
            ms);
    }

    test::LivePanel panel_;
    int port_ = 0;
    Broker broker_;
    Plant plant_;
    std::unique_ptr<MqttSource> source_;
    std::unique_ptr<Binder> binder_;
};

TEST_F(MqttIntegration, ValuesArriveThroughPointersAndBitFields) {
    publishPlant();
    bind();
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connecting);
    ASSERT_TRUE(WaitUntil([&] { return tempIs(-12.3f) && panel_.Set->Value() == 40.0f; }));
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connected);
    EXPECT_EQ(panel_.Flow->Value(), 70000.0f);
    EXPECT_EQ(panel_.Energy->Value(), 42.5f);
    EXPECT_TRUE(panel_.Lamp3->Checked());
    EXPECT_EQ(panel_.Word->StatusInt(), 2);
    EXPECT_FALSE(panel_.Pump->Checked());

    plant_.Publish("plant/status", "16");
    plant_.Publish("plant/boiler", R"({"temp": 457})");  // flow and energy miss: counted
    ASSERT_TRUE(WaitUntil([&] { return tempIs(45.7f) && !panel_.Lamp3->Checked(); }, 2000));
    EXPECT_EQ(panel_.Word->StatusInt(), 1);
    EXPECT_EQ(panel_.Flow->Value(), 70000.0f);
    EXPECT_TRUE(WaitUntil([&] { return source_->MalformedCount() == 2; }, 1000));
}

TEST_F(MqttIntegration, WriteBackIsPublishedToTheWriteTopics) {
    plant_.Subscribe("plant/+/set");
    publishPlant();
    bind();
    ASSERT_TRUE(WaitUntil([&] { return panel_.Set->Value() == 40.0f; }));
    ASSERT_EQ(source_->ConnectionState(), Source::State::Connected);
    test::Key(panel_.Set, QEvent::KeyPress, Qt::Key_Up);
    test::Key(panel_.Set, QEvent::KeyRelease, Qt::Key_Up);
    const float moved = panel_.Set->Value();
    ASSERT_GT(moved, 40.0f);
    test::Key(panel_.Pump, QEvent::KeyPress, Qt::Key_Space);
    test::Key(panel_.Pump, QEvent::KeyRelease, Qt::Key_Space);
    ASSERT_TRUE(panel_.Pump->Checked());

    ASSERT_TRUE(waitWithPlant([&] { return plant_.Received.size() >= 2; }));
    test::Serve(100);
    plant_.Pump(50);
    using Message = std::pair<QByteArray, QByteArray>;
    EXPECT_EQ(plant_.Received,
              (std::vector<Message>{
                  {"plant/setpoint/set",
                   QByteArray::number(double(moved), 'g', QLocale::FloatingPointShortest)},
                  {"plant/pump/set", "1"}}));

    // Not connected: refused at once, nothing queued for later.
    EXPECT_FALSE(source_->Write("temp", SourceValue::FromNumber(1.0)));  // no write_topic
    source_->Stop();
    EXPECT_FALSE(source_->Write("setpoint", SourceValue::FromNumber(1.0)));
}

TEST_F(MqttIntegration, MalformedPayloadsAreDroppedAndCounted) {
    publishPlant();
    bind();
    ASSERT_TRUE(WaitUntil([&] { return tempIs(-12.3f) && panel_.Lamp3->Checked(); }));
    const struct {
        const char* topic;
        const char* payload;
        int64_t malformedAfter;  // three bindings read plant/boiler
    } garbage[] = {
        {"plant/status", "hot", 1},
        {"plant/status", "nan", 2},
        {"plant/status", "", 3},
        {"plant/boiler", "{\"temp\": ", 6},
        {"plant/boiler", R"({"temp": "x", "flow/h": [], "energy": {"kWh": [1]}})", 9},
        {"plant/boiler", "\x01\x02\xff", 12},
    };
    for (const auto& g : garbage) {
        plant_.Publish(g.topic, g.payload);
        EXPECT_TRUE(WaitUntil([&] { return source_->MalformedCount() == g.malformedAfter; }, 2000))
            << g.payload << ": " << source_->MalformedCount();
    }
    EXPECT_EQ(panel_.Temp->Value(), -12.3f);
    EXPECT_TRUE(panel_.Lamp3->Checked());
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connected);
    plant_.Publish("plant/status", "8");
    plant_.Publish("plant/boiler", R"({"temp": 7, "flow/h": 5, "energy": {"kWh": [1, 2]}})");
    EXPECT_TRUE(WaitUntil([&] { return tempIs(0.7f) && panel_.Energy->Value() == 2.0f; }, 2000));
    EXPECT_EQ(source_->MalformedCount(), 12);
}

TEST_F(MqttIntegration, StaleWhileTheBrokerIsGoneAndRecoveryAfterItsRestart) {
    publishPlant();
    bind(400);
    ASSERT_TRUE(WaitUntil([&] { return tempIs(-12.3f); }));
    EXPECT_FALSE(staleShown(panel_.Temp));

    broker_.Stop();
    ASSERT_TRUE(WaitUntil([&] { return staleShown(panel_.Temp) && staleShown(panel_.Lamp3); }));
    EXPECT_TRUE(WaitUntil([&] { return source_->ConnectionState() != Source::State::Connected; }));
    EXPECT_TRUE(panel_.Temp->toolTip().startsWith("no data since "));
    EXPECT_FALSE(source_->Write("setpoint", SourceValue::FromNumber(1.0)));

    QString why;
    ASSERT_TRUE(broker_.Start(port_, &why)) << why.toStdString();
    Plant again;
    ASSERT_TRUE(again.Connect(port_));
    again.Publish("plant/boiler", R"({"temp": 250, "flow/h": 1, "energy": {"kWh": [0, 1]}})");
    again.Publish("plant/status", "8");
    ASSERT_TRUE(WaitUntil([&] { return tempIs(25.0f); }, 8000));
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connected);
    EXPECT_TRUE(
        WaitUntil([&] { return !staleShown(panel_.Temp) && !staleShown(panel_.Lamp3); }, 1000));
}

}  // namespace
}  // namespace kx::panel
