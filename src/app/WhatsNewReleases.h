#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace hueshelf::app {

struct WhatsNewItem {
    QString icon; // a symbol name
    QString title;
    QString description;

    friend bool operator==(const WhatsNewItem&, const WhatsNewItem&) = default;
};

struct WhatsNewRelease {
    QString version; // three dotted decimal numbers
    QString date;    // shown as it stands
    QList<WhatsNewItem> items;

    friend bool operator==(const WhatsNewRelease&, const WhatsNewRelease&) = default;
};

// The release notes shipped with the program, and which of them a running version may show.
// Notes that can't be read are no notes at all: nothing is reported, the list is just empty.
class WhatsNewReleases {
public:
    WhatsNewReleases() = default;
    explicit WhatsNewReleases(QList<WhatsNewRelease> releases) : m_releases(std::move(releases)) {}

    // The whole document or nothing: one release or item with a missing or mistyped field
    // empties the list, so a half-read file never shows half its notes.
    static WhatsNewReleases fromJson(const QByteArray& json);
    static WhatsNewReleases fromFile(const QString& path);
    // The notes in the program's resources, read once and kept for the process's life.
    static const WhatsNewReleases& bundled();
    static QString resourcePath();

    const QList<WhatsNewRelease>& releases() const { return m_releases; }

    // The first release whose version equals `version` by numbers.
    std::optional<WhatsNewRelease> entry(const QString& version) const;
    bool hasEntry(const QString& version) const { return entry(version).has_value(); }
    // The releases not newer than `runningVersion`, in the list's order: notes written ahead
    // of the program show nothing of the future.
    QList<WhatsNewRelease> shown(const QString& runningVersion) const;

    // A version split at "." into integers; a part that isn't a number counts as 0.
    static QList<int> versionNumbers(const QString& version);
    // Equal when the number lists are equal, so "1.0.00" is "1.0.0" but "1.0" is not.
    static bool versionsEqual(const QString& a, const QString& b);
    // Negative, zero or positive as `a` is older than, level with or newer than `b`, judged by
    // the first three numbers in turn (a missing number counts as 0).
    static int compareVersions(const QString& a, const QString& b);

private:
    QList<WhatsNewRelease> m_releases;
};

} // namespace hueshelf::app
