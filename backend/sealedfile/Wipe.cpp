#include "backend/sealedfile/Wipe.h"

#include <sodium.h>

namespace backend {

void wipe(QByteArray& bytes)
{
    // The unused capacity counts too: an earlier, longer content may still be there.
    if (bytes.isDetached())
        sodium_memzero(bytes.data(), static_cast<size_t>(bytes.capacity()));
    bytes = QByteArray();
}

void wipe(QString& text)
{
    if (text.isDetached())
        sodium_memzero(text.data(), static_cast<size_t>(text.capacity()) * sizeof(QChar));
    text = QString();
}

void wipe(std::string& text)
{
    // Growing within the capacity makes the unused part part of the text.
    text.resize(text.capacity());
    sodium_memzero(text.data(), text.size());
    text.clear();
}

} // namespace backend
