#include "kx/drawing/text.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "kx/drawing/angles.h"
#include "kx/drawing/strings.h"
#include "kx/host/graphics.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

enum class VAlign { Top, Middle, Bottom, None };

VAlign VerticalOf(toPos pos) {
    switch (pos) {
        case toTopLeft:
        case toTopCenter:
        case toTopRight:
            return VAlign::Top;
        case toMidLeft:
        case toMidCenter:
        case toMidRight:
            return VAlign::Middle;
        case toBotLeft:
        case toBotCenter:
        case toBotRight:
            return VAlign::Bottom;
    }
    return VAlign::None;
}

}  // namespace

void KxGetTextSize(TCanvas& canvas, int32_t& width, int32_t& height, TPoint& half,
                   const QString& text) {
    width = canvas.TextWidth(text);
    height = canvas.TextHeight(text);
    half = TPoint{Div(width, 2), Div(height, 2)};
}

void KxGetMaxTokenSize(TCanvas& canvas, int32_t& width, int32_t& height, const QString& text) {
    KxGetMaxTokenSize2(canvas, width, height, text, u';');
}

void KxGetMaxTokenSize2(TCanvas& canvas, int32_t& width, int32_t& height, const QString& text,
                        QChar separator) {
    height = canvas.TextHeight(text);
    width = 0;
    QString rest = text;
    QString lastToken;
    while (rest.contains(separator)) {
        lastToken = KxStrToken(rest, separator);
        const int32_t w = canvas.TextWidth(lastToken);
        if (w > width) width = w;
    }
    // A wider rest takes the width of the last token, not its own: lists made here end
    // in a separator, so the rest is empty there.
    if (canvas.TextWidth(rest) > width) width = canvas.TextWidth(lastToken);
}

void KxTextOut(TCanvas& canvas, int32_t x, int32_t y, const QString& text, toPos pos) {
    int32_t w = 0;
    int32_t h = 0;
    TPoint half;
    KxGetTextSize(canvas, w, h, half, text);
    int32_t left = 0;
    int32_t top = 0;
    switch (pos) {
        case toTopLeft:
        case toMidLeft:
        case toBotLeft:
            left = x;
            break;
        case toTopCenter:
        case toMidCenter:
        case toBotCenter:
            left = WrapSub(x, half.X);
            break;
        case toTopRight:
        case toMidRight:
        case toBotRight:
            left = WrapSub(x, w);
            break;
    }
    switch (VerticalOf(pos)) {
        case VAlign::Top:
            top = y;
            break;
        case VAlign::Middle:
            top = WrapSub(y, half.Y);
            break;
        case VAlign::Bottom:
            top = WrapSub(y, h);
            break;
        case VAlign::None:
            break;
    }
    canvas.TextOut(left, top, text);
}

void KxTextOut3D(TCanvas& canvas, int32_t x, int32_t y, TColor textColor, TColor lightColor,
                 TColor shadowColor, const QString& text, toPos pos, bool is3D) {
    if (is3D) {
        canvas.Font().SetColor(shadowColor);
        KxTextOut(canvas, WrapAdd(x, 1), WrapAdd(y, 1), text, pos);
        canvas.Font().SetColor(lightColor);
        KxTextOut(canvas, WrapSub(x, 1), WrapSub(y, 1), text, pos);
    }
    canvas.Font().SetColor(textColor);
    KxTextOut(canvas, x, y, text, pos);
}

namespace {

// Runs draw(lineY, line) for every "|"-separated line of text, the block anchored by pos.
template <typename DrawLine>
void ForEachLine(TCanvas& canvas, int32_t y, int32_t lineSpacing, const QString& text, toPos pos,
                 DrawLine draw) {
    const int32_t n = KxCharCount(text, u'|');
    const int32_t step = WrapAdd(canvas.TextHeight(QStringLiteral("X")), lineSpacing);
    const int32_t block = static_cast<int32_t>(static_cast<uint32_t>(step) * uint32_t(n));
    int32_t lineY = y;
    switch (VerticalOf(pos)) {
        case VAlign::Middle:
            lineY = WrapSub(y, Div(block, 2));
            break;
        case VAlign::Bottom:
            lineY = WrapSub(y, block);
            break;
        case VAlign::Top:
        case VAlign::None:
            break;
    }
    QString rest = text;
    while (!rest.isEmpty()) {
        const QString line = KxStrToken(rest, u'|');
        draw(lineY, line);
        lineY = WrapAdd(lineY, step);
    }
}

}  // namespace

