#include "app/ExtractPaletteModel.h"

#include "color/ImageColorExtractor.h"
#include "model/ColorStorage.h"
#include "model/StoreTexts.h"
#include "model/TemplateNaming.h"

namespace hueshelf::app {

ExtractPaletteModel::ExtractPaletteModel(ColorStorage& storage, Scheduler& scheduler,
                                         QObject* parent)
    : QObject(parent), m_storage(storage), m_scheduler(scheduler) {
    connect(&m_job, &ImageExtractionJob::finished, this,
            [this](const QString&, const std::optional<QStringList>& colors) { present(colors); });
}

ExtractPaletteModel::~ExtractPaletteModel() {
    m_openTask.cancel();
}

void ExtractPaletteModel::start(const QString& path) {
    m_job.start(path, ImageColorExtractor::colorsAsked);
}

void ExtractPaletteModel::present(const std::optional<QStringList>& colors) {
    if (!colors || colors->isEmpty()) {
        // The toast's 2.0 s (ExtractPaletteTexts::failureToastSeconds) is the bar's to apply.
        m_storage.announce(ExtractPaletteTexts::failureMessage, ExtractPaletteTexts::failureIcon);
        Q_EMIT extractionFinished();
        return;
    }
    m_swatches = swatchesFor(*colors);
    m_paletteName = ExtractPaletteTexts::defaultTemplateName;
    Q_EMIT changed();
    m_openTask.cancel();
    m_openTask = m_scheduler.scheduleAfter(openDelaySeconds, [this] {
        m_isOpen = true;
        Q_EMIT openRequested();
    });
    Q_EMIT extractionFinished();
}

bool ExtractPaletteModel::renameSwatch(const QUuid& id, const QString& name) {
    for (ExtractedSwatch& swatch : m_swatches) {
        if (swatch.id == id) {
            swatch.name = name;
            Q_EMIT changed();
            return true;
        }
    }
    return false;
}

void ExtractPaletteModel::setPaletteName(const QString& name) {
    m_paletteName = name;
    Q_EMIT changed();
}

bool ExtractPaletteModel::canConfirm() const {
    return !m_swatches.isEmpty() && !TemplateNaming::trimmedOfBlanks(m_paletteName).isEmpty();
}

bool ExtractPaletteModel::confirm() {
    if (!canConfirm()) {
        return false;
    }
    const ColorTemplate palette = m_storage.createTemplate(
        TemplateNaming::trimmedOfBlanks(m_paletteName), confirmedColors(m_swatches));
    close();
    m_storage.announce(StoreTexts::createdAnnouncement(palette.name), StoreTexts::generatedIcon);
    return true;
}

void ExtractPaletteModel::cancel() {
    close();
}

void ExtractPaletteModel::close() {
    m_openTask.cancel();
    m_isOpen = false;
    m_swatches.clear();
    m_paletteName.clear();
    Q_EMIT changed();
    Q_EMIT closed();
}

} // namespace hueshelf::app
