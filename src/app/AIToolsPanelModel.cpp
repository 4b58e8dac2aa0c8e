#include "app/AIToolsPanelModel.h"

#include "aitools/AIToolSettingsKeys.h"
#include "aitools/AIToolTexts.h"
#include "app/RelativeTime.h"
#include "model/ColorItem.h"
#include "model/ColorStorage.h"
#include "platform/Platform.h"
#include "util/Clock.h"

#include <QSettings>

#include <algorithm>

namespace hueshelf::app {

namespace {

// Ids are stored as upper-case UUID text, as the other half of the program writes them.
QString storedIdText(const QUuid& id) {
    return uuidText(id).toUpper();
}

} // namespace

AIToolsPanelModel::AIToolsPanelModel(ColorStorage& storage, AIToolConnector connector,
                                     std::function<QList<AITool>()> toolTable, QSettings& settings,
                                     Platform& platform, const Clock& clock, QObject* parent)
    : QObject(parent), m_storage(storage), m_connector(std::move(connector)),
      m_toolTable(std::move(toolTable)), m_settings(settings), m_platform(platform),
      m_clock(clock) {}

QString AIToolsPanelModel::brandTemplateKey() {
    return AIToolSettingsKeys::brandTemplateId;
}

void AIToolsPanelModel::appear() {
    m_tools = m_toolTable();
    m_rows = AIToolRegistry::displayRows(m_tools);
    m_attention = m_connector.healAll(m_tools);
    readConnected();
    if (!m_attention.isEmpty()) {
        QStringList reasons = m_attention.values();
        reasons.sort();
        setStatus(reasons.join(u' ') + AIToolTexts::attentionAdvice(), true);
    }
    // A palette is always chosen, whether or not the user ever touches the picker; a stored id
    // is taken as it stands, even if that palette is gone.
    if (m_settings.contains(brandTemplateKey())) {
        m_brandTemplateId = m_settings.value(brandTemplateKey()).toString();
    } else {
        m_brandTemplateId = storedIdText(m_storage.activeTemplateId());
        m_settings.setValue(brandTemplateKey(), m_brandTemplateId);
    }
    Q_EMIT changed();
}

void AIToolsPanelModel::setRowChecked(const QString& rowId, bool on) {
    const auto row =
        std::find_if(m_rows.cbegin(), m_rows.cend(),
                     [&](const AIToolRegistry::DisplayRow& r) { return r.id == rowId; });
    if (row == m_rows.cend())
        return;
    QStringList failed;
    QSet<QString> failedIds;
    for (const AITool& tool : row->tools) {
        const AIToolFailure failure =
            on ? m_connector.connect(tool) : m_connector.removeEntry(tool);
        if (failure) {
            failed.append(tool.name);
            failedIds.insert(tool.id);
        }
    }
    readConnected();
    for (const AITool& tool : row->tools) {
        if (failedIds.contains(tool.id))
            m_attention.insert(tool.id, AIToolTexts::settingsFileNotUpdated(tool.name));
        else
            m_attention.remove(tool.id);
    }
    if (failed.isEmpty()) {
        setStatus(on ? AIToolTexts::rowConnected(row->name)
                     : AIToolTexts::rowDisconnected(row->name),
                  false);
    } else {
        // Whichever way the box went, the way out is the snippet.
        copySnippetToClipboard();
        setStatus(AIToolTexts::changeFailedSnippetCopied(failed), true);
    }
    Q_EMIT changed();
}

void AIToolsPanelModel::copySetupSnippet() {
    copySnippetToClipboard();
    setStatus(AIToolTexts::snippetCopied(), false);
    Q_EMIT changed();
}

void AIToolsPanelModel::disconnectAll() {
    if (m_tools.isEmpty()) {
        m_tools = m_toolTable();
        m_rows = AIToolRegistry::displayRows(m_tools);
    }
    // Every tool, detected or not: an entry of a tool that was uninstalled still points here.
    const AIToolConnector::DisconnectReport report = m_connector.disconnectAll(m_tools);
    readConnected();
    m_attention.clear();
    if (!report.failed.isEmpty())
        setStatus(AIToolTexts::disconnectAllFailed(report.failed), true);
    else if (report.removed.isEmpty())
        setStatus(AIToolTexts::nothingWasConnected(), false);
    else
        setStatus(AIToolTexts::disconnectedAll(report.removed), false);
    Q_EMIT changed();
}

void AIToolsPanelModel::chooseBrandPalette(const QString& templateId) {
    m_brandTemplateId = templateId;
    m_settings.setValue(brandTemplateKey(), templateId);
    Q_EMIT changed();
}

QList<AIToolRowFace> AIToolsPanelModel::rowFaces() const {
    const std::optional<QHash<QString, double>> lastUsed = m_connector.lastUsedTimes();
    QList<AIToolRowFace> faces;
    faces.reserve(m_rows.size());
    for (const AIToolRegistry::DisplayRow& row : m_rows) {
        AIToolRowFace face{row.id, row.name, true, std::nullopt, false};
        std::optional<double> latest;
        bool needsAttention = false;
        for (const AITool& tool : row.tools) {
            face.checked = face.checked && m_connected.contains(tool.id);
            needsAttention = needsAttention || m_attention.contains(tool.id);
            if (lastUsed && lastUsed->contains(tool.id))
                latest =
                    std::max(latest.value_or(lastUsed->value(tool.id)), lastUsed->value(tool.id));
        }
        if (needsAttention) {
            face.note = AIToolTexts::needsAttentionNote();
            face.noteIsWarning = true;
        } else if (latest) {
            face.note = AIToolTexts::lastUsedNote(RelativeTime::ago(*latest, m_clock.nowMs()));
        }
        faces.append(face);
    }
    return faces;
}

QList<BrandPaletteChoice> AIToolsPanelModel::paletteChoices() const {
    QList<BrandPaletteChoice> choices;
    for (const ColorTemplate& palette : m_storage.templates())
        choices.append({storedIdText(palette.id), palette.name});
    return choices;
}

void AIToolsPanelModel::readConnected() {
    m_connected.clear();
    for (const AITool& tool : std::as_const(m_tools)) {
        if (m_connector.isConfigured(tool))
            m_connected.insert(tool.id);
    }
}

void AIToolsPanelModel::copySnippetToClipboard() {
    m_platform.setClipboardText(AIToolTexts::setupSnippet(m_connector.binaryPath));
}

void AIToolsPanelModel::setStatus(const QString& message, bool isWarning) {
    m_statusMessage = message;
    m_statusIsWarning = isWarning;
}

} // namespace hueshelf::app
