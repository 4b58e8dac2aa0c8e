#pragma once

#include "../color/QtPrinters.h"
#include "../model/ModelTestSupport.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "helper/HelperRequests.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StorageLocations.h"
#include "model/TemplateJson.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace hueshelf::testing {

// A temporary home whose preferences file was written as another process of the product
// writes it, and the helper's requests over it, in this process.
class HelperTestHome : public ::testing::Test {
protected:
    StorageLocations locations() const {
        return StorageLocations::resolve(home.paths(), QProcessEnvironment());
    }
    QString preferencesPath() const { return locations().preferencesFile; }

    // The palettes, the active id (if defined) and a key of another writer.
    void seed(const QList<ColorTemplate>& templates, const QJsonValue& active = {}) {
        ASSERT_TRUE(seedPreferences(preferencesPath(), templates, active));
    }
    QByteArray fileBytes() const {
        QFile file(preferencesPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QJsonObject file() const {
        return PreferencesFile::read(preferencesPath()).value_or(QJsonObject());
    }
    // The palettes as the file holds them now.
    QList<ColorTemplate> stored() const {
        const std::optional<QByteArray> data = PreferencesFile::templatesData(file());
        return data ? TemplateJson::decodeTemplates(*data, clock).value_or(QList<ColorTemplate>())
                    : QList<ColorTemplate>();
    }
    QString storedActiveId() const {
        return file().value(PreferencesKeys::activeTemplateId).toString();
    }

    // One request written as the extension writes it.
    QJsonObject ask(const QByteArray& json) const {
        return requests.handle(QJsonDocument::fromJson(json).object());
    }
    QJsonObject ask(const QJsonObject& request) const { return requests.handle(request); }

    TempHome home;
    ManualClock clock;
    helper::HelperRequests requests{home.paths(), QProcessEnvironment()};
};

} // namespace hueshelf::testing
