// The browser helper's registration: written where the browsers look, rewritten when the
// program moved, left alone when it already names the helper, never made without a helper.

#include "browser/NativeMessagingManifest.h"

#include "TempHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
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

QByteArray manifestFor(const QString& helper) {
    return QJsonDocument(NativeMessagingManifest::manifest(helper)).toJson();
}

class Manifest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(writeAll(helper, "#!/bin/sh\n")); }
    QString manifestIn(const QString& browser) const {
        return configHome + u'/' + browser + u"/NativeMessagingHosts/io.hueshelf.hueshelf.json"_s;
    }

    testing::TempHome home;
    const QString binaryDir = home.path() + u"/opt/hueshelf/bin"_s;
    const QString helper = binaryDir + u"/hueshelf-helper"_s;
    const QString configHome = home.path() + u"/.config"_s;
};

TEST_F(Manifest, WritesBothBrowsersManifestsWithTheExactKeys) {
    NativeMessagingManifest::ensure(configHome, binaryDir);
    const QJsonObject expected{
        {u"name"_s, u"io.hueshelf.hueshelf"_s},
        {u"description"_s, u"HueShelf Native Messaging Host"_s},
        {u"path"_s, helper},
        {u"type"_s, u"stdio"_s},
        {u"allowed_origins"_s,
         QJsonArray{u"chrome-extension://aaaabbbbccccddddeeeeffffgggghhhh/"_s,
                    u"chrome-extension://iiiijjjjkkkkllllmmmmnnnnoooopppp/"_s}}};
    for (const QString& browser : {u"google-chrome"_s, u"chromium"_s})
        EXPECT_EQ(QJsonDocument::fromJson(readAll(manifestIn(browser))).object(), expected)
            << browser.toStdString();
}

// Only the path is compared: a manifest that finds the helper works, whatever else is stale.
TEST_F(Manifest, AnExistingManifestIsKeptOnlyWhenItsPathNamesTheHelper) {
    const QString chrome = manifestIn(u"google-chrome"_s);
    const QDateTime old = QDateTime::currentDateTimeUtc().addDays(-3);
    const std::tuple<const char*, QByteArray, Outcome> rows[] = {
        {"stale keys, right path",
         QJsonDocument(QJsonObject{{u"path"_s, helper}, {u"name"_s, u"old"_s}}).toJson(),
         Outcome::current},
        {"program moved", manifestFor(u"/old/place/hueshelf-helper"_s), Outcome::written},
        {"trailing slash", manifestFor(helper + u'/'), Outcome::written},
        {"path is not text", R"({"path": 7})", Outcome::written},
        {"not JSON", (u"{\"path\": \""_s + helper).toUtf8(), Outcome::written},
        {"array root", (u"[{\"path\": \""_s + helper + u"\"}]"_s).toUtf8(), Outcome::written},
    };
    for (const auto& [label, content, expected] : rows) {
        SCOPED_TRACE(label);
        ASSERT_TRUE(writeAll(chrome, content));
        {
            QFile file(chrome);
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(old, QFileDevice::FileModificationTime));
        }
        EXPECT_EQ(NativeMessagingManifest::ensureIn(QFileInfo(chrome).absolutePath(), helper),
                  expected);
        if (expected == Outcome::current) {
            EXPECT_EQ(readAll(chrome), content);
            EXPECT_EQ(QFileInfo(chrome).lastModified().toSecsSinceEpoch(), old.toSecsSinceEpoch());
        } else {
            EXPECT_EQ(readAll(chrome), manifestFor(helper));
        }
    }
}

// Without a helper (a directory of its name is none) nothing is written or removed. Where
// Chrome's folder can't be made, Chromium's still gets its manifest.
TEST_F(Manifest, NothingWithoutTheHelperAndAFailureCostsOnlyItsBrowser) {
    const QByteArray stale = manifestFor(u"/old/hueshelf-helper"_s);
    ASSERT_TRUE(writeAll(manifestIn(u"chromium"_s), stale));
    const QString emptyBinaryDir = home.path() + u"/elsewhere/bin"_s;
    QDir().mkpath(emptyBinaryDir + u"/hueshelf-helper"_s);
    NativeMessagingManifest::ensure(configHome, emptyBinaryDir);
    EXPECT_EQ(readAll(manifestIn(u"chromium"_s)), stale);
    EXPECT_FALSE(QFileInfo::exists(configHome + u"/google-chrome"_s));

    ASSERT_TRUE(writeAll(configHome + u"/google-chrome"_s, "not a folder"));
    EXPECT_EQ(
        NativeMessagingManifest::ensureIn(QFileInfo(manifestIn(u"google-chrome"_s)).path(), helper),
        Outcome::failed);
    NativeMessagingManifest::ensure(configHome, binaryDir);
    EXPECT_EQ(readAll(configHome + u"/google-chrome"_s), "not a folder");
    EXPECT_EQ(readAll(manifestIn(u"chromium"_s)), manifestFor(helper));
}

} // namespace
} // namespace hueshelf
