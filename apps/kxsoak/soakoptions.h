#pragma once
// The command line of kxsoak.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace kxsoak {

struct TSoakOptions {
    int64_t Readings = 1000;  // per component
    // One property change every ChurnEvery readings (and a range reshape every six times
    // that): the long soak raises it so that readings, not relayouts, dominate.
    int64_t ChurnEvery = 16;
    uint64_t Seed = 1;
    QString Component;  // empty: every component of the catalogue
    bool Report = false;
    bool List = false;                   // print the catalogue's class names and stop
    std::optional<double> MaxGrowthKiB;  // per 10^6 readings; unset: not checked
};

// Parses the arguments (argv[0] first). Bad values give an error text in error and
// nullopt; --help prints the usage and exits.
std::optional<TSoakOptions> ParseSoakOptions(const QStringList& arguments, QString& error);

}  // namespace kxsoak
