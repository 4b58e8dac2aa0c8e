#pragma once

#include <QString>

namespace hueshelf::Portal {

// Where the desktop portals answer on the session bus.
inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString path = QStringLiteral("/org/freedesktop/portal/desktop");

// A Request's Response codes.
inline constexpr uint success = 0;
inline constexpr uint cancelled = 1;
inline constexpr uint otherEnd = 2;

} // namespace hueshelf::Portal
