// The bindings file: what a valid file gives, the error for each kind of mistake with its
// JSON path, warnings for unknown keys, and no crash on hostile input.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <random>

#include "bindingsfile.h"

namespace kx::panel {
namespace {

// A valid file; the cases below each break one thing in it.
QByteArray validFile() {
    return R"({
      "stale_after_ms": 3000,
      "alarm_log": "alarms.csv",
      "sources": {
        "sim": { "type": "simulator", "rate_hz": 20,
                 "signals": { "p": { "wave": "sine", "period_s": 4, "amplitude": 2 },
                              "w": { "wave": "random_walk", "seed": 9 } } },
        "plc": { "type": "modbus", "host": "10.0.0.5", "port": 1502, "unit_id": 3 },
        "mq": { "type": "mqtt", "host": "localhost",
                "topics": { "t": { "topic": "a/b", "pointer": "/x/0", "write_topic": "a/b/set" },
                            "n": "plain" } }
      },
      "bindings": [
        { "target": "Boiler.Value", "source": "sim", "address": "p" },
        { "target": "Lamp3.Checked", "source": "plc", "address": "holding:10", "bit": 3 },
        { "target": "Flow.Value", "source": "plc", "address": "input:4", "type": "float32",
          "word_order": "little", "factor": 3.6, "offset": -1 },
        { "target": "Set.Value", "source": "plc", "address": "holding:20", "type": "int16",
          "write": true, "stale_after_ms": 0 },
        { "target": "Trend1.Channel[2]", "source": "mq", "address": "t", "write": true }
      ]
    })";
}

QByteArray replaced(const char* from, const char* to) {
    QByteArray f = validFile();
    const qsizetype at = f.indexOf(from);
    EXPECT_GE(at, 0) << from;
    return f.replace(at, qsizetype(qstrlen(from)), to);
}

TEST(BindingsFile, ValidFileGivesEverything) {
    const BindingsParseResult r = ParseBindings(validFile());
    ASSERT_TRUE(r.File) << r.Errors.join('\n').toStdString();
    EXPECT_TRUE(r.Errors.isEmpty());
    EXPECT_TRUE(r.Warnings.isEmpty());
    const BindingsFile& f = *r.File;
    EXPECT_EQ(f.StaleAfterMs, 3000);
    EXPECT_EQ(f.AlarmLog, "alarms.csv");
    ASSERT_EQ(f.Sources.size(), 3u);
    const SourceConfig* sim = f.FindSource("sim");
    ASSERT_TRUE(sim);
    EXPECT_EQ(sim->RateHz, 20);
    EXPECT_EQ(sim->Signals.value("p").Shape, Wave::Sine);
    EXPECT_EQ(sim->Signals.value("p").PeriodS, 4.0);
    EXPECT_EQ(sim->Signals.value("w").Seed, 9u);
    const SourceConfig* plc = f.FindSource("plc");
    EXPECT_EQ(plc->Kind, SourceConfig::Type::Modbus);
    EXPECT_EQ(plc->Port, 1502);
    EXPECT_EQ(plc->UnitId, 3);
    EXPECT_EQ(plc->PollMs, 500);
    const SourceConfig* mq = f.FindSource("mq");
    EXPECT_EQ(mq->Port, 1883);
    EXPECT_EQ(mq->ClientId, "kxpanel");
    EXPECT_EQ(mq->Topics.value("t").Pointer, "/x/0");
    EXPECT_EQ(mq->Topics.value("n").Topic, "plain");
    ASSERT_EQ(f.Bindings.size(), 5u);
    EXPECT_EQ(f.Bindings[0].Widget, "Boiler");
    EXPECT_EQ(f.Bindings[0].Property, "Value");
    EXPECT_EQ(f.Bindings[0].StaleAfterMs, 3000);
    EXPECT_EQ(f.Bindings[1].Scale.Bit, 3);
    EXPECT_EQ(f.Bindings[1].Scale.Bits, 1);
    EXPECT_EQ(f.Bindings[2].Scale.Type, RawType::Float32);
    EXPECT_EQ(f.Bindings[2].Scale.WordOrder, Order::Little);
    EXPECT_EQ(f.Bindings[2].Scale.Factor, 3.6);
    EXPECT_EQ(f.Bindings[2].Scale.Offset, -1.0);
    EXPECT_TRUE(f.Bindings[3].Write);
    EXPECT_EQ(f.Bindings[3].StaleAfterMs, 0);
    EXPECT_EQ(f.Bindings[4].Property, "Channel");
    EXPECT_EQ(f.Bindings[4].Channel, 2);
    EXPECT_EQ(f.Bindings[4].Path, "bindings[4]");
}

