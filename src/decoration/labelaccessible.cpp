#include "kx/decoration/labelaccessible.h"

#include <QAccessible>

#include "kx/decoration/kxlabel.h"
#include "kx/decoration/kxpanel.h"

namespace kx {
namespace {

class TKxPanelAccessible : public QAccessibleWidget {
  public:
    explicit TKxPanelAccessible(QWidget* panel) : QAccessibleWidget(panel, QAccessible::Grouping) {}
    QString text(QAccessible::Text t) const override {
        if (t == QAccessible::Name && widget()->accessibleName().isEmpty())
            return widget()->objectName();
        return QAccessibleWidget::text(t);
    }
};

QAccessibleInterface* factory(const QString&, QObject* object) {
    if (auto* l = qobject_cast<TKxLabel*>(object)) return new TKxLabelAccessible(l);
    if (auto* p = qobject_cast<TKxPanel*>(object)) return new TKxPanelAccessible(p);
    return nullptr;
}

}  // namespace

TKxLabelAccessible::TKxLabelAccessible(TKxLabel* label)
    : QAccessibleWidget(label, QAccessible::StaticText) {}

QString TKxLabelAccessible::text(QAccessible::Text t) const {
    const auto* l = qobject_cast<const TKxLabel*>(object());
    if (!l) return QAccessibleWidget::text(t);
    if (t == QAccessible::Value) return l->ShownText();
    if (t == QAccessible::Name)
        return l->accessibleName().isEmpty() ? l->ShownText() : l->accessibleName();
    return QAccessibleWidget::text(t);
}

void KxInstallDecorationAccessibility() {
    QAccessible::installFactory(&factory);
}

}  // namespace kx
