// Finding the storage services' folders on a fake machine, from the folders themselves and from
// the clients' own settings files, damaged ones included.

#include "sync/CloudServiceDetector.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace hueshelf {

void PrintTo(const DetectedCloudService& detected, std::ostream* out) {
    *out << cloudServiceName(detected.service).toStdString() << " at "
         << detected.path.toStdString();
}

namespace testing {
namespace {

using namespace Qt::StringLiterals;

// A home, a runtime directory and XDG roots kept apart, so that a reader looking in the wrong
// place finds nothing. Paths start with "~", "@run", "@config" or "@state"; "HOME" in contents
// stands for the home; "<fifo>" makes a pipe, which must never be read.
class FakeMachine {
public:
    QString resolve(QString path) const {
        const QString root = m_dir.path();
        for (const char* marker : {"~", "@run", "@config", "@state"})
            path.replace(QRegularExpression(u"^"_s + QLatin1StringView(marker) + u"(?=/|$)"_s),
                         root + u'/' + QLatin1StringView(marker).mid(marker[0] == '@'));
        return path;
    }
    void writeFile(const QString& path, QByteArray contents) const {
        const QString full = resolve(path);
        QDir().mkpath(QFileInfo(full).path());
        QFile file(full);
        if (contents == "<fifo>")
            ASSERT_EQ(mkfifo(QFile::encodeName(full).constData(), 0600), 0);
        else
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) &&
                        file.write(contents.replace("HOME", resolve(u"~"_s).toUtf8())) >= 0);
    }
    CloudServiceDetector detector() const {
        return CloudServiceDetector(CloudServiceRoots{resolve(u"~"_s), resolve(u"@run"_s),
                                                      resolve(u"@config"_s), resolve(u"@state"_s)});
    }

private:
    QTemporaryDir m_dir;
};

const QString oneDriveConfig = u"@config/onedrive/config"_s;
const QString nextcloudConfig = u"@config/Nextcloud/nextcloud.cfg"_s;
const QString syncthingConfig = u"@config/syncthing/config.xml"_s;
const QByteArray syncthingXml = R"(<?xml version="1.0"?>
<configuration version="37">
    <folder id="a" label="Gone" path="~/gone" type="sendreceive"><device id="X"></device></folder>
    <folder id="b" label="Photos" path="HOME/Photos Sync/" type="sendreceive"/>
    <device id="X" name="laptop"><address>dynamic</address></device>
    <defaults><folder id="" path="~" type="sendreceive"></folder></defaults>
</configuration>
)";

