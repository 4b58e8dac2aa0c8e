#pragma once

#include <QString>

#include <optional>

namespace hueshelf {

// What healing one tool's entry ended in.
struct HealResult {
    enum class Kind {
        notConfigured,  // no entry; nothing to do
        upToDate,       // the entry starts this copy's server
        leftAlone,      // the entry points elsewhere, but this copy runs from a passing place
        repaired,       // the entry pointed elsewhere (`previousCommand`) and now points here
        needsAttention, // the entry is wrong and couldn't be put right (`message`)
    };

    Kind kind = Kind::notConfigured;
    std::optional<QString> previousCommand; // repaired only; nothing if none could be read
    QString message;                        // needsAttention only

    static HealResult notConfigured() { return {Kind::notConfigured, std::nullopt, {}}; }
    static HealResult upToDate() { return {Kind::upToDate, std::nullopt, {}}; }
    static HealResult leftAlone() { return {Kind::leftAlone, std::nullopt, {}}; }
    static HealResult repaired(std::optional<QString> previous) {
        return {Kind::repaired, std::move(previous), {}};
    }
    static HealResult needsAttention(QString text) {
        return {Kind::needsAttention, std::nullopt, std::move(text)};
    }

    bool operator==(const HealResult&) const = default;
};

} // namespace hueshelf
