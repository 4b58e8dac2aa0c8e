#pragma once

#include "../model/ModelTestSupport.h"
#include "CliRun.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "cli/StoreSession.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace hueshelf::testing {

// A temporary home that the store commands of this process read and write, as they would
// a user's: HOME and XDG_CONFIG_HOME point into it, and no isolation variable is set.
class StoreHome : public ::testing::Test {
protected:
    static inline const QString kForeignKey = QStringLiteral("helperState");
    static constexpr double kSeedStamp = 1'700'000'000'000.0;

    StoreHome() { cli::StoreSession::overrideEnvironment(environment()); }
    ~StoreHome() override { cli::StoreSession::overrideEnvironment(std::nullopt); }

    QProcessEnvironment environment() const {
        QProcessEnvironment env;
        env.insert(QStringLiteral("HOME"), home.path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + u"/.config");
        return env;
    }

    QString prefsPath() const { return home.paths().configDir + u"/io.hueshelf.Hueshelf.json"; }

    // The file as another process of the product writes it, with a key of its own.
    void seed(const QList<ColorTemplate>& templates, const QJsonValue& active) {
        QJsonObject object;
        object.insert(PreferencesKeys::templates, TemplateJson::templatesToJson(templates));
        if (!active.isUndefined())
            object.insert(PreferencesKeys::activeTemplateId, active);
        object.insert(PreferencesKeys::lastModified, kSeedStamp);
        object.insert(PreferencesKeys::schemaVersion, 2);
        object.insert(kForeignKey, QJsonObject{{QStringLiteral("keep"), true}});
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), object));
    }

    QByteArray fileBytes() const {
        QFile file(prefsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QJsonObject fileObject() const {
        return PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    }
    QList<ColorTemplate> fileTemplates() const {
        const std::optional<QByteArray> data = PreferencesFile::templatesData(fileObject());
        if (!data)
            return {};
        return TemplateJson::decodeTemplates(*data, clock).value_or(QList<ColorTemplate>());
    }

    // Every file below the home, relative to it.
    QStringList filesInHome() const {
        QStringList files;
        QDirIterator it(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next().mid(home.path().size() + 1);
        files.sort();
        return files;
    }

    TempHome home;
    ManualClock clock;
};

} // namespace hueshelf::testing
