#pragma once
// The feeders of all component families, most specific first; the plain one takes the
// rest.
#include <memory>
#include <vector>

#include "feeder.h"

namespace kxsoak {

std::vector<std::unique_ptr<TFeeder>> MakeFeeders();
// The first feeder that accepts component (never null: the plain feeder accepts all).
TFeeder& FeederFor(const std::vector<std::unique_ptr<TFeeder>>& feeders, const QWidget* component);

}  // namespace kxsoak
