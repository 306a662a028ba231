// The Designer plugin as Designer and QUiLoader see it: loaded from the build tree, its
// widgets compared with the catalogue, and panel.ui read, saved and read again.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QUiLoader>
#include <QWidget>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QFormBuilder>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <memory>

#include "designer/properties.h"
#include "kx/catalogue/catalogue.h"
#include "kx/framework/adjuster.h"
#include "kx/framework/binarycontrol.h"
#include "kx/indicators/barinstrument.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

QList<QDesignerCustomWidgetInterface*> pluginWidgets(QPluginLoader& loader) {
    auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
    return collection ? collection->customWidgets() : QList<QDesignerCustomWidgetInterface*>{};
}

// The plugin's components come from the plugin's own copy of the library, so they are
// reached through their published properties; the layout of the classes is the same, so
// a checked static_cast serves to read state that is not published.
template <class T>
const T* as(const QWidget* w, const char* className) {
    const QMetaObject* m = w ? w->metaObject() : nullptr;
    while (m && qstrcmp(m->className(), className) != 0)
        m = m->superClass();
    return m ? static_cast<const T*>(w) : nullptr;
}
const TKxRMeter* asMeter(const QWidget* w) {
    return as<TKxRMeter>(w, "kx::TKxRMeter");
}
const TKxAnalogGControl* asAnalog(const QWidget* w) {
    return as<TKxAnalogGControl>(w, "kx::TKxAnalogGControl");
}
const TKxControl* asControl(const QWidget* w) {
    return as<TKxControl>(w, "kx::TKxControl");
}
// Whether a component blinks (those that can).
bool blinking(const QWidget* w) {
    if (const TKxRMeter* m = asMeter(w)) return m->Blinking();
    if (const auto* b = as<TKxBarInstrument>(w, "kx::TKxBarInstrument")) return b->Blinking();
    if (const auto* b = as<TKxBinGControl>(w, "kx::TKxBinGControl")) return b->Blinking();
    return false;
}

TEST(DesignerPlugin, OffersTheCatalogueInPaletteOrder) {
    QPluginLoader loader(QStringLiteral(KX_DESIGNER_PLUGIN));
    ASSERT_TRUE(loader.load()) << loader.errorString().toStdString();
    const auto widgets = pluginWidgets(loader);
    const auto& catalogue = KxCatalogue();
    ASSERT_EQ(size_t(widgets.size()), catalogue.size());

    QStringList groups;
    for (int i = 0; i < widgets.size(); ++i) {
        const QDesignerCustomWidgetInterface& w = *widgets[i];
        const TKxCatalogueEntry& e = catalogue[size_t(i)];
        SCOPED_TRACE(e.ClassName.toStdString());
        EXPECT_EQ(w.name(), e.CppName);
        EXPECT_EQ(w.group(), e.Page);
        EXPECT_EQ(w.toolTip(), e.Description);
        EXPECT_EQ(w.includeFile(), e.Header);
        EXPECT_EQ(w.isContainer(), e.ClassName == "TKxPanel");
        EXPECT_FALSE(w.icon().isNull());
        EXPECT_TRUE(w.domXml().contains(QStringLiteral("class=\"%1\"").arg(e.CppName)));
        if (groups.isEmpty() || groups.last() != w.group()) groups << w.group();
    }
    // Each group once, and the groups in the order of the palette pages.
    QStringList expected;
    for (const QString& page : KxPalettePages())
        if (groups.contains(page)) expected << page;
    EXPECT_EQ(groups, expected);
    EXPECT_EQ(KxPalettePages(), (QStringList{"KxMisc", "KxAnalogInd", "KxAnalogAdj", "KxBinary"}));
}

