#pragma once

namespace hueshelf {
class Platform {
public:
    virtual ~Platform() = default;
};
} // namespace hueshelf
