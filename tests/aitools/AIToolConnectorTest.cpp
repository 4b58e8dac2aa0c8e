#include "aitools/AIToolConnector.h"

#include "AIToolTestSupport.h"
#include "util/AppPaths.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

const QString binary = u"/opt/hs/hueshelf-mcp"_s;

// A home with the Linux tool table over it and a fake `claude` as the only candidate.
class ConnectorFixture : public ::testing::Test {
protected:
    ConnectorFixture()
        : fakeClaude(scratch, u"bin"_s, scratch.path(u"home/.claude.json"_s)),
          tools(AIToolRegistry::linuxTools(scratch.path(u"home"_s), scratch.path(u"root"_s))) {
        scratch.makeDir(u"home"_s);
        connector = AIToolConnector{binary,
                                    scratch.path(u"data/ai-tool-last-used.json"_s),
                                    scratch.path(u"home"_s),
                                    {fakeClaude.program()}};
    }

    const AITool& tool(const QString& id) const {
        for (const AITool& candidate : tools) {
            if (candidate.id == id)
                return candidate;
        }
        throw std::logic_error("no such tool");
    }

    Scratch scratch;
    FakeClaude fakeClaude;
    QList<AITool> tools;
    AIToolConnector connector;
};

const QStringList addArguments(const QString& id) {
    return {u"mcp"_s, u"add"_s, u"--scope"_s,  u"user"_s, u"hueshelf"_s,
            u"--"_s,  binary,   u"--client"_s, id};
}
const QStringList removeArguments{u"mcp"_s, u"remove"_s, u"--scope"_s, u"user"_s, u"hueshelf"_s};

class ConnectEachTool : public ConnectorFixture, public ::testing::WithParamInterface<QString> {};

