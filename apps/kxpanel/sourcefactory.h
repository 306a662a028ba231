#pragma once
// Makes the source a bindings file describes: the simulator always, Modbus TCP where Qt
// SerialBus was found at build time, MQTT where libmosquitto was. For a type the build
// lacks the factory returns null with "sources.NAME: type \"modbus\" is not available in
// this build".
#include <QString>
#include <memory>

#include "bindingsfile.h"
#include "source.h"

namespace kx::panel {

std::unique_ptr<Source> CreateSource(const SourceConfig& config, QString* error);

}  // namespace kx::panel
