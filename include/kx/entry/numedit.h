#pragma once
// TKxNumEdit: a one-line edit for one number, on QLineEdit. The operator types it in one
// of four notations (binary, hexadecimal, floating point, integer), may switch notation
// for one entry with a first character ("$" hexadecimal, "%" integer, "&" binary, "!"
// floating point) and may end a floating-point or integer entry with an engineering
// letter (E P T G M k m u n p f a: 1e18 .. 1e-18, the factors in single precision, so
// "3m" is 0.003000000142492354). Every change is checked at once; the background shows
// the state (ColorDefault, ColorEditing while an entry waits for Enter or for the focus
// to leave, ColorError with a beep and the offending characters selected). The value is
// a double with integer, single, hexadecimal and binary views.
//
// Properties in declaration order (the limits, steps and digit counts come before Value,
// so that a form sets them before the value it loads):
//   EditBase       TEditBase, ebFloat: the notation shown and read without a prefix
//   FormatStr      QString, "#0.#": the FormatFloat picture of ebFloat
//   MinValue, MaxValue  double, 0: the limits, used with eoLimitMin / eoLimitMax
//   Options        TNumEditOptions as bits, none: eoLimitMax, eoLimitMin, eoMultiply
//   Increment      float, 0: the step of UpClick / DownClick (a factor with eoMultiply)
//   DigitsHex, DigitsBool  int32, 0
//   Value          double, 0
//   ValueAsInt     int32: Round(Value) saturated to +-2147483647
//   ValueAsSingle  float: Value, minus infinity at or below -1.5e45, 3.4e38 at or above
//   ValueAsHex     QString: the integer view in hexadecimal, at least DigitsHex digits
//   ValueAsBool    QString: the integer view in binary (KxIntToBin with DigitsBool)
//   ColorDefault   TColor, clWindow; ColorError clRed; ColorEditing clLime
//   EditorEnabled  bool, true: false refuses every typed character with a beep
//   State          TNumEditState, esNormal (read-only)
//   AutoSelect     bool, true: the whole text is selected when the focus comes by Tab
//   AutoSize       bool, true: the height follows the font
// Signals: OnValueChanged(sender) after a new value is shown (not while loading);
// OnLimit(sender) when either at-limit flag changes; OnChange(sender) on every change
// the operator makes to the text and after every step.
//
// Reading an entry (Check): a first character of "$%&!" picks the notation; in ebFloat a
// last engineering letter is always taken off (so "2E" is 2e18, "E3" is 1e3); in ebInt
// only a multiplying one (k .. E), a sub-unit letter stays and is refused; a leading sign
// (floating point and integer only), digits of the notation, thousands separators, one
// decimal separator and an exponent ("e" or "E", an optional sign, digits) in floating
// point. Every other character is an error, and so is the second decimal separator. A
// sign alone reads as 0, an exponent alone as 1 times it, a letter alone as its factor,
// a prefix alone as 0. The separators are FormatSettings()'s.
//
// Choices where the classic behaviour is silent or unsafe:
//  - Text whose characters are all allowed but that does not make a number (".", "1e",
//    "1e5.5", more than 8 hexadecimal digits, an integer beyond the 32-bit range, a
//    floating-point magnitude beyond the double range) is an error too, the whole entry
//    selected: classic conversion raised an exception there.
//  - The value is never NaN: a NaN given to Value is ignored, an infinity clamped to the
//    notation's range like any other value.
//  - The single view of a value below the single range is minus infinity (the range's
//    lower bound of -1.5e45 is kept), computed without an out-of-range conversion.
//  - The hexadecimal view of a negative integer is its 32-bit pattern ("FFFFFFFF").
//  - An error shows at once: the edit repaints synchronously instead of processing all
//    pending events, which could re-enter the handler.
//  - An edit in error takes the focus when it is shown and does not have it. The edit that
//    loses the focus to it checks its own entry on the way out; an error there is shown
//    (state, colour, selection) without taking the focus back, so two edits in error
//    never pass the focus to and fro: the first keeps it.
//  - OnChange is the edit's change handler: it fires for changes the operator makes
//    (typing, pasting, undo) and after each step, not when the edit shows a value.
//  - Loaded() ends the loading phase; it runs by itself on the first polish.
//  - The hexadecimal and binary views start as "0", so an edit switched to another
//    notation before any value was shown shows 0, not an empty field. Until a value is
//    shown, a typed entry is applied at once (as the classic edit did while its binary
//    view was still empty).
#include <QLineEdit>
#include <QString>
#include <cstdint>

#include "kx/host/color.h"
#include "kx/host/formatsettings.h"

