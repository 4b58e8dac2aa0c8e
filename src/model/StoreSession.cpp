#include "model/StoreSession.h"

#include "model/PreferencesKeys.h"
#include "model/SettingsStore.h"
#include "model/TemplateLoader.h"
#include "util/Clock.h"

#include <QFileInfo>

namespace hueshelf {

namespace {

std::optional<QProcessEnvironment>& environmentOverride() {
    static std::optional<QProcessEnvironment> env;
    return env;
}

// The application object lives as long as the session, and only a writing session needs one.
std::unique_ptr<QCoreApplication> applicationFor(StoreSession::Access access) {
    if (access == StoreSession::Access::readOnly || QCoreApplication::instance())
        return nullptr;
    static int argc = 1;
    static char name[] = "hueshelf";
    static char* argv[] = {name, nullptr};
    return std::make_unique<QCoreApplication>(argc, argv);
}

// A read-only look must not leave so much as an empty directory behind, so it opens the
// settings file where it is, or reads nothing when there is none. An isolated run's settings
// are its own and start empty either way.
std::unique_ptr<QSettings> openSettings(const StorageLocations& locations,
                                        StoreSession::Access access) {
    if (access == StoreSession::Access::readWrite || locations.isIsolated)
        return SettingsStore::open(locations);
    return std::make_unique<QSettings>(locations.settingsFile, QSettings::IniFormat);
}

// The load at start without its one write: where the migration would copy the old file into
// place, read the old file instead. The next session that writes does the migration itself.
LoadedTemplates loadWithoutWriting(const StorageLocations& locations, const QSettings& settings,
                                   const Clock& clock) {
    const bool migrationWouldCopy = !locations.isIsolated &&
                                    !settings.value(PreferencesKeys::didMigrate, false).toBool() &&
                                    !QFileInfo::exists(locations.preferencesFile) &&
                                    QFileInfo::exists(locations.oldPreferencesFile);
    return TemplateLoader::load(migrationWouldCopy ? locations.oldPreferencesFile
                                                   : locations.preferencesFile,
                                settings, clock);
}

} // namespace

StoreSession::StoreSession(Access access)
    : StoreSession(access, AppPaths::fromEnvironment(environment()), environment()) {}

StoreSession::StoreSession(Access access, const AppPaths& paths, const QProcessEnvironment& env)
    : m_access(access), m_ownApplication(applicationFor(access)),
      m_locations(StorageLocations::resolve(paths, env)),
      m_settings(openSettings(m_locations, access)) {
    Clock& clock = SystemClock::instance();
    LoadedTemplates loaded = access == Access::readWrite
                                 ? TemplateLoader::loadAtStart(m_locations, *m_settings, clock)
                                 : loadWithoutWriting(m_locations, *m_settings, clock);
    m_storage = std::make_unique<ColorStorage>(clock, m_scheduler, std::move(loaded));
    if (access == Access::readWrite) {
        m_writer = std::make_unique<PreferencesWriter>(m_locations.preferencesFile, *m_settings);
        m_storage->setWriter(m_writer.get());
    }
}

StoreSession::~StoreSession() {
    close();
    // The writer goes before the store it completes into, and both before the application.
    m_writer.reset();
    m_storage.reset();
}

QProcessEnvironment StoreSession::environment() {
    return environmentOverride().value_or(QProcessEnvironment::systemEnvironment());
}

void StoreSession::overrideEnvironment(std::optional<QProcessEnvironment> env) {
    environmentOverride() = std::move(env);
}

void StoreSession::close() {
    if (!m_writer)
        return;
    m_writer->drain();
    m_settings->sync();
}

} // namespace hueshelf
