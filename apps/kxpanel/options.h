#pragma once
// The command line: kxpanel PANEL.ui [--bind BINDINGS.json] [--render OUT.png|OUT.pdf
// [--after SECONDS]]. Without --render the panel opens in a window; with it the runner
// works headless for SECONDS (default 0: the first values only, 0..86400, fractions
// allowed), writes the file and exits. --after without --render is an error.
#include <QString>
#include <QStringList>
#include <optional>

namespace kx::panel {

struct Options {
    QString Panel;
    QString Bindings;
    QString RenderTo;
    double AfterSeconds = 0.0;
    bool Render() const { return !RenderTo.isEmpty(); }

    // arguments include the program name first, as QCoreApplication::arguments() has it.
    // No value and a message (usage included) for a bad command line; --help gives no
    // value and the usage as the message with *help set.
    static std::optional<Options> Parse(const QStringList& arguments, QString* message,
                                        bool* help = nullptr);
    static QString Usage();
};

}  // namespace kx::panel
