#include "helper/HelperRequests.h"

#include "color/ColorCodeInput.h"
#include "helper/HelperJson.h"
#include "model/StoreSession.h"
#include "model/StoreTexts.h"
#include "model/TemplateJson.h"
#include "model/TemplateNaming.h"
#include "model/WantedColors.h"

#include <QJsonArray>

#include <optional>
#include <variant>

using namespace Qt::StringLiterals;

namespace hueshelf::helper {

namespace {

// The sentence that says what is wrong with a request's field.
struct Problem {
    QString sentence;
};

// A request's field as read: the value, or what is wrong with it.
template <class Value>
using Field = std::variant<Value, Problem>;

template <class Value>
const QString* problemOf(const Field<Value>& field) {
    const Problem* problem = std::get_if<Problem>(&field);
    return problem ? &problem->sentence : nullptr;
}

// Missing and null both mean "not given", as the preferences file's other writers treat null.
bool isAbsent(const QJsonValue& value) {
    return value.isUndefined() || value.isNull();
}

// An optional name: blanks around it go, and a name of blanks only counts as none.
Field<QString> optionalName(const QJsonValue& value, const QString& whose) {
    if (isAbsent(value))
        return QString();
    if (!value.isString())
        return Problem{whose + u" \"name\" must be a string."_s};
    return TemplateNaming::trimmedOfBlanks(value.toString());
}

const ColorTemplate* findTemplate(const QList<ColorTemplate>& templates, const QUuid& id) {
    for (const ColorTemplate& palette : templates) {
        if (palette.id == id)
            return &palette;
    }
    return nullptr;
}

const ColorItem* findColor(const ColorTemplate& palette, const QUuid& id) {
    for (const ColorItem& color : palette.colors) {
        if (color.id == id)
            return &color;
    }
    return nullptr;
}

// The palette addColor names, or none for the active one.
Field<std::optional<QUuid>> wantedPalette(const QJsonValue& value) {
    if (isAbsent(value))
        return std::optional<QUuid>();
    const std::optional<QUuid> id =
        value.isString() ? TemplateJson::uuidFromText(value.toString()) : std::nullopt;
    if (!id)
        return Problem{u"\"paletteId\" must be a palette's id, 36 characters such as "
                       u"\"3F2504E0-4F89-41D3-9A0C-0305E82C3301\"."_s};
    return id;
}

// One entry of createPalette's "colors": its code read, its name as given (maybe none).
Field<WantedColor> wantedColor(const QJsonValue& value, qsizetype index) {
    const QString entry = u"Entry "_s + QString::number(index + 1) + u" of \"colors\""_s;
    if (!value.isObject())
        return Problem{entry + u" must be an object with \"hex\" and an optional \"name\"."_s};
    const QJsonObject object = value.toObject();
    const QJsonValue code = object.value(u"hex"_s);
    if (!code.isString())
        return Problem{entry + u" needs its color code as a string under \"hex\"."_s};
    const std::optional<QString> hex = ColorCodeInput::read(code.toString());
    if (!hex)
        return Problem{entry + u": "_s + ColorCodeInput::unreadableSentence(code.toString())};
    const Field<QString> name = optionalName(object.value(u"name"_s), entry + u"'s"_s);
    if (const QString* problem = problemOf(name))
        return Problem{*problem};
    return WantedColor{*hex, std::get<QString>(name)};
}

// Every entry read before anything is made, so one bad entry refuses the whole palette. Colours
// without a name are named by their code, made unique among the names so far, as the bar names
// the colours it makes.
Field<QList<ColorItem>> wantedColors(const QJsonValue& value) {
    if (!isAbsent(value) && !value.isArray())
        return Problem{u"createPalette needs the palette's colors as a list under \"colors\"."_s};
    const QJsonArray list = value.toArray();
    if (list.isEmpty())
        return Problem{StoreTexts::lastColorRefusal};
    QList<WantedColor> wanted;
    for (qsizetype i = 0; i < list.size(); ++i) {
        Field<WantedColor> color = wantedColor(list.at(i), i);
        if (const QString* problem = problemOf(color))
            return Problem{*problem};
        wanted.append(std::get<WantedColor>(std::move(color)));
    }
    return colorItemsFor(wanted);
}

} // namespace

HelperRequests::HelperRequests(AppPaths paths, QProcessEnvironment env)
    : m_paths(std::move(paths)), m_env(std::move(env)) {}

QJsonObject HelperRequests::handle(const QJsonObject& request) const {
    const QJsonValue type = request.value(u"type"_s);
    QJsonObject reply;
    if (!type.isString()) {
        reply = HelperJson::error(u"The request needs its \"type\" as a string, such as "
                                  u"\"hello\"."_s);
    } else if (type.toString() == u"hello"_s) {
        reply = QJsonObject{{u"type"_s, u"hello"_s},
                            {u"protocol"_s, protocolVersion},
                            {u"version"_s, QStringLiteral(HUESHELF_VERSION)}};
    } else if (type.toString() == u"palettes"_s) {
        reply = palettes();
    } else if (type.toString() == u"addColor"_s) {
        reply = addColor(request);
    } else if (type.toString() == u"createPalette"_s) {
        reply = createPalette(request);
    } else {
        reply = HelperJson::error(u"Unknown request type: "_s + type.toString());
    }
    return HelperJson::answering(request, reply);
}

QJsonObject HelperRequests::palettes() const {
    const StoreSession session(StoreSession::Access::readOnly, m_paths, m_env);
    const ColorStorage& storage = session.storage();
    QJsonArray list;
    for (const ColorTemplate& palette : storage.templates())
        list.append(HelperJson::palette(palette));
    const std::optional<ColorTemplate> active = storage.activeTemplate();
    return QJsonObject{{u"type"_s, u"palettes"_s},
                       {u"activeId"_s, active ? QJsonValue(uuidText(active->id)) : QJsonValue()},
                       {u"palettes"_s, list}};
}

QJsonObject HelperRequests::addColor(const QJsonObject& request) const {
    const QJsonValue code = request.value(u"hex"_s);
    if (!code.isString())
        return HelperJson::error(u"addColor needs the color code as a string under \"hex\"."_s);
    const std::optional<QString> hex = ColorCodeInput::read(code.toString());
    if (!hex)
        return HelperJson::error(ColorCodeInput::unreadableSentence(code.toString()));
    const Field<QString> name = optionalName(request.value(u"name"_s), u"The color's"_s);
    if (const QString* problem = problemOf(name))
        return HelperJson::error(*problem);
    const Field<std::optional<QUuid>> wanted = wantedPalette(request.value(u"paletteId"_s));
    if (const QString* problem = problemOf(wanted))
        return HelperJson::error(*problem);
    const std::optional<QUuid> wantedId = std::get<std::optional<QUuid>>(wanted);

    StoreSession session(StoreSession::Access::readWrite, m_paths, m_env);
    ColorStorage& storage = session.storage();
    const QUuid activeId = storage.activeTemplateId();
    const QUuid targetId = wantedId.value_or(activeId);
    const ColorTemplate* target = findTemplate(storage.templates(), targetId);
    if (!target) {
        return HelperJson::error(wantedId ? u"There is no palette with the id \""_s +
                                                request.value(u"paletteId"_s).toString() + u"\"."_s
                                          : u"There is no active palette to add the color to."_s);
    }

    // One write, the active palette left alone: the bar that reads the file in between must
    // never see another palette chosen for a moment.
    const std::optional<qsizetype> index =
        storage.addColorTo(targetId, *hex, std::get<QString>(name));
    if (!index)
        return HelperJson::error(StoreTexts::addColorsRefusal);
    ColorItem added;
    // Found again: the edit may have detached the list `target` pointed into.
    if (const ColorTemplate* changed = findTemplate(storage.templates(), targetId))
        added = changed->colors.value(*index);
    session.close();

    // As the file holds it after any merge with another process's write.
    if (const ColorTemplate* saved = findTemplate(storage.templates(), targetId)) {
        if (const ColorItem* color = findColor(*saved, added.id))
            added = *color;
    }
    return QJsonObject{{u"type"_s, u"added"_s},
                       {u"paletteId"_s, uuidText(targetId)},
                       {u"color"_s, HelperJson::color(added)}};
}

QJsonObject HelperRequests::createPalette(const QJsonObject& request) const {
    const QJsonValue wantedName = request.value(u"name"_s);
    if (!wantedName.isString())
        return HelperJson::error(
            u"createPalette needs the palette's name as a string under \"name\"."_s);
    const QString name = TemplateNaming::trimmedOfBlanks(wantedName.toString());
    if (name.isEmpty())
        return HelperJson::error(u"The palette's \"name\" is blank; give the palette a name."_s);
    Field<QList<ColorItem>> colors = wantedColors(request.value(u"colors"_s));
    if (const QString* problem = problemOf(colors))
        return HelperJson::error(*problem);

    StoreSession session(StoreSession::Access::readWrite, m_paths, m_env);
    ColorStorage& storage = session.storage();
    const ColorTemplate created =
        storage.createTemplate(name, std::get<QList<ColorItem>>(std::move(colors)));
    session.close();
    const ColorTemplate* saved = findTemplate(storage.templates(), created.id);
    return QJsonObject{{u"type"_s, u"created"_s},
                       {u"palette"_s, HelperJson::palette(saved ? *saved : created)}};
}

} // namespace hueshelf::helper
