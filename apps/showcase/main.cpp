// kxshowcase [OUTDIR]: renders the drawing toolkit's shapes, gradients and text routines
// to PNG pages in OUTDIR (default out/) and prints the path of each page.
#include <QDir>
#include <QGuiApplication>
#include <array>
#include <cstdio>

#include "kx/drawing/arrows.h"
#include "kx/drawing/gradient.h"
#include "kx/drawing/leds.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "sheet.h"

using namespace kx;
using kxshow::CenterOf;
using kxshow::MarkAnchor;
using kxshow::TSheet;

namespace {

constexpr int32_t kPageWidth = 984;

constexpr std::array<const char*, 8> kLedNames = {"sRound",       "sArrowLeft",   "sArrowRight",
                                                  "sArrowUp",     "sArrowDown",   "sRectangle",
                                                  "sDiamondLeft", "sDiamondRight"};
constexpr std::array<const char*, 14> kGradientNames = {
    "gsHorizontal1", "gsHorizontal2", "gsHorizontal3", "gsVertical1", "gsVertical2",
    "gsVertical3",   "gsElliptic1",   "gsElliptic2",   "gsElliptic3", "gsRectangle",
    "gsDiamond1",    "gsDiamond2",    "gsTopLeft",     "gsTopRight"};
constexpr std::array<const char*, 9> kPosNames = {"toTopLeft", "toTopCenter", "toTopRight",
                                                  "toMidLeft", "toMidCenter", "toMidRight",
                                                  "toBotLeft", "toBotCenter", "toBotRight"};

QString latin(const char* s) {
    return QString::fromLatin1(s);
}

TRect centred(TPoint c, int32_t w, int32_t h) {
    return Bounds(c.X - w / 2, c.Y - h / 2, w, h);
}

// ---- shapes page ----------------------------------------------------------------------

void drawLeds(TSheet& sheet) {
    sheet.Section(QStringLiteral("LED shapes"), QStringLiteral("KxDrawLED, lit and dark"));
    const auto cards = sheet.Cards(8, 102, 84, [](int32_t i) { return latin(kLedNames[i]); });
    constexpr TColor lit[] = {clLime,           clRed,           clRed, clYellow, clYellow, clAqua,
                              RGB(255, 128, 0), RGB(255, 128, 0)};
    constexpr TColor dark[] = {clGreen, clMaroon, clMaroon,        clOlive,
                               clOlive, clTeal,   RGB(128, 64, 0), RGB(128, 64, 0)};
    for (int32_t i = 0; i < 8; ++i) {
        const TPoint c = CenterOf(cards[i]);
        const bool wide = i >= sDiamondLeft;
        const int32_t w = wide ? 40 : 32, h = wide ? 24 : 32;
        KxDrawLED(sheet.Canvas(), centred({c.X - w / 2 - 3, c.Y}, w, h), TLEDShape(i), clBlack,
                  lit[i]);
        KxDrawLED(sheet.Canvas(), centred({c.X + w / 2 + 3, c.Y}, w, h), TLEDShape(i), clBlack,
                  dark[i]);
    }
}

void drawArrows(TSheet& sheet) {
    constexpr float angles[] = {0.0f, 45.0f, 150.0f, 270.0f};
    sheet.Section(QStringLiteral("Pointer kinds"),
                  QStringLiteral("KxArrowField + KxArrowDraw, turned clockwise about the pivot"));
    const auto cards = sheet.Cards(32, 102, 104, [&](int32_t i) {
        return QStringLiteral("kind %1, %2\u00B0").arg(i % 8).arg(double(angles[i / 8]));
    });
    TCanvas& c = sheet.Canvas();
    for (int32_t i = 0; i < 32; ++i) {
        const TPoint m = CenterOf(cards[i]);
        // A faint dial face under the pointer.
        c.Pen().SetColor(TSheet::kCardLine);
        c.Brush().SetColor(clWhite);
        c.Ellipse(m.X - 38, m.Y - 38, m.X + 39, m.Y + 39);
        TArrowPoints field{}, turned{};
        KxArrowField(i % 8, 0, TRect{0, 0, 68, 68}, field, kArrowPointsHigh);
        for (size_t k = 1; k < field.size(); ++k)
            field[k] = {field[k].X + m.X - 34, field[k].Y + m.Y - 34};
        c.Pen().SetColor(RGB(120, 0, 0));
        c.Brush().SetColor(RGB(220, 30, 30));
        KxArrowDraw(c, angles[i / 8], field, kArrowPointsHigh, turned, kArrowPointsHigh, true);
        c.Pen().SetColor(clBlack);
        c.Brush().SetColor(RGB(60, 60, 60));
        c.Ellipse(m.X - 3, m.Y - 3, m.X + 4, m.Y + 4);
    }
}

void drawBevelsAndEllipses(TSheet& sheet) {
    static const QString labels[] = {
        QStringLiteral("raised"),         QStringLiteral("pressed"),
        QStringLiteral("raised, filled"), QStringLiteral("pressed, filled"),
        QStringLiteral("ellipse raised"), QStringLiteral("ellipse sunken"),
        QStringLiteral("raised, red"),    QStringLiteral("sunken, green")};
    sheet.Section(QStringLiteral("Bevels and 3-D ellipses"),
                  QStringLiteral("KxBtnBevel, KxEllipse3D"));
    const auto cards = sheet.Cards(8, 102, 84, [&](int32_t i) { return labels[i]; });
    TCanvas& c = sheet.Canvas();
    for (int32_t i = 0; i < 4; ++i) {
        TRect r = centred(CenterOf(cards[i]), 72, 40);
        c.Pen().SetColor(clBlack);
        KxBtnBevel(c, r, i % 2 == 0, i >= 2, RGB(120, 170, 230));
    }
    constexpr TColor faces[] = {clBtnFace, clBtnFace, clRed, clLime};
    for (int32_t i = 0; i < 4; ++i) {
        TRect r = centred(CenterOf(cards[4 + i]), 44, 44);
        KxEllipse3D(c, r, faces[i], i % 2 == 0);
    }
}

void drawSpotsAndThumbs(TSheet& sheet) {
    static const QString labels[] = {
        QStringLiteral("r 5, white"),      QStringLiteral("r 8, lime"),
        QStringLiteral("r 12, red"),       QStringLiteral("r 18, face"),
        QStringLiteral("horizontal, red"), QStringLiteral("horizontal, shadow"),
        QStringLiteral("vertical, blue"),  QStringLiteral("vertical, shadow")};
    sheet.Section(QStringLiteral("Sunken spots and slider thumbs"),
                  QStringLiteral("KxCircleAtPoint, KxThumb (size 36)"));
    const auto cards = sheet.Cards(8, 102, 84, [&](int32_t i) { return labels[i]; });
    TCanvas& c = sheet.Canvas();
    constexpr int32_t radii[] = {5, 8, 12, 18};
    constexpr TColor fills[] = {clWhite, clLime, clRed, clBtnFace};
    for (int32_t i = 0; i < 4; ++i)
        KxCircleAtPoint(c, CenterOf(cards[i]), radii[i], clBlack, fills[i]);
    constexpr TColor grips[] = {clRed, clBtnShadow, clBlue, clBtnShadow};
    for (int32_t i = 0; i < 4; ++i) {
        const TPoint m = CenterOf(cards[4 + i]);
        const bool vertical = i >= 2;
        // The groove the thumb runs in.
        c.Pen().SetColor(clBtnShadow);
        c.Brush().SetColor(clWhite);
        if (vertical)
            c.Rectangle(m.X - 3, m.Y - 27, m.X + 4, m.Y + 28);
        else
            c.Rectangle(m.X - 40, m.Y - 3, m.X + 41, m.Y + 4);
        KxThumb(c, m, 36, 0, vertical, grips[i]);
    }
}

void drawPointersAndSectors(TSheet& sheet) {
    constexpr int32_t positions[] = {0, 250, 600, 1000};
    constexpr float sectors[][2] = {{0, 90}, {45, 180}, {200, 100}, {300, 330}};
    sheet.Section(
        QStringLiteral("Track pointers and round sectors"),
        QStringLiteral("KxDrawHPointer (position of 1000), KxRoundSector (start, sweep)"));
    const auto cards = sheet.Cards(8, 102, 84, [&](int32_t i) {
        if (i < 4) return QStringLiteral("position %1").arg(positions[i]);
        return QStringLiteral("%1\u00B0 + %2\u00B0")
            .arg(double(sectors[i - 4][0]))
            .arg(double(sectors[i - 4][1]));
    });
    TCanvas& c = sheet.Canvas();
    for (int32_t i = 0; i < 4; ++i) {
        const TPoint m = CenterOf(cards[i]);
        const TRect track{m.X - 40, m.Y - 6, m.X + 40, m.Y - 2};
        TRect groove = track;
        c.Frame3D(groove, clBtnShadow, clBtnHighlight, 1);
        c.Pen().SetColor(clBlack);
        c.Brush().SetColor(RGB(40, 110, 200));
        KxDrawHPointer(c, TRect{track.Left, track.Bottom + 1, track.Right, track.Bottom + 20},
                       positions[i], 6, 12, false);
    }
    for (int32_t i = 0; i < 4; ++i) {
        const TRect r = centred(CenterOf(cards[4 + i]), 52, 52);
        c.Pen().SetColor(TSheet::kCardLine);
        c.Brush().SetColor(clWhite);
        c.Ellipse(r);
        c.Pen().SetColor(RGB(120, 60, 0));
        c.Brush().SetColor(RGB(255, 170, 40));
        KxRoundSector(c, r, sectors[i][0], sectors[i][1]);
    }
}

void drawRoundGradients(TSheet& sheet) {
    constexpr TColor pairs[][2] = {{clWhite, clNavy},
                                   {clYellow, clRed},
                                   {clBtnHighlight, clBtnShadow},
                                   {RGB(200, 255, 200), clGreen}};
    static const QString labels[] = {
        QStringLiteral("white to navy"), QStringLiteral("yellow to red"),
        QStringLiteral("highlight to shadow"), QStringLiteral("mint to green")};
    sheet.Section(QStringLiteral("Round gradient"), QStringLiteral("KxCircleGradFill"));
    const auto cards = sheet.Cards(4, 102, 84, [&](int32_t i) { return labels[i]; });
    // The routine clips to the ellipse of (Left, Top, Bottom, Right), which is the circle
    // only for a square whose Left equals its Top: each is drawn at (0, 0) of a small
    // bitmap and then put on the page. A new bitmap each time: the canvas does not apply
    // a clip region set after an earlier one was cleared.
    for (int32_t i = 0; i < 4; ++i) {
        TBitmap spot(52, 52);
        spot.Canvas().Brush().SetColor(TSheet::kCard);
        spot.Canvas().FillRect(TRect{0, 0, 52, 52});
        KxCircleGradFill(spot.Canvas(), TRect{0, 0, 52, 52}, pairs[i][0], pairs[i][1]);
        const TRect r = centred(CenterOf(cards[i]), 52, 52);
        sheet.Canvas().Draw(r.Left, r.Top, spot);
    }
}

bool shapesPage(const QString& path) {
    TSheet sheet(kPageWidth, QStringLiteral("Drawing toolkit: shapes"),
                 QStringLiteral("LEDs, pointers, bevels, spots, thumbs, sectors and the round "
                                "gradient, drawn on the classic canvas"));
    drawLeds(sheet);
    drawArrows(sheet);
    drawBevelsAndEllipses(sheet);
    drawSpotsAndThumbs(sheet);
    drawPointersAndSectors(sheet);
    drawRoundGradients(sheet);
    return sheet.Save(path);
}

// ---- gradients page -------------------------------------------------------------------

bool gradientsPage(const QString& path) {
    TSheet sheet(kPageWidth, QStringLiteral("Drawing toolkit: gradients"),
                 QStringLiteral("KxGradFill, all fourteen styles"));
    constexpr TColor pairs[][2] = {{RGB(20, 40, 110), RGB(150, 220, 255)},
                                   {RGB(255, 250, 200), RGB(200, 40, 20)}};
    static const QString notes[] = {QStringLiteral("from dark blue to light blue"),
                                    QStringLiteral("from cream to red")};
    for (int32_t p = 0; p < 2; ++p) {
        sheet.Section(p == 0 ? QStringLiteral("Cool") : QStringLiteral("Warm"), notes[p]);
        const auto cards =
            sheet.Cards(14, 120, 104, [](int32_t i) { return latin(kGradientNames[i]); });
        for (int32_t i = 0; i < 14; ++i)
            KxGradFill(sheet.Canvas(), cards[i], pairs[p][0], pairs[p][1], TGradientStyle(i));
    }
    return sheet.Save(path);
}

// ---- text page ------------------------------------------------------------------------

void drawAnchors(TSheet& sheet) {
    sheet.Section(QStringLiteral("Anchored text"),
                  QStringLiteral("KxTextOut: the red cross is the anchor point"));
    const auto cards = sheet.Cards(9, 92, 70, [](int32_t i) { return latin(kPosNames[i]); });
    TCanvas& c = sheet.Canvas();
    for (int32_t i = 0; i < 9; ++i) {
        const TPoint m = CenterOf(cards[i]);
        sheet.SampleFont(10);
        KxTextOut(c, m.X, m.Y, QStringLiteral("Anchor"), toPos(i));
        MarkAnchor(c, m);
    }
}

void drawEmbossed(TSheet& sheet) {
    static const QString labels[] = {QStringLiteral("embossed (light above, shadow below)"),
                                     QStringLiteral("engraved (light and shadow swapped)"),
                                     QStringLiteral("flat (3-D flag off)"),
                                     QStringLiteral("embossed, coloured")};
    sheet.Section(QStringLiteral("Embossed text"), QStringLiteral("KxTextOut3D"));
    const auto cards = sheet.Cards(4, 210, 70, [&](int32_t i) { return labels[i]; });
    TCanvas& c = sheet.Canvas();
    struct Style {
        TColor text, light, shadow;
        bool is3D;
    };
    constexpr Style styles[] = {{clBtnFace, clWhite, clBtnShadow, true},
                                {clBtnFace, clBtnShadow, clWhite, true},
                                {clBlack, clWhite, clBtnShadow, false},
                                {RGB(30, 80, 170), clWhite, RGB(20, 40, 80), true}};
    for (int32_t i = 0; i < 4; ++i) {
        sheet.SampleFont(18, true);
        const TPoint m = CenterOf(cards[i]);
        KxTextOut3D(c, m.X, m.Y, styles[i].text, styles[i].light, styles[i].shadow,
                    QStringLiteral("Pressure"), toMidCenter, styles[i].is3D);
    }
}

void drawMultiLine(TSheet& sheet) {
    constexpr toPos anchors[] = {toTopLeft, toMidCenter, toBotRight, toMidLeft};
    static const QString labels[] = {
        QStringLiteral("toTopLeft, spacing 0"), QStringLiteral("toMidCenter, spacing 2"),
        QStringLiteral("toBotRight, spacing 6"), QStringLiteral("embossed, toMidLeft")};
    sheet.Section(QStringLiteral("Multi-line text"),
                  QStringLiteral("KxTextOutMultiLine(3D): lines separated by \"|\""));
    const auto cards = sheet.Cards(4, 210, 96, [&](int32_t i) { return labels[i]; });
    TCanvas& c = sheet.Canvas();
    constexpr int32_t spacing[] = {0, 2, 6, 2};
    const QString text = QStringLiteral("Tank level|Flow rate|Outlet pressure");
    for (int32_t i = 0; i < 4; ++i) {
        const TRect& r = cards[i];
        TPoint a = CenterOf(r);
        if (anchors[i] == toTopLeft) a = {r.Left + 30, r.Top + 8};
        if (anchors[i] == toBotRight) a = {r.Right - 30, r.Bottom - 6};
        if (anchors[i] == toMidLeft) a.X = r.Left + 30;
        sheet.SampleFont(10);
        if (i < 3)
            KxTextOutMultiLine(c, a.X, a.Y, spacing[i], text, anchors[i]);
        else
            KxTextOutMultiLine3D(c, a.X, a.Y, spacing[i], clBtnFace, clWhite, clBtnShadow, text,
                                 anchors[i], true);
        MarkAnchor(c, a);
    }
}

void drawRotated(TSheet& sheet) {
    constexpr float angles[] = {0, 30, 45, 90, 135, 180, 270, -30};
    sheet.Section(QStringLiteral("Rotated text"),
                  QStringLiteral("KxRotTextOut with toMidLeft, positive angles turn clockwise"));
    const auto cards = sheet.Cards(
        8, 102, 124, [&](int32_t i) { return QStringLiteral("%1\u00B0").arg(double(angles[i])); });
    TCanvas& c = sheet.Canvas();
    for (int32_t i = 0; i < 8; ++i) {
        const TPoint m = CenterOf(cards[i]);
        sheet.SampleFont(9);
        KxRotTextOut(c, m, angles[i], QStringLiteral("Rotated"), toMidLeft);
        MarkAnchor(c, m);
    }
}

bool textPage(const QString& path) {
    TSheet sheet(kPageWidth, QStringLiteral("Drawing toolkit: text"),
                 QStringLiteral("Anchored, embossed, multi-line and rotated text (Arial, i.e. "
                                "Liberation Sans)"));
    drawAnchors(sheet);
    drawEmbossed(sheet);
    drawMultiLine(sheet);
    drawRotated(sheet);
    return sheet.Save(path);
}

}  // namespace

int main(int argc, char** argv) {
    // Fonts need a platform plugin; a headless run must not need a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() > 2 || (args.size() == 2 && args[1].startsWith(u'-'))) {
        std::fputs("usage: kxshowcase [OUTDIR]   (default out/)\n", stderr);
        return 2;
    }
    const QDir dir(args.size() == 2 ? args[1] : QStringLiteral("out"));
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "kxshowcase: cannot create %s\n", qPrintable(dir.path()));
        return 2;
    }
    struct Page {
        const char* file;
        bool (*render)(const QString&);
    };
    constexpr Page pages[] = {{"toolkit-shapes.png", shapesPage},
                              {"toolkit-gradients.png", gradientsPage},
                              {"toolkit-text.png", textPage}};
    int status = 0;
    for (const Page& page : pages) {
        const QString path = dir.filePath(latin(page.file));
        if (page.render(path)) {
            std::printf("%s\n", qPrintable(path));
        } else {
            std::fprintf(stderr, "kxshowcase: cannot write %s\n", qPrintable(path));
            status = 1;
        }
    }
    return status;
}
