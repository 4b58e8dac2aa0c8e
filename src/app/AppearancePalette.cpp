#include "app/AppearancePalette.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include <memory>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

QPalette lightPalette() {
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(u"Fusion"_s));
    if (fusion)
        return fusion->standardPalette();
    // A build without the Fusion style still gets a light look.
    return QPalette(QColor(0xef, 0xef, 0xef));
}

QPalette darkPalette() {
    const QColor window(0x35, 0x35, 0x35);
    const QColor base(0x2a, 0x2a, 0x2a);
    const QColor text(0xf0, 0xf0, 0xf0);
    const QColor disabledText(0x7f, 0x7f, 0x7f);
    const QColor highlight(0x2a, 0x82, 0xda);

    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x42, 0x42, 0x42));
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, disabledText);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::red);
    palette.setColor(QPalette::Light, QColor(0x48, 0x48, 0x48));
    palette.setColor(QPalette::Midlight, QColor(0x40, 0x40, 0x40));
    palette.setColor(QPalette::Mid, QColor(0x24, 0x24, 0x24));
    palette.setColor(QPalette::Dark, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::Shadow, QColor(0x14, 0x14, 0x14));
    palette.setColor(QPalette::Link, highlight);
    palette.setColor(QPalette::LinkVisited, highlight.lighter(130));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x50, 0x50, 0x50));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabledText);
    return palette;
}

} // namespace

QPalette paletteFor(ColorScheme scheme) {
    switch (scheme) {
    case ColorScheme::light:
        return lightPalette();
    case ColorScheme::dark:
        return darkPalette();
    case ColorScheme::noPreference:
        break;
    }
    // A palette with no role of its own: the application fills every role from the desktop's
    // theme and the style, as if no palette had ever been set.
    QPalette unset;
    unset.setResolveMask(0);
    return unset;
}

void applyAppearance(ColorScheme scheme) {
    QApplication::setPalette(paletteFor(scheme));
}

} // namespace hueshelf::app
