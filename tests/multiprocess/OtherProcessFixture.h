#pragma once

#include "../model/PersistenceFixture.h"
#include "model/ExternalChangeMonitor.h"
#include "model/PreferencesWriter.h"
#include "model/TemplateLoader.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <optional>

namespace hueshelf::testing {

// What a finished second process left behind.
struct ProcessRun {
    bool finished = false; // ran to its end by itself, in time
    int status = -1;
    QString out;
    QString err;
};

// A temporary home shared by a store in the test (the real writer on its own thread, the
// real monitor with its real directory watch, a manual clock and scheduler) and real second
// processes: the test writer and the hueshelf binary, both pointed at that home through
// HOME and XDG_CONFIG_HOME. The manual clock starts years before the system clock, so each
// of the other processes' writes is later than anything the store stamped, unless a test
// moves the clock on purpose.
class OtherProcessFixture : public PersistenceFixture {
protected:
    static inline const QString kForeignKey = QStringLiteral("helperState");

    void TearDown() override {
        // The writer first: its last completions still reach the store.
        writer.reset();
        monitor.reset();
        store.reset();
    }

    QProcessEnvironment processEnvironment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), home.path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + u"/.config");
        env.insert(QStringLiteral("XDG_DATA_HOME"), home.path() + u"/.local/share");
        env.remove(StorageLocations::isolationVariable);
        // Neither process may need a display.
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform"));
        return env;
    }

    ProcessRun runProcess(const QString& program, const QStringList& arguments) const {
        QProcess process;
        process.setProcessEnvironment(processEnvironment());
        process.start(program, arguments);
        ProcessRun run;
        if (!process.waitForStarted(10'000))
            return run;
        if (!process.waitForFinished(20'000)) {
            process.kill();
            process.waitForFinished(5'000);
            return run;
        }
        run.finished = process.exitStatus() == QProcess::NormalExit;
        run.status = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    // One scripted edit by the test writer; true when it ran and succeeded.
    bool otherProcess(const QStringList& arguments, QString* out = nullptr) const {
        const ProcessRun run = runProcess(QStringLiteral(HUESHELF_TEST_WRITER), arguments);
        if (out)
            *out = run.out.trimmed();
        return run.finished && run.status == 0;
    }

    ProcessRun hueshelf(const QStringList& arguments) const {
        return runProcess(QStringLiteral(HUESHELF_BINARY), arguments);
    }

    // The file as another process of the product left it, with a key of its own.
    void seed(const QList<ColorTemplate>& templates, const QUuid& active) {
        QJsonObject object = preferencesObject(templates, active, kStart - 60'000.0);
        object.insert(kForeignKey, QJsonObject{{QStringLiteral("keep"), true}});
        ASSERT_TRUE(writeFile(object));
    }

    // The store as the bar opens it: the load at start, then the writer.
    void openStore() {
        store = std::make_unique<ColorStorage>(
            clock, scheduler, TemplateLoader::loadAtStart(locations, *settings, clock));
        writer = std::make_unique<PreferencesWriter>(prefsPath(), *settings);
        store->setWriter(writer.get());
    }

    // ... and its monitor, past the start-up poll, so that only the directory watch is left.
    void openMonitor() {
        monitor = std::make_unique<ExternalChangeMonitor>(*store, clock, scheduler, prefsPath(),
                                                          locations.prefsDir);
        monitor->start();
        monitor->endStartupPoll();
    }

    void saveAndWait() {
        store->saveTemplates();
        writer->drain();
    }

    // The real watch sees the other process's write; the debounce then runs out by hand.
    bool noticeOutsideWrite() {
        if (!spinUntil([&] { return monitor->isCheckPending(); }))
            return false;
        scheduler.advance(ExternalChangeMonitor::externalChangeDebounceSeconds);
        return true;
    }

    double fileStamp() const {
        return readPreferences().value(PreferencesKeys::lastModified).toDouble();
    }
    QString fileActiveId() const {
        return readPreferences().value(PreferencesKeys::activeTemplateId).toString();
    }

    std::optional<ColorTemplate> inFile(const QUuid& id) const {
        for (const ColorTemplate& palette : templatesInFile()) {
            if (palette.id == id)
                return palette;
        }
        return std::nullopt;
    }

    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<ExternalChangeMonitor> monitor;
    // Last, so it goes first.
    std::unique_ptr<PreferencesWriter> writer;
};

// Ids and stored hashes in order: what two lists must share to hold the same palettes.
inline QStringList signaturesOf(const QList<ColorTemplate>& templates) {
    QStringList signatures;
    for (const ColorTemplate& palette : templates)
        signatures << uuidText(palette.id) + u'|' + palette.contentHash;
    return signatures;
}

} // namespace hueshelf::testing