TEST(DesignerPlugin, FormBuildersGetRunTimeComponents) {
    QPluginLoader loader(QStringLiteral(KX_DESIGNER_PLUGIN));
    ASSERT_TRUE(loader.load());
    for (QDesignerCustomWidgetInterface* w : pluginWidgets(loader)) {
        std::unique_ptr<QWidget> widget(w->createWidget(nullptr));
        ASSERT_TRUE(widget);
        EXPECT_EQ(QString::fromLatin1(widget->metaObject()->className()), w->name());
        const TKxControl* control = asControl(widget.get());
        if (!control) {  // a component on one of Qt's own widgets
            EXPECT_EQ(widget->property("Designing"), QVariant(false)) << w->name().toStdString();
            continue;
        }
        EXPECT_FALSE(control->Designing());
    }
}

// Designer initialises the plugin and then designs. A private copy of the plugin file is
// a second, independent instance, so this initialisation leaves the other tests alone.
TEST(DesignerPlugin, DesignerGetsDesigningComponents) {
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("libkxdesigner-session.so"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(KX_DESIGNER_PLUGIN), copy));
    QPluginLoader loader(copy);
    ASSERT_TRUE(loader.load()) << loader.errorString().toStdString();
    QDesignerFormEditorInterface core;
    for (QDesignerCustomWidgetInterface* w : pluginWidgets(loader)) {
        EXPECT_FALSE(w->isInitialized());
        w->initialize(&core);
        EXPECT_TRUE(w->isInitialized());
        std::unique_ptr<QWidget> widget(w->createWidget(nullptr));
        const TKxControl* control = asControl(widget.get());
        if (!control) {
            EXPECT_EQ(widget->property("Designing"), QVariant(true)) << w->name().toStdString();
            continue;
        }
        EXPECT_TRUE(control->Designing());
        auto* meter = const_cast<TKxAnalogGControl*>(asAnalog(widget.get()));
        if (!meter && !as<TKxBinGControl>(widget.get(), "kx::TKxBinGControl") &&
            !as<TKxAnalogCControl>(widget.get(), "kx::TKxAnalogCControl"))
            continue;  // a spin button: nothing more to design
        if (!meter && !as<TKxBinGControl>(widget.get(), "kx::TKxBinGControl")) {
            // An adjuster takes its value at design time like any property.
            ASSERT_TRUE(widget->setProperty("Value", 150.0));
            EXPECT_EQ(widget->property("Value").toDouble(), 100.0);
            continue;
        }
        if (!meter) {
            // A checked, flashing binary element does not blink at design time.
            ASSERT_TRUE(widget->setProperty("Flashing", true));
            ASSERT_TRUE(widget->setProperty("Checked", true));
            EXPECT_TRUE(widget->property("Checked").toBool());
            EXPECT_FALSE(blinking(widget.get()));
            continue;
        }
        // A reading beyond the upper limit and the range: no blinking, no extremes.
        widget->setProperty("Value", 150.0);
        meter->Loaded();
        meter->PaintToSurface();
        // A compass takes 150 as a heading like any other: no limit is crossed.
        const bool compass = QByteArray(widget->metaObject()->className()) == "kx::TKxCompass";
        EXPECT_EQ(meter->UpperExceeded(), !compass) << w->name().toStdString();
        EXPECT_FALSE(blinking(widget.get()));
        EXPECT_EQ(meter->MinMax()->Max(), TMinMax::kNoMax);
    }
    loader.unload();
}

// Saves what Designer saves: the designable, stored properties (QFormBuilder alone saves
// every readable one, in no particular order).
class TDesignerLikeBuilder : public QFormBuilder {
  protected:
    bool checkProperty(QObject* object, const QString& name) const override {
        const QMetaObject* meta = object->metaObject();
        const int index = meta->indexOfProperty(name.toLatin1().constData());
        if (index >= 0) {
            const QMetaProperty p = meta->property(index);
            if (!p.isStored() || !p.isDesignable()) return false;
        }
        return QFormBuilder::checkProperty(object, name);
    }
};

