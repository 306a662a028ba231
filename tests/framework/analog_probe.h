#pragma once
// An analog control that writes everything it reports into one event log, so tests can
// compare whole sequences.
#include <QString>
#include <QStringList>

#include "kx/framework/analogcontrol.h"

namespace kx::test {

class AnalogProbe : public TKxAnalogGControl {
  public:
    explicit AnalogProbe(QWidget* parent = nullptr) : TKxAnalogGControl(parent) {
        connect(this, &TKxAnalogGControl::OnSectorChange, this,
                [this](QObject* s, bool s1, bool s2, bool s3, bool enter) {
                    log << QStringLiteral("Sector(%1%2%3,%4)%5")
                               .arg(int(s1))
                               .arg(int(s2))
                               .arg(int(s3))
                               .arg(enter ? "enter" : "leave")
                               .arg(tag(s));
                });
        connect(this, &TKxAnalogGControl::OnLimit, this, [this](QObject* s, bool lo, bool up) {
            log << QStringLiteral("Limit(%1,%2)%3").arg(int(lo)).arg(int(up)).arg(tag(s));
        });
        connect(this, &TKxAnalogGControl::OnOverflow, this, [this](QObject* s, int ppt) {
            log << QStringLiteral("Overflow(%1)%2").arg(ppt).arg(tag(s));
        });
        connect(this, &TKxAnalogGControl::OnMinMaxChange, this,
                [this](QObject* s) { log << QStringLiteral("MinMax") + tag(s); });
        connect(this, &TKxAnalogGControl::OnValueChange, this,
                [this](QObject* s) { log << QStringLiteral("Value") + tag(s); });
        connect(this, &TKxAnalogGControl::OnSettingsChange, this,
                [this](QObject* s) { log << QStringLiteral("Settings") + tag(s); });
        SetOnPositionChange([this](QObject* s) { log << QStringLiteral("Position") + tag(s); });
    }

    // Loaded, then extremes far outside the range so that readings set no new ones; the
    // log starts empty.
    void LoadQuiet() {
        Loaded();
        SetMin(-1e6f, 1.0);
        SetMax(1e6f, 1.0);
        log.clear();
    }

    QStringList Take() {
        QStringList l = log;
        log.clear();
        return l;
    }

    QStringList log;
    bool traceEvaluation = false;
    QObject* lastParamSender = nullptr;

    // Public here so tests can run an evaluation or a settings pass directly.
    void ValueChange() override {
        if (traceEvaluation) log << QStringLiteral(">eval");
        TKxAnalogGControl::ValueChange();
        if (traceEvaluation) log << QStringLiteral("<eval");
    }
    void ParamChange(QObject* sender) override {
        lastParamSender = sender;
        TKxAnalogGControl::ParamChange(sender);
    }

  protected:
    void OverflowChange(int32_t ppt) override {
        log << QStringLiteral("overflowHook(%1,PPT=%2)").arg(ppt).arg(PPT());
    }
    void LimitChange() override { log << QStringLiteral("limitHook"); }

  private:
    // Every event must name the control as its sender; anything else shows in the log.
    QString tag(QObject* sender) const {
        return sender == this ? QString() : QStringLiteral("[foreign sender]");
    }
};

}  // namespace kx::test
