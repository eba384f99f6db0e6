#pragma once

#include "utils/LogCenter.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QTemporaryDir>

/// Collects the lines that the program logs from now on.
class LogLines
{
public:
    LogLines() { utils::CLogCenter::configure(path()); }

    QList<QByteArray> lines() const
    {
        QFile file(path());
        if (!file.open(QIODevice::ReadOnly))
            return {QByteArray("the log cannot be read")};
        QList<QByteArray> lines = file.readAll().split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("log")); }

    QTemporaryDir m_folder;
};
