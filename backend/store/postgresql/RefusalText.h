#pragma once

#include <QString>

namespace backend {

/// The reason in Chinese that stands for one of the codes with which the server's functions refuse;
/// the same words as the embedded store's.
QString refusalText(const QString& code);

} // namespace backend
