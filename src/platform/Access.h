#pragma once

#include <QString>

namespace quillet {

/// What the desktop lets this program do beyond its own windows.
class Access {
public:
    enum class Kind { screenRecording, accessibility };

    virtual ~Access() = default;

    /// Whether it is allowed now. Asks nobody.
    virtual bool isGranted(Kind kind) const = 0;

    /// Why it is not allowed, for people; empty where it is.
    virtual QString cause(Kind kind) const = 0;

    /// Has the system ask the user, where it does such a thing. The user may answer much later, so
    /// the result is only whether it is allowed already.
    virtual bool request(Kind kind) = 0;

    /// Opens the place in the system's settings where the user can allow it, or the nearest one
    /// there is. Nothing but a line in the log where there is none.
    virtual void openSettings(Kind kind) = 0;
};

} // namespace quillet
