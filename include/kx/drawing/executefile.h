#pragma once
// Opening a document, a folder, a URL or a program the way the desktop would, with the
// result codes of the classic shell call. No shell is ever involved: the file name is
// one program path or one URL, never a command line, so blanks, quotes, ";", "$(...)",
// backticks, line breaks or a leading "-" are just characters of a name.
#include <QString>
#include <QStringList>
#include <functional>

class QUrl;

namespace kx {

// Results. Anything above 32 means success.
constexpr int SE_ERR_FNF = 2;           // the file (or the program on PATH) does not exist
constexpr int SE_ERR_PNF = 3;           // the working directory of a program does not exist
constexpr int SE_ERR_ACCESSDENIED = 5;  // the file or folder exists but may not be read
constexpr int SE_ERR_NOASSOC = 31;      // the desktop or the system refused to open it
constexpr int KX_EXECUTE_OK = 42;       // opened or started

// fileName is taken as follows, in this order:
//  - empty: SE_ERR_FNF.
//  - a URL with a scheme of two or more characters ("http:", "mailto:", "file:"): opened
//    by the desktop as it stands; parameters and directory play no part. A text that
//    does not parse as a URL gives SE_ERR_FNF. (A file whose name looks like "word:..."
//    is opened by giving it with a path, "./word:...".)
//  - otherwise a path: a relative one is taken against directory when that is given,
//    else against the current directory. A name without "/" that names nothing there is
//    looked up as an executable on PATH.
// A path that does not exist gives SE_ERR_FNF; one that exists but may not be read,
// SE_ERR_ACCESSDENIED. An executable file is started detached with parameters split as
// QProcess::splitCommand splits them (double quotes group, nothing else is special) in
// directory (the current one when empty; SE_ERR_PNF when given but not a folder). Any
// other file, and a folder, is opened by the desktop as a file URL; parameters play no
// part. When the desktop or the system refuses, the result is SE_ERR_NOASSOC.
// showCommand (the classic SW_* value) is accepted and ignored: neither the desktop nor
// a started program can portably be told how to show its window.
int KxExecuteFile(const QString& fileName, const QString& parameters, const QString& directory,
                  int showCommand);

// The two ways out to the system. The defaults are QDesktopServices::openUrl and
// QProcess::startDetached(program, args, dir); each returns whether the system took it.
// Tests install a fake so that nothing is ever opened or started.
struct TKxLauncher {
    std::function<bool(const QUrl& url)> OpenUrl;
    std::function<bool(const QString& program, const QStringList& args, const QString& dir)>
        StartDetached;
};
// Replaces the launcher; a member left empty uses its default.
void SetExecuteLauncher(TKxLauncher launcher);

}  // namespace kx
