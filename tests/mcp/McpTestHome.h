#pragma once

#include "../color/QtPrinters.h"
#include "../model/ModelTestSupport.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "mcp/McpServer.h"
#include "mcp/McpTools.h"
#include "mcp/PaletteSource.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

#include <memory>

namespace hueshelf::testing {

// A temporary home with a preferences file written as another process of the product writes
// it, and the server's tools and protocol over it, in this process.
class McpTestHome : public ::testing::Test {
protected:
    McpTestHome() { useClient(std::nullopt); }

    // Rebuilds the tools and server as started with (or without) `--client`.
    void useClient(std::optional<QString> clientId) {
        server.reset();
        tools = std::make_unique<mcp::McpTools>(source, home.paths(), clock, std::move(clientId));
        server = std::make_unique<mcp::McpServer>(*tools);
    }

    StorageLocations locations() const {
        return StorageLocations::resolve(home.paths(), QProcessEnvironment());
    }
    QString lastUsedPath() const { return home.paths().dataDir + u"/ai-tool-last-used.json"; }

    // The palettes, the active id (if defined) and a key of another writer.
    void seed(const QList<ColorTemplate>& templates, const QJsonValue& active = {}) {
        ASSERT_TRUE(seedPreferences(locations().preferencesFile, templates, active));
    }
    // What the AI tools panel stores when the user picks a palette.
    void chooseBrand(const QString& idText) {
        QSettings(locations().settingsFile, QSettings::IniFormat)
            .setValue(QStringLiteral("brandTemplateId"), idText);
    }
    static QByteArray fileBytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // One line through the protocol; the answer parsed, or an empty object for silence.
    QJsonObject exchange(const QByteArray& line) {
        const std::optional<QByteArray> answer = server->handle(line);
        return answer ? QJsonDocument::fromJson(*answer).object() : QJsonObject();
    }
    QJsonObject request(const QString& method, const QJsonObject& params = {}) {
        return exchange(R"({"jsonrpc":"2.0","id":1,"method":")" + method.toUtf8() +
                        R"(","params":)" + QJsonDocument(params).toJson(QJsonDocument::Compact) +
                        '}')[QStringLiteral("result")]
            .toObject();
    }
    QJsonObject call(const QString& tool, const QJsonObject& arguments = {}) {
        return request(QStringLiteral("tools/call"),
                       {{QStringLiteral("name"), tool}, {QStringLiteral("arguments"), arguments}});
    }
    // The structured content of a call that must succeed.
    QJsonObject success(const QString& tool, const QJsonObject& arguments = {}) {
        const QJsonObject result = call(tool, arguments);
        EXPECT_EQ(result.value(QStringLiteral("isError")), QJsonValue(false))
            << QJsonDocument(result).toJson().toStdString();
        return result.value(QStringLiteral("structuredContent")).toObject();
    }
    // The sentence of a call that must be refused: a result the model reads, not an error.
    QString failure(const QString& tool, const QJsonObject& arguments) {
        const QJsonObject result = call(tool, arguments);
        EXPECT_EQ(result.value(QStringLiteral("isError")), QJsonValue(true))
            << QJsonDocument(result).toJson().toStdString();
        EXPECT_FALSE(result.contains(QStringLiteral("structuredContent")));
        return result[QStringLiteral("content")][0][QStringLiteral("text")].toString();
    }

    TempHome home;
    ManualClock clock{1'763'210'000'000.0};
    mcp::PaletteSource source{home.paths(), QProcessEnvironment()};
    std::unique_ptr<mcp::McpTools> tools;
    std::unique_ptr<mcp::McpServer> server;
};

} // namespace hueshelf::testing
