#include "authsetting/authorize/SecretText.h"

#include <cstring>

namespace GW {

namespace {

template <class Text>
void wipe(Text& text)
{
    // Called through a volatile pointer, so that the compiler keeps writes that nobody reads.
    static void* (*const volatile fill)(void*, int, std::size_t) = std::memset;
    if (text.isDetached())
        fill(text.data(), 0, static_cast<std::size_t>(text.size()) * sizeof(*text.constData()));
    text.clear();
}

} // namespace

void wipeSecret(QString& text)
{
    wipe(text);
}

void wipeSecret(QByteArray& bytes)
{
    wipe(bytes);
}

} // namespace GW
