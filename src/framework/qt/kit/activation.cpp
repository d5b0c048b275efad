#include "framework/qt/kit/activation.h"

#include "base/types.h"

#include <QGuiApplication>
#include <QWidget>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <xcb/xcb.h>

namespace {

constexpr const char* STARTUP_ID = "DESKTOP_STARTUP_ID";
constexpr const char* ACTIVATION_TOKEN = "XDG_ACTIVATION_TOKEN";
constexpr u32 FROM_APPLICATION = 1;  // and not from a task bar

std::string Variable(const char* pszName) {
    const char* const value = std::getenv(pszName);
    return value ? value : "";
}

// The server's time of what the user did, in milliseconds, with which an id ends. Who started a program
// without any such thing, as from a terminal, writes 0, which to window managers means that it is not to come
// to the front.
std::optional<u32> TimeOf(const std::string& strStartupId) {
    static constexpr std::string_view MARK = "_TIME";
    const std::size_t mark = strStartupId.rfind(MARK);
    if (mark == std::string::npos) return std::nullopt;
    const char* const end = strStartupId.data() + strStartupId.size();
    u32 time = 0;
    const auto [stop, failed] = std::from_chars(strStartupId.data() + mark + MARK.size(), end, time);
    if (failed != std::errc() || stop != end || time == 0) return std::nullopt;
    return time;
}

// The id as the desktop's messages have it: in quotes, what means something there behind a backslash.
std::string RemoveMessage(const std::string& strStartupId) {
    std::string message = "remove: ID=\"";
    for (const char c : strStartupId) {
        if (c == '"' || c == '\\') message += '\\';
        message += c;
    }
    return message + "\"";
}

// What the toolkit has no calls for.
class X11Desktop {
  public:
    X11Desktop(xcb_connection_t& server, xcb_window_t window)
        : m_server(server),
          m_window(window),
          m_root(xcb_setup_roots_iterator(xcb_get_setup(&server)).data->root) {}

    void SetStartupId(const std::string& strStartupId) {
        xcb_change_property(&m_server, XCB_PROP_MODE_REPLACE, m_window, Atom("_NET_STARTUP_ID"),
                            Atom("UTF8_STRING"), 8, static_cast<u32>(strStartupId.size()),
                            strStartupId.data());
    }

    void Activate(u32 nTime) {
        xcb_change_property(&m_server, XCB_PROP_MODE_REPLACE, m_window, Atom("_NET_WM_USER_TIME"),
                            XCB_ATOM_CARDINAL, 32, 1, &nTime);
        xcb_client_message_event_t event = Event("_NET_ACTIVE_WINDOW", 32);
        event.data.data32[0] = FROM_APPLICATION;
        event.data.data32[1] = nTime;
        Send(event, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }

    // Nobody has to wait for a window any longer. The text goes in pieces, its last byte is zero.
    void EndStart(const std::string& strStartupId) {
        const std::string message = RemoveMessage(strStartupId);
        const std::size_t size = message.size() + 1;
        const char* name = "_NET_STARTUP_INFO_BEGIN";
        for (std::size_t at = 0; at < size; at += sizeof(xcb_client_message_data_t)) {
            xcb_client_message_event_t event = Event(name, 8);
            std::memcpy(event.data.data8, message.c_str() + at, std::min(size - at, sizeof event.data));
            Send(event, XCB_EVENT_MASK_PROPERTY_CHANGE);
            name = "_NET_STARTUP_INFO";
        }
    }

  private:
    using AtomReply = std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)>;

    xcb_atom_t Atom(const char* pszName) {
        const auto length = static_cast<u16>(std::strlen(pszName));
        const xcb_intern_atom_cookie_t asked = xcb_intern_atom(&m_server, 0, length, pszName);
        const AtomReply reply(xcb_intern_atom_reply(&m_server, asked, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    xcb_client_message_event_t Event(const char* pszType, u8 nFormat) {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = nFormat;
        event.window = m_window;
        event.type = Atom(pszType);
        return event;
    }

    void Send(const xcb_client_message_event_t& event, u32 nMask) {
        std::array<char, sizeof event> bytes;
        std::memcpy(bytes.data(), &event, sizeof event);
        xcb_send_event(&m_server, 0, m_root, nMask, bytes.data());
        xcb_flush(&m_server);
    }

    xcb_connection_t& m_server;
    const xcb_window_t m_window;
    const xcb_window_t m_root;
};

}  // namespace

StartupToken AfxGetStartupToken() {
    return {Variable(STARTUP_ID), Variable(ACTIVATION_TOKEN)};
}

void AfxActivate(QWidget& window, const StartupToken& token) {
    const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* const server = x11 ? x11->connection() : nullptr;
    if (server && !token.strStartupId.empty()) {
        X11Desktop desktop(*server, static_cast<xcb_window_t>(window.winId()));
        desktop.SetStartupId(token.strStartupId);
        window.activateWindow();
        // The toolkit asks with the time of what it last saw, which may be long ago.
        if (const std::optional<u32> time = TimeOf(token.strStartupId)) desktop.Activate(*time);
        desktop.EndStart(token.strStartupId);
    } else if (!token.strActivationToken.empty()) {
        // Under Wayland the toolkit looks there whenever it activates a window.
        setenv(ACTIVATION_TOKEN, token.strActivationToken.c_str(), 1);
        window.activateWindow();
        unsetenv(ACTIVATION_TOKEN);
    } else {
        window.activateWindow();
    }
}
