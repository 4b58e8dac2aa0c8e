#include "app/WhatsNewReleases.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

TEST(WhatsNewReleases, ComparesVersionsByTheirNumbers) {
    struct Case {
        QString a;
        QString b;
        int order; // sign of compareVersions(a, b)
        bool equal;
    };
    const Case cases[] = {
        {u"1.10.0"_s, u"1.9.9"_s, 1, false}, // numbers, not text
        {u"1.9.9"_s, u"1.10.0"_s, -1, false},
        {u"2.0.0"_s, u"10.0.0"_s, -1, false},
        {u"1.0.0"_s, u"1.0.00"_s, 0, true},
        {u"1.2.3"_s, u"1.2.4"_s, -1, false},
        {u"1.3.0"_s, u"1.2.9"_s, 1, false},
        // Level in the three numbers that order, yet not the same list of numbers.
        {u"1.2"_s, u"1.2.0"_s, 0, false},
        {u"1.2.3.9"_s, u"1.2.3"_s, 0, false},
    };
    for (const Case& c : cases) {
        const int order = WhatsNewReleases::compareVersions(c.a, c.b);
        EXPECT_EQ((order > 0) - (order < 0), c.order)
            << c.a.toStdString() << " " << c.b.toStdString();
        EXPECT_EQ(WhatsNewReleases::versionsEqual(c.a, c.b), c.equal)
            << c.a.toStdString() << " " << c.b.toStdString();
    }
}

WhatsNewRelease release(const QString& version) {
    return {version, u"Some day"_s, {{u"paintpalette"_s, u"Title "_s + version, u"Text"_s}}};
}

TEST(WhatsNewReleases, FindsTheFirstEntryEqualByNumbers) {
    WhatsNewRelease first = release(u"1.2.0"_s);
    WhatsNewRelease second = release(u"1.2.00"_s);
    second.date = u"Later"_s;
    const WhatsNewReleases list({release(u"1.0.0"_s), first, second});
    ASSERT_TRUE(list.entry(u"1.02.0"_s));
    EXPECT_EQ(list.entry(u"1.02.0"_s)->date, first.date);
    EXPECT_FALSE(list.hasEntry(u"1.1.0"_s));
    EXPECT_FALSE(list.hasEntry(u"1.2"_s));
    EXPECT_FALSE(WhatsNewReleases().hasEntry(u"1.0.0"_s));
}

// Notes ahead of the program show nothing of the future; the rest keep the list's order.
TEST(WhatsNewReleases, ShowsOnlyReleasesNotNewerThanTheRunningOne) {
    const WhatsNewReleases list({release(u"2.0.0"_s), release(u"1.2.0"_s), release(u"1.0.0"_s),
                                 release(u"1.10.0"_s), release(u"1.1.5"_s)});
    QStringList shown;
    for (const WhatsNewRelease& r : list.shown(u"1.2.0"_s))
        shown.append(r.version);
    EXPECT_EQ(shown, (QStringList{u"1.2.0"_s, u"1.0.0"_s, u"1.1.5"_s}));
    EXPECT_TRUE(list.shown(u"0.9.0"_s).isEmpty());
    EXPECT_EQ(list.shown(u"10.0.0"_s).size(), 5);
}

TEST(WhatsNewReleases, DecodesTheDocument) {
    const WhatsNewReleases list = WhatsNewReleases::fromJson(R"({"releases": [
        {"version": "1.1.0", "date": "March 2026", "extra": true, "items": [
            {"icon": "link", "title": "Links", "description": "Share a palette."},
            {"icon": "icloud", "title": "Sync", "description": "Across devices."}]},
        {"version": "1.0.0", "date": "January 2026", "items": []}]})");
    ASSERT_EQ(list.releases().size(), 2);
    EXPECT_EQ(list.releases().at(0),
              (WhatsNewRelease{u"1.1.0"_s,
                               u"March 2026"_s,
                               {{u"link"_s, u"Links"_s, u"Share a palette."_s},
                                {u"icloud"_s, u"Sync"_s, u"Across devices."_s}}}));
    EXPECT_TRUE(list.releases().at(1).items.isEmpty());
}

// One bad part spoils the whole document: a half-shown list would be worse than none.
TEST(WhatsNewReleases, UnreadableNotesAreAnEmptyList) {
    const char* const documents[] = {
        "",
        "{",
        "[]",
        R"({"releases": {}})",
        R"({"release": []})",
        R"({"releases": [{"version": "1.0.0", "items": []}]})",
        R"({"releases": [{"version": 1, "date": "x", "items": []}]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": {}}]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": []}, 7]})",
        R"({"releases": [{"version": "1.0.0", "date": "x",
                          "items": [{"icon": "link", "title": "t"}]}]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": []}]} trailing)",
    };
    for (const char* document : documents)
        EXPECT_TRUE(WhatsNewReleases::fromJson(document).releases().isEmpty()) << document;
    EXPECT_TRUE(WhatsNewReleases::fromFile(u"/nonexistent/WhatsNew.json"_s).releases().isEmpty());
}

// The notes shipped with the program read, and have something to say about this very version.
TEST(WhatsNewReleases, ShippedNotesCoverTheRunningVersion) {
    const WhatsNewReleases& bundled = WhatsNewReleases::bundled();
    ASSERT_FALSE(bundled.releases().isEmpty());
    const std::optional<WhatsNewRelease> entry = bundled.entry(QStringLiteral(HUESHELF_VERSION));
    ASSERT_TRUE(entry);
    EXPECT_FALSE(entry->items.isEmpty());
}

} // namespace
} // namespace hueshelf::app
