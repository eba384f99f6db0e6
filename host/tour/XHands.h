#pragma once

#include <QPoint>
#include <QString>

#include <memory>
#include <vector>

struct xcb_connection_t;

namespace host {

/// A mouse and a keyboard: moves the X server's pointer and presses its buttons and keys, so that
/// every program on the display takes it for a user. Used on the tour's thread.
class XHands
{
public:
    /// Keys without a character of their own, by X key symbol.
    enum Key : quint32 {
        KeyBackspace = 0xff08,
        KeyTab = 0xff09,
        KeyReturn = 0xff0d,
        KeyEscape = 0xff1b,
        KeyF1 = 0xffbe,
        KeyShift = 0xffe1,
        KeyControl = 0xffe3,
    };
    enum Button : quint8 { LeftButton = 1, RightButton = 3 };

    /// Connects to the X server of DISPLAY; throws TourFailure when there is none or it does not
    /// take synthetic input.
    XHands();
    ~XHands();
    XHands(const XHands&) = delete;
    XHands& operator=(const XHands&) = delete;

    /// Positions are in the server's pixels from the top-left corner of the screen.
    void moveTo(const QPoint& position);
    void click(const QPoint& position, Button button = LeftButton);
    void doubleClick(const QPoint& position);

    /// Presses the keys in order and releases them in reverse order.
    void press(const std::vector<quint32>& keys);
    /// Types Latin-1 text; throws TourFailure for a character that the keyboard does not have.
    void type(const QString& text);

    static quint32 functionKey(int number) { return KeyF1 + static_cast<quint32>(number) - 1; }

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const;
    };

    struct Stroke
    {
        quint8 code = 0;
        bool shifted = false;
    };

    Stroke strokeFor(quint32 symbol) const;
    void fake(quint8 type, quint8 detail, const QPoint& position = QPoint());
    void pause() const;

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    quint32 m_root = 0;
    quint8 m_firstCode = 0;
    int m_symbolsPerCode = 0;
    std::vector<quint32> m_symbols;
};

} // namespace host
