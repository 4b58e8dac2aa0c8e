#include "aitools/AIToolConfigWriter.h"
#include "aitools/ForeignFiles.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace hueshelf::AIToolConfigWriter {

namespace {

// Only spaces and tabs: a carriage return stays, so a CRLF header line isn't a header.
QStringView trimmedOfBlanks(QStringView line) {
    qsizetype begin = 0;
    qsizetype end = line.size();
    while (begin < end && (line[begin] == u' ' || line[begin] == u'\t'))
        ++begin;
    while (end > begin && (line[end - 1] == u' ' || line[end - 1] == u'\t'))
        --end;
    return line.sliced(begin, end - begin);
}

QString quotedTomlString(QString text) {
    text.replace(u"\\"_s, u"\\\\"_s);
    text.replace(u"\""_s, u"\\\""_s);
    return u'"' + text + u'"';
}

} // namespace

QString tomlHeader(const QString& name) {
    return u"[mcp_servers."_s + name + u']';
}

QString tomlBlock(const QString& name, const QString& command, const QStringList& args) {
    QStringList quotedArgs;
    for (const QString& arg : args)
        quotedArgs.append(quotedTomlString(arg));
    return tomlHeader(name) + u"\ncommand = "_s + quotedTomlString(command) + u"\nargs = ["_s +
           quotedArgs.join(u", "_s) + u"]\n"_s;
}

QString strippedTOML(const QString& text, const QString& name) {
    const QString header = tomlHeader(name);
    QStringList kept;
    bool inSection = false;
    for (const QString& line : text.split(u'\n')) {
        const QStringView trimmed = trimmedOfBlanks(line);
        if (trimmed == header) {
            inSection = true;
            continue;
        }
        if (inSection) {
            if (!trimmed.startsWith(u'['))
                continue;
            inSection = false;
        }
        kept.append(line);
    }
    while (kept.size() >= 2 && kept.at(kept.size() - 1).isEmpty() &&
           kept.at(kept.size() - 2).isEmpty())
        kept.removeLast();
    return kept.join(u'\n');
}

AIToolFailure writeTOMLEntry(const QString& path, const QString& name, const QString& command,
                             const QStringList& args) {
    QString text;
    const std::optional<QString> existing = ForeignFiles::readUtf8Text(path);
    // A file that is there but can't be read as UTF-8 is not TOML, but it is still the user's:
    // it is refused rather than replaced.
    if (!existing && QFileInfo::exists(path))
        return PlatformError{u"The file exists but can't be read as UTF-8 text"_s};
    if (existing) {
        if (AIToolFailure failure = backupOnce(path))
            return failure;
        text = strippedTOML(*existing, name);
        if (!text.isEmpty()) {
            if (!text.endsWith(u'\n'))
                text += u"\n\n"_s;
            else if (!text.endsWith(u"\n\n"))
                text += u'\n';
        }
    }
    text += tomlBlock(name, command, args);
    return writeAtomically(text.toUtf8(), path);
}

AIToolFailure removeTOMLEntry(const QString& path, const QString& name) {
    const std::optional<QString> text = ForeignFiles::readUtf8Text(path);
    if (!text)
        return std::nullopt;
    const QString stripped = strippedTOML(*text, name);
    if (stripped == *text)
        return std::nullopt;
    if (AIToolFailure failure = backupOnce(path))
        return failure;
    return writeAtomically(stripped.toUtf8(), path);
}

} // namespace hueshelf::AIToolConfigWriter
