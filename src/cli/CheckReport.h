#pragma once

#include "color/PaletteCheck.h"
#include "model/ColorItem.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

namespace hueshelf::cli {

// What `hueshelf check` tells about one list of colours: the palette check with its fixes
// settled, the mid-tone notes, the harmony analysis and the role suggestions.
class CheckReport {
public:
    // `name` is absent for a bare list of colours.
    CheckReport(std::optional<QString> name, QList<ColorItem> colors);

    bool hasIssues() const { return !m_issues.empty(); }
    const std::vector<PaletteCheck::Issue>& issues() const { return m_issues; }

    QJsonObject toJson() const;
    QString toText() const;

    // The name of an issue's kind in machine output: "readability", "lookAlike" or
    // "nearDuplicate". The MCP server's check tool says the same.
    static QString kindIdentifier(const PaletteCheck::Kind& kind);

private:
    // The colour's place in the list, by id; -1 when it isn't there.
    int indexOf(const QUuid& id) const;
    // The changed colour's new code if the issue's fix were applied.
    std::optional<QString> fixedHex(const PaletteCheck::Issue& issue) const;
    QJsonObject issueJson(const PaletteCheck::Issue& issue) const;

    std::optional<QString> m_name;
    QList<ColorItem> m_colors;
    std::vector<PaletteCheck::Issue> m_issues;
};

} // namespace hueshelf::cli
