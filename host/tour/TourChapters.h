#pragma once

#include <QString>

namespace host {

struct TourStage;

/// The chapters of the tour, to be walked in this order. Each begins with the sign-in window shown
/// and ends so, except that the first one restarts the client; each throws TourFailure at the first
/// step that does not do what it has to.

/// Signs in, grants two accounts on the server and one into a file, cancels one, restarts the
/// client and finds it all. Returns the path of the file, sealed with filePassword().
QString walkBatchGrants(TourStage& stage);

/// Grants one account with a margin limit, opened from the account list, and cancels it.
void walkSingleAccount(TourStage& stage);

/// Imports the file `path` as the user for whom it was sealed.
void walkImport(TourStage& stage, const QString& path);

/// Disables a sub-user, enables him with a new password, grants to him and signs in as him.
void walkSubUsers(TourStage& stage);

/// Reads the audit trail.
void walkAuditTrail(TourStage& stage);

/// Draws every page in both themes into `folder`.
void drawPages(TourStage& stage, const QString& folder);

/// Password of the tour's authorization file.
QString filePassword();

} // namespace host
