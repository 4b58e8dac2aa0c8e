// The sync reader's own UUID parser must take exactly the texts the store's reader takes.

#include "sync/SyncUuidText.h"

#include "SyncTestSupport.h"
#include "model/TemplateJson.h"

#include <gtest/gtest.h>

#include <random>

namespace hueshelf::testing {
namespace {

TEST(CanonicalUuid, AgreesWithTheStoresReaderOnHostileTexts) {
    const QString canonical = u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s;
    const char16_t replacements[] = {u'0',
                                     u'9',
                                     u'a',
                                     u'f',
                                     u'g',
                                     u'F',
                                     u'G',
                                     u'-',
                                     u' ',
                                     u'{',
                                     u'}',
                                     u'x',
                                     0xFF10 /* full-width zero */,
                                     0};
    std::mt19937 random(5);
    int accepted = 0;
    for (int i = 0; i < 20000; ++i) {
        QString text = canonical;
        for (int edits = int(random() % 3); edits > 0; --edits) {
            const qsizetype at = qsizetype(random() % std::uint32_t(text.size()));
            switch (random() % 4) {
            case 0:
                text.remove(at, 1);
                break;
            case 1:
                text.insert(at, QChar(replacements[random() % std::size(replacements)]));
                break;
            default:
                text[at] = QChar(replacements[random() % std::size(replacements)]);
                break;
            }
        }
        if (random() % 2)
            text = text.toLower();
        const std::optional<QUuid> ours = parseCanonicalUuid(text);
        ASSERT_EQ(ours, TemplateJson::uuidFromText(text)) << text.toStdString();
        accepted += ours.has_value();
    }
    // Both outcomes must have been seen plenty, or the comparison proves little.
    EXPECT_GT(accepted, 2000);
    EXPECT_LT(accepted, 18000);
}

TEST(CanonicalUuid, ReadsTheNilAndMaxIds) {
    EXPECT_EQ(parseCanonicalUuid(u"00000000-0000-0000-0000-000000000000"), QUuid());
    EXPECT_EQ(parseCanonicalUuid(u"ffffffff-FFFF-ffff-FFFF-ffffffffffff"),
              QUuid(u"FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"_s));
    EXPECT_EQ(parseCanonicalUuid(u"{AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE}"), std::nullopt);
}

} // namespace
} // namespace hueshelf::testing
