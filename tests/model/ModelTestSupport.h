#pragma once

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "model/ContentHash.h"
#include "model/TemplateWriter.h"
#include "util/Clock.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <deque>
#include <utility>
#include <vector>

namespace hueshelf::testing {

// A clock that moves one millisecond each time it is read, so a test can tell how often and
// in which order it was asked.
class SteppingClock final : public Clock {
public:
    explicit SteppingClock(double startMs) : m_next(startMs) {}
    double nowMs() const override { return m_next++; }
    int reads(double startMs) const { return static_cast<int>(m_next - startMs); }

private:
    mutable double m_next;
};

// Keeps every request and lets the test decide when, and with what, each write completes.
class FakeTemplateWriter final : public TemplateWriter {
public:
    struct Pending {
        SaveRequest request;
        Written written;
        Finished finished;
    };

    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        requests.push_back(request);
        pending.push_back({request, std::move(written), std::move(finished)});
    }
    void writeShadowState(const QByteArray& json) override { shadowWrites.push_back(json); }

    // Completes the oldest write as if the file now held `written`.
    void completeNext(const QList<ColorTemplate>& written) {
        Pending next = std::move(pending.front());
        pending.pop_front();
        // As a writer that found no newer stamp in the file: the request's time is written.
        next.written(SaveOutcome{true, written, QByteArray(), next.request.nowMs});
        next.finished();
    }
    // Completes the oldest write with exactly what it was asked to write.
    void completeNextAsRequested() {
        const QList<ColorTemplate> requested = pending.front().request.templates;
        completeNext(requested);
    }

    std::vector<SaveRequest> requests;
    std::deque<Pending> pending;
    std::vector<QByteArray> shadowWrites;
};

inline ColorItem makeColor(const QString& name, const QString& hex, bool isLocked = false,
                           bool dividerBefore = false, const QString& dividerLabel = QString()) {
    ColorItem color = ColorItem::make(name, hex, false);
    color.isLocked = isLocked;
    color.dividerBefore = dividerBefore;
    color.dividerLabel = dividerLabel;
    return color;
}

inline ColorTemplate makePalette(const QString& name, const QList<ColorItem>& colors,
                                 bool isLocked = false, double createdAt = 1000.0) {
    ColorTemplate palette = ColorTemplate::makeNew(name, colors, createdAt);
    palette.isLocked = isLocked;
    return palette;
}

inline QStringList namesOf(const QList<ColorItem>& colors) {
    QStringList names;
    for (const ColorItem& color : colors)
        names.append(color.name);
    return names;
}

inline QStringList namesOf(const QList<ColorTemplate>& templates) {
    QStringList names;
    for (const ColorTemplate& palette : templates)
        names.append(palette.name);
    return names;
}

} // namespace hueshelf::testing
