#include "bindingsfile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <cmath>
#include <initializer_list>

namespace kx::panel {
namespace {

constexpr int kMaxStaleMs = 86400000;

// Collects errors and warnings while the checks below walk the document.
class Checker {
  public:
    QStringList Errors;
    QStringList Warnings;

    void Error(const QString& path, const QString& message) {
        if (Errors.size() < kMaxErrors) Errors << path + QStringLiteral(": ") + message;
    }
    void WarnUnknownKeys(const QJsonObject& o, const QString& path,
                         std::initializer_list<const char*> known) {
        for (auto it = o.begin(); it != o.end(); ++it) {
            bool found = false;
            for (const char* k : known)
                found = found || it.key() == QLatin1String(k);
            if (!found && Warnings.size() < kMaxErrors)
                Warnings << join(path, it.key()) + QStringLiteral(": unknown key, ignored");
        }
    }

    static QString join(const QString& path, const QString& key) {
        return path.isEmpty() ? key : path + QLatin1Char('.') + key;
    }

    // An integer lo..hi under key, or fallback when the key is absent.
    int Int(const QJsonObject& o, const QString& path, const char* key, int lo, int hi,
            int fallback) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) return fallback;
        const double d = v.toDouble(std::nan(""));
        if (!v.isDouble() || !(d >= lo && d <= hi) || d != std::floor(d)) {
            Error(join(path, QLatin1String(key)),
                  QStringLiteral("expected an integer %1..%2").arg(lo).arg(hi));
            return fallback;
        }
        return int(d);
    }
    uint32_t Uint32(const QJsonObject& o, const QString& path, const char* key, uint32_t fallback) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) return fallback;
        const double d = v.toDouble(std::nan(""));
        if (!v.isDouble() || !(d >= 0 && d <= 4294967295.0) || d != std::floor(d)) {
            Error(join(path, QLatin1String(key)),
                  QStringLiteral("expected an integer 0..4294967295"));
            return fallback;
        }
        return uint32_t(d);
    }
    double Number(const QJsonObject& o, const QString& path, const char* key, double fallback,
                  bool positive = false) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) return fallback;
        const double d = v.toDouble(std::nan(""));
        if (!v.isDouble() || !std::isfinite(d) || (positive && d <= 0)) {
            Error(join(path, QLatin1String(key)),
                  positive ? QStringLiteral("expected a finite number > 0")
                           : QStringLiteral("expected a finite number"));
            return fallback;
        }
        return d;
    }
    bool Bool(const QJsonObject& o, const QString& path, const char* key, bool fallback) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) return fallback;
        if (!v.isBool())
            Error(join(path, QLatin1String(key)), QStringLiteral("expected true or false"));
        return v.toBool(fallback);
    }
    // A string under key; required ones report their absence.
    QString String(const QJsonObject& o, const QString& path, const char* key, bool required,
                   const QString& fallback = {}) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) {
            if (required) Error(join(path, QLatin1String(key)), QStringLiteral("missing"));
            return fallback;
        }
        if (!v.isString() || v.toString().isEmpty()) {
            Error(join(path, QLatin1String(key)), QStringLiteral("expected a non-empty string"));
            return fallback;
        }
        return v.toString();
    }
    // One of names (returning its index), fallback when absent.
    int Choice(const QJsonObject& o, const QString& path, const char* key, const QStringList& names,
               int fallback) {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined()) return fallback;
        const int i = v.isString() ? int(names.indexOf(v.toString())) : -1;
        if (i < 0)
            Error(join(path, QLatin1String(key)),
                  QStringLiteral("expected one of ") + names.join(QStringLiteral(", ")));
        return i < 0 ? fallback : i;
    }
    QJsonObject Object(const QJsonValue& v, const QString& path) {
        if (!v.isObject()) Error(path, QStringLiteral("expected an object"));
        return v.toObject();
    }
};

