#include "kx/host/safefile.h"

#include <sys/stat.h>
#include <unistd.h>
#include <QFile>
#include <cerrno>
#include <cstdlib>

namespace kx {
namespace {

TFileFaultHook& faultHook() {
    static TFileFaultHook hook;
    return hook;
}

}  // namespace

void SetFileFaultHook(TFileFaultHook hook) {
    faultHook() = std::move(hook);
}

int KxFileFault(TFileStep step) {
    return faultHook() ? faultHook()(step) : 0;
}

int KxLastErrno() {
    return errno != 0 ? errno : EIO;
}

int KxWriteAll(int fd, const void* data, size_t bytes) {
    if (int e = KxFileFault(TFileStep::Write)) return e;
    const char* p = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t n = ::write(fd, p, bytes);
        if (n < 0) {
            if (errno == EINTR) continue;
            return KxLastErrno();
        }
        if (n == 0) return ENOSPC;
        p += n;
        bytes -= static_cast<size_t>(n);
    }
    return 0;
}

int KxFlushFile(int fd) {
    if (int e = KxFileFault(TFileStep::Flush)) return e;
    return ::fsync(fd) == 0 ? 0 : KxLastErrno();
}

int KxReplaceFile(const QString& name, const char* data, size_t bytes) {
    if (name.isEmpty()) return ENOENT;
    const QByteArray target = QFile::encodeName(name);
    QByteArray temp = target + ".XXXXXX";
    if (int e = KxFileFault(TFileStep::Open)) return e;
    errno = 0;
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return KxLastErrno();
    // mkstemp creates 0600; the files we write are ordinary documents.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
    int result = KxWriteAll(fd, data, bytes);
    if (result == 0) result = KxFlushFile(fd);
    const int closed = ::close(fd) == 0 ? 0 : KxLastErrno();
    if (result == 0) result = closed;
    if (result == 0) result = KxFileFault(TFileStep::Rename);
    if (result == 0 && ::rename(temp.constData(), target.constData()) != 0) result = KxLastErrno();
    if (result != 0) ::unlink(temp.constData());
    return result;
}

}  // namespace kx
