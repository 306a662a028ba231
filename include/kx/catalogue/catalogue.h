#pragma once
// The run-time catalogue of the library's components: each component class with its
// palette page, in palette order (the pages KxMisc, KxAnalogInd, KxAnalogAdj, KxBinary;
// within a page the order of its palette buttons), a factory, a one-line description for
// tool tips and an icon. The Designer plugin builds its widget groups from it; an
// application can use it to offer components by name (a panel editor, or a QUiLoader
// subclass whose createWidget makes components from the application's own copy of the
// library).
//
// The catalogue holds all 37 components of the palette; catalogue.cpp has one row per
// class, in palette order, with its page, class name, description and maker:
//     {kAnalogInd, "TKxBar", "Bar indicator", Component<TKxBar>("kx/indicators/bar.h")},
// Component<T>(header, iconPainter) takes an optional glyph painter; without one the icon
// is the component itself drawn small.
//
// Nothing else in the library depends on the catalogue. Like the components, it is for
// the GUI thread.
#include <QImage>
#include <QString>
#include <QStringList>
#include <vector>

#include "kx/host/canvas.h"
#include "kx/host/types.h"

class QWidget;

namespace kx {

struct TKxCatalogueEntry {
    using TFactory = QWidget* (*)(QWidget* parent);
    // Draws a glyph into rect (the canvas of a clBtnFace-filled bitmap).
    using TIconPainter = void (*)(TCanvas& canvas, const TRect& rect);

    QString Page;         // "KxAnalogInd"
    QString ClassName;    // "TKx270Meter"
    QString CppName;      // "kx::TKx270Meter", the name Designer, .ui files and uic use
    QString Header;       // "kx/indicators/rmeter.h", as #include'd by applications
    QString Description;  // one line, for tool tips
    TFactory Factory = nullptr;
    TIconPainter IconPainter = nullptr;
    // Whether the component holds other widgets (Designer lets them be dropped into it).
    bool Container = false;

    // A new component (in its construction phase, as from `new`). The caller owns it
    // unless parent does.
    QWidget* Create(QWidget* parent) const { return Factory(parent); }
    // The palette icon, size x size pixels (size limited to 1..256): the glyph on the
    // button face colour, or the component drawn at design time and scaled to fit.
    QImage Icon(int size) const;
};

// The four palette pages, in order, whether or not they hold a component yet.
const QStringList& KxPalettePages();
// The components that exist, in palette order.
const std::vector<TKxCatalogueEntry>& KxCatalogue();
// The components of one page, in order; empty for an unknown page.
std::vector<const TKxCatalogueEntry*> KxCataloguePage(const QString& page);
// The entry of a class, named with or without "kx::"; null when there is none.
const TKxCatalogueEntry* KxFindComponent(const QString& className);
// A new component of that class, or null when there is none.
QWidget* KxCreateComponent(const QString& className, QWidget* parent);

// The glyph of a round meter whose scale starts at startAngle and sweeps sweep degrees
// (0 straight up, clockwise): three sector bands, a needle and its pivot.
void KxPaintRoundMeterGlyph(TCanvas& canvas, const TRect& rect, int32_t startAngle, int32_t sweep);

}  // namespace kx
