#include "panelrunner.h"

#include <QWidget>

#include "binder.h"
#include "panelloader.h"
#include "sourcefactory.h"

namespace kx::panel {

PanelRunner::PanelRunner(QObject* parent) : QObject(parent) {}

// The binder and the sources go before the panel, whose widgets they watch.
PanelRunner::~PanelRunner() {
    binder_.reset();
    sources_.clear();
}

bool PanelRunner::Load(const QString& panelPath, const QString& bindingsPath, QString* error) {
    PanelLoader loader;
    panel_.reset(loader.LoadFile(panelPath, error));
    if (!panel_) return false;
    binder_ = std::make_unique<Binder>(panel_.get());
    connect(binder_.get(), &Binder::writeFailed, this,
            [](const QString& m) { qWarning("%s", qPrintable(m)); });
    if (bindingsPath.isEmpty()) return true;
    BindingsParseResult parsed = ReadBindingsFile(bindingsPath);
    for (const QString& w : parsed.Warnings)
        messages_ << bindingsPath + QStringLiteral(": ") + w;
    if (!parsed.File) {
        if (error)
            *error = bindingsPath + QStringLiteral(": ") +
                     parsed.Errors.join(QStringLiteral("\n") + bindingsPath + QStringLiteral(": "));
        return false;
    }
    const BindingsFile& file = *parsed.File;
    for (const SourceConfig& c : file.Sources) {
        QString why;
        std::unique_ptr<Source> s = CreateSource(c, &why);
        if (!s) {
            messages_ << bindingsPath + QStringLiteral(": ") + why;
            continue;
        }
        sourceMap_.insert(c.Name, s.get());
        sources_.push_back(std::move(s));
    }
    if (!file.AlarmLog.isEmpty()) {
        QString why;
        if (alarmLog_.Open(file.AlarmLog, &why))
            binder_->SetAlarmLog(&alarmLog_);
        else
            messages_ << bindingsPath + QStringLiteral(": alarm_log: ") + why;
    }
    binder_->Bind(file, sourceMap_);
    for (const QString& p : binder_->Problems())
        messages_ << bindingsPath + QStringLiteral(": ") + p;
    return true;
}

void PanelRunner::Start() {
    for (auto& s : sources_)
        s->Start();
}

}  // namespace kx::panel
