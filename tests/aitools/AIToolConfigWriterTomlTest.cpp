#include "AIToolTestSupport.h"
#include "aitools/AIToolConfigWriter.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
namespace Writer = AIToolConfigWriter;

struct TextCase {
    const char* label;
    QByteArray before;
    QByteArray after;
};

class StrippedToml : public ::testing::TestWithParam<TextCase> {};

TEST_P(StrippedToml, dropsTheBlockByLines) {
    const QString stripped =
        Writer::strippedTOML(QString::fromUtf8(GetParam().before), u"hueshelf"_s);
    EXPECT_EQ(stripped.toUtf8().toStdString(), GetParam().after.toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConfigWriter, StrippedToml,
    ::testing::Values(
        // The blank line in front of the next table goes with the block; the one in front of
        // the header stays.
        TextCase{"betweenTables",
                 "[a]\nx = 1\n\n[mcp_servers.hueshelf]\ncommand = \"/b\"\nargs = []\n\n[z]\n"
                 "y = 2\n",
                 "[a]\nx = 1\n\n[z]\ny = 2\n"},
        TextCase{"indentedHeader", "model = 1\n\t [mcp_servers.hueshelf] \ncommand = 1\n",
                 "model = 1"},
        TextCase{"crlfHeaderIsNoHeader", "a = 1\r\n[mcp_servers.hueshelf]\r\ncommand = \"x\"\r\n",
                 "a = 1\r\n[mcp_servers.hueshelf]\r\ncommand = \"x\"\r\n"},
        TextCase{"headerWithCommentIsNoHeader", "[mcp_servers.hueshelf] # mine\ncommand = \"x\"\n",
                 "[mcp_servers.hueshelf] # mine\ncommand = \"x\"\n"},
        TextCase{"subTableSurvives",
                 "[mcp_servers.hueshelf]\ncommand = \"x\"\n[mcp_servers.hueshelf.env]\nK = \"v\"\n",
                 "[mcp_servers.hueshelf.env]\nK = \"v\"\n"},
        TextCase{"everyRepeatedBlockGoes",
                 "[mcp_servers.hueshelf]\na = 1\n  [mcp_servers.hueshelf]\nb = 2\n[x]\n", "[x]\n"},
        TextCase{"commentsAndBlanksInsideGo",
                 "[mcp_servers.hueshelf]\n# note\n\ncommand = 1\n\n# about b\n[b]\n", "[b]\n"},
        TextCase{"otherServersStay", "[mcp_servers.hueshelf2]\n[mcp_servers.other]\nc = 1\n",
                 "[mcp_servers.hueshelf2]\n[mcp_servers.other]\nc = 1\n"},
        TextCase{"arrayOfTablesIsAnotherTable",
                 "[mcp_servers.hueshelf]\nc = 1\n[[mcp_servers.hueshelf]]\nd = 2\n",
                 "[[mcp_servers.hueshelf]]\nd = 2\n"},
        TextCase{"trailingBlankLinesReduced", "a = 1\n\n\n\n", "a = 1\n"},
        TextCase{"blockAtTheEnd", "a = 1\n\n[mcp_servers.hueshelf]\ncommand = 1\n", "a = 1\n"},
        TextCase{"linesOutsideKeptAsTheyCame", "  a =  1 \t\n\tb=2\n", "  a =  1 \t\n\tb=2\n"},
        TextCase{"empty", "", ""}),
    ByLabel());

const QString binary = u"/opt/hs/hueshelf-mcp"_s;
const QByteArray block = "[mcp_servers.hueshelf]\ncommand = \"/opt/hs/hueshelf-mcp\"\nargs = "
                         "[\"--client\", \"codex\"]\n";

AIToolFailure writeCodex(const Scratch& scratch) {
    return Writer::writeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s, binary,
                                  {u"--client"_s, u"codex"_s});
}

class TomlEntryWrite : public ::testing::TestWithParam<TextCase> {};

