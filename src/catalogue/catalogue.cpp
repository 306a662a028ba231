#include "kx/catalogue/catalogue.h"

#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <memory>

#include "kx/adjusters/dial.h"
#include "kx/adjusters/geardial.h"
#include "kx/adjusters/slider.h"
#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/binary/rockerswitch.h"
#include "kx/decoration/kxbevel.h"
#include "kx/decoration/kxgradient.h"
#include "kx/decoration/kxlabel.h"
#include "kx/decoration/kxpanel.h"
#include "kx/drawing/angles.h"
#include "kx/drawing/shapes.h"
#include "kx/entry/numedit.h"
#include "kx/entry/numspin.h"
#include "kx/framework/control.h"
#include "kx/framework/spinbutton.h"
#include "kx/host/bitmap.h"
#include "kx/host/numeric.h"
#include "kx/indicators/bar.h"
#include "kx/indicators/barinstrument.h"
#include "kx/indicators/flexmeter.h"
#include "kx/indicators/linearmeter.h"
#include "kx/indicators/rmeter.h"
#include "kx/indicators/tank.h"
#include "kx/indicators/thermometer.h"
#include "kx/indicators/valueind.h"
#include "kx/navigation/compass.h"
#include "kx/navigation/vcind.h"
#include "kx/recorders/kxclock.h"
#include "kx/recorders/minitrend.h"
#include "kx/recorders/ophourcounter.h"
#include "kx/recorders/oppoint.h"
#include "kx/recorders/printtrend.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

const char* const kMisc = "KxMisc";
const char* const kAnalogInd = "KxAnalogInd";
const char* const kAnalogAdj = "KxAnalogAdj";
const char* const kBinary = "KxBinary";

struct TMaker {
    TKxCatalogueEntry::TFactory factory = nullptr;
    const char* header = nullptr;
    TKxCatalogueEntry::TIconPainter icon = nullptr;
    bool container = false;
};

template <class T>
QWidget* make(QWidget* parent) {
    return new T(parent);
}

template <class T>
constexpr TMaker Component(const char* header, TKxCatalogueEntry::TIconPainter icon = nullptr) {
    return TMaker{&make<T>, header, icon};
}

template <class T>
constexpr TMaker Container(const char* header) {
    return TMaker{&make<T>, header, nullptr, true};
}

void glyph120(TCanvas& c, const TRect& r) {
    KxPaintRoundMeterGlyph(c, r, 300, 120);
}
void glyph180(TCanvas& c, const TRect& r) {
    KxPaintRoundMeterGlyph(c, r, 270, 180);
}
void glyph270(TCanvas& c, const TRect& r) {
    KxPaintRoundMeterGlyph(c, r, 225, 270);
}

struct TRow {
    const char* page;
    const char* className;
    const char* description;
    TMaker maker;
};

