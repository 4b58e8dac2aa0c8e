#include "platform/fake/FakePlatform.h"

namespace hueshelf {

void FakePlatform::setClipboardText(const QString& text) {
    m_clipboard = text;
    m_history.append(text);
}

} // namespace hueshelf
