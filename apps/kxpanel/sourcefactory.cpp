#include "sourcefactory.h"

#include "simulatorsource.h"
#ifdef KX_PANEL_MODBUS
#include "modbussource.h"
#endif
#ifdef KX_PANEL_MQTT
#include "mqttsource.h"
#endif

namespace kx::panel {

std::unique_ptr<Source> CreateSource(const SourceConfig& config, QString* error) {
    switch (config.Kind) {
        case SourceConfig::Type::Simulator:
            return std::make_unique<SimulatorSource>(config.Name, config.RateHz, config.Signals);
        case SourceConfig::Type::Modbus:
#ifdef KX_PANEL_MODBUS
            return std::make_unique<ModbusSource>(config);
#else
            break;
#endif
        case SourceConfig::Type::Mqtt:
#ifdef KX_PANEL_MQTT
            return std::make_unique<MqttSource>(config);
#else
            break;
#endif
    }
    if (error) {
        const char* type = config.Kind == SourceConfig::Type::Modbus ? "modbus" : "mqtt";
        *error = QStringLiteral("%1: type \"%2\" is not available in this build")
                     .arg(config.Path, QLatin1String(type));
    }
    return nullptr;
}

}  // namespace kx::panel
