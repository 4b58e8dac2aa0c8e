#pragma once

#include <QString>
#include <QStringList>

namespace hueshelf::AIToolTexts {

// What the tools panel and the `tools` commands say. A failure is only ever told by the tool's
// name: the error text of a write or of the `claude` command is never shown to the user.

inline QString windowTitle() {
    return QStringLiteral("Connect Your AI Tools");
}
inline QString subtitle() {
    return QStringLiteral(
        "Let AI coding tools use your colors, so you don't have to paste hex codes.");
}
inline QString pickerLabel() {
    return QStringLiteral("Which palette should they use?");
}
inline QString noToolsFound() {
    return QStringLiteral("No supported tools were found on this Mac.");
}
inline QString copySnippetButton() {
    return QStringLiteral("Using something else? Copy setup snippet");
}
inline QString disconnectAllButton() {
    return QStringLiteral("Disconnect all");
}
inline QString disconnectAllCaption() {
    return QStringLiteral(
        "Use this before deleting HueShelf, so your tools don't keep looking for it.");
}
inline QString needsAttentionNote() {
    return QStringLiteral("Needs attention");
}
// `when` is a relative date in named, wide form: "yesterday", "2 hours ago".
inline QString lastUsedNote(const QString& when) {
    return QStringLiteral("Last used ") + when;
}

inline QString settingsFileNotUpdated(const QString& toolName) {
    return toolName + QStringLiteral("'s settings file couldn't be updated.");
}
inline QString stillPointsElsewhere(const QString& toolName) {
    return toolName + QStringLiteral(" still points at a different copy of HueShelf.");
}
// Follows the sorted attention messages, joined by blanks.
inline QString attentionAdvice() {
    return QStringLiteral(
        " Reconnect it below, or copy the setup snippet and paste it in by hand.");
}

inline QString rowConnected(const QString& rowName) {
    return rowName + QStringLiteral(" connected. Restart ") + rowName +
           QStringLiteral(", then ask it: \u201cwhat are my brand colors?\u201d");
}
inline QString rowDisconnected(const QString& rowName) {
    return rowName + QStringLiteral(" disconnected.");
}
inline QString changeFailedSnippetCopied(const QStringList& failedNames) {
    return QStringLiteral("We couldn't safely update settings for ") +
           failedNames.join(QStringLiteral(", ")) +
           QStringLiteral(" \u2014 a snippet was copied to your clipboard to paste in by hand "
                          "instead.");
}
inline QString snippetCopied() {
    return QStringLiteral(
        "Setup snippet copied \u2014 paste it into any other tool's MCP settings.");
}
inline QString disconnectedAll(const QStringList& removedNames) {
    return QStringLiteral("Disconnected ") + removedNames.join(QStringLiteral(", ")) +
           QStringLiteral(". HueShelf can be deleted safely.");
}
inline QString nothingWasConnected() {
    return QStringLiteral("Nothing was connected.");
}
inline QString disconnectAllFailed(const QStringList& failedNames) {
    return QStringLiteral("We couldn't safely update settings for ") +
           failedNames.join(QStringLiteral(", ")) +
           QStringLiteral(" \u2014 remove the HueShelf entry from those tools' MCP settings by "
                          "hand.");
}

// The setup snippet for tools the program doesn't know, with the server's path put in as it is
// (unescaped, also inside the JSON). It ends after the last quote, without a line feed.
inline QString setupSnippet(const QString& binaryPath) {
    return QStringLiteral("HueShelf can share my color palettes with AI tools over MCP (stdio).\n"
                          "\n"
                          "Command: ") +
           binaryPath +
           QStringLiteral("\n"
                          "Arguments: --client <your-tool-name>\n"
                          "\n"
                          "Most tools accept this JSON, under the key \"mcpServers\":\n"
                          "\n"
                          "```json\n"
                          "{\n"
                          "  \"mcpServers\": {\n"
                          "    \"hueshelf\": {\n"
                          "      \"command\": \"") +
           binaryPath +
           QStringLiteral("\",\n"
                          "      \"args\": [\"--client\", \"my-tool\"]\n"
                          "    }\n"
                          "  }\n"
                          "}\n"
                          "```\n"
                          "\n"
                          "After adding it, restart the tool and ask: \"what are my brand "
                          "colors?\"");
}

} // namespace hueshelf::AIToolTexts
