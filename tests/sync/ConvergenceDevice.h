#pragma once

#include "SyncEngineTestSupport.h"
#include "model/ContentHash.h"
#include "model/PreferencesWriter.h"
#include "model/SettingsStore.h"
#include "model/StorageLocations.h"
#include "model/TemplateLoader.h"
#include "model/TemplateWriter.h"

#include <QProcessEnvironment>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace hueshelf::testing {

// Name and colours as a user reads them: order and repeats count, flags don't.
template <typename Color>
QString contentKey(const QString& name, const QList<Color>& colors) {
    QStringList parts;
    for (const Color& color : colors)
        parts.append(color.name + u':' + color.hex);
    return name + u"::"_s + parts.join(u'|');
}

// What the merge's guard against doubles compares: the name and the set of colours.
template <typename Color>
QString guardKey(const QString& name, const QList<Color>& colors) {
    QStringList parts;
    for (const Color& color : colors)
        parts.append(color.name + u':' + color.hex);
    parts.sort();
    parts.removeDuplicates();
    return name + u"::"_s + parts.join(u'|');
}

// What removeDuplicateTemplates compares: sorted, repeats counted.
inline QString duplicateKey(const ColorTemplate& palette) {
    QStringList parts;
    for (const ColorItem& color : palette.colors)
        parts.append(color.name + u':' + color.hex);
    parts.sort();
    return palette.name + u"::"_s + parts.join(u'|');
}

// What the narrow equality leaves out: the palette lock and each colour's flags and divider.
inline QString flagsKey(const ColorTemplate& palette) {
    QString key = palette.isLocked ? u"L"_s : u"-"_s;
    for (const ColorItem& color : palette.colors)
        key += u'|' + QString::number(color.isLocked) + QString::number(color.isAutoNamed) +
               QString::number(color.dividerBefore) + color.dividerLabel;
    return key;
}

// Folder reads in their place in the writer's queue, behind every write handed over before
// them and ahead of every later one, as the application's queue runs them. The read itself
// happens as its turn is delivered to the main thread, so it never races another device's
// writes.
class InOrderReads final : public IoQueue {
public:
    explicit InOrderReads(PreferencesWriter& writer) : m_writer(writer) {}
    void run(Work work) override {
        m_writer.postThenDeliver(
            [work = std::move(work)]() -> MainThreadStep { return [work] { work()(); }; });
    }

private:
    PreferencesWriter& m_writer;
};

// The device's writer, watched: a stamped save that completes while a pass holds the list is
// not pushed, so what it changed waits in the store for the next save.
class PushWitness final : public TemplateWriter {
public:
    using Skipped = std::function<void(const QList<ColorTemplate>&)>;
    PushWitness(PreferencesWriter& writer, const ColorStorage& store, Skipped skipped)
        : m_writer(writer), m_store(store), m_skipped(std::move(skipped)) {}

    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        if (request.kind == SaveRequest::Kind::stamped) {
            written = [this, saved = request.templates,
                       inner = std::move(written)](const SaveOutcome& outcome) {
                if (m_store.isSyncing())
                    m_skipped(saved);
                inner(outcome);
            };
        }
        m_writer.writeTemplates(request, std::move(written), std::move(finished));
    }
    void writeShadowState(const QByteArray& json) override { m_writer.writeShadowState(json); }
    void writeFallback(const QByteArray& json, const QString& activeTemplateId,
                       double nowMs) override {
        m_writer.writeFallback(json, activeTemplateId, nowMs);
    }

private:
    PreferencesWriter& m_writer;
    const ColorStorage& m_store;
    Skipped m_skipped;
};

// One device of a convergence run, as the application runs it: its own home, preferences file,
// settings and writer thread, whose queue also carries the folder reads, meeting the others
// only in the shared folder. Besides starting and quitting it witnesses what the checks at the
// end can no longer see: each conflict and whether its copy was made, and the palettes whose
// save completed inside a pass.
class ConvergenceDevice {
public:
    ConvergenceDevice(ManualClock& clock, ManualScheduler& scheduler, int number)
        : label(u"dev"_s + QString::number(number)), m_clock(clock), m_scheduler(scheduler),
          m_locations(StorageLocations::resolve(m_home.paths(), QProcessEnvironment())) {}
    ~ConvergenceDevice() { close(false); }

