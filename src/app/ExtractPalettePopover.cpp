#include "app/ExtractPalettePopover.h"

#include "app/ExtractPaletteModel.h"
#include "app/PopoverPlacement.h"
#include "app/SymbolIcons.h"
#include "app/WindowStyle.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

constexpr int swatchSide = 40;
constexpr int columns = 3;

QLabel* colorSquare(const QString& hex, QWidget* parent) {
    auto* square = new QLabel(parent);
    square->setFixedSize(swatchSide, swatchSide);
    square->setStyleSheet(
        u"background: %1; border-radius: 7px; border: 1px solid palette(mid);"_s.arg(hex));
    return square;
}

} // namespace

ExtractPalettePopover::ExtractPalettePopover(ExtractPaletteModel& model, QWidget* parent)
    : QWidget(parent, Qt::Popup), m_model(model) {
    using namespace ExtractPaletteTexts;
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 12, 14, 12);
    column->setSpacing(10);

    auto* header = new QHBoxLayout();
    auto* heading = new QLabel(title, this);
    WindowStyle::makeBold(*heading);
    header->addWidget(heading);
    header->addStretch(1);
    auto* infoButton = new QToolButton(this);
    infoButton->setAutoRaise(true);
    infoButton->setIcon(symbolIcon(u"info.circle"_s, palette().color(QPalette::PlaceholderText)));
    infoButton->setToolTip(infoTitle);
    infoButton->setCheckable(true);
    header->addWidget(infoButton);
    column->addLayout(header);

    m_info = WindowStyle::wrappedLabel(
        u"<b>"_s + infoTitle.toHtmlEscaped() + u"</b><br>"_s + infoLines.join(u"<br>"_s), this);
    m_info->setTextFormat(Qt::RichText);
    m_info->setVisible(false);
    connect(infoButton, &QToolButton::toggled, this, [this](bool on) {
        m_info->setVisible(on);
        adjustSize();
    });
    column->addWidget(m_info);

    auto* nameLabel = new QLabel(nameFieldLabel, this);
    WindowStyle::makeSecondary(*nameLabel, 0.9);
    column->addWidget(nameLabel);
    m_nameField = new QLineEdit(this);
    connect(m_nameField, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_model.setPaletteName(text);
        refreshButtons();
    });
    column->addWidget(m_nameField);

    m_grid = new QGridLayout();
    m_grid->setHorizontalSpacing(10);
    m_grid->setVerticalSpacing(8);
    column->addLayout(m_grid);
    auto* hint = new QLabel(renameHint, this);
    WindowStyle::makeSecondary(*hint, 0.85);
    column->addWidget(hint);

    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    auto* cancel = new QPushButton(ExtractPaletteTexts::cancelButton, this);
    connect(cancel, &QPushButton::clicked, &m_model, &ExtractPaletteModel::cancel);
    buttons->addWidget(cancel);
    m_create = new QPushButton(ExtractPaletteTexts::createButton, this);
    m_create->setDefault(true);
    m_create->setStyleSheet(
        u"QPushButton { background: %1; color: white; border-radius: 5px; padding: 4px 12px; }"
        u"QPushButton:disabled { background: palette(mid); }"_s.arg(createTint));
    connect(m_create, &QPushButton::clicked, &m_model, &ExtractPaletteModel::confirm);
    buttons->addWidget(m_create);
    column->addLayout(buttons);

    connect(&m_model, &ExtractPaletteModel::openRequested, this, &ExtractPalettePopover::open);
    connect(&m_model, &ExtractPaletteModel::closed, this, &QWidget::hide);
}

void ExtractPalettePopover::fill() {
    while (QLayoutItem* item = m_grid->takeAt(0)) {
        if (QWidget* widget = item->widget())
            widget->deleteLater();
        delete item;
    }
    m_swatchNames.clear();
    const QList<ExtractedSwatch> swatches = m_model.swatches();
    for (qsizetype i = 0; i < swatches.size(); ++i) {
        const ExtractedSwatch& swatch = swatches.at(i);
        auto* cell = new QVBoxLayout();
        cell->setSpacing(3);
        cell->addWidget(colorSquare(swatch.hex, this), 0, Qt::AlignHCenter);
        auto* name = new QLineEdit(swatch.name, this);
        name->setFrame(false);
        name->setAlignment(Qt::AlignHCenter);
        name->setFixedWidth(96);
        name->setToolTip(swatch.hex);
        connect(name, &QLineEdit::textEdited, this,
                [this, id = swatch.id](const QString& text) { m_model.renameSwatch(id, text); });
        cell->addWidget(name);
        m_grid->addLayout(cell, static_cast<int>(i / columns), static_cast<int>(i % columns));
        m_swatchNames.append(name);
    }
    m_nameField->setText(m_model.paletteName());
    refreshButtons();
}

void ExtractPalettePopover::refreshButtons() {
    m_create->setEnabled(m_model.canConfirm());
}

void ExtractPalettePopover::open() {
    fill();
    adjustSize();
    const QRect anchor = m_anchor ? m_anchor() : QRect();
    move(PopoverPlacement::topLeft(anchor, size(),
                                   PopoverPlacement::visibleAreaAt(anchor.center())));
    show();
    m_nameField->setFocus();
    m_nameField->selectAll();
}

void ExtractPalettePopover::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // A click outside ends it like "Cancel"; after "Create palette" the model is closed already.
    if (m_model.isOpen())
        m_model.cancel();
}

} // namespace hueshelf::app
