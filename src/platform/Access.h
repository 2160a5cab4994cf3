#pragma once

namespace quillet {

/// What the desktop lets this program do beyond its own windows.
class Access {
public:
    enum class Kind { screenRecording, accessibility };

    virtual ~Access() = default;

    /// Whether it is allowed now. Asks nobody.
    virtual bool isGranted(Kind kind) const = 0;
};

} // namespace quillet
