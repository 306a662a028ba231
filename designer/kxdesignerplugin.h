#pragma once
// The Qt Designer plugin: one custom widget per catalogue entry, grouped by palette page
// in palette order. Widgets that Designer creates run in designing mode (no blinking, no
// recorded extremes); QUiLoader and uic code, which never initialise the plugin, get
// ordinary run-time components.
#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include "kx/catalogue/catalogue.h"

class TKxDesignerWidget : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
  public:
    TKxDesignerWidget(const kx::TKxCatalogueEntry& entry, QObject* parent);

    QString name() const override { return entry_.CppName; }
    QString group() const override { return entry_.Page; }
    QString toolTip() const override { return entry_.Description; }
    QString whatsThis() const override { return entry_.Description; }
    QString includeFile() const override { return entry_.Header; }
    QIcon icon() const override;
    bool isContainer() const override { return entry_.Container; }
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override { return initialized_; }
    // Designer calls it; form builders do not.
    void initialize(QDesignerFormEditorInterface* core) override;
    QString domXml() const override;

  private:
    const kx::TKxCatalogueEntry& entry_;
    bool initialized_ = false;
};

class TKxDesignerCollection : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)
  public:
    explicit TKxDesignerCollection(QObject* parent = nullptr);
    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return widgets_; }

  private:
    QList<QDesignerCustomWidgetInterface*> widgets_;
};
