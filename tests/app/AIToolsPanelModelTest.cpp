#include "app/AIToolsPanelModel.h"

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "aitools/AIToolRegistry.h"
#include "aitools/AIToolTexts.h"
#include "model/ColorStorage.h"
#include "model/LoadedTemplates.h"
#include "platform/fake/FakePlatform.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using app::AIToolsPanelModel;

const QString kServer = u"/opt/hueshelf/bin/hueshelf-mcp"_s;

// A machine in a scratch folder: a home with some tools' folders, a store with two palettes and
// the panel over them. `claude` is found only where a test puts it.
class Panel : public ::testing::Test {
protected:
    Panel() {
        LoadedTemplates loaded;
        loaded.templates = {ColorTemplate::makeNew(u"Brand"_s, {}, clock.nowMs()),
                            ColorTemplate::makeNew(u"Night"_s, {}, clock.nowMs())};
        loaded.activeTemplateId = loaded.templates.at(1).id;
        store = std::make_unique<ColorStorage>(clock, scheduler, loaded);
        settings = std::make_unique<QSettings>(path(u"hueshelf.conf"_s), QSettings::IniFormat);
    }

    QString path(const QString& relative) const { return dir.path() + u'/' + relative; }
    QString home() const { return path(u"home"_s); }

    void write(const QString& relative, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray read(const QString& relative) const {
        QFile file(path(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    AIToolsPanelModel& panel(QList<AITool> extraTools = {}) {
        // The real places of the `claude` command: the one in the home is the test's to fill.
        AIToolConnector connector{kServer, path(u"data/ai-tool-last-used.json"_s), home(),
                                  AIToolConnector::defaultClaudeCandidates(home())};
        const QString root = path(u"root"_s);
        const QString homePath = home();
        model = std::make_unique<AIToolsPanelModel>(
            *store, connector,
            [homePath, root, extraTools] {
                return AIToolRegistry::allTools(homePath, root + u"/Applications"_s,
                                                AIToolRegistry::ToolPlatform::Linux, root) +
                       extraTools;
            },
            *settings, platform, clock);
        return *model;
    }

    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler{clock};
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<QSettings> settings;
    FakePlatform platform;
    std::unique_ptr<AIToolsPanelModel> model;
};

// Nothing found: no rows, nothing written, and the snippet is the way out. The active palette
// is chosen once; a stored choice is kept as it stands, even if that palette is gone.
TEST_F(Panel, anEmptyMachineChoosesAPaletteAndOffersTheSnippet) {
    AIToolsPanelModel& p = panel();
    p.appear();
    EXPECT_TRUE(p.rows().isEmpty());
    EXPECT_FALSE(p.statusMessage().has_value());
    p.disconnectAll();
    EXPECT_EQ(p.statusMessage(), u"Nothing was connected."_s);
    EXPECT_FALSE(QDir(home()).exists()) << "no file may be written";
    p.copySetupSnippet();
    EXPECT_EQ(p.statusMessage(),
              u"Setup snippet copied \u2014 paste it into any other tool's MCP settings."_s);
    EXPECT_FALSE(p.statusIsWarning());
    EXPECT_EQ(platform.clipboardText(), AIToolTexts::setupSnippet(kServer));

    const QString active = uuidText(store->activeTemplateId()).toUpper();
    EXPECT_EQ(p.brandTemplateId(), active);
    EXPECT_EQ(settings->value(u"brandTemplateId"_s).toString(), active);
    p.chooseBrandPalette(u"NOT-A-PALETTE"_s);
    store->setActiveTemplateId(store->templates().constFirst().id);
    panel().appear();
    EXPECT_EQ(model->brandTemplateId(), u"NOT-A-PALETTE"_s);
    ASSERT_EQ(model->paletteChoices().size(), 2);
    EXPECT_EQ(model->paletteChoices().at(1).name, u"Night"_s);
}

TEST_F(Panel, tickingAndUntickingARowReportsAndReadsBack) {
    write(u"home/.cursor/mcp.json"_s, R"({"mcpServers":{"other":{"command":"x"}}})");
    AIToolsPanelModel& p = panel();
    p.appear();
    ASSERT_EQ(p.rows().size(), 1);
    EXPECT_FALSE(p.rowFaces().constFirst().checked);

    p.setRowChecked(u"cursor"_s, true);
    EXPECT_TRUE(p.rowFaces().constFirst().checked);
    EXPECT_EQ(p.statusMessage(), u"Cursor connected. Restart Cursor, then ask it: \u201cwhat are "
                                 u"my brand colors?\u201d"_s);
    EXPECT_FALSE(p.statusIsWarning());
    EXPECT_TRUE(platform.clipboardHistory().isEmpty());
    EXPECT_TRUE(read(u"home/.cursor/mcp.json"_s).contains("\"other\""));

    p.setRowChecked(u"cursor"_s, false);
    EXPECT_EQ(p.statusMessage(), u"Cursor disconnected."_s);
    p.setRowChecked(u"cursor"_s, true);
    p.disconnectAll();
    EXPECT_EQ(p.statusMessage(), u"Disconnected Cursor. HueShelf can be deleted safely."_s);
}

// The shared row with the `claude` command absent: Claude Desktop is connected, Claude Code is
// not, so the box stays unticked and only Claude Code needs attention.
TEST_F(Panel, aPartlyFailedRowStaysUntickedAndHandsOverTheSnippet) {
    for (const QString& installed : {u"/opt/homebrew/bin/claude"_s, u"/usr/local/bin/claude"_s}) {
        if (QFileInfo(installed).isExecutable())
            GTEST_SKIP() << "a real claude command is installed at " << installed.toStdString();
    }
    QDir().mkpath(path(u"root/usr/lib/claude-desktop"_s));
    QDir().mkpath(home() + u"/.claude"_s);
    AIToolsPanelModel& p = panel();
    p.appear();
    ASSERT_EQ(p.rows().size(), 1);
    ASSERT_EQ(p.rows().constFirst().tools.size(), 2);

    p.setRowChecked(u"claude"_s, true);
    EXPECT_EQ(p.connected(), QSet<QString>{u"claude-desktop"_s});
    EXPECT_FALSE(p.rowFaces().constFirst().checked);
    EXPECT_EQ(p.rowFaces().constFirst().note, u"Needs attention"_s);
    EXPECT_EQ(p.attention().keys(), QStringList{u"claude-code"_s});
    EXPECT_TRUE(p.statusIsWarning());
    EXPECT_EQ(p.statusMessage(), u"We couldn't safely update settings for Claude Code \u2014 a "
                                 u"snippet was copied to your clipboard to paste in by hand "
                                 u"instead."_s);
    EXPECT_EQ(platform.clipboardText(), AIToolTexts::setupSnippet(kServer));

    // Once the command is there, the row goes through and nobody needs attention any more.
    write(u"home/.local/bin/claude"_s, "#!/bin/sh\nexit 0\n");
    QFile(path(u"home/.local/bin/claude"_s)).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    p.setRowChecked(u"claude"_s, true);
    EXPECT_TRUE(p.attention().isEmpty());
    EXPECT_TRUE(p.statusMessage()->startsWith(u"Claude connected."_s));
}

// Entries pointing at another copy are put right without a word; entries that can't be give one
// sentence each, sorted, then the advice once. The last-used note survives healing.
TEST_F(Panel, healingOnAppearanceRepairsSilentlyAndReportsWhatItCannot) {
    write(u"home/.cursor/mcp.json"_s,
          R"({"mcpServers":{"hueshelf":{"command":"/old/hueshelf-mcp","args":[]}}})");
    write(u"data/ai-tool-last-used.json"_s,
          QByteArray::number(clock.nowMs() - 7'200'000.0).prepend(R"({"cursor":)").append('}'));
    // Readable but not replaceable, whoever runs the test: the copy's name would pass the
    // file system's 255-byte limit.
    const auto unwritable = [this](const QString& id, const QString& name) {
        const QString file = u"home/"_s + QString(240, id.at(0)) + u".json";
        write(file, R"({"mcpServers":{"hueshelf":{"command":"/old/hueshelf-mcp"}}})");
        return AITool{
            id,
            name,
            AITool::JsonConfig{path(file), u"mcpServers"_s, AIToolRegistry::EntryStyle::standard},
            {path(file)}};
    };
    AIToolsPanelModel& p = panel({unwritable(u"aa"_s, u"Zeta"_s), unwritable(u"zz"_s, u"Alpha"_s)});
    p.appear();

    EXPECT_TRUE(read(u"home/.cursor/mcp.json"_s).contains(kServer.toUtf8().replace("/", "\\/")));
    EXPECT_TRUE(p.statusIsWarning());
    EXPECT_EQ(p.statusMessage(),
              u"Alpha's settings file couldn't be updated. Zeta's settings file couldn't be "
              u"updated. Reconnect it below, or copy the setup snippet and paste it in by hand."_s);
    const QList<app::AIToolRowFace> faces = p.rowFaces();
    ASSERT_EQ(faces.size(), 3);
    EXPECT_EQ(faces.at(0).id, u"cursor"_s);
    EXPECT_TRUE(faces.at(0).checked);
    EXPECT_EQ(faces.at(0).note, u"Last used 2 hours ago"_s);
    EXPECT_EQ(faces.at(1).note, u"Needs attention"_s);
    EXPECT_TRUE(faces.at(1).noteIsWarning);

    // An unreadable last-used file just means no note.
    write(u"data/ai-tool-last-used.json"_s, R"({"cursor":"yesterday"})");
    EXPECT_FALSE(p.rowFaces().at(0).note.has_value());
}

} // namespace
} // namespace hueshelf::testing