namespace kx {

class TKxNumEdit : public QLineEdit {
    Q_OBJECT
  public:
    enum TEditBase : int { ebBin, ebHex, ebFloat, ebInt };
    Q_ENUM(TEditBase)
    enum TNumEditOption : int { eoLimitMax, eoLimitMin, eoMultiply };
    Q_ENUM(TNumEditOption)
    using TNumEditOptions = uint8_t;
    static constexpr TNumEditOptions NumEditOption(TNumEditOption o) {
        return TNumEditOptions(1u << o);
    }
    enum TNumEditState : int { esNormal, esEditing, esError };
    Q_ENUM(TNumEditState)

    // An entry read: valid, or the first and last offending character (0-based, in the
    // whole text); the value before limits; the notation it was read in.
    struct TEntry {
        bool Valid = true;
        bool Empty = false;
        int32_t FirstInvalid = -1, LastInvalid = -1;
        double Value = 0.0;
        TEditBase Base = ebFloat;
    };
    // Reads text as the edit does without a widget (for tools, tests and benchmarks).
    static TEntry Parse(const QString& text, TEditBase editBase, const TFormatSettings& fs);

  private:
    Q_PROPERTY(TEditBase EditBase READ EditBase WRITE setEditBase)
    Q_PROPERTY(QString FormatStr READ FormatStr WRITE setFormatStr)
    Q_PROPERTY(double MinValue READ MinValue WRITE setMinValue)
    Q_PROPERTY(double MaxValue READ MaxValue WRITE setMaxValue)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(float Increment READ Increment WRITE setIncrement)
    Q_PROPERTY(int DigitsHex READ DigitsHex WRITE setDigitsHex)
    Q_PROPERTY(int DigitsBool READ DigitsBool WRITE setDigitsBool)
    Q_PROPERTY(double Value READ Value WRITE setValue NOTIFY OnValueChanged)
    Q_PROPERTY(int ValueAsInt READ ValueAsInt WRITE setValueAsInt STORED false)
    Q_PROPERTY(float ValueAsSingle READ ValueAsSingle WRITE setValueAsSingle STORED false)
    Q_PROPERTY(QString ValueAsHex READ ValueAsHex WRITE setValueAsHex STORED false)
    Q_PROPERTY(QString ValueAsBool READ ValueAsBool WRITE setValueAsBool STORED false)
    Q_PROPERTY(QColor ColorDefault READ QColorDefault WRITE setColorDefault)
    Q_PROPERTY(QColor ColorError READ QColorError WRITE setColorError)
    Q_PROPERTY(QColor ColorEditing READ QColorEditing WRITE setColorEditing)
    Q_PROPERTY(bool EditorEnabled READ EditorEnabled WRITE setEditorEnabled)
    Q_PROPERTY(TNumEditState State READ State STORED false)
    Q_PROPERTY(bool AutoSelect READ AutoSelect WRITE setAutoSelect)
    Q_PROPERTY(bool AutoSize READ AutoSize WRITE setAutoSize)
    // Set by the Designer plugin; not a setting of the form.
    Q_PROPERTY(bool Designing READ Designing WRITE setDesigning DESIGNABLE false STORED false)

  public:
    explicit TKxNumEdit(QWidget* parent = nullptr);

    TEditBase EditBase() const { return editBase_; }
    void SetEditBase(TEditBase b);
    QString FormatStr() const { return formatStr_; }
    void SetFormatStr(const QString& f);
    double Value() const { return value_; }
    void SetValue(double v);
    int32_t ValueAsInt() const { return intView_; }
    void SetValueAsInt(int32_t v);
    float ValueAsSingle() const { return singleView_; }
    void SetValueAsSingle(float v);
    QString ValueAsHex() const { return hexText_; }
    void SetValueAsHex(const QString& v);
    QString ValueAsBool() const { return binText_; }
    void SetValueAsBool(const QString& v);
    double MinValue() const { return minValue_; }
    void SetMinValue(double v) { minValue_ = v; }
    double MaxValue() const { return maxValue_; }
    void SetMaxValue(double v) { maxValue_ = v; }
    TNumEditOptions Options() const { return options_; }
    void SetOptions(TNumEditOptions o) { options_ = TNumEditOptions(o & 7u); }
    bool HasOption(TNumEditOption o) const { return options_ & NumEditOption(o); }
    float Increment() const { return increment_; }
    void SetIncrement(float v) { increment_ = v; }
    int32_t DigitsHex() const { return digitsHex_; }
    void SetDigitsHex(int32_t v) { digitsHex_ = v; }
    int32_t DigitsBool() const { return digitsBool_; }
    void SetDigitsBool(int32_t v) { digitsBool_ = v; }
    TColor ColorDefault() const { return colorDefault_; }
    void SetColorDefault(TColorArg c);
    TColor ColorError() const { return colorError_; }
    void SetColorError(TColorArg c);
    TColor ColorEditing() const { return colorEditing_; }
    void SetColorEditing(TColorArg c);
    bool EditorEnabled() const { return editorEnabled_; }
    void SetEditorEnabled(bool v) { editorEnabled_ = v; }
    TNumEditState State() const { return state_; }
    bool AutoSelect() const { return autoSelect_; }
    void SetAutoSelect(bool v) { autoSelect_ = v; }
    bool AutoSize() const { return autoSize_; }
    void SetKxAutoSize(bool v);

