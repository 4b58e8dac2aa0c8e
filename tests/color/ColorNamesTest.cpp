#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

// Readable codes are named by the command-line differential test, limits included; what it
// can't hand over is text that isn't a code.
TEST(ColorNames, UnreadableTextIsANewColor) {
    for (const QString& text : {u"#FFF"_s, u""_s, u"rgb(1, 2, 3)"_s})
        EXPECT_EQ(colorName(text), u"New Color"_s) << text.toStdString();
}

TEST(ColorNames, HueNamesAtEachBoundary) {
    // Each limit from both sides; hue is brought into 0...360 first.
    const double below = 1e-9;
    const std::pair<double, QString> vivid[] = {
        {0, u"Red"_s},     {350 - below, u"Pink"_s}, {35 - below, u"Coral"_s},
        {35, u"Orange"_s}, {45, u"Gold"_s},          {55, u"Yellow"_s},
        {145, u"Teal"_s},  {165, u"Cyan"_s},         {185, u"Sky"_s},
        {205, u"Blue"_s},  {250, u"Indigo"_s},       {270, u"Purple"_s},
        {320, u"Pink"_s},  {-10, u"Red"_s},          {-30, u"Pink"_s},
        {370, u"Red"_s},   {720 + 200, u"Sky"_s},    {-720 - 160, u"Sky"_s},
    };
    for (const auto& [h, name] : vivid)
        EXPECT_EQ(hueName(h, 0.9, 0.5), name) << h;
    EXPECT_EQ(hueName(std::numeric_limits<double>::quiet_NaN(), 0.9, 0.5), u"Color"_s);
    struct Case {
        double h, s, l;
        QString name;
    };
    const Case cases[] = {
        {0, 0.49, 0.65, u"Rose"_s}, // Rose needs s below 0.5 and l from 0.65
        {0, 0.5, 0.65, u"Red"_s},
        {0, 0.49, 0.65 - below, u"Red"_s},
        {350, 0.49, 0.7, u"Rose"_s},
        {10 - below, 0.3, 0.5, u"Red"_s},
        {10, 0.6, 0.5, u"Red"_s},
        {10, 0.6 - below, 0.5, u"Coral"_s},
        {70, 0.5, 0.5, u"Lime"_s},
        {70, 0.5 - below, 0.5, u"Yellow"_s},
        {85 - below, 0.1, 0.5, u"Yellow"_s},
        {85, 0.1, 0.5, u"Lime"_s},
        {105, 0.9, 0.35 - below, u"Forest"_s},
        {105, 0.9, 0.35, u"Green"_s},
        {145 - below, 0.9, 0.2, u"Forest"_s},
        {290, 0.9, 0.6, u"Orchid"_s},
        {290, 0.9, 0.6 - below, u"Magenta"_s},
        {320 - below, 0.9, 0.9, u"Orchid"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(hueName(c.h, c.s, c.l), c.name) << c.h << ' ' << c.s << ' ' << c.l;
}

TEST(ColorNames, ModifierRowsAndColumnsIncludeTheirLowerLimit) {
    const double below = 1e-9;
    const double rows[] = {0.8, 0.65, 0.45, 0.3};
    const double columns[] = {0.7, 0.65, 0.6, 0.5, 0.35, 0.25};
    const char16_t* words[5][7] = {
        {u"Bright ", u"Bright ", u"Light ", u"Light ", u"Light ", u"Pale ", u"Pale "},
        {u"Vivid ", u"Bright ", u"Bright ", u"Bright ", u"Soft ", u"Soft ", u"Muted "},
        {u"Bold ", u"Rich ", u"Rich ", u"Rich ", u"Dusty ", u"Dusty ", u"Muted "},
        {u"Deep ", u"Deep ", u"Deep ", u"Dark ", u"Dark ", u"Muted ", u"Muted "},
        {u"Deep ", u"Deep ", u"Deep ", u"Deep ", u"Dark ", u"Dark ", u"Dark "},
    };
    // Each cell is probed at its lower corner, and just below it, which is the next cell.
    for (int row = 0; row < 5; ++row) {
        const double l = row < 4 ? rows[row] : 0.0;
        for (int column = 0; column < 7; ++column) {
            const double s = column < 6 ? columns[column] : 0.0;
            SCOPED_TRACE(testing::Message() << "s " << s << " l " << l);
            EXPECT_EQ(nameModifier(s, l), QString::fromUtf16(words[row][column]));
            if (column < 6) {
                EXPECT_EQ(nameModifier(s - below, l), QString::fromUtf16(words[row][column + 1]));
            }
            if (row < 4) {
                EXPECT_EQ(nameModifier(s, l - below), QString::fromUtf16(words[row + 1][column]));
            }
        }
    }
    EXPECT_EQ(nameModifier(1.0, 1.0), u"Bright "_s);
}

TEST(ColorNames, UniqueNameNumbersPastTakenNames) {
    struct Case {
        QString wanted;
        QStringList existing;
        QString result;
    };
    const Case cases[] = {
        {u"Blue"_s, {u"blue"_s, u"BLUE 2"_s}, u"Blue 3"_s},
        {u"Blue"_s, {}, u"Blue"_s},
        {u"  Blue\t"_s, {u"Red"_s}, u"Blue"_s}, // trimmed, own case kept
        {u"   "_s, {}, u"Color"_s},
        {u""_s, {u"color"_s}, u"Color 2"_s},
        {u"blue"_s, {u"  Blue  "_s, u"\tblue 2"_s}, u"blue 3"_s}, // existing names trimmed too
        {u"Blue"_s, {u"Blue 2"_s}, u"Blue"_s},                    // gaps aren't filled
        {u"Blue"_s, {u"Blue"_s, u"Blue 3"_s}, u"Blue 2"_s},
        // Newlines are not blanks: they stay and take part in the comparison.
        {u"Blue\n"_s, {u"Blue"_s}, u"Blue\n"_s},
        {u"Blue"_s, {u"Blue\n"_s}, u"Blue"_s},
        {u"Grün"_s, {u"GRÜN"_s}, u"Grün 2"_s}, // lower-casing beyond ASCII
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.wanted.toStdString());
        EXPECT_EQ(uniqueName(c.wanted, c.existing), c.result);
    }
}

} // namespace
