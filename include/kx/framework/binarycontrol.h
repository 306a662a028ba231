#pragma once
// TKxBinGControl: the base of every on/off element (LEDs, switches, colour bit buttons).
// Each element shows one bit, StatusBit, of a 32-bit status word, StatusInt; Checked is
// that bit. Elements with the same non-zero GroupIndex in the same window share one word:
// a row of LEDs shows a whole word, a row of radio-mode buttons is a radio group.
//
// Properties (declared here, published by the descendants):
//   Checked     bool, false     SetChecked: see below
//   Frequency   TFlashFreq as int, ff1Hz   stored without comparing; while Checked and
//               Flashing the blink subscription moves to the new rate; values outside
//               ff8Hz..ff05Hz are ignored
//   Flashing    bool, false     a checked, flashing element blinks through the blink
//               service (Flash(on) on every phase change)
//   StatusInt   int32, 0        the status word (see SetStatusInt)
//   StatusBit   int32, 0        accepted only for 0..31 and when different; Checked then
//               follows the bit of StatusInt
//   GroupIndex  int32, 0        accepted only for >= 0 and when different; the element
//               then takes the word of the first member of its group (itself when it is
//               the first), then GroupIndexChanged
//   Mode        TMode, mIndicator   see the mouse table; mButton resets the word to 0 and
//               mRadioButton to 1 on every assignment, also of the same mode
//   Caption     text, the object name until assigned; lines separated by "|"
//   Font        TFont (owned), ParentFont true
//   ParentFont  bool, true      while set, Font follows the widget's font (QWidget::font,
//               which Qt inherits from the parent); assigning Font clears it
// Not published: MouseIsDown, FirstSetBit (the lowest set bit of StatusInt, 32 for none).
// Events: OnStatusChanged(sender), OnStatusIntChanged(sender), OnClick, OnDblClick.
//
// SetStatusInt(s): when different, store; SetChecked(bit StatusBit of s); FirstSetBit;
// StatusIntChanged; OnStatusIntChanged; then, when GroupIndex is not 0 and no group is
// propagating already, every member of the group (this one included, in creation order)
// gets SetStatusInt(StatusInt). The propagation guard is one process-wide flag: a change
// made in another group by a handler during a propagation stays with that element.
// SetChecked(c): when different, store; subscribe to or leave the blink service; a checked
// element sets its bit in the word (in mRadioButton mode the word becomes that bit alone),
// an unchecked one clears it (in mRadioButton mode the word is left alone, so a radio group
// always keeps one bit); StatusChanged; OnStatusChanged.
//
// The group's owner is the window (QWidget::window()): elements in different group boxes
// of one window share a word; elements of different windows never interact. An element
// without a parent is a window of its own. A deleted member simply leaves its group.
//
// Mouse (left button) and keyboard (space bar, for descendants that take focus):
//   mode          press                                   release
//   mButton       MouseIsDown; SetChecked(true)           SetChecked(false); StatusChanged
//   mSwitch       MouseIsDown; SetChecked(not Checked)    StatusChanged
//   mIndicator    MouseIsDown                             ignored
//   mRadioButton  MouseIsDown; SetStatusInt(1 shl bit)    StatusChanged
// MouseIsDown is cleared on every release. OnClick fires before the release's own action.
// Losing the focus while the space bar holds the element down releases it, so a
// momentary button never sticks; a key release without its press is ignored.
//
// Forms (.ui files, Designer) store Mode, StatusInt, StatusBit and GroupIndex and restore
// them in that order, so a loaded radio group keeps its selected bit; Checked is derived
// and not stored.
//
// Design time (Designing()): nothing subscribes to the blink service.
// Handlers may delete the element: the evaluation stops there, and a group propagation
// goes on with the remaining members.
#include <QPointer>
#include <QString>
#include <cstdint>
#include <vector>

