#pragma once

#include "CliRun.h"
#include "TempHome.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/StoreSession.h"
#include "model/TemplateJson.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace hueshelf::testing {

// A palette of colours named by their codes, every colour locked with it or none.
inline ColorTemplate makePalette(const QString& name, const QStringList& hexes,
                                 bool locked = false) {
    QList<ColorItem> colors;
    for (const QString& hex : hexes) {
        colors.append(ColorItem::make(hex, hex, false));
        colors.last().isLocked = locked;
    }
    ColorTemplate palette = ColorTemplate::makeNew(name, colors, 1000.0);
    palette.isLocked = locked;
    return palette;
}

// A temporary home that the store commands of this process read and write as they would a
// user's: HOME and XDG_CONFIG_HOME point into it, and no isolation variable is set.
class StoreHome : public ::testing::Test {
protected:
    StoreHome() {
        QProcessEnvironment env;
        env.insert(QStringLiteral("HOME"), home.path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + u"/.config");
        StoreSession::overrideEnvironment(env);
    }
    ~StoreHome() override { StoreSession::overrideEnvironment(std::nullopt); }

    QString prefsPath() const { return home.paths().configDir + u"/io.hueshelf.Hueshelf.json"; }
    // As another process of the product writes it, with a key of its own.
    void seed(const QList<ColorTemplate>& templates, const QJsonValue& active) {
        QJsonObject object{{PreferencesKeys::templates, TemplateJson::templatesToJson(templates)},
                           {PreferencesKeys::lastModified, 1'700'000'000'000.0},
                           {QStringLiteral("helperState"), QStringLiteral("keep")}};
        if (!active.isUndefined())
            object.insert(PreferencesKeys::activeTemplateId, active);
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), object));
    }
    QByteArray fileBytes() const {
        QFile file(prefsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QJsonObject fileObject() const {
        return PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    }
    QJsonArray fileRecords() const {
        return fileObject().value(PreferencesKeys::templates).toArray();
    }
    QString fileActiveId() const {
        return fileObject()[PreferencesKeys::activeTemplateId].toString();
    }
    QStringList filesInHome() const {
        QStringList files;
        QDirIterator it(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next().mid(home.path().size() + 1);
        return files;
    }
    QString writeFile(const QString& name, const QByteArray& bytes) const {
        QFile file(home.path() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    TempHome home;
};

} // namespace hueshelf::testing
