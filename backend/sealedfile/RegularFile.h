#pragma once

#include <QByteArray>
#include <QString>

namespace backend {

/// Reads the first `maxBytes` bytes of the regular file at `path` into `*bytes`. Returns 0, or the
/// errno of what failed (EINVAL for what is no regular file or no file name, ENOMEM when the memory
/// is not to be had), and `*bytes` is then empty. Never waits for a pipe or a device. Any thread.
int readRegularFile(const QString& path, qsizetype maxBytes, QByteArray* bytes);

} // namespace backend
