#include "kx/recorders/recordfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "kx/host/safefile.h"

namespace kx {
namespace {

QByteArray path(const QString& name) {
    return QFile::encodeName(name);
}

}  // namespace

int KxWriteRecordFile(const QString& name, const TSignRec* records, size_t count) {
    return KxReplaceFile(name, reinterpret_cast<const char*>(records), count * sizeof(TSignRec));
}

int KxAppendRecordFile(const QString& name, const TSignRec* records, size_t count) {
    if (name.isEmpty()) return ENOENT;
    if (int e = KxFileFault(TFileStep::Open)) return e;
    errno = 0;
    const int fd = ::open(path(name).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return KxLastErrno();
    struct stat st {};
    int result = ::fstat(fd, &st) == 0 ? 0 : KxLastErrno();
    off_t start = 0;
    if (result == 0) {
        start = st.st_size - st.st_size % static_cast<off_t>(sizeof(TSignRec));
        if (start != st.st_size && ::ftruncate(fd, start) != 0) result = KxLastErrno();
    }
    if (result == 0 && ::lseek(fd, start, SEEK_SET) < 0) result = KxLastErrno();
    if (result == 0) result = KxWriteAll(fd, records, count * sizeof(TSignRec));
    if (result == 0) result = KxFlushFile(fd);
    if (result != 0) {
        // Give the earlier records back their file as it was.
        if (::ftruncate(fd, start) == 0) ::fsync(fd);
    }
    const int closed = ::close(fd) == 0 ? 0 : KxLastErrno();
    return result != 0 ? result : closed;
}

int KxReadRecordFile(const QString& name, TKxSignStore& store) {
    if (name.isEmpty()) return ENOENT;
    errno = 0;
    const int fd = ::open(path(name).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return KxLastErrno();
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        const int e = KxLastErrno();
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
            result = KxLastErrno();
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
