#include "app/PaletteLinkImportWindow.h"

#include "app/PaletteLinkOpenModel.h"
#include "app/WindowStyle.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

constexpr int kSwatchSize = 26;
constexpr int kMaxSwatchesPerRow = 10;

QWidget* swatch(const PaletteLink::Color& color, QWidget* parent) {
    auto* frame = new QFrame(parent);
    frame->setFixedSize(kSwatchSize, kSwatchSize);
    frame->setToolTip(color.name + u"  "_s + color.hex);
    frame->setAutoFillBackground(true);
    QPalette palette = frame->palette();
    palette.setColor(QPalette::Window, QColor::fromString(color.hex));
    frame->setPalette(palette);
    frame->setFrameShape(QFrame::Box);
    frame->setLineWidth(1);
    return frame;
}

QWidget* divider(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    line->setFixedHeight(kSwatchSize);
    return line;
}

} // namespace

PaletteLinkImportWindow::PaletteLinkImportWindow(PaletteLinkOpenModel& model, QWidget* parent)
    : QWidget(parent), m_model(model) {
    namespace Texts = PaletteLinkOpenTexts;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(8);

    m_heading = new QLabel(Texts::heading, this);
    WindowStyle::makeSecondary(*m_heading);
    layout->addWidget(m_heading);
    m_name = WindowStyle::wrappedLabel(QString(), this);
    WindowStyle::makeBold(*m_name, 16);
    layout->addWidget(m_name);
    m_count = new QLabel(this);
    WindowStyle::makeSecondary(*m_count);
    layout->addWidget(m_count);

    m_swatches = new QWidget(this);
    m_swatches->setObjectName(u"swatches"_s);
    auto* swatchRows = new QVBoxLayout(m_swatches);
    swatchRows->setContentsMargins(0, 6, 0, 6);
    swatchRows->setSpacing(4);
    layout->addWidget(m_swatches);

    m_note = WindowStyle::wrappedLabel(Texts::note, this);
    WindowStyle::makeSecondary(*m_note, 0.9);
    layout->addWidget(m_note);
    layout->addStretch();

    auto* buttons = new QHBoxLayout();
    buttons->addStretch();
    m_cancel = new QPushButton(Texts::cancelButton, this);
    m_add = new QPushButton(Texts::addButton, this);
    m_add->setDefault(true);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_add);
    layout->addLayout(buttons);

    connect(m_cancel, &QPushButton::clicked, this, [this] { m_model.cancel(); });
    connect(m_add, &QPushButton::clicked, this, [this] { m_model.add(); });
    refresh();
}

void PaletteLinkImportWindow::refresh() {
    const std::optional<LinkPreview> preview = m_model.preview();
    m_name->setText(preview ? preview->paletteName : QString());
    m_count->setText(preview ? preview->countText : QString());

    // The swatches of the previous link go; rows of ten keep a long palette inside the window.
    QLayout* rows = m_swatches->layout();
    while (QLayoutItem* item = rows->takeAt(0)) {
        if (QLayout* row = item->layout()) {
            while (QLayoutItem* inner = row->takeAt(0)) {
                delete inner->widget();
                delete inner;
            }
        }
        delete item;
    }
    if (!preview)
        return;
    QHBoxLayout* row = nullptr;
    int inRow = 0;
    for (const PaletteLink::Color& color : preview->swatches) {
        if (!row || inRow == kMaxSwatchesPerRow) {
            row = new QHBoxLayout();
            row->setSpacing(4);
            static_cast<QVBoxLayout*>(rows)->addLayout(row);
            inRow = 0;
        }
        if (color.dividerBefore && inRow > 0)
            row->addWidget(divider(m_swatches));
        row->addWidget(swatch(color, m_swatches));
        ++inRow;
    }
    if (row)
        row->addStretch();
}

void PaletteLinkImportWindow::closeEvent(QCloseEvent* event) {
    // Closed by its title bar: the link is forgotten, as with "Cancel".
    m_model.cancel();
    QWidget::closeEvent(event);
}

} // namespace hueshelf::app
