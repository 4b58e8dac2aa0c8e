// Random sessions of two or three devices over one sync folder, then quiet passes, then checks
// that the devices agree as far as the merge rules let them. Each device has its own home,
// preferences file, settings and writer thread; time is the manual clock. A device's folder
// reads wait in its writer's queue, in order with its writes, until the session lets it run, so
// passes overlap edits and saves as they do for real.
//
// The rules let devices stay apart in a few documented ways, and the checks name each one
// rather than loosen the comparison as a whole:
// - The guard against doubles skips a record whose name and set of colours (order and repeats
//   ignored) match a palette the device already has: each device keeps its own.
// - A conflict keeps the local version, and a save that completes while a pass runs doesn't
//   push: until the device saves again, its version differs from the folder's and the merge
//   keeps deciding acceptLocal. Quiet passes make no saves, so these stay.
// - The merge's narrow equality ignores colour locks, naming flags and dividers: a remote change
//   of those alone moves the shadow on but is not taken over.
// - A palette's lock is not in the content hash, so a lock change alone never travels.
// - Every push writes every palette, so a save of a device that still holds a palette
//   overwrites another device's deletion record of it and brings it back everywhere.
// - removeDuplicateTemplates removes local doubles without a deletion record; the removed
//   palette's file stays, and other devices may keep that one instead.
//
// Ids are random, so a seed fixes the operations but not every tie; a failure prints its steps.

#include "SyncTestSupport.h"
#include "model/PreferencesWriter.h"
#include "model/SettingsStore.h"
#include "model/StorageLocations.h"
#include "model/TemplateLoader.h"

#include <QProcessEnvironment>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>

namespace hueshelf::testing {
namespace {

// Name and colours as a user reads them: order and repeats count, flags don't. Sorted, it is
// what removeDuplicateTemplates compares; as a set, what the merge's guard against doubles does;
// with flags, also what the narrow equality leaves out (locks, naming flags, dividers).
enum class Colors { inOrder, sorted, asSet, withFlags };
template <typename Palette>
QString key(const Palette& p, Colors form = Colors::inOrder) {
    QStringList parts;
    for (const auto& c : p.colors)
        parts.append(
            c.name + u':' + c.hex +
            (form != Colors::withFlags
                 ? QString()
                 : QString::asprintf("%d%d%d", c.isLocked, c.isAutoNamed, c.dividerBefore) +
                       c.dividerLabel));
    if (form == Colors::sorted || form == Colors::asSet)
        parts.sort();
    if (form == Colors::asSet)
        parts.removeDuplicates();
    return p.name + (form == Colors::withFlags && p.isLocked ? u"[L]::"_s : u"::"_s) +
           parts.join(u'|');
}

// One device as the application runs it. It is its own store's writer, handing every write to
// the real one, and its folder reads wait in that writer's queue behind earlier writes. It
// witnesses what the checks at the end can no longer see: each conflict and whether its copy was
// made, and the palettes whose save completed inside a pass, so that no push followed.
class Device final : public TemplateWriter, public IoQueue {
public:
    Device(ManualClock& clock, ManualScheduler& scheduler, int number)
        : label(u"dev"_s + QString::number(number)), m_clock(clock), m_scheduler(scheduler),
          m_locations(StorageLocations::resolve(m_home.paths(), QProcessEnvironment())) {}
    ~Device() override { close(false); }

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
        store->setWriter(this);
        sync = std::make_unique<SyncManager>(m_clock, m_scheduler, *settings, label, u"1.0"_s,
                                             std::make_unique<FakeFolderWatch>());
        storeSync =
            std::make_unique<StoreSync>(*store, *sync, *this, *settings, m_clock, m_scheduler);
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
        writer.reset();
        store.reset();
        settings.reset();
    }
    void settle() { writer->drain(); }
    // Whether a palette here has this key, as a set of colours or sorted.
    bool holds(const QString& wanted, Colors form = Colors::asSet) const {
        return std::any_of(store->templates().cbegin(), store->templates().cend(),
                           [&](const ColorTemplate& p) { return key(p, form) == wanted; });
    }