// Ends the construction phase and paints, as showing the form would.
TKxRMeter& finish(QWidget& w) {
    auto& meter = const_cast<TKxRMeter&>(*asMeter(&w));
    meter.Loaded();
    meter.PaintToSurface();
    return meter;
}

// The values panel.ui sets, as the published properties show them.
void expectPanelValues(QWidget& form) {
    auto* boiler = form.findChild<QWidget*>(QStringLiteral("boiler"));
    auto* flow = form.findChild<QWidget*>(QStringLiteral("flow"));
    ASSERT_TRUE(boiler && flow);
    EXPECT_STREQ(boiler->metaObject()->className(), "kx::TKx270Meter");
    EXPECT_STREQ(flow->metaObject()->className(), "kx::TKx120Meter");
    const struct {
        QWidget* widget;
        const char* property;
        QVariant expected;
    } cases[] = {
        {boiler, "LimitUpper", 13.0},
        {boiler, "Value", double(12.4f)},
        {boiler, "SignalSettings_Name1", QStringLiteral("Boiler pressure")},
        {boiler, "SignalSettings_ValueTo", 16.0},
        {boiler, "SectorSettings_Sector2To", 700},
        {boiler, "SectorSettings_Sector3Color", QColor(255, 0, 255)},
        {boiler, "ArrowSettings_ColorBrush", QColor(0, 0, 255)},
        {boiler, "BevelInner_Offset_Top", 3},
        {boiler, "BevelOuter_Color", QColor(24, 0, 0, 0)},  // clInfoBk
        {boiler, "BevelOuter_SurfaceGrad_Style", 5},
        {boiler, "ScaleSettings_Font_Size", 12},
        {boiler, "ScaleSettings_Steps", 8},
        {flow, "HintOptions", 3},
        {flow, "LogScale", true},
        {flow, "Font_Style", 1},
        {flow, "SignalSettings_ValueFrom", 1.0},
        {flow, "SignalSettings_ValueTo", 1000.0},
        {flow, "MinMax_MaxColor", QColor(0, 128, 0)},
        {flow, "Options", 253},
        {flow, "FontUnit_Name", QStringLiteral("Times New Roman")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.widget->property(c.property), c.expected) << c.property;
}

TEST(DesignerPlugin, UiFileSurvivesLoadSaveLoad) {
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(QStringLiteral(KX_DESIGNER_PLUGIN_DIR));
    ASSERT_TRUE(loader.availableWidgets().contains(QStringLiteral("kx::TKx270Meter")));

    QFile file(QStringLiteral(KX_PANEL_UI));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::unique_ptr<QWidget> first(loader.load(&file));
    ASSERT_TRUE(first) << loader.errorString().toStdString();
    expectPanelValues(*first);

    QBuffer saved;
    saved.open(QIODevice::WriteOnly);
    {
        // Saving reports the standard properties it has no .ui form for (focusPolicy, ...).
        const QtMessageHandler previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        TDesignerLikeBuilder().save(&saved, first.get());
        qInstallMessageHandler(previous);
    }
    saved.close();
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    std::unique_ptr<QWidget> second(loader.load(&saved));
    ASSERT_TRUE(second) << loader.errorString().toStdString();
    expectPanelValues(*second);
    // Everything else published came through as well, and both draw the same.
    for (const char* name : {"boiler", "flow"}) {
        TKxRMeter& a = finish(*first->findChild<QWidget*>(name));
        TKxRMeter& b = finish(*second->findChild<QWidget*>(name));
        // The automatic hint carries the time each panel recorded its extremes, which may
        // lie a second apart; the hint itself is tested with the value model.
        auto pa = test::KxProperties(a), pb = test::KxProperties(b);
        pa.erase(QStringLiteral("Hint"));
        pb.erase(QStringLiteral("Hint"));
        EXPECT_EQ(test::DiffProperties(pa, pb), "") << name;
        EXPECT_TRUE(a.Surface().Image() == b.Surface().Image()) << name;
    }
}

}  // namespace
}  // namespace kx
