#pragma once

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "model/TemplateWriter.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace hueshelf::testing {

// Keeps every request and lets the test decide when, and with what, each write completes.
class FakeTemplateWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        requests.push_back(request);
        pending.emplace_back(std::move(written), std::move(finished));
    }
    void writeShadowState(const QByteArray& json) override { shadowWrites.push_back(json); }

    // Completes the oldest write as if the file now held `written` (by default what it was asked
    // to write) under the request's time.
    void completeNext(const std::optional<QList<ColorTemplate>>& written = std::nullopt) {
        const SaveRequest request = requests.at(requests.size() - pending.size());
        const auto [onWritten, onFinished] = std::move(pending.front());
        pending.pop_front();
        onWritten(SaveOutcome{true, written.value_or(request.templates), {}, request.nowMs});
        onFinished();
    }

    std::vector<SaveRequest> requests;
    std::deque<std::pair<Written, Finished>> pending;
    std::vector<QByteArray> shadowWrites;
};

inline ColorItem makeColor(const QString& name, const QString& hex, bool isLocked = false,
                           bool dividerBefore = false, const QString& dividerLabel = QString()) {
    return {QUuid::createUuid(), name, hex, false, isLocked, dividerBefore, dividerLabel};
}

inline ColorTemplate makePalette(const QString& name, const QList<ColorItem>& colors,
                                 bool isLocked = false) {
    ColorTemplate palette = ColorTemplate::makeNew(name, colors, 1000.0);
    palette.isLocked = isLocked;
    return palette;
}

template <class Record>
QStringList namesOf(const QList<Record>& records) {
    QStringList names;
    for (const Record& record : records)
        names.append(record.name);
    return names;
}

inline QList<QUuid> idsOf(const QList<ColorTemplate>& templates) {
    QList<QUuid> ids;
    for (const ColorTemplate& palette : templates)
        ids.append(palette.id);
    return ids;
}

} // namespace hueshelf::testing
