#include "app/SwatchActions.h"

#include "app/AppSettingsKeys.h"
#include "app/ToastManager.h"
#include "color/ColorUtils.h"
#include "model/ColorStorage.h"
#include "model/RecentColorsManager.h"
#include "platform/Platform.h"

#include <QSettings>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

const QString payloadPrefix = u"SWATCH-"_s;
const QString lockIcon = u"lock.fill"_s;

} // namespace

SwatchActions::SwatchActions(const Services& services, QObject* parent)
    : QObject(parent), m_services(services) {}

SwatchActions::~SwatchActions() {
    for (TaskHandle& timer : m_feedbackTimers)
        timer.cancel();
}

std::optional<QString> SwatchActions::copyColor(const QUuid& colorId,
                                                const std::optional<QRect>& anchor) {
    const auto active = m_services.storage.activeTemplate();
    if (!active)
        return std::nullopt;
    const auto color = std::find_if(active->colors.cbegin(), active->colors.cend(),
                                    [&](const ColorItem& c) { return c.id == colorId; });
    if (color == active->colors.cend())
        return std::nullopt;

    // The command line may have changed the format since this process last read the file.
    m_services.settings.sync();
    const auto format = ColorUtils::copyFormatFromIdentifier(
        m_services.settings.value(AppSettingsKeys::defaultCopyFormat).toString());
    const QString text = ColorUtils::formattedCode(color->hex, format, color->name);
    m_services.platform.setClipboardText(text);
    m_services.recentColors.record(color->hex);

    m_copiedFeedback.insert(colorId);
    Q_EMIT copiedFeedbackChanged(colorId);
    if (anchor) {
        m_services.toasts.showAnchored(*anchor, u"Copied "_s + text, u"doc.on.doc.fill"_s,
                                       ToastManager::kCopiedDuration);
    }
    // Every click has its own timer, and none cancels another: the first one due takes the
    // check mark away.
    std::erase_if(m_feedbackTimers, [](const TaskHandle& t) { return !t.isActive(); });
    m_feedbackTimers.push_back(
        m_services.scheduler.scheduleAfter(copiedFeedbackSeconds, [this, colorId] {
            if (m_copiedFeedback.remove(colorId))
                Q_EMIT copiedFeedbackChanged(colorId);
        }));
    return text;
}

QString SwatchActions::dragPayload(qsizetype index) {
    return payloadPrefix + QString::number(index);
}

bool SwatchActions::canDrag(const ColorItem& color) const {
    const auto active = m_services.storage.activeTemplate();
    if (active && active->isLocked)
        return false;
    return !color.isLocked;
}

void SwatchActions::refuse(const QString& message, const std::optional<QRect>& anchor) {
    if (anchor)
        m_services.toasts.showAnchored(*anchor, message, lockIcon, refusalSeconds);
    else
        m_services.toasts.show(message, lockIcon, std::nullopt, refusalSeconds);
}

bool SwatchActions::handleSwatchDrop(qsizetype targetIndex, const QStringList& items,
                                     const std::optional<QRect>& anchor) {
    const auto active = m_services.storage.activeTemplate();
    const QList<ColorItem> colors = active ? active->colors : QList<ColorItem>();
    // The order of these checks is what the user sees: the palette's lock speaks first, then
    // the target's, and only then is the payload read.
    if (active && active->isLocked) {
        refuse(u"Unlock this palette to move colors"_s, anchor);
        return false;
    }
    const QString colorRefusal = u"Unlock this color to move it"_s;
    if (targetIndex >= 0 && targetIndex < colors.size() && colors.at(targetIndex).isLocked) {
        refuse(colorRefusal, anchor);
        return false;
    }
    if (items.isEmpty())
        return false;
    const QString& item = items.constFirst();
    if (item.isEmpty() || item == u"LOCKED" || !item.startsWith(payloadPrefix))
        return false;
    const QStringList parts = item.split(u'-');
    bool ok = false;
    const qlonglong source = parts.size() > 1 ? parts.at(1).toLongLong(&ok, 10) : 0;
    if (!ok)
        return false;
    // A forged payload naming a locked colour is refused as a drag from it would have been.
    if (source >= 0 && source < colors.size() && colors.at(source).isLocked) {
        refuse(colorRefusal, anchor);
        return false;
    }
    if (source >= colors.size() || source == targetIndex)
        return false;
    return m_services.storage.moveColor(source, targetIndex);
}

} // namespace hueshelf::app