void readSimulator(Checker& c, const QJsonObject& o, SourceConfig& s) {
    c.WarnUnknownKeys(o, s.Path, {"type", "rate_hz", "signals"});
    s.RateHz = c.Int(o, s.Path, "rate_hz", 1, 1000, 10);
    const QString path = Checker::join(s.Path, QStringLiteral("signals"));
    if (!o.contains(QLatin1String("signals"))) c.Error(path, QStringLiteral("missing"));
    const QJsonObject signalsObj = c.Object(o.value(QLatin1String("signals")), path);
    static const QStringList waves = {QStringLiteral("sine"), QStringLiteral("ramp"),
                                      QStringLiteral("random_walk"), QStringLiteral("square"),
                                      QStringLiteral("constant")};
    for (auto it = signalsObj.begin(); it != signalsObj.end(); ++it) {
        const QString sp = Checker::join(path, it.key());
        const QJsonObject g = c.Object(it.value(), sp);
        c.WarnUnknownKeys(g, sp, {"wave", "period_s", "amplitude", "offset", "step", "seed"});
        SimSignal sig;
        if (!g.contains(QLatin1String("wave")))
            c.Error(Checker::join(sp, QStringLiteral("wave")), QStringLiteral("missing"));
        sig.Shape = Wave(c.Choice(g, sp, "wave", waves, 0));
        sig.PeriodS = c.Number(g, sp, "period_s", 10.0, true);
        sig.Amplitude = c.Number(g, sp, "amplitude", 1.0);
        sig.Offset = c.Number(g, sp, "offset", 0.0);
        const double step = std::fabs(sig.Amplitude) / 10.0;
        sig.Step = c.Number(g, sp, "step", step > 0 ? step : 0.1, true);
        sig.Seed = c.Uint32(g, sp, "seed", 1);
        s.Signals.insert(it.key(), sig);
    }
}

void readModbus(Checker& c, const QJsonObject& o, SourceConfig& s) {
    c.WarnUnknownKeys(o, s.Path, {"type", "host", "port", "unit_id", "poll_ms", "timeout_ms"});
    s.Host = c.String(o, s.Path, "host", true);
    s.Port = c.Int(o, s.Path, "port", 1, 65535, 502);
    s.UnitId = c.Int(o, s.Path, "unit_id", 0, 255, 1);
    s.PollMs = c.Int(o, s.Path, "poll_ms", 10, 3600000, 500);
    s.TimeoutMs = c.Int(o, s.Path, "timeout_ms", 10, 600000, 1000);
}

bool isJsonPointer(const QString& p) {
    static const QRegularExpression re(QStringLiteral("^(/([^~/]|~[01])*)*$"));
    return re.match(p).hasMatch();
}

void readMqtt(Checker& c, const QJsonObject& o, SourceConfig& s) {
    c.WarnUnknownKeys(o, s.Path, {"type", "host", "port", "client_id", "topics"});
    s.Host = c.String(o, s.Path, "host", true);
    s.Port = c.Int(o, s.Path, "port", 1, 65535, 1883);
    s.ClientId = c.String(o, s.Path, "client_id", false, QStringLiteral("kxpanel"));
    const QString path = Checker::join(s.Path, QStringLiteral("topics"));
    if (!o.contains(QLatin1String("topics"))) c.Error(path, QStringLiteral("missing"));
    const QJsonObject topics = c.Object(o.value(QLatin1String("topics")), path);
    for (auto it = topics.begin(); it != topics.end(); ++it) {
        const QString tp = Checker::join(path, it.key());
        MqttTopic t;
        if (it.value().isString() && !it.value().toString().isEmpty()) {
            t.Topic = it.value().toString();
        } else if (it.value().isObject()) {
            const QJsonObject to = it.value().toObject();
            c.WarnUnknownKeys(to, tp, {"topic", "pointer", "write_topic"});
            t.Topic = c.String(to, tp, "topic", true);
            t.WriteTopic = c.String(to, tp, "write_topic", false);
            const QJsonValue p = to.value(QLatin1String("pointer"));
            if (!p.isUndefined() && (!p.isString() || !isJsonPointer(p.toString())))
                c.Error(Checker::join(tp, QStringLiteral("pointer")),
                        QStringLiteral("expected a JSON pointer such as \"/value\""));
            t.Pointer = p.toString();
        } else {
            c.Error(tp, QStringLiteral("expected a topic string or an object"));
        }
        s.Topics.insert(it.key(), t);
    }
}