    void run(Work work) override {
        writer->postThenDeliver(
            [work = std::move(work)]() -> MainThreadStep { return [work] { work()(); }; });
    }
    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        if (request.kind == SaveRequest::Kind::stamped) {
            written = [this, saved = request.templates,
                       inner = std::move(written)](const SaveOutcome& outcome) {
                for (const ColorTemplate& p : store->isSyncing() ? saved : QList<ColorTemplate>()) {
                    const auto shadow = store->shadowState().constFind(p.id);
                    if (shadow == store->shadowState().cend() ||
                        shadow->contentHash != p.contentHash)
                        pushSkipped.insert(p.id);
                }
                inner(outcome);
            };
        }
        writer->writeTemplates(request, std::move(written), std::move(finished));
    }
    void writeShadowState(const QByteArray& json) override { writer->writeShadowState(json); }
    void writeFallback(const QByteArray& json, const QString& active, double nowMs) override {
        writer->writeFallback(json, active, nowMs);
    }

    QString label;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;
    QSet<QUuid> conflictIds; // local ids that lost a merge to a conflict copy
    QSet<QUuid> pushSkipped; // changed by a save that completed inside a pass
    QStringList problems;    // found as they happened

private:
    void noteConflict(const SyncConflict::TemplateModified& versions) {
        conflictIds.insert(versions.local.id);
        // The remote version lives on as a copy under a new id and a name of its own.
        SyncableTemplate remote = versions.remote;
        remote.name += u" (Conflict)"_s;
        const bool kept = std::any_of(
            store->templates().cbegin(), store->templates().cend(), [&](const ColorTemplate& p) {
                return p.id != versions.remote.id && key(p) == key(remote);
            });
        if (!kept)
            problems.append(label + u" lost the remote side of a conflict: "_s + key(remote));
    }

    ManualClock& m_clock;
    ManualScheduler& m_scheduler;
    TempHome m_home;
    StorageLocations m_locations;
};

// Small pools, so that devices often make the same palette or rename into one another's.
const QStringList kPaletteNames = {u"Brand"_s, u"Sea"_s, u"Dusk"_s};
const QStringList kColorNames = {u"Ink"_s, u"Paper"_s, u"Moss"_s};
const QStringList kHexes = {u"#101010"_s, u"#FAFAFA"_s, u"#4A6B3A"_s, u"#003366"_s};
// Steps that leave stamps equal and steps past the echo window, the store timer and the poll.
const QList<double> kAdvances = {0.0, 0.001, 0.3, 0.5, 2.5, 10.0, 31.0};

class Session {
public:
    explicit Session(std::uint32_t seed) : m_random(seed) {}

    void run() {
        const int count = 2 + below(2);
        for (int i = 0; i < count; ++i)
            join(i);
        for (int step = 0; step < 40; ++step)
            randomStep();
        settleAll();
        quietPasses();
        check();
        for (const auto& device : m_devices) {
            findings.append(device->problems);
            tally["conflicts"] += int(device->conflictIds.size());
        }
    }

