// Focus rings follow the keyboard: Tab turns them on, a mouse press off, other keys change
// nothing.

#include "app/KeyboardModality.h"

#include "AppTestSupport.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

enum class Input { tab, shiftTab, letter, escape, press, doubleClick, move, release };

void send(QWidget& target, Input input) {
    const QPointF at(5, 5);
    switch (input) {
    case Input::tab:
    case Input::shiftTab:
    case Input::letter:
    case Input::escape: {
        const int key = input == Input::tab        ? Qt::Key_Tab
                        : input == Input::shiftTab ? Qt::Key_Backtab
                        : input == Input::letter   ? Qt::Key_A
                                                   : Qt::Key_Escape;
        QKeyEvent event(QEvent::KeyPress, key,
                        input == Input::shiftTab ? Qt::ShiftModifier : Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
        return;
    }
    case Input::press:
    case Input::doubleClick:
    case Input::move:
    case Input::release: {
        const QEvent::Type type = input == Input::press         ? QEvent::MouseButtonPress
                                  : input == Input::doubleClick ? QEvent::MouseButtonDblClick
                                  : input == Input::move        ? QEvent::MouseMove
                                                                : QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, at, Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
        return;
    }
    }
}

struct Step {
    Input input;
    bool isTabbingAfter;
};

TEST(KeyboardModality, TheFlagFollowsTheLastKindOfInput) {
    testing::ensureApplication();
    KeyboardModality modality;
    modality.startMonitoring();
    modality.startMonitoring(); // installed once: one press still clears it once
    int changes = 0;
    QObject::connect(&modality, &KeyboardModality::isTabbingChanged, [&] { ++changes; });
    QWidget target;

    const std::vector<Step> steps{
        {Input::letter, false},      {Input::press, false}, {Input::tab, true},
        {Input::letter, true},       {Input::escape, true}, {Input::move, true},
        {Input::release, true},      {Input::press, false}, {Input::shiftTab, true},
        {Input::doubleClick, false}, {Input::tab, true},    {Input::tab, true},
    };
    for (std::size_t i = 0; i < steps.size(); ++i) {
        send(target, steps[i].input);
        EXPECT_EQ(modality.isTabbing(), steps[i].isTabbingAfter) << "step " << i;
    }
    EXPECT_EQ(changes, 5) << "only real changes are announced";

    modality.stopMonitoring();
    send(target, Input::press);
    EXPECT_TRUE(modality.isTabbing()) << "no longer listening";
}

} // namespace
} // namespace hueshelf::app
