#pragma once

#include "model/ColorTemplate.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QFileSystemWatcher;

namespace hueshelf {

class ColorStorage;

// Notices when another process of the product writes the shared preferences file, and folds
// its palettes into the store without losing what the user is doing here.
//
// Four roads lead to a check, all on the main thread: a short poll in the first seconds after
// start (the browser helper tends to write just then), a watch on the preferences directory
// with a debounce, a slow poll where no watch can be set up, and the closing of a swatch
// editor that held a change back. This program's own writes are told apart by the data hash
// the store keeps and by its count of pending saves.
class ExternalChangeMonitor final : public QObject {
    Q_OBJECT

public:
    static constexpr double externalChangeDebounceSeconds = 0.25;
    static constexpr double slowPollIntervalSeconds = 5.0;
    static constexpr double startupPollIntervalSeconds = 0.1;
    static constexpr int startupPollTicks = 30;

    // `preferencesDir` is the directory that holds `preferencesPath`; it is watched as a whole
    // because an atomic writer replaces the file, which would leave a watch on the file blind.
    ExternalChangeMonitor(ColorStorage& storage, Clock& clock, Scheduler& scheduler,
                          QString preferencesPath, QString preferencesDir,
                          QObject* parent = nullptr);
    ~ExternalChangeMonitor() override;

    // The start-up poll (unless it has already ended), then the directory watch or, where it
    // can't be set up, the slow poll. Calling it again starts nothing twice.
    void start();
    // The shell ends the start-up poll early once the first bar is shown.
    void endStartupPoll();
    // Cancels every timer, the pending debounce and the watch: the end of the run.
    void stop();

    // Merges what another process wrote, if it wrote anything since the last agreement.
    void checkForExternalChanges();
    // Replaces the store's list with the file's, without merging: for the wait at start, when
    // the browser helper's write is to be taken as it stands.
    void reloadFromDisk();

    // A file event in the preferences directory: (re)starts the debounce, so that a burst of
    // events ends in one check, externalChangeDebounceSeconds after the last of them.
    void preferencesDirectoryChanged();

    bool initialSyncComplete() const { return m_initialSyncComplete; }
    bool externalChangeHeldBack() const { return m_externalChangeHeldBack; }
    bool isWatchingDirectory() const { return m_preferencesWatchSource != nullptr; }
    bool isSlowPollRunning() const { return m_slowExternalChangeTimer.isActive(); }
    bool isStartupPollRunning() const { return m_externalChangeTimer.isActive(); }
    bool isCheckPending() const { return m_externalChangeDebounce.isActive(); }

private:
    struct FileState {
        QJsonObject object;
        QByteArray data; // the "colorTemplates" array, compact
        qint64 dataHash = 0;
    };

    void startStartupPoll();
    void startupPollTick();
    void startDirectoryWatch();
    void startSlowPoll();
    void editorPopoverOpenChanged();

    std::optional<FileState> readFile() const;
    void apply(const QList<ColorTemplate>& incoming, double stamp, const FileState& file);

    ColorStorage& m_storage;
    Clock& m_clock;
    Scheduler& m_scheduler;
    const QString m_preferencesPath;
    const QString m_preferencesDir;

    std::unique_ptr<QFileSystemWatcher> m_preferencesWatchSource;
    TaskHandle m_slowExternalChangeTimer;
    TaskHandle m_externalChangeTimer;
    int m_startupPollCount = 0;
    TaskHandle m_externalChangeDebounce;
    bool m_externalChangeHeldBack = false;
    bool m_initialSyncComplete = false;
};

} // namespace hueshelf
