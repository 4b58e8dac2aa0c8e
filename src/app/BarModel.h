#pragma once

#include "app/BarDropHandler.h"
#include "app/BarEyedropper.h"
#include "app/BarLayout.h"
#include "app/BarSwatch.h"
#include "app/OverflowHoverMachine.h"
#include "app/SwatchActions.h"
#include "app/SyncStatusCard.h"
#include "color/ColorVisionSimulation.h"
#include "sync/SyncStatus.h"
#include "util/Clock.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

class QSettings;

namespace hueshelf {
class ColorStorage;
class Platform;
class RecentColorsManager;
class SyncManager;
} // namespace hueshelf

namespace hueshelf::app {

class BarTooltipController;
class ToastManager;

// What the bar shows and what its controls do, without any widget: the active palette as plain
// records, the tools' states and words, and the parts that hold the bar's rules (the swatches'
// gestures, the overflow's hover machine, drops and the eyedropper).
class BarModel final : public QObject {
    Q_OBJECT
public:
    // A new colour's editor opens this long after the colour arrives, so that its swatch is
    // there to point at.
    static constexpr double newColorEditorDelay = 0.15;

    // What the swatches' gestures need, and, optional from here on, the rest of the bar's
    // helpers: the bar works without them, with less.
    struct Services : SwatchActions::Services {
        BarTooltipController* tooltips = nullptr;
        SyncManager* sync = nullptr;
        std::function<void()> syncNow = {};
        std::function<bool()> reduceMotion = {};
        // The exchange's import with its toasts (and its alert on failure).
        std::function<void(const QString& path, bool isOneOfSeveral)> importFile = {};
        std::function<void(const QString& path)> extractImage = {};
        // "Now" for the saved file's date and the sync card; the system's clock when unset.
        Clock* clock = nullptr;
    };

    explicit BarModel(const Services& services, QObject* parent = nullptr);
    ~BarModel() override;

    // The active palette's name, or "Select" while no palette is active.
    QString paletteName() const;
    bool hasActivePalette() const;
    bool isLocked() const;
    // Every colour of the active palette, drawn through the lens.
    QList<BarSwatch> swatches() const;
    QList<ColorItem> colors() const;
    int visibleCount() const;
    int overflowCount() const;
    int barWidth(const BarLayout::TextWidth& width) const;

    ColorVisionSimulation::SimulationType lens() const { return m_lens; }
    void setLens(ColorVisionSimulation::SimulationType lens);
    QString lensTooltip() const;

    int issueCount() const { return m_issueCount; }
    QString checkLabel() const;

    bool syncEnabled() const;
    SyncStatus::Kind syncKind() const;
    std::optional<double> lastSyncTime() const;
    // The sync button's tooltip card, with how long ago the last sync was by the bar's clock.
    SyncStatusCard syncCard() const;
    void syncNow();

    // One row of the lens menu: "Off", or a vision type followed by its technical name.
    struct LensRow {
        ColorVisionSimulation::SimulationType type;
        QString label;
        bool isCurrent = false;
    };
    QList<LensRow> lensRows() const;
    // The lens button's symbol: the eye filled while a lens is in force.
    QString lensSymbol() const;

    // The palette as a link on the clipboard, and the outcome said next to `anchor`.
    void share(const std::optional<QRect>& anchor);
    // Writes the active palette to `path` (its extension made ".hueshelf") and says so next to
    // `anchor`; answers the failure's text for the alert.
    std::optional<QString> saveActivePalette(const QString& path,
                                             const std::optional<QRect>& anchor);
    // What the save panel's name field starts with.
    QString suggestedFileName() const;

    void toggleLock();
    void addColor();
    // The colour from the eyedropper; one that lands beyond the bar opens the list for it.
    void addPickedColor(const QString& hex);

    bool reduceMotion() const;
    const Clock& clock() const;

    SwatchActions& swatchActions() { return *m_swatchActions; }
    OverflowHoverMachine& hover() { return *m_hover; }
    BarDropHandler& drops() { return *m_drops; }
    BarEyedropper& eyedropper() { return *m_eyedropper; }

Q_SIGNALS:
    // The palette, its name, lock or colours, the lens or sync changed; the bar redraws.
    void changed();
    // The swatch of this colour opens its editor.
    void editorRequested(const QUuid& colorId);
    // A refused drop: the bar shakes.
    void shakeRequested();

private:
    void storeChanged();
    void showToast(const std::optional<QRect>& anchor, const QString& message, const QString& icon,
                   double seconds);
    void colorAwaitingEditChanged();

    Services m_services;
    ColorVisionSimulation::SimulationType m_lens = ColorVisionSimulation::SimulationType::normal;
    int m_issueCount = 0;
    std::unique_ptr<SwatchActions> m_swatchActions;
    std::unique_ptr<OverflowHoverMachine> m_hover;
    std::unique_ptr<BarDropHandler> m_drops;
    std::unique_ptr<BarEyedropper> m_eyedropper;
    TaskHandle m_editorWork;
};

} // namespace hueshelf::app
