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

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QSettings>

#include <gtest/gtest.h>

#include <memory>

namespace hueshelf::testing {

// A temporary home with a preferences file written as another process of the product writes
// it, and the server's tools and protocol over it, in this process.
class McpTestHome : public ::testing::Test {
protected:
    static inline const QString kForeignKey = QStringLiteral("helperState");
    static constexpr double kNow = 1'763'210'000'000.0;

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
    QString prefsPath() const { return locations().preferencesFile; }
    QString lastUsedPath() const { return home.paths().dataDir + u"/ai-tool-last-used.json"; }

    void seed(const QList<ColorTemplate>& templates, const QJsonValue& active) {
        QJsonObject object;
        object.insert(PreferencesKeys::templates, TemplateJson::templatesToJson(templates));
        if (!active.isUndefined())
            object.insert(PreferencesKeys::activeTemplateId, active);
        object.insert(PreferencesKeys::lastModified, 1'700'000'000'000.0);
        object.insert(PreferencesKeys::schemaVersion, 2);
        object.insert(kForeignKey, QJsonObject{{QStringLiteral("keep"), true}});
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), object));
    }

    // What the AI tools panel stores when the user picks a palette.
    void chooseBrand(const QString& idText) {
        QSettings settings(locations().settingsFile, QSettings::IniFormat);
        settings.setValue(QStringLiteral("brandTemplateId"), idText);
        settings.sync();
    }

    QByteArray fileBytes(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QJsonObject fileObject() const {
        return PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    }
    QList<ColorTemplate> fileTemplates() const {
        const std::optional<QByteArray> data = PreferencesFile::templatesData(fileObject());
        if (!data)
            return {};
        return TemplateJson::decodeTemplates(*data, clock).value_or(QList<ColorTemplate>());
    }

    QStringList filesInHome() const {
        QStringList files;
        QDirIterator it(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next().mid(home.path().size() + 1);
        files.sort();
        return files;
    }

    // One message through the protocol; the answer parsed, or an empty object for silence.
    QJsonObject exchange(const QByteArray& line) {
        const std::optional<QByteArray> answer = server->handle(line);
        if (!answer)
            return {};
        EXPECT_FALSE(answer->contains('\n'));
        return QJsonDocument::fromJson(*answer).object();
    }
    QJsonObject request(const QString& method, const QJsonObject& params, int id = 1) {
        const QJsonObject message{{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
                                  {QStringLiteral("id"), id},
                                  {QStringLiteral("method"), method},
                                  {QStringLiteral("params"), params}};
        return exchange(QJsonDocument(message).toJson(QJsonDocument::Compact));
    }
    // A tools/call through the protocol: its result object.
    QJsonObject call(const QString& tool, const QJsonObject& arguments = QJsonObject()) {
        const QJsonObject answer = request(
            QStringLiteral("tools/call"),
            QJsonObject{{QStringLiteral("name"), tool}, {QStringLiteral("arguments"), arguments}});
        EXPECT_TRUE(answer.contains(QStringLiteral("result"))) << toText(answer);
        return answer.value(QStringLiteral("result")).toObject();
    }
    // The structured content of a call that must succeed.
    QJsonObject success(const QString& tool, const QJsonObject& arguments = QJsonObject()) {
        const QJsonObject result = call(tool, arguments);
        EXPECT_FALSE(result.value(QStringLiteral("isError")).toBool()) << toText(result);
        return result.value(QStringLiteral("structuredContent")).toObject();
    }
    // The sentence of a call that must be refused as a tool error.
    QString failure(const QString& tool, const QJsonObject& arguments) {
        const QJsonObject result = call(tool, arguments);
        EXPECT_TRUE(result.value(QStringLiteral("isError")).toBool()) << toText(result);
        EXPECT_FALSE(result.contains(QStringLiteral("structuredContent")));
        return result.value(QStringLiteral("content"))
            .toArray()
            .at(0)
            .toObject()
            .value(QStringLiteral("text"))
            .toString();
    }

    static std::string toText(const QJsonObject& object) {
        return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
    }

    TempHome home;
    ManualClock clock{kNow};
    mcp::PaletteSource source{home.paths(), QProcessEnvironment()};
    std::unique_ptr<mcp::McpTools> tools;
    std::unique_ptr<mcp::McpServer> server;
};

} // namespace hueshelf::testing
