// The browser helper's registration: written where the browsers look, rewritten when the
// program moved, left alone when it already names the helper, never made without a helper.

#include "browser/NativeMessagingManifest.h"

#include "TempHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;
using Outcome = NativeMessagingManifest::Outcome;

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

class Manifest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(home.isValid());
        binaryDir = home.path() + u"/opt/hueshelf/bin"_s;
        ASSERT_TRUE(writeAll(binaryDir + u"/hueshelf-helper"_s, "#!/bin/sh\n"));
        helper = binaryDir + u"/hueshelf-helper"_s;
        configHome = home.path() + u"/.config"_s;
    }
    QString chromeManifest() const {
        return configHome + u"/google-chrome/NativeMessagingHosts/io.hueshelf.hueshelf.json"_s;
    }
    QString chromiumManifest() const {
        return configHome + u"/chromium/NativeMessagingHosts/io.hueshelf.hueshelf.json"_s;
    }

    testing::TempHome home;
    QString binaryDir;
    QString helper;
    QString configHome;
};

TEST_F(Manifest, WritesBothBrowsersManifestsWithTheExactKeys) {
    NativeMessagingManifest::ensure(configHome, binaryDir);
    for (const QString& path : {chromeManifest(), chromiumManifest()}) {
        const QByteArray bytes = readAll(path);
        const QJsonObject object = QJsonDocument::fromJson(bytes).object();
        EXPECT_EQ(object.value(u"name"_s).toString(), u"io.hueshelf.hueshelf"_s)
            << path.toStdString();
        EXPECT_EQ(object.value(u"description"_s).toString(), u"HueShelf Native Messaging Host"_s);
        EXPECT_EQ(object.value(u"path"_s).toString(), helper);
        EXPECT_EQ(object.value(u"type"_s).toString(), u"stdio"_s);
        EXPECT_EQ(object.value(u"allowed_origins"_s).toVariant().toStringList(),
                  (QStringList{u"chrome-extension://aaaabbbbccccddddeeeeffffgggghhhh/"_s,
                               u"chrome-extension://iiiijjjjkkkkllllmmmmnnnnoooopppp/"_s}));
        EXPECT_EQ(object.size(), 5);
        // Pretty-printed, keys in sorted order.
        const qsizetype origins = bytes.indexOf("\"allowed_origins\"");
        const qsizetype description = bytes.indexOf("\"description\"");
        const qsizetype name = bytes.indexOf("\"name\"");
        const qsizetype pathKey = bytes.indexOf("\"path\"");
        const qsizetype type = bytes.indexOf("\"type\"");
        EXPECT_TRUE(origins >= 0 && origins < description && description < name && name < pathKey &&
                    pathKey < type)
            << bytes.constData();
        EXPECT_GT(bytes.count('\n'), 5);
    }
}

// What a manifest already on disk holds, and whether the launch must write it afresh.
struct ExistingCase {
    const char* label;
    QByteArray (*content)(const QString& helper);
    Outcome expected;
};

const ExistingCase kExistingCases[] = {
    {"current",
     [](const QString& h) { return QJsonDocument(NativeMessagingManifest::manifest(h)).toJson(); },
     Outcome::current},
    {"stale keys, right path",
     [](const QString& h) {
         return QJsonDocument(QJsonObject{{u"path"_s, h},
                                          {u"name"_s, u"old.name"_s},
                                          {u"allowed_origins"_s, u"nonsense"_s},
                                          {u"extra"_s, 1}})
             .toJson();
     },
     Outcome::current},
    {"program moved",
     [](const QString&) {
         return QJsonDocument(NativeMessagingManifest::manifest(u"/old/place/hueshelf-helper"_s))
             .toJson();
     },
     Outcome::written},
    {"path differs only by a trailing slash",
     [](const QString& h) {
         return QJsonDocument(NativeMessagingManifest::manifest(h + u'/')).toJson();
     },
     Outcome::written},
    {"path is not text",
     [](const QString&) {
         return QJsonDocument(QJsonObject{{u"path"_s, 7}}).toJson();
     },
     Outcome::written},
    {"no path", [](const QString&) { return QByteArray(R"({"name":"io.hueshelf.hueshelf"})"); },
     Outcome::written},
    {"not JSON", [](const QString& h) { return (u"{\"path\": \""_s + h).toUtf8(); },
     Outcome::written},
    {"array root", [](const QString& h) { return (u"[{\"path\": \""_s + h + u"\"}]"_s).toUtf8(); },
     Outcome::written},
    {"empty file", [](const QString&) { return QByteArray(); }, Outcome::written},
};

