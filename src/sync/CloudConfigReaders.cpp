#include "sync/CloudConfigReaders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace hueshelf::CloudConfigReaders {

namespace {

QList<QString> linesOf(const QByteArray& bytes) {
    QList<QString> lines;
    for (const QByteArray& line : bytes.split('\n'))
        lines.append(QString::fromUtf8(line).trimmed());
    return lines;
}

bool isHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

// A value as QSettings writes it to an INI file: possibly in double quotes, with C-style
// escapes and \xHHHH for characters it didn't write plainly.
QString iniUnescaped(const QString& raw) {
    QString text = raw;
    if (text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"'))
        text = text.mid(1, text.size() - 2);
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != u'\\' || i + 1 == text.size()) {
            out += c;
            continue;
        }
        const QChar next = text.at(++i);
        if (next == u'x') {
            qsizetype end = i + 1;
            while (end < text.size() && end - i <= 4 && isHexDigit(text.at(end)))
                ++end;
            bool ok = false;
            const uint code = text.mid(i + 1, end - i - 1).toUInt(&ok, 16);
            if (ok) {
                out += QChar(char16_t(code));
                i = end - 1;
            } else {
                out += next;
            }
        } else {
            // \\ and \" stand for themselves; so, tolerantly, does anything unknown.
            out += next;
        }
    }
    return out;
}

} // namespace

std::optional<QByteArray> readSmallFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > maxFileBytes)
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // The size seen above may be stale or, for files of the kernel, zero: read at most one
    // byte more than allowed to tell.
    QByteArray bytes = file.read(maxFileBytes + 1);
    if (bytes.size() > maxFileBytes)
        return std::nullopt;
    return bytes;
}

QString absoluteFromConfig(const QString& path, const QString& home) {
    QString expanded = path;
    if (path == u"~")
        expanded = home;
    else if (path.startsWith(u"~/"))
        expanded = home + path.mid(1);
    if (expanded.isEmpty() || !QDir::isAbsolutePath(expanded))
        return QString();
    return QDir::cleanPath(expanded);
}

QStringList dropboxFolders(const QByteArray& infoJson, const QString& home) {
    QStringList folders;
    const QJsonDocument document = QJsonDocument::fromJson(infoJson);
    if (!document.isObject())
        return folders;
    for (const QString& account : {u"personal"_s, u"business"_s}) {
        const QJsonValue path = document.object().value(account).toObject().value(u"path"_s);
        const QString folder = absoluteFromConfig(path.toString(), home);
        if (!folder.isEmpty())
            folders.append(folder);
    }
    return folders;
}

std::optional<QString> oneDriveSyncDir(const QByteArray& config, const QString& home) {
    std::optional<QString> found;
    for (const QString& line : linesOf(config)) {
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0 || line.left(equals).trimmed() != u"sync_dir")
            continue;
        QString value = line.mid(equals + 1).trimmed();
        if (value.startsWith(u'"') || value.startsWith(u'\'')) {
            const qsizetype close = value.indexOf(value.at(0), 1);
            if (close < 0)
                continue; // a line cut short says nothing we can trust
            value = value.mid(1, close - 1);
        } else {
            const qsizetype comment = value.indexOf(u'#');
            if (comment >= 0)
                value = value.left(comment).trimmed();
        }
        // The client reads the file top to bottom, so a later setting overrides an earlier one.
        const QString folder = absoluteFromConfig(value, home);
        if (!folder.isEmpty())
            found = folder;
    }
    return found;
}

QStringList nextcloudFolders(const QByteArray& config, const QString& home) {
    QStringList folders;
    for (const QString& line : linesOf(config)) {
        if (line.isEmpty() || line.startsWith(u'[') || line.startsWith(u';') ||
            line.startsWith(u'#'))
            continue;
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = line.left(equals).trimmed();
        const qsizetype lastSeparator = std::max(key.lastIndexOf(u'\\'), key.lastIndexOf(u'/'));
        if (key.mid(lastSeparator + 1) != u"localPath")
            continue;
        const QString folder =
            absoluteFromConfig(iniUnescaped(line.mid(equals + 1).trimmed()), home);
        if (!folder.isEmpty() && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

QStringList syncthingFolders(const QByteArray& configXml, const QString& home) {
    QStringList folders;
    QXmlStreamReader reader(configXml);
    int depth = 0;
    bool isSyncthingConfig = false;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        ++depth;
        if (depth == 1) {
            isSyncthingConfig = reader.name() == u"configuration";
            if (!isSyncthingConfig)
                return {};
        } else if (depth == 2 && reader.name() == u"folder") {
            const QString folder =
                absoluteFromConfig(reader.attributes().value(u"path"_s).toString(), home);
            if (!folder.isEmpty())
                folders.append(folder);
        }
    }
    if (reader.hasError() || !isSyncthingConfig)
        return {};
    return folders;
}

} // namespace hueshelf::CloudConfigReaders
