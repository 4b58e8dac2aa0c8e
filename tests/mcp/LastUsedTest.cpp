#include "McpTestHome.h"
#include "aitools/AIToolConnector.h"
#include "mcp/McpOptions.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class LastUsed : public McpTestHome {
protected:
    void SetUp() override {
        seed({makePalette(u"Only"_s, {makeColor(u"Ink"_s, u"#111111"_s)})}, QJsonValue());
    }
    void writeFile(const QByteArray& bytes) {
        QFile file(lastUsedPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QJsonObject fileJson() const {
        return QJsonDocument::fromJson(fileBytes(lastUsedPath())).object();
    }
};

TEST_F(LastUsed, EachCallNotesTheTimeUnderTheClientsId) {
    useClient(u"cursor"_s);
    success(u"list_palettes"_s);
    EXPECT_EQ(fileBytes(lastUsedPath()), QByteArray(R"({"cursor":1763210000000})"));
    clock.advanceMs(90'000.75);
    // A refused call is a use too.
    failure(u"get_palette"_s, {});
    EXPECT_EQ(fileJson().value(u"cursor"_s).toDouble(), 1'763'210'090'000.0);
}

TEST_F(LastUsed, OtherToolsTimesAreKept) {
    writeFile(R"({"zed": 1763199000000, "claude-code": 1.5e12})");
    useClient(u"cursor"_s);
    success(u"convert_color"_s, {{u"color"_s, u"#000000"_s}});
    EXPECT_EQ(fileJson(), (QJsonObject{{u"zed"_s, 1'763'199'000'000.0},
                                       {u"claude-code"_s, 1.5e12},
                                       {u"cursor"_s, kNow}}));
    // Written back as integers, not in a double's exponent form.
    EXPECT_TRUE(fileBytes(lastUsedPath()).contains("\"zed\":1763199000000"));
    EXPECT_TRUE(fileBytes(lastUsedPath()).contains("\"claude-code\":1500000000000"));
}

TEST_F(LastUsed, AnUnreadableFileIsReplacedByThisToolAlone) {
    const QByteArray unreadable[] = {
        "not json", R"(["cursor", 1])", R"({"zed": "yesterday", "vscode": 1})", R"({"zed": null})",
        "",
    };
    useClient(u"windsurf"_s);
    for (const QByteArray& bytes : unreadable) {
        SCOPED_TRACE(bytes.toStdString());
        writeFile(bytes);
        EXPECT_FALSE(AIToolConnector::readLastUsedFile(lastUsedPath()).has_value());
        success(u"list_palettes"_s);
        EXPECT_EQ(fileJson(), (QJsonObject{{u"windsurf"_s, kNow}}));
    }
}

TEST_F(LastUsed, TheFolderIsMadeWhenMissing) {
    QDir(home.paths().dataDir).removeRecursively();
    useClient(u"zed"_s);
    success(u"list_palettes"_s);
    EXPECT_EQ(fileJson(), (QJsonObject{{u"zed"_s, kNow}}));
}

// Only a tool that ran is a use: not a listing, a notification, or a tool that doesn't exist.
TEST_F(LastUsed, NothingButToolCallsIsNoted) {
    useClient(u"cursor"_s);
    request(u"tools/list"_s, {});
    request(u"ping"_s, {});
    exchange(R"({"jsonrpc":"2.0","method":"tools/call","params":{"name":"list_palettes"}})");
    exchange(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"nope"}})");
    EXPECT_FALSE(QFile::exists(lastUsedPath()));
}

TEST_F(LastUsed, WithoutAClientNothingIsNoted) {
    success(u"list_palettes"_s);
    EXPECT_FALSE(QFile::exists(lastUsedPath()));
}

TEST(McpOptionsParse, ReadsTheClientHelpAndVersionAndRefusesTheRest) {
    using Action = mcp::McpOptions::Action;
    struct Case {
        QStringList arguments;
        Action action;
        std::optional<QString> client;
    };
    const Case cases[] = {
        {{}, Action::serve, std::nullopt},
        {{u"--client"_s, u"cursor"_s}, Action::serve, u"cursor"_s},
        {{u"--client=claude-code"_s}, Action::serve, u"claude-code"_s},
        {{u"--client"_s, u"a"_s, u"--client"_s, u"b"_s}, Action::serve, u"b"_s},
        {{u"--help"_s}, Action::help, std::nullopt},
        {{u"-h"_s}, Action::help, std::nullopt},
        {{u"--client"_s, u"x"_s, u"--version"_s}, Action::version, std::nullopt},
        {{u"--client"_s}, Action::usageError, std::nullopt},
        {{u"--client"_s, u" "_s}, Action::usageError, std::nullopt},
        {{u"--client="_s}, Action::usageError, std::nullopt},
        {{u"--verbose"_s}, Action::usageError, std::nullopt},
        {{u"-x"_s}, Action::usageError, std::nullopt},
        {{u"serve"_s}, Action::usageError, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const mcp::McpOptions options = mcp::McpOptions::parse(c.arguments);
        EXPECT_EQ(options.action, c.action);
        if (c.action == Action::serve) {
            EXPECT_EQ(options.clientId, c.client);
        }
        EXPECT_EQ(options.error.isEmpty(), c.action != Action::usageError);
    }
}

} // namespace
} // namespace hueshelf::testing
