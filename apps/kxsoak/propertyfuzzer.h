#pragma once
// Property changes through the meta-object system, so every published property of every
// component is reached without naming it: a random writable property of the component or
// of one of its settings objects (fonts, bevels, signal ranges, ...) gets a random value
// of its type, extremes included; enumerations step through all their keys; booleans
// toggle.
#include <QMetaProperty>
#include <QObject>
#include <QPointer>
#include <vector>

#include "valuepool.h"

namespace kxsoak {

class TPropertyFuzzer {
  public:
    explicit TPropertyFuzzer(TValuePool& pool) : pool_(pool) {}

    // Writes one random property of object or of its settings objects.
    void ChangeOne(QObject* object);
    // Every key of every enumeration property in turn, and every boolean toggled twice.
    void SweepEnumsAndBools(QObject* object);
    // Gives every text property that got one of the 10 000-character texts since the last
    // call a short text again. A clock repaints its text each second: left in place for
    // the whole run, such a text made one component's soak take hours.
    void ShortenLongTexts();

  private:
    struct TTarget {
        QPointer<QObject> Owner;
        QMetaProperty Property;
    };
    std::vector<TTarget> Targets(QObject* object) const;
    void Write(QObject* owner, const QMetaProperty& property);
    QVariant RandomValue(const QMetaProperty& property);

    TValuePool& pool_;
    std::vector<TTarget> longTexts_;
};

}  // namespace kxsoak
