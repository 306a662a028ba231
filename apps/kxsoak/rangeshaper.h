#pragma once
// Extreme signal ranges through the flat properties every ranged component publishes
// ("<prefix>_ValueFrom", ...): huge, tiny, empty and reversed ranges, digit spans at the
// int32 limits, log scales with non-positive ends.
#include <QByteArray>
#include <QObject>

#include "valuepool.h"

namespace kxsoak {

// Changes one or two of the range fields of the settings published under prefix
// (e.g. "SignalSettings", "Channel3"); properties the object lacks are left alone.
void ReshapeRange(QObject* object, const QByteArray& prefix, TValuePool& pool);
// Back to an ordinary range (0..100 over 0..1000), so the next readings sweep it.
void RestoreRange(QObject* object, const QByteArray& prefix);

}  // namespace kxsoak
