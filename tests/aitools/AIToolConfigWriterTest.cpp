#include "aitools/AIToolConfigWriter.h"

#include "AIToolTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
namespace Writer = AIToolConfigWriter;

// Every value of another program's file comes back exactly, in the fixed pretty form, and the
// printed form reads back as the same value.
TEST(ForeignJson, roundTripKeepsEveryValueInThePrettyForm) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {R"({"b":1,"a":[true,false,null],"c":{"y":"1","x":2},"d":{},"e":[]})",
         "{\n  \"a\" : [\n    true,\n    false,\n    null\n  ],\n  \"b\" : 1,\n  \"c\" : {\n"
         "    \"x\" : 2,\n    \"y\" : \"1\"\n  },\n  \"d\" : {},\n  \"e\" : []\n}"},
        {"[18446744073709551615,-9223372036854775808,123456789012345678901234567890,"
         "1.10000000000000000001,1e400,1E-400,-0.0,2.50]",
         "[\n  18446744073709551615,\n  -9223372036854775808,\n  123456789012345678901234567890,"
         "\n  1.10000000000000000001,\n  1e400,\n  1E-400,\n  -0.0,\n  2.50\n]"},
        {R"(["a/b","\ud83d\ude00","\u00e9","\u001f\u0000","q\"b\\","\b\f\n\r\t"])",
         "[\n  \"a\\/b\",\n  \"\xF0\x9F\x98\x80\",\n  \"\xC3\xA9\",\n  \"\\u001f\\u0000\",\n"
         "  \"q\\\"b\\\\\",\n  \"\\b\\f\\n\\r\\t\"\n]"},
        // UTF-16 code units, not UTF-8 bytes: the surrogate pair sorts before U+FF01.
        {R"({"\uff01":1,"\ud83d\ude00":2,"z":3,"Z":4,"a/b":5})",
         "{\n  \"Z\" : 4,\n  \"a\\/b\" : 5,\n  \"z\" : 3,\n  \"\xF0\x9F\x98\x80\" : 2,\n"
         "  \"\xEF\xBC\x81\" : 1\n}"},
        // A byte-order mark is skipped, and of twin keys the last wins.
        {"\xEF\xBB\xBF\r\n{ \"a\" :1, \"a\":{\"b\":2} }\n",
         "{\n  \"a\" : {\n    \"b\" : 2\n  }\n}"},
    };
    for (const auto& [input, printed] : cases) {
        SCOPED_TRACE(input.toStdString());
        const std::optional<ForeignJson> parsed = ForeignJson::parse(input);
        ASSERT_TRUE(parsed.has_value());
        EXPECT_EQ(parsed->prettyPrinted().toStdString(), printed.toStdString());
        EXPECT_EQ(ForeignJson::parse(parsed->prettyPrinted()), parsed);
    }
}

TEST(ForeignJson, anythingButStrictJsonIsRefused) {
    const QByteArray refused[] = {
        "", "{", R"({"a":1,})", "[1,2,]", "// settings\n{}", "{/* none */}", "{'a':1}",
        R"({"a":NaN})", "{}{}", "{} x", R"(["\ud800"])", "[\"\xFF\"]", "[\"a\nb\"]",
        QByteArray("\xFF\xFE{\0}\0", 6), "[1e99999]",
        // One level deeper than the limit.
        QByteArray(ForeignJson::maxDepth + 1, '[') + QByteArray(ForeignJson::maxDepth + 1, ']')};
    for (const QByteArray& input : refused)
        EXPECT_FALSE(ForeignJson::parse(input).has_value()) << input.toStdString();
    EXPECT_TRUE(ForeignJson::parse(QByteArray(ForeignJson::maxDepth, '[') +
                                   QByteArray(ForeignJson::maxDepth, ']')));
}

const QString file = u"cursor/mcp.json"_s;
const QString backup = u"cursor/mcp.json.hueshelf-backup"_s;
const AIToolFailure notParseable = AIToolError(Writer::WriteError::fileNotParseable());

AIToolFailure merge(const Scratch& scratch, const QString& command) {
    return Writer::mergeJSONEntry(
        scratch.path(file), u"mcpServers"_s, u"hueshelf"_s,
        Writer::makeEntry(AIToolRegistry::EntryStyle::standard, command, u"cursor"_s));
}
AIToolFailure remove(const Scratch& scratch) {
    return Writer::removeJSONEntry(scratch.path(file), u"mcpServers"_s, u"hueshelf"_s);
}

