#include "panelloader.h"

#include <QFile>
#include <QWidget>

#include "kx/catalogue/catalogue.h"

namespace kx::panel {

PanelLoader::PanelLoader(QObject* parent) : QUiLoader(parent) {
    clearPluginPaths();
}

QWidget* PanelLoader::createWidget(const QString& className, QWidget* parent, const QString& name) {
    if (const TKxCatalogueEntry* entry = KxFindComponent(className)) {
        QWidget* w = entry->Create(parent);
        w->setObjectName(name);
        return w;
    }
    return QUiLoader::createWidget(className, parent, name);
}

QWidget* PanelLoader::LoadFile(const QString& path, QString* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) *error = QStringLiteral("%1: cannot read: %2").arg(path, file.errorString());
        return nullptr;
    }
    QWidget* w = load(&file);
    if (!w && error) *error = QStringLiteral("%1: not a panel: %2").arg(path, errorString());
    return w;
}

}  // namespace kx::panel
