#include "kit/keyboard/CapsLock.h"

#include <QGuiApplication>
#include <QLibrary>

namespace KZ {

namespace {

/// XkbGetIndicatorState() of libX11, which Qt's X11 platform has loaded already; so the kit needs
/// no dependency of its own on X11.
using IndicatorState = int (*)(void* display, unsigned device, unsigned* state);

/// XkbUseCoreKbd of X11/extensions/XKB.h.
[[maybe_unused]] constexpr unsigned CORE_KEYBOARD = 0x0100;
/// The first indicator is Caps Lock in every keyboard description of xkeyboard-config.
[[maybe_unused]] constexpr unsigned CAPS_LOCK_INDICATOR = 0x1;

[[maybe_unused]] IndicatorState indicatorState()
{
    static const auto function = reinterpret_cast<IndicatorState>(
        QLibrary::resolve(QStringLiteral("X11"), 6, "XkbGetIndicatorState"));
    return function;
}

} // namespace

std::optional<bool> queryCapsLock()
{
#if QT_CONFIG(xcb)
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    void* const display = x11 ? x11->display() : nullptr;
    unsigned state = 0;
    constexpr int success = 0;
    if (display && indicatorState() && indicatorState()(display, CORE_KEYBOARD, &state) == success)
        return (state & CAPS_LOCK_INDICATOR) != 0;
#endif
    return std::nullopt;
}

} // namespace KZ
