#include "app/WhatsNewReleases.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

// Versions order by their numbers, not their text; level in the three numbers that order is
// not yet the same list of numbers.
TEST(WhatsNewReleases, ComparesVersionsByTheirNumbers) {
    const std::tuple<QString, QString, int, bool> cases[] = {
        {u"1.10.0"_s, u"1.9.9"_s, 1, false}, {u"2.0.0"_s, u"10.0.0"_s, -1, false},
        {u"1.0.0"_s, u"1.0.00"_s, 0, true},  {u"1.2.3"_s, u"1.2.4"_s, -1, false},
        {u"1.2"_s, u"1.2.0"_s, 0, false},    {u"1.2.3.9"_s, u"1.2.3"_s, 0, false},
    };
    for (const auto& [a, b, order, equal] : cases) {
        SCOPED_TRACE(a.toStdString() + " " + b.toStdString());
        const int sign = WhatsNewReleases::compareVersions(a, b);
        EXPECT_EQ((sign > 0) - (sign < 0), order);
        EXPECT_EQ(-WhatsNewReleases::compareVersions(b, a) > 0, order > 0);
        EXPECT_EQ(WhatsNewReleases::versionsEqual(a, b), equal);
    }
}

WhatsNewRelease release(const QString& version, const QString& date = u"Some day"_s) {
    return {version, date, {{u"paintpalette"_s, u"Title "_s + version, u"Text"_s}}};
}

// The first entry equal by numbers is the one found; the shown list holds nothing newer than
// the running version and keeps the list's order.
TEST(WhatsNewReleases, FindsAndShowsByNumbers) {
    const WhatsNewReleases list({release(u"2.0.0"_s), release(u"1.2.0"_s, u"First"_s),
                                 release(u"1.2.00"_s, u"Later"_s), release(u"1.10.0"_s),
                                 release(u"1.1.5"_s)});
    ASSERT_TRUE(list.entry(u"1.02.0"_s));
    EXPECT_EQ(list.entry(u"1.02.0"_s)->date, u"First"_s);
    EXPECT_FALSE(list.hasEntry(u"1.2"_s));
    QStringList shown;
    for (const WhatsNewRelease& r : list.shown(u"1.2.0"_s))
        shown.append(r.version);
    EXPECT_EQ(shown, (QStringList{u"1.2.0"_s, u"1.2.00"_s, u"1.1.5"_s}));
    EXPECT_TRUE(list.shown(u"0.9.0"_s).isEmpty());
}

// One bad part spoils the whole document: a half-shown list would be worse than none.
TEST(WhatsNewReleases, DecodesTheDocumentOrNothing) {
    const WhatsNewReleases list = WhatsNewReleases::fromJson(R"({"releases": [
        {"version": "1.1.0", "date": "March 2026", "extra": true, "items": [
            {"icon": "link", "title": "Links", "description": "Share a palette."}]},
        {"version": "1.0.0", "date": "January 2026", "items": []}]})");
    ASSERT_EQ(list.releases().size(), 2);
    EXPECT_EQ(list.releases().at(0),
              (WhatsNewRelease{
                  u"1.1.0"_s, u"March 2026"_s, {{u"link"_s, u"Links"_s, u"Share a palette."_s}}}));
    const char* const documents[] = {
        "{",
        "[]",
        R"({"releases": {}})",
        R"({"releases": [{"version": "1.0.0", "items": []}]})",
        R"({"releases": [{"version": 1, "date": "x", "items": []}]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": []}, 7]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": [{"icon": "link"}]}]})",
        R"({"releases": [{"version": "1.0.0", "date": "x", "items": []}]} trailing)",
    };
    for (const char* document : documents)
        EXPECT_TRUE(WhatsNewReleases::fromJson(document).releases().isEmpty()) << document;
    EXPECT_TRUE(WhatsNewReleases::fromFile(u"/nonexistent/WhatsNew.json"_s).releases().isEmpty());
}

// The notes shipped with the program read, and have something to say about this very version.
TEST(WhatsNewReleases, ShippedNotesCoverTheRunningVersion) {
    const std::optional<WhatsNewRelease> entry =
        WhatsNewReleases::bundled().entry(QStringLiteral(HUESHELF_VERSION));
    ASSERT_TRUE(entry);
    EXPECT_FALSE(entry->items.isEmpty());
}

} // namespace
} // namespace hueshelf::app
