#include "AIToolTestSupport.h"
#include "aitools/AIToolConnector.h"

#include <QDirIterator>

#include <gtest/gtest.h>

#include <unistd.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using AIToolRegistry::ToolPlatform;

const QString binary = u"/opt/hs/hueshelf-mcp"_s;

QByteArray cursorFileFor(const QByteArray& command) {
    return R"({"mcpServers":{"hueshelf":{"args":["--client","cursor"],"command":")" + command +
           R"("}}})";
}

class Healing : public ::testing::Test {
protected:
    Healing()
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

    // A JSON tool whose settings can be read but not replaced, whoever runs the test: the
    // copy's name would pass the file system's limit of 255 bytes while the file's does not.
    AITool unwritableJsonTool(const QString& id, const QString& name, const QByteArray& contents) {
        const QString file = u"home/"_s + QString(240, u'x') + u".json";
        scratch.write(file, contents);
        return AITool{id,
                      name,
                      AITool::JsonConfig{scratch.path(file), u"mcpServers"_s,
                                         AIToolRegistry::EntryStyle::standard},
                      {}};
    }

    Scratch scratch;
    FakeClaude fakeClaude;
    QList<AITool> tools;
    AIToolConnector connector;
};

struct CursorCase {
    const char* label;
    std::optional<QByteArray> contents; // nothing: no file
    QString runningFrom;
    HealResult result;
    bool fileUntouched;
};

class HealCursor : public Healing, public ::testing::WithParamInterface<CursorCase> {};

TEST_P(HealCursor, endsAsExpected) {
    const CursorCase& param = GetParam();
    if (param.contents)
        scratch.write(u"home/.cursor/mcp.json"_s, *param.contents);
    connector.binaryPath = param.runningFrom;
    EXPECT_EQ(connector.healEntry(tool(u"cursor"_s)), param.result);
    EXPECT_EQ(scratch.read(u"home/.cursor/mcp.json"_s) == param.contents, param.fileUntouched);
    if (param.result.kind == HealResult::Kind::repaired) {
        EXPECT_EQ(connector.configuredCommand(tool(u"cursor"_s)), param.runningFrom);
    }
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConnector, HealCursor,
    ::testing::Values(
        CursorCase{"noFile", std::nullopt, binary, HealResult::notConfigured(), true},
        CursorCase{"noEntry", R"({"mcpServers":{}})", binary, HealResult::notConfigured(), true},
        CursorCase{"brokenAfterConnecting", cursorFileFor("/old") + ",", binary,
                   HealResult::notConfigured(), true},
        CursorCase{"samePath", cursorFileFor(binary.toUtf8()), binary, HealResult::upToDate(),
                   true},
        CursorCase{"otherCopy", cursorFileFor("/old/hueshelf-mcp"), binary,
                   HealResult::repaired(u"/old/hueshelf-mcp"_s), false},
        CursorCase{"entryWithoutCommand", R"({"mcpServers":{"hueshelf":{}}})", binary,
                   HealResult::repaired(std::nullopt), false},
        CursorCase{"runningFromAppImage", cursorFileFor("/old/hueshelf-mcp"),
                   u"/tmp/.mount_HueShXq1/usr/bin/hueshelf-mcp"_s, HealResult::leftAlone(), true},
        // An unstable place that is already the entry's needs no change either.
        CursorCase{"unstableButSame", cursorFileFor("/Volumes/HueShelf/hueshelf-mcp"),
                   u"/Volumes/HueShelf/hueshelf-mcp"_s, HealResult::upToDate(), true}),
    ByLabel());

TEST_F(Healing, unwritableSettingsNeedAttention) {
    const AITool cursor = unwritableJsonTool(u"cursor"_s, u"Cursor"_s, cursorFileFor("/old"));
    EXPECT_EQ(connector.healEntry(cursor),
              HealResult::needsAttention(u"Cursor's settings file couldn't be updated."_s));
    EXPECT_EQ(connector.configuredCommand(cursor), u"/old");
}

TEST_F(Healing, readOnlySettingsNeedAttention) {
    if (geteuid() == 0)
        GTEST_SKIP() << "read-only files are writable for root";
    scratch.write(u"home/.cursor/mcp.json"_s, cursorFileFor("/old"));
    QFile::setPermissions(scratch.path(u"home/.cursor/mcp.json"_s), QFile::ReadOwner);
    EXPECT_EQ(connector.healEntry(tool(u"cursor"_s)),
              HealResult::needsAttention(u"Cursor's settings file couldn't be updated."_s));
}

// What was written is read back without undoing escapes, so a quote in the path never matches.
TEST_F(Healing, writeThatDoesNotReadBackNeedsAttention) {
    connector.binaryPath = u"/opt/Hue\"Shelf/hueshelf-mcp"_s;
    scratch.write(u"home/.codex/config.toml"_s, "[mcp_servers.hueshelf]\ncommand = \"/old\"\n");
    EXPECT_EQ(connector.healEntry(tool(u"codex"_s)),
              HealResult::needsAttention(u"Codex still points at a different copy of HueShelf."_s));
}

