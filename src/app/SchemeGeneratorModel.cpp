#include "app/SchemeGeneratorModel.h"

#include "model/ColorStorage.h"
#include "model/StoreTexts.h"
#include "model/TemplateNaming.h"

#include <optional>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

SchemeGeneratorModel::SchemeGeneratorModel(ColorStorage& storage, Scheduler& scheduler,
                                           QObject* parent)
    : QObject(parent), m_storage(storage), m_scheduler(scheduler) {}

SchemeGeneratorModel::~SchemeGeneratorModel() {
    m_reveal.cancel();
}

void SchemeGeneratorModel::open() {
    m_reveal.cancel();
    const std::optional<ColorTemplate> active = m_storage.activeTemplate();
    m_primaryHex =
        SchemeGenerator::defaultStartingHex(active ? active->colors : QList<ColorItem>());
    m_style = SchemeGenerator::SchemeStyle::warm;
    m_templateName = SchemeGeneratorTexts::defaultTemplateName;
    m_generatedColors.clear();
    m_allReadable = false;
    m_swatchesVisible = false;
    generate();
    Q_EMIT changed();
}

void SchemeGeneratorModel::cancel() {
    m_reveal.cancel();
    Q_EMIT closed();
}

ReadabilityLine SchemeGeneratorModel::readabilityLine() const {
    return readabilityLine(m_allReadable);
}

ReadabilityLine SchemeGeneratorModel::readabilityLine(bool allReadable) {
    if (allReadable) {
        return {u"checkmark.circle.fill"_s, u"All text combinations readable"_s,
                ColorUtils::DisplayColor{0.36, 0.68, 0.42, 1.0}};
    }
    return {u"exclamationmark.triangle.fill"_s, u"Some contrast issues remain"_s,
            ColorUtils::DisplayColor{0.83, 0.64, 0.30, 1.0}};
}

void SchemeGeneratorModel::setStyle(SchemeGenerator::SchemeStyle style) {
    if (style == m_style) {
        return;
    }
    m_style = style;
    generate();
    Q_EMIT changed();
}

void SchemeGeneratorModel::setStartingText(const QString& text) {
    const SchemeGenerator::StartingTextEdit edit = SchemeGenerator::startingTextEdit(text);
    m_primaryHex = edit.replacementText.value_or(text);
    if (edit.generates) {
        generate();
    }
    Q_EMIT changed();
}

void SchemeGeneratorModel::setTemplateName(const QString& name) {
    m_templateName = name;
    Q_EMIT changed();
}

void SchemeGeneratorModel::generate() {
    const std::optional<SchemeGenerator::GeneratedScheme> scheme =
        SchemeGenerator::generateScheme(m_primaryHex, m_style);
    if (!scheme) {
        return;
    }
    m_swatchesVisible = false;
    // Only the latest generate brings the swatches back.
    m_reveal.cancel();
    m_reveal = m_scheduler.scheduleAfter(0.0, [this] { revealSwatches(); });
    m_generatedColors = scheme->colors;
    m_allReadable = scheme->allReadable;
    Q_EMIT changed();
}

void SchemeGeneratorModel::revealSwatches() {
    m_swatchesVisible = true;
    Q_EMIT changed();
}

bool SchemeGeneratorModel::canCreate() const {
    return !TemplateNaming::trimmedOfBlanks(m_templateName).isEmpty() &&
           !m_generatedColors.isEmpty();
}

bool SchemeGeneratorModel::createPalette() {
    const QString name = TemplateNaming::trimmedOfBlanks(m_templateName);
    if (name.isEmpty() || m_generatedColors.isEmpty()) {
        return false;
    }
    const ColorTemplate palette =
        m_storage.createTemplate(name, SchemeGenerator::schemePaletteColors(m_generatedColors));
    m_storage.announce(StoreTexts::createdAnnouncement(palette.name), StoreTexts::generatedIcon);
    m_reveal.cancel();
    Q_EMIT closed();
    return true;
}

} // namespace hueshelf::app
