#pragma once
// TKxText: a caption with its own font, an anchor and an offset from the anchor. The
// font is owned; its changes reach the owner with the font as sender.
#include <QString>
#include <cstdint>

#include "kx/drawing/text.h"
#include "kx/framework/persistent.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxText : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont)
    Q_PROPERTY(int OffsetX READ OffsetX WRITE SetOffsetX)
    Q_PROPERTY(int OffsetY READ OffsetY WRITE SetOffsetY)
    Q_PROPERTY(int Pos READ Pos WRITE SetPosValue)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
  public:
    explicit TKxText(QObject* parent = nullptr);

    QString Text() const { return text_; }
    void SetText(const QString& v);
    // The owned font; never null.
    TFont* Font() const { return font_; }
    // Copies font into the owned one; the font's own notification reports the change
    // (with the font as sender), so a copy notifies even when nothing differed. A null
    // font is ignored.
    void SetFont(const TFont* font);
    int32_t OffsetX() const { return offsetX_; }
    void SetOffsetX(int32_t v);
    int32_t OffsetY() const { return offsetY_; }
    void SetOffsetY(int32_t v);
    toPos Pos() const { return pos_; }
    void SetPos(toPos v);
    // The property's integer view; values outside the nine anchors are ignored.
    void SetPosValue(int v);
    bool Visible() const { return visible_; }
    void SetVisible(bool v);

    // To another TKxText: font and fields copied with the destination's font muted,
    // then exactly one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    void hookFont();
    QString text_;
    TFont* font_;  // child of this object
    int32_t offsetX_ = 0;
    int32_t offsetY_ = 0;
    toPos pos_ = toTopLeft;
    bool visible_ = true;
};

}  // namespace kx
