#include "kx/framework/persistent.h"

namespace kx {
namespace {
// The class name without the namespace, as users know it.
std::string shortName(const QObject* o) {
    if (!o) return "nil";
    std::string n = o->metaObject()->className();
    auto pos = n.rfind("::");
    return pos == std::string::npos ? n : n.substr(pos + 2);
}
}  // namespace

void TKxPersistent::Change() {
    if (onChange_) onChange_(this);
}

void TKxPersistent::ChangeObject(QObject* sender) {
    if (onChange_) onChange_(sender);
}

void TKxPersistent::AssignTo(TKxPersistent* dest) const {
    assignError(dest);
}

void TKxPersistent::Assign(const TKxPersistent* source) {
    if (!source) {
        throw EConvertError("Cannot assign a nil to a " + shortName(this));
    }
    source->AssignTo(this);
}

void TKxPersistent::assignError(const TKxPersistent* dest) const {
    throw EConvertError("Cannot assign a " + shortName(this) + " to a " + shortName(dest));
}

}  // namespace kx
