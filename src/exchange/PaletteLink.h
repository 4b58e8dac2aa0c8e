#pragma once

#include "model/ColorTemplate.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <variant>

namespace hueshelf {

// A whole palette in one link: https://<host>/p/#1;<name>;<colour>,<colour>,... The palette
// lives in the fragment, so the web host never receives it, and the application takes the same
// text through its own scheme (hueshelf://import#1;...). A pure codec: plain values in, plain
// values or a LinkError out.
namespace PaletteLink {

// One colour of a link.
struct Color {
    QString name;
    QString hex; // "#RRGGBB" once normalised
    bool dividerBefore = false;
    QString dividerLabel; // empty for an unlabelled divider

    friend bool operator==(const Color&, const Color&) = default;
};

struct Palette {
    QString name;
    QList<Color> colors;

    friend bool operator==(const Palette&, const Palette&) = default;
};

enum class LinkError {
    empty,
    tooLong,
    unknownVersion,
    malformed,
    badHex,
    tooManyColors,
    paletteNameTooLong,
    colorNameTooLong, // also a divider label that is too long
    emptyName,
};

// The case as it is spelt here ("tooManyColors"), for the command line.
QString caseName(LinkError error);

// Every limit of a link. Lengths are user-perceived characters (extended grapheme clusters) of
// the text as written for the whole link, and of the decoded text for names and labels.
namespace Limits {
inline constexpr int maxLinkLength = 2000; // the complete URL text, prefix included
inline constexpr int minColors = 1;
inline constexpr int maxColors = 40;
inline constexpr int maxPaletteNameLength = 60;
inline constexpr int maxColorNameLength = 40;
inline constexpr int maxDividerLabelLength = 40;
} // namespace Limits

// A value or the reason there is none.
template <typename T>
class Result {
public:
    Result(T value) : m_state(std::move(value)) {}
    Result(LinkError error) : m_state(error) {}

    bool hasValue() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return hasValue(); }
    const T& value() const { return std::get<T>(m_state); }
    const T& operator*() const { return value(); }
    const T* operator->() const { return &value(); }
    // Only meaningful without a value.
    LinkError error() const { return std::get<LinkError>(m_state); }

    friend bool operator==(const Result&, const Result&) = default;

private:
    std::variant<T, LinkError> m_state;
};

// The web host links are written for; a setting of the build (HUESHELF_LINK_HOST).
QString linkHost();
// "https://" + host + "/p/#1;": everything before the palette name.
QString linkPrefix();

// The limit check both directions share: the encoder runs it first, the decoder last. The
// first broken rule wins, in this order: no colours, too many colours, empty palette name,
// palette name too long, then colour by colour its empty name, long name, long divider label
// (checked whether or not the divider is on).
std::optional<LinkError> validate(const QString& name, const QList<Color>& colors);

// One "#" dropped if present, then exactly six hex digits of either case; "#" and the digits
// upper-cased. Absent otherwise, which the codec reports as badHex. Short forms are refused.
std::optional<QString> normalizeCode(const QString& code);

Result<QString> encode(const QString& name, const QList<Color>& colors);
// The share action's road: a divider label travels only with its divider, so a stale label of
// a divider the user removed never leaves the device.
Result<QString> encode(const ColorTemplate& palette);

// Any text, a link or a bare payload, to a palette.
Result<Palette> decode(const QString& text);

// A new palette from a decoded link: the name made free among `existingNames` (exact
// comparison) with " (1)", " (2)", ...; fresh ids; user-named colours; unlocked.
ColorTemplate makeTemplate(const Palette& palette, const QStringList& existingNames, double nowMs);

} // namespace PaletteLink
} // namespace hueshelf