QString KxElideLines(TCanvas& canvas, const QString& text, QChar separator, int32_t width) {
    static const QString kEllipsis(QChar(0x2026));
    QStringList lines = text.split(separator);
    bool changed = false;
    for (QString& line : lines) {
        if (canvas.TextWidth(line) <= width) continue;
        changed = true;
        // The longest prefix that fits with the ellipsis (widths grow with the prefix).
        qsizetype lo = 0, hi = line.size();
        while (lo < hi) {
            const qsizetype mid = (lo + hi + 1) / 2;
            if (canvas.TextWidth(line.left(mid) + kEllipsis) <= width)
                lo = mid;
            else
                hi = mid - 1;
        }
        line = canvas.TextWidth(line.left(lo) + kEllipsis) <= width ? line.left(lo) + kEllipsis
                                                                    : QString();
    }
    return changed ? lines.join(separator) : text;
}

void KxTextOutMultiLine(TCanvas& canvas, int32_t x, int32_t y, int32_t lineSpacing,
                        const QString& text, toPos pos) {
    ForEachLine(canvas, y, lineSpacing, text, pos, [&](int32_t lineY, const QString& line) {
        KxTextOut(canvas, x, lineY, line, pos);
    });
}

void KxTextOutMultiLine3D(TCanvas& canvas, int32_t x, int32_t y, int32_t lineSpacing,
                          TColor textColor, TColor lightColor, TColor shadowColor,
                          const QString& text, toPos pos, bool is3D) {
    ForEachLine(canvas, y, lineSpacing, text, pos, [&](int32_t lineY, const QString& line) {
        KxTextOut3D(canvas, x, lineY, textColor, lightColor, shadowColor, line, pos, is3D);
    });
}

void KxRotTextOut(TCanvas& canvas, TPoint anchor, float angle, const QString& text, toPos pos) {
    // A non-finite angle has no direction: the text stays unturned.
    const int32_t tenths = std::isfinite(angle) ? Trunc(static_cast<double>(angle) * 10) : 0;
    const int32_t h = canvas.TextHeight(text);

    TFont previous;
    previous.Assign(canvas.Font());
    canvas.Font().SetOrientation(WrapSub(0, tenths));

    TPoint q = anchor;
    const int32_t midY = WrapSub(anchor.Y, Div(h, 2));
    switch (pos) {
        case toTopLeft:
            canvas.SetTextAlign(TA_LEFT | TA_TOP);
            break;
        case toTopCenter:
            canvas.SetTextAlign(TA_CENTER | TA_TOP);
            break;
        case toTopRight:
            canvas.SetTextAlign(TA_RIGHT | TA_TOP);
            break;
        case toMidLeft:
            q.Y = midY;
            canvas.SetTextAlign(TA_LEFT | TA_TOP);
            break;
        case toMidCenter:
            q.Y = midY;
            canvas.SetTextAlign(TA_CENTER | TA_TOP);
            break;
        case toMidRight:
            q.Y = midY;
            canvas.SetTextAlign(TA_RIGHT | TA_TOP);
            break;
        case toBotLeft:
            canvas.SetTextAlign(TA_LEFT | TA_BASELINE);
            break;
        case toBotCenter:
            canvas.SetTextAlign(TA_CENTER | TA_BOTTOM);
            break;
        case toBotRight:
            canvas.SetTextAlign(TA_RIGHT | TA_BOTTOM);
            break;
    }
    q = KxRotate(q, anchor, angle, true);
    canvas.TextOut(q.X, q.Y, text);
    canvas.Font().Assign(previous);
}

void KxDrawNumberBox(TCanvas& canvas, TBitmap& cache, const TRect& box, TColor fill,
                     const TFont& font, const QString& text, int32_t rightInset) {
    const int32_t w = WrapSub(box.Right, box.Left), h = WrapSub(box.Bottom, box.Top);
    if (box.Right <= box.Left || box.Bottom <= box.Top) return;
    const TPoint origin = canvas.GridOrigin();
    cache.SetDeviceGrid(canvas.DeviceRatio(),
                        TPoint{WrapAdd(origin.X, box.Left), WrapAdd(origin.Y, box.Top)});
    cache.SetSize(w, h);
    TCanvas& c = cache.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(fill);
    c.FillRect(TRect{0, 0, w, h});
    c.SetFont(font);
    c.Brush().SetStyle(bsClear);
    const int32_t room = WrapSub(w, rightInset);
    // A number cut at the box's edge would read as another number.
    QString shown = text;
    if (c.TextWidth(text) > room) {
        const int32_t hash = std::max(1, c.TextWidth(QStringLiteral("#")));
        shown = QString(std::max(1, room / hash), QLatin1Char('#'));
    }
    KxTextOut(c, room, 0, shown, toTopRight);
    canvas.SetCopyMode(cmSrcCopy);
    canvas.Draw(box.Left, box.Top, cache);
}

}  // namespace kx
