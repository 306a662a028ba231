// The Modbus TCP source against a QModbusTcpServer on the loopback address in this
// process: values through scaling and bit fields onto the panel, write-back reaching the
// server, exceptions counted, the stale state while the server is gone and recovery
// after it returns. Real time: every wait is bounded by a deadline of a few seconds.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QModbusTcpServer>
#include <cstring>

#include "binder.h"
#include "bindingsfile.h"
#include "kx/host/clock.h"
#include "livepanel.h"
#include "modbussource.h"
#include "staleoverlay.h"

namespace kx::panel {
namespace {

using Block = ModbusSource::Block;
using test::WaitUntil;
constexpr auto kHolding = QModbusDataUnit::HoldingRegisters;
constexpr auto kInput = QModbusDataUnit::InputRegisters;
constexpr auto kCoils = QModbusDataUnit::Coils;
constexpr auto kDiscrete = QModbusDataUnit::DiscreteInputs;

TEST(ModbusAddress, ParsesTheFourTables) {
    const struct {
        const char* text;
        bool ok;
        QModbusDataUnit::RegisterType table;
        int index;
    } cases[] = {
        {"holding:0", true, kHolding, 0},      {"input:65535", true, kInput, 65535},
        {"coil:7", true, kCoils, 7},           {"discrete:012", true, kDiscrete, 12},
        {"holding:65536", false, kHolding, 0}, {"holding:", false, kHolding, 0},
        {"Holding:1", false, kHolding, 0},     {"holding:-1", false, kHolding, 0},
        {"holding:1 ", false, kHolding, 0},    {"register:1", false, kHolding, 0},
    };
    for (const auto& c : cases) {
        const auto a = ModbusSource::ParseAddress(QString::fromUtf8(c.text));
        ASSERT_EQ(bool(a), c.ok) << c.text;
        if (!a) continue;
        EXPECT_EQ(a->Table, c.table) << c.text;
        EXPECT_EQ(a->Index, c.index) << c.text;
    }
}

TEST(ModbusBlocks, GroupsContiguousRangesWithinTheRequestLimit) {
    const struct {
        const char* name;
        QModbusDataUnit::RegisterType table;
        std::vector<std::pair<int, int>> ranges;  // start, count
        std::vector<std::pair<int, int>> blocks;
    } cases[] = {
        {"none", kHolding, {}, {}},
        {"adjacent merge", kHolding, {{2, 1}, {0, 2}, {3, 2}}, {{0, 5}}},
        {"overlap merges", kHolding, {{10, 2}, {11, 1}}, {{10, 2}}},
        {"a gap splits", kHolding, {{0, 1}, {2, 1}}, {{0, 1}, {2, 1}}},
        {"125 registers at most", kInput, {{0, 2}, {2, 123}, {125, 1}}, {{0, 125}, {125, 1}}},
        {"2000 coils at most", kCoils, {{0, 1}, {1999, 1}, {2000, 1}}, {{0, 1}, {1999, 2}}},
        {"clipped at 65535", kHolding, {{65535, 2}}, {{65535, 1}}},
    };
    for (const auto& c : cases) {
        std::vector<Block> expected;
        for (const auto& [start, count] : c.blocks)
            expected.push_back({c.table, start, count});
        EXPECT_EQ(ModbusSource::GroupBlocks(c.table, c.ranges), expected) << c.name;
    }
}

class ModbusIntegration : public ::testing::Test {
  protected:
    void SetUp() override {
        SetClock(nullptr);  // polls, timeouts and the stale state run in real time here
        port_ = test::FreePort();
        ASSERT_GT(port_, 0);
        ASSERT_TRUE(startServer());
    }

    void TearDown() override {
        binder_.reset();
        source_.reset();
        stopServer();
    }

