#include "platform/linux/x11/X11Access.h"

#include <xcb/xtest.h>

namespace quillet {

X11Access::X11Access(X11Connection& connection) {
    const auto* test = xcb_get_extension_data(connection.xcb(), &xcb_test_id);
    m_hasTest = test && test->present;
}

bool X11Access::isGranted(Kind kind) const {
    switch (kind) {
    case Kind::screenRecording:
        return true;
    case Kind::accessibility:
        return m_hasTest;
    }
    Q_UNREACHABLE();
}

} // namespace quillet
