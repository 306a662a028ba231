// kxpanel: runs a Designer panel of Kx instruments with live data, in a window or
// headless to a PNG or PDF file. See options.h for the command line.
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <cstdio>

#include "options.h"
#include "panelrunner.h"
#include "render.h"

using kx::panel::Options;

int main(int argc, char** argv) {
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    QString message;
    bool help = false;
    const auto options = Options::Parse(args, &message, &help);
    if (!options) {
        std::fputs(qPrintable(message), help ? stdout : stderr);
        return help ? 0 : 2;
    }
    // A render needs no display, wherever it runs.
    if (options->Render() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    kx::panel::PanelRunner runner;
    QString error;
    if (!runner.Load(options->Panel, options->Bindings, &error)) {
        std::fprintf(stderr, "kxpanel: %s\n", qPrintable(error));
        return 1;
    }
    for (const QString& m : runner.Messages())
        std::fprintf(stderr, "kxpanel: %s\n", qPrintable(m));
    QWidget* panel = runner.Panel();
    if (options->Render()) panel->setAttribute(Qt::WA_DontShowOnScreen);
    panel->show();
    runner.Start();
    if (!options->Render()) return app.exec();

    int code = 0;
    QTimer::singleShot(int(options->AfterSeconds * 1000), &app, [&] {
        if (!kx::panel::RenderPanel(*panel, options->RenderTo, &error)) {
            std::fprintf(stderr, "kxpanel: %s\n", qPrintable(error));
            code = 1;
        }
        app.quit();
    });
    app.exec();
    return code;
}
