#include "platform/DisplayEnvironment.h"

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

// X11 unless the user chose; without a display of the chosen kind, one line that says so.
TEST(DisplayEnvironment, ChoosesX11UnlessTheUserChoseAndTellsWhenThereIsNoDisplay) {
    const std::optional<QString> xcb = u"xcb"_s;
    const std::tuple<QStringList, std::optional<QString>, bool> cases[] = {
        {{u"DISPLAY=:1"_s, u"WAYLAND_DISPLAY=wayland-0"_s}, xcb, true},
        {{u"WAYLAND_DISPLAY=wayland-0"_s}, xcb, false},
        {{}, xcb, false},
        {{u"QT_QPA_PLATFORM=offscreen"_s}, std::nullopt, true},
        {{u"QT_QPA_PLATFORM=xcb"_s}, std::nullopt, false},
        {{u"QT_QPA_PLATFORM=wayland"_s}, std::nullopt, true},
    };
    for (const auto& [variables, plugin, hasDisplay] : cases) {
        SCOPED_TRACE(variables.join(u' ').toStdString());
        QProcessEnvironment env;
        for (const QString& variable : variables)
            env.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        EXPECT_EQ(DisplayEnvironment::requiredQpaPlatform(env), plugin);
        const auto message = DisplayEnvironment::missingDisplayMessage(env);
        EXPECT_EQ(!message.has_value(), hasDisplay);
        if (message) {
            EXPECT_TRUE(message->startsWith(u"hueshelf: "));
            EXPECT_FALSE(message->contains(u'\n'));
        }
    }
}

} // namespace
} // namespace hueshelf
