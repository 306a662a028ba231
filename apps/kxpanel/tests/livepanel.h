#pragma once
// What the integration tests against real servers share: a small boiler panel built in
// code, a free loopback port, and bounded waiting on the event loop.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTcpServer>
#include <QWidget>
#include <functional>
#include <memory>

#include "binder.h"
#include "kx/adjusters/dial.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/indicators/rmeter.h"
#include "staleoverlay.h"

namespace kx::panel::test {

// A port nobody listens on right now (QModbusTcpServer and mosquitto cannot bind port 0).
// Whether the binder shows w's stale hatch now.
inline bool StaleShown(const Binder& binder, QWidget* w) {
    const StaleOverlay* o = binder.OverlayOf(w);
    return o && o->IsStale() && o->isVisible();
}

inline int FreePort() {
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0)) return 0;
    const int port = probe.serverPort();
    probe.close();
    return port;
}

// Serves events until done() holds or ms have passed; returns done().
inline bool WaitUntil(const std::function<bool()>& done, int ms = 5000) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms) return done();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

// Serves events for ms.
inline void Serve(int ms) {
    WaitUntil([] { return false; }, ms);
}

inline void Key(QWidget* w, QEvent::Type type, int k, bool autoRepeat = false) {
    QKeyEvent e(type, k, Qt::NoModifier, QString(), autoRepeat);
    QCoreApplication::sendEvent(w, &e);
}

// Temp -50..50, Flow 0..100000, Energy 0..100: meters; Lamp3 and Word: lamps; Set: a dial
// writing back; Pump: a switch writing back.
struct LivePanel {
    LivePanel() : Panel(std::make_unique<QWidget>()) {
        Panel->setObjectName("Panel");
        Temp = make<TKx270Meter>("Temp", QRect(0, 0, 120, 120));
        Temp->SignalSettings()->SetValueFrom(-50.0f);
        Temp->SignalSettings()->SetValueTo(50.0f);
        Flow = make<TKx270Meter>("Flow", QRect(130, 0, 120, 120));
        Flow->SignalSettings()->SetValueTo(100000.0f);
        Energy = make<TKx270Meter>("Energy", QRect(260, 0, 120, 120));
        Spare = make<TKx270Meter>("Spare", QRect(390, 0, 120, 120));
        Lamp3 = make<TKxLED>("Lamp3", QRect(0, 130, 80, 24));
        Word = make<TKxLED>("Word", QRect(90, 130, 80, 24));
        Alarm = make<TKxLED>("Alarm", QRect(180, 130, 80, 24));
        Set = make<TKxDial>("Set", QRect(0, 160, 120, 120));
        Pump = make<TKxToggleSwitch>("Pump", QRect(130, 160, 60, 60));
        Panel->setAttribute(Qt::WA_DontShowOnScreen);
        Panel->show();
    }

    template <typename T>
    T* make(const char* name, QRect geometry) {
        auto* w = new T(Panel.get());
        w->setObjectName(name);
        w->setGeometry(geometry);
        return w;
    }

    std::unique_ptr<QWidget> Panel;
    TKx270Meter* Temp;
    TKx270Meter* Flow;
    TKx270Meter* Energy;
    TKx270Meter* Spare;
    TKxLED* Lamp3;
    TKxLED* Word;
    TKxLED* Alarm;
    TKxDial* Set;
    TKxToggleSwitch* Pump;
};

}  // namespace kx::panel::test
