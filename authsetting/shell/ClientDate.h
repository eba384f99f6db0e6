#pragma once

#include <QDate>

namespace GW {

/// The client's current calendar day in the exchange time zone: from the installed time service,
/// or from the machine's clock when none is installed.
QDate clientToday();

} // namespace GW
