#pragma once

#include <QVariant>

class QWidget;

namespace GW {

/// The tag that `page` sends with its requests: its address truncated to 32 bits, as an int.
QVariant requestTag(const QWidget* page);

/// Whether a result carrying `tag` answers a request of `page`.
bool isRequestOf(const QWidget* page, const QVariant& tag);

} // namespace GW
