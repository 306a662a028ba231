#pragma once
// A Modbus TCP source (Qt SerialBus, QModbusTcpClient): polls the watched registers and
// coils of one server every poll_ms and publishes them as raw words, and writes holding
// registers and coils back.
//
// Polling: the watched addresses of each table (holding, input, coil, discrete) are
// grouped into blocks of contiguous addresses, at most 125 registers or 2000 bits each,
// one read request per block. A round starts only when the previous one has been
// answered, so a slow server is never flooded. Every watched address is published after
// every answered round, changed or not: the panel's stale state rests on it. A binding
// of a 32-bit type reads two registers from its address on; coils and discrete inputs
// read as one word each, 0 or 1.
//
// Connection: Start() connects in the background; the state goes Connecting, Connected,
// and Unavailable while waiting for the next attempt after a failure or a drop, with the
// delays of ReconnectBackoff (0.5 s doubling up to 10 s). Three requests in a row without
// an answer (timeout_ms each) count as a drop. Nothing here blocks the event loop.
//
// Bad replies: a Modbus exception, a protocol error or a reply with the wrong number of
// values is counted (MalformedCount) and logged at most once a minute; its round
// publishes nothing for that block.
//
// Write-back: holding registers take the binding's words (two registers for 32-bit
// types, already in its word order), coils take 0 or 1. Write() returns false at once
// when not connected, for input registers and discrete inputs, and for an unparsable
// address; a write the server rejects is reported through writeFailed. No write is ever
// retried.
#include <QModbusDataUnit>
#include <QModbusDevice>
#include <QTimer>
#include <optional>
#include <vector>

#include "bindingsfile.h"
#include "reconnectbackoff.h"
#include "source.h"
#include "throttledlog.h"

class QModbusReply;
class QModbusTcpClient;

namespace kx::panel {

class ModbusSource : public Source {
    Q_OBJECT
  public:
    struct Address {
        QModbusDataUnit::RegisterType Table = QModbusDataUnit::Invalid;
        int Index = 0;
    };
    struct Block {
        QModbusDataUnit::RegisterType Table = QModbusDataUnit::Invalid;
        int Start = 0;
        int Count = 0;
        bool operator==(const Block&) const = default;
    };

    explicit ModbusSource(const SourceConfig& config, QObject* parent = nullptr);
    ~ModbusSource() override;

    void Watch(const QString& address, int words) override;
    bool TakesWords(const QString& address) const override;
    void Start() override;
    void Stop() override;
    bool Write(const QString& address, const SourceValue& value) override;

    int64_t MalformedCount() const { return malformed_.Count(); }
    const std::vector<Block>& Blocks() const { return blocks_; }

    // "holding:12" and the like; nothing for anything else.
    static std::optional<Address> ParseAddress(const QString& address);
    // The read requests for watched ranges [Start, Start + Count) of one table.
    static std::vector<Block> GroupBlocks(QModbusDataUnit::RegisterType table,
                                          std::vector<std::pair<int, int>> ranges);

  private:
    struct Watched {
        QString Name;
        Address At;
        int Words = 1;
    };

    void connectNow();
    void onDeviceState(QModbusDevice::State state);
    void scheduleReconnect();
    void poll();
    void onRead(QModbusReply* reply, const Block& block, int generation);
    void onWrite(QModbusReply* reply, const QString& address);
    void rebuildBlocks();

    QModbusTcpClient* client_;
    int unitId_;
    int pollMs_;
    std::vector<Watched> watched_;
    std::vector<Block> blocks_;
    QTimer pollTimer_;
    QTimer reconnectTimer_;
    ReconnectBackoff backoff_;
    ThrottledLog malformed_;
    bool running_ = false;
    int pending_ = 0;
    int generation_ = 0;
    int timeoutsInRow_ = 0;
};

}  // namespace kx::panel