    // Closes the server's connections and lets their disconnections and deferred deletions
    // run before the server goes: Qt's server frees a connection's buffer only when that
    // connection's socket is deleted.
    void stopServer() {
        if (!server_) return;
        server_->disconnectDevice();
        WaitUntil([] { return false; }, 200);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        server_.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    bool startServer() {
        server_ = std::make_unique<QModbusTcpServer>();
        QModbusDataUnitMap map;
        for (auto t : {kHolding, kInput, kCoils, kDiscrete})
            map.insert(t, QModbusDataUnit(t, 0, 100));
        server_->setMap(map);
        server_->setConnectionParameter(QModbusDevice::NetworkAddressParameter, "127.0.0.1");
        server_->setConnectionParameter(QModbusDevice::NetworkPortParameter, port_);
        server_->setServerAddress(1);
        return server_->connectDevice();
    }

    void set(QModbusDataUnit::RegisterType t, int address, uint16_t v) {
        ASSERT_TRUE(server_->setData(t, quint16(address), v));
    }
    int get(QModbusDataUnit::RegisterType t, int address) {
        quint16 v = 0;
        return server_ && server_->data(t, quint16(address), &v) ? v : -1;
    }

    // The plant as the PLC holds it: -12.3 degrees as int16 tenths, 70000 l/h as uint32
    // low word first, 42.5 kWh as float32, status word 0x28 (bit 3 set, bits 4..5 = 2).
    void fillPlant() {
        set(kHolding, 0, uint16_t(int16_t(-123)));
        set(kHolding, 1, 70000 & 0xFFFF);
        set(kHolding, 2, 70000 >> 16);
        float energy = 42.5f;
        uint32_t bits = 0;
        std::memcpy(&bits, &energy, 4);
        set(kInput, 10, uint16_t(bits >> 16));
        set(kInput, 11, uint16_t(bits & 0xFFFF));
        set(kHolding, 5, 0x28);
        set(kHolding, 20, 400);  // setpoint 40.0
        set(kDiscrete, 2, 1);
    }

    void bind(int staleMs = 5000, const QByteArray& extra = {}) {
        const QByteArray json = QStringLiteral(R"({ "stale_after_ms": %1,
            "sources": { "plc": { "type": "modbus", "host": "127.0.0.1", "port": %2,
                                  "unit_id": 1, "poll_ms": 50, "timeout_ms": 500 } },
            "bindings": [
              { "target": "Temp.Value", "source": "plc", "address": "holding:0",
                "type": "int16", "factor": 0.1 },
              { "target": "Flow.Value", "source": "plc", "address": "holding:1",
                "type": "uint32", "word_order": "little" },
              { "target": "Energy.Value", "source": "plc", "address": "input:10",
                "type": "float32" },
              { "target": "Lamp3.Checked", "source": "plc", "address": "holding:5", "bit": 3 },
              { "target": "Word.StatusInt", "source": "plc", "address": "holding:5",
                "bit": 4, "bits": 2 },
              { "target": "Alarm.Checked", "source": "plc", "address": "discrete:2" },
              { "target": "Set.Value", "source": "plc", "address": "holding:20",
                "type": "int16", "factor": 0.1, "write": true },
              { "target": "Pump.Checked", "source": "plc", "address": "coil:3", "write": true }
              %3 ] })")
                                    .arg(staleMs)
                                    .arg(port_)
                                    .arg(QString::fromUtf8(extra))
                                    .toUtf8();
        const BindingsParseResult r = ParseBindings(json);
        ASSERT_TRUE(r.File) << r.Errors.join('\n').toStdString();
        source_ = std::make_unique<ModbusSource>(r.File->Sources.front());
        binder_ = std::make_unique<Binder>(panel_.Panel.get());
        binder_->Bind(*r.File, {{"plc", source_.get()}});
        ASSERT_TRUE(binder_->Problems().isEmpty()) << binder_->Problems().join('\n').toStdString();
        source_->Start();
    }

    bool tempIs(float v) const { return panel_.Temp->Value() == v; }
    bool staleShown(QWidget* w) const { return test::StaleShown(*binder_, w); }

    test::LivePanel panel_;
    int port_ = 0;
    std::unique_ptr<QModbusTcpServer> server_;
    std::unique_ptr<ModbusSource> source_;
    std::unique_ptr<Binder> binder_;
};

TEST_F(ModbusIntegration, ValuesArriveScaledWithBitFields) {
    fillPlant();
    bind();
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connecting);
    // Holding 0..2 in one request; 5 and 20 alone; the others one per table.
    EXPECT_EQ(source_->Blocks(), (std::vector<Block>{{kHolding, 0, 3},
                                                     {kHolding, 5, 1},
                                                     {kHolding, 20, 1},
                                                     {kInput, 10, 2},
                                                     {kCoils, 3, 1},
                                                     {kDiscrete, 2, 1}}));
    ASSERT_TRUE(WaitUntil([&] { return tempIs(-12.3f); }));
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connected);
    EXPECT_EQ(panel_.Flow->Value(), 70000.0f);
    EXPECT_EQ(panel_.Energy->Value(), 42.5f);
    EXPECT_TRUE(panel_.Lamp3->Checked());
    EXPECT_EQ(panel_.Word->StatusInt(), 2);
    EXPECT_TRUE(panel_.Alarm->Checked());
    EXPECT_EQ(panel_.Set->Value(), 40.0f);
    EXPECT_FALSE(panel_.Pump->Checked());
    EXPECT_EQ(source_->MalformedCount(), 0);

    // A change on the server is on the panel within a few polls.
    set(kHolding, 5, 0x10);
    set(kHolding, 0, 457);
    ASSERT_TRUE(WaitUntil([&] { return tempIs(45.7f); }, 2000));
    EXPECT_FALSE(panel_.Lamp3->Checked());
    EXPECT_EQ(panel_.Word->StatusInt(), 1);
}

