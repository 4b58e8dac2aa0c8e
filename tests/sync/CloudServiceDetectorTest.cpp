#include "sync/CloudServiceDetector.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace hueshelf {

void PrintTo(const DetectedCloudService& detected, std::ostream* out) {
    *out << cloudServiceName(detected.service).toStdString() << " at "
         << detected.path.toStdString();
}

void PrintTo(const FoundSyncFolder& found, std::ostream* out) {
    PrintTo(found.service, out);
    *out << " holding " << found.syncFolderPath.toStdString();
}

namespace testing {
namespace {

using namespace Qt::StringLiterals;

// Bytes of a literal that may hold NULs, without its terminator.
template <qsizetype N>
QByteArray raw(const char (&text)[N]) {
    return QByteArray(text, N - 1);
}

// A fake machine: a home, a runtime directory and XDG roots kept apart from the home, so that
// a reader looking in the wrong place finds nothing. Paths in the tables are written with a
// root marker ("~/", "@run/", "@config/", "@state/"); "HOME" in file contents stands for the
// home directory.
class FakeMachine {
public:
    FakeMachine() {
        const QString root = m_dir.path();
        m_roots = CloudServiceRoots{root + u"/home/u", root + u"/run/user/1000",
                                    root + u"/xdg-config", root + u"/xdg-state"};
        QDir().mkpath(m_roots.home);
    }

    QString resolve(const QString& path) const {
        const std::pair<QString, QString> roots[]{{u"~"_s, m_roots.home},
                                                  {u"@run"_s, m_roots.runtimeDir},
                                                  {u"@config"_s, m_roots.xdgConfigHome},
                                                  {u"@state"_s, m_roots.xdgStateHome}};
        for (const auto& [marker, root] : roots) {
            if (path == marker || path.startsWith(marker + u'/'))
                return root + path.mid(marker.size());
        }
        return path;
    }

    void makeDir(const QString& path) const { ASSERT_TRUE(QDir().mkpath(resolve(path))); }