    std::map<std::string, int> tally;
    QStringList findings;
    QStringList log;

private:
    int below(qsizetype n) { return int(m_random() % std::uint32_t(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T>
    const T& pick(const QList<T>& list) {
        return list.at(below(list.size()));
    }
    void note(const Device& device, const QString& what) {
        log.append(QString::number((m_clock.nowMs() - kStartMs) / 1000.0, 'f', 3) + u"s "_s +
                   device.label + u' ' + what);
    }

    void join(int number) {
        // Devices join at the same moment or a little apart, so stamps tie or don't.
        if (number > 0 && chance(50))
            m_scheduler.advance(1.0);
        m_devices.push_back(std::make_unique<Device>(m_clock, m_scheduler, number));
        Device& device = *m_devices.back();
        // Some palettes, none, or the first-launch ones (under ids of this device's own).
        std::optional<QList<ColorTemplate>> start;
        if (const int kind = number == 0 ? 0 : below(3); kind < 2)
            start = kind == 0 ? QList{randomPalette(), randomPalette()} : QList<ColorTemplate>();
        device.open(start);
        const std::optional<SyncError> error =
            number == 0 ? device.sync->setupSync(m_shared.path(), u"Dropbox"_s)
                        : device.sync->connectToExisting(m_shared.path(), u"Dropbox"_s);
        if (error)
            findings.append(device.label + u" could not join: "_s + error->description());
        device.storeSync->start();
        settleAll();
        note(device, u"joins with "_s + namesOf(device.store->templates()).join(u", "_s));
    }

    // Mostly a few fixed recipes, so that devices often make the same palette independently.
    ColorTemplate randomPalette() {
        QList<ColorItem> colors;
        const bool recipe = chance(60);
        const int n = recipe ? below(3) : 1 + below(3);
        for (int i = 0; i < (recipe ? n + 1 : n); ++i)
            colors.append(recipe ? ColorItem::make(kColorNames.at(i), kHexes.at((n + i) % 4), false)
                                 : ColorItem::make(pick(kColorNames), pick(kHexes), false));
        return ColorTemplate::makeNew(recipe ? kPaletteNames.at(n) : pick(kPaletteNames), colors,
                                      m_clock.nowMs());
    }

    void settleAll() {
        // Deferred steps may start reads, and merges may start writes: a few rounds.
        for (int round = 0; round < 3; ++round) {
            m_scheduler.runDue();
            for (auto& device : m_devices)
                device->settle();
        }
    }

    void randomStep() {
        Device& device = *m_devices.at(std::size_t(below(qsizetype(m_devices.size()))));
        const int roll = below(100);
        if (roll < 7) {
            const ColorTemplate made = randomPalette();
            note(device, u"adds "_s + key(device.store->createTemplate(made.name, made.colors)));
        } else if (roll < 50) {
            editPalette(device);
        } else if (roll < 58) {
            deletePalette(device);
        } else if (roll < 60) {
            // Quit and launch again: palettes, shadow and pending ids come back from the files.
            note(device, u"quits and starts again"_s);
            device.close(true);
            device.open(std::nullopt);
            device.storeSync->start();
        } else if (roll < 64 && !device.sync->recentlyDeletedTemplates().isEmpty()) {
            const SyncableTemplate record = pick(device.sync->recentlyDeletedTemplates());
            tally["restores"] += !device.sync->restoreTemplate(record.id);
            note(device, u"restores "_s + record.name);
        } else if (roll >= 64 && roll < 86) {
            note(device, roll < 72 ? u"pulls"_s : roll < 78 ? u"full sync"_s : u"settles"_s);
            roll < 72   ? device.storeSync->pullFromCloud()
            : roll < 78 ? device.storeSync->fullSync()
                        : device.settle();
        } else if (roll >= 86) {
            const double seconds = pick(kAdvances);
            log.append(u"clock +"_s + QString::number(seconds));
            m_scheduler.advance(seconds); // polls and store timers queue pulls on the way
        }
        // Often, but not always, the device's reads and writes complete before the next step.
        if (chance(55))
            device.settle();
        else if (chance(20))
            settleAll();
    }

    // An edit as the bar makes it: the palette is selected first (which saves), then changed
    // through the store's guarded operations. Some change only what the narrow equality or the
    // content hash leaves out: a naming flag, a lock, a divider.
    void editPalette(Device& device) {
        if (device.store->templates().isEmpty())
            return;
        const ColorTemplate target = pick(device.store->templates());
        if (target.colors.isEmpty())
            return;
        if (device.store->activeTemplateId() != target.id)
            device.store->selectTemplate(target.id);
        ColorStorage& store = *device.store;
        const int at = below(target.colors.size());
        const ColorItem color = target.colors.at(at);
        const int op = below(9);
        bool done = true;
        if (op == 0) {
            done = store.addColor(pick(kHexes)).has_value();
        } else if (op <= 2) { // name, code, both, or only the naming flag
            const int mode = below(4);
            const QString name = mode == 1 ? color.name : pick(kColorNames);
            const QString hex = mode == 0 ? color.hex : pick(kHexes);
            done = store.updateColor(color.id, mode == 3 ? color.name : name,
                                     mode == 3 ? color.hex : hex,
                                     mode == 3 ? !color.isAutoNamed : color.isAutoNamed);
            if (done)
                store.saveTemplates();
        } else if (op == 3) {
            done = store.moveColor(at, below(target.colors.size()));
        } else if (op == 4) {
            done = !store.deleteColorRefusal(color.id) && store.deleteColor(color.id);
        } else if (op == 5) { // names aren't unique: one another palette has is fine
            const QString name = chance(50) ? pick(kPaletteNames) : pick(store.templates()).name;
            store.renameActiveTemplate(name);
            done = store.activeTemplate() && store.activeTemplate()->name == name;
        } else if (op == 6) {
            store.toggleActiveTemplateLock();
        } else if (op == 7) {
            done = store.setColorLocked(color.id, !color.isLocked);
        } else {
            const QString label = below(2) == 1 ? u"Dark"_s : QString();
            done = !target.isLocked && store.editTemplate(target.id, [&](ColorTemplate& p) {
                p.colors[at].dividerBefore = !p.colors[at].dividerBefore;
                p.colors[at].dividerLabel = p.colors[at].dividerBefore ? label : QString();
            });
            if (!target.isLocked)
                store.saveTemplates();
        }
        note(device, u"'"_s + target.name + u"' edit "_s + QString::number(op) +
                         (done ? u""_s : u" (refused)"_s));
    }

    void deletePalette(Device& device) {
        if (device.store->templates().isEmpty())
            return;
        const ColorTemplate target = pick(device.store->templates());
        const qsizetype before = device.sync->recentlyDeletedTemplates().size();
        const bool done = device.store->confirmDeleteTemplate(target.id);
        const bool recorded = device.sync->recentlyDeletedTemplates().size() > before;
        tally["deletion records"] += recorded;
        note(device, u"deletes '"_s + target.name + (done ? u"'"_s : u"' (refused)"_s) +
                         (recorded ? u", record written"_s : u""_s));
    }

    QList<SyncableTemplate> readFolder() const {
        return SyncFolder::readTemplatesFolder(SyncFolder::templatesFolderPath(
            QDir(m_shared.path()).filePath(SyncFolder::folderName)));
    }

    // Everything a device shows or decides by, and the folder.
    QStringList fingerprint() const {
        QStringList lines;
        for (const auto& device : m_devices) {
            for (const ColorTemplate& p : device->store->templates())
                lines.append(device->label + uuidText(p.id) + key(p, Colors::withFlags));
            for (auto it = device->store->shadowState().cbegin();
                 it != device->store->shadowState().cend(); ++it)
                lines.append(device->label + uuidText(it.key()) + it->contentHash);
        }
        for (const SyncableTemplate& record : readFolder())
            lines.append(uuidText(record.id) + record.contentHash +
                         (record.deleted ? u"x"_s : u""_s));
        lines.sort();
        return lines;
    }

    // Full syncs and pulls on every device, without a single edit or save, until a whole round
    // in which no pass changed anything.
    void quietPasses() {
        for (int round = 0; round < 8; ++round) {
            const QStringList before = fingerprint();
            bool changed = false;
            for (const bool full : {true, false}) {
                for (auto& device : m_devices) {
                    full ? device->storeSync->fullSync() : device->storeSync->pullFromCloud();
                    device->settle();
                    changed = changed || fingerprint() != before;
                }
            }
            if (!changed)
                return;
        }
        findings.append(u"still changing after 8 quiet rounds"_s);
    }

    void check() {
        QHash<QUuid, SyncableTemplate> folder;
        for (const SyncableTemplate& record : readFolder())
            folder.insert(record.id, record);
        for (const auto& device : m_devices)
            checkDevice(*device, folder);
        for (const SyncableTemplate& record : std::as_const(folder))
            checkRecordReachedEveryone(record);
    }

    // Each palette either matches its file, or the merge rule, applied with the device's
    // shadow, keeps the local version against that file; a deletion record is honoured by all.
    void checkDevice(const Device& device, const QHash<QUuid, SyncableTemplate>& folder) {
        QSet<QUuid> ids;
        QSet<QString> doubles;
        for (const ColorTemplate& palette : device.store->templates()) {
            const QString who = device.label + u" '"_s + palette.name + u"' "_s;
            if (ids.contains(palette.id))
                findings.append(who + u"holds one id twice"_s);
            // The last full sync removed every double, and a pull's guard adds none.
            if (doubles.contains(key(palette, Colors::sorted)))
                findings.append(who + u"has a double the quiet full syncs left"_s);
            if (palette.contentHash != computeContentHash(palette.name, palette.colors))
                findings.append(who + u"carries a stale content hash"_s);
            ids.insert(palette.id);
            doubles.insert(key(palette, Colors::sorted));

            const auto found = folder.constFind(palette.id);
            if (found == folder.cend()) {
                findings.append(who + u"never reached the folder"_s);
                continue;
            }
            if (found->deleted) {
                findings.append(who + u"survives its deletion record"_s);
                continue;
            }
            if (palette.contentHash == found->contentHash) {
                if (key(palette) != key(*found))
                    findings.append(who + u"matches its file's hash but not its content"_s);
                tally["left apart: palette lock not travelled"] +=
                    palette.isLocked != found->isLocked;
                continue;
            }
            // The merge's verdict, read off the rule rather than asked of the engine.
            const auto shadow = device.store->shadowState().constFind(palette.id);
            const bool agreed = shadow != device.store->shadowState().cend();
            const bool keepsLocal = agreed ? shadow->contentHash != palette.contentHash &&
                                                 shadow->contentHash == found->contentHash
                                           : found->lastModified < palette.updatedAt;
            if (!keepsLocal) {
                findings.append(who + u"differs from its file, and the merge would not keep it"_s);
            } else if (key(palette) == key(*found)) {
                ++tally["left apart: colour flags not taken over"];
            } else if (device.conflictIds.contains(palette.id)) {
                ++tally["left apart: local kept after a conflict"];
            } else if (device.pushSkipped.contains(palette.id)) {
                ++tally["left apart: saved inside a pass"];
            } else {
                // Every save pushes, a restart saves, and the folder never goes away here.
                findings.append(who + u"holds a version no push has written: "_s + key(palette) +
                                u" vs file "_s + key(*found));
            }
        }
    }

    // A live file that a device doesn't hold must be one its guard against doubles skips.
    void checkRecordReachedEveryone(const SyncableTemplate& record) {
        if (record.deleted)
            return;
        for (const auto& device : m_devices) {
            const auto& all = device->store->templates();
            if (std::any_of(all.cbegin(), all.cend(),
                            [&](const auto& p) { return p.id == record.id; }))
                continue;
            if (device->holds(key(record, Colors::asSet)))
                ++tally["left apart: guard keeps both"];
            else
                findings.append(device->label + u" lacks "_s + key(record) +
                                u" and has nothing the guard against doubles would match"_s);
        }
    }

    static constexpr double kStartMs = 1'700'000'000'000.0;
    std::mt19937 m_random; // a fixed engine and plain modulo: a seed means the same everywhere
    ManualClock m_clock{kStartMs};
    ManualScheduler m_scheduler{m_clock};
    // Every push rewrites every file with a sync to disk: in memory where the machine has it.
    QTemporaryDir m_shared{
        (QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm"_s : QDir::tempPath()) +
        u"/hueshelf-convergence-XXXXXX"_s};
    std::vector<std::unique_ptr<Device>> m_devices;
};

TEST(SyncConvergence, RandomSessionsSettleAsTheMergeRulesAllow) {
    ensureCoreApplication();
    std::map<std::string, int> total;
    for (std::uint32_t seed = 1; seed <= 30; ++seed) {
        Session session(seed);
        session.run();
        for (const auto& [name, value] : session.tally)
            total[name] += value;
        EXPECT_TRUE(session.findings.isEmpty())
            << "seed " << seed << ":\n  " << session.findings.join(u"\n  "_s).toStdString()
            << "\nsteps:\n  " << session.log.join(u"\n  "_s).toStdString();
    }
    for (const auto& [name, value] : total)
        std::cout << "[total] " << name << ": " << value << '\n';
    // The runs reached what they are about, or their silence would prove nothing.
    for (const char* seen :
         {"conflicts", "deletion records", "restores", "left apart: guard keeps both"})
        EXPECT_GT(total[seen], 0) << seen;
}

} // namespace
} // namespace hueshelf::testing
