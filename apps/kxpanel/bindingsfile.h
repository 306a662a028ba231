#pragma once
// The bindings file of a live panel: which sources feed it and which component property
// shows which value. JSON, read with QJsonDocument. A complete file:
//
//   {
//     "stale_after_ms": 3000,
//     "alarm_log": "alarms.csv",
//     "sources": {
//       "sim": { "type": "simulator", "rate_hz": 20,
//                "signals": {
//                  "pressure": { "wave": "sine", "period_s": 20, "amplitude": 2, "offset": 9 },
//                  "level":    { "wave": "random_walk", "amplitude": 30, "offset": 50,
//                                "step": 1.5, "seed": 7 },
//                  "status":   { "wave": "ramp", "period_s": 16, "amplitude": 16 },
//                  "setpoint": { "wave": "constant", "offset": 60 } } },
//       "plc": { "type": "modbus", "host": "10.0.0.5", "port": 502, "unit_id": 1,
//                "poll_ms": 200, "timeout_ms": 1000 },
//       "mq":  { "type": "mqtt", "host": "127.0.0.1", "port": 1883, "client_id": "kxpanel",
//                "topics": { "temp": { "topic": "plant/boiler", "pointer": "/temp" },
//                            "valve": { "topic": "plant/valve", "write_topic": "plant/valve/set" },
//                            "flow": "plant/flow" } }
//     },
//     "bindings": [
//       { "target": "Boiler.Value", "source": "sim", "address": "pressure" },
//       { "target": "Lamp3.Checked", "source": "plc", "address": "holding:10", "bit": 3 },
//       { "target": "Flow.Value", "source": "plc", "address": "input:4", "type": "float32",
//         "word_order": "little", "factor": 3.6 },
//       { "target": "Setpoint.Value", "source": "plc", "address": "holding:20",
//         "type": "int16", "factor": 0.1, "write": true, "stale_after_ms": 0 },
//       { "target": "Trend1.Channel[2]", "source": "mq", "address": "temp" }
//     ]
//   }
//
// Top level:
//   sources         object, required: source name -> source (below)
//   bindings        array, required: the bindings (below), in order
//   stale_after_ms  integer 0..86400000, default 5000: the default of the bindings
//   alarm_log       string: CSV file that limit and overflow events are appended to
// Sources, by "type":
//   simulator  rate_hz 1..1000 (default 10): values per second; signals (required): name ->
//              { wave: sine | ramp | random_walk | square | constant, period_s > 0
//              (default 10), amplitude (default 1), offset (default 0), step > 0 (random
//              walk: largest step per sample, default amplitude / 10), seed 0..4294967295
//              (random walk, default 1) }. sine: offset + amplitude * sin; ramp: offset up
//              to offset + amplitude, then back; square: offset + amplitude for the first
//              half period, offset - amplitude for the second; random_walk: starts at offset,
//              stays within offset +- amplitude; constant: offset until written.
//   modbus     host (required), port 1..65535 (502), unit_id 0..255 (1), poll_ms 10..3600000
//              (500), timeout_ms 10..600000 (1000). Addresses: "holding:N", "input:N",
//              "coil:N", "discrete:N" with N 0..65535; write-back to holding and coil only.
//   mqtt       host (required), port 1..65535 (1883), client_id (default "kxpanel"),
//              topics (required): name -> "topic" (plain number payload) or { topic,
//              pointer: a JSON pointer ("/a/0/b") into a JSON payload, write_topic: where
//              write-back publishes }. Addresses are topic names.
//   Modbus and MQTT are read and checked completely; a build without Qt SerialBus or
//   libmosquitto reports the missing one when the panel starts (sourcefactory.h).
// Bindings:
//   target          "Widget.Property" (Value, StatusInt, Checked, any writable property of
//                   a numeric or bool type) or "Widget.Channel[n]", a trend channel (1..8)
//   source          a source's name; address: as the source type says
//   factor, offset  value = raw * factor + offset (defaults 1, 0; finite)
//   type            int16 | uint16 | int32 | uint32 | float32 (default uint16): how raw
//                   words read; 32-bit types take two registers. Ignored for numbers.
//   byte_order      big | little (default big): the bytes in each word
//   word_order      big | little (default big): big puts the high word first
//   bit, bits       bit 0..31 and bits 1..32 (default 1; bit + bits <= 32): take that field
//                   of the raw integer before scaling (numbers: truncated toward zero)
//   write           bool (default false): the operator's changes are written back, once per
//                   finished change (adjusters: OnValueChanged; binary controls: a status
//                   change they made). Not with bit fields.
//   stale_after_ms  integer 0..86400000: overrides the top level; 0 never goes stale
//
// Errors name their JSON path ("bindings[3].address: no signal \"x\" in source \"sim\"",
// "sources.plc.port: expected an integer 1..65535"). A file with errors gives no result;
// at most kMaxErrors are listed. Unknown keys give warnings with their path. Any input,
// however hostile (deep nesting, huge numbers, wrong types), gives a result or errors,
// never both, and never throws. Widgets and properties are checked against the panel when
// it starts (binder.h), not here.
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

#include "scaling.h"

namespace kx::panel {

enum class Wave { Sine, Ramp, RandomWalk, Square, Constant };

struct SimSignal {
    Wave Shape = Wave::Sine;
    double PeriodS = 10.0;
    double Amplitude = 1.0;
    double Offset = 0.0;
    double Step = 0.1;
    uint32_t Seed = 1;
};

struct MqttTopic {
    QString Topic;
    QString Pointer;  // empty: the payload is a plain number
    QString WriteTopic;
};

struct SourceConfig {
    enum class Type { Simulator, Modbus, Mqtt };
    QString Name;
    QString Path;  // "sources.plc"
    Type Kind = Type::Simulator;
    // simulator
    int RateHz = 10;
    QMap<QString, SimSignal> Signals;
    // modbus and mqtt
    QString Host;
    int Port = 0;
    int UnitId = 1;
    int PollMs = 500;
    int TimeoutMs = 1000;
    QString ClientId;
    QMap<QString, MqttTopic> Topics;
};

struct BindingConfig {
    QString Path;  // "bindings[3]"
    QString Widget;
    QString Property;
    int Channel = 0;  // 1..8 for "Channel[n]", else 0
    QString Source;
    QString Address;
    Scaling Scale;
    bool Write = false;
    int StaleAfterMs = 5000;
};

struct BindingsFile {
    std::vector<SourceConfig> Sources;
    std::vector<BindingConfig> Bindings;
    QString AlarmLog;
    int StaleAfterMs = 5000;
    const SourceConfig* FindSource(const QString& name) const;
};

struct BindingsParseResult {
    std::optional<BindingsFile> File;  // set exactly when Errors is empty
    QStringList Errors;
    QStringList Warnings;
};

constexpr int kMaxErrors = 50;

BindingsParseResult ParseBindings(const QByteArray& json);
// Reads and parses a file; an unreadable file is one error naming it.
BindingsParseResult ReadBindingsFile(const QString& path);

}  // namespace kx::panel

namespace kx {
// The parser's entry point for fuzzing: needs no QApplication, never throws.
panel::BindingsParseResult KxPanelParseBindings(const QByteArray& json);
}  // namespace kx
