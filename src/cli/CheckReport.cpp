#include "cli/CheckReport.h"

#include "cli/TextTable.h"
#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"

#include <QJsonArray>
#include <QJsonValue>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {

namespace {

QJsonValue optionalText(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

} // namespace

CheckReport::CheckReport(std::optional<QString> name, QList<ColorItem> colors)
    : m_name(std::move(name)), m_colors(std::move(colors)),
      m_issues(PaletteCheck::issuesWithMoves(m_colors)) {}

int CheckReport::indexOf(const QUuid& id) const {
    for (qsizetype i = 0; i < m_colors.size(); ++i) {
        if (m_colors.at(i).id == id)
            return static_cast<int>(i);
    }
    return -1;
}

std::optional<QString> CheckReport::fixedHex(const PaletteCheck::Issue& issue) const {
    const QList<ColorItem> after = PaletteCheck::applyFix(issue, m_colors);
    if (after.size() != m_colors.size())
        return std::nullopt;
    for (qsizetype i = 0; i < after.size(); ++i) {
        if (after.at(i).hex != m_colors.at(i).hex)
            return after.at(i).hex;
    }
    return std::nullopt; // no fix, or one that changes nothing
}

QJsonObject CheckReport::issueJson(const PaletteCheck::Issue& issue) const {
    QJsonObject object{{u"id"_s, issue.id}, {u"kind"_s, kindIdentifier(issue.kind)}};
    if (const auto* readability = std::get_if<PaletteCheck::Readability>(&issue.kind))
        object.insert(u"level"_s, ColorUtils::contrastLevelIdentifier(readability->level));
    if (const auto* lookAlike = std::get_if<PaletteCheck::LookAlike>(&issue.kind))
        object.insert(u"vision"_s, ColorVisionSimulation::identifier(lookAlike->vision));
    object.insert(u"color"_s, indexOf(issue.color.id));
    object.insert(u"other"_s, indexOf(issue.other.id));
    object.insert(u"canFix"_s, issue.canFix);
    object.insert(u"text"_s, issue.text);
    if (issue.move) {
        object.insert(u"move"_s, QJsonObject{{u"color"_s, indexOf(issue.move->colorID)},
                                             {u"fromHex"_s, issue.move->fromHex},
                                             {u"toHex"_s, issue.move->toHex},
                                             {u"lightnessChange"_s, issue.move->lightnessChange}});
    } else {
        object.insert(u"move"_s, QJsonValue::Null);
    }
    object.insert(u"fixedHex"_s, optionalText(fixedHex(issue)));
    return object;
}

QJsonObject CheckReport::toJson() const {
    QJsonArray colors;
    for (const ColorItem& color : m_colors) {
        colors.append(QJsonObject{
            {u"name"_s, color.name}, {u"hex"_s, color.hex}, {u"isLocked"_s, color.isLocked}});
    }
    QJsonArray issues;
    for (const PaletteCheck::Issue& issue : m_issues)
        issues.append(issueJson(issue));

    const ColorUtils::HarmonyAnalysis harmony = ColorUtils::analyzeHarmony(m_colors);
    QJsonArray notes;
    for (const ColorUtils::HarmonyNote& note : harmony.notes)
        notes.append(QJsonObject{{u"type"_s, note.type}, {u"message"_s, note.message}});
    QJsonArray roles;
    for (const ColorUtils::RoleSuggestion& suggestion : ColorUtils::roleSuggestions(m_colors)) {
        if (suggestion.suggestions.isEmpty())
            continue;
        roles.append(QJsonObject{{u"color"_s, indexOf(suggestion.colorId)},
                                 {u"role"_s, suggestion.suggestions.constFirst()}});
    }

    return QJsonObject{
        {u"name"_s, optionalText(m_name)},
        {u"colors"_s, colors},
        {u"summary"_s, PaletteCheck::fixCountText(static_cast<int>(m_issues.size()))},
        {u"issues"_s, issues},
        {u"midToneNotes"_s, QJsonArray::fromStringList(PaletteCheck::midToneNotes(m_colors))},
        {u"scheme"_s, harmony.scheme},
        {u"schemeName"_s, optionalText(ColorUtils::schemeDisplayName(harmony.scheme))},
        {u"harmonyNotes"_s, notes},
        {u"roles"_s, roles},
    };
}

QString CheckReport::toText() const {
    QString text = m_name.value_or(u"Colors"_s) + u" \u2014 "_s +
                   PaletteCheck::fixCountText(static_cast<int>(m_issues.size())) + u'\n';
    for (const PaletteCheck::Issue& issue : m_issues) {
        text += u"  - "_s + issue.text + u'\n';
        const std::optional<QString> fixed = fixedHex(issue);
        if (fixed) {
            const ColorItem& changed =
                m_colors.at(indexOf(issue.move ? issue.move->colorID : issue.color.id));
            text +=
                u"    Fix: "_s + changed.name + u' ' + changed.hex + u" \u2192 "_s + *fixed + u'\n';
        } else if (PaletteCheck::isLookAlike(issue.kind)) {
            text += u"    "_s + PaletteCheck::lookAlikeNote(issue, false) + u'\n';
        }
    }

    QStringList notes;
    if (const std::optional<QString> scheme = ColorUtils::schemeDisplayName(m_colors))
        notes << *scheme + u'.';
    notes << PaletteCheck::midToneNotes(m_colors) << ColorUtils::harmonyMessages(m_colors);
    if (!notes.isEmpty()) {
        text += u"\nWorth knowing\n"_s;
        for (const QString& note : notes)
            text += u"  "_s + note + u'\n';
    }

    TextTable roles(u"  "_s);
    for (const ColorUtils::RoleSuggestion& suggestion : ColorUtils::roleSuggestions(m_colors)) {
        if (!suggestion.suggestions.isEmpty())
            roles.addRow(
                {suggestion.colorHex, suggestion.colorName, suggestion.suggestions.constFirst()});
    }
    if (!roles.isEmpty())
        text += u"\nRoles\n"_s + roles.render();
    return text;
}

QString CheckReport::kindIdentifier(const PaletteCheck::Kind& kind) {
    if (PaletteCheck::isReadability(kind))
        return u"readability"_s;
    if (PaletteCheck::isLookAlike(kind))
        return u"lookAlike"_s;
    return u"nearDuplicate"_s;
}

} // namespace hueshelf::cli
