#pragma once

namespace host {

struct HostOptions;

/// Walks the guided tour on a temporary store or on the server of `options`, where its location
/// names the administrator; the application object must exist and no event loop run yet. Returns
/// the program's exit code: 0, or 4 with the reason on standard error. A tour that hangs is ended
/// with 5.
int runTour(const HostOptions& options);

} // namespace host
