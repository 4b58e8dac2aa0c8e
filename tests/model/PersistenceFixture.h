#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ModelTestSupport.h"
#include "TempHome.h"
#include "model/ColorStorage.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/SettingsStore.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace hueshelf::testing {

// The writer's thread and its completions need an application object; one for the whole run.
inline void ensureCoreApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_model_tests";
    static char* argv[] = {name, nullptr};
    static auto* application = new QCoreApplication(argc, argv);
    Q_UNUSED(application);
}

// Lets the event loop run until `done` holds. The bound is generous: it waits for real file
// I/O on another thread, and a healthy run ends as soon as the condition holds.
inline bool spinUntil(const std::function<bool()>& done, int boundMs = 10'000) {
    const QDeadlineTimer deadline(boundMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

inline QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A preferences file as another process of the product would write it.
inline QJsonObject preferencesObject(const QList<ColorTemplate>& templates, const QUuid& active,
                                     double stamp) {
    QJsonObject object;
    object.insert(PreferencesKeys::templates, TemplateJson::templatesToJson(templates));
    object.insert(PreferencesKeys::activeTemplateId, uuidText(active));
    object.insert(PreferencesKeys::lastModified, stamp);
    object.insert(PreferencesKeys::schemaVersion, 2);
    return object;
}

// A temporary home with the locations and settings of a normal run inside it.
class PersistenceFixture : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    PersistenceFixture() {
        ensureCoreApplication();
        locations = StorageLocations::resolve(home.paths(), QProcessEnvironment());
        settings = SettingsStore::open(locations);
    }

    QString prefsPath() const { return locations.preferencesFile; }

    bool writeFile(const QJsonObject& object) {
        return writeBytes(prefsPath(), QJsonDocument(object).toJson());
    }
    QJsonObject readPreferences() const {
        return PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    }
    QList<ColorTemplate> templatesInFile() const {
        const auto data = PreferencesFile::templatesData(readPreferences());
        if (!data)
            return {};
        return TemplateJson::decodeTemplates(*data, clock).value_or(QList<ColorTemplate>());
    }
    // What another run (or a look from outside) finds in the settings file on disk.
    std::unique_ptr<QSettings> settingsOnDisk() const {
        return std::make_unique<QSettings>(locations.settingsFile, QSettings::IniFormat);
    }

    TempHome home;
    StorageLocations locations;
    std::unique_ptr<QSettings> settings;
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
};

} // namespace hueshelf::testing