// The palette, in order. See catalogue.h for how a new component takes its row.
const TRow kRows[] = {
    {kMisc, "TKxClock", "Clock showing the time of day",
     Component<TKxClock>("kx/recorders/kxclock.h")},
    {kMisc, "TKxOpHourCounter", "Operating-hour counter kept in an INI file",
     Component<TKxOpHourCounter>("kx/recorders/ophourcounter.h")},
    {kMisc, "TKxLabel", "Status label showing one of up to 32 texts",
     Component<TKxLabel>("kx/decoration/kxlabel.h")},
    {kMisc, "TKxBevel", "Raised or lowered bevel frame",
     Component<TKxBevel>("kx/decoration/kxbevel.h")},
    {kMisc, "TKxPanel", "Panel with bevels and a gradient surface",
     Container<TKxPanel>("kx/decoration/kxpanel.h")},
    {kMisc, "TKxGradient", "Area filled with a colour gradient",
     Component<TKxGradient>("kx/decoration/kxgradient.h")},
    {kMisc, "TKxTimerSpeedBtn", "Speed button that repeats while held down",
     Component<TKxTimerSpeedBtn>("kx/framework/spinbutton.h")},
    {kMisc, "TKxSpinButton", "Pair of up and down spin buttons",
     Component<TKxSpinButton>("kx/framework/spinbutton.h")},
    {kMisc, "TKxNumEdit", "Numeric edit with number bases and engineering prefixes",
     Component<TKxNumEdit>("kx/entry/numedit.h")},
    {kMisc, "TKxNumSpin", "Numeric edit with spin buttons",
     Component<TKxNumSpin>("kx/entry/numspin.h")},
    {kAnalogInd, "TKxValueInd", "Numeric readout with names, unit, sector colour and blinking",
     Component<TKxValueInd>("kx/indicators/valueind.h")},
    {kAnalogInd, "TKxBar", "Plain bar: solid, LED chain, marker or sector colours",
     Component<TKxBar>("kx/indicators/bar.h")},
    {kAnalogInd, "TKxVBar", "Upright bar with names, value readout, overflow triangles and markers",
     Component<TKxVBar>("kx/indicators/barinstrument.h")},
    {kAnalogInd, "TKxHBar",
     "Horizontal bar with names, value readout, overflow triangles and markers",
     Component<TKxHBar>("kx/indicators/barinstrument.h")},
    {kAnalogInd, "TKxThermometer", "Thermometer: glass tube and bulb filled to the reading, scale",
     Component<TKxThermometer>("kx/indicators/thermometer.h")},
    {kAnalogInd, "TKxTank", "Tank: shaded vessel whose liquid level is the reading",
     Component<TKxTank>("kx/indicators/tank.h")},
    {kAnalogInd, "TKxVMeter", "Upright linear meter with pointer, sectors and value readout",
     Component<TKxVMeter>("kx/indicators/linearmeter.h")},
    {kAnalogInd, "TKxHMeter", "Horizontal linear meter with pointer and sectors",
     Component<TKxHMeter>("kx/indicators/linearmeter.h")},
    {kAnalogInd, "TKxFlexHMeter", "Horizontal linear meter that lays itself out to any size",
     Component<TKxFlexHMeter>("kx/indicators/flexmeter.h")},
    {kAnalogInd, "TKxFlexVMeter", "Upright linear meter that lays itself out to any size",
     Component<TKxFlexVMeter>("kx/indicators/flexmeter.h")},
    {kAnalogInd, "TKx120Meter", "120\u00b0 round meter with needle, scale, sectors and limits",
     Component<TKx120Meter>("kx/indicators/rmeter.h", glyph120)},
    {kAnalogInd, "TKx180Meter", "180\u00b0 round meter with needle, scale, sectors and limits",
     Component<TKx180Meter>("kx/indicators/rmeter.h", glyph180)},
    {kAnalogInd, "TKx270Meter", "270\u00b0 round meter with needle, scale, sectors and limits",
     Component<TKx270Meter>("kx/indicators/rmeter.h", glyph270)},
    {kAnalogInd, "TKxCompass", "Compass rose with heading pointer or rotating card and course",
     Component<TKxCompass>("kx/navigation/compass.h")},
    {kAnalogInd, "TKxVCInd", "Course and attitude indicator: horizon, pitch, roll, deviation",
     Component<TKxVCInd>("kx/navigation/vcind.h")},
    {kAnalogInd, "TKxOperatingPoint", "Operating point over a characteristic-curve picture",
     Component<TKxOperatingPoint>("kx/recorders/oppoint.h")},
    {kAnalogInd, "TKxMiniTrend", "Mini trend", Component<TKxMiniTrend>("kx/recorders/minitrend.h")},
    {kAnalogInd, "TKxTrend", "Eight-channel trend recorder with cursor",
     Component<TKxTrend>("kx/recorders/trend.h")},
    {kAnalogInd, "TKxPrintTrend", "Trend printer",
     Component<TKxPrintTrend>("kx/recorders/printtrend.h")},
    {kAnalogAdj, "TKxDial", "Dial for setting a value", Component<TKxDial>("kx/adjusters/dial.h")},
    {kAnalogAdj, "TKxGearDial", "Gear dial for setting a value",
     Component<TKxGearDial>("kx/adjusters/geardial.h")},
    {kAnalogAdj, "TKxHSlider", "Horizontal slider for setting a value",
     Component<TKxHSlider>("kx/adjusters/slider.h")},
    {kAnalogAdj, "TKxVSlider", "Vertical slider for setting a value",
     Component<TKxVSlider>("kx/adjusters/slider.h")},
    {kBinary, "TKxLED", "LED lamp", Component<TKxLED>("kx/binary/kxled.h")},
    {kBinary, "TKxColBitBtn", "Colour bit button",
     Component<TKxColBitBtn>("kx/binary/colbitbtn.h")},
    {kBinary, "TKxRockerSwitch", "Rocker switch",
     Component<TKxRockerSwitch>("kx/binary/rockerswitch.h")},
    {kBinary, "TKxToggleSwitch", "Toggle switch",
     Component<TKxToggleSwitch>("kx/binary/leverswitch.h")},
};

std::vector<TKxCatalogueEntry> build() {
    std::vector<TKxCatalogueEntry> entries;
    for (const TRow& row : kRows) {
        TKxCatalogueEntry e;
        e.Page = QString::fromLatin1(row.page);
        e.ClassName = QString::fromLatin1(row.className);
        e.CppName = QStringLiteral("kx::") + e.ClassName;
        e.Header = QString::fromLatin1(row.maker.header);
        e.Description = QString::fromUtf8(row.description);
        e.Factory = row.maker.factory;
        e.IconPainter = row.maker.icon;
        e.Container = row.maker.container;
        entries.push_back(std::move(e));
    }
    return entries;
}

// The component at design time, drawn to its surface (or grabbed when it is some other
// widget).
QImage componentImage(const TKxCatalogueEntry& entry) {
    std::unique_ptr<QWidget> widget(entry.Create(nullptr));
    if (!widget) return {};
    if (auto* control = qobject_cast<TKxControl*>(widget.get())) {
        control->SetDesigning(true);
        control->Loaded();
        control->PaintToSurface();
        return control->Surface().Image().copy();
    }
    return widget->grab().toImage();
}

}  // namespace

