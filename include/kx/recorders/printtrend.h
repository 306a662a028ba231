#pragma once
// TKxPrintTrend: prints a range of a TKxTrend's records on a printer, into a PDF file or
// into a PNG image. A non-visual component: it sits on the palette beside the trends, so
// the catalogue's factory must be able to make it as a widget; at design time it shows a
// printer glyph, at run time it stays hidden (setVisible(true) is refused unless
// Designing) and takes no room, input or paint time.
//
// Properties, in declaration order:
//  - Trend (TKxTrend*, none): the trend printed; a guarded pointer, so a deleted trend
//    reads as none.
//  - FirstRecord, LastRecord (int, -1): the records printed, both included; a negative
//    value means the first (last) record of the store, and both are clipped to the store.
//  - Title (QString, empty): a heading above the chart, in the trend's CaptionFont.
//  - Orientation (poPortrait, poLandscape; poLandscape): the page orientation for Print
//    and PrintToPdf (a PNG takes the size it is given). Other values are ignored.
//  - MarginLeft, MarginTop, MarginRight, MarginBottom (double mm, 10): the room left free
//    on each side; NaN, negative or above 1000 ignored. Print asks the printer for them;
//    a printer that cannot take them keeps its own.
//
// The page, top down: the Title (when set), the time of the first and the last printed
// record, the top row with the scale headings (ScaleHeading) and the trend's Caption
// (opCaption), the chart with its scales, and the date/time labels below it (opDate,
// opTime). The chart shows what the trend's curve area shows, but records spread evenly
// over the width (first at the left edge, last at the right; a single record in the
// middle) and every channel's whole digit range over the height, as at ZoomY 1 without
// MoveY: a printout documents the records, not the current view. It draws the trend's
// Color as the background, the fill channel and limit bands, the grid (ColorGrid,
// GridYSteps rows; the vertical lines stand where the time labels do, about every 25 mm
// of width and at most every record), each visible channel in its colour and PenWidth
// (as screen pixels, i.e. scaled by the resolution / 96), and separator records as
// vertical lines in ColorSeparator. The left and right scales (opLeftScale with
// LeftScaleCh, opRightScale with AbsScaleCh) label the grid rows with ScaleLabelText,
// skipping rows closer than a label's height. Texts use the trend's fonts and colours on
// white paper; the time labels, which the trend draws in ColorTime on its curve area,
// are printed below the chart in the Font's colour. With more than four records per
// device pixel of width, a curve keeps each pixel column's first, lowest, highest and
// last point, so peaks stay visible and the drawing stays small.
//
// Why QPainter: the trend draws through TCanvas, whose raster rules fix every pixel on
// the screen's grid. A printout is drawn at the device's resolution (1200 dpi for PDF)
// with fractional coordinates and scaled pens and fonts, which the integer canvas cannot
// express; so the printer draws with a QPainter on the paint device itself, and shares
// with the trend the texts (ScaleLabelText, ScaleHeading, TimeLabelText) and the value
// conversions rather than the drawing.
//
// Results: Print, PrintToPdf and PrintToPng return false without a trend, without records
// in the range, when painting cannot begin, or when the file cannot be written; they
// never throw. Files are written through a temporary file that replaces the old one only
// when complete, so a failed print leaves an existing file as it was. PrintToPng draws a
// white page of 1..16384 pixels a side at 96 dpi; other sizes, and margins that leave no
// room, return false. A page too small for the chart below its texts prints the texts.
#include <QPointer>
#include <QSize>
#include <QString>
#include <cstdint>

#include "kx/framework/control.h"
#include "kx/recorders/trend.h"

class QPainter;
class QPagedPaintDevice;
class QPrinter;
class QRectF;

namespace kx {

enum TPrintOrientation : int { poPortrait, poLandscape };

class TKxPrintTrend : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(kx::TKxTrend* Trend READ Trend WRITE SetTrend)
    Q_PROPERTY(int FirstRecord READ FirstRecord WRITE setFirstRecord)
    Q_PROPERTY(int LastRecord READ LastRecord WRITE setLastRecord)
    Q_PROPERTY(QString Title READ Title WRITE setTitle)
    Q_PROPERTY(int Orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(double MarginLeft READ MarginLeft WRITE setMarginLeft)
    Q_PROPERTY(double MarginTop READ MarginTop WRITE setMarginTop)
    Q_PROPERTY(double MarginRight READ MarginRight WRITE setMarginRight)
    Q_PROPERTY(double MarginBottom READ MarginBottom WRITE setMarginBottom)

  public:
    explicit TKxPrintTrend(QWidget* parent = nullptr);
    ~TKxPrintTrend() override;

    TKxTrend* Trend() const { return trend_.data(); }
    void SetTrend(TKxTrend* t) { trend_ = t; }
    int32_t FirstRecord() const { return firstRecord_; }
    void SetFirstRecord(int32_t i) { firstRecord_ = i; }
    int32_t LastRecord() const { return lastRecord_; }
    void SetLastRecord(int32_t i) { lastRecord_ = i; }
    QString Title() const { return title_; }
    void SetTitle(const QString& s) { title_ = s; }
    TPrintOrientation Orientation() const { return orientation_; }
    void SetOrientation(TPrintOrientation o);
    double MarginLeft() const { return margins_[0]; }
    void SetMarginLeft(double mm) { setMargin(0, mm); }
    double MarginTop() const { return margins_[1]; }
    void SetMarginTop(double mm) { setMargin(1, mm); }
    double MarginRight() const { return margins_[2]; }
    void SetMarginRight(double mm) { setMargin(2, mm); }
    double MarginBottom() const { return margins_[3]; }
    void SetMarginBottom(double mm) { setMargin(3, mm); }

    // The store indices that would be printed; false when nothing would be.
    bool PrintRange(int32_t& first, int32_t& last) const;

    bool Print(QPrinter& printer);
    // An A4 page at 1200 dpi.
    bool PrintToPdf(const QString& file);
    bool PrintToPng(const QString& file, QSize size);
    // Draws the page into page (device coordinates of painter, at dpi dots per inch);
    // false, drawing nothing, when there is nothing to print or dpi is not positive.
    bool Render(QPainter& painter, const QRectF& page, double dpi) const;

    // Qt-style setters for uic.
    void setFirstRecord(int v) { SetFirstRecord(v); }
    void setLastRecord(int v) { SetLastRecord(v); }
    void setTitle(const QString& v) { SetTitle(v); }
    int orientation() const { return int(orientation_); }
    void setOrientation(int v);
    void setMarginLeft(double v) { SetMarginLeft(v); }
    void setMarginTop(double v) { SetMarginTop(v); }
    void setMarginRight(double v) { SetMarginRight(v); }
    void setMarginBottom(double v) { SetMarginBottom(v); }

    void setVisible(bool visible) override;

  protected:
    void Paint() override;

  private:
    void setMargin(int side, double mm);
    bool printPaged(QPagedPaintDevice& device, int resolution);

    QPointer<TKxTrend> trend_;
    int32_t firstRecord_ = -1;
    int32_t lastRecord_ = -1;
    QString title_;
    TPrintOrientation orientation_ = poLandscape;
    double margins_[4] = {10.0, 10.0, 10.0, 10.0};
};

}  // namespace kx
