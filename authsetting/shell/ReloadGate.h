#pragma once

#include <functional>
#include <memory>

namespace GW {

class IAuthSettingTabPage;

/// Lets a tab page be filled only when that harms nobody: not while the page is being filled or
/// reads the services for its rows, and not while something of its own is open in front of it in
/// which the user types. A reload that was asked for meanwhile follows. GUI thread only.
class CReloadGate
{
public:
    /// `page` owns this.
    explicit CReloadGate(IAuthSettingTabPage* page);
    ~CReloadGate();
    CReloadGate(const CReloadGate&) = delete;
    CReloadGate& operator=(const CReloadGate&) = delete;

    /// Runs `fill`, and once more when another reload was asked for inside it; nothing now while
    /// somebody holds reloads.
    void run(const std::function<void()>& fill);
    /// The same for a page that has to show something else from now on: no hold stops it.
    void runAnyway(const std::function<void()>& fill);

private:
    struct State;

public:
    /// Puts reloads off as long as it exists; the page may die before it.
    class Hold
    {
    public:
        explicit Hold(const CReloadGate& gate);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        const std::shared_ptr<State> m_state;
    };

private:
    static void follow(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> m_state;
};

} // namespace GW
