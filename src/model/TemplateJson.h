#pragma once

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "model/ShadowTemplateState.h"
#include "util/Clock.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QUuid>

#include <optional>

namespace hueshelf {

// The JSON forms of the palette records, as stored in the preferences file and read back from
// it (and from other processes of the product that write the same file).
//
// Writing: every key always, except updatedByDeviceId which is left out when absent. Ids are
// written as 36 upper-case characters.
//
// Reading is all or nothing for a list: one missing required key, one value of the wrong type,
// one unreadable id fails the whole list. Values are taken as found, never range-checked or
// normalised (a hex stays in whatever case it was written). Decisions where the form leaves
// room:
//  - JSON null under an optional key reads as if the key were missing, as the other writers
//    of this file treat it; null under a required key is a failure.
//  - revision must be a number with an integral value that fits a signed 64-bit integer
//    (1, 1.0 and 1e3 are fine); 1.5 or 1e300 count as the wrong type. Integers are kept
//    exactly, also above 2^53.
//  - createdAt, updatedAt and syncedAt take any JSON number.
//  - An id must be exactly 8-4-4-4-12 hex digits in either case; braces are refused.
namespace TemplateJson {

// Accepts exactly the canonical 36-character form, in any case.
std::optional<QUuid> uuidFromText(const QString& text);

QJsonObject colorItemToJson(const ColorItem& color);
QJsonObject templateToJson(const ColorTemplate& palette);
QJsonObject shadowStateToJson(const ShadowTemplateState& state);

std::optional<ColorItem> colorItemFromJson(const QJsonValue& value);
// Missing stamps take the clock's time, read once as the record starts.
std::optional<ColorTemplate> templateFromJson(const QJsonValue& value, const Clock& clock);
std::optional<ShadowTemplateState> shadowStateFromJson(const QJsonValue& value);

QJsonArray templatesToJson(const QList<ColorTemplate>& templates);
// Compact UTF-8 JSON with sorted keys: the bytes that go into "colorTemplates". Byte for byte
// what QJsonDocument's compact form of templatesToJson gives, without building it.
QByteArray encodeTemplates(const QList<ColorTemplate>& templates);
// One palette's element of that array.
QByteArray encodeTemplate(const ColorTemplate& palette);
// The array of palettes encoded one by one: the same bytes as encodeTemplates of the list.
QByteArray joinEncoded(const QList<QByteArray>& encodedTemplates);
std::optional<QList<ColorTemplate>> templatesFromJson(const QJsonArray& array, const Clock& clock);
// Anything but a JSON array of valid records gives no list at all.
std::optional<QList<ColorTemplate>> decodeTemplates(const QByteArray& json, const Clock& clock);

// The shadow map is private to this program: an object keyed by upper-case palette id.
QJsonObject shadowStatesToJson(const QMap<QUuid, ShadowTemplateState>& states);
QByteArray encodeShadowStates(const QMap<QUuid, ShadowTemplateState>& states);
std::optional<QMap<QUuid, ShadowTemplateState>> shadowStatesFromJson(const QJsonObject& object);
std::optional<QMap<QUuid, ShadowTemplateState>> decodeShadowStates(const QByteArray& json);

} // namespace TemplateJson
} // namespace hueshelf
