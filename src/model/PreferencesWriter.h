#pragma once

#include "model/PreferencesWrite.h"
#include "model/TemplateWriter.h"

#include <QMutex>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QThread>

#include <deque>
#include <functional>

namespace hueshelf {

// The store's writer for a real run. All file work runs on one dedicated thread, the ioQueue,
// in the order it was handed over, so two saves in quick succession run one after the other
// and the second sees the first's file. Results come back to the thread that made the writer
// (the main thread), through its event loop or through drain().
//
// Made, used and destroyed on the main thread. Destroying it drains it first, so every
// completion has run, and every `finished` has been called, by the time it is gone.
class PreferencesWriter final : public TemplateWriter {
public:
    PreferencesWriter(QString preferencesFile, QSettings& settings);
    ~PreferencesWriter() override;

    PreferencesWriter(const PreferencesWriter&) = delete;
    PreferencesWriter& operator=(const PreferencesWriter&) = delete;

    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override;
    void writeShadowState(const QByteArray& json) override;
    void writeFallback(const QByteArray& json, const QString& activeTemplateId,
                       double nowMs) override;

    // Runs `job` on the ioQueue after everything handed over before it.
    void post(std::function<void()> job);
    // The same for a job with a result for the main thread: the step that `job` answers runs
    // here, in order with the completions of writes, and drain() waits for it like for them.
    void postThenDeliver(std::function<std::function<void()>()> job);

    // Blocks until the ioQueue has run everything queued and the completions of those writes
    // have run here, including whatever they queued in turn. For the end of the run: save,
    // drain, then synchronise the settings.
    void drain();

    const QString& preferencesFile() const { return m_preferencesFile; }

private:
    // Runs the completions the ioQueue has finished; answers whether there were any.
    bool deliverCompleted();

    const QString m_preferencesFile;
    QSettings& m_settings;

    QThread m_ioThread;
    QObject* m_ioContext = nullptr; // lives on m_ioThread, deleted as it ends
    QObject m_mainContext;

    QMutex m_completedMutex;
    std::deque<std::function<void()>> m_completed;

    // Touched on the ioQueue only.
    std::optional<OwnWrite> m_lastOwnWrite;
};

} // namespace hueshelf
