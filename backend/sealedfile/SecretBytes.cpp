#include "backend/sealedfile/SecretBytes.h"

#include <sodium.h>

#include <cstring>
#include <utility>

namespace backend {

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0))
{
}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept
{
    if (this != &other) {
        clear();
        m_data = std::exchange(other.m_data, nullptr);
        m_size = std::exchange(other.m_size, 0);
        m_capacity = std::exchange(other.m_capacity, 0);
    }
    return *this;
}

SecretBytes::~SecretBytes()
{
    clear();
}

SecretBytes SecretBytes::allocate(std::size_t size)
{
    SecretBytes bytes;
    // The library sets up its page size and canary first; it does so once, from any thread.
    if (sodium_init() < 0)
        return bytes;
    // Locking the pages is tried inside and may fail without consequence.
    bytes.m_data = static_cast<unsigned char*>(sodium_malloc(size));
    if (bytes.m_data == nullptr)
        return bytes;
    std::memset(bytes.m_data, 0, size);
    bytes.m_size = size;
    bytes.m_capacity = size;
    return bytes;
}

QByteArrayView SecretBytes::view() const
{
    return {reinterpret_cast<const char*>(m_data), static_cast<qsizetype>(m_size)};
}

void SecretBytes::truncate(std::size_t size)
{
    if (size >= m_size)
        return;
    sodium_memzero(m_data + size, m_capacity - size);
    m_size = size;
}

void SecretBytes::clear()
{
    // Wipes before it unmaps.
    sodium_free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
}

} // namespace backend
