#include "mqttsource.h"

#include <mosquitto.h>

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <cmath>
#include <cstdlib>

#include "jsonpointer.h"

namespace kx::panel {
namespace {

constexpr int kKeepAliveS = 30;
constexpr int kServiceMs = 1000;

// A printable excerpt of a payload for the log.
QString excerpt(const QByteArray& payload) {
    QString s = QString::fromUtf8(payload.left(48)).simplified();
    if (payload.size() > 48) s += QStringLiteral("...");
    return s;
}

template <typename T>
void dropLater(std::unique_ptr<T>& p) {
    if (!p) return;
    // The notifier may be the one whose signal is being served.
    p->setEnabled(false);
    p.release()->deleteLater();
}

}  // namespace

// Cleaned up when the process exits.
void MqttSource::InitLibrary() {
    static const bool done = [] {
        mosquitto_lib_init();
        std::atexit([] { mosquitto_lib_cleanup(); });
        return true;
    }();
    Q_UNUSED(done);
}

MqttSource::MqttSource(const SourceConfig& config, QObject* parent)
    : Source(config.Name, parent),
      host_(config.Host),
      port_(config.Port),
      topics_(config.Topics),
      malformed_(QStringLiteral("source \"%1\": malformed MQTT payloads").arg(config.Name)) {
    InitLibrary();
    const QByteArray id = config.ClientId.toUtf8();
    mosq_ = mosquitto_new(id.isEmpty() ? nullptr : id.constData(), true, this);
    if (mosq_) {
        mosquitto_connect_callback_set(mosq_, &MqttSource::onConnectCb);
        mosquitto_disconnect_callback_set(mosq_, &MqttSource::onDisconnectCb);
        mosquitto_message_callback_set(mosq_, &MqttSource::onMessageCb);
    } else {
        qWarning("kxpanel: source \"%s\": cannot create an MQTT client", qPrintable(Name()));
    }
    keepAlive_.setInterval(kServiceMs);
    connect(&keepAlive_, &QTimer::timeout, this, &MqttSource::service);
    reconnectTimer_.setSingleShot(true);
    connect(&reconnectTimer_, &QTimer::timeout, this, &MqttSource::connectNow);
}

MqttSource::~MqttSource() {
    // Deleted here, not later: no event loop may come to serve a deferred delete.
    reader_.reset();
    writer_.reset();
    Stop();
    if (mosq_) mosquitto_destroy(mosq_);
}

void MqttSource::Watch(const QString& address, int words) {
    Q_UNUSED(words);
    const auto it = topics_.constFind(address);
    if (it == topics_.constEnd() || watched_.contains(address)) return;
    watched_.insert(address, it.value());
    if (ConnectionState() == State::Connected) {
        mosquitto_subscribe(mosq_, nullptr, it.value().Topic.toUtf8().constData(), 0);
        syncNotifiers();
    }
}

void MqttSource::Start() {
    if (running_ || !mosq_) {
        if (!mosq_) setState(State::Unavailable);
        return;
    }
    running_ = true;
    backoff_.Reset();
    keepAlive_.start();
    connectNow();
}

void MqttSource::Stop() {
    const bool was = running_;
    running_ = false;
    reconnectTimer_.stop();
    keepAlive_.stop();
    if (lookupId_ >= 0) QHostInfo::abortHostLookup(lookupId_);
    lookupId_ = -1;
    if (was && mosq_ && mosquitto_socket(mosq_) >= 0) mosquitto_disconnect(mosq_);
    dropLater(reader_);
    dropLater(writer_);
    setState(State::Stopped);
}

void MqttSource::connectNow() {
    if (!running_) return;
    setState(State::Connecting);
    QHostAddress literal;
    if (literal.setAddress(host_)) {
        connectTo(host_);
        return;
    }
    lookupId_ = QHostInfo::lookupHost(host_, this, &MqttSource::onLookedUp);
}

void MqttSource::onLookedUp(const QHostInfo& info) {
    lookupId_ = -1;
    if (!running_) return;
    if (info.error() != QHostInfo::NoError || info.addresses().isEmpty()) {
        connectionLost();
        return;
    }
    connectTo(info.addresses().constFirst().toString());
}

void MqttSource::connectTo(const QString& ip) {
    const int rc = mosquitto_connect_async(mosq_, ip.toUtf8().constData(), port_, kKeepAliveS);
    if (rc != MOSQ_ERR_SUCCESS) {
        connectionLost();
        return;
    }
    syncNotifiers();
}

void MqttSource::connectionLost() {
    dropLater(reader_);
    dropLater(writer_);
    if (!running_ || reconnectTimer_.isActive()) return;
    setState(State::Unavailable);
    reconnectTimer_.start(backoff_.Next());
}

void MqttSource::service() {
    if (!running_ || inLoop_ || mosquitto_socket(mosq_) < 0) return;
    inLoop_ = true;
    const int rc = mosquitto_loop(mosq_, 0, 1);
    inLoop_ = false;
    if (rc != MOSQ_ERR_SUCCESS)
        connectionLost();
    else
        syncNotifiers();
}

void MqttSource::syncNotifiers() {
    const int fd = running_ && mosq_ ? mosquitto_socket(mosq_) : -1;
    if (fd < 0) {
        dropLater(reader_);
        dropLater(writer_);
        return;
    }
    if (!reader_ || reader_->socket() != fd) {
        dropLater(reader_);
        dropLater(writer_);
        reader_ = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        writer_ = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
        connect(reader_.get(), &QSocketNotifier::activated, this, &MqttSource::service);
        connect(writer_.get(), &QSocketNotifier::activated, this, &MqttSource::service);
    }
    writer_->setEnabled(mosquitto_want_write(mosq_));
}

void MqttSource::onConnectCb(mosquitto*, void* self, int rc) {
    static_cast<MqttSource*>(self)->onConnected(rc);
}

void MqttSource::onDisconnectCb(mosquitto*, void* self, int) {
    static_cast<MqttSource*>(self)->connectionLost();
}

void MqttSource::onMessageCb(mosquitto*, void* self, const mosquitto_message* msg) {
    if (!msg || !msg->topic) return;
    const QByteArray payload(static_cast<const char*>(msg->payload), msg->payloadlen);
    static_cast<MqttSource*>(self)->onMessage(QByteArray(msg->topic), payload);
}

void MqttSource::onConnected(int rc) {
    if (!running_) return;
    if (rc != 0) {
        qWarning("kxpanel: source \"%s\": the broker refused the connection: %s",
                 qPrintable(Name()), mosquitto_connack_string(rc));
        connectionLost();
        return;
    }
    backoff_.Reset();
    for (const MqttTopic& t : watched_)
        mosquitto_subscribe(mosq_, nullptr, t.Topic.toUtf8().constData(), 0);
    setState(State::Connected);
}

void MqttSource::onMessage(const QByteArray& topic, const QByteArray& payload) {
    for (auto it = watched_.constBegin(); it != watched_.constEnd(); ++it) {
        bool match = false;
        const QByteArray filter = it.value().Topic.toUtf8();
        if (mosquitto_topic_matches_sub(filter.constData(), topic.constData(), &match) !=
                MOSQ_ERR_SUCCESS ||
            !match)
            continue;
        const auto v = ParsePayload(payload, it.value().Pointer);
        if (v)
            publish(it.key(), SourceValue::FromNumber(*v));
        else
            malformed_.Note(QString::fromUtf8(topic) + QStringLiteral(": ") + excerpt(payload));
    }
}

bool MqttSource::Write(const QString& address, const SourceValue& value) {
    if (!mosq_ || ConnectionState() != State::Connected) return false;
    const QString topic = topics_.value(address).WriteTopic;
    if (topic.isEmpty()) return false;
    double number = value.Number;
    if (value.IsWords) {
        if (value.Words.empty()) return false;
        number = value.Words[0];
    }
    if (!std::isfinite(number)) return false;
    const QByteArray payload = QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
    const int rc = mosquitto_publish(mosq_, nullptr, topic.toUtf8().constData(),
                                     int(payload.size()), payload.constData(), 0, false);
    syncNotifiers();
    return rc == MOSQ_ERR_SUCCESS;
}

std::optional<double> MqttSource::ParsePayload(const QByteArray& payload, const QString& pointer) {
    if (pointer.isEmpty()) {
        bool ok = false;
        const double v = payload.trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(v)) return std::nullopt;
        return v;
    }
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(payload, &error);
    if (error.error != QJsonParseError::NoError) return std::nullopt;
    const QJsonValue root = doc.isObject() ? QJsonValue(doc.object()) : QJsonValue(doc.array());
    const auto v = ResolveJsonPointer(root, pointer);
    if (!v) return std::nullopt;
    if (v->isBool()) return v->toBool() ? 1.0 : 0.0;
    if (!v->isDouble() || !std::isfinite(v->toDouble())) return std::nullopt;
    return v->toDouble();
}

}  // namespace kx::panel
