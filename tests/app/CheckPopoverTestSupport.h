#pragma once

#include "AppTestSupport.h"
#include "app/CheckPopoverModel.h"
#include "model/TemplateWriter.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <ostream>
#include <stdexcept>
#include <vector>

// Readable failure messages for Qt text (found by argument-dependent lookup on QString).
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
QT_END_NAMESPACE

namespace hueshelf::testing {

using namespace Qt::StringLiterals;

// Keeps every save the store hands over; each write finishes at once.
class RecordingWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        Q_UNUSED(written);
        requests.push_back(request);
        finished();
    }
    void writeShadowState(const QByteArray& json) override { Q_UNUSED(json); }

    // The colour codes of the active palette as the last save wrote them.
    QStringList lastSavedHexes(const QUuid& paletteId) const {
        QStringList hexes;
        if (requests.empty())
            return hexes;
        for (const ColorTemplate& palette : requests.back().templates)
            if (palette.id == paletteId)
                for (const ColorItem& color : palette.colors)
                    hexes << color.hex;
        return hexes;
    }

    std::vector<SaveRequest> requests;
};

struct CheckColor {
    QString name;
    QString hex;
    bool isLocked = false;
    bool isAutoNamed = false;
};

inline ColorTemplate checkPalette(const QList<CheckColor>& colors, bool locked = false) {
    QList<ColorItem> items;
    for (const CheckColor& color : colors) {
        ColorItem item = ColorItem::make(color.name, color.hex, color.isAutoNamed);
        item.isLocked = color.isLocked;
        items.append(item);
    }
    ColorTemplate palette = ColorTemplate::makeNew(u"Check"_s, items, 1'700'000'000'000.0);
    palette.isLocked = locked;
    return palette;
}

// A store with one palette, a writer that records, and a popover over them on manual time.
class CheckPopoverHarness {
public:
    explicit CheckPopoverHarness(const ColorTemplate& palette, double doubleClickInterval = 0.2)
        : store({palette}) {
        store.store->setWriter(&writer);
        model = std::make_unique<app::CheckPopoverModel>(*store.store, store.clock, store.scheduler,
                                                         doubleClickInterval);
    }

    ColorStorage& storage() { return *store.store; }
    ColorTemplate active() const { return *store.store->activeTemplate(); }

    QUuid idOf(const QString& name) const {
        for (const ColorItem& color : active().colors)
            if (color.name == name)
                return color.id;
        throw std::runtime_error("no colour of that name");
    }
    QString hexOf(const QString& name) const {
        for (const ColorItem& color : active().colors)
            if (color.name == name)
                return color.hex;
        throw std::runtime_error("no colour of that name");
    }
    QStringList hexes() const {
        QStringList result;
        for (const ColorItem& color : active().colors)
            result << color.hex;
        return result;
    }

    // Opens the popover and fixes the readability issue of the named colour; gives its id.
    QString openAndFix(const QString& name) {
        model->open();
        const QString id = readId(name);
        if (!model->fix(id))
            throw std::runtime_error("the fix was refused");
        return id;
    }

    QString readId(const QString& name) const { return u"read-"_s + uuidText(idOf(name)); }
    QString pairId(const char* prefix, const QString& first, const QString& second) const {
        return QString::fromLatin1(prefix) + uuidText(idOf(first)) + u'-' + uuidText(idOf(second));
    }
    QStringList issueIds() const {
        QStringList ids;
        for (const PaletteCheck::Issue& issue : model->issues())
            ids << issue.id;
        return ids;
    }

    // Member order matters: the writer outlives the store that writes to it.
    RecordingWriter writer;
    TestStore store;
    std::unique_ptr<app::CheckPopoverModel> model;
};

inline QStringList rowIds(const QList<app::CheckRow>& rows) {
    QStringList ids;
    for (const app::CheckRow& row : rows)
        ids << row.issueId;
    return ids;
}

} // namespace hueshelf::testing
