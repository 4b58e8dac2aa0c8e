#include "aitools/AIToolConnector.h"

#include "aitools/AIToolConfigWriter.h"
#include "util/AppPaths.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

namespace hueshelf {

namespace {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

AIToolConnector AIToolConnector::forCurrentProcess(const AppPaths& paths) {
    return forPaths(paths, defaultBinaryPath());
}

AIToolConnector AIToolConnector::forPaths(const AppPaths& paths, const QString& binaryPath) {
    return AIToolConnector{binaryPath, lastUsedPathFor(paths), paths.home,
                           defaultClaudeCandidates(paths.home)};
}

QString AIToolConnector::defaultBinaryPath() {
    return QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(u"hueshelf-mcp"_s);
}

QString AIToolConnector::lastUsedPathFor(const AppPaths& paths) {
    return paths.dataDir + u"/ai-tool-last-used.json";
}

QStringList AIToolConnector::defaultClaudeCandidates(const QString& home) {
    return {u"/opt/homebrew/bin/claude"_s, u"/usr/local/bin/claude"_s,
            home + u"/.local/bin/claude"};
}

AIToolFailure AIToolConnector::connect(const AITool& tool) const {
    const QString name = AIToolConfigWriter::serverName();
    return std::visit(Overloaded{
                          [&](const AITool::JsonConfig& json) {
                              return AIToolConfigWriter::mergeJSONEntry(
                                  json.path, json.topKey, name,
                                  AIToolConfigWriter::makeEntry(json.style, binaryPath, tool.id));
                          },
                          [&](const AITool::TomlConfig& toml) {
                              return AIToolConfigWriter::writeTOMLEntry(toml.path, name, binaryPath,
                                                                        {u"--client"_s, tool.id});
                          },
                          [&](const AITool::ClaudeCLIConfig&) {
                              return runClaude({u"mcp"_s, u"add"_s, u"--scope"_s, u"user"_s, name,
                                                u"--"_s, binaryPath, u"--client"_s, tool.id});
                          },
                      },
                      tool.config);
}

AIToolFailure AIToolConnector::removeEntry(const AITool& tool) const {
    const QString name = AIToolConfigWriter::serverName();
    return std::visit(
        Overloaded{
            [&](const AITool::JsonConfig& json) {
                return AIToolConfigWriter::removeJSONEntry(json.path, json.topKey, name);
            },
            [&](const AITool::TomlConfig& toml) {
                return AIToolConfigWriter::removeTOMLEntry(toml.path, name);
            },
            [&](const AITool::ClaudeCLIConfig&) {
                return runClaude({u"mcp"_s, u"remove"_s, u"--scope"_s, u"user"_s, name});
            },
        },
        tool.config);
}

} // namespace hueshelf
