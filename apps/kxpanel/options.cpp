#include "options.h"

#include <QCommandLineParser>
#include <cmath>

namespace kx::panel {

QString Options::Usage() {
    return QStringLiteral(
        "usage: kxpanel PANEL.ui [--bind BINDINGS.json] [--render OUT.png|OUT.pdf --after "
        "SECONDS]\n"
        "  --bind FILE      bind the panel's components to live sources (JSON)\n"
        "  --render FILE    run headless, then write the panel as PNG or PDF and exit\n"
        "  --after SECONDS  how long to run before rendering (default 0)\n");
}

std::optional<Options> Options::Parse(const QStringList& arguments, QString* message, bool* help) {
    if (help) *help = false;
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption bind(QStringLiteral("bind"), QString(), QStringLiteral("file"));
    const QCommandLineOption render(QStringLiteral("render"), QString(), QStringLiteral("file"));
    const QCommandLineOption after(QStringLiteral("after"), QString(), QStringLiteral("seconds"));
    const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOptions({bind, render, after, helpOption});
    const auto fail = [&](const QString& why) -> std::optional<Options> {
        if (message) *message = why + QLatin1Char('\n') + Usage();
        return std::nullopt;
    };
    if (!parser.parse(arguments)) return fail(parser.errorText());
    if (parser.isSet(helpOption)) {
        if (help) *help = true;
        if (message) *message = Usage();
        return std::nullopt;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1) return fail(QStringLiteral("expected one panel file"));
    Options o;
    o.Panel = positional.first();
    o.Bindings = parser.value(bind);
    o.RenderTo = parser.value(render);
    if (parser.isSet(render) && o.RenderTo.isEmpty())
        return fail(QStringLiteral("--render needs a file"));
    if (parser.isSet(after)) {
        if (!o.Render()) return fail(QStringLiteral("--after needs --render"));
        bool ok = false;
        o.AfterSeconds = parser.value(after).toDouble(&ok);
        if (!ok || !(o.AfterSeconds >= 0 && o.AfterSeconds <= 86400))
            return fail(QStringLiteral("--after: expected seconds 0..86400"));
    }
    return o;
}

}  // namespace kx::panel
