// What job each colour of a palette looks fit for, by its lightness and saturation alone. Roles
// are handed out in palette order from short lists, so the first of several equals takes the
// best name and the others fall to the next; once a list is used up, a numbered copy of a role
// that makes sense twice ("Accent 2") follows.

#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

const QStringList& darkRoles() {
    static const QStringList roles{u"Text Dark"_s, u"Heading"_s, u"Dark Base"_s};
    return roles;
}
const QStringList& lightRoles() {
    static const QStringList roles{u"Background"_s, u"Canvas"_s, u"Light Base"_s};
    return roles;
}
const QStringList& vividRoles() {
    static const QStringList roles{u"Primary"_s, u"Accent"_s, u"Highlight"_s, u"Secondary"_s};
    return roles;
}
const QStringList& warmRoles() {
    static const QStringList roles{u"Warm Accent"_s, u"Highlight"_s, u"Accent"_s};
    return roles;
}
const QStringList& coolRoles() {
    static const QStringList roles{u"Cool Accent"_s, u"Accent"_s, u"Secondary"_s};
    return roles;
}
const QStringList& mutedDarkRoles() {
    static const QStringList roles{u"Muted"_s, u"Dark Accent"_s, u"Subtle"_s};
    return roles;
}
const QStringList& mutedLightRoles() {
    static const QStringList roles{u"Subtle"_s, u"Secondary"_s, u"Muted"_s};
    return roles;
}
const QStringList& midRoles() {
    static const QStringList roles{u"Secondary"_s, u"Dark Accent"_s, u"Muted"_s};
    return roles;
}

// Roles a palette can sensibly hold more than once; "Primary" or "Heading" can't.
bool isRepeatable(const QString& role) {
    static const QSet<QString> repeatable{u"Accent"_s,     u"Cool Accent"_s, u"Warm Accent"_s,
                                          u"Muted"_s,      u"Subtle"_s,      u"Secondary"_s,
                                          u"Background"_s, u"Dark Accent"_s};
    return repeatable.contains(role);
}

const QStringList& rolesFor(const HSL& c) {
    if (c.l < 0.15) {
        return darkRoles();
    }
    if (c.l > 0.85) {
        return lightRoles();
    }
    if (c.l > 0.25 && c.l < 0.65 && c.s > 0.5) {
        return vividRoles();
    }
    if (c.s > 0.3) {
        const bool warm = c.h >= 300.0 || (c.h >= 0.0 && c.h <= 60.0);
        return warm ? warmRoles() : coolRoles();
    }
    if (c.s < 0.25) {
        return c.l < 0.5 ? mutedDarkRoles() : mutedLightRoles();
    }
    return midRoles();
}

QString freeRole(const QStringList& roles, const QSet<QString>& taken) {
    for (const QString& role : roles) {
        if (!taken.contains(role)) {
            return role;
        }
    }
    QString base = roles.front();
    for (const QString& role : roles) {
        if (isRepeatable(role)) {
            base = role;
            break;
        }
    }
    for (int n = 2;; ++n) {
        const QString numbered = base + u' ' + QString::number(n);
        if (!taken.contains(numbered)) {
            return numbered;
        }
    }
}

} // namespace

std::vector<RoleSuggestion> roleSuggestions(const QList<ColorItem>& colors) {
    std::vector<RoleSuggestion> suggestions;
    QSet<QString> taken;
    for (const ColorItem& item : colors) {
        const std::optional<HSL> hsl = hexToHSL(item.hex);
        if (!hsl) {
            continue;
        }
        const QString role = freeRole(rolesFor(*hsl), taken);
        taken.insert(role);
        suggestions.push_back(RoleSuggestion{item.id, item.name, item.hex, QStringList{role}});
    }
    return suggestions;
}

std::optional<QString> roleFor(const QUuid& colorId, const QList<ColorItem>& colors) {
    for (const RoleSuggestion& suggestion : roleSuggestions(colors)) {
        if (suggestion.colorId == colorId && !suggestion.suggestions.isEmpty()) {
            return suggestion.suggestions.front();
        }
    }
    return std::nullopt;
}

std::optional<RolePreview> rolePreview(const QString& typedText, const QUuid& colorId,
                                       const QList<ColorItem>& colors) {
    // canonicalHex hands back anything that isn't 3 or 6 hex digits untouched, so a text that
    // comes back as a code is exactly a text that may preview.
    const QString code = canonicalHex(typedText);
    if (!code.startsWith(u'#') || !normalizedDigits(code)) {
        return std::nullopt;
    }
    QList<ColorItem> edited = colors;
    const ColorItem* own = nullptr;
    for (ColorItem& item : edited) {
        if (item.id == colorId) {
            item.hex = code;
            own = &item;
        }
    }
    if (!own) {
        return std::nullopt;
    }
    const std::optional<QString> role = roleFor(colorId, edited);
    if (!role) {
        return std::nullopt;
    }
    return RolePreview{*role, own->name == *role};
}

QString rolePreviewText(const RolePreview& preview) {
    if (preview.isCurrentName) {
        return u"This color is already named for its role"_s;
    }
    return preview.role + u" as this color's name"_s;
}

} // namespace hueshelf::ColorUtils
