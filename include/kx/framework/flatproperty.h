#pragma once
// Flat properties: Designer edits only plain values and uic sets a property through
// "set" + its name, so the settings objects a control owns are published a second time as
// flat properties "<Object>_<Property>" (SignalSettings_ValueTo, BevelInner_Offset_Top).
// Each macro below declares one such Q_PROPERTY (moc expands it) with its two accessors,
// Name() and setName(v); each settings class offers a macro for all its published fields
// (KX_FLAT_SIGNALSETTINGS, ...), which a control invokes once per object it owns.
//
// The accessors forward to the documented objects and setters, so every check and
// notification stays where it is. Single values are published as double (what Designer
// edits), narrowed with ToSingle; colours as QColor in the EncodeQColor form (system
// colours included); enumerations as int, ignoring values outside the enumeration.
#include <QColor>
#include <QObject>
#include <QString>

#include "kx/framework/single.h"
#include "kx/host/color.h"

#define KX_FLAT(Type, Name, Object, Prop)           \
    Q_PROPERTY(Type Name READ Name WRITE set##Name) \
    Type Name() const {                             \
        return Type((Object)->Prop());              \
    }                                               \
    void set##Name(Type v) {                        \
        (Object)->Set##Prop(v);                     \
    }

#define KX_FLAT_SINGLE(Name, Object, Prop)            \
    Q_PROPERTY(double Name READ Name WRITE set##Name) \
    double Name() const {                             \
        return double((Object)->Prop());              \
    }                                                 \
    void set##Name(double v) {                        \
        (Object)->Set##Prop(::kx::ToSingle(v));       \
    }

#define KX_FLAT_COLOR(Name, Object, Prop)             \
    Q_PROPERTY(QColor Name READ Name WRITE set##Name) \
    QColor Name() const {                             \
        return ::kx::EncodeQColor((Object)->Prop());  \
    }                                                 \
    void set##Name(const QColor& v) {                 \
        (Object)->Set##Prop(v);                       \
    }

#define KX_FLAT_ENUM(Name, Object, Prop, Enum, Last)                \
    Q_PROPERTY(int Name READ Name WRITE set##Name)                  \
    int Name() const {                                              \
        return int((Object)->Prop());                               \
    }                                                               \
    void set##Name(int v) {                                         \
        if (v >= 0 && v <= int(Last)) (Object)->Set##Prop(Enum(v)); \
    }

// The published fields of a TFont: Name, Size (points), Color, Style (TFontStyles bits).
#define KX_FLAT_FONT(Prefix, Object)              \
    KX_FLAT(QString, Prefix##_Name, Object, Name) \
    KX_FLAT(int, Prefix##_Size, Object, Size)     \
    KX_FLAT_COLOR(Prefix##_Color, Object, Color)  \
    KX_FLAT(int, Prefix##_Style, Object, Style)
