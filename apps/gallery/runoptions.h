#pragma once
// How kxgallery runs: as a window, or headless, rendering one PNG per page.
#include <QString>
#include <QStringList>

namespace kxgallery {

// The parts of the environment that decide whether a window can be shown.
struct DisplayEnvironment {
    QString display;         // DISPLAY
    QString waylandDisplay;  // WAYLAND_DISPLAY
    QString platform;        // QT_QPA_PLATFORM
};

struct RunOptions {
    bool screenshots = false;  // render the pages and exit instead of showing a window
    QString outDir;            // where the pages go (screenshots only)
    bool help = false;
    QString error;        // a usage error; empty when the arguments are fine
    QStringList unknown;  // arguments not recognised here (Qt may consume some)
};

// The default output directory when there is no display and none was given.
inline constexpr const char* kDefaultOutDir = "out";

DisplayEnvironment CurrentDisplayEnvironment();
// No X11 or Wayland display, or the offscreen platform requested.
bool IsHeadless(const DisplayEnvironment& env);

// Parses the arguments after the program name: "--screenshot DIR", "--screenshot=DIR",
// "-h"/"--help". Screenshots are also taken, into kDefaultOutDir, when the environment
// is headless. A missing or empty DIR is an error; other arguments are listed in
// `unknown` and left to the caller.
RunOptions ParseRunOptions(const QStringList& args, const DisplayEnvironment& env);

QString UsageText();

}  // namespace kxgallery
