// Focus rings follow the keyboard: Tab turns them on, a mouse press off, other input changes
// nothing.

#include "app/KeyboardModality.h"

#include "AppTestSupport.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

TEST(KeyboardModality, TheFlagFollowsTheLastKindOfInput) {
    testing::ensureApplication();
    KeyboardModality modality;
    modality.startMonitoring();
    modality.startMonitoring(); // installed once: one press still clears it once
    int changes = 0;
    QObject::connect(&modality, &KeyboardModality::isTabbingChanged, [&] { ++changes; });
    QWidget target;
    const auto send = [&target](QEvent::Type type, int key = 0) {
        if (type == QEvent::KeyPress) {
            QKeyEvent event(type, key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            QCoreApplication::sendEvent(&target, &event);
            return;
        }
        QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
    };
    const std::tuple<QEvent::Type, int, bool> steps[] = {
        {QEvent::KeyPress, Qt::Key_A, false},      {QEvent::KeyPress, Qt::Key_Tab, true},
        {QEvent::KeyPress, Qt::Key_Escape, true},  {QEvent::MouseMove, 0, true},
        {QEvent::MouseButtonRelease, 0, true},     {QEvent::MouseButtonPress, 0, false},
        {QEvent::KeyPress, Qt::Key_Backtab, true}, {QEvent::MouseButtonDblClick, 0, false},
        {QEvent::KeyPress, Qt::Key_Tab, true},     {QEvent::KeyPress, Qt::Key_Tab, true},
    };
    for (const auto& [type, key, isTabbingAfter] : steps) {
        send(type, key);
        EXPECT_EQ(modality.isTabbing(), isTabbingAfter) << int(type) << ' ' << key;
    }
    EXPECT_EQ(changes, 5) << "only real changes are announced";
    modality.stopMonitoring();
    send(QEvent::MouseButtonPress);
    EXPECT_TRUE(modality.isTabbing()) << "no longer listening";
}

} // namespace
} // namespace hueshelf::app