TEST_P(TomlEntryWrite, putsTheBlockAtTheEndAfterOneBlankLine) {
    const Scratch scratch;
    scratch.write(u"config.toml"_s, GetParam().before);
    ASSERT_EQ(writeCodex(scratch), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s)->toStdString(), GetParam().after.toStdString());
    EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), GetParam().before);
    // Connecting again changes nothing.
    ASSERT_EQ(writeCodex(scratch), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s)->toStdString(), GetParam().after.toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConfigWriter, TomlEntryWrite,
    ::testing::Values(TextCase{"emptyFile", "", block},
                      TextCase{"noFinalLineFeed", "model = 1", "model = 1\n\n" + block},
                      TextCase{"oneFinalLineFeed", "model = 1\n", "model = 1\n\n" + block},
                      TextCase{"blankLineAlready", "model = 1\n\n", "model = 1\n\n" + block},
                      TextCase{"manyBlankLines", "model = 1\n\n\n\n", "model = 1\n\n" + block},
                      TextCase{"oldBlockMovesToTheEnd",
                               "# mine\n[mcp_servers.hueshelf]\ncommand = \"/old\"\n\n[a]\nx = 1\n",
                               "# mine\n[a]\nx = 1\n\n" + block},
                      TextCase{"byteOrderMarkKept", "\xEF\xBB\xBFmodel = 1\n",
                               "\xEF\xBB\xBFmodel = 1\n\n" + block}),
    ByLabel());

TEST(TomlEntryWrite, missingFileIsCreatedWithoutCopy) {
    const Scratch scratch;
    const QString path = scratch.path(u"deep/er/config.toml"_s);
    ASSERT_EQ(Writer::writeTOMLEntry(path, u"hueshelf"_s, binary, {u"--client"_s, u"codex"_s}),
              std::nullopt);
    EXPECT_EQ(scratch.read(u"deep/er/config.toml"_s), block);
    EXPECT_FALSE(scratch.exists(u"deep/er/config.toml.hueshelf-backup"_s));
}

// A file that isn't UTF-8 is no TOML, but it is the user's: refused, neither copied nor
// replaced.
TEST(TomlEntryWrite, fileThatIsNoTextIsRefusedAndKept) {
    const Scratch scratch;
    const QByteArray notText = "model = \"\xFF\xFE\"\n";
    scratch.write(u"config.toml"_s, notText);
    EXPECT_NE(writeCodex(scratch), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s), notText);
    EXPECT_FALSE(scratch.exists(u"config.toml.hueshelf-backup"_s));
}

TEST(TomlEntryWrite, backslashesThenQuotesAreEscaped) {
    EXPECT_EQ(Writer::tomlBlock(u"hueshelf"_s, u"C:\\a \"b\""_s, {u"x\\\""_s, u"y"_s}),
              u"[mcp_servers.hueshelf]\ncommand = \"C:\\\\a \\\"b\\\"\"\n"
              u"args = [\"x\\\\\\\"\", \"y\"]\n"_s);
}

TEST(TomlEntryRemove, takesOutTheBlockAndKeepsAnEmptyFile) {
    const Scratch scratch;
    scratch.write(u"config.toml"_s, block);
    ASSERT_EQ(Writer::removeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s), QByteArray());
    EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), block);
}

class TomlEntryRemoveNothing : public ::testing::TestWithParam<TextCase> {};

TEST_P(TomlEntryRemoveNothing, leavesTheFileAndTakesNoCopy) {
    const Scratch scratch;
    scratch.write(u"config.toml"_s, GetParam().before);
    ASSERT_EQ(Writer::removeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s), GetParam().before);
    EXPECT_FALSE(scratch.exists(u"config.toml.hueshelf-backup"_s));
}

INSTANTIATE_TEST_SUITE_P(
    AIToolConfigWriter, TomlEntryRemoveNothing,
    ::testing::Values(TextCase{"noBlock", "model = 1\n\n[a]\nx = 1\n", ""},
                      TextCase{"crlfBlock", "[mcp_servers.hueshelf]\r\ncommand = \"x\"\r\n", ""},
                      TextCase{"notUtf8", "[mcp_servers.hueshelf]\n\xFF\n", ""}),
    ByLabel());

// Stripping also trims trailing blank lines, so such a file counts as changed.
TEST(TomlEntryRemove, surplusBlankLinesAloneAreARewrite) {
    const Scratch scratch;
    scratch.write(u"config.toml"_s, "model = 1\n\n\n");
    ASSERT_EQ(Writer::removeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s), "model = 1\n");
    EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), "model = 1\n\n\n");
}

TEST(TomlEntryRemove, missingFileIsNothingToDo) {
    const Scratch scratch;
    EXPECT_EQ(Writer::removeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s), std::nullopt);
    EXPECT_FALSE(scratch.exists(u"config.toml"_s));
}

} // namespace
} // namespace hueshelf::testing
