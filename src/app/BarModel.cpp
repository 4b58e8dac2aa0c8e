#include "app/BarModel.h"

#include "app/BarTooltipController.h"
#include "app/PaletteLinkShareAction.h"
#include "app/ToastManager.h"
#include "color/ColorUtils.h"
#include "color/PaletteCheck.h"
#include "exchange/PaletteFile.h"
#include "exchange/PaletteFileSave.h"
#include "exchange/PaletteFileTexts.h"
#include "model/ColorStorage.h"
#include "sync/SyncManager.h"

#include <QDateTime>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

QColor displayColorOf(const QString& hex) {
    const auto parsed = ColorUtils::parseDisplayColor(hex);
    if (!parsed)
        return QColor::fromRgbF(0.5f, 0.5f, 0.5f);
    return QColor::fromRgbF(static_cast<float>(parsed->red), static_cast<float>(parsed->green),
                            static_cast<float>(parsed->blue), static_cast<float>(parsed->alpha));
}

} // namespace

BarModel::BarModel(const Services& services, QObject* parent)
    : QObject(parent), m_services(services) {
    m_swatchActions = std::make_unique<SwatchActions>(
        SwatchActions::Services{services.storage, services.platform, services.settings,
                                services.recentColors, services.toasts, services.scheduler});
    m_hover = std::make_unique<OverflowHoverMachine>(
        services.scheduler, [this] { return colors(); },
        [tooltips = services.tooltips](bool suppressed) {
            if (!tooltips)
                return;
            tooltips->setSuppressed(suppressed);
            if (suppressed)
                tooltips->hide();
        });
    m_drops = std::make_unique<BarDropHandler>(
        services.toasts, BarDropHandler::Actions{services.importFile, services.extractImage,
                                                 [this] { return reduceMotion(); },
                                                 [this] { Q_EMIT shakeRequested(); }});
    m_eyedropper = std::make_unique<BarEyedropper>(
        services.platform, services.toasts, [this](const QString& hex) { addPickedColor(hex); });

    ColorStorage& storage = m_services.storage;
    connect(&storage, &ColorStorage::templatesChanged, this, &BarModel::storeChanged);
    connect(&storage, &ColorStorage::activeTemplateIdChanged, this, &BarModel::storeChanged);
    connect(&storage, &ColorStorage::colorAwaitingEditChanged, this,
            &BarModel::colorAwaitingEditChanged);
    if (SyncManager* sync = m_services.sync) {
        connect(sync, &SyncManager::isEnabledChanged, this, &BarModel::changed);
        connect(sync, &SyncManager::syncStatusChanged, this, &BarModel::changed);
    }
    storeChanged();
}

BarModel::~BarModel() {
    m_editorWork.cancel();
}

void BarModel::storeChanged() {
    // The check's count rides on the button, so it is worked out once per change, not per draw.
    m_issueCount = static_cast<int>(PaletteCheck::detect(colors()).size());
    m_eyedropper->setRefusal(isLocked() ? std::optional(BarLayout::addButtonLabel(true))
                                        : std::nullopt);
    m_hover->paletteChanged();
    Q_EMIT changed();
}

void BarModel::colorAwaitingEditChanged() {
    const std::optional<QUuid> id = m_services.storage.colorAwaitingEdit();
    if (!id)
        return;
    const QList<ColorItem> all = colors();
    if (std::none_of(all.cbegin(), all.cend(), [&](const ColorItem& c) { return c.id == *id; }))
        return;
    // The list opens first, so the swatch exists by the time its editor looks for it.
    m_hover->colorAwaitingEdit(*id);
    m_services.storage.setColorAwaitingEdit(std::nullopt);
    m_editorWork.cancel();
    m_editorWork = m_services.scheduler.scheduleAfter(newColorEditorDelay,
                                                      [this, id] { Q_EMIT editorRequested(*id); });
}

QString BarModel::paletteName() const {
    const auto active = m_services.storage.activeTemplate();
    return active ? active->name : BarLayout::noPaletteName;
}

bool BarModel::hasActivePalette() const {
    return m_services.storage.activeTemplate().has_value();
}

bool BarModel::isLocked() const {
    const auto active = m_services.storage.activeTemplate();
    return active && active->isLocked;
}

QList<ColorItem> BarModel::colors() const {
    const auto active = m_services.storage.activeTemplate();
    return active ? active->colors : QList<ColorItem>();
}

