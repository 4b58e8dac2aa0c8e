#pragma once

#include "platform/Platform.h"

namespace hueshelf {

class LinuxPlatform final : public Platform {
public:
    QString platformName() const override;
    QString hostName() const override;
    void setClipboardText(const QString& text) override;
    QString clipboardText() const override;
};

} // namespace hueshelf
