#pragma once

#include "tests/authsetting/ShellTestTools.h"
#include "tests/monkey/Action.h"
#include "tests/monkey/Failure.h"
#include "tests/monkey/FocusWatch.h"
#include "tests/monkey/Hands.h"
#include "tests/monkey/ObjectCount.h"
#include "tests/monkey/Screen.h"
#include "tests/monkey/Truth.h"
#include "tests/monkey/World.h"

#include <QFile>

#include <memory>
#include <optional>

namespace monkey {

class VirtualDispatcher;

/// The life of one dialog, from its making to its end, and every check on the way.
class Episode
{
public:
    /// `without` are the sorts of failures to overlook. Every action is written to `log` before it
    /// happens, so that a crash leaves them behind.
    Episode(VirtualDispatcher& dispatcher, QStringList without, const QString& log);
    ~Episode();

    /// Lets `seed` choose `actions` actions, or fewer when the time is over.
    Failure generate(quint64 seed, int actions, const std::function<bool()>& isTimeOver);
    Failure replay(const Script& script);

    int actions() const { return m_actions; }
    int opened() const { return m_opened; }
    const Truth& truth() const { return m_truth; }

private:
    using Source = std::function<std::optional<Action>()>;

    Failure run(Source next);
    void onIdle();
    void perform(const Action& action);
    void doSurroundings(const Action& action);
    void open(const Action& action);
    void closeDialog();
    void leave();

    void check();
    void fail(const Failure& failure);
    Failure checkIdle() const;
    Failure checkClosed();
    static Failure checkWindows();
    Failure end();

    VirtualDispatcher& m_dispatcher;
    const QStringList m_without;
    QFile m_log;
    World m_world;
    std::unique_ptr<OpenDialog> m_dialog;
    Hands m_hands;
    Truth m_truth;
    FocusWatch m_focus;
    ObjectCount m_objects;
    Source m_next;
    Failure m_failure;
    Action m_latest;
    int m_actions = 0;
    int m_opened = 0;
    int m_leaveSteps = 0;
    qint64 m_lastWord = 0;
    qsizetype m_calls = 0;
    bool m_isMenuOpen = false;
    bool m_isForgotten = false;
    bool m_wasVisible = false;
    bool m_isLeaving = false;
    bool m_hasTold = false;
};

} // namespace monkey
