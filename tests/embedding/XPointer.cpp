#include "tests/embedding/XPointer.h"

#include <QWidget>

#include <cstdlib>
#include <xcb/xtest.h>

namespace {

template <class Reply>
using Pointer = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

XPointer::XPointer() : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection.get()) == 0)
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
}

bool XPointer::click(const QWidget& widget)
{
    const std::optional<QPoint> origin = originOf(*widget.window());
    if (!origin)
        return false;
    const QPoint position = *origin + widget.mapTo(widget.window(), widget.rect().center());
    return act(XCB_MOTION_NOTIFY, 0, position) && act(XCB_BUTTON_PRESS, 1, position) &&
           act(XCB_BUTTON_RELEASE, 1, position);
}

// Asked of the server: the program may not have heard yet where the window manager put the window.
std::optional<QPoint> XPointer::originOf(const QWidget& window) const
{
    if (m_root == 0)
        return std::nullopt;
    xcb_connection_t* const x = m_connection.get();
    const Pointer<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(
            x,
            xcb_translate_coordinates(x, static_cast<xcb_window_t>(window.winId()), m_root, 0, 0),
            nullptr),
        &std::free);
    if (!reply)
        return std::nullopt;
    return QPoint(reply->dst_x, reply->dst_y);
}

bool XPointer::act(uint8_t type, uint8_t detail, const QPoint& position)
{
    xcb_connection_t* const x = m_connection.get();
    const Pointer<xcb_generic_error_t> error(
        xcb_request_check(x, xcb_test_fake_input_checked(x, type, detail, XCB_CURRENT_TIME, m_root,
                                                         static_cast<int16_t>(position.x()),
                                                         static_cast<int16_t>(position.y()), 0)),
        &std::free);
    return error == nullptr;
}
