#pragma once

#include "backend/sealedfile/SecretBytes.h"

#include <QIODevice>

namespace backend {

/// Writes straight into a buffer of fixed size that is wiped when it goes, so that no copy of the
/// content stays behind in ordinary memory. What does not fit is dropped and remembered.
class SecretSink final : public QIODevice
{
    Q_OBJECT

public:
    /// `buffer` must outlive the sink.
    explicit SecretSink(SecretBytes* buffer);

    std::size_t written() const { return m_written; }
    bool overflowed() const { return m_overflowed; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    SecretBytes* m_buffer;
    std::size_t m_written = 0;
    bool m_overflowed = false;
};

} // namespace backend
