#pragma once

#include <QString>
#include <QtGlobal>

namespace hueshelf {

// What the cloud sync last agreed on for one palette; the store keeps one per palette id.
struct ShadowTemplateState {
    QString contentHash;
    qint64 revision = 0;
    double syncedAt = 0.0; // ms since 1970, like updatedAt

    friend bool operator==(const ShadowTemplateState&, const ShadowTemplateState&) = default;
};

} // namespace hueshelf
