#include "kx/host/inifile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <algorithm>
#include <cerrno>

#include "kx/host/format.h"
#include "kx/host/safefile.h"

namespace kx {
namespace {

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool isQuote(QChar c) {
    return c == u'"' || c == u'\'';
}

bool quoted(const QString& v) {
    return v.size() >= 2 && isQuote(v.front()) && v.back() == v.front();
}

QString readValue(QString v) {
    v = v.trimmed();
    return quoted(v) ? v.mid(1, v.size() - 2) : v;
}

QString writtenValue(QString v) {
    v.replace(u'\r', u' ').replace(u'\n', u' ');
    const bool blanks = !v.isEmpty() && (v.front().isSpace() || v.back().isSpace());
    return blanks || quoted(v) ? u'"' + v + u'"' : v;
}

bool writableSection(const QString& s) {
    return !s.isEmpty() && !s.contains(u']') && !s.contains(u'\r') && !s.contains(u'\n');
}

bool writableKey(const QString& k) {
    const QString t = k.trimmed();
    return !t.isEmpty() && !k.contains(u'=') && !k.contains(u'\r') && !k.contains(u'\n') &&
           !t.startsWith(u'[') && !t.startsWith(u';') && !t.startsWith(u'#');
}

int readWhole(const QString& name, QByteArray& out) {
    QFileInfo info(name);
    if (!info.exists()) return 0;
    if (info.isDir()) return EISDIR;
    if (info.size() > TIniFile::kMaxFileSize) return EFBIG;
    QFile f(name);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return EACCES;
    // In steps: QIODevice::read(n) allocates n bytes up front, which made every read of a
    // small file cost a 16 MiB buffer. A step of one byte more than the file's size reads
    // a small file in one go; reading on to one byte past the limit still catches a file
    // that grew after the size check.
    const qint64 step = std::clamp<qint64>(info.size() + 1, 1, 64 * 1024);
    out.clear();
    while (out.size() <= TIniFile::kMaxFileSize) {
        const QByteArray part =
            f.read(std::min<qint64>(step, TIniFile::kMaxFileSize + 1 - out.size()));
        if (part.isEmpty()) break;
        out += part;
    }
    if (f.error() != QFileDevice::NoError) return EIO;
    if (out.size() > TIniFile::kMaxFileSize) return EFBIG;
    return 0;
}

}  // namespace

TIniFile::TIniFile(const QString& fileName) : fileName_(fileName) {
    QByteArray text;
    readError_ = fileName.isEmpty() ? ENOENT : readWhole(fileName, text);
    parse(readError_ == 0 ? text : QByteArray());
}

void TIniFile::SetText(const QByteArray& text) {
    readError_ = 0;
    modified_ = false;
    parse(text);
}

void TIniFile::parse(const QByteArray& bytes) {
    // One byte-order mark is skipped and written back; QString::fromUtf8 would skip a
    // second one too, so that text after a run of marks changed on every save.
    static const QByteArray kBom("\xEF\xBB\xBF");
    bom_ = bytes.startsWith(kBom);
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    const QString text = decode(bom_ ? bytes.mid(kBom.size()) : bytes);
    crlf_ = text.contains(QStringLiteral("\r\n"));
    sections_.assign(1, TSection{});  // the lines before any section
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString line = lines[i];
        if (i == lines.size() - 1 && line.isEmpty()) break;  // after the last line end
        while (line.endsWith(u'\r'))
            line.chop(1);
        const QString t = line.trimmed();
        const qsizetype close = t.indexOf(u']');
        if (t.startsWith(u'[') && close > 0) {
            sections_.push_back(TSection{t.mid(1, close - 1).trimmed(), line, {}});
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        const bool comment = t.startsWith(u';') || t.startsWith(u'#');
        if (eq > 0 && !comment && !line.left(eq).trimmed().isEmpty())
            sections_.back().lines.push_back(
                {line.left(eq).trimmed(), readValue(line.mid(eq + 1)), line});
        else
            sections_.back().lines.push_back({QString(), line, QString()});
    }
}

const TIniFile::TSection* TIniFile::findSection(const QString& name) const {
    for (size_t i = 1; i < sections_.size(); ++i)
        if (sameName(sections_[i].name, name)) return &sections_[i];
    return nullptr;
}

TIniFile::TSection* TIniFile::findSection(const QString& name) {
    return const_cast<TSection*>(std::as_const(*this).findSection(name));
}

const TIniFile::TLine* TIniFile::findKey(const TSection& s, const QString& ident) {
    for (const TLine& l : s.lines)
        if (!l.key.isEmpty() && sameName(l.key, ident)) return &l;
    return nullptr;
}

QString TIniFile::ReadString(const QString& section, const QString& ident,
                             const QString& def) const {
    const TSection* s = findSection(section.trimmed());
    const TLine* l = s ? findKey(*s, ident.trimmed()) : nullptr;
    return l ? l->value : def;
}

int32_t TIniFile::ReadInteger(const QString& section, const QString& ident, int32_t def) const {
    return StrToIntDef(ReadString(section, ident, QString()), def);
}

bool TIniFile::ReadBool(const QString& section, const QString& ident, bool def) const {
    int32_t v = 0;
    return TryStrToInt(ReadString(section, ident, QString()), v) ? v != 0 : def;
}

void TIniFile::WriteString(const QString& section, const QString& ident, const QString& value) {
    if (!writableSection(section) || !writableKey(ident)) return;
    const QString key = ident.trimmed();
    TSection* s = findSection(section.trimmed());
    if (!s) {
        sections_.push_back(TSection{section.trimmed(), QString(), {}});
        s = &sections_.back();
    }
    TLine* l = const_cast<TLine*>(findKey(*s, key));
    const QString stored = readValue(writtenValue(value));
    if (l && l->value == stored) return;
    if (l) {
        l->value = stored;
        l->raw.clear();
    } else {
        // After the last entry, so blank lines and comments that end the section stay there.
        auto at = s->lines.end();
        while (at != s->lines.begin() && std::prev(at)->key.isEmpty())
            --at;
        if (at == s->lines.begin()) at = s->lines.end();
        s->lines.insert(at, TLine{key, stored, QString()});
    }
    modified_ = true;
}

void TIniFile::WriteInteger(const QString& section, const QString& ident, int32_t value) {
    WriteString(section, ident, QString::number(value));
}

void TIniFile::WriteBool(const QString& section, const QString& ident, bool value) {
    WriteString(section, ident, value ? QStringLiteral("1") : QStringLiteral("0"));
}

bool TIniFile::SectionExists(const QString& section) const {
    return findSection(section.trimmed()) != nullptr;
}

bool TIniFile::ValueExists(const QString& section, const QString& ident) const {
    const TSection* s = findSection(section.trimmed());
    return s && findKey(*s, ident.trimmed());
}

QStringList TIniFile::ReadSections() const {
    QStringList names;
    for (size_t i = 1; i < sections_.size(); ++i)
        names << sections_[i].name;
    return names;
}

QStringList TIniFile::ReadSection(const QString& section) const {
    QStringList keys;
    if (const TSection* s = findSection(section.trimmed()))
        for (const TLine& l : s->lines)
            if (!l.key.isEmpty()) keys << l.key;
    return keys;
}

void TIniFile::EraseSection(const QString& section) {
    for (size_t i = 1; i < sections_.size(); ++i) {
        if (sameName(sections_[i].name, section.trimmed())) {
            sections_.erase(sections_.begin() + static_cast<std::ptrdiff_t>(i));
            modified_ = true;
            return;
        }
    }
}

void TIniFile::DeleteKey(const QString& section, const QString& ident) {
    TSection* s = findSection(section.trimmed());
    if (!s) return;
    const TLine* l = findKey(*s, ident.trimmed());
    if (!l) return;
    s->lines.erase(s->lines.begin() + (l - s->lines.data()));
    modified_ = true;
}

QByteArray TIniFile::Text() const {
    const QString eol = crlf_ ? QStringLiteral("\r\n") : QStringLiteral("\n");
    QString out = bom_ ? QString(QChar(0xFEFF)) : QString();
    const qsizetype start = out.size();
    for (size_t i = 0; i < sections_.size(); ++i) {
        const TSection& s = sections_[i];
        if (i > 0) {
            // A new section after other text stands apart by one blank line.
            if (s.header.isEmpty() && out.size() > start && !out.endsWith(eol + eol)) out += eol;
            out += (s.header.isEmpty() ? u'[' + s.name + u']' : s.header) + eol;
        }
        for (const TLine& l : s.lines)
            out += (l.key.isEmpty()   ? l.value
                    : l.raw.isEmpty() ? l.key + u'=' + writtenValue(l.value)
                                      : l.raw) +
                   eol;
    }
    return out.toUtf8();
}

int TIniFile::UpdateFile() {
    if (readError_ != 0) return readError_;
    if (!modified_) return 0;
    const QByteArray text = Text();
    const int result = KxReplaceFile(fileName_, text.constData(), size_t(text.size()));
    if (result == 0) modified_ = false;
    return result;
}

QString KxApplicationDir() {
    static const QString dir = [] {
        const QString d = QCoreApplication::instance() ? QCoreApplication::applicationDirPath()
                                                       : QDir::currentPath();
        return d.endsWith(u'/') ? d : d + u'/';
    }();
    return dir;
}

QString ExtractFileName(const QString& path) {
    const qsizetype cut = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    return path.mid(cut + 1);
}

}  // namespace kx
