#pragma once

#include "tests/monkey/Action.h"
#include "tests/monkey/Call.h"
#include "tests/monkey/Failure.h"
#include "tests/monkey/Screen.h"

#include <QHash>

namespace monkey {

class World;

/// Judges what reached the client by what the dialog showed when the user acted.
class Truth
{
public:
    explicit Truth(const World& world) : m_world(world) {}

    /// Call it before each action.
    void look(const Screen& screen, const Action& action);
    /// The menu that grants has been opened by the latest action.
    void menuOpened() { m_menu = m_screen; }
    /// The user accepted this path in a file dialog.
    void pathChosen(const QString& path) { m_path = path; }

    /// Judges the calls since the last time; empty when all is well.
    Failure judge();

    int grants() const { return m_grants; }
    int cancels() const { return m_cancels; }
    int files() const { return m_files; }

private:
    /// What one choice from a menu sent.
    struct Request
    {
        QVector<int> calls;
        QString path;
        QString password;
    };

    Failure judgeCall(const Call& call);
    Failure judgeGrants(const QVector<int>& calls);
    Failure judgeGrant(const Call& call, const ScreenRow& row) const;
    Failure judgeCancel(const Call& call);
    Failure judgeUsers(const QVector<int>& calls);
    Failure judgePassword(const Call& call) const;
    Failure judgeImport(const Call& call) const;
    Failure judgeExport(const Call& call);
    QVector<ScreenRow> grantedRows() const;

    const World& m_world;
    int m_judged = 0;
    Screen m_screen;
    Action m_action;
    Screen m_menu;
    QString m_path;
    /// File grants by their paths.
    QHash<QString, Request> m_requests;
    int m_grants = 0;
    int m_cancels = 0;
    int m_files = 0;
};

} // namespace monkey
