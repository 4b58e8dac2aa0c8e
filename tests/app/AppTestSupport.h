#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "model/ColorStorage.h"

#include <QApplication>
#include <QList>
#include <QString>

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace hueshelf::testing {

inline ColorTemplate palette(const QString& name,
                             std::initializer_list<std::pair<QString, QString>> colors) {
    QList<ColorItem> items;
    for (const auto& [colorName, hex] : colors)
        items.append(ColorItem::make(colorName, hex, false));
    return ColorTemplate::makeNew(name, items, 1'700'000'000'000.0);
}

// A toast that code without a view asked the store for.
struct Announcement {
    QString message;
    QString icon;
    friend bool operator==(const Announcement&, const Announcement&) = default;
};

// A store on manual time without a writer: saves stop once they have stamped. It keeps the
// toasts it was asked for.
struct TestStore {
    explicit TestStore(const QList<ColorTemplate>& templates, QUuid active = {}) {
        LoadedTemplates loaded;
        loaded.templates = templates;
        loaded.activeTemplateId =
            !active.isNull() || templates.isEmpty() ? active : templates.constFirst().id;
        store = std::make_unique<ColorStorage>(clock, scheduler, loaded);
        QObject::connect(store.get(), &ColorStorage::announced,
                         [this](const QString& message, const QString& icon) {
                             announcements.push_back({message, icon});
                         });
    }

    ManualClock clock;
    ManualScheduler scheduler{clock};
    std::unique_ptr<ColorStorage> store;
    std::vector<Announcement> announcements;
};

// Widget cases need one application object for the whole test program; it is never destroyed
// so that no widget outlives it.
inline void ensureApplication() {
    if (QApplication::instance())
        return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "hueshelf_app_tests";
    static char* argv[] = {name, nullptr};
    static auto* application = new QApplication(argc, argv);
    Q_UNUSED(application);
}

} // namespace hueshelf::testing
