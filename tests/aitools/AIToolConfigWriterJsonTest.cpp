#include "AIToolTestSupport.h"
#include "aitools/AIToolConfigWriter.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using AIToolRegistry::EntryStyle;
namespace Writer = AIToolConfigWriter;

const QString macBinary = u"/Applications/HueShelf.app/Contents/MacOS/HueshelfMCP"_s;
const QString file = u"cursor/mcp.json"_s;
const QString backup = u"cursor/mcp.json.hueshelf-backup"_s;

AIToolFailure mergeCursor(const Scratch& scratch, const QString& command = macBinary) {
    return Writer::mergeJSONEntry(scratch.path(file), u"mcpServers"_s, u"hueshelf"_s,
                                  Writer::makeEntry(EntryStyle::standard, command, u"cursor"_s));
}

AIToolFailure removeCursor(const Scratch& scratch) {
    return Writer::removeJSONEntry(scratch.path(file), u"mcpServers"_s, u"hueshelf"_s);
}

const AIToolFailure success = std::nullopt;
const AIToolFailure notParseable = AIToolError(Writer::WriteError::fileNotParseable());

TEST(JsonEntryMerge, newFileReadsExactly) {
    const Scratch scratch;
    ASSERT_EQ(mergeCursor(scratch), success);
    EXPECT_EQ(scratch.read(file)->toStdString(),
              "{\n"
              "  \"mcpServers\" : {\n"
              "    \"hueshelf\" : {\n"
              "      \"args\" : [\n"
              "        \"--client\",\n"
              "        \"cursor\"\n"
              "      ],\n"
              "      \"command\" : "
              "\"\\/Applications\\/HueShelf.app\\/Contents\\/MacOS\\/HueshelfMCP\"\n"
              "    }\n"
              "  }\n"
              "}");
    EXPECT_FALSE(scratch.exists(backup));
}

TEST(JsonEntryMerge, entryShapesByStyle) {
    const std::pair<EntryStyle, QByteArray> shapes[]{
        {EntryStyle::standard, R"({"args":["--client","t"],"command":"/b"})"},
        {EntryStyle::vscode, R"({"args":["--client","t"],"command":"/b","type":"stdio"})"},
        {EntryStyle::zed, R"({"args":["--client","t"],"command":"/b","source":"custom"})"}};
    for (const auto& [style, shape] : shapes)
        EXPECT_EQ(Writer::makeEntry(style, u"/b"_s, u"t"_s), ForeignJson::parse(shape))
            << shape.toStdString();
}

TEST(JsonEntryMerge, keepsTheUsersSettingsAndCopiesTheOriginalOnce) {
    const Scratch scratch;
    const QByteArray original = R"({"theme":"dark","mcpServers":{"other":{"command":"x"}}})";
    scratch.write(file, original);
    ASSERT_EQ(mergeCursor(scratch, u"/first"_s), success);
    EXPECT_EQ(scratch.read(backup), original);
    const std::optional<ForeignJson> merged = ForeignJson::parse(*scratch.read(file));
    ASSERT_TRUE(merged);
    EXPECT_EQ(merged->find(u"theme"_s)->stringValue(), u"dark");
    const ForeignJson* servers = merged->find(u"mcpServers"_s);
    EXPECT_EQ(servers->find(u"other"_s)->find(u"command"_s)->stringValue(), u"x");
    EXPECT_EQ(*servers->find(u"hueshelf"_s),
              Writer::makeEntry(EntryStyle::standard, u"/first"_s, u"cursor"_s));

    // A second change replaces the entry whole and leaves the first copy alone.
    ASSERT_EQ(mergeCursor(scratch, u"/second"_s), success);
    EXPECT_EQ(scratch.read(backup), original);
    EXPECT_EQ(*ForeignJson::parse(*scratch.read(file))->find(u"mcpServers"_s)->find(u"hueshelf"_s),
              Writer::makeEntry(EntryStyle::standard, u"/second"_s, u"cursor"_s));
}