TEST(CloudServiceDetector, FindsEachServiceWhereItsClientKeepsIt) {
    struct Case {
        const char* what;
        bool mac;
        QString dirs; // separated by "|"
        QList<std::pair<QString, QByteArray>> files;
        QString expected; // "service name=path|..."
    };
    const QString cloud = u"~/Library/CloudStorage/"_s;
    const QString iCloud = u"~/Library/Mobile Documents/com~apple~CloudDocs"_s;
    const QList<Case> cases = {
        {"mac: in service order, My Drive where there is one",
         true,
         cloud + u"OneDrive-P|"_s + cloud + u"GoogleDrive-a/My Drive|"_s + cloud + u"Dropbox|" +
             iCloud,
         {},
         u"iCloud Drive="_s + iCloud + u"|Dropbox="_s + cloud + u"Dropbox|Google Drive="_s + cloud +
             u"GoogleDrive-a/My Drive|OneDrive="_s + cloud + u"OneDrive-P"_s},
        {"mac: Dropbox's home fallback, first by name, case-sensitive prefixes, files ignored",
         true,
         u"~/Dropbox|"_s + cloud + u"GoogleDrive-W|"_s + cloud + u"OneDrive-W|"_s + cloud +
             u"OneDrive-H|"_s + cloud + u"dropbox"_s,
         {{cloud + u"OneDrive-A"_s, "x"}, {cloud + u"GoogleDrive-W/My Drive"_s, "x"}},
         u"Dropbox=~/Dropbox|Google Drive="_s + cloud + u"GoogleDrive-W|OneDrive="_s + cloud +
             u"OneDrive-H"_s},
        {"linux: default folders, in service order; iCloud has no place here",
         false,
         u"~/Sync|~/Nextcloud|~/OneDrive|@run/gvfs/google-drive:host=x,user=b|"
         u"@run/gvfs/google-drive:host=x,user=a|~/Dropbox|"_s +
             iCloud,
         {},
         u"Dropbox=~/Dropbox|Google Drive=@run/gvfs/google-drive:host=x,user=a|"
         u"OneDrive=~/OneDrive|Nextcloud=~/Nextcloud|Syncthing=~/Sync"_s},
        {"linux: folders named in the clients' settings",
         false,
         u"~/Dropbox (Acme)|~/Dropbox|~/A|~/B|~/OneDrive|~/N\u00e4xt \"A\"|~/Photos Sync|~/Sync"_s,
         {{u"~/.dropbox/info.json"_s, "{\"personal\": {\"path\": \"HOME/Dropbox (Me)\"},"
                                      " \"business\": {\"path\": \"HOME/Dropbox (Acme)\"}}"},
          {oneDriveConfig,
           "# sync_dir = \"~/A\"\n  sync_dir =  \"~/A\" \r\nsync_dir = ~/B  # mine\n"
           "sync_dir = \"~/C\nold_sync_dir = \"~/A\"\n"},
          {nextcloudConfig, "[Accounts]\n0\\Folders\\1\\localPath=HOME/Gone/\n"
                            "0\\Folders\\2\\localPath=\"HOME/N\\xe4xt \\\"A\\\"\"\n"
                            "0\\Folders\\1\\localPathOld=HOME/A\n"},
          {syncthingConfig, syncthingXml}},
         u"Dropbox=~/Dropbox (Acme)|OneDrive=~/B|Nextcloud=~/N\u00e4xt \"A\"|"
         u"Syncthing=~/Photos Sync"_s},
        {"linux: damaged, foreign and oversized settings fall back on the defaults",
         false,
         u"~/Mine|~/Dropbox|~/Big|~/OneDrive|~/Sync|~/Nextcloud|~/rel"_s,
         {{u"~/.dropbox/info.json"_s, "<fifo>"},
          {oneDriveConfig, "sync_dir = \"~/Big\"\n" + QByteArray(1024 * 1024, '#')},
          {nextcloudConfig,
           QByteArray("0\\Folders\\1\\localPath=rel\n") + QByteArray::fromHex("00ff")},
          {syncthingConfig, syncthingXml.left(syncthingXml.indexOf("<device id=\"X\" n"))},
          {u"@state/syncthing/config.xml"_s, R"(<settings><folder path="~/Mine"/></settings>)"}},
         u"Dropbox=~/Dropbox|OneDrive=~/OneDrive|Nextcloud=~/Nextcloud|Syncthing=~/Sync"_s},
        {"linux: the state directory's Syncthing settings, read at exactly 1 MiB",
         false,
         u"~/Other"_s,
         {{u"@state/syncthing/config.xml"_s,
           QByteArray(R"(<configuration><folder path="~/Other"/></configuration>)")
               .leftJustified(1024 * 1024, ' ')}},
         u"Syncthing=~/Other"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FakeMachine machine;
        for (const QString& dir : c.dirs.split(u'|'))
            ASSERT_TRUE(QDir().mkpath(machine.resolve(dir)));
        for (const auto& [path, contents] : c.files)
            machine.writeFile(path, contents);
        QList<DetectedCloudService> expected;
        for (const QString& entry : c.expected.split(u'|'))
            expected.append({cloudServiceFromName(entry.section(u'=', 0, 0)).value(),
                             machine.resolve(entry.section(u'=', 1))});
        const CloudServiceDetector detector = machine.detector();
        EXPECT_EQ(c.mac ? detector.detectMacServices() : detector.detectLinuxServices(), expected);
    }
}

TEST(CloudServiceDetector, AHandPickedFolderIsNamedByTheWordsInItsPath) {
    const std::pair<QString, std::optional<QString>> rows[]{
        {u"/Volumes/Backup/iCloud Backups"_s, u"iCloud Drive"_s},
        {u"/home/u/Google/DropBox"_s, u"Dropbox"_s},
        {u"/run/user/1000/gvfs/google-drive:host=gmail.com"_s, u"Google Drive"_s},
        {u"/mnt/OneDrive-Nextcloud"_s, u"OneDrive"_s},
        {u"/home/u/One Drive"_s, std::nullopt},
    };
    for (const auto& [path, name] : rows)
        EXPECT_EQ(CloudServiceDetector::serviceName(path), name) << path.toStdString();
}

} // namespace
} // namespace testing
} // namespace hueshelf