    void writeFile(const QString& path, QByteArray contents) const {
        const QString full = resolve(path);
        QDir().mkpath(QFileInfo(full).path());
        contents.replace("HOME", m_roots.home.toUtf8());
        QFile file(full);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    CloudServiceDetector detector() const { return CloudServiceDetector(m_roots); }
    const CloudServiceRoots& roots() const { return m_roots; }

private:
    QTemporaryDir m_dir;
    CloudServiceRoots m_roots;
};

struct FileSpec {
    QString path;
    QByteArray contents;
};

struct Expected {
    CloudService service;
    QString path;
};

struct DetectCase {
    const char* what;
    QStringList dirs;
    QList<FileSpec> files;
    QList<Expected> expected;
};

enum class Rules { mac, freedesktop };

void runCases(Rules rules, const QList<DetectCase>& cases) {
    for (const DetectCase& c : cases) {
        SCOPED_TRACE(c.what);
        FakeMachine machine;
        for (const QString& dir : c.dirs)
            machine.makeDir(dir);
        for (const FileSpec& file : c.files)
            machine.writeFile(file.path, file.contents);
        QList<DetectedCloudService> expected;
        for (const Expected& e : c.expected)
            expected.append({e.service, machine.resolve(e.path)});
        const CloudServiceDetector detector = machine.detector();
        EXPECT_EQ(rules == Rules::mac ? detector.detectMacServices()
                                      : detector.detectLinuxServices(),
                  expected);
    }
}

const QString iCloudPath = u"~/Library/Mobile Documents/com~apple~CloudDocs"_s;
const QString storage = u"~/Library/CloudStorage/"_s;

TEST(CloudServiceDetector, MacRules) {
    using enum CloudService;
    runCases(
        Rules::mac,
        {
            {"nothing there", {}, {}, {}},
            {"all four, in service order",
             {storage + u"OneDrive-Personal", storage + u"GoogleDrive-a@b.c/My Drive",
              storage + u"Dropbox", iCloudPath},
             {},
             {{iCloud, iCloudPath},
              {dropbox, storage + u"Dropbox"},
              {googleDrive, storage + u"GoogleDrive-a@b.c/My Drive"},
              {oneDrive, storage + u"OneDrive-Personal"}}},
            {"no storage folder: only Dropbox has a home fallback",
             {u"~/Dropbox"_s, u"~/OneDrive"_s, u"~/Google Drive"_s},
             {},
             {{dropbox, u"~/Dropbox"_s}}},
            {"storage folder without Dropbox falls back too",
             {storage + u"OneDrive", u"~/Dropbox"_s},
             {},
             {{dropbox, u"~/Dropbox"_s}, {oneDrive, storage + u"OneDrive"}}},
            {"storage folder is a file",
             {u"~/Library"_s, u"~/Dropbox"_s},
             {{u"~/Library/CloudStorage"_s, "x"}},
             {{dropbox, u"~/Dropbox"_s}}},
            {"storage entry wins over the home folder",
             {storage + u"Dropbox-Work", u"~/Dropbox"_s},
             {},
             {{dropbox, storage + u"Dropbox-Work"}}},
            {"Google Drive without My Drive is the entry itself",
             {storage + u"GoogleDrive-Work"},
             {},
             {{googleDrive, storage + u"GoogleDrive-Work"}}},
            {"My Drive as a file doesn't count",
             {storage + u"GoogleDrive-Work"},
             {{storage + u"GoogleDrive-Work/My Drive", "x"}},
             {{googleDrive, storage + u"GoogleDrive-Work"}}},
            {"first by name, not by creation",
             {storage + u"OneDrive-Work", storage + u"OneDrive-Personal", storage + u"Dropbox-Z",
              storage + u"Dropbox-A"},
             {},
             {{dropbox, storage + u"Dropbox-A"}, {oneDrive, storage + u"OneDrive-Personal"}}},
            {"prefix is case-sensitive and at the start",
             {storage + u"dropbox", storage + u"My OneDrive", storage + u"googledrive"},
             {},
             {}},
            {"files stand for nothing",
             {u"~/Library/Mobile Documents"_s, storage},
             {{iCloudPath, "x"},
              {storage + u"Dropbox", "x"},
              {storage + u"GoogleDrive-x", "x"},
              {storage + u"OneDrive", "x"},
              {u"~/Dropbox"_s, "x"}},
             {}},
            {"a file before a directory of the same prefix is passed over",
             {storage + u"OneDrive-B"},
             {{storage + u"OneDrive-A", "x"}},
             {{oneDrive, storage + u"OneDrive-B"}}},
            {"Linux places mean nothing here",
             {u"~/OneDrive"_s, u"~/Nextcloud"_s, u"~/Sync"_s, u"@run/gvfs/google-drive:host=x"_s},
             {},
             {}},
        });
}

const QByteArray dropboxInfo =
    "{\"personal\": {\"path\": \"HOME/Dropbox (Personal)\", \"host\": 1, \"is_team\": false},"
    " \"business\": {\"path\": \"HOME/Dropbox (Acme)\", \"is_team\": true}}";

TEST(CloudServiceDetector, LinuxDropbox) {
    using enum CloudService;
    const QString info = u"~/.dropbox/info.json"_s;
    runCases(Rules::freedesktop,
             {
                 {"default folder", {u"~/Dropbox"_s}, {}, {{dropbox, u"~/Dropbox"_s}}},
                 {"personal before business",
                  {u"~/Dropbox (Acme)"_s, u"~/Dropbox (Personal)"_s, u"~/Dropbox"_s},
                  {{info, dropboxInfo}},
                  {{dropbox, u"~/Dropbox (Personal)"_s}}},
                 {"business when personal is gone",
                  {u"~/Dropbox (Acme)"_s},
                  {{info, dropboxInfo}},
                  {{dropbox, u"~/Dropbox (Acme)"_s}}},
                 {"business only",
                  {u"~/Work Box"_s},
                  {{info, R"({"business": {"path": "HOME/Work Box"}})"}},
                  {{dropbox, u"~/Work Box"_s}}},
                 {"listed folders gone: default",
                  {u"~/Dropbox"_s},
                  {{info, dropboxInfo}},
                  {{dropbox, u"~/Dropbox"_s}}},
                 {"listed path is a file",
                  {},
                  {{info, dropboxInfo}, {u"~/Dropbox (Personal)"_s, "x"}},
                  {}},
             });
    for (const QByteArray& damaged :
         QList<QByteArray>{"", "{\"personal\": {\"path\": \"HOME/Mine\"", "[\"HOME/Mine\"]",
                           R"({"personal": {"path": 42}})", R"({"personal": "HOME/Mine"})",
                           R"({"personal": {"path": "Mine"}})", raw("\x00\xff\xfe{\x01")}) {
        runCases(Rules::freedesktop, {{damaged.constData(),
                                       {u"~/Mine"_s, u"~/Dropbox"_s},
                                       {{info, damaged}},
                                       {{dropbox, u"~/Dropbox"_s}}}});
    }
}

TEST(CloudServiceDetector, LinuxOneDrive) {
    using enum CloudService;
    const QString config = u"@config/onedrive/config"_s;
    runCases(Rules::freedesktop,
             {
                 {"default folder", {u"~/OneDrive"_s}, {}, {{oneDrive, u"~/OneDrive"_s}}},
                 {"sync_dir with ~ among comments",
                  {u"~/Cloud/OneDrive"_s, u"~/OneDrive"_s},
                  {{config, "# sync_dir = \"~/Elsewhere\"\n"
                            "# skip_file = \"~*|.~*\"\n"
                            "   sync_dir   =   \"~/Cloud/OneDrive\"  \r\n"
                            "monitor_interval = \"300\"\n"}},
                  {{oneDrive, u"~/Cloud/OneDrive"_s}}},
                 {"only commented out: default",
                  {u"~/Elsewhere"_s, u"~/OneDrive"_s},
                  {{config, "#sync_dir = \"~/Elsewhere\"\n"}},
                  {{oneDrive, u"~/OneDrive"_s}}},
                 {"the last setting wins",
                  {u"~/A"_s, u"~/B"_s},
                  {{config, "sync_dir = \"~/A\"\nsync_dir = \"~/B\"\n"}},
                  {{oneDrive, u"~/B"_s}}},
                 {"absolute, single quotes, # inside the quotes",
                  {u"~/One #1"_s},
                  {{config, "sync_dir = 'HOME/One #1'\n"}},
                  {{oneDrive, u"~/One #1"_s}}},
                 {"unquoted with a trailing comment",
                  {u"~/Plain"_s},
                  {{config, "sync_dir = ~/Plain   # mine\n"}},
                  {{oneDrive, u"~/Plain"_s}}},
                 {"an unclosed quote is no setting",
                  {u"~/A"_s, u"~/OneDrive"_s},
                  {{config, "sync_dir = \"~/A\"\nsync_dir = \"~/B\n"}},
                  {{oneDrive, u"~/A"_s}}},
                 {"similar keys aren't sync_dir",
                  {u"~/A"_s},
                  {{config, "sync_dir_permissions = \"~/A\"\nold_sync_dir = \"~/A\"\n"}},
                  {}},
                 {"configured folder missing: default",
                  {u"~/OneDrive"_s},
                  {{config, "sync_dir = \"~/Gone\"\n"}},
                  {{oneDrive, u"~/OneDrive"_s}}},
                 {"a relative folder is no folder",
                  {u"~/OneDrive"_s},
                  {{config, "sync_dir = \"OneDrive-rel\"\n"}},
                  {{oneDrive, u"~/OneDrive"_s}}},
                 {"read from the XDG root, not ~/.config",
                  {u"~/A"_s},
                  {{u"~/.config/onedrive/config"_s, "sync_dir = \"~/A\"\n"}},
                  {}},
                 {"binary junk",
                  {u"~/OneDrive"_s},
                  {{config, raw("sync_dir\x00=\xff\"~/A")}},
                  {{oneDrive, u"~/OneDrive"_s}}},
             });
}

TEST(CloudServiceDetector, LinuxGoogleDriveMount) {
    using enum CloudService;
    const QString gvfs = u"@run/gvfs/"_s;
    runCases(Rules::freedesktop,
             {
                 {"first account by name",
                  {gvfs + u"google-drive:host=gmail.com,user=zed",
                   gvfs + u"google-drive:host=gmail.com,user=amy", gvfs + u"dav:host=example.org"},
                  {},
                  {{googleDrive, gvfs + u"google-drive:host=gmail.com,user=amy"}}},
                 {"other mounts and files don't count",
                  {gvfs + u"sftp:host=google-drive", u"~/Google Drive"_s},
                  {{gvfs + u"google-drive:host=gmail.com,user=a", "x"}},
                  {}},
                 {"no gvfs at all", {u"@run"_s}, {}, {}},
             });
}

TEST(CloudServiceDetector, LinuxNextcloud) {
    using enum CloudService;
    const QString cfg = u"@config/Nextcloud/nextcloud.cfg"_s;
    const QByteArray several = "[General]\nclientVersion=3.9.0\n\n[Accounts]\n"
                               "0\\Folders\\1\\localPath=HOME/Gone/\n"
                               "0\\Folders\\1\\targetPath=/\n"
                               "0\\Folders\\2\\localPath=HOME/Work Cloud/\n"
                               "1\\FoldersWithPlaceholders\\1\\localPath=HOME/Nextcloud2/\n"
                               "0\\url=https://cloud.example.org\n";
    runCases(Rules::freedesktop,
             {
                 {"default folder", {u"~/Nextcloud"_s}, {}, {{nextcloud, u"~/Nextcloud"_s}}},
                 {"first existing of several, trailing slash dropped",
                  {u"~/Work Cloud"_s, u"~/Nextcloud2"_s, u"~/Nextcloud"_s},
                  {{cfg, several}},
                  {{nextcloud, u"~/Work Cloud"_s}}},
                 {"virtual-file folders count too",
                  {u"~/Nextcloud2"_s},
                  {{cfg, several}},
                  {{nextcloud, u"~/Nextcloud2"_s}}},
                 {"quoted value with escapes",
                  {u"~/N\u00e4xt \"A\""_s},
                  {{cfg, "0\\Folders\\1\\localPath=\"HOME/N\\xe4xt \\\"A\\\"\"\n"}},
                  {{nextcloud, u"~/N\u00e4xt \"A\""_s}}},
                 {"keys that only look similar",
                  {u"~/A"_s},
                  {{cfg, "0\\Folders\\1\\localPathOld=HOME/A\n0\\Folders\\1\\journalPath=HOME/A\n"
                         ";0\\Folders\\2\\localPath=HOME/A\n"}},
                  {}},
                 {"none listed exists: default",
                  {u"~/Nextcloud"_s},
                  {{cfg, several}},
                  {{nextcloud, u"~/Nextcloud"_s}}},
                 {"binary junk",
                  {u"~/Nextcloud"_s},
                  {{cfg, raw("\x00\x01localPath\xff\xfe=\x00")}},
                  {{nextcloud, u"~/Nextcloud"_s}}},
             });
}

const QByteArray syncthingConfig = R"(<?xml version="1.0"?>
<configuration version="37">
    <folder id="abcd-1234" label="Gone" path="~/gone" type="sendreceive">
        <device id="XYZ"></device>
    </folder>
    <folder id="efgh-5678" label="Photos" path="HOME/Photos Sync/" type="sendreceive"/>
    <device id="XYZ" name="laptop"><address>dynamic</address></device>
    <defaults>
        <folder id="" label="" path="~" type="sendreceive"></folder>
    </defaults>
</configuration>
)";

TEST(CloudServiceDetector, LinuxSyncthing) {
    using enum CloudService;
    const QString config = u"@config/syncthing/config.xml"_s;
    const QString state = u"@state/syncthing/config.xml"_s;
    runCases(Rules::freedesktop,
             {
                 {"default folder", {u"~/Sync"_s}, {}, {{syncthing, u"~/Sync"_s}}},
                 {"from the config directory",
                  {u"~/Photos Sync"_s, u"~/Sync"_s},
                  {{config, syncthingConfig}},
                  {{syncthing, u"~/Photos Sync"_s}}},
                 {"from the state directory",
                  {u"~/Photos Sync"_s},
                  {{state, syncthingConfig}},
                  {{syncthing, u"~/Photos Sync"_s}}},
                 {"config directory first",
                  {u"~/Photos Sync"_s, u"~/Other"_s},
                  {{config, syncthingConfig},
                   {state, R"(<configuration><folder path="~/Other"/></configuration>)"}},
                  {{syncthing, u"~/Photos Sync"_s}}},
                 {"state file used when the config file's folders are gone",
                  {u"~/Other"_s},
                  {{config, syncthingConfig},
                   {state, R"(<configuration><folder path="~/Other"/></configuration>)"}},
                  {{syncthing, u"~/Other"_s}}},
                 {"the defaults template is no folder", {}, {{config, syncthingConfig}}, {}},
                 {"folders nested elsewhere don't count",
                  {u"~/A"_s},
                  {{config, R"(<configuration><gui><folder path="~/A"/></gui></configuration>)"}},
                  {}},
                 {"truncated file is ignored whole",
                  {u"~/Photos Sync"_s, u"~/Sync"_s},
                  {{config, syncthingConfig.left(syncthingConfig.indexOf("<device id=\"XYZ\" n"))}},
                  {{syncthing, u"~/Sync"_s}}},
                 {"another program's XML",
                  {u"~/A"_s, u"~/Sync"_s},
                  {{config, R"(<settings><folder path="~/A"/></settings>)"}},
                  {{syncthing, u"~/Sync"_s}}},
                 {"binary junk",
                  {u"~/Sync"_s},
                  {{config, raw("<\x00\xff configuration")}},
                  {{syncthing, u"~/Sync"_s}}},
             });
}

TEST(CloudServiceDetector, LinuxAllAtOnceInServiceOrder) {
    using enum CloudService;
    runCases(Rules::freedesktop, {{"iCloud has no Linux place",
                                   {u"~/Sync"_s, u"~/Nextcloud"_s, u"~/OneDrive"_s,
                                    u"@run/gvfs/google-drive:host=x"_s, u"~/Dropbox"_s, iCloudPath},
                                   {},
                                   {{dropbox, u"~/Dropbox"_s},
                                    {googleDrive, u"@run/gvfs/google-drive:host=x"_s},
                                    {oneDrive, u"~/OneDrive"_s},
                                    {nextcloud, u"~/Nextcloud"_s},
                                    {syncthing, u"~/Sync"_s}}}});
}

TEST(CloudServiceDetector, OversizedAndSpecialConfigFilesAreIgnored) {
    FakeMachine machine;
    machine.makeDir(u"~/Big"_s);
    // Valid settings that name ~/Big, padded past the limit.
    QByteArray big = "sync_dir = \"~/Big\"\n";
    big += QByteArray(1024 * 1024, '#');
    machine.writeFile(u"@config/onedrive/config"_s, big);
    // Exactly at the limit is still read.
    QByteArray atLimit = "<configuration><folder path=\"~/Big\"/></configuration>";
    atLimit += QByteArray(1024 * 1024 - atLimit.size(), ' ');
    machine.writeFile(u"@config/syncthing/config.xml"_s, atLimit);
    // A pipe where the settings should be: reading it would wait forever.
    const QString pipe = machine.resolve(u"@config/Nextcloud/nextcloud.cfg"_s);
    QDir().mkpath(QFileInfo(pipe).path());
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    // A directory where info.json should be.
    machine.makeDir(u"~/.dropbox/info.json"_s);

    const QList<DetectedCloudService> expected{
        {CloudService::syncthing, machine.resolve(u"~/Big"_s)}};
    EXPECT_EQ(machine.detector().detectLinuxServices(), expected);
}

TEST(CloudServiceDetector, FindsTheFirstServiceHoldingASyncFolder) {
    FakeMachine machine;
    const QList<DetectedCloudService> services{
        {CloudService::dropbox, machine.resolve(u"~/Dropbox"_s)},
        {CloudService::oneDrive, machine.resolve(u"~/OneDrive"_s)},
        {CloudService::syncthing, machine.resolve(u"~/Sync"_s)}};
    EXPECT_EQ(CloudServiceDetector::findExistingSyncFolder(services), std::nullopt);

    machine.writeFile(u"~/Dropbox/HueShelf Sync"_s, "a file is no sync folder");
    machine.makeDir(u"~/Sync/HueShelf Sync"_s);
    machine.makeDir(u"~/OneDrive/hueshelf sync"_s);
    EXPECT_EQ(CloudServiceDetector::findExistingSyncFolder(services),
              (FoundSyncFolder{services[2], machine.resolve(u"~/Sync/HueShelf Sync"_s)}));

    machine.makeDir(u"~/OneDrive/HueShelf Sync"_s);
    EXPECT_EQ(CloudServiceDetector::findExistingSyncFolder(services),
              (FoundSyncFolder{services[1], machine.resolve(u"~/OneDrive/HueShelf Sync"_s)}));
}

TEST(CloudServiceDetector, ServiceNameFromPathWords) {
    const QList<std::pair<QString, std::optional<QString>>> cases{
        {u"/Volumes/Backup/iCloud Backups"_s, u"iCloud Drive"_s},
        {u"/Users/u/Library/Mobile Documents/com~apple~CloudDocs"_s, u"iCloud Drive"_s},
        {u"/Users/u/Dropbox/ICLOUD"_s, u"iCloud Drive"_s},
        {u"/home/u/Google/DropBox"_s, u"Dropbox"_s},
        {u"/run/user/1000/gvfs/google-drive:host=gmail.com"_s, u"Google Drive"_s},
        {u"/mnt/OneDrive-Nextcloud"_s, u"OneDrive"_s},
        {u"/home/u/Nextcloud/syncthing"_s, u"Nextcloud"_s},
        {u"/home/u/.local/share/Syncthing/Photos"_s, u"Syncthing"_s},
        {u"/home/u/Sync"_s, std::nullopt},
        {u"/home/u/One Drive"_s, std::nullopt},
        {QString(), std::nullopt},
    };
    for (const auto& [path, name] : cases)
        EXPECT_EQ(CloudServiceDetector::serviceName(path), name) << path.toStdString();
}

TEST(CloudServiceDetector, HomeAbbreviated) {
    const QString home = u"/home/u"_s;
    const QList<std::tuple<QString, QString, QString>> cases{
        {u"/home/u/Dropbox"_s, home, u"~/Dropbox"_s},
        {u"/home/u"_s, home, u"~"_s},
        {u"/home/u/"_s, home, u"~"_s},
        {u"/home/u/Dropbox"_s, u"/home/u/"_s, u"~/Dropbox"_s},
        {u"/home/user2/Dropbox"_s, home, u"/home/user2/Dropbox"_s},
        {u"/mnt/home/u/Dropbox"_s, home, u"/mnt/home/u/Dropbox"_s},
        {u"/Dropbox"_s, u"/"_s, u"~/Dropbox"_s},
        {u"/home/u/Dropbox"_s, QString(), u"/home/u/Dropbox"_s},
    };
    for (const auto& [path, homeDir, shown] : cases)
        EXPECT_EQ(CloudServiceDetector::homeAbbreviated(path, homeDir), shown)
            << path.toStdString() << " in " << homeDir.toStdString();
}

TEST(CloudService, NamesRoundTripAndNothingElseParses) {
    QStringList names;
    for (const CloudService service : allCloudServices) {
        EXPECT_EQ(cloudServiceFromName(cloudServiceName(service)), service);
        names.append(cloudServiceName(service));
    }
    EXPECT_EQ(names, (QStringList{u"iCloud Drive"_s, u"Dropbox"_s, u"Google Drive"_s, u"OneDrive"_s,
                                  u"Nextcloud"_s, u"Syncthing"_s}));
    for (const QString& other : {u"icloud drive"_s, u"Dropbox "_s, u"googleDrive"_s, QString()})
        EXPECT_EQ(cloudServiceFromName(other), std::nullopt) << other.toStdString();
}

} // namespace
} // namespace testing
} // namespace hueshelf
