#pragma once

#include <QMap>

#include <functional>

namespace GW {

class IAuthSettingTabPage;

/// Hands the outcomes of a tab page's requests to finishRequest() and sees to it that each is
/// shown: of several that come within the shortest busy time the page runs the last one only, and
/// the others follow it here. Owned by its page. GUI thread only.
class COutcomes
{
public:
    /// In place of a request's number: its outcome may give way to a later one.
    static constexpr quint64 unkept = 0;

    explicit COutcomes(IAuthSettingTabPage* page) : m_page(page) {}

    /// Shows the outcome of a request by `show` once the page is idle; one that comes again for the
    /// same request within the busy time takes the place of the one before.
    void finish(quint64 request, std::function<void()> show);

private:
    void run(quint64 request, const std::function<void()>& show);

    IAuthSettingTabPage* const m_page;
    /// What is still to be shown, by request.
    QMap<quint64, std::function<void()>> m_due;
};

} // namespace GW
