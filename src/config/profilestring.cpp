#include "config/profilestring.h"

#include "config/folders.h"
#include "config/winini.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <vector>

namespace {

const QByteArray kBom("\xEF\xBB\xBF");
const QByteArray kDefaultLineEnd("\r\n");

bool isBareName(const QString &file)
{
    return !file.contains(u'/') && !file.contains(u'\\');
}

bool isWinIni(const QString &file)
{
    return file.compare(QLatin1String("WIN.INI"), Qt::CaseInsensitive) == 0;
}

// The file a name stands for: a bare name lives in the system folder. Empty
// for "WIN.INI", which no file holds, and when there is no system folder.
QString located(const QString &file)
{
    if (!isBareName(file))
        return file;
    const QString folder = systemIniFolder();
    return isWinIni(file) || folder.isEmpty() ? QString() : joinPath(folder, file);
}

// One line of the file: its bytes without the line end, and the line end
// ("\r\n", "\n", "\r" or nothing on a last line).
struct RawLine
{
    QByteArray text;
    QByteArray end;
};

struct RawFile
{
    bool utf8 = true;
    QByteArray bom;
    std::vector<RawLine> lines;

    QString decode(const QByteArray &bytes) const
    {
        return utf8 ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
    }
    QByteArray encode(const QString &text) const { return utf8 ? text.toUtf8() : text.toLatin1(); }
};

RawFile splitFile(const QByteArray &bytes)
{
    RawFile file;
    qsizetype pos = 0;
    if (bytes.startsWith(kBom)) {
        file.bom = kBom;
        pos = kBom.size();
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    (void)utf8.decode(QByteArrayView(bytes).sliced(pos));
    file.utf8 = !utf8.hasError();

    while (pos < bytes.size()) {
        qsizetype end = pos;
        while (end < bytes.size() && bytes[end] != '\n' && bytes[end] != '\r')
            ++end;
        RawLine line{bytes.mid(pos, end - pos), QByteArray()};
        if (end < bytes.size()) {
            const qsizetype endLength =
                bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n' ? 2 : 1;
            line.end = bytes.mid(end, endLength);
            end += endLength;
        }
        file.lines.push_back(line);
        pos = end;
    }
    return file;
}

std::optional<RawFile> loadFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    return splitFile(f.readAll());
}

bool isSpaceOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}

QStringView trimmed(QStringView s)
{
    while (!s.isEmpty() && isSpaceOrTab(s.front()))
        s = s.mid(1);
    while (!s.isEmpty() && isSpaceOrTab(s.back()))
        s.chop(1);
    return s;
}

// The section name of a header line "[name]", or nothing for other lines.
std::optional<QStringView> sectionName(QStringView line)
{
    line = trimmed(line);
    if (!line.startsWith(u'['))
        return std::nullopt;
    const qsizetype close = line.indexOf(u']');
    return trimmed(close < 0 ? line.mid(1) : line.mid(1, close - 1));
}

bool sameName(QStringView a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// Key and value of a "key=value" line; nothing for lines without "=".
std::optional<std::pair<QStringView, QStringView>> keyAndValue(QStringView line)
{
    const qsizetype eq = line.indexOf(u'=');
    if (eq < 0)
        return std::nullopt;
    return std::pair{trimmed(line.left(eq)), trimmed(line.mid(eq + 1))};
}

// The index of the header line of the first section of that name, or -1.
qsizetype findSection(const std::vector<QString> &lines, const QString &section)
{
    for (size_t i = 0; i < lines.size(); ++i) {
        const auto name = sectionName(lines[i]);
        if (name && sameName(*name, section))
            return qsizetype(i);
    }
    return -1;
}

std::vector<QString> decodeLines(const RawFile &file)
{
    std::vector<QString> lines;
    lines.reserve(file.lines.size());
    for (const RawLine &line : file.lines)
        lines.push_back(file.decode(line.text));
    return lines;
}

QString lookUp(const RawFile &file, const QString &section, const QString &key,
               const QString &defaultValue)
{
    const std::vector<QString> lines = decodeLines(file);
    const qsizetype header = findSection(lines, section);
    if (header < 0)
        return defaultValue;
    for (size_t i = size_t(header) + 1; i < lines.size(); ++i) {
        if (sectionName(lines[i]))
            break;
        const auto pair = keyAndValue(lines[i]);
        if (!pair || !sameName(pair->first, key))
            continue;
        QStringView value = pair->second;
        if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        return value.toString();
    }
    return defaultValue;
}

} // namespace

