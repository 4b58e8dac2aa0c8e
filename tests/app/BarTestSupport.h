#pragma once

#include "AppTestSupport.h"
#include "app/BarModel.h"
#include "app/BarTooltipController.h"
#include "app/ToastManager.h"
#include "model/RecentColorsManager.h"
#include "platform/fake/FakePlatform.h"

#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>

#include <utility>

namespace hueshelf::testing {

// Counts what the bar's tooltip controller puts up and takes down.
struct CountingTooltipPresenter final : app::TooltipPresenter {
    void present(const QString&, const QPoint&) override { ++shown; }
    void presentCard(const app::SyncStatusCard&, const QPoint&) override { ++shown; }
    void dismiss() override { ++dismissed; }
    int shown = 0;
    int dismissed = 0;
};

// A bar model on manual time with a fake desktop, a private settings file and a visible bar
// for the toasts; it records what the bar asked of the rest of the program.
struct BarHarness {
    explicit BarHarness(const QList<ColorTemplate>& templates, QUuid active = {})
        : store(templates, active) {
        app::BarModel::Services services{
            {*store.store, platform, settings, recent, toasts, store.scheduler}};
        services.reduceMotion = [this] { return reduceMotion; };
        services.importFile = [this](const QString& path, bool several) {
            imported.append(path + (several ? QStringLiteral(" +more") : QString()));
        };
        services.extractImage = [this](const QString& path) { extracted.append(path); };
        services.syncNow = [this] { ++syncs; };
        services.clock = &store.clock;
        services.tooltips = &tooltips;
        model = std::make_unique<app::BarModel>(services);
        QObject::connect(model.get(), &app::BarModel::shakeRequested, [this] { ++shakes; });
        QObject::connect(model.get(), &app::BarModel::editorRequested,
                         [this](const QUuid& id) { editors.append(id); });
    }

    std::optional<app::Toast> toast() const { return toasts.current(); }
    QString toastText() const { return toasts.current() ? toasts.current()->message : QString(); }
    QList<ColorItem> colors() const { return store.active().colors; }

    TestStore store;
    FakePlatform platform;
    QTemporaryDir dir;
    QSettings settings{dir.filePath(QStringLiteral("hueshelf.conf")), QSettings::IniFormat};
    RecentColorsManager recent{settings};
    app::ToastManager toasts{store.scheduler, [] {
                                 return app::ToastManager::BarState{{100, 600, 700, 44}, true};
                             }};
    CountingTooltipPresenter tooltipPresenter;
    app::BarTooltipController tooltips{store.scheduler, store.clock, tooltipPresenter,
                                       [] { return QPoint(); }};
    bool reduceMotion = false;
    QStringList imported;
    QStringList extracted;
    QList<QUuid> editors;
    int shakes = 0;
    int syncs = 0;
    std::unique_ptr<app::BarModel> model;
};

// "C0", "C1", ... with distinct codes; `locked` names the indexes whose colours are locked.
inline QList<TestColor> numberedColors(int count, const QList<int>& locked = {}) {
    QList<TestColor> colors;
    for (int i = 0; i < count; ++i) {
        colors.append({QStringLiteral("C%1").arg(i),
                       QStringLiteral("#%1%2%3")
                           .arg(i * 20 + 10, 2, 16, QChar(u'0'))
                           .arg(200 - i * 10, 2, 16, QChar(u'0'))
                           .arg(60 + i * 15, 2, 16, QChar(u'0'))
                           .toUpper(),
                       locked.contains(i)});
    }
    return colors;
}

} // namespace hueshelf::testing
