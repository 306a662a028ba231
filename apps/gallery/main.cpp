// kxgallery: the instrument gallery. Shows every component of the library on one tab
// per palette page, driven by a simulated plant; with --screenshot DIR, or when there is
// no display, renders the pages to PNG files instead and exits.
#include <QApplication>
#include <QDir>
#include <QStyleFactory>
#include <QTextStream>
#include <cstdio>

#include "gallerywindow.h"
#include "pages.h"
#include "runoptions.h"
#include "screenshots.h"

using namespace kxgallery;

namespace {

QStringList argumentsOf(int argc, char** argv) {
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

}  // namespace

int main(int argc, char** argv) {
    QTextStream out(stdout);
    QTextStream err(stderr);
    const RunOptions options =
        ParseRunOptions(argumentsOf(argc, argv), CurrentDisplayEnvironment());
    if (!options.error.isEmpty()) {
        err << "kxgallery: " << options.error << "\n" << UsageText();
        return 2;
    }
    if (options.help) {
        out << UsageText();
        return 0;
    }
    // The platform must be chosen before the application exists.
    if (options.screenshots && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    // Qt has taken its own options (-platform, -style, ...) out of argv by now.
    const QStringList leftover = ParseRunOptions(argumentsOf(argc, argv), {}).unknown;
    if (!leftover.isEmpty()) {
        err << "kxgallery: unknown argument " << leftover.first() << "\n" << UsageText();
        return 2;
    }

    SetGalleryOutputDir(options.screenshots ? options.outDir : QStringLiteral("out"));
    QDir().mkpath(GalleryOutputDir());
    if (options.screenshots) {
        // A fixed style keeps the pictures the same on every machine.
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        GalleryWindow window;
        return RunScreenshots(window, options.outDir, out, err);
    }
    GalleryWindow window;
    window.resize(kScreenshotSize);
    window.show();
    window.StartSimulation();
    return app.exec();
}
