#include "authsetting/services/AuthClient.h"
#include "authsetting/services/AuthDetail.h"
#include "backend/client/ConnectionState.h"
#include "backend/store/ExportError.h"
#include "tests/backend/ClientSpy.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/postgresql/TcpProxy.h"
#include "tests/support/TestCase.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

using backend::ExportError;
using backend::Session;

namespace {

const QString alice = QStringLiteral("alice");
const QString bob = QStringLiteral("bob");

// With what a loaded machine may add before the test sees it.
constexpr int offlineBound = 15'000 + 5'000;

// A grant that has been prepared for a file, as a page has it afterwards.
boost::shared_ptr<GW::CAuthDetail> prepare(Session& session, int number)
{
    ClientSpy spy(session.authClient());
    auto grant = boost::make_shared<GW::CAuthDetail>();
    grant->grantor = alice;
    grant->grantee = bob;
    grant->account = DesksFixture::account(number);
    grant->limit = DesksFixture::week();
    session.authClient()->addAuth(bob, grant->account, grant->limit, {}, false);
    spy.wait(1);
    grant->grantRef = spy.references.value(0);
    return grant;
}

QStringList states(const DesksFixture& fixture)
{
    return fixture.query(QStringLiteral("SELECT state FROM authsetting.grants"));
}

} // namespace

class ExportFaultsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anExportWhoseReplyIsLostIsDoneOnce()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(2));
        TcpProxy proxy(DesksFixture::serverPort());
        const QTemporaryDir folder;
        const auto session = fixture.signIn(alice, proxy.port());
        QVERIFY(session);
        const auto grant = prepare(*session, 1);
        proxy.loseReplyOf("commit_export");
        const QString path = folder.filePath(QStringLiteral("a.taa"));
        QCOMPARE(session->authClient()->exportAuth(path, QStringLiteral("pw"), {grant}), 0);
        QCOMPARE(proxy.lostReplies(), 1);
        QVERIFY(QFile::exists(path));
        QCOMPARE(states(fixture), QStringList(QStringLiteral("2")));
        QCOMPARE(fixture.query(QStringLiteral(
                     "SELECT count(*) FROM authsetting.audit_trail WHERE action = 'export'")),
                 QStringList(QStringLiteral("1")));
    }

    void anExportIntoSilenceIsTakenBackWhenTheServerAnswersAgain()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(2));
        TcpProxy proxy(DesksFixture::serverPort());
        const QTemporaryDir folder;
        const auto session = fixture.signIn(alice, proxy.port());
        QVERIFY(session);
        const auto grant = prepare(*session, 1);
        const QString path = folder.filePath(QStringLiteral("a.taa"));

        proxy.swallowToClient();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(session->authClient()->exportAuth(path, QStringLiteral("pw"), {grant}),
                 static_cast<int>(ExportError::Store));
        QVERIFY2(timer.elapsed() <= offlineBound, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(!QFile::exists(path));
        // The server has done what it was asked, only nobody heard of it.
        QCOMPARE(states(fixture), QStringList(QStringLiteral("2")));
        QTRY_VERIFY(!session->connectionState()->isOnline());

        // No second wait while it is away.
        timer.restart();
        QCOMPARE(session->authClient()->exportAuth(path, QStringLiteral("pw"), {grant}),
                 static_cast<int>(ExportError::Store));
        QVERIFY2(timer.elapsed() < 8000, qPrintable(QString::number(timer.elapsed())));

        proxy.pass();
        proxy.cut();
        QTRY_VERIFY_WITH_TIMEOUT(session->connectionState()->isOnline(), offlineBound);
        QTRY_COMPARE(states(fixture), QStringList(QStringLiteral("1")));
        QCOMPARE(session->authClient()->exportAuth(path, QStringLiteral("pw"), {grant}), 0);
        QVERIFY(QFile::exists(path));
        QCOMPARE(states(fixture), QStringList(QStringLiteral("2")));
    }
};

int main(int argc, char** argv)
{
    return runTest<ExportFaultsTest>(argc, argv);
}

#include "ExportFaultsTest.moc"
