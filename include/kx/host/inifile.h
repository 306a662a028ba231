#pragma once
// TIniFile: the sections and keys of a classic INI file, held in memory.
//
// Why not QSettings: its INI format percent-encodes section and key names that hold
// spaces or other characters ("[Pump 1]" becomes "[Pump%201]"), splits values at commas
// into lists and quotes strings its own way, so the plain "key=value" files that other
// tools read and write would not survive a round trip. This class keeps the classic
// layout and every line it does not change.
//
// Reading (at construction): the file is read as UTF-8 (a byte-order mark is skipped and
// written back; a second one is text of the first line), lines end at LF with an optional
// CR. "[name]" opens a section (blanks around the name are ignored; text after "]" is
// ignored); "key=value" is an entry, with the blanks
// around key and value removed and one pair of matching quotes ("..." or '...') around
// the value taken away. Every other line (comments, blank lines, lines without "=") is
// kept as it stands and written back unchanged. Names compare without regard to case;
// when a section or key occurs twice, the first one counts. A missing file reads as
// empty; a file that exists but cannot be read, or is larger than kMaxFileSize, leaves
// the object empty with ReadError() set, and UpdateFile then refuses to write, so a
// file that could not be read is never overwritten by a partial copy.
//
// Writing: WriteString changes the first matching entry in place or appends the key to
// its section (a new section goes at the end of the file); entries that were not changed
// are written back exactly as they were read. CR and LF inside a value are
// written as blanks; a value with blanks at either end, or one that starts and ends with
// the same quote, is written in double quotes, so it reads back exactly. A section name
// that is empty or holds "]", CR or LF, and a key that is empty or holds "=", CR or LF
// or starts with "[", ";" or "#", cannot be written and is ignored. UpdateFile replaces
// the file crash-safely (KxReplaceFile) with the file's own line ends (CR LF when the
// file read had them, else LF), only when something changed.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace kx {

class TIniFile {
  public:
    static constexpr int64_t kMaxFileSize = 16 * 1024 * 1024;

    explicit TIniFile(const QString& fileName);

    const QString& FileName() const { return fileName_; }
    // 0, or the errno value of the failed read (a missing file is not a failure).
    int ReadError() const { return readError_; }

    QString ReadString(const QString& section, const QString& ident, const QString& def) const;
    // Decimal, or hexadecimal after "$" or "0x", fitting int32; anything else gives def.
    int32_t ReadInteger(const QString& section, const QString& ident, int32_t def) const;
    // "0" is false, any other integer true; anything else gives def.
    bool ReadBool(const QString& section, const QString& ident, bool def) const;
    void WriteString(const QString& section, const QString& ident, const QString& value);
    void WriteInteger(const QString& section, const QString& ident, int32_t value);
    void WriteBool(const QString& section, const QString& ident, bool value);

    bool SectionExists(const QString& section) const;
    bool ValueExists(const QString& section, const QString& ident) const;
    QStringList ReadSections() const;
    // The keys of a section, in file order.
    QStringList ReadSection(const QString& section) const;
    void EraseSection(const QString& section);
    void DeleteKey(const QString& section, const QString& ident);

    bool Modified() const { return modified_; }
    // Writes the file when modified: 0 on success (or nothing to write), otherwise the
    // errno value of the failed step (ReadError() when the file could not be read).
    int UpdateFile();

    // The contents as UpdateFile would write them; SetText parses contents as if read
    // from the file (clearing ReadError), for tests and for reading from other sources.
    QByteArray Text() const;
    void SetText(const QByteArray& text);

  private:
    struct TLine {
        QString key;    // empty for a line kept verbatim
        QString value;  // the value, or the verbatim line
        QString raw;    // an entry's line as read, written back while the value is unchanged
    };
    struct TSection {
        QString name;
        QString header;  // the "[...]" line as read; empty for the lines before any section
        std::vector<TLine> lines;
    };

    const TSection* findSection(const QString& name) const;
    TSection* findSection(const QString& name);
    static const TLine* findKey(const TSection& s, const QString& ident);
    void parse(const QByteArray& text);

    QString fileName_;
    std::vector<TSection> sections_;
    int readError_ = 0;
    bool modified_ = false;
    bool crlf_ = false;
    bool bom_ = false;
};

// The directory of the running executable, with a trailing "/", taken once (the current
// directory when no application object exists yet).
QString KxApplicationDir();
// The file-name part of a path: what follows the last "/" or "\" (both count, so names
// from files of the classic platform work too).
QString ExtractFileName(const QString& path);

}  // namespace kx