QList<BarSwatch> BarModel::swatches() const {
    QList<BarSwatch> result;
    const QList<ColorItem> all = colors();
    result.reserve(all.size());
    for (qsizetype i = 0; i < all.size(); ++i) {
        const ColorItem& color = all.at(i);
        // The lens changes only what is drawn; the record keeps the real code for copying.
        const QString drawn = m_lens == ColorVisionSimulation::SimulationType::normal
                                  ? color.hex
                                  : ColorVisionSimulation::simulated(color.hex, m_lens);
        result.append(BarSwatch{color.id, i, color.name, color.hex, displayColorOf(drawn),
                                ColorUtils::swatchLabelIsDark(drawn), color.isLocked,
                                i > 0 && color.dividerBefore, color.dividerLabel});
    }
    return result;
}

int BarModel::visibleCount() const {
    return BarLayout::visibleCount(colors().size());
}

int BarModel::overflowCount() const {
    return BarLayout::overflowCount(colors().size());
}

int BarModel::barWidth(const BarLayout::TextWidth& width) const {
    return BarLayout::barWidth(paletteName(), colors().size(), syncEnabled(), width);
}

void BarModel::setLens(ColorVisionSimulation::SimulationType lens) {
    if (lens == m_lens)
        return;
    m_lens = lens;
    Q_EMIT changed();
}

QString BarModel::lensTooltip() const {
    if (m_lens == ColorVisionSimulation::SimulationType::normal)
        return ColorVisionSimulation::lensMenuTitle();
    // The bar's button says which lens is on in the words of its accessible value.
    return ColorVisionSimulation::lensAccessibleValue(m_lens) + u" \u2014 click to change"_s;
}

QString BarModel::checkLabel() const {
    return PaletteCheck::checkButtonTooltip(m_issueCount);
}

bool BarModel::syncEnabled() const {
    return m_services.sync && m_services.sync->isEnabled();
}

SyncStatus::Kind BarModel::syncKind() const {
    return m_services.sync ? m_services.sync->syncStatus().kind : SyncStatus::Kind::disabled;
}

std::optional<double> BarModel::lastSyncTime() const {
    return m_services.sync ? m_services.sync->lastSyncTime() : std::nullopt;
}

SyncStatusCard BarModel::syncCard() const {
    return SyncStatusCard::make(syncKind(), lastSyncTime(), clock().nowMs());
}

const Clock& BarModel::clock() const {
    return m_services.clock ? *m_services.clock : SystemClock::instance();
}

void BarModel::syncNow() {
    if (m_services.syncNow)
        m_services.syncNow();
}

QList<BarModel::LensRow> BarModel::lensRows() const {
    QList<LensRow> rows;
    for (const auto type : ColorVisionSimulation::allSimulationTypes()) {
        QString label = ColorVisionSimulation::lensLabel(type);
        if (const std::optional<QString> technical = ColorVisionSimulation::technicalName(type))
            label += u"  ("_s + *technical + u')';
        rows.append(LensRow{type, label, type == m_lens});
    }
    return rows;
}

QString BarModel::lensSymbol() const {
    return m_lens == ColorVisionSimulation::SimulationType::normal ? u"eye"_s : u"eye.fill"_s;
}

void BarModel::share(const std::optional<QRect>& anchor) {
    const auto toast =
        PaletteLinkShareAction::shareActivePalette(m_services.storage, m_services.platform);
    if (toast)
        showToast(anchor, toast->message, toast->icon, toast->seconds);
}

void BarModel::showToast(const std::optional<QRect>& anchor, const QString& message,
                         const QString& icon, double seconds) {
    if (anchor)
        m_services.toasts.showAnchored(*anchor, message, icon, seconds);
    else
        m_services.toasts.show(message, icon, std::nullopt, seconds);
}

QString BarModel::suggestedFileName() const {
    return PaletteFile::saveDialogFileName(paletteName());
}

std::optional<QString> BarModel::saveActivePalette(const QString& path,
                                                   const std::optional<QRect>& anchor) {
    const auto active = m_services.storage.activeTemplate();
    if (!active)
        return std::nullopt;
    const QString target = PaletteFile::withFileExtension(path);
    if (auto failure = PaletteFile::savePaletteFile(
            target, *active, QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(clock().nowMs()))))
        return failure;
    showToast(anchor, PaletteFileTexts::savedToast, PaletteFileTexts::savedIcon,
              PaletteFileTexts::savedToastSeconds);
    return std::nullopt;
}

void BarModel::toggleLock() {
    m_services.storage.toggleActiveTemplateLock();
}

void BarModel::addColor() {
    // A locked palette takes no colour; the store refuses it quietly and the button is dimmed.
    m_services.storage.addColor();
}

void BarModel::addPickedColor(const QString& hex) {
    const std::optional<qsizetype> index = m_services.storage.addColor(hex);
    if (index && *index >= BarLayout::maxVisibleSwatches)
        m_hover->pinOpen();
}

bool BarModel::reduceMotion() const {
    return m_services.reduceMotion && m_services.reduceMotion();
}

} // namespace hueshelf::app
