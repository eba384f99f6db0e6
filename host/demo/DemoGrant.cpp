#include "host/demo/DemoGrant.h"

namespace host {

using backend::GrantSource;
using backend::GrantState;

const std::vector<DemoGrant>& DemoGrant::all()
{
    static const std::vector<DemoGrant> grants = {
        // Well under way, on the server; the second one with a limit.
        {"80010002", "zhao.ke", -10, 20, GrantSource::Server, GrantState::Current},
        {"60330105", "lin.day", -3, 27, GrantSource::Server, GrantState::Current, false, 0.35},
        // Ending soon: in two days, and today.
        {"80020017", "chen.mu", -28, 2, GrantSource::Server, GrantState::Current},
        {"A100200301", "lin.day", -14, 0, GrantSource::Server, GrantState::Current},
        // Not yet begun.
        {"31007711", "lin.night", 4, 18, GrantSource::Server, GrantState::Current},
        // In a file: taken up by the grantee, and still on its way to him.
        {"A330044110", "zhao.ke", -5, 25, GrantSource::File, GrantState::Current, true},
        {"60550230", "chen.mu", 0, 13, GrantSource::File, GrantState::Current},
        // Prepared for a file that was never written: the account is still free.
        {"60550231", "chen.mu", 0, 7, GrantSource::File, GrantState::Prepared},
        // Over.
        {"80010001", "zhao.ke", -40, -12, GrantSource::Server, GrantState::Expired},
        {"80010001", "chen.mu", -11, 9, GrantSource::Server, GrantState::Cancelled},
        {"A100200302", "zhao.ke", -60, -31, GrantSource::File, GrantState::Expired, true},
        {"0190220075", "lin.intern", -6, 24, GrantSource::Server, GrantState::Cancelled},
        // What the main user received.
        {"80011203", "lin.yuan", -7, 23, GrantSource::Server, GrantState::Current},
        {"0190220418", "lin.yuan", -20, 3, GrantSource::File, GrantState::Current, true},
        {"A100200990", "lin.yuan", -2, 60, GrantSource::Server, GrantState::Current},
    };
    return grants;
}

} // namespace host
