#pragma once

#include <QString>
#include <QStringList>

namespace monkey {

/// The command line of the program.
struct Options
{
    /// Says on the standard error what is wrong; false then.
    bool read(const QStringList& arguments);

    /// Of the first dialog; the next has the next number.
    quint64 seed = 0;
    bool hasSeed = false;
    /// 0 stands for no bound.
    qint64 actions = 0;
    int seconds = 0;
    int perDialog = 1000;
    /// A script to replay instead.
    QString script;
    /// A list of seeds to run first.
    QString seeds;
    /// Sorts of failures to overlook.
    QStringList without;
    /// Goes on after a failure and tells at the end how often each sort came.
    bool collects = false;
    /// How many shorter scripts are tried after a failure.
    int tries = 400;
};

} // namespace monkey
