#include "feeders.h"

#include "adjusterfeeder.h"
#include "analogfeeder.h"
#include "binaryfeeder.h"
#include "labelfeeder.h"
#include "numeditfeeder.h"
#include "oppointfeeder.h"
#include "plainfeeder.h"
#include "recorderfeeder.h"
#include "timefeeder.h"

namespace kxsoak {

std::vector<std::unique_ptr<TFeeder>> MakeFeeders() {
    std::vector<std::unique_ptr<TFeeder>> feeders;
    feeders.push_back(std::make_unique<TAnalogFeeder>());
    feeders.push_back(std::make_unique<TAdjusterFeeder>());
    feeders.push_back(std::make_unique<TBinaryFeeder>());
    feeders.push_back(std::make_unique<TRecorderFeeder>());
    feeders.push_back(std::make_unique<TTimeFeeder>());
    feeders.push_back(std::make_unique<TLabelFeeder>());
    feeders.push_back(std::make_unique<TNumEditFeeder>());
    feeders.push_back(std::make_unique<TOpPointFeeder>());
    feeders.push_back(std::make_unique<TPlainFeeder>());
    return feeders;
}

TFeeder& FeederFor(const std::vector<std::unique_ptr<TFeeder>>& feeders, const QWidget* component) {
    for (const auto& feeder : feeders) {
        if (feeder->Accepts(component)) return *feeder;
    }
    return *feeders.back();
}

}  // namespace kxsoak