TEST(JsonEntryMerge, valuesOfOtherProgramsSurviveExactly) {
    const Scratch scratch;
    scratch.write(file, R"({"limits":[18446744073709551615,-9223372036854775808,)"
                        R"(123456789012345678901234567890,1.10000000000000000001,1e400],)"
                        R"("face":"\ud83d\ude00","path":"C:\\x/y"})");
    ASSERT_EQ(mergeCursor(scratch), success);
    const QByteArray written = *scratch.read(file);
    EXPECT_TRUE(written.startsWith("{\n  \"face\" : \"\xF0\x9F\x98\x80\",\n  \"limits\" : [\n"
                                   "    18446744073709551615,\n    -9223372036854775808,\n"
                                   "    123456789012345678901234567890,\n"
                                   "    1.10000000000000000001,\n    1e400\n  ],\n"))
        << written.toStdString();
    EXPECT_TRUE(written.endsWith("  \"path\" : \"C:\\\\x\\/y\"\n}")) << written.toStdString();
}

TEST(JsonEntryMerge, nonObjectAtTheKeyIsReplacedButRemovalLeavesItAlone) {
    const Scratch scratch;
    const QByteArray original = R"({"mcpServers":[1,2]})";
    scratch.write(file, original);
    ASSERT_EQ(removeCursor(scratch), success);
    EXPECT_EQ(scratch.read(file), original);
    EXPECT_FALSE(scratch.exists(backup));

    ASSERT_EQ(mergeCursor(scratch, u"/b"_s), success);
    EXPECT_EQ(scratch.read(backup), original);
    EXPECT_EQ(*ForeignJson::parse(*scratch.read(file))->find(u"mcpServers"_s), [] {
        ForeignJson servers = ForeignJson::object();
        servers.set(u"hueshelf"_s, Writer::makeEntry(EntryStyle::standard, u"/b"_s, u"cursor"_s));
        return servers;
    }());
}

TEST(JsonEntryMerge, emptyFileCountsAsNewWithoutCopy) {
    const Scratch scratch;
    scratch.write(file, "");
    ASSERT_EQ(mergeCursor(scratch), success);
    EXPECT_FALSE(scratch.exists(backup));
    EXPECT_TRUE(scratch.read(file)->startsWith("{\n  \"mcpServers\""));
}

struct ForeignFile {
    const char* label;
    QByteArray contents;
};

class UnparseableFile : public ::testing::TestWithParam<ForeignFile> {};

// Neither the merge nor the removal rewrites a file it doesn't understand, nor copies it.
TEST_P(UnparseableFile, isRefusedAndLeftUntouched) {
    const Scratch scratch;
    scratch.write(file, GetParam().contents);
    EXPECT_EQ(mergeCursor(scratch), notParseable);
    EXPECT_EQ(removeCursor(scratch), notParseable);
    EXPECT_EQ(scratch.read(file), GetParam().contents);
    EXPECT_FALSE(scratch.exists(backup));
}

INSTANTIATE_TEST_SUITE_P(
    JsonEntry, UnparseableFile,
    ::testing::Values(
        ForeignFile{"arrayRoot", "[]"}, ForeignFile{"stringRoot", "\"mcpServers\""},
        ForeignFile{"nullRoot", "null"},
        ForeignFile{
            "comment",
            "{\n  // my servers\n  \"mcpServers\": {\"hueshelf\": {\"command\": \"x\"}}\n}"},
        ForeignFile{"trailingComma", "{\"mcpServers\": {\"hueshelf\": {\"command\": \"x\"},},}"},
        ForeignFile{"truncated", "{\"mcpServers\": {\"hueshelf\": "},
        ForeignFile{"notUtf8", "{\"theme\":\"\xE9t\xE9\"}"},
        ForeignFile{"hugeExponent", "{\"mcpServers\":{},\"x\":1e99999}"}),
    ByLabel());

// Something stands where the settings file should be but can't be read: it is not taken for a
// missing file and written over.
TEST(JsonEntryMerge, unreadableFileIsRefused) {
    const Scratch scratch;
    scratch.makeDir(file);
    EXPECT_NE(mergeCursor(scratch), success);
    EXPECT_TRUE(QFileInfo(scratch.path(file)).isDir());
    EXPECT_FALSE(scratch.exists(backup));
}

TEST(JsonEntryRemove, emptyFileIsNoJsonHere) {
    const Scratch scratch;
    scratch.write(file, "");
    EXPECT_EQ(removeCursor(scratch), notParseable);
    EXPECT_EQ(scratch.read(file), QByteArray());
}

