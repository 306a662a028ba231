#pragma once
// Record files: a plain sequence of 24-byte TSignRec records with no header; the record
// count is the file size divided by 24. The routines return 0 on success, otherwise the
// C errno value of the first step that failed (ENOENT, EACCES, EISDIR, ENOSPC, EIO, ...).
// Nothing throws.
//
// KxWriteRecordFile replaces a file crash-safely (KxReplaceFile, safefile.h): when any
// step fails, the old file is left as it was. Tests inject faults through
// SetFileFaultHook.
//
// KxAppendRecordFile appends to a file (creating it): a partial record left at the end by
// an earlier interrupted append is cut off first, so the new records stand on the 24-byte
// grid; a failed write cuts the file back to the whole records it held before the call, so
// the earlier records stay intact.
//
// KxReadRecordFile appends every whole record of a file to a store; a partial trailing
// record is ignored. It allocates no more than the file's whole records (a file that
// does not fit into memory, or into the store's int32 indices, gives ENOMEM or EFBIG and
// loads nothing); a directory gives EISDIR. A read error after some records keeps those
// that were read whole and returns the error.
#include <QString>
#include <cstddef>

#include "kx/recorders/signstore.h"

namespace kx {

int KxWriteRecordFile(const QString& name, const TSignRec* records, size_t count);
int KxAppendRecordFile(const QString& name, const TSignRec* records, size_t count);
int KxReadRecordFile(const QString& name, TKxSignStore& store);

}  // namespace kx
