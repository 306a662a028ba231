#include "alarmlog.h"

#include "kx/host/clock.h"
#include "timetext.h"

namespace kx::panel {

bool AlarmLog::Open(const QString& path, QString* error) {
    file_.close();
    file_.setFileName(path);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        if (error) *error = QStringLiteral("%1: cannot write: %2").arg(path, file_.errorString());
        return false;
    }
    if (file_.size() == 0) file_.write("time,widget,event,value\n");
    file_.flush();
    return true;
}

QString AlarmLog::Quote(const QString& field) {
    if (!field.contains(QLatin1Char(',')) && !field.contains(QLatin1Char('"')) &&
        !field.contains(QLatin1Char('\n')) && !field.contains(QLatin1Char('\r')))
        return field;
    QString q = field;
    q.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

bool AlarmLog::Append(const QString& widget, const QString& event, double value) {
    if (!file_.isOpen()) return false;
    const QString line =
        QStringLiteral("%1,%2,%3,%4\n")
            .arg(StampText(Now()), Quote(widget), event, QString::number(value, 'g', 10));
    const QByteArray bytes = line.toUtf8();
    const bool ok = file_.write(bytes) == bytes.size() && file_.flush();
    if (ok) ++lines_;
    return ok;
}

}  // namespace kx::panel
