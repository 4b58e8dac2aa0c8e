#pragma once

#include "model/ColorItem.h"
#include "util/Scheduler.h"

#include <QObject>
#include <QRect>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

class QSettings;

namespace hueshelf {
class ColorStorage;
class Platform;
class RecentColorsManager;
} // namespace hueshelf

namespace hueshelf::app {

class ToastManager;

// What a swatch's gestures do, for the bar and the overflow list alike: the click that copies,
// the drag that exchanges two colours and its refusals, and the short-lived check mark.
class SwatchActions final : public QObject {
    Q_OBJECT
public:
    static constexpr double copiedFeedbackSeconds = 0.6;
    static constexpr double refusalSeconds = 2.0;

    struct Services {
        ColorStorage& storage;
        Platform& platform;
        QSettings& settings;
        RecentColorsManager& recentColors;
        ToastManager& toasts;
        Scheduler& scheduler;
    };

    explicit SwatchActions(const Services& services, QObject* parent = nullptr);
    ~SwatchActions() override;

    // Puts the colour's code on the clipboard in the user's format, remembers the colour among
    // the recent ones and says what was copied next to `anchor`. Locks guard changes only, so
    // this works in a locked palette too. Answers the copied text.
    std::optional<QString> copyColor(const QUuid& colorId, const std::optional<QRect>& anchor);
    bool showsCopiedFeedback(const QUuid& colorId) const {
        return m_copiedFeedback.contains(colorId);
    }

    // What a dragged swatch carries; any program that takes text would get just this.
    static QString dragPayload(qsizetype index);
    // Neither a locked palette nor a locked colour lets a swatch be dragged.
    bool canDrag(const ColorItem& color) const;
    // A drop of dragged text on the swatch at `targetIndex`; answers whether it was taken.
    bool handleSwatchDrop(qsizetype targetIndex, const QStringList& items,
                          const std::optional<QRect>& anchor);

Q_SIGNALS:
    void copiedFeedbackChanged(const QUuid& colorId);

private:
    void refuse(const QString& message, const std::optional<QRect>& anchor);

    Services m_services;
    QSet<QUuid> m_copiedFeedback;
    std::vector<TaskHandle> m_feedbackTimers;
};

} // namespace hueshelf::app
