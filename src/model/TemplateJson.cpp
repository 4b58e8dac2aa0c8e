#include "model/TemplateJson.h"

#include "model/ContentHash.h"

#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace hueshelf::TemplateJson {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNilUuid("00000000-0000-0000-0000-000000000000");

// Reads fields of one JSON object and remembers whether anything was wrong, so that a record
// reader can take every field in turn and decide once at the end.
class FieldReader {
public:
    explicit FieldReader(const QJsonObject& object) : m_object(object) {}

    bool failed() const { return m_failed; }

    QString requiredString(QLatin1StringView key) {
        const QJsonValue value = m_object.value(key);
        if (!value.isString())
            return fail<QString>();
        return value.toString();
    }

    QUuid requiredUuid(QLatin1StringView key) {
        const QJsonValue value = m_object.value(key);
        if (!value.isString())
            return fail<QUuid>();
        const std::optional<QUuid> id = uuidFromText(value.toString());
        if (!id)
            return fail<QUuid>();
        return *id;
    }

    QJsonArray requiredArray(QLatin1StringView key) {
        const QJsonValue value = m_object.value(key);
        if (!value.isArray())
            return fail<QJsonArray>();
        return value.toArray();
    }

    std::optional<double> requiredDouble(QLatin1StringView key) {
        const QJsonValue value = m_object.value(key);
        if (!value.isDouble())
            return fail<std::optional<double>>();
        return value.toDouble();
    }

    std::optional<qint64> requiredInteger(QLatin1StringView key) {
        const QJsonValue value = m_object.value(key);
        if (!value.isDouble())
            return fail<std::optional<qint64>>();
        // toInteger answers its fallback for anything without an exact integer value; two
        // different fallbacks tell that apart from a stored value equal to either of them.
        const qint64 first = value.toInteger(0);
        const qint64 second = value.toInteger(1);
        if (first != second)
            return fail<std::optional<qint64>>();
        return first;
    }

    std::optional<QString> optionalString(QLatin1StringView key) {
        if (isMissing(key))
            return std::nullopt;
        return requiredString(key);
    }

    bool optionalBool(QLatin1StringView key) {
        if (isMissing(key))
            return false;
        const QJsonValue value = m_object.value(key);
        if (!value.isBool())
            return fail<bool>();
        return value.toBool();
    }

    std::optional<double> optionalDouble(QLatin1StringView key) {
        if (isMissing(key))
            return std::nullopt;
        return requiredDouble(key);
    }

    std::optional<qint64> optionalInteger(QLatin1StringView key) {
        if (isMissing(key))
            return std::nullopt;
        return requiredInteger(key);
    }

private:
    bool isMissing(QLatin1StringView key) const {
        const QJsonValue value = m_object.value(key);
        return value.isUndefined() || value.isNull();
    }

    template <typename T>
    T fail() {
        m_failed = true;
        return T();
    }

    const QJsonObject& m_object;
    bool m_failed = false;
};

// The encoder writes the bytes that QJsonDocument's compact form gives for the objects that
// templateToJson builds (keys in sorted order, Qt's escapes and number forms) without building
// those objects: every save encodes every palette, and the generic path costs tens of
// microseconds per palette.

char hexDigit(unsigned value) {
    return char(value < 10 ? '0' + value : 'a' + value - 10);
}

char* putUnicodeEscape(char* cursor, char16_t unit) {
    *cursor++ = '\\';
    *cursor++ = 'u';
    *cursor++ = hexDigit((unit >> 12) & 0xFu);
    *cursor++ = hexDigit((unit >> 8) & 0xFu);
    *cursor++ = hexDigit((unit >> 4) & 0xFu);
    *cursor++ = hexDigit(unit & 0xFu);
    return cursor;
}

