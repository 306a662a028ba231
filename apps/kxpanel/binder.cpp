#include "binder.h"

#include <QWidget>
#include <cmath>

#include "alarmlog.h"
#include "kx/framework/adjuster.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/binarycontrol.h"
#include "kx/framework/single.h"
#include "kx/host/clock.h"
#include "kx/recorders/trend.h"
#include "staleoverlay.h"
#include "timetext.h"

namespace kx::panel {
namespace {

constexpr uint32_t kDropLogMs = 60000;

QString addressKey(const Source* s, const QString& address) {
    return s->Name() + QLatin1Char('\n') + address;
}

bool isNumberOrBool(QMetaType t) {
    switch (t.id()) {
        case QMetaType::Double:
        case QMetaType::Float:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Bool:
            return true;
        default:
            return false;
    }
}

// Rounded, keeping a 32-bit status word's bits, saturated beyond; v is not NaN.
int toInt(double v) {
    const double r = std::round(v);
    if (r >= -2147483648.0 && r <= 4294967295.0) return int32_t(uint32_t(int64_t(r)));
    return r < 0 ? INT32_MIN : INT32_MAX;
}

QVariant convertFor(QMetaType t, double v) {
    switch (t.id()) {
        case QMetaType::Bool:
            return QVariant(v != 0.0);
        case QMetaType::Int:
            return QVariant(toInt(v));
        case QMetaType::UInt:
            return QVariant(uint32_t(toInt(v)));
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
            return QVariant(qint64(toInt(v)));
        case QMetaType::Float:
            return QVariant(ToSingle(v));
        default:
            return QVariant(v);
    }
}

}  // namespace

Binder::Binder(QWidget* panel, QObject* parent) : QObject(parent), panel_(panel) {
    staleTimer_.setInterval(250);
    connect(&staleTimer_, &QTimer::timeout, this, &Binder::CheckStale);
}

Binder::~Binder() = default;

void Binder::problem(const QString& path, const QString& message) {
    problems_ << path + QStringLiteral(": ") + message;
}

void Binder::Bind(const BindingsFile& file, const QMap<QString, Source*>& sources) {
    const uint32_t tick = GetTickCount();
    const double wall = Now();
    for (const BindingConfig& c : file.Bindings) {
        Binding b;
        b.Config = c;
        b.LastTick = tick;
        b.LastWall = wall;
        if (!resolve(b, sources)) continue;
        const int index = int(bindings_.size());
        b.From->Watch(c.Address, c.Scale.Words());
        byAddress_[addressKey(b.From, c.Address)].append(index);
        byWidget_[b.Widget.data()].append(index);
        bindings_.push_back(std::move(b));
        if (c.Write) connectWriteBack(index);
    }
    QSet<Source*> used;
    for (const Binding& b : bindings_)
        used.insert(b.From);
    for (Source* s : used) {
        connect(s, &Source::valueArrived, this,
                [this, s](const QString& a, const SourceValue& v) { onValue(s, a, v); });
        // A write the source sent and the server rejected later.
        connect(s, &Source::writeFailed, this, [this, s](const QString& a, const QString& m) {
            emit writeFailed(QStringLiteral("write to %1 %2 failed: %3").arg(s->Name(), a, m));
        });
    }
    for (auto it = byWidget_.begin(); it != byWidget_.end(); ++it)
        connectAlarms(const_cast<QWidget*>(it.key()));
    staleTimer_.start();
}

bool Binder::resolve(Binding& b, const QMap<QString, Source*>& sources) {
    const BindingConfig& c = b.Config;
    const QString target = c.Path + QStringLiteral(".target");
    QWidget* w = panel_->objectName() == c.Widget ? panel_ : panel_->findChild<QWidget*>(c.Widget);
    if (!w) {
        problem(target, QStringLiteral("no widget \"%1\" in the panel").arg(c.Widget));
        return false;
    }
    b.Widget = w;
    b.From = sources.value(c.Source, nullptr);
    if (!b.From) {
        problem(c.Path + QStringLiteral(".source"),
                QStringLiteral("source \"%1\" is not running").arg(c.Source));
        return false;
    }
    if (c.Channel > 0) {
        auto* trend = qobject_cast<TKxTrend*>(w);
        if (!trend) {
            problem(target,
                    QStringLiteral("\"%1\" is not a trend, it has no channels").arg(c.Widget));
            return false;
        }
        b.Channel = trend->Channel(c.Channel);
    } else if (!resolveProperty(b)) {
        return false;
    }
    if (c.Write && !qobject_cast<TKxAnalogCControl*>(w) && !qobject_cast<TKxBinGControl*>(w)) {
        problem(c.Path + QStringLiteral(".write"),
                QStringLiteral("\"%1\" (%2) takes no operator input to write back")
                    .arg(c.Widget, QLatin1String(w->metaObject()->className())));
        b.Config.Write = false;
    }
    return true;
}

bool Binder::resolveProperty(Binding& b) {
    const BindingConfig& c = b.Config;
    const QString target = c.Path + QStringLiteral(".target");
    const QMetaObject* mo = b.Widget->metaObject();
    const int i = mo->indexOfProperty(c.Property.toLatin1().constData());
    if (i < 0) {
        problem(target, QStringLiteral("\"%1\" has no property \"%2\"").arg(c.Widget, c.Property));
        return false;
    }
    b.Property = mo->property(i);
    if (!isNumberOrBool(b.Property.metaType())) {
        problem(target, QStringLiteral("property \"%1\" of \"%2\" is not a number or bool")
                            .arg(c.Property, c.Widget));
        return false;
    }
    if (!b.Property.isWritable()) {
        problem(target,
                QStringLiteral("property \"%1\" of \"%2\" is read-only").arg(c.Property, c.Widget));
        return false;
    }
    if (c.Property == QLatin1String("Value"))
        b.Indicator = qobject_cast<TKxAnalogGControl*>(b.Widget);
    return true;
}

void Binder::connectWriteBack(int index) {
    QWidget* w = bindings_[size_t(index)].Widget;
    if (auto* adj = qobject_cast<TKxAnalogCControl*>(w)) {
        connect(adj, &TKxAnalogCControl::OnValueChanged, this, [this, index, w] {
            writeBack(index);
            finishAdjusting(w);
        });
    } else if (auto* bin = qobject_cast<TKxBinGControl*>(w)) {
        const bool word = bindings_[size_t(index)].Config.Property == QLatin1String("StatusInt");
        if (word)
            connect(bin, &TKxBinGControl::OnStatusIntChanged, this,
                    [this, index] { writeBack(index); });
        else
            connect(bin, &TKxBinGControl::OnStatusChanged, this,
                    [this, index] { writeBack(index); });
    }
}

void Binder::connectAlarms(QWidget* w) {
    auto* ind = qobject_cast<TKxAnalogGControl*>(w);
    if (!ind || !alarmLog_) return;
    connect(ind, &TKxAnalogGControl::OnLimit, this, [this, ind](QObject*, bool lower, bool upper) {
        const char* event = upper ? "upper limit" : lower ? "lower limit" : "limits normal";
        alarmLog_->Append(ind->objectName(), QLatin1String(event), ind->Value());
    });
    connect(ind, &TKxAnalogGControl::OnOverflow, this, [this, ind](QObject*, int ppt) {
        const char* event = ppt < 0      ? "overflow low"
                            : ppt > 1000 ? "overflow high"
                                         : "overflow cleared";
        alarmLog_->Append(ind->objectName(), QLatin1String(event), ind->Value());
    });
}

void Binder::onValue(Source* source, const QString& address, const SourceValue& value) {
    const auto it = byAddress_.constFind(addressKey(source, address));
    if (it == byAddress_.constEnd()) return;
    const uint32_t tick = GetTickCount();
    const double wall = Now();
    for (int index : *it) {
        Binding& b = bindings_[size_t(index)];
        const auto v = b.Config.Scale.ToValue(value);
        if (!v) {
            noteDropped();
            continue;
        }
        b.LastTick = tick;
        b.LastWall = wall;
        if (b.Widget) apply(b, *v);
    }
    for (int index : *it)
        if (QWidget* w = bindings_[size_t(index)].Widget) refreshStale(w);
}

void Binder::apply(Binding& b, double value) {
    auto* adj = qobject_cast<TKxAnalogCControl*>(b.Widget.data());
    if (adj && adj->ValueChangedPending()) {
        b.HeldBack = true;
        b.HeldValue = value;
        return;
    }
    ++applying_;
    if (b.Channel)
        b.Channel->SetValue(ToSingle(value));
    else if (b.Indicator)
        b.Indicator->setValue(value);
    else
        b.Property.write(b.Widget, convertFor(b.Property.metaType(), value));
    --applying_;
    ++applied_;
}

void Binder::finishAdjusting(QWidget* w) {
    for (int index : byWidget_.value(w)) {
        Binding& b = bindings_[size_t(index)];
        if (!b.HeldBack) continue;
        b.HeldBack = false;
        apply(b, b.HeldValue);
    }
}

void Binder::writeBack(int index) {
    if (applying_ > 0) return;
    Binding& b = bindings_[size_t(index)];
    if (!b.Widget) return;
    const double value = b.Property.read(b.Widget).toDouble();
    const auto raw = b.Config.Scale.ToRaw(value, b.From->TakesWords(b.Config.Address));
    const QString where =
        QStringLiteral("%1: write to %2 %3").arg(b.Config.Path, b.Config.Source, b.Config.Address);
    if (!raw) {
        emit writeFailed(where + QStringLiteral(" failed: the value cannot be scaled back"));
        return;
    }
    if (!b.From->Write(b.Config.Address, *raw))
        emit writeFailed(where + QStringLiteral(" failed: refused by the source"));
}

void Binder::refreshStale(QWidget* w) {
    const uint32_t now = GetTickCount();
    bool stale = false;
    double oldest = 0.0;
    for (int index : byWidget_.value(w)) {
        const Binding& b = bindings_[size_t(index)];
        const int limit = b.Config.StaleAfterMs;
        if (limit <= 0 || now - b.LastTick < uint32_t(limit)) continue;
        oldest = stale ? std::min(oldest, b.LastWall) : b.LastWall;
        stale = true;
    }
    StaleOverlay* overlay = overlays_.value(w);
    if (!stale) {
        if (overlay) overlay->Clear();
        return;
    }
    if (!overlay) {
        overlay = new StaleOverlay(w);
        overlays_.insert(w, overlay);
    }
    overlay->ShowStale(ClockText(oldest));
}

void Binder::CheckStale() {
    for (auto it = byWidget_.begin(); it != byWidget_.end(); ++it)
        if (!it.value().isEmpty() && bindings_[size_t(it.value().first())].Widget)
            refreshStale(const_cast<QWidget*>(it.key()));
}

StaleOverlay* Binder::OverlayOf(const QWidget* widget) const {
    return overlays_.value(widget);
}

void Binder::noteDropped() {
    ++dropped_;
    const uint32_t now = GetTickCount();
    if (dropLogged_ && now - lastDropLog_ < kDropLogMs) return;
    qWarning("kxpanel: %lld unusable readings dropped (short, NaN or out of range)",
             static_cast<long long>(dropped_ - droppedLogged_));
    droppedLogged_ = dropped_;
    lastDropLog_ = now;
    dropLogged_ = true;
}

}  // namespace kx::panel
