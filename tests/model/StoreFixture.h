#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ModelTestSupport.h"
#include "model/ColorStorage.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace hueshelf::testing {

// A store on a manual clock and scheduler, with a fake writer that records every save.
class StoreFixture : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    void start(const QList<ColorTemplate>& templates, std::optional<QUuid> active = std::nullopt,
               bool withWriter = true) {
        LoadedTemplates load;
        load.templates = templates;
        load.activeTemplateId =
            active.value_or(templates.isEmpty() ? QUuid() : templates.constFirst().id);
        load.baselineStamp = 55.0;
        store = std::make_unique<ColorStorage>(clock, scheduler, load);
        if (withWriter)
            store->setWriter(&writer);
        QObject::connect(store.get(), &ColorStorage::announced,
                         [this](const QString& message, const QString& icon) {
                             announcements.emplace_back(message, icon);
                         });
        QObject::connect(store.get(), &ColorStorage::templatesChanged,
                         [this] { ++templatesChangedCount; });
    }

    // The usual test palette: A B C D, all unlocked.
    static ColorTemplate abcd(const QString& name = QStringLiteral("Letters")) {
        return makePalette(name, {makeColor(QStringLiteral("A"), QStringLiteral("#111111")),
                                  makeColor(QStringLiteral("B"), QStringLiteral("#222222")),
                                  makeColor(QStringLiteral("C"), QStringLiteral("#333333")),
                                  makeColor(QStringLiteral("D"), QStringLiteral("#444444"))});
    }

    ColorTemplate active() const { return store->activeTemplate().value(); }
    std::size_t saves() const { return writer.requests.size(); }

    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    FakeTemplateWriter writer;
    std::unique_ptr<ColorStorage> store;
    std::vector<std::pair<QString, QString>> announcements;
    int templatesChangedCount = 0;
};

} // namespace hueshelf::testing
