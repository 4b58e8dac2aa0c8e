// What the desktop hands over on the command line: which arguments are links, which are palette
// files, and what is set aside.

#include "app/LaunchArguments.h"

#include "exchange/PaletteLink.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

enum class Kind { link, file, ignored };

struct Row {
    QString argument;
    Kind kind;
    QString expected; // the link or path as handed on; empty for ignored
};

TEST(LaunchArguments, EachArgumentFindsItsPlace) {
    const QString web = PaletteLink::linkPrefix(); // https://<host>/p/#1;
    const QString host = PaletteLink::linkHost();
    const QList<Row> rows{
        {u"hueshelf://import#1;Sea;Blue:0000FF"_s, Kind::link,
         u"hueshelf://import#1;Sea;Blue:0000FF"_s},
        {u"HUESHELF://IMPORT#1;Sea;Blue:0000FF"_s, Kind::link,
         u"HUESHELF://IMPORT#1;Sea;Blue:0000FF"_s},
        // A broken payload is still a link: the preview's alert is for it to say so.
        {u"hueshelf://import#garbage"_s, Kind::link, u"hueshelf://import#garbage"_s},
        {web + u"Sea;Blue:0000FF"_s, Kind::link, u"hueshelf://import#1;Sea;Blue:0000FF"_s},
        {u"https://"_s + host.toUpper() + u"/p/#1;A;B:000000"_s, Kind::link,
         u"hueshelf://import#1;A;B:000000"_s},
        {u"https://"_s + host + u"/p/"_s, Kind::link, u"hueshelf://import"_s},
        {u"https://"_s + host + u"/about#1;A;B:000000"_s, Kind::ignored, {}},
        {u"https://example.org/p/#1;A;B:000000"_s, Kind::ignored, {}},
        {u"hueshelf://export#1;A;B:000000"_s, Kind::ignored, {}},
        {u"/home/ann/Sea.hueshelf"_s, Kind::file, u"/home/ann/Sea.hueshelf"_s},
        {u"/home/ann/SEA.HUESHELF"_s, Kind::file, u"/home/ann/SEA.HUESHELF"_s},
        {u"Palettes/Sea.hueshelf"_s, Kind::file, u"/work/dir/Palettes/Sea.hueshelf"_s},
        {u"../up/./Sea.hueshelf"_s, Kind::file, u"/work/up/Sea.hueshelf"_s},
        {u"file:///home/ann/My%20Sea.hueshelf"_s, Kind::file, u"/home/ann/My Sea.hueshelf"_s},
        {u"/home/ann/picture.png"_s, Kind::ignored, {}},
        {u"/home/ann/Sea.hueshelf.json"_s, Kind::ignored, {}},
        {u"/home/ann/.hueshelf"_s, Kind::file, u"/home/ann/.hueshelf"_s},
        {u"mailto:ann@example.org"_s, Kind::ignored, {}},
        {u"--verbose"_s, Kind::ignored, {}},
        {QString(), Kind::ignored, {}},
    };
    for (const Row& row : rows) {
        const LaunchArguments sorted = LaunchArguments::classify({row.argument}, u"/work/dir"_s);
        const QStringList expectedLinks =
            row.kind == Kind::link ? QStringList{row.expected} : QStringList();
        const QStringList expectedFiles =
            row.kind == Kind::file ? QStringList{row.expected} : QStringList();
        const QStringList expectedIgnored =
            row.kind == Kind::ignored ? QStringList{row.argument} : QStringList();
        EXPECT_EQ(sorted.links, expectedLinks) << row.argument.toStdString();
        EXPECT_EQ(sorted.files, expectedFiles) << row.argument.toStdString();
        EXPECT_EQ(sorted.ignored, expectedIgnored) << row.argument.toStdString();
    }
}

TEST(LaunchArguments, OrderIsKeptAndHandOverHoldsOnlyWhatCanBeOpened) {
    const LaunchArguments sorted = LaunchArguments::classify(
        {u"b.hueshelf"_s, u"junk"_s, u"hueshelf://import#1;X;Y:000000"_s, u"/a.hueshelf"_s},
        u"/d"_s);
    EXPECT_EQ(sorted.files, (QStringList{u"/d/b.hueshelf"_s, u"/a.hueshelf"_s}));
    EXPECT_EQ(sorted.handOver(), (QStringList{u"hueshelf://import#1;X;Y:000000"_s,
                                              u"/d/b.hueshelf"_s, u"/a.hueshelf"_s}));
    EXPECT_EQ(LaunchArguments::ignoredMessage(u"junk"_s),
              u"hueshelf: ignoring \"junk\": not a palette link or a .hueshelf file"_s);
    EXPECT_TRUE(LaunchArguments::classify({u"junk"_s}, u"/d"_s).isEmpty());
}

} // namespace
} // namespace hueshelf::app