QString readProfileString(const QString &section, const QString &key, const QString &defaultValue,
                          const QString &file, int size)
{
    QString value = defaultValue;
    if (isWinIni(file)) {
        value = winIniValue(section, key);
        if (value.isEmpty())
            value = defaultValue;
    } else if (const QString path = located(file); !path.isEmpty()) {
        if (const std::optional<RawFile> raw = loadFile(path))
            value = lookUp(*raw, section, key, defaultValue);
    }
    // Room for the terminating NUL, as the caller's buffer has to hold it.
    return value.left(qMax(0, size - 1));
}

bool writeProfileString(const QString &section, const QString &key, const QString &value,
                        const QString &file)
{
    const QString path = located(file);
    if (path.isEmpty() || section.isEmpty() || key.isEmpty())
        return false;
    // The Windows folder always exists; its stand-in is made when first used.
    if (isBareName(file) && !QDir().mkpath(QFileInfo(path).path()))
        return false;
    const auto bytesOf = [](const RawFile &file) {
        QByteArray bytes = file.bom;
        for (const RawLine &line : file.lines)
            bytes += line.text + line.end;
        return bytes;
    };
    RawFile raw;
    QByteArray before;
    const bool existed = QFileInfo::exists(path);
    if (existed) {
        std::optional<RawFile> loaded = loadFile(path);
        if (!loaded)
            return false;
        raw = std::move(*loaded);
        before = bytesOf(raw);
    }
    QByteArray lineEnd = kDefaultLineEnd;
    for (const RawLine &line : raw.lines) {
        if (!line.end.isEmpty()) {
            lineEnd = line.end;
            break;
        }
    }
    const std::vector<QString> lines = decodeLines(raw);
    const RawLine keyLine{raw.encode(key + u'=' + value), lineEnd};

    // Inserts a new line after the one at index, giving that one a line end
    // if it was the file's unterminated last line.
    auto insertAfter = [&](qsizetype index, const RawLine &line) {
        if (index >= 0 && raw.lines[size_t(index)].end.isEmpty())
            raw.lines[size_t(index)].end = lineEnd;
        raw.lines.insert(raw.lines.begin() + (index + 1), line);
    };

    const qsizetype header = findSection(lines, section);
    if (header < 0) {
        insertAfter(qsizetype(raw.lines.size()) - 1,
                    RawLine{raw.encode(u'[' + section + u']'), lineEnd});
        insertAfter(qsizetype(raw.lines.size()) - 1, keyLine);
    } else {
        qsizetype lastContent = header;
        bool replaced = false;
        for (size_t i = size_t(header) + 1; i < lines.size(); ++i) {
            if (sectionName(lines[i]))
                break;
            if (!trimmed(lines[i]).isEmpty())
                lastContent = qsizetype(i);
            const auto pair = keyAndValue(lines[i]);
            if (pair && sameName(pair->first, key)) {
                raw.lines[i].text = keyLine.text;
                replaced = true;
                break;
            }
        }
        if (!replaced)
            insertAfter(lastContent, keyLine);
    }

    const QByteArray after = bytesOf(raw);
    // A value written again as it stands (the employee switch on every opening) costs
    // no rewrite and no sync to disk.
    if (existed && after == before)
        return true;
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    out.write(after);
    return out.commit();
}

std::optional<QStringList> readTextLines(const QString &file)
{
    const QString path = located(file);
    if (path.isEmpty())
        return std::nullopt;
    const std::optional<RawFile> raw = loadFile(path);
    if (!raw)
        return std::nullopt;
    QStringList lines;
    lines.reserve(qsizetype(raw->lines.size()));
    for (const RawLine &line : raw->lines)
        lines.append(raw->decode(line.text));
    return lines;
}
