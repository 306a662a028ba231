// kxcanvas SCRIPT OUT.png: replays a drawing script onto a bitmap and saves it (the
// format follows the file name's suffix). SCRIPT "-" reads standard input; --help lists
// the operations.
// Exit codes: 0 success, 1 script error (reported as SCRIPT:LINE: message),
// 2 usage error or a file that cannot be read or written.
#include <QFile>
#include <QGuiApplication>
#include <cstdio>

#include "kx/drawing/canvasscript.h"

namespace {

void printLine(std::FILE* f, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), f);
    std::fputc('\n', f);
}

void printError(const QString& text) {
    printLine(stderr, text);
}

void printHelp() {
    printLine(stdout, QStringLiteral("usage: kxcanvas SCRIPT OUT.png\n\noperations:"));
    for (const kx::TScriptOperation& op : kx::CanvasScriptOperations())
        printLine(stdout, QStringLiteral("  %1 %2").arg(op.Name, op.Usage));
}

}  // namespace

int main(int argc, char** argv) {
    // Fonts need a platform plugin; a headless run must not need a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 2 &&
        (args[1] == QLatin1String("--help") || args[1] == QLatin1String("-h"))) {
        printHelp();
        return 0;
    }
    if (args.size() != 3 || (args[1].startsWith(u'-') && args[1] != QLatin1String("-"))) {
        printError(
            QStringLiteral("usage: kxcanvas SCRIPT OUT.png (kxcanvas --help lists the "
                           "operations)"));
        return 2;
    }
    const QString scriptPath = args[1], outPath = args[2];
    QFile file(scriptPath);
    const bool opened = scriptPath == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly)
                                                         : file.open(QIODevice::ReadOnly);
    if (!opened) {
        printError(QStringLiteral("%1: cannot read: %2").arg(scriptPath, file.errorString()));
        return 2;
    }
    const QString script = QString::fromUtf8(file.readAll());

    std::unique_ptr<kx::TBitmap> bitmap;
    const kx::TScriptResult result = kx::RunCanvasScript(script, bitmap);
    if (!result.Ok) {
        if (result.Line > 0)
            printError(QStringLiteral("%1:%2: %3")
                           .arg(scriptPath, QString::number(result.Line), result.Message));
        else
            printError(QStringLiteral("%1: %2").arg(scriptPath, result.Message));
        return 1;
    }
    if (!bitmap->SaveToFile(outPath)) {
        printError(QStringLiteral("%1: cannot write the picture").arg(outPath));
        return 2;
    }
    return 0;
}