TEST(BindingsFile, ErrorsNameTheirPath) {
    struct Case {
        const char* from;
        const char* to;
        const char* error;
    };
    const Case cases[] = {
        {"\"port\": 1502", "\"port\": 70000", "sources.plc.port: expected an integer 1..65535"},
        {"\"port\": 1502", "\"port\": 1.5", "sources.plc.port: expected an integer 1..65535"},
        {"\"port\": 1502", "\"port\": \"502\"", "sources.plc.port: expected an integer 1..65535"},
        {"\"unit_id\": 3", "\"unit_id\": 256", "sources.plc.unit_id: expected an integer 0..255"},
        {"\"host\": \"10.0.0.5\", ", "", "sources.plc.host: missing"},
        {"\"type\": \"modbus\"", "\"type\": \"profibus\"",
         "sources.plc.type: expected one of simulator, modbus, mqtt"},
        {"\"rate_hz\": 20", "\"rate_hz\": 0", "sources.sim.rate_hz: expected an integer 1..1000"},
        {"\"wave\": \"sine\"", "\"wave\": \"saw\"",
         "sources.sim.signals.p.wave: expected one of sine, ramp, random_walk, square, constant"},
        {"\"period_s\": 4", "\"period_s\": 0",
         "sources.sim.signals.p.period_s: expected a finite number > 0"},
        {"\"seed\": 9", "\"seed\": -1",
         "sources.sim.signals.w.seed: expected an integer 0..4294967295"},
        {"\"pointer\": \"/x/0\"", "\"pointer\": \"x\"",
         "sources.mq.topics.t.pointer: expected a JSON pointer such as \"/value\""},
        {"\"n\": \"plain\"", "\"n\": 5",
         "sources.mq.topics.n: expected a topic string or an object"},
        {"\"target\": \"Boiler.Value\"", "\"target\": \"Boiler\"",
         "bindings[0].target: expected \"Widget.Property\" or \"Widget.Channel[n]\""},
        {"\"Trend1.Channel[2]\"", "\"Trend1.Channel[9]\"",
         "bindings[4].target: only Channel[1] .. Channel[8] take an index"},
        {"\"source\": \"sim\", \"address\": \"p\"", "\"source\": \"pl\", \"address\": \"p\"",
         "bindings[0].source: no source \"pl\""},
        {"\"address\": \"p\"", "\"address\": \"q\"",
         "bindings[0].address: no signal \"q\" in source \"sim\""},
        {"\"holding:10\"", "\"holding:70000\"",
         "bindings[1].address: expected holding:N, input:N, coil:N or discrete:N (N 0..65535)"},
        {"\"holding:20\"", "\"input:20\"",
         "bindings[3].write: input registers and discrete inputs are read-only"},
        {"\"write_topic\": \"a/b/set\"", "\"write_topic\": \"\"",
         "sources.mq.topics.t.write_topic: expected a non-empty string"},
        {"\"bit\": 3", "\"bit\": 32", "bindings[1].bit: expected an integer 0..31"},
        {"\"bit\": 3", "\"bit\": 30, \"bits\": 3",
         "bindings[1].bits: bit + bits must not exceed 32"},
        {"\"bit\": 3", "\"bits\": 3", "bindings[1].bits: needs \"bit\""},
        {"\"type\": \"float32\"", "\"type\": \"float64\"",
         "bindings[2].type: expected one of int16, uint16, int32, uint32, float32"},
        {"\"word_order\": \"little\"", "\"word_order\": \"middle\"",
         "bindings[2].word_order: expected one of big, little"},
        {"\"factor\": 3.6", "\"factor\": \"3.6\"", "bindings[2].factor: expected a finite number"},
        {"\"write\": true, \"stale", "\"write\": 1, \"stale",
         "bindings[3].write: expected true or false"},
        {"\"type\": \"int16\",", "\"type\": \"int16\", \"bit\": 0,",
         "bindings[3].write: no write-back through a bit field"},
        {"\"stale_after_ms\": 0", "\"stale_after_ms\": 1e12",
         "bindings[3].stale_after_ms: expected an integer 0..86400000"},
        {"\"stale_after_ms\": 3000", "\"stale_after_ms\": null",
         "stale_after_ms: expected an integer 0..86400000"},
        {"\"alarm_log\": \"alarms.csv\"", "\"alarm_log\": []",
         "alarm_log: expected a non-empty string"},
    };
    for (const Case& c : cases) {
        const BindingsParseResult r = ParseBindings(replaced(c.from, c.to));
        EXPECT_FALSE(r.File) << c.error;
        EXPECT_TRUE(r.Errors.contains(QString::fromUtf8(c.error)))
            << "expected: " << c.error << "\ngot: " << r.Errors.join('\n').toStdString();
    }
}

