#pragma once

#include <QByteArrayView>

#include <cstddef>

namespace backend {

/// Bytes that are wiped before their memory is given back: keys, passwords, payloads of sealed
/// files. They live in pages of their own between guard pages, which the system keeps out of swap
/// and core dumps as far as the process may lock memory; where it may not, they are still wiped.
///
/// Movable, not copyable. Any thread, one at a time.
class SecretBytes
{
public:
    SecretBytes() noexcept = default;
    SecretBytes(SecretBytes&& other) noexcept;
    SecretBytes& operator=(SecretBytes&& other) noexcept;
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;
    ~SecretBytes();

    /// `size` zero bytes; null when the memory is not to be had.
    static SecretBytes allocate(std::size_t size);

    /// Whether nothing is held, as after a failed allocate().
    bool isNull() const { return m_data == nullptr; }
    std::size_t size() const { return m_size; }
    unsigned char* data() { return m_data; }
    const unsigned char* data() const { return m_data; }
    /// Valid as long as this object holds its bytes.
    QByteArrayView view() const;

    /// Shortens to the first `size` bytes and wipes the others; a larger `size` changes nothing.
    void truncate(std::size_t size);
    /// Wipes and releases the bytes.
    void clear();

private:
    unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace backend
