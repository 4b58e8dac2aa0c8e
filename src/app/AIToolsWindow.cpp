#include "app/AIToolsWindow.h"

#include "aitools/AIToolTexts.h"
#include "app/AIToolsPanelModel.h"
#include "app/WindowStyle.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

AIToolsWindow::AIToolsWindow(AIToolsPanelModel& model, QWidget* parent)
    : QWidget(parent), m_model(model) {
    setFixedWidth(panelWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(14);

    auto* subtitle = WindowStyle::wrappedLabel(AIToolTexts::subtitle(), this);
    WindowStyle::makeSecondary(*subtitle);
    layout->addWidget(subtitle);

    auto* pickerRow = new QHBoxLayout();
    pickerRow->addWidget(new QLabel(AIToolTexts::pickerLabel(), this));
    m_picker = new QComboBox(this);
    m_picker->setMaximumWidth(200);
    pickerRow->addWidget(m_picker);
    pickerRow->addStretch();
    layout->addLayout(pickerRow);
    // Only the user's own choice is stored; refilling the list must not count as one.
    connect(m_picker, &QComboBox::activated, this, [this](int index) {
        m_model.chooseBrandPalette(m_picker->itemData(index).toString());
    });

    m_rowsHolder = new QVBoxLayout();
    m_rowsHolder->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_rowsHolder);

    m_status = WindowStyle::wrappedLabel(QString(), this);
    layout->addWidget(m_status);

    m_copySnippet = WindowStyle::linkButton(AIToolTexts::copySnippetButton(), this);
    layout->addWidget(m_copySnippet, 0, Qt::AlignLeft);
    connect(m_copySnippet, &QPushButton::clicked, this, [this] { m_model.copySetupSnippet(); });

    auto* disconnectBlock = new QVBoxLayout();
    disconnectBlock->setSpacing(4);
    m_disconnectAll = new QPushButton(AIToolTexts::disconnectAllButton(), this);
    QFont small = m_disconnectAll->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    m_disconnectAll->setFont(small);
    disconnectBlock->addWidget(m_disconnectAll, 0, Qt::AlignLeft);
    m_disconnectCaption = WindowStyle::wrappedLabel(AIToolTexts::disconnectAllCaption(), this);
    WindowStyle::makeSecondary(*m_disconnectCaption, 0.85);
    disconnectBlock->addWidget(m_disconnectCaption);
    layout->addLayout(disconnectBlock);
    connect(m_disconnectAll, &QPushButton::clicked, this, [this] { m_model.disconnectAll(); });

    connect(&m_model, &AIToolsPanelModel::changed, this, &AIToolsWindow::refresh);
    refresh();
}

void AIToolsWindow::refresh() {
    {
        const QSignalBlocker blocker(m_picker);
        m_picker->clear();
        for (const BrandPaletteChoice& choice : m_model.paletteChoices())
            m_picker->addItem(choice.name, choice.id);
        m_picker->setCurrentIndex(m_picker->findData(m_model.brandTemplateId()));
    }

    rebuildRows();

    const std::optional<QString>& status = m_model.statusMessage();
    m_status->setVisible(status.has_value());
    m_status->setText(status.value_or(QString()));
    if (m_model.statusIsWarning()) {
        WindowStyle::makeWarning(*m_status);
    } else {
        m_status->setPalette(palette());
        WindowStyle::makeSecondary(*m_status);
    }

    const bool hasRows = !m_model.rows().isEmpty();
    m_disconnectAll->setVisible(hasRows);
    m_disconnectCaption->setVisible(hasRows);
    adjustSize();
}

void AIToolsWindow::rebuildRows() {
    // A redraw can come from a click on one of these very checkboxes, so the old list is only
    // taken out of sight now and deleted once that click is over.
    if (m_rows) {
        m_rowsHolder->removeWidget(m_rows);
        m_rows->hide();
        m_rows->deleteLater();
    }
    m_rows = new QWidget(this);
    m_rows->setObjectName(u"toolRows"_s);
    auto* list = new QVBoxLayout(m_rows);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(6);
    const QList<AIToolRowFace> faces = m_model.rowFaces();
    if (faces.isEmpty()) {
        auto* none = WindowStyle::wrappedLabel(AIToolTexts::noToolsFound(), m_rows);
        WindowStyle::makeSecondary(*none);
        list->addWidget(none);
    }
    for (const AIToolRowFace& face : faces) {
        auto* line = new QHBoxLayout();
        auto* box = new QCheckBox(face.name, m_rows);
        box->setObjectName(face.id);
        box->setChecked(face.checked);
        const QString id = face.id;
        connect(box, &QCheckBox::clicked, this,
                [this, id](bool on) { m_model.setRowChecked(id, on); });
        line->addWidget(box);
        line->addStretch();
        if (face.note) {
            auto* note = new QLabel(*face.note, m_rows);
            note->setTextFormat(Qt::PlainText);
            if (face.noteIsWarning)
                WindowStyle::makeWarning(*note);
            else
                WindowStyle::makeSecondary(*note, 0.9);
            line->addWidget(note);
        }
        list->addLayout(line);
    }
    m_rowsHolder->addWidget(m_rows);
}

} // namespace hueshelf::app
