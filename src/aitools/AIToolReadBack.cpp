#include "aitools/AIToolConfigWriter.h"
#include "aitools/AIToolConnector.h"
#include "aitools/ForeignFiles.h"

using namespace Qt::StringLiterals;

namespace hueshelf {

namespace {

QString claudeStatusPath(const QString& home) {
    return home + u"/.claude.json";
}

QStringView trimmedOfBlanks(QStringView text) {
    while (!text.isEmpty() && (text.front() == u' ' || text.front() == u'\t'))
        text = text.sliced(1);
    while (!text.isEmpty() && (text.back() == u' ' || text.back() == u'\t'))
        text.chop(1);
    return text;
}

QStringView trimmedOfQuotes(QStringView text) {
    while (!text.isEmpty() && text.front() == u'"')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == u'"')
        text.chop(1);
    return text;
}

// Root → `topKey` → "hueshelf" → "command", if all of it is there and the command a string.
std::optional<QString> commandInJson(const QString& path, const QString& topKey) {
    const std::optional<ForeignJson> root = ForeignFiles::readJsonObject(path);
    if (!root)
        return std::nullopt;
    const ForeignJson* servers = root->find(topKey);
    if (!servers || !servers->isObject())
        return std::nullopt;
    const ForeignJson* entry = servers->find(AIToolConfigWriter::serverName());
    if (!entry || !entry->isObject())
        return std::nullopt;
    const ForeignJson* command = entry->find(u"command"_s);
    if (!command || !command->isString())
        return std::nullopt;
    return command->stringValue();
}

// A scan of lines, not a TOML reader: the first "command" line after the header, up to the
// next table. Escapes are left as written.
std::optional<QString> commandInToml(const QString& path) {
    const std::optional<QString> text = ForeignFiles::readUtf8Text(path);
    if (!text)
        return std::nullopt;
    const QString header = AIToolConfigWriter::tomlHeader(AIToolConfigWriter::serverName());
    bool inSection = false;
    for (const QStringView line : QStringView(*text).split(u'\n')) {
        const QStringView trimmed = trimmedOfBlanks(line);
        if (!inSection) {
            inSection = trimmed == header;
            continue;
        }
        if (trimmed.startsWith(u'['))
            return std::nullopt;
        if (!trimmed.startsWith(u"command"))
            continue;
        const qsizetype equals = trimmed.indexOf(u'=');
        if (equals < 0)
            continue;
        return trimmedOfQuotes(trimmedOfBlanks(trimmed.sliced(equals + 1))).toString();
    }
    return std::nullopt;
}

} // namespace

bool AIToolConnector::isConfigured(const AITool& tool) const {
    const QString name = AIToolConfigWriter::serverName();
    if (const auto* json = std::get_if<AITool::JsonConfig>(&tool.config)) {
        const std::optional<ForeignJson> root = ForeignFiles::readJsonObject(json->path);
        if (!root)
            return false;
        const ForeignJson* servers = root->find(json->topKey);
        return servers && servers->isObject() && servers->contains(name);
    }
    if (const auto* toml = std::get_if<AITool::TomlConfig>(&tool.config)) {
        const std::optional<QString> text = ForeignFiles::readUtf8Text(toml->path);
        return text &&
               text->contains(AIToolConfigWriter::tomlHeader(AIToolConfigWriter::serverName()));
    }
    // Claude Code's own file is big and its shape is its own: a plain text search suffices.
    const std::optional<QString> text = ForeignFiles::readUtf8Text(claudeStatusPath(home));
    return text && text->contains(u'"' + name + u'"');
}

std::optional<QString> AIToolConnector::configuredCommand(const AITool& tool) const {
    if (const auto* json = std::get_if<AITool::JsonConfig>(&tool.config))
        return commandInJson(json->path, json->topKey);
    if (const auto* toml = std::get_if<AITool::TomlConfig>(&tool.config))
        return commandInToml(toml->path);
    return commandInJson(claudeStatusPath(home), u"mcpServers"_s);
}

} // namespace hueshelf
