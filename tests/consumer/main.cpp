// Builds a meter through the installed headers and library and checks a reading.
#include <kx/indicators/rmeter.h>
#include <QApplication>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    kx::TKx270Meter meter;
    meter.SignalSettings()->SetValueTo(16.0f);
    meter.Loaded();
    meter.SetValue(12.5f);
    const bool ok = meter.Value() == 12.5f && meter.PPT() == 781;
    std::printf("consumer: value %g, ppt %d: %s\n", double(meter.Value()), meter.PPT(),
                ok ? "ok" : "wrong");
    return ok ? 0 : 1;
}
