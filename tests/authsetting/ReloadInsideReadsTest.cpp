#include "authsetting/services/Services.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <climits>
#include <functional>

namespace {

/// A client whose reads tell of a change before they answer.
class RestlessClient : public FakeAuthClient
{
public:
    bool getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out) override
    {
        disturb();
        return FakeAuthClient::getAuthDetail(accountKey, out);
    }
    bool getAuthorizedFromMeInfo(QString user,
                                 QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out) override
    {
        disturb();
        return FakeAuthClient::getAuthorizedFromMeInfo(user, out);
    }
    bool getSubUserList(QVector<QString>& out) override
    {
        disturb();
        return FakeAuthClient::getSubUserList(out);
    }
    bool isSubUserActive(QString user) override
    {
        disturb();
        return FakeAuthClient::isSubUserActive(user);
    }

    /// Called inside the next reads.
    std::function<void()> onRead;
    /// How many reads are left that tell of a change.
    int disturbances = 0;

private:
    void disturb()
    {
        if (disturbances <= 0)
            return;
        --disturbances;
        if (onRead)
            onRead();
        Q_EMIT sigUiUpdateAuth();
    }
};

} // namespace

/// A service that leads to a reload inside a read of that very reload.
class ReloadInsideReadsTest : public TipTestCase
{
    Q_OBJECT

    static void addPlaces()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("tab");
        QTest::addColumn<int>("rows");
        QTest::newRow("overview") << 201 << INT_MAX << QString() << 0 << 3;
        QTest::newRow("batch") << 201 << INT_MAX << QString() << 1 << 3;
        QTest::newRow("single account")
            << 201 << 20101 << QStringLiteral("1|9000|0|1000") << 0 << 1;
        QTest::newRow("import") << 202 << INT_MAX << QString() << 0 << 0;
        QTest::newRow("sub-users") << 203 << INT_MAX << QString() << 0 << 2;
        QTest::newRow("sub-user") << 203 << 20401 << QStringLiteral("u1") << 0 << 3;
    }

private Q_SLOTS:
    void aListThatShrinksInsideAReadIsShownOnce_data() { addPlaces(); }
    void aListThatShrinksInsideAReadIsShownOnce()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(QString, key);
        QFETCH(int, tab);
        QFETCH(int, rows);
        FakeServices services;
        RestlessClient client;
        GW::installServices(&client, &services.user, &services.config, &services.messages,
                            &services.time);
        client.subUsers = {QStringLiteral("u1"), QStringLiteral("u2"), QStringLiteral("u3")};
        client.activeSubUsers = {QStringLiteral("u1"), QStringLiteral("u2")};
        for (int number = 0; number < 6; ++number)
            services.user.addAccount(1, 1, "9000", std::to_string(1000 + number),
                                     mbservice::AUTH_TYPE_NOT_GRANTED);
        OpenDialog dialog;
        dialog.setNavigatorFiller(GW::fillNavigator);
        dialog.load();
        dialog.show();
        client.onRead = [&] {
            services.user.accounts.resize(3);
            client.subUsers.resize(2);
        };
        client.disturbances = 4;
        dialog.showPage(page, subPage, key, tab);
        Q_EMIT client.sigUiUpdateAuth();
        QCoreApplication::processEvents();
        auto* table =
            dialog.shownPage()->tabControl()->getTabWidget(tab)->findChild<KZ::COddEvenRowTable*>();
        QCOMPARE(table->rowCount(), rows);
        QSet<QString> names;
        for (int row = 0; row < table->rowCount(); ++row)
            names.insert(table->rowKey(row));
        QVERIFY2(rows < 2 || names.size() == rows, "a row stands there twice");
    }

    void aServiceThatTellsOfAChangeAtEveryReadStopsNobody_data() { addPlaces(); }
    void aServiceThatTellsOfAChangeAtEveryReadStopsNobody()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(QString, key);
        QFETCH(int, tab);
        FakeServices services;
        RestlessClient client;
        GW::installServices(&client, &services.user, &services.config, &services.messages,
                            &services.time);
        client.subUsers = {QStringLiteral("u1")};
        client.activeSubUsers = {QStringLiteral("u1")};
        services.user.addAccount(1, 1, "9000", "1000", mbservice::AUTH_TYPE_NOT_GRANTED);
        OpenDialog dialog;
        dialog.show();
        client.disturbances = 1000;
        dialog.showPage(page, subPage, key, tab);
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
        client.disturbances = 0;
        QVERIFY(dialog.isVisible());
    }
};

int main(int argc, char** argv)
{
    return runTest<ReloadInsideReadsTest>(argc, argv);
}

#include "ReloadInsideReadsTest.moc"
