#pragma once
// Crash-safe file replacement and the fault hook the file writers share.
//
// KxReplaceFile writes the new contents to a temporary file in the same folder
// ("<name>.XXXXXX"), flushes it to the disk and only then renames it over the old file,
// so a crash or a full disk at any moment leaves either the old file or the new one,
// never a mixture. The result is 0 on success, otherwise the C errno value of the first
// step that failed (ENOENT for an empty name, EACCES, ENOSPC, EIO, ...); the temporary
// file is then removed and the old file is left as it was. Nothing throws.
#include <QString>
#include <cstddef>
#include <functional>

namespace kx {

int KxReplaceFile(const QString& name, const char* data, size_t bytes);

// The steps a save goes through. For tests, a fault hook returning an errno value (not 0)
// makes that step fail with it, as a full disk or a crash would; nullptr removes the
// hook. Every writer of the library (record files, INI files) passes through it.
enum class TFileStep { Open, Write, Flush, Rename };
using TFileFaultHook = std::function<int(TFileStep)>;
void SetFileFaultHook(TFileFaultHook hook);

// Helpers for writers that need more than a replacement (appending, for one): each
// returns 0 or an errno value and consults the fault hook first.
int KxFileFault(TFileStep step);
int KxWriteAll(int fd, const void* data, size_t bytes);
int KxFlushFile(int fd);
// errno of the last call, never 0 (a failed call that left errno alone counts as EIO).
int KxLastErrno();

}  // namespace kx
