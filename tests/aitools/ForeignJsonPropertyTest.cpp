// Whatever a user's settings file holds, connecting and then disconnecting a tool gives back
// every value it held: checked on random documents by Qt's own parser (independent of the one
// that edits the file), and every number by its exact text.

#include "AIToolTestSupport.h"
#include "aitools/AIToolConfigWriter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <random>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

const QString kTopKey = u"mcpServers"_s;

// Writes random JSON text, remembering the number literals it wrote.
class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : m_random(seed) {}

    QByteArray object(int depth, bool topLevel) {
        QByteArray out = "{";
        const int count = pick(0, topLevel ? 6 : 4);
        for (int i = 0; i < count; ++i) {
            if (i > 0)
                out += space() + ',';
            // Distinct keys: a repeated key is the file's own ambiguity, not a value to keep.
            out += space() + string(QString::number(i) + u'_' + text()) + space() + ':' + space();
            out += value(depth + 1);
        }
        if (topLevel && pick(0, 1)) {
            // The servers' object, with others' entries but never ours.
            out += QByteArray(count > 0 ? "," : "") + "\"mcpServers\":" + object(depth + 1, false);
        }
        return out + space() + '}';
    }

    const QList<QByteArray>& numbers() const { return m_numbers; }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    QByteArray space() {
        static const char* const spaces[] = {"", "", " ", "\n  ", "\t", "\r\n"};
        return spaces[pick(0, 5)];
    }

    QByteArray value(int depth) {
        switch (pick(0, depth > 3 ? 3 : 5)) {
        case 0:
            return number();
        case 1:
            return string(text());
        case 2: {
            static const char* const words[] = {"true", "false", "null"};
            return words[pick(0, 2)];
        }
        case 3:
            return number();
        case 4: {
            QByteArray out = "[";
            const int count = pick(0, 4);
            for (int i = 0; i < count; ++i)
                out += QByteArray(i > 0 ? "," : "") + space() + value(depth + 1);
            return out + space() + ']';
        }
        default:
            return object(depth, false);
        }
    }

    QByteArray digits(int count) {
        QByteArray out = QByteArray::number(pick(1, 9));
        for (int i = 1; i < count; ++i)
            out += char('0' + pick(0, 9));
        return out;
    }

    QByteArray number() {
        QByteArray literal;
        switch (pick(0, 5)) {
        case 0:
            literal = QByteArray::number(pick(-100000, 100000));
            break;
        case 1: // beyond 2^53, and beyond 64 bits
            literal = (pick(0, 1) ? "-" : "") + digits(pick(17, 32));
            break;
        case 2: // more fraction digits than a double holds
            literal = digits(pick(1, 3)) + '.' + digits(pick(1, 25));
            break;
        case 3:
            literal = digits(1) + '.' + digits(pick(1, 4)) + (pick(0, 1) ? "e" : "E") +
                      (pick(0, 1) ? "-" : "+") + QByteArray::number(pick(0, 300));
            break;
        case 4:
            literal = "0." + QByteArray(pick(0, 5), '0') + digits(pick(1, 6));
            break;
        default:
            literal = QByteArray::number(std::numeric_limits<qint64>::max() - pick(0, 9));
            break;
        }
        m_numbers.append(literal);
        return literal;
    }

    QString text() {
        static const char16_t pool[] = {u'a', u'Z', u'/', u'"', u'\\',  u' ',   u'\n',
                                        0x01, 0x1F, 0x7F, 0xE9, 0x20AC, 0xFF01, 0x2028};
        QString out;
        const int count = pick(0, 8);
        for (int i = 0; i < count; ++i) {
            if (pick(0, 9) == 0)
                out += u"😀"_s;
            else
                out += QChar(pool[pick(0, int(std::size(pool)) - 1)]);
        }
        return out;
    }

    // As a user's editor might write it: raw UTF-8 where allowed, or \u escapes (a character
    // beyond U+FFFF as its escaped surrogate pair).
    QByteArray string(const QString& value) {
        QByteArray out = "\"";
        for (const char32_t code : value.toUcs4()) {
            if (code == U'"' || code == U'\\') {
                out += '\\';
                out += char(code);
            } else if (code < 0x20 || pick(0, 4) == 0) {
                for (const QChar unit : QString::fromUcs4(&code, 1))
                    out += "\\u" + QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
            } else {
                out += QString::fromUcs4(&code, 1).toUtf8();
            }
        }
        return out + '"';
    }

    std::mt19937 m_random;
    QList<QByteArray> m_numbers;
};

TEST(ForeignJsonProperty, connectingThenDisconnectingKeepsEveryValue) {
    for (unsigned seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(seed);
        RandomDocument generator(seed);
        const QByteArray original = generator.object(0, true);
        QJsonParseError error{};
        QJsonObject expected = QJsonDocument::fromJson(original, &error).object();
        ASSERT_EQ(error.error, QJsonParseError::NoError) << original.toStdString();

        const Scratch scratch;
        const QString file = scratch.path(u"mcp.json"_s);
        scratch.write(u"mcp.json"_s, original);
        const ForeignJson entry = AIToolConfigWriter::makeEntry(
            AIToolRegistry::EntryStyle::standard, u"/usr/bin/hueshelf-mcp"_s, u"cursor"_s);
        ASSERT_EQ(AIToolConfigWriter::mergeJSONEntry(file, kTopKey, u"hueshelf"_s, entry),
                  std::nullopt);
        ASSERT_EQ(AIToolConfigWriter::removeJSONEntry(file, kTopKey, u"hueshelf"_s), std::nullopt);

        const QByteArray written = scratch.read(u"mcp.json"_s).value_or(QByteArray());
        // The servers' object stays behind, empty, where there was none.
        if (!expected.contains(kTopKey))
            expected.insert(kTopKey, QJsonObject());
        EXPECT_EQ(QJsonDocument::fromJson(written).object(), expected) << original.toStdString();
        for (const QByteArray& number : generator.numbers())
            EXPECT_TRUE(written.contains(number)) << number.toStdString();
        EXPECT_EQ(scratch.read(u"mcp.json.hueshelf-backup"_s), original);
    }
}

} // namespace
} // namespace hueshelf::testing
