// The live-panel runner under load. BM_PanelThroughput is BM_Screen100 (100 round meters
// of 120 x 120 in a shown grid, 50 readings a second each) with the readings coming
// through the binder from 100 bound addresses of an in-process source instead of being
// set directly: one iteration is one simulated second, its CPU time the figure to hold
// against BM_Screen100's.
//
// BM_ModbusLatency: a register changed in a QModbusTcpServer on the loopback address, to
// the new value on a bound meter with the repaint served (poll 50 ms): 200 changes at
// random moments of the poll cycle; p50 and p99 in milliseconds as counters.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGridLayout>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "binder.h"
#include "bindingsfile.h"
#include "inprocesssource.h"
#include "kx/indicators/rmeter.h"
#include "quietblink.h"
#ifdef KX_PANEL_MODBUS
#include <QModbusTcpServer>
#include <QTcpServer>

#include "modbussource.h"
#endif

namespace kx::panel {
namespace {

BindingConfig valueBinding(int i, const QString& widget, const QString& source,
                           const QString& address) {
    BindingConfig b;
    b.Path = QStringLiteral("bindings[%1]").arg(i);
    b.Widget = widget;
    b.Property = QStringLiteral("Value");
    b.Source = source;
    b.Address = address;
    return b;
}

void BM_PanelThroughput(benchmark::State& state) {
    TQuietBlink quiet;
    auto window = std::make_unique<QWidget>();
    auto* grid = new QGridLayout(window.get());
    grid->setSpacing(2);
    grid->setContentsMargins(2, 2, 2, 2);
    BindingsFile file;
    QStringList addresses;
    std::vector<TKx270Meter*> meters;
    for (int i = 0; i < 100; ++i) {
        auto* c = new TKx270Meter;
        c->setObjectName(QStringLiteral("M%1").arg(i));
        c->SetKxAutoSize(false);
        c->SetBounds(0, 0, 120, 120);
        c->setFixedSize(120, 120);
        c->SetLimitUpper(1000.0f);
        c->SetLimitLower(-1000.0f);
        grid->addWidget(c, i / 10, i % 10);
        meters.push_back(c);
        addresses << QStringLiteral("v%1").arg(i);
        file.Bindings.push_back(valueBinding(i, c->objectName(), "in", addresses.back()));
    }
    InProcessSource source("in");
    Binder binder(window.get());
    binder.Bind(file, {{"in", &source}});
    source.Start();
    window->show();
    for (TKx270Meter* c : meters)
        c->Loaded();
    QApplication::processEvents();
    int64_t tick = 0;
    for (auto _ : state) {
        for (int round = 0; round < 50; ++round, ++tick) {
            for (int i = 0; i < 100; ++i) {
                const double t = double(tick) * 0.02 + double(i) * 0.37;
                source.Push(addresses[i], 50.0 + 35.0 * std::sin(t * 6.0));
            }
            QApplication::processEvents();
        }
    }
    state.counters["readings/s"] = 5000;
    if (binder.Applied() != tick * 100) state.SkipWithError("readings were lost");
    window.reset();
}
BENCHMARK(BM_PanelThroughput)->Unit(benchmark::kMillisecond);

#ifdef KX_PANEL_MODBUS
int freePort() {
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0)) return 0;
    return probe.serverPort();
}

// Serves events until done() or ms; the loop sleeps while nothing is due, as a panel's does.
template <typename F>
bool serveUntil(F done, int ms) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms) return false;
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void BM_ModbusLatency(benchmark::State& state) {
    TQuietBlink quiet;
    const int port = freePort();
    QModbusTcpServer server;
    QModbusDataUnitMap map;
    map.insert(QModbusDataUnit::HoldingRegisters,
               QModbusDataUnit(QModbusDataUnit::HoldingRegisters, 0, 10));
    server.setMap(map);
    server.setConnectionParameter(QModbusDevice::NetworkAddressParameter, "127.0.0.1");
    server.setConnectionParameter(QModbusDevice::NetworkPortParameter, port);
    server.setServerAddress(1);
    if (port == 0 || !server.connectDevice()) {
        state.SkipWithError("cannot start the Modbus server");
        return;
    }
    auto window = std::make_unique<QWidget>();
    auto* meter = new TKx270Meter(window.get());
    meter->setObjectName("M");
    meter->SignalSettings()->SetValueTo(1000.0f);
    SourceConfig config;
    config.Name = "plc";
    config.Kind = SourceConfig::Type::Modbus;
    config.Host = "127.0.0.1";
    config.Port = port;
    config.PollMs = 50;
    ModbusSource source(config);
    BindingsFile file;
    file.Bindings.push_back(valueBinding(0, "M", "plc", "holding:0"));
    Binder binder(window.get());
    binder.Bind(file, {{"plc", &source}});
    window->show();
    source.Start();
    server.setData(QModbusDataUnit::HoldingRegisters, 0, 1);
    if (!serveUntil([&] { return meter->Value() == 1.0f; }, 5000)) {
        state.SkipWithError("no first value");
        return;
    }
    std::mt19937 random(1);
    std::uniform_int_distribution<int> phase(0, 49);
    std::vector<double> ms;
    for (auto _ : state) {
        for (int i = 0; i < 200; ++i) {
            QEventLoop wait;  // a random moment of the poll cycle, serving events
            QTimer::singleShot(phase(random), &wait, &QEventLoop::quit);
            wait.exec();
            const auto v = quint16(2 + i % 900);
            QElapsedTimer t;
            t.start();
            server.setData(QModbusDataUnit::HoldingRegisters, 0, v);
            if (!serveUntil([&] { return meter->Value() == float(v); }, 2000)) {
                state.SkipWithError("a change did not arrive");
                return;
            }
            QApplication::processEvents();  // the repaint that puts it on the surface
            ms.push_back(double(t.nsecsElapsed()) / 1e6);
        }
    }
    std::sort(ms.begin(), ms.end());
    state.counters["p50_ms"] = ms[ms.size() / 2];
    state.counters["p99_ms"] = ms[ms.size() * 99 / 100];
    state.counters["max_ms"] = ms.back();
}
BENCHMARK(BM_ModbusLatency)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
#endif

}  // namespace
}  // namespace kx::panel