TEST_F(Manifest, AnExistingManifestIsKeptOnlyWhenItNamesTheHelper) {
    const QString directory = QFileInfo(chromeManifest()).absolutePath();
    const QDateTime old = QDateTime::currentDateTimeUtc().addDays(-3);
    for (const ExistingCase& row : kExistingCases) {
        const QByteArray before = row.content(helper);
        ASSERT_TRUE(writeAll(chromeManifest(), before));
        {
            QFile file(chromeManifest());
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(old, QFileDevice::FileModificationTime));
        }
        EXPECT_EQ(NativeMessagingManifest::ensureIn(directory, helper), row.expected) << row.label;
        const QDateTime modified = QFileInfo(chromeManifest()).lastModified();
        if (row.expected == Outcome::current) {
            EXPECT_EQ(readAll(chromeManifest()), before) << row.label;
            EXPECT_EQ(modified.toSecsSinceEpoch(), old.toSecsSinceEpoch()) << row.label;
        } else {
            EXPECT_EQ(QJsonDocument::fromJson(readAll(chromeManifest())).object(),
                      NativeMessagingManifest::manifest(helper))
                << row.label;
        }
    }
}

TEST_F(Manifest, WithoutTheHelperNothingIsWrittenOrRemoved) {
    const QByteArray stale =
        QJsonDocument(NativeMessagingManifest::manifest(u"/old/hueshelf-helper"_s)).toJson();
    ASSERT_TRUE(writeAll(chromeManifest(), stale));
    const QString emptyBinaryDir = home.path() + u"/elsewhere/bin"_s;
    QDir().mkpath(emptyBinaryDir);
    // A directory of the helper's name is no helper either.
    QDir().mkpath(emptyBinaryDir + u"/hueshelf-helper"_s);
    EXPECT_FALSE(NativeMessagingManifest::helperPath(emptyBinaryDir).has_value());
    NativeMessagingManifest::ensure(configHome, emptyBinaryDir);
    EXPECT_EQ(readAll(chromeManifest()), stale);
    EXPECT_FALSE(QFileInfo::exists(chromiumManifest()));
}

TEST_F(Manifest, FailuresAreSilentAndCostOnlyTheirBrowser) {
    // Chrome's folder can't be made (a file stands in its way); Chromium's still gets one.
    ASSERT_TRUE(writeAll(configHome + u"/google-chrome"_s, "not a folder"));
    EXPECT_EQ(NativeMessagingManifest::ensureIn(QFileInfo(chromeManifest()).absolutePath(), helper),
              Outcome::failed);
    NativeMessagingManifest::ensure(configHome, binaryDir);
    EXPECT_EQ(readAll(configHome + u"/google-chrome"_s), "not a folder");
    EXPECT_EQ(QJsonDocument::fromJson(readAll(chromiumManifest())).object().value(u"path"_s),
              helper);

    // A folder where the file should be can't be replaced: dropped, and nothing else changes.
    ASSERT_TRUE(QFile::remove(chromiumManifest()));
    ASSERT_TRUE(QDir().mkpath(chromiumManifest()));
    const QString chromium = QFileInfo(chromiumManifest()).absolutePath();
    EXPECT_EQ(NativeMessagingManifest::ensureIn(chromium, helper), Outcome::failed);
    EXPECT_TRUE(QFileInfo(chromiumManifest()).isDir());
}

TEST_F(Manifest, TheHelperPathIsAbsoluteEvenFromARelativeFolder) {
    const QString relative = QDir::current().relativeFilePath(binaryDir);
    const std::optional<QString> path = NativeMessagingManifest::helperPath(relative);
    ASSERT_TRUE(path.has_value());
    EXPECT_TRUE(QFileInfo(*path).isAbsolute());
    EXPECT_EQ(QFileInfo(*path).canonicalFilePath(), QFileInfo(helper).canonicalFilePath());
}

} // namespace
} // namespace hueshelf