void readSources(Checker& c, const QJsonObject& root, BindingsFile& f) {
    if (!root.contains(QLatin1String("sources")))
        c.Error(QStringLiteral("sources"), QStringLiteral("missing"));
    const QJsonObject sources =
        c.Object(root.value(QLatin1String("sources")), QStringLiteral("sources"));
    static const QStringList types = {QStringLiteral("simulator"), QStringLiteral("modbus"),
                                      QStringLiteral("mqtt")};
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        SourceConfig s;
        s.Name = it.key();
        s.Path = Checker::join(QStringLiteral("sources"), it.key());
        const QJsonObject o = c.Object(it.value(), s.Path);
        if (!o.contains(QLatin1String("type"))) {
            c.Error(Checker::join(s.Path, QStringLiteral("type")), QStringLiteral("missing"));
            continue;
        }
        const int before = int(c.Errors.size());
        s.Kind = SourceConfig::Type(c.Choice(o, s.Path, "type", types, 0));
        if (c.Errors.size() != before) continue;
        if (s.Kind == SourceConfig::Type::Simulator) readSimulator(c, o, s);
        if (s.Kind == SourceConfig::Type::Modbus) readModbus(c, o, s);
        if (s.Kind == SourceConfig::Type::Mqtt) readMqtt(c, o, s);
        f.Sources.push_back(std::move(s));
    }
}

// "Widget.Property" or "Widget.Channel[n]".
bool readTarget(Checker& c, const QString& path, const QString& text, BindingConfig& b) {
    static const QRegularExpression re(QStringLiteral(
        "^([A-Za-z_][A-Za-z0-9_]*)\\.([A-Za-z_][A-Za-z0-9_]*)(?:\\[([0-9]{1,3})\\])?$"));
    const auto m = re.match(text);
    if (!m.hasMatch()) {
        c.Error(path, QStringLiteral("expected \"Widget.Property\" or \"Widget.Channel[n]\""));
        return false;
    }
    b.Widget = m.captured(1);
    b.Property = m.captured(2);
    if (m.capturedLength(3) > 0) {
        b.Channel = m.captured(3).toInt();
        if (b.Property != QLatin1String("Channel") || b.Channel < 1 || b.Channel > 8) {
            c.Error(path, QStringLiteral("only Channel[1] .. Channel[8] take an index"));
            return false;
        }
    }
    return true;
}

bool modbusAddress(const QString& a, bool* writable) {
    static const QRegularExpression re(
        QStringLiteral("^(holding|input|coil|discrete):([0-9]{1,5})$"));
    const auto m = re.match(a);
    if (!m.hasMatch() || m.captured(2).toInt() > 65535) return false;
    *writable = m.captured(1) == QLatin1String("holding") || m.captured(1) == QLatin1String("coil");
    return true;
}

void checkAddress(Checker& c, const QString& path, const SourceConfig& s, const BindingConfig& b) {
    const QString ap = Checker::join(path, QStringLiteral("address"));
    bool writable = true;
    switch (s.Kind) {
        case SourceConfig::Type::Simulator:
            if (!s.Signals.contains(b.Address))
                c.Error(ap,
                        QStringLiteral("no signal \"%1\" in source \"%2\"").arg(b.Address, s.Name));
            break;
        case SourceConfig::Type::Modbus:
            if (!modbusAddress(b.Address, &writable))
                c.Error(ap, QStringLiteral(
                                "expected holding:N, input:N, coil:N or discrete:N (N 0..65535)"));
            else if (b.Write && !writable)
                c.Error(Checker::join(path, QStringLiteral("write")),
                        QStringLiteral("input registers and discrete inputs are read-only"));
            break;
        case SourceConfig::Type::Mqtt:
            if (!s.Topics.contains(b.Address))
                c.Error(ap,
                        QStringLiteral("no topic \"%1\" in source \"%2\"").arg(b.Address, s.Name));
            else if (b.Write && s.Topics.value(b.Address).WriteTopic.isEmpty())
                c.Error(Checker::join(path, QStringLiteral("write")),
                        QStringLiteral("topic \"%1\" has no write_topic").arg(b.Address));
            break;
    }
}

void readScaling(Checker& c, const QJsonObject& o, const QString& path, Scaling& s) {
    static const QStringList types = {QStringLiteral("int16"), QStringLiteral("uint16"),
                                      QStringLiteral("int32"), QStringLiteral("uint32"),
                                      QStringLiteral("float32")};
    static const QStringList orders = {QStringLiteral("big"), QStringLiteral("little")};
    s.Factor = c.Number(o, path, "factor", 1.0);
    s.Offset = c.Number(o, path, "offset", 0.0);
    s.Type = RawType(c.Choice(o, path, "type", types, int(RawType::Uint16)));
    s.ByteOrder = Order(c.Choice(o, path, "byte_order", orders, 0));
    s.WordOrder = Order(c.Choice(o, path, "word_order", orders, 0));
    if (o.contains(QLatin1String("bit"))) {
        s.Bit = c.Int(o, path, "bit", 0, 31, 0);
        s.Bits = c.Int(o, path, "bits", 1, 32, 1);
        if (s.Bit + s.Bits > 32)
            c.Error(Checker::join(path, QStringLiteral("bits")),
                    QStringLiteral("bit + bits must not exceed 32"));
        if (s.Type == RawType::Float32)
            c.Error(Checker::join(path, QStringLiteral("bit")),
                    QStringLiteral("no bit field in a float32"));
    } else if (o.contains(QLatin1String("bits"))) {
        c.Error(Checker::join(path, QStringLiteral("bits")), QStringLiteral("needs \"bit\""));
    }
}

