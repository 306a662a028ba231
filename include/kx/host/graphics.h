#pragma once
// TFont, TPen and TBrush: small value holders with a change callback, converted to
// their Qt counterparts on demand. The font keeps its colour, as the classic one does.
#include <QFont>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QObject>
#include <QRawFont>
#include <QString>
#include <array>
#include <functional>
#include <memory>

#include "kx/host/color.h"

namespace kx {

enum TPenStyle : int { psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame };
enum TPenMode : int {
    pmBlack,
    pmWhite,
    pmNop,
    pmNot,
    pmCopy,
    pmNotCopy,
    pmMergePenNot,
    pmMaskPenNot,
    pmMergeNotPen,
    pmMaskNotPen,
    pmMerge,
    pmNotMerge,
    pmMask,
    pmNotMask,
    pmXor,
    pmNotXor
};
enum TBrushStyle : int {
    bsSolid,
    bsClear,
    bsHorizontal,
    bsVertical,
    bsFDiagonal,
    bsBDiagonal,
    bsCross,
    bsDiagCross
};
enum TFontStyle : uint8_t { fsBold = 1, fsItalic = 2, fsUnderline = 4, fsStrikeOut = 8 };
using TFontStyles = uint8_t;

// Common base: a QObject (so that it can be the sender of a change notification and a
// Q_PROPERTY value) with one change callback.
class TGraphicsObject : public QObject {
    Q_OBJECT
  public:
    using TChangeHandler = std::function<void(QObject* sender)>;
    explicit TGraphicsObject(QObject* parent = nullptr) : QObject(parent) {}
    void SetOnChange(TChangeHandler handler) { onChange_ = std::move(handler); }
    bool HasOnChange() const { return static_cast<bool>(onChange_); }

  protected:
    void Changed();

  private:
    TChangeHandler onChange_;
};

class TPen : public TGraphicsObject {
    Q_OBJECT
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
  public:
    explicit TPen(QObject* parent = nullptr) : TGraphicsObject(parent) {}
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    int32_t Width() const { return width_; }
    // Widths below 1 are drawn as 1, as the classic pens do.
    void SetWidth(int32_t w);
    TPenStyle Style() const { return style_; }
    void SetStyle(TPenStyle s);
    TPenMode Mode() const { return mode_; }
    void SetMode(TPenMode m);
    void Assign(const TPen& other);

  private:
    TColor color_ = clBlack;
    int32_t width_ = 1;
    TPenStyle style_ = psSolid;
    TPenMode mode_ = pmCopy;
};

class TBrush : public TGraphicsObject {
    Q_OBJECT
    Q_PROPERTY(int Color READ Color WRITE SetColor)
  public:
    explicit TBrush(QObject* parent = nullptr) : TGraphicsObject(parent) {}
    TColor Color() const { return color_; }
    // Setting a colour makes a clear brush solid again, as the classic brush does.
    void SetColor(TColorArg c);
    TBrushStyle Style() const { return style_; }
    void SetStyle(TBrushStyle s);
    void Assign(const TBrush& other);

  private:
    TColor color_ = clWhite;
    TBrushStyle style_ = bsSolid;
};

// Font sizes are in points at 96 pixels per inch; Height is the classic pixel height
// (negative: character height without internal leading). Family names "Arial",
// "Times New Roman" and "Courier New" map to their metric-compatible Liberation fonts,
// "MS Sans Serif" and "System" to the sans fallback.
class TFont : public TGraphicsObject {
    Q_OBJECT
    Q_PROPERTY(QString Name READ Name WRITE SetName)
    Q_PROPERTY(int Size READ Size WRITE SetSize)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(int Style READ Style WRITE SetStyle)
  public:
    static constexpr int kPixelsPerInch = 96;
    explicit TFont(QObject* parent = nullptr) : TGraphicsObject(parent) {}
    QString Name() const { return name_; }
    void SetName(const QString& n);
    int32_t Size() const;
    void SetSize(int32_t points);
    int32_t Height() const { return height_; }
    void SetHeight(int32_t pixels);
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    TFontStyles Style() const { return style_; }
    void SetStyle(TFontStyles s);
    // Escapement in tenths of a degree, counter-clockwise on the screen.
    int32_t Orientation() const { return orientation_; }
    void SetOrientation(int32_t tenths);
    void Assign(const TFont& other);
    // Family, size and style of a Qt font (the colour and orientation stay), then one
    // change notification when anything differs. A point size converts at 96 pixels per
    // inch, rounded half to even; a font without a size keeps the height.
    void AssignQFont(const QFont& font);
    bool SameAs(const TFont& other) const;

    const QFont& ToQFont() const;
    const QFontMetrics& Metrics() const;

    // Numbers are drawn very often (every reading of a readout). A text made only of the
    // characters of numbers ("0".."9", ".", ",", "-", "+", "E", "#", "%", space), or of
    // times and durations (those and ":", "h", "m", "s"), whose glyphs this font has, and
    // whose pairs the font does not kern, needs no shaping: it
    // is laid out from the per-character advances, which gives the same glyphs at the
    // same places as the full text layout, many times faster. Fills run (when given) with
    // the glyphs at their places on the baseline from x = 0, and width with the advance.
    // Returns false (and leaves the outputs alone) for any other text.
    bool LayOutNumber(const QString& text, QGlyphRun* run, int& width) const;

    // The Qt family a classic family name maps to.
    static QString MapFamily(const QString& name);

  private:
    void invalidate();
    QString name_ = QStringLiteral("MS Sans Serif");
    int32_t height_ = -11;  // 8 points
    TColor color_ = clWindowText;
    TFontStyles style_ = 0;
    int32_t orientation_ = 0;
    mutable std::unique_ptr<QFont> qfont_;
    mutable std::unique_ptr<QFontMetrics> metrics_;
    // The raw font and whether its number characters kern, made on first use.
    mutable std::unique_ptr<QRawFont> raw_;
    mutable int numbersPlain_ = -1;
    // The same for texts that also hold the characters of times and durations.
    mutable bool timesPlain_ = false;
    // Advance and glyph of each number character, in the order of the character set.
    mutable std::array<int, 22> numberAdvance_{};
    mutable std::array<quint32, 22> numberGlyph_{};
};

}  // namespace kx