// Control characters, quotes and backslashes escaped, everything else as UTF-8; a surrogate
// without its partner can't be UTF-8 and is written as a \u escape, as Qt does.
void appendString(QByteArray& out, const QString& text) {
    const qsizetype start = out.size();
    // Six bytes per unit is the longest form any unit takes.
    out.resize(start + 2 + 6 * text.size());
    char* cursor = out.data() + start;
    *cursor++ = '"';
    const char16_t* unit = QStringView(text).utf16();
    const char16_t* const end = unit + text.size();
    while (unit != end) {
        const char16_t u = *unit++;
        if (u < 0x80) {
            if (u >= 0x20 && u != u'"' && u != u'\\') {
                *cursor++ = char(u);
                continue;
            }
            *cursor++ = '\\';
            switch (u) {
            case u'"':
                *cursor++ = '"';
                break;
            case u'\\':
                *cursor++ = '\\';
                break;
            case 0x08:
                *cursor++ = 'b';
                break;
            case 0x0C:
                *cursor++ = 'f';
                break;
            case 0x0A:
                *cursor++ = 'n';
                break;
            case 0x0D:
                *cursor++ = 'r';
                break;
            case 0x09:
                *cursor++ = 't';
                break;
            default:
                *cursor++ = 'u';
                *cursor++ = '0';
                *cursor++ = '0';
                *cursor++ = hexDigit(u >> 4);
                *cursor++ = hexDigit(u & 0xFu);
                break;
            }
        } else if (u < 0x800) {
            *cursor++ = char(0xC0 | (u >> 6));
            *cursor++ = char(0x80 | (u & 0x3F));
        } else if (!QChar::isSurrogate(u)) {
            *cursor++ = char(0xE0 | (u >> 12));
            *cursor++ = char(0x80 | ((u >> 6) & 0x3F));
            *cursor++ = char(0x80 | (u & 0x3F));
        } else if (QChar::isHighSurrogate(u) && unit != end && QChar::isLowSurrogate(*unit)) {
            const char32_t code = QChar::surrogateToUcs4(u, *unit++);
            *cursor++ = char(0xF0 | (code >> 18));
            *cursor++ = char(0x80 | ((code >> 12) & 0x3F));
            *cursor++ = char(0x80 | ((code >> 6) & 0x3F));
            *cursor++ = char(0x80 | (code & 0x3F));
        } else {
            cursor = putUnicodeEscape(cursor, u);
        }
    }
    *cursor++ = '"';
    out.resize(cursor - out.constData());
}

void appendInteger(QByteArray& out, qint64 value) {
    char digits[24];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, result.ptr - digits);
}

// Integral values up to 2^53 as plain integers (so -0 is "0"), other finite values in the
// shortest form that reads back the same, and null for what JSON can't hold.
void appendDouble(QByteArray& out, double value) {
    constexpr double kExactIntegers = 9007199254740992.0; // 2^53
    if (!std::isfinite(value))
        out += QByteArrayView("null");
    else if (std::trunc(value) == value && std::abs(value) <= kExactIntegers)
        appendInteger(out, qint64(value));
    else
        out += QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
}

void appendBool(QByteArray& out, bool value) {
    out += value ? QByteArrayView("true") : QByteArrayView("false");
}

void appendId(QByteArray& out, const QUuid& id) {
    out += '"';
    appendUuidText(out, id);
    out += '"';
}

void appendColor(QByteArray& out, const ColorItem& color) {
    out += QByteArrayView("{\"dividerBefore\":");
    appendBool(out, color.dividerBefore);
    out += QByteArrayView(",\"dividerLabel\":");
    appendString(out, color.dividerLabel);
    out += QByteArrayView(",\"hex\":");
    appendString(out, color.hex);
    out += QByteArrayView(",\"id\":");
    appendId(out, color.id);
    out += QByteArrayView(",\"isAutoNamed\":");
    appendBool(out, color.isAutoNamed);
    out += QByteArrayView(",\"isLocked\":");
    appendBool(out, color.isLocked);
    out += QByteArrayView(",\"name\":");
    appendString(out, color.name);
    out += '}';
}

void appendTemplate(QByteArray& out, const ColorTemplate& palette) {
    out += QByteArrayView("{\"colors\":[");
    for (qsizetype i = 0; i < palette.colors.size(); ++i) {
        if (i > 0)
            out += ',';
        appendColor(out, palette.colors.at(i));
    }
    out += QByteArrayView("],\"contentHash\":");
    appendString(out, palette.contentHash);
    out += QByteArrayView(",\"createdAt\":");
    appendDouble(out, palette.createdAt);
    out += QByteArrayView(",\"id\":");
    appendId(out, palette.id);
    out += QByteArrayView(",\"isLocked\":");
    appendBool(out, palette.isLocked);
    out += QByteArrayView(",\"name\":");
    appendString(out, palette.name);
    out += QByteArrayView(",\"revision\":");
    appendInteger(out, palette.revision);
    out += QByteArrayView(",\"updatedAt\":");
    appendDouble(out, palette.updatedAt);
    if (palette.updatedByDeviceId) {
        out += QByteArrayView(",\"updatedByDeviceId\":");
        appendString(out, *palette.updatedByDeviceId);
    }
    out += '}';
}

