#include "model/TemplateJson.h"

#include "model/ContentHash.h"

#include <QJsonDocument>

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

QByteArray encodeTemplates(const QList<ColorTemplate>& templates) {
    return QJsonDocument(templatesToJson(templates)).toJson(QJsonDocument::Compact);
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
    return QJsonDocument(shadowStatesToJson(states)).toJson(QJsonDocument::Compact);
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
