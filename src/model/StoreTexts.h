#pragma once

#include <QString>

namespace hueshelf {

// The store's refusal and announcement words, in one place so that the bar, the gallery, the
// swatch editor and the command line say exactly the same thing.
namespace StoreTexts {

// Refusals; shown as toasts with refusalIcon.
inline const QString addColorsRefusal = QStringLiteral("Unlock this palette to add colors");
inline const QString editColorsRefusal = QStringLiteral("Unlock this palette to edit colors");
inline const QString deleteLockedColorRefusal = QStringLiteral("Unlock this color to delete it");
inline const QString lastColorRefusal = QStringLiteral("A palette needs at least one color");
inline const QString deleteLockedTemplateRefusal =
    QStringLiteral("Unlock this palette to delete it");
inline const QString lastTemplateRefusal = QStringLiteral("There's only one palette left");
inline const QString renameLockedTemplateRefusal =
    QStringLiteral("Unlock this palette to rename it");
inline const QString moveColorsRefusal = QStringLiteral("Unlock this palette to move colors");
inline const QString moveLockedColorRefusal = QStringLiteral("Unlock this color to move it");
inline const QString refusalIcon = QStringLiteral("lock.fill");

// The question before a palette goes.
inline const QString deleteTemplateConfirmation =
    QStringLiteral("Its colors go with it, and this can't be undone.");

// Announcements.
inline const QString createdIcon = QStringLiteral("plus.circle.fill");
// A palette made by a generator or from an image.
inline const QString generatedIcon = QStringLiteral("paintpalette.fill");
inline const QString deletedIcon = QStringLiteral("trash.fill");
inline const QString templateDeletedAnnouncement = QStringLiteral("Palette deleted");

// Created "NAME", in straight double quotes.
inline QString createdAnnouncement(const QString& name) {
    return QStringLiteral("Created \"") + name + u'"';
}

// Removed NAME, without quotes.
inline QString removedAnnouncement(const QString& colorName) {
    return QStringLiteral("Removed ") + colorName;
}

} // namespace StoreTexts
} // namespace hueshelf
