#include "runoptions.h"

#include <QtGlobal>

namespace kxgallery {

DisplayEnvironment CurrentDisplayEnvironment() {
    return DisplayEnvironment{qEnvironmentVariable("DISPLAY"),
                              qEnvironmentVariable("WAYLAND_DISPLAY"),
                              qEnvironmentVariable("QT_QPA_PLATFORM")};
}

bool IsHeadless(const DisplayEnvironment& env) {
    if (env.platform == QLatin1String("offscreen")) return true;
    return env.display.isEmpty() && env.waylandDisplay.isEmpty();
}

RunOptions ParseRunOptions(const QStringList& args, const DisplayEnvironment& env) {
    static const QString kScreenshot = QStringLiteral("--screenshot");
    RunOptions o;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        if (a == QLatin1String("-h") || a == QLatin1String("--help")) {
            o.help = true;
        } else if (a == kScreenshot) {
            if (i + 1 >= args.size() || args[i + 1].isEmpty()) {
                o.error = QStringLiteral("--screenshot needs a directory");
                return o;
            }
            o.screenshots = true;
            o.outDir = args[++i];
        } else if (a.startsWith(kScreenshot + QLatin1Char('='))) {
            o.outDir = a.mid(kScreenshot.size() + 1);
            if (o.outDir.isEmpty()) {
                o.error = QStringLiteral("--screenshot needs a directory");
                return o;
            }
            o.screenshots = true;
        } else {
            o.unknown << a;
        }
    }
    if (!o.screenshots && IsHeadless(env)) {
        o.screenshots = true;
        o.outDir = QString::fromLatin1(kDefaultOutDir);
    }
    return o;
}

QString UsageText() {
    return QStringLiteral(
        "Usage: kxgallery [--screenshot DIR]\n"
        "  Shows the instrument gallery in a window.\n"
        "  --screenshot DIR  render every page to DIR/gallery-<page>.png and exit\n"
        "                    (also done, into out/, when there is no display)\n");
}

}  // namespace kxgallery
