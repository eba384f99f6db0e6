#pragma once

#include "tests/monkey/Failure.h"

#include <QByteArray>
#include <QHash>
#include <QString>

class OpenDialog;

namespace monkey {

/// Compares how many objects the closed dialog has with the earlier closes with the same pages.
///
/// Some of Qt's helpers are made when they are first needed, and a table has widgets for the cells
/// that were seen. So a table's widgets are held against its cells, and any other class may reach a
/// new highest count a few times; one that does so with every close is never freed.
class ObjectCount
{
public:
    /// Call it after the dialog was closed and everything deleted has gone.
    Failure check(const OpenDialog& dialog);

private:
    struct Highest
    {
        int count = 0;
        int raised = -1;
    };

    QHash<QString, QHash<QByteArray, Highest>> m_highest;
};

} // namespace monkey