TEST(JsonEntryRemove, missingFileIsNothingToDo) {
    const Scratch scratch;
    EXPECT_EQ(removeCursor(scratch), success);
    EXPECT_FALSE(scratch.exists(file));
    EXPECT_FALSE(scratch.exists(u"cursor"_s));
}

TEST(JsonEntryRemove, fileWithoutTheEntryIsLeftAsItWas) {
    const Scratch scratch;
    for (const QByteArray& contents :
         {QByteArray(R"({"mcpServers":{"other":{}}})"), QByteArray(R"({"theme":1})"),
          QByteArray(R"({"servers":{"hueshelf":{}}})")}) {
        scratch.write(file, contents);
        EXPECT_EQ(removeCursor(scratch), success);
        EXPECT_EQ(scratch.read(file), contents);
        EXPECT_FALSE(scratch.exists(backup));
    }
}

TEST(JsonEntryRemove, lastEntryLeavesAnEmptyObjectAndTheOriginalCopied) {
    const Scratch scratch;
    const QByteArray original = R"({"mcpServers":{"hueshelf":{"command":"\/old"}}})";
    scratch.write(file, original);
    ASSERT_EQ(removeCursor(scratch), success);
    EXPECT_EQ(scratch.read(file), "{\n  \"mcpServers\" : {}\n}");
    EXPECT_EQ(scratch.read(backup), original);
}

TEST(JsonEntryMerge, unwritablePlaceFailsWithThePlatformsError) {
    const Scratch scratch;
    // A regular file where the folder would have to be.
    scratch.write(u"cursor"_s, "not a folder");
    const AIToolFailure failure = mergeCursor(scratch);
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(std::holds_alternative<PlatformError>(*failure));
    EXPECT_EQ(scratch.read(u"cursor"_s), "not a folder");
}

TEST(JsonEntryMerge, failedCopyStopsBeforeAnyWrite) {
    const Scratch scratch;
    // The copy's name would pass the file system's limit of 255 bytes; the file's does not.
    const QString longName = QString(240, u'c') + u".json";
    const QByteArray original = R"({"mcpServers":{}})";
    scratch.write(longName, original);
    const AIToolFailure failure =
        Writer::mergeJSONEntry(scratch.path(longName), u"mcpServers"_s, u"hueshelf"_s,
                               Writer::makeEntry(EntryStyle::standard, u"/b"_s, u"x"_s));
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(std::holds_alternative<PlatformError>(*failure));
    EXPECT_EQ(scratch.read(longName), original);
}

// Settings kept in a dotfiles folder stay linked, and a private file stays private.
TEST(JsonEntryMerge, linkIsWrittenThroughAndModeKept) {
    const Scratch scratch;
    const QString target = u"dotfiles/mcp.json"_s;
    scratch.write(target, R"({"token":"secret"})");
    QFile::setPermissions(scratch.path(target), QFile::ReadOwner | QFile::WriteOwner);
    scratch.makeDir(u"cursor"_s);
    ASSERT_TRUE(QFile::link(scratch.path(target), scratch.path(file)));

    ASSERT_EQ(mergeCursor(scratch), success);
    EXPECT_TRUE(QFileInfo(scratch.path(file)).isSymLink());
    EXPECT_TRUE(scratch.read(target)->contains("\"token\" : \"secret\""));
    const QFile::Permissions userBits = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    EXPECT_EQ(QFile::permissions(scratch.path(target)) & ~userBits,
              QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(scratch.read(backup), R"({"token":"secret"})");
}

TEST(ConfigBackup, copiesOnlyAnExistingFileAndOnlyOnce) {
    const Scratch scratch;
    EXPECT_EQ(Writer::backupOnce(scratch.path(u"a.toml"_s)), success);
    EXPECT_FALSE(scratch.exists(u"a.toml.hueshelf-backup"_s));

    // Bytes that no text reading would keep.
    const QByteArray first("a = 1\r\n\0\xFF\xFE end", 14);
    scratch.write(u"a.toml"_s, first);
    EXPECT_EQ(Writer::backupOnce(scratch.path(u"a.toml"_s)), success);
    scratch.write(u"a.toml"_s, "changed");
    EXPECT_EQ(Writer::backupOnce(scratch.path(u"a.toml"_s)), success);
    EXPECT_EQ(scratch.read(u"a.toml.hueshelf-backup"_s), first);
}

} // namespace
} // namespace hueshelf::testing
