#pragma once
// An MQTT source (libmosquitto): subscribes to the watched topics of one broker and
// publishes the numbers their messages carry; write-back publishes the new value, as
// plain text, to the topic's write_topic (QoS 0, not retained).
//
// Threading: the client runs on the GUI thread, driven by the Qt event loop: socket
// notifiers on mosquitto_socket() call mosquitto_loop() without waiting when the broker
// sent something or when the client has something to send, and a one-second timer keeps
// the MQTT keep-alive. Every callback thus runs on the GUI thread, with no locks and no
// thread to stop; a host name is resolved with QHostInfo first, so that connecting never
// blocks.
//
// Payloads: a topic without pointer carries a plain number ("21.5", surrounding
// whitespace allowed); with a pointer, a JSON document whose value at the pointer (RFC
// 6901) is a number (true and false read as 1 and 0). Anything else (not a number, not
// JSON, a pointer that names nothing or a string, NaN or infinity) is dropped, counted
// (MalformedCount) and logged at most once a minute. Topic filters with + and # match as
// MQTT defines.
//
// Connection: as for Modbus (reconnectbackoff.h): Connecting, Connected once the broker
// accepted the client and the subscriptions are sent, Unavailable between attempts after
// a failure, a refusal or a drop, with 0.5 s doubling up to 10 s between them.
//
// Write(): false at once when not connected, for a topic name without write_topic or an
// unknown one, and when the client cannot queue the message. Never retried.
#include <QHostInfo>
#include <QMap>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>
#include <optional>

#include "bindingsfile.h"
#include "reconnectbackoff.h"
#include "source.h"
#include "throttledlog.h"

struct mosquitto;
struct mosquitto_message;

namespace kx::panel {

class MqttSource : public Source {
    Q_OBJECT
  public:
    explicit MqttSource(const SourceConfig& config, QObject* parent = nullptr);
    ~MqttSource() override;

    void Watch(const QString& address, int words) override;
    void Start() override;
    void Stop() override;
    bool Write(const QString& address, const SourceValue& value) override;

    int64_t MalformedCount() const { return malformed_.Count(); }

    // libmosquitto's global set-up, once per process however often called; every
    // MqttSource calls it, and so must other users of the library in the same process.
    static void InitLibrary();
    // The number a payload carries; empty pointer: a plain number.
    static std::optional<double> ParsePayload(const QByteArray& payload, const QString& pointer);

  private:
    static void onConnectCb(mosquitto* m, void* self, int rc);
    static void onDisconnectCb(mosquitto* m, void* self, int rc);
    static void onMessageCb(mosquitto* m, void* self, const mosquitto_message* msg);

    void connectNow();
    void onLookedUp(const QHostInfo& info);
    void connectTo(const QString& ip);
    void onConnected(int rc);
    void onMessage(const QByteArray& topic, const QByteArray& payload);
    void service();
    void syncNotifiers();
    void connectionLost();

    QString host_;
    int port_;
    QMap<QString, MqttTopic> topics_;
    QMap<QString, MqttTopic> watched_;
    mosquitto* mosq_ = nullptr;
    std::unique_ptr<QSocketNotifier> reader_;
    std::unique_ptr<QSocketNotifier> writer_;
    QTimer keepAlive_;
    QTimer reconnectTimer_;
    ReconnectBackoff backoff_;
    ThrottledLog malformed_;
    int lookupId_ = -1;
    bool running_ = false;
    bool inLoop_ = false;
};

}  // namespace kx::panel
