#pragma once

#include "platform/Access.h"
#include "platform/linux/x11/X11Connection.h"

namespace quillet {

/// An X server asks nobody: whoever may show windows may read the screen and, where the XTest
/// extension is there, press keys.
class X11Access : public Access {
public:
    explicit X11Access(X11Connection& connection);

    bool isGranted(Kind kind) const override;

private:
    bool m_hasTest;
};

} // namespace quillet
