#pragma once

#include <QPoint>

#include <memory>
#include <optional>
#include <xcb/xcb.h>

class QWidget;

/// The pointer of the X server, moved and pressed by its own means, so that the program takes it
/// for a user's.
class XPointer
{
public:
    XPointer();

    /// Clicks with the left button at the middle of `widget`, whose window must have been mapped.
    /// Whether the server took it.
    bool click(const QWidget& widget);

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::optional<QPoint> originOf(const QWidget& window) const;
    bool act(uint8_t type, uint8_t detail, const QPoint& position);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = 0;
};
