#include "exchange/PaletteIdentity.h"

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorItem color(const QString& name, const QString& hex, bool dividerBefore = false,
                const QString& label = QString()) {
    ColorItem item = ColorItem::make(name, hex, false);
    item.dividerBefore = dividerBefore;
    item.dividerLabel = label;
    return item;
}

// What a file or link brings.
const QString incomingName = u"Starter"_s;
const QList<ColorItem> incoming{
    color(u"Primary"_s, u"#FFA69E"_s),
    color(u"Accent"_s, u"#B8F2E6"_s, true, u"Brand"_s),
    color(u"Plain"_s, u"#000000"_s, false, u"stale"_s),
};

struct Case {
    const char* what;
    std::function<void(ColorTemplate&)> change; // applied to a stored copy
    bool found;
};

TEST(FindIdenticalPalette, ComparesWhatAFileOrLinkCarries) {
    const QList<Case> cases{
        {"the same", [](ColorTemplate&) {}, true},
        {"locks, ids and automatic names",
         [](ColorTemplate& p) {
             p.isLocked = true;
             for (ColorItem& c : p.colors) {
                 c.id = QUuid::createUuid();
                 c.isLocked = true;
                 c.isAutoNamed = true;
             }
         },
         true},
        {"code in lower case", [](ColorTemplate& p) { p.colors[0].hex = u"#ffa69e"_s; }, true},
        {"code without hash", [](ColorTemplate& p) { p.colors[0].hex = u"ffa69e"_s; }, true},
        {"code with blanks", [](ColorTemplate& p) { p.colors[0].hex = u" \t#FFA69E "_s; }, true},
        {"code with two hashes", [](ColorTemplate& p) { p.colors[0].hex = u"##FFA69E"_s; }, false},
        {"another code", [](ColorTemplate& p) { p.colors[0].hex = u"#FFA69F"_s; }, false},
        {"three-digit code", [](ColorTemplate& p) { p.colors[2].hex = u"#000"_s; }, false},
        {"stale label without a divider",
         [](ColorTemplate& p) { p.colors[2].dividerLabel = u"other"_s; }, true},
        {"another label", [](ColorTemplate& p) { p.colors[1].dividerLabel = u"brand"_s; }, false},
        {"divider gone", [](ColorTemplate& p) { p.colors[1].dividerBefore = false; }, false},
        {"divider added", [](ColorTemplate& p) { p.colors[2].dividerBefore = true; }, false},
        {"palette name in another case", [](ColorTemplate& p) { p.name = u"starter"_s; }, false},
        {"palette name with a blank", [](ColorTemplate& p) { p.name = u"Starter "_s; }, false},
        {"colour name in another case", [](ColorTemplate& p) { p.colors[0].name = u"primary"_s; },
         false},
        {"one colour more", [](ColorTemplate& p) { p.colors.append(p.colors.at(0)); }, false},
        {"one colour fewer", [](ColorTemplate& p) { p.colors.removeLast(); }, false},
        {"order changed", [](ColorTemplate& p) { p.colors.swapItemsAt(0, 2); }, false},
    };
    for (const Case& c : cases) {
        ColorTemplate stored = ColorTemplate::makeNew(incomingName, incoming, 1000.0);
        c.change(stored);
        const ColorTemplate other = ColorTemplate::makeNew(u"Other"_s, incoming, 1000.0);
        const std::optional<QUuid> found =
            findIdenticalPalette(incomingName, incoming, {other, stored});
        if (c.found) {
            EXPECT_EQ(found, stored.id) << c.what;
        } else {
            EXPECT_FALSE(found) << c.what;
        }
    }
}

TEST(FindIdenticalPalette, AnswersTheFirstMatchInListOrder) {
    const ColorTemplate first = ColorTemplate::makeNew(incomingName, incoming, 1.0);
    const ColorTemplate second = ColorTemplate::makeNew(incomingName, incoming, 2.0);
    EXPECT_EQ(findIdenticalPalette(incomingName, incoming, {first, second}), first.id);
    EXPECT_EQ(findIdenticalPalette(incomingName, incoming, {second, first}), second.id);
    EXPECT_FALSE(findIdenticalPalette(incomingName, incoming, {}));
    // An empty palette is identical to an empty palette of the same name.
    const ColorTemplate empty = ColorTemplate::makeNew(u""_s, {}, 1.0);
    EXPECT_EQ(findIdenticalPalette(u""_s, {}, {first, empty}), empty.id);
}

} // namespace
} // namespace hueshelf::testing
