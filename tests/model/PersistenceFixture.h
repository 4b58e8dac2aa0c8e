#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ModelTestSupport.h"
#include "TempHome.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/SettingsStore.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace hueshelf::testing {

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// One application object for the whole test program (the writer's thread, completions and
// the directory watch need it); it is never destroyed.
inline void ensureCoreApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_tests";
    static char* argv[] = {name, nullptr};
    new QCoreApplication(argc, argv);
}

// Lets the event loop run until `done` holds; a healthy run ends as soon as it does. The bound
// is generous: it waits for real file I/O on another thread.
inline bool spinUntil(const std::function<bool()>& done) {
    const QDeadlineTimer deadline(10'000);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

// A preferences file as another process of the product writes it.
inline QJsonObject preferencesObject(const QList<ColorTemplate>& templates, const QUuid& active,
                                     double stamp) {
    return {{PreferencesKeys::templates, TemplateJson::templatesToJson(templates)},
            {PreferencesKeys::activeTemplateId, uuidText(active)},
            {PreferencesKeys::lastModified, stamp},
            {PreferencesKeys::schemaVersion, 2}};
}

// A temporary home with the locations and settings of a normal run in it, and an application
// object for the writer's thread, its completions and the directory watch.
class PersistenceFixture : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    PersistenceFixture() {
        ensureCoreApplication();
        locations = StorageLocations::resolve(home.paths(), QProcessEnvironment());
        settings = SettingsStore::open(locations);
    }

    QString prefsPath() const { return locations.preferencesFile; }
    QJsonObject readPreferences() const {
        return PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    }
    QList<ColorTemplate> templatesInFile() const {
        const auto data = PreferencesFile::templatesData(readPreferences());
        return TemplateJson::decodeTemplates(data.value_or("[]"), clock)
            .value_or(QList<ColorTemplate>());
    }
    qint64 fileDataHash() const {
        return PreferencesFile::dataHash(
            PreferencesFile::templatesData(readPreferences()).value_or(""));
    }
    QStringList keptCopies() const {
        const QString pattern = QFileInfo(prefsPath()).fileName() + QStringLiteral(".unreadable-*");
        return QDir(locations.prefsDir).entryList({pattern}, QDir::Files, QDir::Name);
    }

    TempHome home;
    StorageLocations locations;
    std::unique_ptr<QSettings> settings;
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
};

} // namespace hueshelf::testing