    void open(const std::optional<QList<ColorTemplate>>& templates) {
        settings = SettingsStore::open(m_locations);
        LoadedTemplates loaded = TemplateLoader::loadAtStart(m_locations, *settings, m_clock);
        if (templates) {
            loaded.templates = *templates;
            loaded.activeTemplateId =
                templates->isEmpty() ? QUuid::createUuid() : templates->constFirst().id;
        }
        store = std::make_unique<ColorStorage>(m_clock, m_scheduler, loaded);
        writer = std::make_unique<PreferencesWriter>(m_locations.preferencesFile, *settings);
        m_witness = std::make_unique<PushWitness>(
            *writer, *store, [this](const QList<ColorTemplate>& saved) { noteSkipped(saved); });
        store->setWriter(m_witness.get());
        m_reads = std::make_unique<InOrderReads>(*writer);
        auto fakeWatch = std::make_unique<FakeFolderWatch>();
        watch = fakeWatch.get();
        sync = std::make_unique<SyncManager>(m_clock, m_scheduler, *settings, label, u"1.0"_s,
                                             std::move(fakeWatch));
        storeSync =
            std::make_unique<StoreSync>(*store, *sync, *m_reads, *settings, m_clock, m_scheduler);
        QObject::connect(store.get(), &ColorStorage::pendingConflictsChanged, [this] {
            for (const SyncConflict& conflict : store->pendingConflicts())
                noteConflict(std::get<SyncConflict::TemplateModified>(conflict.change));
        });
    }

    // As the application quits: it saves (which pushes unless a pass is still running), waits
    // for everything queued, reads included, and goes.
    void close(bool saving) {
        if (!writer)
            return;
        if (saving)
            store->saveTemplates();
        writer->drain();
        storeSync.reset();
        sync.reset();
        m_reads.reset();
        writer.reset();
        m_witness.reset();
        store.reset();
        settings->sync();
        settings.reset();
    }

    // Every write and read handed over so far, in order, with what they start in turn: merges,
    // the writes those hand over, pushes.
    void settle() { writer->drain(); }

    const ColorTemplate* palette(const QUuid& id) const {
        for (const ColorTemplate& candidate : store->templates()) {
            if (candidate.id == id)
                return &candidate;
        }
        return nullptr;
    }

    QString label;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer;
    FakeFolderWatch* watch = nullptr;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;
    int conflicts = 0;
    QSet<QUuid> conflictIds; // local ids that lost a merge to a conflict copy
    int skippedPushes = 0;
    QSet<QUuid> pushSkipped; // changed by a save that completed inside a pass
    QStringList problems;    // found as they happened

private:
    void noteConflict(const SyncConflict::TemplateModified& versions) {
        ++conflicts;
        conflictIds.insert(versions.local.id);
        // The remote version lives on as a copy under a new id and a name of its own.
        const QString copy =
            contentKey(versions.remote.name + u" (Conflict)"_s, versions.remote.colors);
        const bool kept = std::any_of(store->templates().cbegin(), store->templates().cend(),
                                      [&](const ColorTemplate& palette) {
                                          return palette.id != versions.remote.id &&
                                                 contentKey(palette.name, palette.colors) == copy;
                                      });
        if (!kept)
            problems.append(label + u" lost the remote side of a conflict: "_s + copy);
    }

    void noteSkipped(const QList<ColorTemplate>& saved) {
        ++skippedPushes;
        for (const ColorTemplate& palette : saved) {
            const auto shadow = store->shadowState().constFind(palette.id);
            if (shadow == store->shadowState().cend() || shadow->contentHash != palette.contentHash)
                pushSkipped.insert(palette.id);
        }
    }

    ManualClock& m_clock;
    ManualScheduler& m_scheduler;
    TempHome m_home;
    StorageLocations m_locations;
    std::unique_ptr<PushWitness> m_witness;
    std::unique_ptr<InOrderReads> m_reads;
};

} // namespace hueshelf::testing
