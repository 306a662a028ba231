#include "kx/framework/binarycontrol.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <bit>

#include "kx/framework/accessible.h"

namespace kx {

namespace {

// Every element in creation order: the groups are found here, because a window's
// children are listed per parent, not in the order the elements were made.
std::vector<TKxBinGControl*>& registry() {
    static std::vector<TKxBinGControl*> all;
    return all;
}

// One process-wide guard: while a group propagates, no other propagation starts.
bool groupPropagating = false;

uint32_t bitMask(int32_t bit) {
    return uint32_t(1) << bit;
}

}  // namespace

int32_t KxFirstSetBit(int32_t word) {
    return word == 0 ? 32 : std::countr_zero(uint32_t(word));
}

TKxBinGControl::TKxBinGControl(QWidget* parent)
    : TKxGraphicControl(parent), font_(new TFont(this)) {
    registry().push_back(this);
    followWidgetFont();
    font_->SetOnChange([this](QObject*) { fontChanged(); });
    connect(this, &QObject::objectNameChanged, this, [this] {
        if (!captionSet_) Change();
    });
}

TKxBinGControl::~TKxBinGControl() {
    DelControl(this);
    auto& all = registry();
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

std::vector<TKxBinGControl*> TKxBinGControl::GroupMembers() const {
    std::vector<TKxBinGControl*> members;
    if (groupIndex_ == 0) return members;
    const QWidget* owner = window();
    for (TKxBinGControl* c : registry())
        if (c->groupIndex_ == groupIndex_ && c->window() == owner) members.push_back(c);
    return members;
}

void TKxBinGControl::SetStatusInt(int32_t s) {
    if (s == statusInt_) return;
    statusInt_ = s;
    QPointer<TKxBinGControl> alive(this);
    SetChecked((uint32_t(s) & bitMask(statusBit_)) != 0);
    if (!alive) return;
    firstSetBit_ = KxFirstSetBit(statusInt_);
    StatusIntChanged();
    if (!alive) return;
    emit OnStatusIntChanged(this);
    if (!alive) return;
    propagate();
}

void TKxBinGControl::propagate() {
    if (groupIndex_ == 0 || groupPropagating) return;
    groupPropagating = true;
    QPointer<TKxBinGControl> alive(this);
    int32_t word = statusInt_;
    std::vector<QPointer<TKxBinGControl>> members;
    for (TKxBinGControl* c : GroupMembers())
        members.emplace_back(c);
    for (const auto& m : members) {
        if (alive) word = statusInt_;
        if (m) m->SetStatusInt(word);
    }
    groupPropagating = false;
}

void TKxBinGControl::SetChecked(bool c) {
    if (c == checked_) return;
    checked_ = c;
    KxAccessibleStateChanged(this);
    QPointer<TKxBinGControl> alive(this);
    updateBlinking();
    if (checked_) {
        const uint32_t word = mode_ == mRadioButton ? bitMask(statusBit_)
                                                    : uint32_t(statusInt_) | bitMask(statusBit_);
        SetStatusInt(int32_t(word));
    } else if (mode_ != mRadioButton) {
        SetStatusInt(int32_t(uint32_t(statusInt_) & ~bitMask(statusBit_)));
    }
    if (!alive) return;
    StatusChanged();
    if (!alive) return;
    emit OnStatusChanged(this);
}

void TKxBinGControl::updateBlinking() {
    blinking_ = checked_ && flashing_ && !Designing();
    if (blinking_)
        AddControl(this, FlashFreqCode(frequency_));
    else
        DelControl(this);
}

void TKxBinGControl::SetFrequency(TFlashFreq f) {
    if (f < ff8Hz || f > ff05Hz) return;
    frequency_ = f;
    if (blinking_) AddControl(this, FlashFreqCode(frequency_));
}

void TKxBinGControl::SetFrequencyValue(int f) {
    if (f >= int(ff8Hz) && f <= int(ff05Hz)) SetFrequency(TFlashFreq(f));
}

void TKxBinGControl::SetFlashing(bool f) {
    if (f == flashing_) return;
    flashing_ = f;
    KxAccessibleDescriptionChanged(this);
    QPointer<TKxBinGControl> alive(this);
    updateBlinking();
    StatusChanged();
    if (!alive) return;
    emit OnStatusChanged(this);
}

void TKxBinGControl::SetStatusBit(int32_t b) {
    if (b < 0 || b > 31 || b == statusBit_) return;
    statusBit_ = b;
    SetChecked((uint32_t(statusInt_) & bitMask(statusBit_)) != 0);
}

void TKxBinGControl::SetGroupIndex(int32_t g) {
    if (g < 0 || g == groupIndex_) return;
    groupIndex_ = g;
    QPointer<TKxBinGControl> alive(this);
    if (groupIndex_ != 0) {
        const auto members = GroupMembers();
        // The first member's word; this element is among the members, so never empty.
        SetStatusInt(members.front()->statusInt_);
        if (!alive) return;
    }
    GroupIndexChanged();
}

void TKxBinGControl::SetMode(TMode m) {
    if (m < mButton || m > mRadioButton) return;
    mode_ = m;
    if (mode_ == mButton) SetStatusInt(0);
    if (mode_ == mRadioButton) SetStatusInt(1);
}

void TKxBinGControl::SetCaption(const QString& c) {
    const QString before = Caption();
    captionSet_ = true;
    caption_ = c;
    if (c != before) Change();
}

void TKxBinGControl::SetFont(const TFont* f) {
    if (!f || f == font_) return;
    font_->Assign(*f);
}

void TKxBinGControl::SetParentFont(bool p) {
    if (p == parentFont_) return;
    parentFont_ = p;
    if (parentFont_) followWidgetFont();
}

void TKxBinGControl::followWidgetFont() {
    if (!parentFont_) return;
    followingFont_ = true;
    font_->AssignQFont(font());
    followingFont_ = false;
}

void TKxBinGControl::fontChanged() {
    if (!followingFont_) parentFont_ = false;
    Change();
}

void TKxBinGControl::Flash(bool) {}

void TKxBinGControl::WMFlash(TMessage& message) {
    if (message.Msg == KX_WM_FLASH) Flash(message.LParam != 0);
}

void TKxBinGControl::PressAction() {
    mouseIsDown_ = true;
    switch (mode_) {
        case mButton:
            SetChecked(true);
            break;
        case mSwitch:
            SetChecked(!checked_);
            break;
        case mRadioButton:
            SetStatusInt(int32_t(bitMask(statusBit_)));
            break;
        case mIndicator:
            break;
    }
}

void TKxBinGControl::ReleaseAction() {
    if (mode_ == mIndicator) return;
    mouseIsDown_ = false;
    QPointer<TKxBinGControl> alive(this);
    if (mode_ == mButton) SetChecked(false);
    if (alive) StatusChanged();
}

bool TKxBinGControl::event(QEvent* e) {
    if (e->type() == QEvent::FontChange) followWidgetFont();
    return TKxGraphicControl::event(e);
}

void TKxBinGControl::mousePressEvent(QMouseEvent* e) {
    TKxGraphicControl::mousePressEvent(e);
    if (e->button() == Qt::LeftButton) PressAction();
}

void TKxBinGControl::mouseReleaseEvent(QMouseEvent* e) {
    QPointer<TKxBinGControl> alive(this);
    TKxGraphicControl::mouseReleaseEvent(e);
    if (alive && e->button() == Qt::LeftButton) ReleaseAction();
}

void TKxBinGControl::keyPressEvent(QKeyEvent* e) {
    if (e->key() != Qt::Key_Space) return TKxGraphicControl::keyPressEvent(e);
    if (!e->isAutoRepeat() && !keyDown_) {
        keyDown_ = true;
        PressAction();
    }
    e->accept();
}

void TKxBinGControl::keyReleaseEvent(QKeyEvent* e) {
    if (e->key() != Qt::Key_Space) return TKxGraphicControl::keyReleaseEvent(e);
    if (!e->isAutoRepeat() && keyDown_) {
        keyDown_ = false;
        ReleaseAction();
    }
    e->accept();
}

void TKxBinGControl::focusOutEvent(QFocusEvent* e) {
    TKxGraphicControl::focusOutEvent(e);
    if (!keyDown_) return;
    keyDown_ = false;
    ReleaseAction();
}

}  // namespace kx
