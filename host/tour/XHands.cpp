#include "host/tour/XHands.h"

#include "host/tour/TourFailure.h"

#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace host {

namespace {

// Between two actions, so that the program meets them one by one as from a hand.
constexpr int pauseMs = 12;

template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

void XHands::Disconnect::operator()(xcb_connection_t* connection) const
{
    xcb_disconnect(connection);
}

XHands::XHands() : m_connection(xcb_connect(nullptr, nullptr))
{
    xcb_connection_t* const x = m_connection.get();
    if (xcb_connection_has_error(x) != 0)
        throw TourFailure(QStringLiteral("导览需要一个 X 显示（环境变量 DISPLAY）。"));
    const ReplyPointer<xcb_test_get_version_reply_t> version(
        xcb_test_get_version_reply(x, xcb_test_get_version(x, 2, 2), nullptr), &std::free);
    if (!version)
        throw TourFailure(QStringLiteral("X 服务器不接受模拟的键盘和鼠标（缺少 XTEST 扩展）。"));

    const xcb_setup_t* const setup = xcb_get_setup(x);
    m_root = xcb_setup_roots_iterator(setup).data->root;
    m_firstCode = setup->min_keycode;
    const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    const ReplyPointer<xcb_get_keyboard_mapping_reply_t> mapping(
        xcb_get_keyboard_mapping_reply(x, xcb_get_keyboard_mapping(x, m_firstCode, count), nullptr),
        &std::free);
    if (!mapping)
        throw TourFailure(QStringLiteral("X 服务器没有给出键盘布局。"));
    m_symbolsPerCode = mapping->keysyms_per_keycode;
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    m_symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(mapping.get()));
}

XHands::~XHands() = default;

void XHands::moveTo(const QPoint& position)
{
    fake(XCB_MOTION_NOTIFY, 0, position);
    pause();
}

void XHands::click(const QPoint& position, Button button)
{
    moveTo(position);
    fake(XCB_BUTTON_PRESS, button);
    pause();
    fake(XCB_BUTTON_RELEASE, button);
    pause();
}

void XHands::doubleClick(const QPoint& position)
{
    click(position);
    click(position);
}

void XHands::press(const std::vector<quint32>& keys)
{
    std::vector<quint8> codes;
    for (const quint32 key : keys) {
        const Stroke stroke = strokeFor(key);
        if (stroke.shifted && codes.empty())
            codes.push_back(strokeFor(KeyShift).code);
        codes.push_back(stroke.code);
    }
    for (const quint8 code : codes)
        fake(XCB_KEY_PRESS, code);
    pause();
    std::for_each(codes.rbegin(), codes.rend(),
                  [this](quint8 code) { fake(XCB_KEY_RELEASE, code); });
    pause();
}

void XHands::type(const QString& text)
{
    for (const QChar character : text)
        press({character.unicode()});
}

XHands::Stroke XHands::strokeFor(quint32 symbol) const
{
    // Only the first two columns of the keyboard's table, plain and shifted: the first layout.
    const int levels = std::min(m_symbolsPerCode, 2);
    for (int level = 0; level < levels; ++level) {
        for (std::size_t i = static_cast<std::size_t>(level); i < m_symbols.size();
             i += static_cast<std::size_t>(m_symbolsPerCode)) {
            if (m_symbols[i] == symbol)
                return {static_cast<quint8>(m_firstCode +
                                            i / static_cast<std::size_t>(m_symbolsPerCode)),
                        level == 1};
        }
    }
    throw TourFailure(QStringLiteral("键盘上没有编号 %1 的键。").arg(symbol, 0, 16));
}

void XHands::fake(quint8 type, quint8 detail, const QPoint& position)
{
    xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME, m_root,
                        static_cast<qint16>(position.x()), static_cast<qint16>(position.y()), 0);
    xcb_flush(m_connection.get());
}

void XHands::pause() const
{
    QThread::msleep(pauseMs);
}

} // namespace host
