#pragma once

#include "model/ColorStorage.h"
#include "model/PreferencesWriter.h"
#include "model/StorageLocations.h"
#include "util/AppPaths.h"
#include "util/QtScheduler.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QSettings>

#include <memory>
#include <optional>

namespace hueshelf {

// A short stay with the palette store, for a command of the command line or for one request to
// a companion program (the MCP server, the browser helper). It opens the store exactly as the
// bar does (the locations from HOME and XDG_CONFIG_HOME, the settings, the load at start, the
// store, the writer on its own thread), so what a command saves goes through the same
// read-merge-write as the bar's saves, and a running bar takes it in as an outside write.
//
// A read-only session loads and nothing else: it has no writer, creates no directory, and
// leaves even the migration's copy and marker to the next session that writes (it reads the
// old file where the migration would have copied it). A read-write session runs the bar's
// sequence; close() waits until every save has reached the file, then synchronises the
// settings. The writer's thread needs an application object: a read-write session makes one
// for its own lifetime when the process has none, so commands that never touch the store
// stay free of it.
//
// Made, used and destroyed on one thread, the one that becomes the main thread.
class StoreSession {
public:
    enum class Access {
        readOnly,
        readWrite,
    };

    // Over the home that the environment names (see environment()).
    explicit StoreSession(Access access);
    // Over the given paths; `env` still decides whether this is an isolated (test) run.
    StoreSession(Access access, const AppPaths& paths, const QProcessEnvironment& env);
    ~StoreSession();

    StoreSession(const StoreSession&) = delete;
    StoreSession& operator=(const StoreSession&) = delete;

    // The environment that sessions read: the process's own, unless a test has put another in
    // place so that in-process commands work in a temporary home.
    static QProcessEnvironment environment();
    static void overrideEnvironment(std::optional<QProcessEnvironment> env);

    Access access() const { return m_access; }
    const StorageLocations& locations() const { return m_locations; }
    QSettings& settings() { return *m_settings; }
    ColorStorage& storage() { return *m_storage; }
    const ColorStorage& storage() const { return *m_storage; }

    // Blocks until every save handed over so far is in the file (or its fallback) and its
    // completion has run here, then synchronises the settings. Calling it again, or from the
    // destructor, does the same for whatever was saved since. A read-only session has nothing
    // to wait for and writes nothing.
    void close();

private:
    Access m_access;
    // First, so it goes last: the writer's thread and the scheduler's timers need it.
    std::unique_ptr<QCoreApplication> m_ownApplication;
    QtScheduler m_scheduler;
    StorageLocations m_locations;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ColorStorage> m_storage;
    // Last, so it goes first: its final completions still reach the store.
    std::unique_ptr<PreferencesWriter> m_writer;
};

} // namespace hueshelf
