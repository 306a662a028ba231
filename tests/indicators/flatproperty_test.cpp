// The flat properties Designer and uic use: every published field of every settings
// object a round meter owns has one, and it reads and writes exactly that field.
#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSet>

#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

// The object and property a flat name leads to ("BevelInner_Offset_Top" ->
// BevelInner()->Offset(), "Top"); null when a step does not exist.
std::pair<QObject*, QByteArray> resolve(QObject* root, const QByteArray& flatName) {
    const QList<QByteArray> path = flatName.split('_');
    QObject* object = root;
    for (qsizetype i = 0; i + 1 < path.size() && object; ++i)
        object = object->property(path[i].constData()).value<QObject*>();
    return {object, path.last()};
}

bool isSettingsObject(const QMetaProperty& p) {
    return p.metaType().flags() & QMetaType::PointerToQObject;
}

// The nested field's value in the flat property's type (colours as QColor).
QVariant nestedAsFlat(const QVariant& nested, const QMetaType& flatType) {
    if (flatType.id() == QMetaType::QColor) return EncodeQColor(TColor(nested.toInt()));
    QVariant v = nested;
    v.convert(flatType);
    return v;
}

// Another valid value of the same type.
QVariant otherValue(const QVariant& v) {
    switch (v.typeId()) {
        case QMetaType::Bool:
            return !v.toBool();
        case QMetaType::Int:
            return v.toInt() ^ 1;
        case QMetaType::Double:
            return v.toDouble() + 1.5;
        case QMetaType::QString:
            return v.toString() + QStringLiteral("x");
        case QMetaType::QColor:
            return v.value<QColor>() == QColor(1, 2, 3) ? QColor(4, 5, 6) : QColor(1, 2, 3);
        default:
            return {};
    }
}

class FlatProperties : public ::testing::TestWithParam<const char*> {
  protected:
    std::unique_ptr<TKxRMeter> meter{[] {
        const QString name = QString::fromLatin1(GetParam());
        if (name == "TKx120Meter") return std::unique_ptr<TKxRMeter>(new TKx120Meter);
        if (name == "TKx180Meter") return std::unique_ptr<TKxRMeter>(new TKx180Meter);
        return std::unique_ptr<TKxRMeter>(new TKx270Meter);
    }()};

    QList<QMetaProperty> flat() const {
        QList<QMetaProperty> list;
        const QMetaObject* m = meter->metaObject();
        for (int i = 0; i < m->propertyCount(); ++i)
            if (QByteArray(m->property(i).name()).contains('_')) list << m->property(i);
        return list;
    }
};

TEST_P(FlatProperties, EveryPublishedFieldHasOne) {
    QSet<QByteArray> names;
    for (const QMetaProperty& p : flat())
        names << p.name();
    // Walk the settings objects as the classic form streaming would.
    QSet<QByteArray> expected;
    std::function<void(QObject*, const QByteArray&)> walk = [&](QObject* o,
                                                                const QByteArray& prefix) {
        const QMetaObject* m = o->metaObject();
        for (int i = QObject::staticMetaObject.propertyCount(); i < m->propertyCount(); ++i) {
            const QMetaProperty p = m->property(i);
            const QByteArray name = prefix + p.name();
            if (isSettingsObject(p))
                walk(p.read(o).value<QObject*>(), name + '_');
            else
                expected << name;
        }
    };
    const QMetaObject* m = meter->metaObject();
    for (int i = 0; i < m->propertyCount(); ++i) {
        const QMetaProperty p = m->property(i);
        if (isSettingsObject(p))
            walk(p.read(meter.get()).value<QObject*>(), QByteArray(p.name()) + '_');
    }
    // The recorded extremes are run-time data, not settings.
    for (const char* runTime :
         {"MinMax_Min", "MinMax_Max", "MinMax_MinDateTime", "MinMax_MaxDateTime"})
        expected.remove(runTime);
    EXPECT_EQ(names, expected);
    for (const QMetaProperty& p : flat()) {
        EXPECT_TRUE(p.isDesignable()) << p.name();
        EXPECT_TRUE(p.isStored()) << p.name();
        EXPECT_TRUE(p.isWritable()) << p.name();
    }
}

TEST_P(FlatProperties, ReadAndWriteTheirOwnField) {
    for (const QMetaProperty& p : flat()) {
        SCOPED_TRACE(p.name());
        const auto [object, field] = resolve(meter.get(), p.name());
        ASSERT_TRUE(object);
        const QMetaProperty nested =
            object->metaObject()->property(object->metaObject()->indexOfProperty(field));
        ASSERT_TRUE(nested.isValid());
        EXPECT_EQ(p.read(meter.get()), nestedAsFlat(nested.read(object), p.metaType()));

        const QVariant other = otherValue(p.read(meter.get()));
        ASSERT_TRUE(other.isValid());
        ASSERT_TRUE(p.write(meter.get(), other));
        EXPECT_EQ(p.read(meter.get()), other);
        EXPECT_EQ(nestedAsFlat(nested.read(object), p.metaType()), other);
    }
}

// Enumerations arrive as numbers; numbers outside them change nothing.
TEST_P(FlatProperties, EnumerationsIgnoreUnknownNumbers) {
    const struct {
        const char* name;
        int last;
    } enums[] = {
        {"BevelInner_Style", bsRaised},
        {"BevelOuter_BevelLine", blBoth},
        {"BevelOuter_SurfaceGrad_Style", gsTopRight},
    };
    for (const auto& e : enums) {
        meter->setProperty(e.name, e.last);
        EXPECT_EQ(meter->property(e.name).toInt(), e.last) << e.name;
        for (int bad : {-1, e.last + 1, 1 << 20}) {
            meter->setProperty(e.name, bad);
            EXPECT_EQ(meter->property(e.name).toInt(), e.last) << e.name << " " << bad;
        }
    }
}

TEST_P(FlatProperties, ReachTheMeterLikeTheDocumentedSetters) {
    // A flat write is a documented setter call: after loading it repaints the meter.
    meter->Loaded();
    meter->PaintToSurface();
    const QImage before = meter->Surface().Image().copy();
    meter->setProperty("ScaleSettings_Color", QColor(255, 0, 0));
    EXPECT_TRUE(meter->RedrawNeeded());
    meter->PaintToSurface();
    EXPECT_NE(meter->Surface().Image(), before);
    // Single values are rounded to float as the setters store them.
    meter->setProperty("SignalSettings_ValueTo", 0.1);
    EXPECT_EQ(meter->SignalSettings()->ValueTo(), 0.1f);
    EXPECT_EQ(meter->property("SignalSettings_ValueTo").toDouble(), double(0.1f));
}

INSTANTIATE_TEST_SUITE_P(RoundMeters, FlatProperties,
                         ::testing::Values("TKx120Meter", "TKx180Meter", "TKx270Meter"));

}  // namespace
}  // namespace kx