TEST_F(ModbusIntegration, WriteBackReachesTheServer) {
    fillPlant();
    bind();
    ASSERT_TRUE(WaitUntil([&] { return panel_.Set->Value() == 40.0f; }));
    test::Key(panel_.Set, QEvent::KeyPress, Qt::Key_Up);
    test::Key(panel_.Set, QEvent::KeyPress, Qt::Key_Up, true);
    test::Key(panel_.Set, QEvent::KeyRelease, Qt::Key_Up);
    const float moved = panel_.Set->Value();
    ASSERT_GT(moved, 40.0f);
    const int raw = int(std::lround(moved / 0.1));
    ASSERT_NE(raw, 400);
    EXPECT_TRUE(WaitUntil([&] { return get(kHolding, 20) == raw; }, 2000))
        << get(kHolding, 20) << " != " << raw;

    QStringList failed;
    QObject::connect(binder_.get(), &Binder::writeFailed, [&](const QString& m) { failed << m; });
    test::Key(panel_.Pump, QEvent::KeyPress, Qt::Key_Space);
    test::Key(panel_.Pump, QEvent::KeyRelease, Qt::Key_Space);
    ASSERT_TRUE(panel_.Pump->Checked());
    // A single-coil write travels as 0xFF00, which Qt's server keeps as it came.
    EXPECT_TRUE(WaitUntil([&] { return get(kCoils, 3) > 0; }, 2000))
        << failed.join('\n').toStdString();
    // The next polls read back what was written: the switch stays on, the dial stays put.
    test::Serve(200);
    EXPECT_TRUE(panel_.Pump->Checked());
    EXPECT_EQ(panel_.Set->Value(), float(raw * 0.1));
}

TEST_F(ModbusIntegration, ExceptionsAreCountedAndFailedWritesReported) {
    fillPlant();
    // Holding 150 is beyond the server's map: every poll of it is answered with an
    // exception, and the other blocks flow on.
    bind(5000, R"(, { "target": "Spare.Value", "source": "plc", "address": "holding:150" })");
    QStringList failed;
    QObject::connect(binder_.get(), &Binder::writeFailed, [&](const QString& m) { failed << m; });
    ASSERT_TRUE(WaitUntil([&] { return source_->MalformedCount() >= 3; }));
    EXPECT_EQ(panel_.Temp->Value(), -12.3f);
    set(kHolding, 0, 11);
    EXPECT_TRUE(WaitUntil([&] { return tempIs(1.1f); }, 2000));

    EXPECT_FALSE(source_->Write("input:10", SourceValue::FromWords({1})));  // read-only
    EXPECT_FALSE(source_->Write("discrete:2", SourceValue::FromWords({1})));
    EXPECT_FALSE(source_->Write("holding:x", SourceValue::FromWords({1})));
    EXPECT_FALSE(source_->Write("holding:1", SourceValue::FromWords({})));
    ASSERT_TRUE(source_->Write("holding:150", SourceValue::FromWords({1})));
    ASSERT_TRUE(WaitUntil([&] { return !failed.isEmpty(); }, 2000));
    EXPECT_TRUE(failed[0].startsWith("write to plc holding:150 failed: "))
        << failed[0].toStdString();
    test::Serve(300);
    EXPECT_EQ(failed.size(), 1);  // not retried
}

TEST_F(ModbusIntegration, StaleWhileTheServerIsGoneAndRecoveryAfterItsRestart) {
    fillPlant();
    bind(400);
    ASSERT_TRUE(WaitUntil([&] { return tempIs(-12.3f); }));
    EXPECT_FALSE(staleShown(panel_.Temp));

    stopServer();
    ASSERT_TRUE(WaitUntil([&] { return staleShown(panel_.Temp) && staleShown(panel_.Lamp3); }));
    EXPECT_NE(source_->ConnectionState(), Source::State::Connected);
    EXPECT_TRUE(panel_.Temp->toolTip().startsWith("no data since "))
        << panel_.Temp->toolTip().toStdString();
    EXPECT_EQ(panel_.Temp->Value(), -12.3f);  // the last value stays under the hatch
    EXPECT_FALSE(source_->Write("holding:20", SourceValue::FromWords({1})));

    ASSERT_TRUE(startServer());
    fillPlant();
    set(kHolding, 0, 250);
    ASSERT_TRUE(WaitUntil([&] { return tempIs(25.0f); }, 8000));
    EXPECT_EQ(source_->ConnectionState(), Source::State::Connected);
    EXPECT_TRUE(
        WaitUntil([&] { return !staleShown(panel_.Temp) && !staleShown(panel_.Lamp3); }, 1000));
    EXPECT_EQ(source_->MalformedCount(), 0);
}

}  // namespace
}  // namespace kx::panel
