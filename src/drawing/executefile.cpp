#include "kx/drawing/executefile.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace kx {
namespace {

TKxLauncher& launcher() {
    static TKxLauncher l;
    return l;
}

bool OpenUrl(const QUrl& url) {
    return launcher().OpenUrl ? launcher().OpenUrl(url) : QDesktopServices::openUrl(url);
}

bool StartDetached(const QString& program, const QStringList& args, const QString& dir) {
    return launcher().StartDetached ? launcher().StartDetached(program, args, dir)
                                    : QProcess::startDetached(program, args, dir);
}

// Two characters at least, so that a drive letter ("C:") is not taken for a scheme.
bool HasUrlScheme(const QString& name) {
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    return scheme.match(name).hasMatch();
}

}  // namespace

int KxExecuteFile(const QString& fileName, const QString& parameters, const QString& directory,
                  int /*showCommand*/) {
    if (fileName.isEmpty()) return SE_ERR_FNF;
    if (HasUrlScheme(fileName)) {
        const QUrl url(fileName);
        if (!url.isValid()) return SE_ERR_FNF;
        return OpenUrl(url) ? KX_EXECUTE_OK : SE_ERR_NOASSOC;
    }

    // An absolute name stays as it is; an empty directory is the current one.
    QFileInfo info(QDir(directory).filePath(fileName));
    if (!info.exists() && !fileName.contains(QLatin1Char('/'))) {
        const QString found = QStandardPaths::findExecutable(fileName);
        if (!found.isEmpty()) info.setFile(found);
    }
    if (!info.exists()) return SE_ERR_FNF;
    if (!info.isReadable()) return SE_ERR_ACCESSDENIED;
    // Always absolute, so that a name like "-x" can never be read as an option.
    const QString path = info.absoluteFilePath();

    if (info.isFile() && info.isExecutable()) {
        if (!directory.isEmpty() && !QFileInfo(directory).isDir()) return SE_ERR_PNF;
        return StartDetached(path, QProcess::splitCommand(parameters), directory) ? KX_EXECUTE_OK
                                                                                  : SE_ERR_NOASSOC;
    }
    return OpenUrl(QUrl::fromLocalFile(path)) ? KX_EXECUTE_OK : SE_ERR_NOASSOC;
}

void SetExecuteLauncher(TKxLauncher l) {
    launcher() = std::move(l);
}

}  // namespace kx