// A CRLF header counts as configured but can't be read or stripped: a second block follows.
TEST_F(Healing, crlfTomlGetsASecondBlock) {
    const QByteArray crlf = "[mcp_servers.hueshelf]\r\ncommand = \"/old\"\r\n";
    scratch.write(u"home/.codex/config.toml"_s, crlf);
    EXPECT_EQ(connector.healEntry(tool(u"codex"_s)), HealResult::repaired(std::nullopt));
    EXPECT_EQ(*scratch.read(u"home/.codex/config.toml"_s),
              crlf + "\n[mcp_servers.hueshelf]\ncommand = \"/opt/hs/hueshelf-mcp\"\n"
                     "args = [\"--client\", \"codex\"]\n");
}

const QStringList addArguments{u"mcp"_s, u"add"_s, u"--scope"_s,  u"user"_s,       u"hueshelf"_s,
                               u"--"_s,  binary,   u"--client"_s, u"claude-code"_s};
const QStringList removeArguments{u"mcp"_s, u"remove"_s, u"--scope"_s, u"user"_s, u"hueshelf"_s};

struct ClaudeCase {
    const char* label;
    const char* failOn; // "add", "remove" or ""
    bool frozen;
    HealResult result;
};

class HealClaude : public Healing, public ::testing::WithParamInterface<ClaudeCase> {};

TEST_P(HealClaude, removesThenAddsAndReadsBack) {
    const ClaudeCase& param = GetParam();
    scratch.write(u"home/.claude.json"_s, R"({"mcpServers":{"hueshelf":{"command":"/old"}}})");
    if (*param.failOn)
        fakeClaude.failOn(QString::fromUtf8(param.failOn), "it went wrong\n");
    if (param.frozen)
        fakeClaude.freeze();
    EXPECT_EQ(connector.healEntry(tool(u"claude-code"_s)), param.result);
    EXPECT_EQ(fakeClaude.calls(), (QList<ClaudeCall>{removeArguments, addArguments}));
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConnector, HealClaude,
    ::testing::Values(
        ClaudeCase{"repaired", "", false, HealResult::repaired(u"/old"_s)},
        ClaudeCase{"failedRemovalIsSwallowed", "remove", false, HealResult::repaired(u"/old"_s)},
        ClaudeCase{
            "failedAdd", "add", false,
            HealResult::needsAttention(u"Claude Code's settings file couldn't be updated."_s)},
        ClaudeCase{"addThatChangesNothing", "", true,
                   HealResult::needsAttention(
                       u"Claude Code still points at a different copy of HueShelf."_s)}),
    ByLabel());

TEST_F(Healing, upToDateClaudeRunsNothing) {
    scratch.write(u"home/.claude.json"_s,
                  R"({"mcpServers":{"hueshelf":{"command":"/opt/hs/hueshelf-mcp"}}})");
    EXPECT_EQ(connector.healEntry(tool(u"claude-code"_s)), HealResult::upToDate());
    EXPECT_TRUE(fakeClaude.calls().isEmpty());
}

TEST_F(Healing, healAllKeepsOnlyWhatNeedsAttention) {
    scratch.write(u"home/.cursor/mcp.json"_s, cursorFileFor("/old"));
    scratch.write(u"home/.claude.json"_s, R"({"mcpServers":{"hueshelf":{"command":"/old"}}})");
    scratch.write(u"home/.gemini/settings.json"_s, "{,}");
    fakeClaude.freeze();
    QList<AITool> all = tools;
    all.append(unwritableJsonTool(u"other"_s, u"Other"_s, cursorFileFor("/old")));
    EXPECT_EQ(
        connector.healAll(all),
        (QMap<QString, QString>{
            {u"claude-code"_s, u"Claude Code still points at a different copy of HueShelf."_s},
            {u"other"_s, u"Other's settings file couldn't be updated."_s}}));
    EXPECT_EQ(connector.configuredCommand(tool(u"cursor"_s)), binary);
}

// Every file below the scratch directory with its bytes.
QMap<QString, QByteArray> snapshot(const Scratch& scratch) {
    QMap<QString, QByteArray> files;
    QDirIterator it(scratch.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        files.insert(path, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("?"));
    }
    return files;
}

TEST_F(Healing, disconnectingNothingTouchesNothing) {
    scratch.write(u"home/.cursor/mcp.json"_s, R"({"mcpServers":{"other":{}}})");
    scratch.write(u"home/.codex/config.toml"_s, "model = 1\n");
    const QMap<QString, QByteArray> before = snapshot(scratch);
    EXPECT_EQ(connector.disconnectAll(tools), AIToolConnector::DisconnectReport());
    EXPECT_EQ(snapshot(scratch), before);
    EXPECT_TRUE(fakeClaude.calls().isEmpty());
}

