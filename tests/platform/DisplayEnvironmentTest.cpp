#include "platform/DisplayEnvironment.h"

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

QProcessEnvironment environment(std::initializer_list<std::pair<const char*, const char*>> vars) {
    QProcessEnvironment env;
    for (const auto& [name, value] : vars)
        env.insert(QString::fromLatin1(name), QString::fromLatin1(value));
    return env;
}

struct DisplayCase {
    const char* description;
    QProcessEnvironment env;
    std::optional<QString> plugin;
    bool hasDisplay;
};

TEST(DisplayEnvironment, ChoosesX11UnlessTheUserChoseAndTellsWhenThereIsNoDisplay) {
    const DisplayCase cases[] = {
        {"plain X11 session", environment({{"DISPLAY", ":0"}}), QStringLiteral("xcb"), true},
        {"Wayland with XWayland",
         environment({{"DISPLAY", ":1"}, {"WAYLAND_DISPLAY", "wayland-0"}}), QStringLiteral("xcb"),
         true},
        {"Wayland without XWayland", environment({{"WAYLAND_DISPLAY", "wayland-0"}}),
         QStringLiteral("xcb"), false},
        {"no display at all", environment({}), QStringLiteral("xcb"), false},
        {"user chose offscreen", environment({{"QT_QPA_PLATFORM", "offscreen"}}), std::nullopt,
         true},
        {"user chose xcb without a display", environment({{"QT_QPA_PLATFORM", "xcb"}}),
         std::nullopt, false},
        {"user chose wayland", environment({{"QT_QPA_PLATFORM", "wayland"}}), std::nullopt, true},
    };
    for (const DisplayCase& c : cases) {
        SCOPED_TRACE(c.description);
        EXPECT_EQ(DisplayEnvironment::requiredQpaPlatform(c.env), c.plugin);
        const auto message = DisplayEnvironment::missingDisplayMessage(c.env);
        EXPECT_EQ(!message.has_value(), c.hasDisplay);
        if (message) {
            EXPECT_TRUE(message->startsWith(u"hueshelf: "));
            EXPECT_FALSE(message->contains(u'\n'));
        }
    }
}

} // namespace
} // namespace hueshelf
