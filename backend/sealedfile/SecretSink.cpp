#include "backend/sealedfile/SecretSink.h"

#include <cstring>

namespace backend {

SecretSink::SecretSink(SecretBytes* buffer) : m_buffer(buffer)
{
    // Unbuffered: a buffer inside the device would be one more copy of the content.
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 SecretSink::readData(char*, qint64)
{
    return -1;
}

qint64 SecretSink::writeData(const char* data, qint64 size)
{
    const auto count = static_cast<std::size_t>(size);
    if (m_overflowed || count > m_buffer->size() - m_written) {
        m_overflowed = true;
        return -1;
    }
    std::memcpy(m_buffer->data() + m_written, data, count);
    m_written += count;
    return size;
}

} // namespace backend
