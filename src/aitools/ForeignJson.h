#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace hueshelf {

// A JSON value of another program's settings file, held so that writing it back changes no
// value: numbers keep their text (64-bit integers, integers too long for 64 bits, fractions
// with more digits than a double holds), strings keep every character. Object keys are kept
// sorted in UTF-16 code-unit order, QString's own order: unlike UTF-8 byte order it puts
// characters beyond U+FFFF (surrogate pairs) before U+E000..U+FFFF. A key given twice keeps its
// last value, as the JavaScript reader of most of these tools does.
class ForeignJson {
public:
    enum class Kind { null, boolean, number, string, array, object };
    struct Member;

    // Deeper nesting than this is refused by `parse`, which keeps printing and destruction
    // within a modest stack.
    static constexpr int maxDepth = 512;

    ForeignJson() = default; // null
    static ForeignJson boolean(bool value);
    // `text` must be a JSON number as it stands in a file.
    static ForeignJson number(QByteArray text);
    static ForeignJson string(QString value);
    static ForeignJson array(std::vector<ForeignJson> items = {});
    static ForeignJson object();

    // Strict JSON (no comments, no trailing commas, nothing after the value, valid UTF-8; a
    // leading UTF-8 byte-order mark is skipped). Nothing for anything else, also for a number
    // too large for the widest floating type of the machine.
    static std::optional<ForeignJson> parse(const QByteArray& bytes);

    // The pretty form: two spaces per level, " : " between key and value, keys in the sorted
    // order, every solidus as "\/", empty containers as "{}" and "[]", no final line feed.
    QByteArray prettyPrinted() const;

    Kind kind() const { return m_kind; }
    bool isObject() const { return m_kind == Kind::object; }
    bool isString() const { return m_kind == Kind::string; }

    bool booleanValue() const { return m_boolean; }
    const QByteArray& numberText() const { return m_number; }
    const QString& stringValue() const { return m_string; }
    const std::vector<ForeignJson>& items() const { return m_items; }
    void append(ForeignJson item);

    // Object access. `members` are in the sorted order.
    const std::vector<Member>& members() const { return m_members; }
    const ForeignJson* find(const QString& key) const;
    bool contains(const QString& key) const { return find(key) != nullptr; }
    // Puts `value` at `key`, replacing a value that stands there whole.
    void set(const QString& key, ForeignJson value);
    // False if there was no such key.
    bool remove(const QString& key);

    bool operator==(const ForeignJson& other) const;

private:
    Kind m_kind = Kind::null;
    bool m_boolean = false;
    QByteArray m_number;
    QString m_string;
    std::vector<ForeignJson> m_items;
    std::vector<Member> m_members;
};

struct ForeignJson::Member {
    QString key;
    ForeignJson value;

    bool operator==(const Member&) const = default;
};

} // namespace hueshelf