TEST(BindingsFile, DocumentLevelErrors) {
    struct Case {
        QByteArray json;
        const char* error;
    };
    const Case cases[] = {
        {"[]", "(top level): expected an object"},
        {"{}", "sources: missing"},
        {"{\"sources\": {}}", "bindings: missing"},
        {"{\"sources\": [], \"bindings\": []}", "sources: expected an object"},
        {"{\"sources\": {}, \"bindings\": {}}", "bindings: expected an array"},
        {"{\"sources\": {}, \"bindings\": [5]}", "bindings[0]: expected an object"},
        {"{\"sources\": {\"s\": {}}, \"bindings\": []}", "sources.s.type: missing"},
        {"{\"sources\": {\"s\": {\"type\": \"simulator\"}}, \"bindings\": []}",
         "sources.s.signals: missing"},
        {"{\"sources\": {}, \"bindings\": [{}]}", "bindings[0].target: missing"},
    };
    for (const Case& c : cases) {
        const BindingsParseResult r = ParseBindings(c.json);
        EXPECT_FALSE(r.File);
        EXPECT_TRUE(r.Errors.contains(QString::fromUtf8(c.error)))
            << "expected: " << c.error << "\ngot: " << r.Errors.join('\n').toStdString();
    }
    const BindingsParseResult syntax = ParseBindings("{\"sources\": ");
    ASSERT_EQ(syntax.Errors.size(), 1);
    EXPECT_TRUE(syntax.Errors.first().startsWith("offset ")) << syntax.Errors.first().toStdString();
}

TEST(BindingsFile, UnknownKeysWarnWithTheirPath) {
    const BindingsParseResult r =
        ParseBindings(replaced("\"rate_hz\": 20", "\"rate_hz\": 20, \"rate\": 5")
                          .replace("\"bit\": 3", "\"bit\": 3, \"mask\": 1"));
    ASSERT_TRUE(r.File) << r.Errors.join('\n').toStdString();
    EXPECT_EQ(r.Warnings, (QStringList{"sources.sim.rate: unknown key, ignored",
                                       "bindings[1].mask: unknown key, ignored"}));
}

TEST(BindingsFile, ErrorListIsBounded) {
    QByteArray many = "{\"sources\": {}, \"bindings\": [";
    for (int i = 0; i < 1000; ++i)
        many += "{\"target\": 1},";
    many += "{}]}";
    const BindingsParseResult r = ParseBindings(many);
    EXPECT_FALSE(r.File);
    EXPECT_EQ(r.Errors.size(), kMaxErrors);
}

TEST(BindingsFile, ExampleFilesParse) {
    for (const char* name : {"sim", "modbus", "mqtt"}) {
        const BindingsParseResult r =
            ReadBindingsFile(QStringLiteral(KX_PANEL_EXAMPLES "/boiler-house.%1.json").arg(name));
        ASSERT_TRUE(r.File) << name << ": " << r.Errors.join('\n').toStdString();
        EXPECT_TRUE(r.Warnings.isEmpty()) << name << ": " << r.Warnings.join('\n').toStdString();
        EXPECT_EQ(r.File->Bindings.size(), 17u) << name;
    }
    EXPECT_FALSE(ReadBindingsFile("/nonexistent/x.json").File);
}

// Random and mutated documents for about two seconds: a result or errors, never both.
TEST(BindingsFile, SurvivesHostileInput) {
    std::mt19937 rng(20261126);
    const QByteArray seed = validFile();
    const QByteArray alphabet = "{}[]:,\"\\0123456789.eE+-truefalsnul /~abc \n\t";
    const QByteArray hostile[] = {
        QByteArray(5000, '[') + QByteArray(5000, ']'),
        "{\"sources\":{\"s\":{\"type\":\"simulator\",\"rate_hz\":1e309,\"signals\":{}}},"
        "\"bindings\":[]}",
        "{\"stale_after_ms\": -1e308, \"sources\": {}, \"bindings\": []}",
        "{\"sources\": {}, \"bindings\": [{\"target\": \"A.Channel[999]\", \"bit\": 1e40}]}",
        QByteArray("\xff\xfe\x00\x01", 4),
        "",
    };
    int runs = 0;
    const auto check = [&](const QByteArray& doc) {
        const BindingsParseResult r = KxPanelParseBindings(doc);
        ASSERT_NE(r.File.has_value(), !r.Errors.isEmpty());
        ++runs;
    };
    for (const QByteArray& h : hostile)
        check(h);
    QElapsedTimer clock;
    clock.start();
    // At least 100 documents however slow the machine, then as many as 2 s allow.
    while (runs < 100 || clock.elapsed() < 2000) {
        QByteArray doc = seed;
        const int edits = 1 + int(rng() % 8);
        for (int e = 0; e < edits && !doc.isEmpty(); ++e) {
            const qsizetype at = qsizetype(rng() % uint32_t(doc.size()));
            switch (rng() % 4) {
                case 0:
                    doc[at] = alphabet[qsizetype(rng() % uint32_t(alphabet.size()))];
                    break;
                case 1:
                    doc.remove(at, qsizetype(rng() % 16));
                    break;
                case 2:
                    doc.insert(at, doc.mid(qsizetype(rng() % uint32_t(doc.size())), 24));
                    break;
                default:
                    doc.insert(at, QByteArray::number(double(rng()) * 1e300));
            }
        }
        check(doc);
    }
}

}  // namespace
}  // namespace kx::panel
