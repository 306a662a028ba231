#include "rangeshaper.h"

#include <QVariant>

namespace kxsoak {

namespace {

void SetIfPresent(QObject* object, const QByteArray& name, const QVariant& value) {
    if (object->metaObject()->indexOfProperty(name.constData()) >= 0) {
        object->setProperty(name.constData(), value);
    }
}

}  // namespace

void ReshapeRange(QObject* object, const QByteArray& prefix, TValuePool& pool) {
    switch (pool.Between(0, 4)) {
        case 0:
            SetIfPresent(object, prefix + "_ValueFrom", double(pool.RangeEnd()));
            break;
        case 1:
            SetIfPresent(object, prefix + "_ValueTo", double(pool.RangeEnd()));
            break;
        case 2:  // reversed
            SetIfPresent(object, prefix + "_ValueFrom", 100.0);
            SetIfPresent(object, prefix + "_ValueTo", double(-pool.Between(0, 100)));
            break;
        case 3:
            SetIfPresent(object, prefix + "_DigitalFrom", pool.Int());
            SetIfPresent(object, prefix + "_DigitalTo", pool.Int());
            break;
        default:
            SetIfPresent(object, "LogScale", pool.OneIn(2));
            break;
    }
}

void RestoreRange(QObject* object, const QByteArray& prefix) {
    SetIfPresent(object, "LogScale", false);
    SetIfPresent(object, prefix + "_DigitalFrom", 0);
    SetIfPresent(object, prefix + "_DigitalTo", 1000);
    SetIfPresent(object, prefix + "_ValueFrom", 0.0);
    SetIfPresent(object, prefix + "_ValueTo", 100.0);
}

}  // namespace kxsoak
