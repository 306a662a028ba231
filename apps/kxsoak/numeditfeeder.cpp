#include "numeditfeeder.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QStringList>

#include "inputdriver.h"
#include "kx/entry/numedit.h"

namespace kxsoak {

namespace {

// Typed entries: good ones in every notation and the ones Check must refuse.
const QStringList& Entries() {
    static const QStringList entries = {"12.5k",      "$FF", "&101", "%-7", "1e999",
                                        "!3m",        "..",  "-",    "E",   "123456789",
                                        "$1FFFFFFFF", "1,5", "0.1u", "",    "9e-999"};
    return entries;
}

void SendKey(QWidget* edit, int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(edit, &press);
}

void Type(QWidget* edit, const QString& entry) {
    QPointer<QWidget> alive(edit);
    SendKey(edit, Qt::Key_End, {});
    for (int i = 0; i < 20 && alive; ++i)
        SendKey(alive, Qt::Key_Backspace, {});
    for (const QChar c : entry) {
        if (!alive) return;
        SendKey(alive, 0, QString(c));
    }
    if (alive) SendKey(alive, Qt::Key_Return, {});
}

}  // namespace

bool TNumEditFeeder::Accepts(const QWidget* component) const {
    return qobject_cast<const kx::TKxNumEdit*>(component) != nullptr;
}

void TNumEditFeeder::Feed(QWidget* component, TFeedContext& context) {
    auto* edit = qobject_cast<kx::TKxNumEdit*>(component);
    TValuePool& pool = context.Pool;
    switch (context.Step % 5) {
        case 0:
            edit->SetValue(pool.Double());
            break;
        case 1:
            edit->setProperty("ValueAsInt", pool.Int());
            break;
        case 2:
            edit->setProperty(pool.OneIn(2) ? "ValueAsHex" : "ValueAsBool",
                              pool.OneIn(2) ? pool.Text() : QString::number(pool.Int(), 16));
            break;
        case 3:
            Type(edit, Entries()[pool.Between(0, int(Entries().size()) - 1)]);
            break;
        default:
            SendRandomInput(edit, pool);  // arrows step, clicks on the spin buttons
            break;
    }
}

void TNumEditFeeder::Reshape(QWidget* component, TFeedContext& context) {
    TValuePool& pool = context.Pool;
    switch (pool.Between(0, 2)) {
        case 0:
            component->setProperty("EditBase", pool.Between(0, 3));
            break;
        case 1:
            component->setProperty("Options", pool.Between(0, 7));
            component->setProperty(pool.OneIn(2) ? "MinValue" : "MaxValue", pool.Double(3));
            break;
        default:
            component->setProperty("Increment", pool.Float(3));
            break;
    }
}

}  // namespace kxsoak
