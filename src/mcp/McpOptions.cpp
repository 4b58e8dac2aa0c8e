#include "mcp/McpOptions.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

namespace {

McpOptions usageError(const QString& message) {
    McpOptions options;
    options.action = McpOptions::Action::usageError;
    options.error = message;
    return options;
}

} // namespace

McpOptions McpOptions::parse(const QStringList& arguments) {
    McpOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == u"--help"_s || argument == u"-h"_s) {
            options.action = Action::help;
            return options;
        }
        if (argument == u"--version"_s) {
            options.action = Action::version;
            return options;
        }
        std::optional<QString> client;
        if (argument == u"--client"_s) {
            if (i + 1 >= arguments.size())
                return usageError(u"--client needs the id of the AI tool"_s);
            client = arguments.at(++i);
        } else if (argument.startsWith(u"--client="_s)) {
            client = argument.mid(9);
        } else if (argument.startsWith(u'-')) {
            return usageError(u"unknown option \""_s + argument + u'"');
        } else {
            return usageError(u"unexpected argument \""_s + argument + u'"');
        }
        if (client->trimmed().isEmpty())
            return usageError(u"--client needs the id of the AI tool"_s);
        options.clientId = *client;
    }
    return options;
}

QString McpOptions::helpText() {
    return u"Usage: hueshelf-mcp [--client ID]\n"
           u"\n"
           u"The MCP server of HueShelf: AI coding tools start it and talk to it over standard\n"
           u"input and output (newline-delimited JSON-RPC), to read the user's color palettes,\n"
           u"check contrast and palettes, convert color codes and save new palettes. It stops\n"
           u"at the end of its input.\n"
           u"\n"
           u"Options:\n"
           u"  --client ID   the id of the AI tool that started it; each tool call is noted\n"
           u"                under this id in $XDG_DATA_HOME/hueshelf/ai-tool-last-used.json\n"
           u"  --help        show this help and exit\n"
           u"  --version     show the version and exit\n"_s;
}

QString McpOptions::versionText() {
    return u"hueshelf-mcp "_s + QStringLiteral(HUESHELF_VERSION) + u'\n';
}

} // namespace hueshelf::mcp
