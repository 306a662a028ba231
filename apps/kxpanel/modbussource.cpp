#include "modbussource.h"

#include <QModbusReply>
#include <QModbusTcpClient>
#include <QRegularExpression>
#include <algorithm>

namespace kx::panel {
namespace {

constexpr int kMaxRegisters = 125;  // per read request, as the protocol allows
constexpr int kMaxBits = 2000;
constexpr int kTimeoutsForDrop = 3;
constexpr int kLastAddress = 65535;

bool isBits(QModbusDataUnit::RegisterType t) {
    return t == QModbusDataUnit::Coils || t == QModbusDataUnit::DiscreteInputs;
}

// Errors of the connection itself; the state machine handles those, they are no garbage.
bool isConnectionError(QModbusDevice::Error e) {
    return e == QModbusDevice::ConnectionError || e == QModbusDevice::ReplyAbortedError ||
           e == QModbusDevice::TimeoutError;
}

// Bits travel packed in bytes: a read of 3 coils answers with 8, the rest padding.
bool sizeFits(const ModbusSource::Block& block, qsizetype count) {
    if (!isBits(block.Table)) return count == block.Count;
    return count >= block.Count && count <= (block.Count + 7) / 8 * 8;
}

}  // namespace

ModbusSource::ModbusSource(const SourceConfig& config, QObject* parent)
    : Source(config.Name, parent),
      client_(new QModbusTcpClient(this)),
      unitId_(config.UnitId),
      pollMs_(config.PollMs),
      malformed_(QStringLiteral("source \"%1\": malformed Modbus replies").arg(config.Name)) {
    client_->setConnectionParameter(QModbusDevice::NetworkAddressParameter, config.Host);
    client_->setConnectionParameter(QModbusDevice::NetworkPortParameter, config.Port);
    client_->setTimeout(config.TimeoutMs);
    client_->setNumberOfRetries(0);  // a poll round is a retry of its own
    connect(client_, &QModbusDevice::stateChanged, this, &ModbusSource::onDeviceState);
    pollTimer_.setInterval(pollMs_);
    connect(&pollTimer_, &QTimer::timeout, this, &ModbusSource::poll);
    reconnectTimer_.setSingleShot(true);
    connect(&reconnectTimer_, &QTimer::timeout, this, &ModbusSource::connectNow);
}

ModbusSource::~ModbusSource() {
    Stop();
}

std::optional<ModbusSource::Address> ModbusSource::ParseAddress(const QString& address) {
    static const QRegularExpression re(
        QStringLiteral("^(holding|input|coil|discrete):([0-9]{1,5})$"));
    const QRegularExpressionMatch m = re.match(address);
    if (!m.hasMatch()) return std::nullopt;
    const int index = m.captured(2).toInt();
    if (index > kLastAddress) return std::nullopt;
    const QString table = m.captured(1);
    Address a;
    a.Index = index;
    if (table == QLatin1String("holding"))
        a.Table = QModbusDataUnit::HoldingRegisters;
    else if (table == QLatin1String("input"))
        a.Table = QModbusDataUnit::InputRegisters;
    else if (table == QLatin1String("coil"))
        a.Table = QModbusDataUnit::Coils;
    else
        a.Table = QModbusDataUnit::DiscreteInputs;
    return a;
}

std::vector<ModbusSource::Block> ModbusSource::GroupBlocks(
    QModbusDataUnit::RegisterType table, std::vector<std::pair<int, int>> ranges) {
    std::sort(ranges.begin(), ranges.end());
    const int maxCount = isBits(table) ? kMaxBits : kMaxRegisters;
    std::vector<Block> blocks;
    for (const auto& [start, count] : ranges) {
        const int end = std::min(start + count, kLastAddress + 1);
        if (!blocks.empty()) {
            Block& last = blocks.back();
            const int lastEnd = last.Start + last.Count;
            if (start <= lastEnd && end - last.Start <= maxCount) {
                last.Count = std::max(lastEnd, end) - last.Start;
                continue;
            }
        }
        blocks.push_back({table, start, end - start});
    }
    return blocks;
}

void ModbusSource::rebuildBlocks() {
    blocks_.clear();
    for (auto table : {QModbusDataUnit::HoldingRegisters, QModbusDataUnit::InputRegisters,
                       QModbusDataUnit::Coils, QModbusDataUnit::DiscreteInputs}) {
        std::vector<std::pair<int, int>> ranges;
        for (const Watched& w : watched_)
            if (w.At.Table == table) ranges.emplace_back(w.At.Index, w.Words);
        const std::vector<Block> b = GroupBlocks(table, std::move(ranges));
        blocks_.insert(blocks_.end(), b.begin(), b.end());
    }
}

void ModbusSource::Watch(const QString& address, int words) {
    const auto a = ParseAddress(address);
    if (!a) return;
    const int n = std::clamp(words, 1, 2);
    for (Watched& w : watched_) {
        if (w.Name != address) continue;
        w.Words = std::max(w.Words, n);
        rebuildBlocks();
        return;
    }
    watched_.push_back({address, *a, n});
    rebuildBlocks();
}

bool ModbusSource::TakesWords(const QString& address) const {
    Q_UNUSED(address);
    return true;
}

void ModbusSource::Start() {
    if (running_) return;
    running_ = true;
    backoff_.Reset();
    connectNow();
}

void ModbusSource::Stop() {
    running_ = false;
    pollTimer_.stop();
    reconnectTimer_.stop();
    ++generation_;
    pending_ = 0;
    if (client_->state() != QModbusDevice::UnconnectedState) client_->disconnectDevice();
    setState(State::Stopped);
}

void ModbusSource::connectNow() {
    if (!running_) return;
    setState(State::Connecting);
    if (client_->state() == QModbusDevice::UnconnectedState && !client_->connectDevice())
        scheduleReconnect();
}

void ModbusSource::onDeviceState(QModbusDevice::State state) {
    if (!running_) return;
    if (state == QModbusDevice::ConnectedState) {
        backoff_.Reset();
        timeoutsInRow_ = 0;
        setState(State::Connected);
        pollTimer_.start();
        poll();
    } else if (state == QModbusDevice::UnconnectedState) {
        pollTimer_.stop();
        ++generation_;  // answers still on their way belong to the old connection
        pending_ = 0;
        scheduleReconnect();
    }
}

void ModbusSource::scheduleReconnect() {
    if (!running_ || reconnectTimer_.isActive()) return;
    setState(State::Unavailable);
    reconnectTimer_.start(backoff_.Next());
}

void ModbusSource::poll() {
    if (pending_ > 0 || client_->state() != QModbusDevice::ConnectedState) return;
    for (const Block& b : blocks_) {
        QModbusReply* reply =
            client_->sendReadRequest(QModbusDataUnit(b.Table, b.Start, quint16(b.Count)), unitId_);
        if (!reply) continue;
        if (reply->isFinished()) {
            reply->deleteLater();
            continue;
        }
        ++pending_;
        const int generation = generation_;
        connect(reply, &QModbusReply::finished, this,
                [this, reply, b, generation] { onRead(reply, b, generation); });
    }
}

void ModbusSource::onRead(QModbusReply* reply, const Block& block, int generation) {
    reply->deleteLater();
    if (generation != generation_) return;
    pending_ = std::max(0, pending_ - 1);
    const QModbusDevice::Error error = reply->error();
    if (error == QModbusDevice::TimeoutError && ++timeoutsInRow_ >= kTimeoutsForDrop) {
        // A server that stopped answering on an open socket: start over.
        client_->disconnectDevice();
        return;
    }
    if (isConnectionError(error)) return;
    timeoutsInRow_ = 0;
    const QModbusDataUnit unit = reply->result();
    if (error != QModbusDevice::NoError) {
        malformed_.Note(QStringLiteral("%1 at %2: %3")
                            .arg(int(block.Table))
                            .arg(block.Start)
                            .arg(reply->errorString()));
        return;
    }
    if (!sizeFits(block, unit.valueCount()) || unit.startAddress() != block.Start) {
        malformed_.Note(QStringLiteral("%1 values at %2, asked for %3 at %4")
                            .arg(unit.valueCount())
                            .arg(unit.startAddress())
                            .arg(block.Count)
                            .arg(block.Start));
        return;
    }
    const QList<quint16> values = unit.values();
    for (const Watched& w : watched_) {
        if (w.At.Table != block.Table || w.At.Index < block.Start ||
            w.At.Index >= block.Start + block.Count)
            continue;
        const int from = w.At.Index - block.Start;
        const int n = std::min(w.Words, block.Count - from);
        publish(w.Name, SourceValue::FromWords(std::vector<uint16_t>(values.begin() + from,
                                                                     values.begin() + from + n)));
    }
}

bool ModbusSource::Write(const QString& address, const SourceValue& value) {
    const auto a = ParseAddress(address);
    if (!a || client_->state() != QModbusDevice::ConnectedState) return false;
    if (!value.IsWords || value.Words.empty()) return false;
    QModbusDataUnit unit;
    if (a->Table == QModbusDataUnit::HoldingRegisters) {
        if (a->Index + int(value.Words.size()) - 1 > kLastAddress) return false;
        unit = QModbusDataUnit(a->Table, a->Index,
                               QList<quint16>(value.Words.begin(), value.Words.end()));
    } else if (a->Table == QModbusDataUnit::Coils) {
        unit = QModbusDataUnit(a->Table, a->Index, QList<quint16>{quint16(value.Words[0] ? 1 : 0)});
    } else {
        return false;
    }
    QModbusReply* reply = client_->sendWriteRequest(unit, unitId_);
    if (!reply) return false;
    if (reply->isFinished()) {
        reply->deleteLater();
        return reply->error() == QModbusDevice::NoError;
    }
    connect(reply, &QModbusReply::finished, this,
            [this, reply, address] { onWrite(reply, address); });
    return true;
}

void ModbusSource::onWrite(QModbusReply* reply, const QString& address) {
    reply->deleteLater();
    if (reply->error() != QModbusDevice::NoError) emit writeFailed(address, reply->errorString());
}

}  // namespace kx::panel