// A palette of twelve colours takes about two kilobytes.
qsizetype estimatedSize(const ColorTemplate& palette) {
    return 256 + palette.name.size() + palette.colors.size() * 160;
}

} // namespace

std::optional<QUuid> uuidFromText(const QString& text) {
    // QUuid would also take braces; the stored form never has them.
    if (text.size() != 36)
        return std::nullopt;
    const QUuid id = QUuid::fromString(text);
    if (id.isNull() && text.compare(kNilUuid, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return id;
}

QJsonObject colorItemToJson(const ColorItem& color) {
    QJsonObject object;
    object.insert("id"_L1, uuidText(color.id));
    object.insert("name"_L1, color.name);
    object.insert("hex"_L1, color.hex);
    object.insert("isAutoNamed"_L1, color.isAutoNamed);
    object.insert("isLocked"_L1, color.isLocked);
    object.insert("dividerBefore"_L1, color.dividerBefore);
    object.insert("dividerLabel"_L1, color.dividerLabel);
    return object;
}

QJsonObject templateToJson(const ColorTemplate& palette) {
    QJsonArray colors;
    for (const ColorItem& color : palette.colors)
        colors.append(colorItemToJson(color));
    QJsonObject object;
    object.insert("id"_L1, uuidText(palette.id));
    object.insert("name"_L1, palette.name);
    object.insert("colors"_L1, colors);
    object.insert("createdAt"_L1, palette.createdAt);
    object.insert("updatedAt"_L1, palette.updatedAt);
    if (palette.updatedByDeviceId)
        object.insert("updatedByDeviceId"_L1, *palette.updatedByDeviceId);
    object.insert("revision"_L1, palette.revision);
    object.insert("contentHash"_L1, palette.contentHash);
    object.insert("isLocked"_L1, palette.isLocked);
    return object;
}

QJsonObject shadowStateToJson(const ShadowTemplateState& state) {
    QJsonObject object;
    object.insert("contentHash"_L1, state.contentHash);
    object.insert("revision"_L1, state.revision);
    object.insert("syncedAt"_L1, state.syncedAt);
    return object;
}

std::optional<ColorItem> colorItemFromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    FieldReader read(object);
    ColorItem color;
    color.id = read.requiredUuid("id"_L1);
    color.name = read.requiredString("name"_L1);
    color.hex = read.requiredString("hex"_L1);
    color.isAutoNamed = read.optionalBool("isAutoNamed"_L1);
    color.isLocked = read.optionalBool("isLocked"_L1);
    color.dividerBefore = read.optionalBool("dividerBefore"_L1);
    color.dividerLabel = read.optionalString("dividerLabel"_L1).value_or(QString());
    if (read.failed())
        return std::nullopt;
    return color;
}

std::optional<ColorTemplate> templateFromJson(const QJsonValue& value, const Clock& clock) {
    const double startedAt = clock.nowMs();
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    FieldReader read(object);
    ColorTemplate palette;
    palette.id = read.requiredUuid("id"_L1);
    palette.name = read.requiredString("name"_L1);
    const QJsonArray colors = read.requiredArray("colors"_L1);
    for (const QJsonValue& colorValue : colors) {
        std::optional<ColorItem> color = colorItemFromJson(colorValue);
        if (!color)
            return std::nullopt;
        palette.colors.append(std::move(*color));
    }
    palette.createdAt = read.optionalDouble("createdAt"_L1).value_or(startedAt);
    palette.updatedAt = read.optionalDouble("updatedAt"_L1).value_or(startedAt);
    palette.updatedByDeviceId = read.optionalString("updatedByDeviceId"_L1);
    palette.revision = read.optionalInteger("revision"_L1).value_or(1);
    const std::optional<QString> storedHash = read.optionalString("contentHash"_L1);
    palette.isLocked = read.optionalBool("isLocked"_L1);
    if (read.failed())
        return std::nullopt;
    // Whatever hash was stored is kept as read, right or wrong: the next save corrects it.
    palette.contentHash =
        storedHash ? *storedHash : computeContentHash(palette.name, palette.colors);
    return palette;
}

std::optional<ShadowTemplateState> shadowStateFromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    FieldReader read(object);
    ShadowTemplateState state;
    state.contentHash = read.requiredString("contentHash"_L1);
    state.revision = read.requiredInteger("revision"_L1).value_or(0);
    state.syncedAt = read.requiredDouble("syncedAt"_L1).value_or(0.0);
    if (read.failed())
        return std::nullopt;
    return state;
}

