#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace GW {

/// The questions of one page to the client whether a user may receive grants. The answers carry no
/// request tag and reach every page, so the page remembers whom it asked about. GUI thread only.
class CUserCheck
{
public:
    /// `page` asks and must outlive this.
    explicit CUserCheck(const QWidget* page);

    /// Asks about `user`; nothing for an empty name or without a client.
    void ask(const QString& user);

    /// Takes the answer about `user`: whether it is this page's to tell. That is one to its own
    /// question wherever the user is by now, and any other unless another page covers this one.
    bool takeAnswer(const QString& user);

private:
    const QWidget* m_page;
    QStringList m_asked;
};

} // namespace GW