QImage TKxCatalogueEntry::Icon(int size) const {
    size = std::clamp(size, 1, 256);
    TBitmap bitmap(size, size);
    TCanvas& canvas = bitmap.Canvas();
    canvas.Brush().SetColor(clBtnFace);
    canvas.FillRect(TRect{0, 0, size, size});
    if (IconPainter) {
        IconPainter(canvas, TRect{0, 0, size, size});
        return bitmap.Image().copy();
    }
    QImage icon = bitmap.Image().copy();
    const QImage shot = componentImage(*this);
    if (shot.isNull()) return icon;
    const QImage small = shot.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&icon);
    painter.drawImage((size - small.width()) / 2, (size - small.height()) / 2, small);
    return icon;
}

const QStringList& KxPalettePages() {
    static const QStringList pages = {QString::fromLatin1(kMisc), QString::fromLatin1(kAnalogInd),
                                      QString::fromLatin1(kAnalogAdj),
                                      QString::fromLatin1(kBinary)};
    return pages;
}

const std::vector<TKxCatalogueEntry>& KxCatalogue() {
    static const std::vector<TKxCatalogueEntry> entries = build();
    return entries;
}

std::vector<const TKxCatalogueEntry*> KxCataloguePage(const QString& page) {
    std::vector<const TKxCatalogueEntry*> result;
    for (const TKxCatalogueEntry& e : KxCatalogue())
        if (e.Page == page) result.push_back(&e);
    return result;
}

const TKxCatalogueEntry* KxFindComponent(const QString& className) {
    for (const TKxCatalogueEntry& e : KxCatalogue())
        if (e.ClassName == className || e.CppName == className) return &e;
    return nullptr;
}

QWidget* KxCreateComponent(const QString& className, QWidget* parent) {
    const TKxCatalogueEntry* e = KxFindComponent(className);
    return e ? e->Create(parent) : nullptr;
}

void KxPaintRoundMeterGlyph(TCanvas& canvas, const TRect& rect, int32_t startAngle, int32_t sweep) {
    const int32_t w = rect.Right - rect.Left;
    const int32_t h = rect.Bottom - rect.Top;
    const int32_t margin = std::max(1, std::min(w, h) / 12);
    if (w <= 2 * margin || h <= 2 * margin) return;
    sweep = std::clamp(sweep, 1, 360);
    startAngle = (startAngle % 360 + 360) % 360;

    // The extent of the unit arc with its pivot: the two ends and every quarter the
    // scale passes (angles from twelve o'clock, clockwise; y grows downwards).
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    auto extend = [&](double degrees) {
        const double a = degrees * M_PI / 180.0;
        minX = std::min(minX, std::sin(a));
        maxX = std::max(maxX, std::sin(a));
        minY = std::min(minY, -std::cos(a));
        maxY = std::max(maxY, -std::cos(a));
    };
    extend(startAngle);
    extend(startAngle + sweep);
    for (int32_t q = (startAngle / 90 + 1) * 90; q < startAngle + sweep; q += 90)
        extend(q);
    // The pivot's cap reaches a sixth of the radius around the pivot.
    constexpr double kCap = 1.0 / 6.0;
    minX = std::min(minX, -kCap);
    maxX = std::max(maxX, kCap);
    minY = std::min(minY, -kCap);
    maxY = std::max(maxY, kCap);
    const double radius =
        std::min((w - 2 * margin) / (maxX - minX), (h - 2 * margin) / (maxY - minY));
    const int32_t r = std::max(1, int32_t(radius));
    // Centred in the rectangle.
    const TPoint pivot{rect.Left + Round((w - (maxX - minX) * r) / 2.0 - minX * r),
                       rect.Top + Round((h - (maxY - minY) * r) / 2.0 - minY * r)};

    const TRect ring{pivot.X - r, pivot.Y - r, pivot.X + r + 1, pivot.Y + r + 1};
    canvas.Pen().SetStyle(psClear);
    const TColor sectors[3] = {clYellow, clGreen, clRed};
    for (int32_t k = 0; k < 3; ++k) {
        canvas.Brush().SetColor(sectors[k]);
        KxRoundSector(canvas, ring, float(startAngle) + float(sweep) * float(k) / 3.0f,
                      float(sweep) / 3.0f);
    }
    const int32_t inner = r - std::max(2, r / 3);
    canvas.Brush().SetColor(clBtnFace);
    canvas.Ellipse(pivot.X - inner, pivot.Y - inner, pivot.X + inner + 1, pivot.Y + inner + 1);

    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetColor(clBlack);
    canvas.Pen().SetWidth(std::max(1, r / 8));
    const TPoint tip = KxRotate(TPoint{pivot.X, pivot.Y - (r * 7) / 8}, pivot,
                                float(startAngle) + float(sweep) * 0.6f, true);
    canvas.MoveTo(pivot.X, pivot.Y);
    canvas.LineTo(tip.X, tip.Y);
    const int32_t dot = std::max(1, r / 6);
    canvas.Brush().SetColor(clBlack);
    canvas.Ellipse(pivot.X - dot, pivot.Y - dot, pivot.X + dot + 1, pivot.Y + dot + 1);
}

}  // namespace kx
