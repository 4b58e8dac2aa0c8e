#include "McpTestHome.h"
#include "aitools/AIToolConnector.h"
#include "mcp/McpOptions.h"

#include <map>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

using LastUsed = McpTestHome;

// Each tool call, refused too, and nothing else, is noted under the client's id in whole ms; other
// tools' times stay, written back as integers; a file that isn't all numbers is replaced.
TEST_F(LastUsed, eachToolCallNotesTheTimeUnderTheClientsId) {
    seed({makePalette(u"Only"_s, {makeColor(u"Ink"_s, u"#111111"_s)})});
    const auto writeFile = [this](const QByteArray& bytes) {
        QFile file(lastUsedPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    success(u"list_palettes"_s);
    useClient(u"cursor"_s);
    request(u"tools/list"_s);
    exchange(R"({"jsonrpc":"2.0","method":"tools/call","params":{"name":"list_palettes"}})");
    call(u"nope"_s);
    EXPECT_FALSE(QFile::exists(lastUsedPath()));
    QDir(home.paths().dataDir).removeRecursively();
    failure(u"get_palette"_s, {});
    EXPECT_EQ(fileBytes(lastUsedPath()), R"({"cursor":1763210000000})");
    writeFile(R"({"zed": 1763199000000, "codex": 1.5e12, "cursor": 1})");
    clock.advanceMs(90'000.75);
    success(u"list_palettes"_s);
    // Compared as an ordered map: GCC's optimiser misreads QHash's own comparison.
    std::map<QString, double> read;
    for (const auto& [tool, stamp] : AIToolConnector::readLastUsedFile(lastUsedPath())
                                         .value_or(QHash<QString, double>())
                                         .asKeyValueRange())
        read[tool] = stamp;
    EXPECT_EQ(read, (std::map<QString, double>{{u"zed"_s, 1763199000000.0},
                                               {u"codex"_s, 1.5e12},
                                               {u"cursor"_s, 1763210090000.0}}));
    EXPECT_TRUE(fileBytes(lastUsedPath()).contains("\"codex\":1500000000000"));
    for (const QByteArray bytes : {"not json", "[1]", R"({"zed": "yesterday", "vscode": 1})"}) {
        writeFile(bytes);
        EXPECT_FALSE(AIToolConnector::readLastUsedFile(lastUsedPath())) << bytes.toStdString();
        success(u"list_palettes"_s);
        EXPECT_EQ(fileBytes(lastUsedPath()), R"({"cursor":1763210090000})");
    }
}

// Arguments (split at "|") > the action (0 serve, 1 help, 2 version, 3 usage error, which
// comes with a message) and the client.
TEST(McpOptions, readsTheClientHelpAndVersionAndRefusesTheRest) {
    for (const QString& row :
         {u"--client|a|--client|b>0 b"_s, u"--client=c>0 c"_s, u"-h>1 "_s, u"--version>2 "_s,
          u"--client>3 "_s, u"--client| >3 "_s, u"-x>3 "_s, u"serve>3 "_s}) {
        const QStringList c = row.split(u'>');
        const auto options = mcp::McpOptions::parse(c[0].split(u'|'));
        EXPECT_EQ(QString::number(int(options.action)) + u' ' + options.clientId.value_or(u""_s),
                  c[1]);
        EXPECT_EQ(options.error.isEmpty(), !c[1].startsWith(u'3'));
    }
}

} // namespace
} // namespace hueshelf::testing