// An empty file is a new one, with nothing to copy.
TEST(JsonEntry, newFileIsThePrettyFormExactly) {
    const Scratch scratch;
    scratch.write(file, "");
    ASSERT_EQ(merge(scratch, u"/Applications/HueShelf.app/Contents/MacOS/HueshelfMCP"_s),
              std::nullopt);
    EXPECT_EQ(scratch.read(file)->toStdString(),
              "{\n  \"mcpServers\" : {\n    \"hueshelf\" : {\n      \"args\" : [\n"
              "        \"--client\",\n        \"cursor\"\n      ],\n      \"command\" : "
              "\"\\/Applications\\/HueShelf.app\\/Contents\\/MacOS\\/HueshelfMCP\"\n    }\n  }\n}");
    EXPECT_EQ(scratch.read(backup), std::nullopt);
}

// The user's other settings survive value for value, our entry is replaced whole, and the
// first original is copied aside once.
TEST(JsonEntry, mergeKeepsEverythingElseAndCopiesTheOriginalOnce) {
    const Scratch scratch;
    const QByteArray original = R"({"mcpServers":{"other":{"command":"x"},"hueshelf":{"v":1}},)"
                                R"("n":[18446744073709551615,1.10000000000000000001],"p":"C:\\x"})";
    scratch.write(file, original);
    ASSERT_EQ(merge(scratch, u"/first"_s), std::nullopt);
    ASSERT_EQ(merge(scratch, u"/second"_s), std::nullopt);
    EXPECT_EQ(scratch.read(backup), original);
    EXPECT_EQ(scratch.read(file)->toStdString(),
              "{\n  \"mcpServers\" : {\n    \"hueshelf\" : {\n      \"args\" : [\n"
              "        \"--client\",\n        \"cursor\"\n      ],\n"
              "      \"command\" : \"\\/second\"\n    },\n    \"other\" : {\n"
              "      \"command\" : \"x\"\n    }\n  },\n  \"n\" : [\n"
              "    18446744073709551615,\n    1.10000000000000000001\n  ],\n"
              "  \"p\" : \"C:\\\\x\"\n}");
}

// Neither the merge nor the removal rewrites a file it doesn't understand, nor copies it.
TEST(JsonEntry, foreignFilesAreRefusedAndLeftUntouched) {
    for (const QByteArray contents :
         {"[]", "null", "{\n  // mine\n  \"mcpServers\": {}\n}", "{\"mcpServers\": {\"a\": {},},}",
          "{\"mcpServers\": {\"hueshelf\": ", "{\"theme\":\"\xE9t\xE9\"}", "{\"x\":1e99999}"}) {
        SCOPED_TRACE(contents.toStdString());
        const Scratch scratch;
        scratch.write(file, contents);
        EXPECT_EQ(merge(scratch, u"/b"_s), notParseable);
        EXPECT_EQ(remove(scratch), notParseable);
        EXPECT_EQ(scratch.read(file), contents);
        EXPECT_EQ(scratch.read(backup), std::nullopt);
    }
}

// Something that can't be read where the file should be is not taken for a missing file.
TEST(JsonEntry, unreadableFileIsRefused) {
    const Scratch scratch;
    ASSERT_TRUE(QDir().mkpath(scratch.path(file)));
    EXPECT_NE(merge(scratch, u"/b"_s), std::nullopt);
    EXPECT_TRUE(QFileInfo(scratch.path(file)).isDir());
    EXPECT_EQ(scratch.read(backup), std::nullopt);
}

// Removal rewrites (after a copy) only a file whose servers object holds the entry; an empty
// file is no JSON to the removal.
TEST(JsonEntry, removal) {
    using Bytes = std::optional<QByteArray>;
    const std::tuple<Bytes, AIToolFailure, Bytes> cases[] = {
        // after: nothing for untouched
        {R"({"mcpServers":{"hueshelf":{"command":"\/old"}}})", std::nullopt,
         "{\n  \"mcpServers\" : {}\n}"},
        {R"({"mcpServers":{"other":{}},"servers":{"hueshelf":{}}})", std::nullopt, std::nullopt},
        {R"({"mcpServers":[1,2]})", std::nullopt, std::nullopt},
        {"", notParseable, std::nullopt},
        {std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& [before, result, after] : cases) {
        SCOPED_TRACE(before.value_or("(none)").toStdString());
        const Scratch scratch;
        if (before)
            scratch.write(file, *before);
        EXPECT_EQ(remove(scratch), result);
        EXPECT_EQ(scratch.read(file), after ? after : before);
        EXPECT_EQ(scratch.read(backup), after ? before : std::nullopt);
    }
}

// Settings kept in a dotfiles folder stay linked, and a private file stays private.
TEST(JsonEntry, linkIsWrittenThroughAndModeKept) {
    const Scratch scratch;
    scratch.write(u"dot/mcp.json"_s, "{}");
    QFile::setPermissions(scratch.path(u"dot/mcp.json"_s), QFile::ReadOwner | QFile::WriteOwner);
    QDir().mkpath(scratch.path(u"cursor"_s));
    ASSERT_TRUE(QFile::link(scratch.path(u"dot/mcp.json"_s), scratch.path(file)));
    ASSERT_EQ(merge(scratch, u"/b"_s), std::nullopt);
    EXPECT_TRUE(QFileInfo(scratch.path(file)).isSymLink());
    EXPECT_TRUE(scratch.read(u"dot/mcp.json"_s)->contains("hueshelf"));
    EXPECT_EQ(QFile::permissions(scratch.path(u"dot/mcp.json"_s)) & QFile::ReadOther,
              QFile::Permissions());
}

const QByteArray block = "[mcp_servers.hueshelf]\ncommand = \"/opt/hs/hueshelf-mcp\"\nargs = "
                         "[\"--client\", \"codex\"]\n";

AIToolFailure writeCodex(const Scratch& scratch) {
    return Writer::writeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s,
                                  u"/opt/hs/hueshelf-mcp"_s, {u"--client"_s, u"codex"_s});
}

