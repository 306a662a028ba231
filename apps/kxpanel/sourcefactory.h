#pragma once
// Makes the source a bindings file describes. This build has the simulator; Modbus TCP
// and MQTT sources are read and checked by the parser but give no source here: the
// factory returns null with "sources.NAME: type \"modbus\" is not available in this build".
#include <QString>
#include <memory>

#include "bindingsfile.h"
#include "source.h"

namespace kx::panel {

std::unique_ptr<Source> CreateSource(const SourceConfig& config, QString* error);

}  // namespace kx::panel