QJsonArray templatesToJson(const QList<ColorTemplate>& templates) {
    QJsonArray array;
    for (const ColorTemplate& palette : templates)
        array.append(templateToJson(palette));
    return array;
}

QByteArray encodeTemplate(const ColorTemplate& palette) {
    QByteArray out;
    out.reserve(estimatedSize(palette));
    appendTemplate(out, palette);
    return out;
}

QByteArray encodeTemplates(const QList<ColorTemplate>& templates) {
    QByteArray out;
    qsizetype estimate = 2;
    for (const ColorTemplate& palette : templates)
        estimate += estimatedSize(palette) + 1;
    out.reserve(estimate);
    out += '[';
    for (qsizetype i = 0; i < templates.size(); ++i) {
        if (i > 0)
            out += ',';
        appendTemplate(out, templates.at(i));
    }
    out += ']';
    return out;
}

QByteArray joinEncoded(const QList<QByteArray>& encodedTemplates) {
    qsizetype size = 2;
    for (const QByteArray& encoded : encodedTemplates)
        size += encoded.size() + 1;
    QByteArray out;
    out.reserve(size);
    out += '[';
    for (qsizetype i = 0; i < encodedTemplates.size(); ++i) {
        if (i > 0)
            out += ',';
        out += encodedTemplates.at(i);
    }
    out += ']';
    return out;
}

std::optional<QList<ColorTemplate>> templatesFromJson(const QJsonArray& array, const Clock& clock) {
    QList<ColorTemplate> templates;
    templates.reserve(array.size());
    for (const QJsonValue& value : array) {
        std::optional<ColorTemplate> palette = templateFromJson(value, clock);
        if (!palette)
            return std::nullopt;
        templates.append(std::move(*palette));
    }
    return templates;
}

std::optional<QList<ColorTemplate>> decodeTemplates(const QByteArray& json, const Clock& clock) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    return templatesFromJson(document.array(), clock);
}

QJsonObject shadowStatesToJson(const QMap<QUuid, ShadowTemplateState>& states) {
    QJsonObject object;
    for (auto it = states.cbegin(); it != states.cend(); ++it)
        object.insert(uuidText(it.key()), shadowStateToJson(it.value()));
    return object;
}

QByteArray encodeShadowStates(const QMap<QUuid, ShadowTemplateState>& states) {
    // Building a QJsonObject inserts every key into a sorted array, which is quadratic in the
    // number of palettes; the ids are written directly, in the order of their text as the
    // generic path would have them (QUuid's own order puts the variant first).
    QList<std::pair<QByteArray, const ShadowTemplateState*>> entries;
    entries.reserve(states.size());
    for (auto it = states.cbegin(); it != states.cend(); ++it) {
        QByteArray key;
        appendUuidText(key, it.key());
        entries.append({std::move(key), &it.value()});
    }
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    QByteArray out;
    out.reserve(2 + entries.size() * 128);
    out += '{';
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const ShadowTemplateState& state = *entries.at(i).second;
        if (i > 0)
            out += ',';
        out += '"';
        out += entries.at(i).first;
        out += QByteArrayView("\":{\"contentHash\":");
        appendString(out, state.contentHash);
        out += QByteArrayView(",\"revision\":");
        appendInteger(out, state.revision);
        out += QByteArrayView(",\"syncedAt\":");
        appendDouble(out, state.syncedAt);
        out += '}';
    }
    out += '}';
    return out;
}

std::optional<QMap<QUuid, ShadowTemplateState>> shadowStatesFromJson(const QJsonObject& object) {
    QMap<QUuid, ShadowTemplateState> states;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const std::optional<QUuid> id = uuidFromText(it.key());
        const std::optional<ShadowTemplateState> state = shadowStateFromJson(it.value());
        if (!id || !state)
            return std::nullopt;
        states.insert(*id, *state);
    }
    return states;
}

std::optional<QMap<QUuid, ShadowTemplateState>> decodeShadowStates(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return shadowStatesFromJson(document.object());
}

} // namespace hueshelf::TemplateJson