    bool AtUpperLimit() const { return atUpper_; }
    bool AtLowerLimit() const { return atLower_; }
    // The text the edit showed last for an accepted value.
    QString LastAppliedText() const { return lastApplied_; }
    bool Loading() const { return loading_; }
    bool Designing() const { return designing_; }
    void SetDesigning(bool d) { designing_ = d; }

    // Checks the text; with apply also converts, limits and shows the value. False when
    // the text cannot be read (the state shows the error).
    bool CheckEdit(bool apply);
    // The limits applied to v (updates the at-limit flags and reports their changes).
    double CheckValue(double v);
    // Shows v (clamped to the notation's range) in EditBase's notation.
    void SetText(double v);
    // One step up or down by Increment; refused with a beep at the limit or read-only.
    virtual void UpClick();
    virtual void DownClick();

    void Loaded();

    // Qt-style names for uic, animations and generic code.
    void setEditBase(TEditBase b) { SetEditBase(b); }
    void setFormatStr(const QString& f) { SetFormatStr(f); }
    void setValue(double v) { SetValue(v); }
    void setValueAsInt(int v) { SetValueAsInt(v); }
    void setValueAsSingle(float v) { SetValueAsSingle(v); }
    void setValueAsHex(const QString& v) { SetValueAsHex(v); }
    void setValueAsBool(const QString& v) { SetValueAsBool(v); }
    void setMinValue(double v) { SetMinValue(v); }
    void setMaxValue(double v) { SetMaxValue(v); }
    void setOptions(int o) { SetOptions(TNumEditOptions(o)); }
    void setIncrement(float v) { SetIncrement(v); }
    void setDigitsHex(int v) { SetDigitsHex(v); }
    void setDigitsBool(int v) { SetDigitsBool(v); }
    void setEditorEnabled(bool v) { SetEditorEnabled(v); }
    void setAutoSelect(bool v) { SetAutoSelect(v); }
    void setAutoSize(bool v) { SetKxAutoSize(v); }
    void setDesigning(bool d) { SetDesigning(d); }
    QColor QColorDefault() const { return EncodeQColor(colorDefault_); }
    void setColorDefault(const QColor& c) { SetColorDefault(c); }
    QColor QColorError() const { return EncodeQColor(colorError_); }
    void setColorError(const QColor& c) { SetColorError(c); }
    QColor QColorEditing() const { return EncodeQColor(colorEditing_); }
    void setColorEditing(const QColor& c) { SetColorEditing(c); }

  signals:
    void OnValueChanged(QObject* sender);
    void OnLimit(QObject* sender);
    void OnChange(QObject* sender);

  protected:
    // Fires OnLimit; the spin edit also enables its buttons.
    virtual void Limit();
    // The state and its colour (an error repaints at once and beeps).
    virtual void SetState(TNumEditState s);
    void keyPressEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;
    void changeEvent(QEvent* e) override;
    bool event(QEvent* e) override;

  private:
    void textEditedByUser();
    void confirm();
    void step(bool up);
    void applyColor();
    void showEntryError(const TEntry& entry);
    QString textOf(TEditBase base) const;

    QString formatStr_ = QStringLiteral("#0.#");
    QString lastApplied_ = QStringLiteral("0");
    QString hexText_;
    QString binText_;
    double value_ = 0.0;
    double minValue_ = 0.0;
    double maxValue_ = 0.0;
    float singleView_ = 0.0f;
    float increment_ = 0.0f;
    int32_t intView_ = 0;
    int32_t digitsHex_ = 0;
    int32_t digitsBool_ = 0;
    TColor colorDefault_ = clWindow;
    TColor colorError_ = clRed;
    TColor colorEditing_ = clLime;
    TEditBase editBase_ = ebFloat;
    TNumEditState state_ = esNormal;
    TNumEditOptions options_ = 0;
    bool editorEnabled_ = true;
    bool autoSelect_ = true;
    bool autoSize_ = true;
    bool atUpper_ = false;
    bool atLower_ = false;
    bool loading_ = true;
    bool designing_ = false;
    bool formatted_ = false;  // a value has been shown
};

}  // namespace kx
