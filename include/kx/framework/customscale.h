#pragma once
// TKxCustomScale and its two published forms: a light scale description (label font,
// format, tick lines, label placement) for the flex meters, which interpret it. The
// nested font and line settings are owned; their changes reach the owner through
// ChangeObject with the nested object (or its pen) as sender.
//
// Setters follow the common rule (store when different, then Change). Non-finite
// Single values (NaN, infinities) are ignored: a NaN would never compare equal and
// would notify on every assignment.
#include <QString>
#include <cstdint>

#include "kx/drawing/text.h"
#include "kx/framework/linesettings.h"
#include "kx/framework/persistent.h"
#include "kx/host/graphics.h"

namespace kx {

enum TAngleMode : int32_t { amAuto, amManual };

class TKxCustomScale : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(float Angle READ Angle WRITE SetAngle)
    Q_PROPERTY(int AngleMode READ AngleMode WRITE SetAngleModeValue)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont)
    Q_PROPERTY(kx::TKxLineSettings* StepLines READ StepLines WRITE SetStepLines)
    Q_PROPERTY(kx::TKxLineSettings* SubStepLines READ SubStepLines WRITE SetSubStepLines)
    Q_PROPERTY(int TextAlignment READ TextAlignment WRITE SetTextAlignmentValue)
    Q_PROPERTY(int TextOffsetX READ TextOffsetX WRITE SetTextOffsetX)
    Q_PROPERTY(int TextOffsetY READ TextOffsetY WRITE SetTextOffsetY)
  public:
    explicit TKxCustomScale(QObject* parent = nullptr);

    float Angle() const { return angle_; }
    void SetAngle(float v);
    TAngleMode AngleMode() const { return angleMode_; }
    void SetAngleMode(TAngleMode v);
    // The property's integer view; values other than amAuto / amManual are ignored.
    void SetAngleModeValue(int v);
    // The owned font (host default); never null. SetFont copies (null ignored); the
    // font's own notification reports the copy.
    TFont* Font() const { return font_; }
    void SetFont(const TFont* font);
    // Owned tick lines: steps with a white pen 2 wide, sub-steps with a silver pen.
    // The setters copy (null ignored).
    TKxLineSettings* StepLines() const { return stepLines_; }
    void SetStepLines(const TKxLineSettings* v);
    TKxLineSettings* SubStepLines() const { return subStepLines_; }
    void SetSubStepLines(const TKxLineSettings* v);
    toPos TextAlignment() const { return textAlignment_; }
    void SetTextAlignment(toPos v);
    // The property's integer view; values outside the nine anchors are ignored.
    void SetTextAlignmentValue(int v);
    int32_t TextOffsetX() const { return textOffsetX_; }
    void SetTextOffsetX(int32_t v);
    int32_t TextOffsetY() const { return textOffsetY_; }
    void SetTextOffsetY(int32_t v);
    // Published by TKxFlexScale.
    QString FormatStr() const { return formatStr_; }
    void SetFormatStr(const QString& v);
    // Published by TKxScale.
    QString Text() const { return text_; }
    void SetText(const QString& v);

    // To any TKxCustomScale: the common fields, font and lines (plus what the classes of
    // both sides add), copied silently, then exactly one Change on the destination.
    void AssignTo(TKxPersistent* dest) const override;

  protected:
    // Copies this object's fields into dest without notifying.
    virtual void copyTo(TKxCustomScale& dest) const;

  private:
    void hookNested();

    float angle_ = 0;
    TAngleMode angleMode_ = amAuto;
    TFont* font_;                    // child of this object
    TKxLineSettings* stepLines_;     // child of this object
    TKxLineSettings* subStepLines_;  // child of this object
    toPos textAlignment_ = toMidCenter;
    int32_t textOffsetX_ = 0;
    int32_t textOffsetY_ = 0;
    QString formatStr_ = QStringLiteral("##0.#");
    QString text_;
};

class TKxScale : public TKxCustomScale {
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
  public:
    explicit TKxScale(QObject* parent = nullptr) : TKxCustomScale(parent) {}
};

// The flex meters read SubStepAt (a value interval, 0 = unset), StepMulti and
// SubStepsVis; both counts start at 1.
class TKxFlexScale : public TKxCustomScale {
    Q_OBJECT
    Q_PROPERTY(QString FormatStr READ FormatStr WRITE SetFormatStr)
    Q_PROPERTY(float SubStepAt READ SubStepAt WRITE SetSubStepAt)
    Q_PROPERTY(int StepMulti READ StepMulti WRITE SetStepMulti)
    Q_PROPERTY(int SubStepsVis READ SubStepsVis WRITE SetSubStepsVis)
  public:
    explicit TKxFlexScale(QObject* parent = nullptr) : TKxCustomScale(parent) {}

    float SubStepAt() const { return subStepAt_; }
    // Accepted when finite, > 0 and different.
    void SetSubStepAt(float v);
    int32_t StepMulti() const { return stepMulti_; }
    // Accepted when >= 1 and different.
    void SetStepMulti(int32_t v);
    int32_t SubStepsVis() const { return subStepsVis_; }
    // Accepted when >= 1 and different.
    void SetSubStepsVis(int32_t v);

  protected:
    void copyTo(TKxCustomScale& dest) const override;

  private:
    float subStepAt_ = 0;
    int32_t stepMulti_ = 1;
    int32_t subStepsVis_ = 1;
};

}  // namespace kx
