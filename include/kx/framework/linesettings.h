#pragma once
// TKxLineSettings: a line drawn with its own pen (e.g. a tick or a pointer line). The
// pen is owned; its changes reach the owner with the pen as sender.
#include <cstdint>

#include "kx/framework/persistent.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxLineSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(kx::TPen* Pen READ Pen WRITE SetPen)
    Q_PROPERTY(int Length READ Length WRITE SetLength)
    Q_PROPERTY(int Offset READ Offset WRITE SetOffset)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
  public:
    explicit TKxLineSettings(QObject* parent = nullptr);

    // The owned pen; never null.
    TPen* Pen() const { return pen_; }
    // Copies pen into the owned one (the pen's own notification reports that, with the
    // pen as sender), then calls Change. Passing the owned pen skips the copy but still
    // calls Change; a null pen is ignored.
    void SetPen(const TPen* pen);
    int32_t Length() const { return length_; }
    void SetLength(int32_t v);
    int32_t Offset() const { return offset_; }
    void SetOffset(int32_t v);
    bool Visible() const { return visible_; }
    void SetVisible(bool v);

    // To another TKxLineSettings: pen and fields copied with the destination's pen
    // muted, then exactly one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    void hookPen();
    TPen* pen_;  // child of this object
    int32_t length_ = 0;
    int32_t offset_ = 0;
    bool visible_ = true;
};

}  // namespace kx