#include "kx/blink/flashtimer.h"
#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxBinGControl : public TKxGraphicControl {
    Q_OBJECT
  public:
    enum TMode : int { mButton, mSwitch, mIndicator, mRadioButton };
    Q_ENUM(TMode)

  private:
    // Forms restore properties in this order: Mode first (it resets the word), then the
    // word, the bit and the group. Checked follows from them, so it is not stored.
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(TMode Mode READ Mode WRITE SetMode)
    Q_PROPERTY(int Frequency READ FrequencyValue WRITE SetFrequencyValue)
    Q_PROPERTY(bool Flashing READ Flashing WRITE SetFlashing)
    Q_PROPERTY(int StatusInt READ StatusInt WRITE SetStatusInt NOTIFY OnStatusIntChanged)
    Q_PROPERTY(int StatusBit READ StatusBit WRITE SetStatusBit)
    Q_PROPERTY(int GroupIndex READ GroupIndex WRITE SetGroupIndex)
    Q_PROPERTY(bool Checked READ Checked WRITE SetChecked NOTIFY OnStatusChanged STORED false)
    Q_PROPERTY(bool ParentFont READ ParentFont WRITE SetParentFont)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)

  public:
    explicit TKxBinGControl(QWidget* parent = nullptr);
    ~TKxBinGControl() override;

    bool Checked() const { return checked_; }
    void SetChecked(bool c);
    TFlashFreq Frequency() const { return frequency_; }
    void SetFrequency(TFlashFreq f);
    int FrequencyValue() const { return int(frequency_); }
    void SetFrequencyValue(int f);
    bool Flashing() const { return flashing_; }
    void SetFlashing(bool f);
    int32_t StatusInt() const { return statusInt_; }
    void SetStatusInt(int32_t s);
    int32_t StatusBit() const { return statusBit_; }
    void SetStatusBit(int32_t b);
    int32_t GroupIndex() const { return groupIndex_; }
    void SetGroupIndex(int32_t g);
    TMode Mode() const { return mode_; }
    void SetMode(TMode m);
    QString Caption() const { return captionSet_ ? caption_ : objectName(); }
    void SetCaption(const QString& c);
    TFont* Font() const { return font_; }
    // Copies (null is ignored) and clears ParentFont.
    void SetFont(const TFont* f);
    bool ParentFont() const { return parentFont_; }
    void SetParentFont(bool p);

    bool MouseIsDown() const { return mouseIsDown_; }
    // Whether the element is subscribed to the blink service now.
    bool Blinking() const { return blinking_; }
    int32_t FirstSetBit() const { return firstSetBit_; }

    // The other elements of this element's group and this one, in creation order; empty
    // when GroupIndex is 0.
    std::vector<TKxBinGControl*> GroupMembers() const;

    void WMFlash(TMessage& message) override;

    KX_FLAT_FONT(Font, Font())

    // Qt-style setters for uic, which calls "set" + the property name.
    void setCaption(const QString& c) { SetCaption(c); }
    void setMode(TMode m) { SetMode(m); }
    void setFrequency(int f) { SetFrequencyValue(f); }
    void setFlashing(bool f) { SetFlashing(f); }
    void setStatusInt(int s) { SetStatusInt(s); }
    void setStatusBit(int b) { SetStatusBit(b); }
    void setGroupIndex(int g) { SetGroupIndex(g); }
    void setChecked(bool c) { SetChecked(c); }
    void setParentFont(bool p) { SetParentFont(p); }

  signals:
    void OnStatusChanged(QObject* sender);
    void OnStatusIntChanged(QObject* sender);

  protected:
    // Hooks, empty here.
    virtual void StatusChanged() {}
    virtual void GroupIndexChanged() {}
    virtual void StatusIntChanged() {}
    // A blink phase change of a checked, flashing element: draw it lit or dark.
    virtual void Flash(bool on);

    // The press and release of the mouse table, also run by the space bar.
    void PressAction();
    void ReleaseAction();

    bool event(QEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

  private:
    void updateBlinking();
    void propagate();
    void followWidgetFont();
    void fontChanged();

    TFont* font_;
    QString caption_;
    int32_t statusInt_ = 0;
    int32_t statusBit_ = 0;
    int32_t groupIndex_ = 0;
    int32_t firstSetBit_ = 32;
    TFlashFreq frequency_ = ff1Hz;
    TMode mode_ = mIndicator;
    bool checked_ = false;
    bool flashing_ = false;
    bool mouseIsDown_ = false;
    bool captionSet_ = false;
    bool parentFont_ = true;
    bool followingFont_ = false;
    bool keyDown_ = false;
    bool blinking_ = false;
};

// The modes without the class prefix, as the classic code names them.
constexpr auto mButton = TKxBinGControl::mButton;
constexpr auto mSwitch = TKxBinGControl::mSwitch;
constexpr auto mIndicator = TKxBinGControl::mIndicator;
constexpr auto mRadioButton = TKxBinGControl::mRadioButton;

// The lowest set bit of word, 32 when none is.
int32_t KxFirstSetBit(int32_t word);

}  // namespace kx
