#pragma once

#include "sync/SyncableSettings.h"
#include "sync/SyncableTemplate.h"

#include <variant>

namespace hueshelf {

// Two versions that a merge could not reconcile, kept for whoever may one day show them.
struct SyncConflict {
    struct TemplateModified {
        SyncableTemplate local;
        SyncableTemplate remote;
        friend bool operator==(const TemplateModified&, const TemplateModified&) = default;
    };
    // Declared for settings that travel; this version never produces it.
    struct SettingsModified {
        SyncableSettings local;
        SyncableSettings remote;
        friend bool operator==(const SettingsModified&, const SettingsModified&) = default;
    };

    std::variant<TemplateModified, SettingsModified> change;

    static SyncConflict templateModified(const SyncableTemplate& local,
                                         const SyncableTemplate& remote) {
        return {TemplateModified{local, remote}};
    }
    static SyncConflict settingsModified(const SyncableSettings& local,
                                         const SyncableSettings& remote) {
        return {SettingsModified{local, remote}};
    }

    friend bool operator==(const SyncConflict&, const SyncConflict&) = default;
};

} // namespace hueshelf
