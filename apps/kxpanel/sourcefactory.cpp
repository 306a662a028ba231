#include "sourcefactory.h"

#include "simulatorsource.h"

namespace kx::panel {

std::unique_ptr<Source> CreateSource(const SourceConfig& config, QString* error) {
    switch (config.Kind) {
        case SourceConfig::Type::Simulator:
            return std::make_unique<SimulatorSource>(config.Name, config.RateHz, config.Signals);
        case SourceConfig::Type::Modbus:
        case SourceConfig::Type::Mqtt:
            break;
    }
    if (error) {
        const char* type = config.Kind == SourceConfig::Type::Modbus ? "modbus" : "mqtt";
        *error = QStringLiteral("%1: type \"%2\" is not available in this build")
                     .arg(config.Path, QLatin1String(type));
    }
    return nullptr;
}

}  // namespace kx::panel
