#pragma once

#include <QPointer>
#include <QString>
#include <QVector>

#include <map>
#include <tuple>

namespace KZ {

class CMessageTip;

/// Which texts have come to which tips since the event loop's present turn began, so that one text
/// said to several anchors at once is shown once. GUI thread only.
class CTipTurn
{
public:
    struct Call
    {
        int level;
        int duration;
    };
    /// The equal texts of the turn and the tip that has them all.
    struct Group
    {
        QPointer<CMessageTip> tip;
        QVector<Call> calls;
    };

    /// The group of the texts that equal `text` and came with this kind and topic; made when it is
    /// the first. Valid until control returns to the event loop.
    static Group& group(const QString& text, int kind, quint64 topic);

private:
    std::map<std::tuple<QString, int, quint64>, Group> m_groups;
};

} // namespace KZ
