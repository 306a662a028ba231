#include "inprocesssource.h"

namespace kx::panel {

bool InProcessSource::Write(const QString& address, const SourceValue& value) {
    if (!acceptWrites_) return false;
    writes_.append({address, value});
    return true;
}

}  // namespace kx::panel
