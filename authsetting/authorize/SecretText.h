#pragma once

#include <QByteArray>
#include <QString>

namespace GW {

/// Empties a text, overwriting its memory first where nobody else shares it. Copies that others
/// hold, and those that Qt made on the way, are not reached.
void wipeSecret(QString& text);
void wipeSecret(QByteArray& bytes);

} // namespace GW
