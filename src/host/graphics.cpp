#include "kx/host/graphics.h"

#include <QGlyphRun>
#include <QRawFont>
#include <algorithm>
#include <cstdlib>

#include "kx/host/numeric.h"

namespace kx {

void TGraphicsObject::Changed() {
    if (onChange_) onChange_(this);
}

void TPen::SetColor(TColorArg c) {
    if (c == color_) return;
    color_ = c;
    Changed();
}

void TPen::SetWidth(int32_t w) {
    if (w < 1) w = 1;
    if (w == width_) return;
    width_ = w;
    Changed();
}

void TPen::SetStyle(TPenStyle s) {
    if (s == style_) return;
    style_ = s;
    Changed();
}

void TPen::SetMode(TPenMode m) {
    if (m == mode_) return;
    mode_ = m;
    Changed();
}

void TPen::Assign(const TPen& o) {
    if (&o == this) return;
    color_ = o.color_;
    width_ = o.width_;
    style_ = o.style_;
    mode_ = o.mode_;
    Changed();
}

void TBrush::SetColor(TColorArg c) {
    if (c == color_ && style_ != bsClear) return;
    color_ = c;
    if (style_ == bsClear) style_ = bsSolid;
    Changed();
}

void TBrush::SetStyle(TBrushStyle s) {
    if (s == style_) return;
    style_ = s;
    Changed();
}

void TBrush::Assign(const TBrush& o) {
    if (&o == this) return;
    color_ = o.color_;
    style_ = o.style_;
    Changed();
}

namespace {
// MulDiv with rounding half away from zero, as the platform's does.
int32_t mulDiv(int32_t a, int32_t b, int32_t c) {
    int64_t p = int64_t(a) * b;
    int64_t q = (std::llabs(p) * 2 + c) / (2 * int64_t(c));
    return int32_t(p < 0 ? -q : q);
}
}  // namespace

void TFont::invalidate() {
    qfont_.reset();
    metrics_.reset();
    raw_.reset();
    numbersPlain_ = -1;
}

void TFont::SetName(const QString& n) {
    if (n == name_) return;
    name_ = n;
    invalidate();
    Changed();
}

int32_t TFont::Size() const {
    return -mulDiv(height_, 72, kPixelsPerInch);
}

void TFont::SetSize(int32_t points) {
    if (points < -1000 || points > 1000) return;  // out of any sensible range: ignored
    SetHeight(-mulDiv(points, kPixelsPerInch, 72));
}

void TFont::SetHeight(int32_t pixels) {
    if (pixels < -1300 || pixels > 1300) return;
    if (pixels == height_) return;
    height_ = pixels;
    invalidate();
    Changed();
}

void TFont::SetColor(TColorArg c) {
    if (c == color_) return;
    color_ = c;
    Changed();
}

void TFont::SetStyle(TFontStyles s) {
    if (s == style_) return;
    style_ = s;
    invalidate();
    Changed();
}

void TFont::SetOrientation(int32_t tenths) {
    if (tenths == orientation_) return;
    orientation_ = tenths;
    Changed();
}

void TFont::Assign(const TFont& o) {
    if (&o == this) return;
    bool shapeChanged = name_ != o.name_ || height_ != o.height_ || style_ != o.style_;
    name_ = o.name_;
    height_ = o.height_;
    color_ = o.color_;
    style_ = o.style_;
    orientation_ = o.orientation_;
    if (shapeChanged) invalidate();
    Changed();
}

void TFont::AssignQFont(const QFont& f) {
    int32_t height = height_;
    if (f.pixelSize() > 0)
        height = -f.pixelSize();
    else if (f.pointSizeF() > 0)
        height = -Round(std::min(f.pointSizeF(), 1000.0) * kPixelsPerInch / 72.0);
    const TFontStyles style =
        TFontStyles((f.bold() ? fsBold : 0) | (f.italic() ? fsItalic : 0) |
                    (f.underline() ? fsUnderline : 0) | (f.strikeOut() ? fsStrikeOut : 0));
    const QString name = f.family();
    if (name == name_ && height == height_ && style == style_) return;
    name_ = name;
    height_ = std::clamp(height, -1300, 1300);
    style_ = style;
    invalidate();
    Changed();
}

bool TFont::SameAs(const TFont& o) const {
    return name_ == o.name_ && height_ == o.height_ && color_ == o.color_ && style_ == o.style_ &&
           orientation_ == o.orientation_;
}

QString TFont::MapFamily(const QString& name) {
    const QString n = name.trimmed().toLower();
    if (n == u"arial" || n == u"ms sans serif" || n == u"system" || n == u"helvetica" ||
        n == u"tahoma" || n == u"verdana" || n == u"segoe ui" || n.isEmpty())
        return QStringLiteral("Liberation Sans");
    if (n == u"times new roman" || n == u"times") return QStringLiteral("Liberation Serif");
    if (n == u"courier new" || n == u"courier") return QStringLiteral("Liberation Mono");
    return name;
}

const QFont& TFont::ToQFont() const {
    if (!qfont_) {
        auto f = std::make_unique<QFont>(MapFamily(name_));
        int px = height_ < 0 ? -height_ : height_;
        f->setPixelSize(px < 1 ? 1 : px);
        f->setBold(style_ & fsBold);
        f->setItalic(style_ & fsItalic);
        f->setUnderline(style_ & fsUnderline);
        f->setStrikeOut(style_ & fsStrikeOut);
        f->setStyleStrategy(QFont::PreferDefault);
        f->setHintingPreference(QFont::PreferFullHinting);
        qfont_ = std::move(f);
    }
    return *qfont_;
}

namespace {

// The characters of numbers, then those that times and durations add ("12:05:07",
// "0012h:05m:07s"); neither set holds a character that fonts join into ligatures.
const QString& numberChars() {
    static const QString chars = QStringLiteral("0123456789.,-+E#% :hms");
    return chars;
}
constexpr qsizetype kNumberCharCount = 18;

// Whether no pair of chars[0..n) kerns (pairs within chars[0..from) are not asked again).
bool noKerning(const QFontMetrics& fm, const QString& chars, qsizetype from, qsizetype n) {
    for (qsizetype i = 0; i < n; ++i)
        for (qsizetype j = i < from ? from : 0; j < n; ++j) {
            const QString pair = QString(chars[i]) + chars[j];
            if (fm.horizontalAdvance(pair) !=
                fm.horizontalAdvance(chars[i]) + fm.horizontalAdvance(chars[j]))
                return false;
        }
    return true;
}

}  // namespace

bool TFont::LayOutNumber(const QString& text, QGlyphRun* run, int& width) const {
    const QString& chars = numberChars();
    if (text.isEmpty() || text.size() > 64) return false;
    std::array<qsizetype, 64> index{};
    for (qsizetype i = 0; i < text.size(); ++i) {
        index[size_t(i)] = chars.indexOf(text[i]);
        if (index[size_t(i)] < 0) return false;
    }
    if (numbersPlain_ < 0) {
        const QFontMetrics& fm = Metrics();
        raw_ = std::make_unique<QRawFont>(QRawFont::fromFont(ToQFont()));
        bool numberGlyphs = raw_->isValid(), timeGlyphs = numberGlyphs;
        for (qsizetype i = 0; i < chars.size(); ++i) {
            numberGlyph_[size_t(i)] = raw_->glyphIndexesForString(QString(chars[i])).value(0);
            numberAdvance_[size_t(i)] = fm.horizontalAdvance(chars[i]);
            bool& present = i < kNumberCharCount ? numberGlyphs : timeGlyphs;
            present = present && numberGlyph_[size_t(i)] != 0;
        }
        const bool plain = numberGlyphs && noKerning(fm, chars, 0, kNumberCharCount);
        numbersPlain_ = plain ? 1 : 0;
        timesPlain_ = plain && timeGlyphs && noKerning(fm, chars, kNumberCharCount, chars.size());
    }
    if (numbersPlain_ == 0) return false;
    for (qsizetype i = 0; i < text.size() && !timesPlain_; ++i)
        if (index[size_t(i)] >= kNumberCharCount) return false;
    int x = 0;
    QList<QPointF> positions;
    QList<quint32> glyphs;
    if (run) {
        positions.reserve(text.size());
        glyphs.reserve(text.size());
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        const size_t k = size_t(index[size_t(i)]);
        if (run) {
            positions.append(QPointF(x, 0));
            glyphs.append(numberGlyph_[k]);
        }
        x += numberAdvance_[k];
    }
    width = x;
    if (run) {
        run->setRawFont(*raw_);
        run->setGlyphIndexes(glyphs);
        run->setPositions(positions);
    }
    return true;
}

const QFontMetrics& TFont::Metrics() const {
    if (!metrics_) metrics_ = std::make_unique<QFontMetrics>(ToQFont());
    return *metrics_;
}

}  // namespace kx