void readBinding(Checker& c, const QJsonValue& v, const QString& path, BindingsFile& f) {
    const QJsonObject o = c.Object(v, path);
    if (!v.isObject()) return;
    c.WarnUnknownKeys(o, path,
                      {"target", "source", "address", "factor", "offset", "type", "byte_order",
                       "word_order", "bit", "bits", "write", "stale_after_ms"});
    BindingConfig b;
    b.Path = path;
    const QString target = c.String(o, path, "target", true);
    if (!target.isEmpty()) readTarget(c, Checker::join(path, QStringLiteral("target")), target, b);
    b.Source = c.String(o, path, "source", true);
    b.Address = c.String(o, path, "address", true);
    readScaling(c, o, path, b.Scale);
    b.Write = c.Bool(o, path, "write", false);
    if (b.Write && b.Scale.HasBitField())
        c.Error(Checker::join(path, QStringLiteral("write")),
                QStringLiteral("no write-back through a bit field"));
    if (b.Write && b.Scale.Factor == 0.0)
        c.Error(Checker::join(path, QStringLiteral("factor")),
                QStringLiteral("write-back needs a factor other than 0"));
    b.StaleAfterMs = c.Int(o, path, "stale_after_ms", 0, kMaxStaleMs, f.StaleAfterMs);
    const SourceConfig* s = b.Source.isEmpty() ? nullptr : f.FindSource(b.Source);
    if (!b.Source.isEmpty() && !s)
        c.Error(Checker::join(path, QStringLiteral("source")),
                QStringLiteral("no source \"%1\"").arg(b.Source));
    if (s && !b.Address.isEmpty()) checkAddress(c, path, *s, b);
    f.Bindings.push_back(std::move(b));
}

}  // namespace

const SourceConfig* BindingsFile::FindSource(const QString& name) const {
    for (const auto& s : Sources)
        if (s.Name == name) return &s;
    return nullptr;
}

BindingsParseResult ParseBindings(const QByteArray& json) {
    BindingsParseResult r;
    QJsonParseError pe{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &pe);
    if (pe.error != QJsonParseError::NoError) {
        r.Errors << QStringLiteral("offset %1: %2").arg(pe.offset).arg(pe.errorString());
        return r;
    }
    if (!doc.isObject()) {
        r.Errors << QStringLiteral("(top level): expected an object");
        return r;
    }
    Checker c;
    BindingsFile f;
    const QJsonObject root = doc.object();
    c.WarnUnknownKeys(root, {}, {"sources", "bindings", "stale_after_ms", "alarm_log"});
    f.StaleAfterMs = c.Int(root, {}, "stale_after_ms", 0, kMaxStaleMs, 5000);
    f.AlarmLog = c.String(root, {}, "alarm_log", false);
    readSources(c, root, f);
    if (!root.contains(QLatin1String("bindings")))
        c.Error(QStringLiteral("bindings"), QStringLiteral("missing"));
    const QJsonValue bindings = root.value(QLatin1String("bindings"));
    if (!bindings.isUndefined() && !bindings.isArray())
        c.Error(QStringLiteral("bindings"), QStringLiteral("expected an array"));
    const QJsonArray list = bindings.toArray();
    for (qsizetype i = 0; i < list.size() && c.Errors.size() < kMaxErrors; ++i)
        readBinding(c, list.at(i), QStringLiteral("bindings[%1]").arg(i), f);
    r.Warnings = c.Warnings;
    r.Errors = c.Errors;
    if (r.Errors.isEmpty()) r.File = std::move(f);
    return r;
}

BindingsParseResult ReadBindingsFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        BindingsParseResult r;
        r.Errors << QStringLiteral("%1: cannot read: %2").arg(path, file.errorString());
        return r;
    }
    return ParseBindings(file.readAll());
}

}  // namespace kx::panel

namespace kx {
panel::BindingsParseResult KxPanelParseBindings(const QByteArray& json) {
    return panel::ParseBindings(json);
}
}  // namespace kx
