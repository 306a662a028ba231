#include "kx/recorders/recordfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>
#include <QFileInfo>
#include <cerrno>

namespace kx {
namespace {

TRecordFileFaultHook& faultHook() {
    static TRecordFileFaultHook hook;
    return hook;
}

int injected(TRecordFileStep step) {
    return faultHook() ? faultHook()(step) : 0;
}

// errno of the last call, never 0 (a failed call that left errno alone counts as EIO).
int lastError() {
    return errno != 0 ? errno : EIO;
}

int writeAll(int fd, const void* data, size_t bytes) {
    if (int e = injected(TRecordFileStep::Write)) return e;
    const char* p = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t n = ::write(fd, p, bytes);
        if (n < 0) {
            if (errno == EINTR) continue;
            return lastError();
        }
        if (n == 0) return ENOSPC;
        p += n;
        bytes -= static_cast<size_t>(n);
    }
    return 0;
}

int flush(int fd) {
    if (int e = injected(TRecordFileStep::Flush)) return e;
    return ::fsync(fd) == 0 ? 0 : lastError();
}

int closeFile(int fd) {
    return ::close(fd) == 0 ? 0 : lastError();
}

QByteArray path(const QString& name) {
    return QFile::encodeName(name);
}

}  // namespace

void SetRecordFileFaultHook(TRecordFileFaultHook hook) {
    faultHook() = std::move(hook);
}

int KxWriteRecordFile(const QString& name, const TSignRec* records, size_t count) {
    if (name.isEmpty()) return ENOENT;
    const QByteArray target = path(name);
    QByteArray temp = target + ".XXXXXX";
    if (int e = injected(TRecordFileStep::Open)) return e;
    errno = 0;
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return lastError();
    // mkstemp creates 0600; a record file is an ordinary document.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
    int result = writeAll(fd, records, count * sizeof(TSignRec));
    if (result == 0) result = flush(fd);
    const int closed = closeFile(fd);
    if (result == 0) result = closed;
    if (result == 0) result = injected(TRecordFileStep::Rename);
    if (result == 0 && ::rename(temp.constData(), target.constData()) != 0) result = lastError();
    if (result != 0) ::unlink(temp.constData());
    return result;
}

int KxAppendRecordFile(const QString& name, const TSignRec* records, size_t count) {
    if (name.isEmpty()) return ENOENT;
    if (int e = injected(TRecordFileStep::Open)) return e;
    errno = 0;
    const int fd = ::open(path(name).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return lastError();
    struct stat st {};
    int result = ::fstat(fd, &st) == 0 ? 0 : lastError();
    off_t start = 0;
    if (result == 0) {
        start = st.st_size - st.st_size % static_cast<off_t>(sizeof(TSignRec));
        if (start != st.st_size && ::ftruncate(fd, start) != 0) result = lastError();
    }
    if (result == 0 && ::lseek(fd, start, SEEK_SET) < 0) result = lastError();
    if (result == 0) result = writeAll(fd, records, count * sizeof(TSignRec));
    if (result == 0) result = flush(fd);
    if (result != 0) {
        // Give the earlier records back their file as it was.
        if (::ftruncate(fd, start) == 0) ::fsync(fd);
    }
    const int closed = closeFile(fd);
    return result != 0 ? result : closed;
}

int KxReadRecordFile(const QString& name, TKxSignStore& store) {
    if (name.isEmpty()) return ENOENT;
    errno = 0;
    const int fd = ::open(path(name).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return lastError();
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        const int e = lastError();
        ::close(fd);
        return e;
    }
    if (S_ISDIR(st.st_mode)) {
        ::close(fd);
        return EISDIR;
    }
    const uint64_t size = st.st_size > 0 ? static_cast<uint64_t>(st.st_size) : 0;
    const uint64_t whole = size / sizeof(TSignRec);
    if (whole > static_cast<uint64_t>(TKxSignStore::kMaxRecords - store.Count())) {
        ::close(fd);
        return EFBIG;
    }
    const int32_t before = store.Count();
    TSignRec* dest = store.Extend(static_cast<size_t>(whole));
    if (!dest) {
        ::close(fd);
        return ENOMEM;
    }
    char* p = reinterpret_cast<char*>(dest);
    const size_t want = static_cast<size_t>(whole) * sizeof(TSignRec);
    size_t got = 0;
    int result = 0;
    while (got < want) {
        const ssize_t n = ::read(fd, p + got, want - got);
        if (n < 0) {
            if (errno == EINTR) continue;
            result = lastError();
            break;
        }
        if (n == 0) break;  // the file shrank meanwhile
        got += static_cast<size_t>(n);
    }
    ::close(fd);
    store.Truncate(before + static_cast<int32_t>(got / sizeof(TSignRec)));
    return result;
}

}  // namespace kx
