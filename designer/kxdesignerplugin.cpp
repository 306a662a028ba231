#include "kxdesignerplugin.h"

#include <QIcon>
#include <QPixmap>

#include "kx/framework/control.h"

TKxDesignerWidget::TKxDesignerWidget(const kx::TKxCatalogueEntry& entry, QObject* parent)
    : QObject(parent), entry_(entry) {}

QIcon TKxDesignerWidget::icon() const {
    QIcon icon;
    for (int size : {16, 22, 32, 48})
        icon.addPixmap(QPixmap::fromImage(entry_.Icon(size)));
    return icon;
}

QWidget* TKxDesignerWidget::createWidget(QWidget* parent) {
    QWidget* widget = entry_.Create(parent);
    if (auto* control = qobject_cast<kx::TKxControl*>(widget))
        control->SetDesigning(initialized_);
    else if (widget)  // components on Qt's own widgets carry the flag as a property
        widget->setProperty("Designing", initialized_);
    return widget;
}

void TKxDesignerWidget::initialize(QDesignerFormEditorInterface*) {
    initialized_ = true;
}

QString TKxDesignerWidget::domXml() const {
    // "TKx270Meter" -> "kx270Meter" as the first object name Designer hands out.
    QString objectName = entry_.ClassName.mid(1);
    if (!objectName.isEmpty()) objectName[0] = objectName[0].toLower();
    return QStringLiteral(
               "<ui language=\"c++\" displayname=\"%1\">\n"
               " <widget class=\"%2\" name=\"%3\"/>\n"
               "</ui>\n")
        .arg(entry_.ClassName, entry_.CppName, objectName);
}

TKxDesignerCollection::TKxDesignerCollection(QObject* parent) : QObject(parent) {
    for (const kx::TKxCatalogueEntry& entry : kx::KxCatalogue())
        widgets_.append(new TKxDesignerWidget(entry, this));
}
