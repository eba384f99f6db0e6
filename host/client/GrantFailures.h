#pragma once

#include "authsetting/services/AuthDetail.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace backend {
class Session;
}

namespace host {

class AccountMessages;

/// The dialog announces each grant among its account's messages when it sends it; this adds a
/// second message when the grant was refused after all or its file was not written. GUI thread
/// only.
class GrantFailures : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object.
    GrantFailures(const backend::Session& session, AccountMessages& messages,
                  QObject* parent = nullptr);

private:
    using Grants = QVector<boost::shared_ptr<GW::CAuthDetail>>;

    void tellRefused(const QString& grantee, const mbservice::CAccountInfo& account,
                     const QString& reason);
    void tellUnwritten(const Grants& grants, const QString& reason);
    void tell(const mbservice::CAccountInfo& account, const QString& text);

    const backend::Session& m_session;
    AccountMessages& m_messages;
    /// Accounts and texts of the event loop's present turn about files.
    QSet<QString> m_unwritten;
};

} // namespace host
