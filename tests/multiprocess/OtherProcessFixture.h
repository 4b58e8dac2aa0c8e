#pragma once

#include "../model/PersistenceFixture.h"
#include "model/ColorStorage.h"
#include "model/PreferencesWriter.h"
#include "model/TemplateLoader.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <optional>

namespace hueshelf::testing {

// A temporary home shared by a store in the test (the real writer on its own thread, a manual
// clock that starts years before the system's, so every write of another process is later) and
// real second processes of the product pointed at that home.
class OtherProcessFixture : public PersistenceFixture {
protected:
    static inline const QString kForeignKey = QStringLiteral("helperState");

    void TearDown() override {
        writer.reset(); // first: its last completions still reach the store
        store.reset();
    }

    QProcessEnvironment processEnvironment() const {
        // Neither process may need a display.
        return testing::childEnvironment(home.path());
    }

    // One scripted edit by the test writer, a full read-merge-write of its own, run to its end;
    // true when the process exited by itself with status 0.
    bool otherProcess(const QStringList& arguments, QString* out = nullptr) const {
        QProcess process;
        process.setProcessEnvironment(processEnvironment());
        process.start(QStringLiteral(HUESHELF_TEST_WRITER), arguments);
        if (!process.waitForStarted(10'000) || !process.waitForFinished(20'000)) {
            process.kill();
            process.waitForFinished(5'000);
            return false;
        }
        if (out)
            *out = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    // The file as another process of the product left it, with a key of its own.
    void seed(const QList<ColorTemplate>& templates, const QUuid& active) {
        QJsonObject object = preferencesObject(templates, active, kStart - 60'000.0);
        object.insert(kForeignKey, QJsonObject{{QStringLiteral("keep"), true}});
        ASSERT_TRUE(writeBytes(prefsPath(), QJsonDocument(object).toJson()));
    }

    // The store as the bar opens it: the load at start, then the writer.
    void openStore() {
        store = std::make_unique<ColorStorage>(
            clock, scheduler, TemplateLoader::loadAtStart(locations, *settings, clock));
        writer = std::make_unique<PreferencesWriter>(prefsPath(), *settings);
        store->setWriter(writer.get());
    }

    QString fileActiveId() const {
        return readPreferences().value(PreferencesKeys::activeTemplateId).toString();
    }

    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer; // last, so it goes first
};

} // namespace hueshelf::testing