TEST_F(Healing, disconnectAllWalksOnPastFailures) {
    scratch.write(u"home/.claude.json"_s, R"({"mcpServers":{"hueshelf":{"command":"/x"}}})");
    fakeClaude.failOn(u"remove"_s, "no\n");
    scratch.write(u"home/.cursor/mcp.json"_s, cursorFileFor("/x"));
    scratch.write(u"home/.gemini/settings.json"_s, cursorFileFor("/x") + "//"); // unparseable
    scratch.write(u"home/.codex/config.toml"_s, "[mcp_servers.hueshelf]\ncommand = \"/x\"\n");
    scratch.write(u"home/.config/zed/settings.json"_s, R"({"theme":"One"})");
    EXPECT_EQ(connector.disconnectAll(tools),
              (AIToolConnector::DisconnectReport{{u"Cursor"_s, u"Codex"_s}, {u"Claude Code"_s}}));
    EXPECT_FALSE(connector.isConfigured(tool(u"cursor"_s)));
    EXPECT_FALSE(connector.isConfigured(tool(u"codex"_s)));
    EXPECT_EQ(scratch.read(u"home/.config/zed/settings.json"_s), R"({"theme":"One"})");
}

struct PathCase {
    const char* path;
    ToolPlatform platform;
    bool unstable;
};

class UnstablePath : public ::testing::TestWithParam<PathCase> {};

TEST_P(UnstablePath, isRecognised) {
    EXPECT_EQ(
        AIToolConnector::isUnstablePath(QString::fromUtf8(GetParam().path), GetParam().platform),
        GetParam().unstable)
        << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConnector, UnstablePath,
    ::testing::Values(
        PathCase{"/Volumes/HueShelf/HueShelf.app/Contents/MacOS/HueshelfMCP", ToolPlatform::macOS,
                 true},
        PathCase{"/Users/u/.Trash/HueShelf.app/Contents/MacOS/HueshelfMCP", ToolPlatform::macOS,
                 true},
        PathCase{"/private/var/folders/x/AppTranslocation/A1/d/HueShelf.app", ToolPlatform::macOS,
                 true},
        PathCase{"/Applications/HueShelf.app/Contents/MacOS/HueshelfMCP", ToolPlatform::macOS,
                 false},
        PathCase{"/tmp/x/hueshelf-mcp", ToolPlatform::macOS, false},
        PathCase{"/tmp/x/hueshelf-mcp", ToolPlatform::Linux, true},
        PathCase{"/tmp/.mount_HueSh1/usr/bin/hueshelf-mcp", ToolPlatform::Linux, true},
        PathCase{"/home/u/.local/share/Trash/files/hueshelf-mcp", ToolPlatform::Linux, true},
        PathCase{"/media/u/Volumes/hueshelf-mcp", ToolPlatform::Linux, true},
        PathCase{"/usr/bin/hueshelf-mcp", ToolPlatform::Linux, false},
        PathCase{"/var/tmp/hueshelf-mcp", ToolPlatform::Linux, true}));

struct LastUsedCase {
    const char* label;
    std::optional<QByteArray> contents;
    std::optional<QHash<QString, double>> times;
};

class LastUsedFile : public ::testing::TestWithParam<LastUsedCase> {};

TEST_P(LastUsedFile, readsAllNumbersOrNothing) {
    const Scratch scratch;
    if (GetParam().contents)
        scratch.write(u"data/ai-tool-last-used.json"_s, *GetParam().contents);
    const AIToolConnector connector{binary, scratch.path(u"data/ai-tool-last-used.json"_s), {}, {}};
    EXPECT_EQ(connector.lastUsedTimes(), GetParam().times);
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConnector, LastUsedFile,
    ::testing::Values(LastUsedCase{"twoTools", R"({"cursor":1763210000000,"zed":1763199000000})",
                                   QHash<QString, double>{{u"cursor"_s, 1763210000000.0},
                                                          {u"zed"_s, 1763199000000.0}}},
                      LastUsedCase{"fraction", R"({"codex":1.5e12})",
                                   QHash<QString, double>{{u"codex"_s, 1.5e12}}},
                      LastUsedCase{"empty", "{}", QHash<QString, double>{}},
                      LastUsedCase{"oneText", R"({"cursor":1763210000000,"zed":"1763199000000"})",
                                   std::nullopt},
                      LastUsedCase{"oneNull", R"({"cursor":1,"zed":null})", std::nullopt},
                      LastUsedCase{"array", "[1]", std::nullopt},
                      LastUsedCase{"garbage", "{cursor:1}", std::nullopt},
                      LastUsedCase{"missing", std::nullopt, std::nullopt}),
    ByLabel());

} // namespace
} // namespace hueshelf::testing
