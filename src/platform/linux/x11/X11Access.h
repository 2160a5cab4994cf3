#pragma once

#include "platform/Access.h"
#include "platform/Commands.h"
#include "platform/linux/x11/X11Connection.h"

namespace quillet {

/// An X server asks nobody: whoever may show windows may read the screen, and may press and hold
/// the keys where the server has the extensions for it. What is missing stays missing for as long
/// as the server runs.
class X11Access : public Access {
public:
    X11Access(X11Connection& connection, Commands& commands);

    bool isGranted(Kind kind) const override { return cause(kind).isEmpty(); }
    QString cause(Kind kind) const override;
    bool request(Kind kind) override { return isGranted(kind); }
    void openSettings(Kind kind) override;

private:
    Commands& m_commands;
    QString m_whyNoScreen;
    QString m_whyNoKeys;
};

} // namespace quillet
