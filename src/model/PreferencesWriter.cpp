#include "model/PreferencesWriter.h"

#include "model/PreferencesWrite.h"
#include "model/SettingsStore.h"

#include <QMetaObject>
#include <QMutexLocker>

#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

PreferencesWriter::PreferencesWriter(QString preferencesFile, QSettings& settings)
    : m_preferencesFile(std::move(preferencesFile)), m_settings(settings) {
    m_ioThread.setObjectName(u"com.hueshelf.storage.io"_s);
    m_ioContext = new QObject;
    m_ioContext->moveToThread(&m_ioThread);
    QObject::connect(&m_ioThread, &QThread::finished, m_ioContext, &QObject::deleteLater);
    m_ioThread.start(QThread::LowPriority);
}

PreferencesWriter::~PreferencesWriter() {
    drain();
    m_ioThread.quit();
    m_ioThread.wait();
}

void PreferencesWriter::post(std::function<void()> job) {
    QMetaObject::invokeMethod(m_ioContext, std::move(job), Qt::QueuedConnection);
}

void PreferencesWriter::writeTemplates(const SaveRequest& request, Written written,
                                       Finished finished) {
    post([this, request, written = std::move(written), finished = std::move(finished)] {
        const SaveOutcome outcome = writePreferences(m_preferencesFile, request, m_lastOwnWrite);
        {
            const QMutexLocker locker(&m_completedMutex);
            m_completed.push_back([this, written, finished, outcome] {
                written(outcome);
                // Through the ioQueue, so the count of pending saves stays above zero until
                // any write queued behind this one has run too.
                post(finished);
            });
        }
        QMetaObject::invokeMethod(
            &m_mainContext, [this] { deliverCompleted(); }, Qt::QueuedConnection);
    });
}

void PreferencesWriter::postThenDeliver(std::function<std::function<void()>()> job) {
    post([this, job = std::move(job)] {
        std::function<void()> step = job();
        {
            const QMutexLocker locker(&m_completedMutex);
            m_completed.push_back(std::move(step));
        }
        QMetaObject::invokeMethod(
            &m_mainContext, [this] { deliverCompleted(); }, Qt::QueuedConnection);
    });
}

bool PreferencesWriter::deliverCompleted() {
    bool delivered = false;
    for (;;) {
        std::function<void()> next;
        {
            const QMutexLocker locker(&m_completedMutex);
            if (m_completed.empty())
                break;
            next = std::move(m_completed.front());
            m_completed.pop_front();
        }
        next();
        delivered = true;
    }
    return delivered;
}

void PreferencesWriter::drain() {
    do {
        // The empty synchronous block: everything queued before it has run once it returns.
        QMetaObject::invokeMethod(
            m_ioContext, [] {}, Qt::BlockingQueuedConnection);
    } while (deliverCompleted());
}

void PreferencesWriter::writeShadowState(const QByteArray& json) {
    SettingsStore::storeShadowState(m_settings, json);
}

void PreferencesWriter::writeFallback(const QByteArray& json, const QString& activeTemplateId,
                                      double nowMs) {
    SettingsStore::storeTemplates(m_settings, json, activeTemplateId, nowMs);
}

} // namespace hueshelf
