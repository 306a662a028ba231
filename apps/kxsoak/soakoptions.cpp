#include "soakoptions.h"

#include <QCommandLineParser>

namespace kxsoak {

namespace {

void AddOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "Feeds every component a long stream of readings and property changes and "
        "reports the resident-memory growth.");
    parser.addHelpOption();
    parser.addOptions({
        {"readings", "Readings per component (default 1000).", "N", "1000"},
        {"churn-every", "One property change every N readings (default 16).", "N", "16"},
        {"seed", "Seed of the random stream (default 1).", "S", "1"},
        {"component", "Soak only this class (e.g. TKxBar).", "NAME"},
        {"report", "Print readings, resident size and heap in use per component."},
        {"list", "Print the class names of the catalogue, one per line, and stop."},
        {"max-growth-kib",
         "Fail when a component's heap grows by K KiB or more per 10^6 readings (median quarter).",
         "K"},
    });
}

}  // namespace

std::optional<TSoakOptions> ParseSoakOptions(const QStringList& arguments, QString& error) {
    QCommandLineParser parser;
    AddOptions(parser);
    parser.process(arguments);  // exits on --help or an unknown option
    TSoakOptions options;
    bool ok = false;
    options.Readings = parser.value("readings").toLongLong(&ok);
    if (!ok || options.Readings < 10) {
        error = "--readings needs a whole number of at least 10";
        return std::nullopt;
    }
    options.ChurnEvery = parser.value("churn-every").toLongLong(&ok);
    if (!ok || options.ChurnEvery < 1) {
        error = "--churn-every needs a whole number of at least 1";
        return std::nullopt;
    }
    options.Seed = parser.value("seed").toULongLong(&ok);
    if (!ok) {
        error = "--seed needs a non-negative whole number";
        return std::nullopt;
    }
    options.Component = parser.value("component");
    options.Report = parser.isSet("report");
    options.List = parser.isSet("list");
    if (parser.isSet("max-growth-kib")) {
        const double limit = parser.value("max-growth-kib").toDouble(&ok);
        if (!ok || !(limit >= 0)) {
            error = "--max-growth-kib needs a non-negative number";
            return std::nullopt;
        }
        options.MaxGrowthKiB = limit;
    }
    return options;
}

}  // namespace kxsoak
