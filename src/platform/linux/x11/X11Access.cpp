#include "platform/linux/x11/X11Access.h"

#include "platform/linux/SettingsProgram.h"
#include "platform/linux/x11/XcbXkb.h"

#include <QLoggingCategory>
#include <xcb/randr.h>
#include <xcb/xtest.h>

namespace quillet {

Q_LOGGING_CATEGORY(logAccess, "quillet.access", QtWarningMsg)

namespace {

using namespace Qt::StringLiterals;

bool hasExtension(const X11Connection& connection, xcb_extension_t& extension) {
    const auto* data = xcb_get_extension_data(connection.xcb(), &extension);
    return data && data->present;
}

/// Whether the server is a guest of a Wayland compositor, by the names that it gives its outputs.
bool isGuestOfWayland(const X11Connection& connection) {
    xcb_connection_t* xcb = connection.xcb();
    if (!hasExtension(connection, xcb_randr_id))
        return false;
    const XcbOwned<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            xcb, xcb_randr_get_screen_resources_current(xcb, connection.root()), nullptr));
    if (!resources || resources->num_outputs == 0)
        return false;
    const xcb_randr_output_t first =
        *xcb_randr_get_screen_resources_current_outputs(resources.get());
    const XcbOwned<xcb_randr_get_output_info_reply_t> output(xcb_randr_get_output_info_reply(
        xcb, xcb_randr_get_output_info(xcb, first, resources->config_timestamp), nullptr));
    if (!output)
        return false;
    return QByteArray(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get())),
                      xcb_randr_get_output_info_name_length(output.get()))
        .startsWith("XWAYLAND");
}

bool canReadScreen(const X11Connection& connection) {
    const XcbOwned<xcb_get_image_reply_t> pixel(
        xcb_get_image_reply(connection.xcb(),
                            xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                          connection.root(), 0, 0, 1, 1, ~0U),
                            nullptr));
    return pixel != nullptr;
}

QString whyNoScreen(const X11Connection& connection) {
    if (isGuestOfWayland(connection))
        return u"In a Wayland session the X server does not see other programs' windows."_s;
    return canReadScreen(connection) ? QString()
                                     : u"The X server does not let programs read the screen."_s;
}

QString whyNoKeys(const X11Connection& connection) {
    if (!hasExtension(connection, xcb_test_id))
        return u"The X server lacks the XTest extension."_s;
    return hasExtension(connection, xcb_xkb_id) ? QString()
                                                : u"The X server lacks the keyboard extension."_s;
}

} // namespace

X11Access::X11Access(X11Connection& connection, Commands& commands)
    : m_commands(commands),
      m_whyNoScreen(whyNoScreen(connection)),
      m_whyNoKeys(whyNoKeys(connection)) {}

QString X11Access::cause(Kind kind) const {
    switch (kind) {
    case Kind::screenRecording:
        return m_whyNoScreen;
    case Kind::accessibility:
        return m_whyNoKeys;
    }
    Q_UNREACHABLE();
}

/// No desktop has settings for what an X server can do, so all there is to open is the whole.
void X11Access::openSettings(Kind) {
    const auto program = settingsProgram(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    if (!program || !m_commands.launch(*program, {}))
        qCWarning(logAccess, "this desktop has no settings program that is known here");
}

} // namespace quillet
