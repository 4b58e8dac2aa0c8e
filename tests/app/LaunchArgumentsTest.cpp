// What the desktop hands over on the command line: which arguments are links, which are palette
// files, and what is set aside.

#include "app/LaunchArguments.h"

#include "exchange/PaletteLink.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

TEST(LaunchArguments, EachArgumentFindsItsPlaceInOrder) {
    const QString host = PaletteLink::linkHost();
    const QString ownLink = u"hueshelf://import#1;Sea;Blue:0000FF"_s;
    const QStringList arguments{
        u"Palettes/Sea.hueshelf"_s,
        ownLink,
        u"HUESHELF://IMPORT#1;A;B:000000"_s,
        // A broken payload is still a link: the preview's alert is for it to say so.
        u"hueshelf://import#garbage"_s,
        PaletteLink::linkPrefix() + u"Sea;Blue:0000FF"_s,
        u"https://"_s + host.toUpper() + u"/p/"_s,
        u"https://"_s + host + u"/about#1;A;B:000000"_s,
        u"https://example.org/p/#1;A;B:000000"_s,
        u"hueshelf://export#1;A;B:000000"_s,
        u"/home/ann/SEA.HUESHELF"_s,
        u"../up/./Sea.hueshelf"_s,
        u"file:///home/ann/My%20Sea.hueshelf"_s,
        u"/home/ann/Sea.hueshelf.json"_s,
        u"mailto:ann@example.org"_s,
        u"--verbose"_s,
        QString(),
    };
    const LaunchArguments sorted = LaunchArguments::classify(arguments, u"/work/dir"_s);
    EXPECT_EQ(sorted.links,
              (QStringList{ownLink, u"HUESHELF://IMPORT#1;A;B:000000"_s,
                           u"hueshelf://import#garbage"_s, ownLink, u"hueshelf://import"_s}));
    const QStringList files{u"/work/dir/Palettes/Sea.hueshelf"_s, u"/home/ann/SEA.HUESHELF"_s,
                            u"/work/up/Sea.hueshelf"_s, u"/home/ann/My Sea.hueshelf"_s};
    EXPECT_EQ(sorted.files, files);
    EXPECT_EQ(sorted.ignored, arguments.mid(6, 3) + arguments.mid(12));
    EXPECT_EQ(sorted.handOver(), sorted.links + files);

    EXPECT_EQ(LaunchArguments::ignoredMessage(u"junk"_s),
              u"hueshelf: ignoring \"junk\": not a palette link or a .hueshelf file"_s);
    EXPECT_TRUE(LaunchArguments::classify({u"junk"_s}, u"/d"_s).isEmpty());
}

} // namespace
} // namespace hueshelf::app
