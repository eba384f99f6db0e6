#pragma once

#include "backend/store/StoreOptions.h"

#include <QString>

namespace bench {

/// The user of a filled store, and another one to whom his accounts can be granted.
QString grantorName();
QString granteeName();

/// Makes a store on the disk below `folder` with both users and `accounts` accounts of the grantor,
/// none of them granted. Returns how to open it.
backend::StoreOptions makeFilledStore(const QString& folder, int accounts);

/// Fills the store of `options`, opened with an administrator's rights, in the same way.
void fillStore(const backend::StoreOptions& options, int accounts);

} // namespace bench
