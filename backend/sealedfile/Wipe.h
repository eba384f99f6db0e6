#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace backend {

/// Overwrites the text with zeros and empties it. Bytes that another copy still shares are left to
/// that copy. Any thread.
void wipe(QByteArray& bytes);
void wipe(QString& text);
void wipe(std::string& text);

} // namespace backend