// The block moves to the end after exactly one blank line; writing it twice changes nothing.
TEST(TomlEntry, writeEndsTheFileWithTheBlock) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"", block},
        {"model = 1", "model = 1\n\n" + block},
        {"model = 1\n\n\n\n", "model = 1\n\n" + block},
        {"# mine\n[mcp_servers.hueshelf]\ncommand = \"/old\"\n\n[a]\nx = 1\n",
         "# mine\n[a]\nx = 1\n\n" + block},
        {"\xEF\xBB\xBFm = 1\n", "\xEF\xBB\xBFm = 1\n\n" + block},
    };
    for (const auto& [before, after] : cases) {
        SCOPED_TRACE(before.toStdString());
        const Scratch scratch;
        scratch.write(u"config.toml"_s, before);
        ASSERT_EQ(writeCodex(scratch), std::nullopt);
        ASSERT_EQ(writeCodex(scratch), std::nullopt);
        EXPECT_EQ(scratch.read(u"config.toml"_s)->toStdString(), after.toStdString());
        EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), before);
    }
}

// A file that isn't UTF-8 is no TOML, but it is the user's: refused, neither copied nor replaced.
TEST(TomlEntry, nonTextIsRefusedAndKept) {
    const Scratch scratch;
    scratch.write(u"config.toml"_s, "m = \"\xFF\"\n");
    EXPECT_NE(writeCodex(scratch), std::nullopt);
    EXPECT_EQ(scratch.read(u"config.toml"_s), "m = \"\xFF\"\n");
    EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), std::nullopt);
}

TEST(TomlEntry, backslashesThenQuotesAreEscaped) {
    EXPECT_EQ(Writer::tomlBlock(u"hueshelf"_s, u"C:\\a \"b\""_s, {u"x\\\""_s, u"y"_s}),
              u"[mcp_servers.hueshelf]\ncommand = \"C:\\\\a \\\"b\\\"\"\n"
              u"args = [\"x\\\\\\\"\", \"y\"]\n"_s);
}

// The block goes by lines, from its header (trimmed of blanks only: a CRLF or commented header is
// none) to the next table. Other lines stay, trailing blank lines shrink to one line feed, and
// only a text file that this changes is copied and rewritten.
TEST(TomlEntry, removal) {
    using Bytes = std::optional<QByteArray>;
    const std::pair<Bytes, Bytes> cases[] = {
        // after: nothing for untouched and not copied
        {block, ""},
        {"[a]\n x =  1\t\n\n[mcp_servers.hueshelf]\nc = 1\n\n# c\n[z]\n\n\n",
         "[a]\n x =  1\t\n\n[z]\n"},
        {"m = 1\n\t [mcp_servers.hueshelf] \nc = 1\n  [mcp_servers.hueshelf]\nd = 2\n", "m = 1"},
        {"[mcp_servers.hueshelf]\nc = 1\n[mcp_servers.hueshelf.env]\n[[mcp_servers.hueshelf]]\n",
         "[mcp_servers.hueshelf.env]\n[[mcp_servers.hueshelf]]\n"},
        {"[mcp_servers.hueshelf]\r\nc = 1\r\n", std::nullopt},
        {"[mcp_servers.hueshelf] # mine\nc = 1\n[mcp_servers.hueshelf2]\n", std::nullopt},
        {"[mcp_servers.hueshelf]\n\xFF\n", std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const auto& [before, after] : cases) {
        SCOPED_TRACE(before.value_or("(none)").toStdString());
        const Scratch scratch;
        if (before)
            scratch.write(u"config.toml"_s, *before);
        ASSERT_EQ(Writer::removeTOMLEntry(scratch.path(u"config.toml"_s), u"hueshelf"_s),
                  std::nullopt);
        EXPECT_EQ(scratch.read(u"config.toml"_s), after ? after : before);
        EXPECT_EQ(scratch.read(u"config.toml.hueshelf-backup"_s), after ? before : std::nullopt);
    }
}

} // namespace
} // namespace hueshelf::testing