TEST_P(ConnectEachTool, connectsReadsBackAndRemoves) {
    const AITool& subject = tool(GetParam());
    EXPECT_FALSE(connector.isConfigured(subject));
    ASSERT_EQ(connector.connect(subject), std::nullopt);
    EXPECT_TRUE(connector.isConfigured(subject));
    EXPECT_EQ(connector.configuredCommand(subject), binary);
    ASSERT_EQ(connector.removeEntry(subject), std::nullopt);
    EXPECT_FALSE(connector.isConfigured(subject));
    EXPECT_EQ(connector.configuredCommand(subject), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(AIToolConnector, ConnectEachTool,
                         ::testing::Values(u"claude-code"_s, u"claude-desktop"_s, u"cursor"_s,
                                           u"vscode"_s, u"windsurf"_s, u"zed"_s, u"gemini"_s,
                                           u"codex"_s),
                         [](const auto& test) {
                             return QString(test.param).replace(u'-', u'_').toStdString();
                         });

TEST_F(ConnectorFixture, entriesCarryTheToolsOwnClientId) {
    ASSERT_EQ(connector.connect(tool(u"zed"_s)), std::nullopt);
    ASSERT_EQ(connector.connect(tool(u"codex"_s)), std::nullopt);
    EXPECT_TRUE(scratch.read(u"home/.config/zed/settings.json"_s)
                    ->contains("\"--client\",\n        \"zed\""));
    EXPECT_TRUE(
        scratch.read(u"home/.codex/config.toml"_s)->contains("args = [\"--client\", \"codex\"]\n"));
}

TEST_F(ConnectorFixture, claudeIsRunWithItsArguments) {
    ASSERT_EQ(connector.connect(tool(u"claude-code"_s)), std::nullopt);
    ASSERT_EQ(connector.removeEntry(tool(u"claude-code"_s)), std::nullopt);
    EXPECT_EQ(fakeClaude.calls(),
              (QList<ClaudeCall>{addArguments(u"claude-code"_s), removeArguments}));
}

TEST_F(ConnectorFixture, firstExecutableCandidateIsRun) {
    const FakeClaude second(scratch, u"second"_s, scratch.path(u"unused.json"_s));
    scratch.write(u"plain/claude"_s, "#!/bin/sh\nexit 0\n"); // not executable
    scratch.makeDir(u"folder/claude"_s);                     // searchable, but no program
    connector.claudeCandidates = {scratch.path(u"nowhere/claude"_s),
                                  scratch.path(u"plain/claude"_s), scratch.path(u"folder/claude"_s),
                                  second.program(), fakeClaude.program()};
    ASSERT_EQ(connector.runClaude({u"--version"_s}), std::nullopt);
    EXPECT_EQ(second.calls(), QList<ClaudeCall>{{u"--version"_s}});
    EXPECT_TRUE(fakeClaude.calls().isEmpty());
}

TEST_F(ConnectorFixture, noExecutableCandidateIsNotFound) {
    scratch.write(u"plain/claude"_s, "#!/bin/sh\nexit 0\n");
    connector.claudeCandidates = {scratch.path(u"plain/claude"_s), scratch.path(u"nowhere"_s)};
    EXPECT_EQ(connector.runClaude({}), AIToolFailure(ConnectorError::claudeCLINotFound()));
}

TEST_F(ConnectorFixture, failingCommandReportsItsStandardError) {
    fakeClaude.failOn(u"add"_s, "Error: MCP server hueshelf already exists in user config\n");
    EXPECT_EQ(connector.connect(tool(u"claude-code"_s)),
              AIToolFailure(ConnectorError::claudeCLIFailed(
                  u"Error: MCP server hueshelf already exists in user config\n"_s)));
    fakeClaude.failOn(u"remove"_s, "\xFF\xFE not text");
    EXPECT_EQ(connector.removeEntry(tool(u"claude-code"_s)),
              AIToolFailure(ConnectorError::claudeCLIFailed(QString())));
}

TEST_F(ConnectorFixture, withoutClaudeOnlyClaudeCodeFails) {
    connector.claudeCandidates = {scratch.path(u"nowhere/claude"_s)};
    EXPECT_EQ(connector.connect(tool(u"claude-code"_s)),
              AIToolFailure(ConnectorError::claudeCLINotFound()));
    EXPECT_EQ(connector.connect(tool(u"claude-desktop"_s)), std::nullopt);
    EXPECT_TRUE(connector.isConfigured(tool(u"claude-desktop"_s)));
}

struct ReadBackCase {
    const char* label;
    const char* toolId;
    const char* file; // under the home
    QByteArray contents;
    bool configured;
    std::optional<QString> command;
};

class ReadBack : public ConnectorFixture, public ::testing::WithParamInterface<ReadBackCase> {};

TEST_P(ReadBack, findsTheEntryAndItsCommand) {
    const ReadBackCase& param = GetParam();
    scratch.write(u"home/"_s + QString::fromUtf8(param.file), param.contents);
    const AITool& subject = tool(QString::fromUtf8(param.toolId));
    EXPECT_EQ(connector.isConfigured(subject), param.configured);
    EXPECT_EQ(connector.configuredCommand(subject), param.command);
}

const char* const cursorFile = ".cursor/mcp.json";
const char* const codexFile = ".codex/config.toml";
const char* const claudeFile = ".claude.json";

INSTANTIATE_TEST_SUITE_P(
    AIToolConnector, ReadBack,
    ::testing::Values(
        ReadBackCase{"jsonEntry", "cursor", cursorFile,
                     R"({"mcpServers":{"hueshelf":{"command":"\/x"}}})", true, u"/x"_s},
        ReadBackCase{"jsonCommandNotText", "cursor", cursorFile,
                     R"({"mcpServers":{"hueshelf":{"command":5}}})", true, std::nullopt},
        ReadBackCase{"jsonEntryNotObject", "cursor", cursorFile,
                     R"({"mcpServers":{"hueshelf":"odd"}})", true, std::nullopt},
        ReadBackCase{"jsonArrayAtKey", "cursor", cursorFile,
                     R"({"mcpServers":[{"hueshelf":{"command":"/x"}}]})", false, std::nullopt},
        ReadBackCase{"jsonOtherKey", "cursor", cursorFile,
                     R"({"servers":{"hueshelf":{"command":"/x"}}})", false, std::nullopt},
        ReadBackCase{"jsonWithComment", "cursor", cursorFile,
                     "// mine\n{\"mcpServers\":{\"hueshelf\":{\"command\":\"/x\"}}}", false,
                     std::nullopt},
        ReadBackCase{"vscodeKey", "vscode", ".config/Code/User/mcp.json",
                     R"({"servers":{"hueshelf":{"command":"/x"}}})", true, u"/x"_s},
        ReadBackCase{"tomlBlock", "codex", codexFile, "[mcp_servers.hueshelf]\ncommand = \"/x\"\n",
                     true, u"/x"_s},
        ReadBackCase{"tomlLooseBlanks", "codex", codexFile,
                     " [mcp_servers.hueshelf]\t\n\tcommand\t= \t\"/x\"  \n", true, u"/x"_s},
        ReadBackCase{"tomlCommandBeforeHeaderIgnored", "codex", codexFile,
                     "command = \"/z\"\n[mcp_servers.hueshelf]\ncommand = \"/x\"\n", true, u"/x"_s},
        ReadBackCase{"tomlNextTableEndsTheSearch", "codex", codexFile,
                     "[mcp_servers.hueshelf]\nargs = []\n[other]\ncommand = \"/y\"\n", true,
                     std::nullopt},
        ReadBackCase{"tomlEscapesStayAsWritten", "codex", codexFile,
                     "[mcp_servers.hueshelf]\ncommand = \"C:\\\\x\"\n", true, u"C:\\\\x"_s},
        ReadBackCase{"tomlCommentStaysInTheCommand", "codex", codexFile,
                     "[mcp_servers.hueshelf]\ncommand = \"/x\" # note\n", true, u"/x\" # note"_s},
        ReadBackCase{"tomlSplitAtFirstEquals", "codex", codexFile,
                     "[mcp_servers.hueshelf]\ncommandline\ncommand=/x=y\n", true, u"/x=y"_s},
        ReadBackCase{"tomlCrlfHeaderFoundButNotRead", "codex", codexFile,
                     "[mcp_servers.hueshelf]\r\ncommand = \"/x\"\r\n", true, std::nullopt},
        ReadBackCase{"tomlHeaderInAComment", "codex", codexFile, "# [mcp_servers.hueshelf]\n", true,
                     std::nullopt},
        ReadBackCase{"tomlNotUtf8", "codex", codexFile, "[mcp_servers.hueshelf]\n\xFF\n", false,
                     std::nullopt},
        ReadBackCase{"claudeUserEntry", "claude-code", claudeFile,
                     R"({"mcpServers":{"hueshelf":{"type":"stdio","command":"/x"}}})", true,
                     u"/x"_s},
        ReadBackCase{"claudeProjectEntryOnlyFound", "claude-code", claudeFile,
                     R"({"projects":{"/p":{"mcpServers":{"hueshelf":{"command":"/x"}}}}})", true,
                     std::nullopt},
        ReadBackCase{"claudeNameAnywhere", "claude-code", claudeFile,
                     R"({"tips":["try \"hueshelf\""],"note":"hueshelf"})", true, std::nullopt},
        ReadBackCase{"claudeSimilarName", "claude-code", claudeFile,
                     R"({"mcpServers":{"hueshelf-dev":{"command":"/x"}}})", false, std::nullopt}),
    ByLabel());

TEST(AIToolConnectorPaths, realRunPlaces) {
    const AppPaths paths = AppPaths::forHome(u"/home/u"_s, u"/cfg"_s, u"/data"_s);
    const AIToolConnector connector = AIToolConnector::forPaths(paths, binary);
    EXPECT_EQ(connector.binaryPath, binary);
    EXPECT_EQ(connector.lastUsedPath, u"/data/hueshelf/ai-tool-last-used.json");
    EXPECT_EQ(connector.home, u"/home/u");
    EXPECT_EQ(connector.claudeCandidates,
              (QStringList{u"/opt/homebrew/bin/claude"_s, u"/usr/local/bin/claude"_s,
                           u"/home/u/.local/bin/claude"_s}));
}

} // namespace
} // namespace hueshelf::testing
