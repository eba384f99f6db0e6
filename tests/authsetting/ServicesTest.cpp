#include "authsetting/services/Services.h"

#include "authsetting/services/Account.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthType.h"
#include "kit/resources/UiResource.h"
#include "tests/support/TestCase.h"
#include "tests/support/fakes/FakeServices.h"

#include <QMetaMethod>
#include <QSet>

#include <cmath>
#include <limits>

namespace {

mbservice::CAccountInfo accountOf(int platform, const std::string& broker, int subType,
                                  const std::string& number)
{
    mbservice::CAccountInfo account;
    account.platformId = platform;
    account.brokerId = broker;
    account.accountSubType = subType;
    account.accountId = number;
    return account;
}

} // namespace

/// The records and free functions that every page relies on.
class ServicesTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aKeyNamesTheAccountAndTurnsBack_data()
    {
        QTest::addColumn<int>("platform");
        QTest::addColumn<QByteArray>("broker");
        QTest::addColumn<int>("subType");
        QTest::addColumn<QByteArray>("number");
        QTest::newRow("plain") << 3 << QByteArray("9000") << 0 << QByteArray("80010001");
        QTest::newRow("empty") << 0 << QByteArray() << 0 << QByteArray();
        QTest::newRow("separators") << 1 << QByteArray("a|b") << 2 << QByteArray("|");
        QTest::newRow("percent signs") << 1 << QByteArray("%7C") << 2 << QByteArray("%");
        QTest::newRow("tildes and dots") << 1 << QByteArray("~.-_") << 2 << QByteArray("~");
        QTest::newRow("chinese") << 1 << QByteArray("远山期货") << 2 << QByteArray("账号一");
        QTest::newRow("any bytes")
            << 1 << QByteArray("\x00\x01\xff\xfe", 4) << 2 << QByteArray("a\0b", 3);
        QTest::newRow("extreme numbers") << std::numeric_limits<int>::min() << QByteArray("b")
                                         << std::numeric_limits<int>::max() << QByteArray("1");
    }

    void aKeyNamesTheAccountAndTurnsBack()
    {
        QFETCH(int, platform);
        QFETCH(QByteArray, broker);
        QFETCH(int, subType);
        QFETCH(QByteArray, number);
        const GW::CAccount account(
            accountOf(platform, broker.toStdString(), subType, number.toStdString()));
        const QString key = GW::genAccountKeyQs(account);
        QCOMPARE(account.key(), key);
        const mbservice::CAccountInfo back = GW::keyToAccountInfo(key);
        QVERIFY(mbservice::isSameAccount(back, account));
        QCOMPARE(GW::genAccountKeyQs(back), key);
        for (const QChar character : key)
            QVERIFY2(character > u' ' && character < u'\x7f', qPrintable(key));
    }

    void aKeyHasTheFormThatIsStored()
    {
        QCOMPARE(GW::genAccountKeyQs(accountOf(3, "9000", 2, "a b")),
                 QStringLiteral("3|9000|2|a%20b"));
    }

    void accountsThatDifferHaveDifferentKeys()
    {
        const QVector<mbservice::CAccountInfo> accounts{
            accountOf(1, "b", 0, "1"), accountOf(2, "b", 0, "1"), accountOf(1, "c", 0, "1"),
            accountOf(1, "b", 1, "1"), accountOf(1, "b", 0, "2"), accountOf(1, "b|0", 0, "1"),
            accountOf(1, "", 0, "b1"), accountOf(1, "B", 0, "1"), accountOf(1, "b", 0, " 1")};
        QSet<QString> keys;
        for (const mbservice::CAccountInfo& left : accounts) {
            keys.insert(GW::genAccountKeyQs(left));
            for (const mbservice::CAccountInfo& right : accounts)
                QCOMPARE(mbservice::isSameAccount(left, right), &left == &right);
        }
        QCOMPARE(keys.size(), accounts.size());
    }

    void whatDoesNotIdentifyAnAccountIsNotInItsKey()
    {
        const mbservice::CAccountInfo plain = accountOf(1, "b", 0, "1");
        mbservice::CAccountInfo dressed = plain;
        dressed.accountType = 2;
        dressed.accountAlias = "alias";
        dressed.accountPrivate = "secret";
        QVERIFY(mbservice::isSameAccount(plain, dressed));
        QCOMPARE(GW::genAccountKeyQs(dressed), GW::genAccountKeyQs(plain));
    }

    void aTextThatIsNoKeyNamesNoAccount_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text :
             {"", "|||", "1|b|0", "1|b|0|1|2", "x|b|0|1", "1|b|y|1", " 1|b|0|1", "01|b|0|1",
              "+1|b|0|1", "1|b|0|%2g", "1|%7c|0|1", "1|%62|0|1", "99999999999|b|0|1"})
            QTest::newRow(qPrintable(QStringLiteral("'%1'").arg(QString::fromLatin1(text))))
                << QString::fromLatin1(text);
        QTest::newRow("chinese") << QStringLiteral("1|远|0|1");
    }

    void aTextThatIsNoKeyNamesNoAccount()
    {
        QFETCH(QString, text);
        const mbservice::CAccountInfo none = GW::keyToAccountInfo(text);
        QVERIFY(mbservice::isSameAccount(none, mbservice::CAccountInfo()));
    }

    void anAccountIsShownByItsAliasIfItHasOne()
    {
        mbservice::CAccountInfo account = accountOf(1, "b", 0, "80010001");
        QCOMPARE(GW::accountDisplayIDQs(account), QStringLiteral("80010001"));
        account.accountAlias = "主账户";
        QCOMPARE(GW::accountDisplayIDQs(account), QStringLiteral("主账户"));
    }

    void everyStateHasItsTextAndColour_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("colorKey");
        const QString unknown = QStringLiteral("未知状态");
        const QString unknownKey = QStringLiteral("clr_auth_type_unknown");
        QTest::newRow("unknown") << 0 << unknown << unknownKey;
        QTest::newRow("not granted")
            << 1 << QStringLiteral("未授权") << QStringLiteral("clr_auth_type_not_granted");
        QTest::newRow("received") << 2 << QStringLiteral("被授权")
                                  << QStringLiteral("clr_auth_type_granted_to_me");
        QTest::newRow("granted") << 3 << QStringLiteral("已授权")
                                 << QStringLiteral("clr_auth_type_granted_to_other");
        QTest::newRow("another value") << 9 << unknown << unknownKey;
        QTest::newRow("negative") << -1 << unknown << unknownKey;
    }

    void everyStateHasItsTextAndColour()
    {
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(QString, colorKey);
        const auto state = static_cast<mbservice::EAuthType>(type);
        QCOMPARE(GW::authTypeToString(state, QString()), text);
        QCOMPARE(GW::authTypeToString(state, QStringLiteral("bob")),
                 text + QStringLiteral("(bob)"));
        QCOMPARE(QString::fromLatin1(GW::authTypeToColorKey(state)), colorKey);
        QVERIFY(KZ::CUiResource::hasKey(colorKey));
        GW::CAccount account;
        account.authType = state;
        QCOMPARE(account.authTypeString(), text);
    }

    void aLimitHasNoConditionUntilOneIsSet_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<bool>("conditional");
        QTest::newRow("the largest double") << std::numeric_limits<double>::max() << false;
        QTest::newRow("zero") << 0.0 << true;
        QTest::newRow("half") << 0.5 << true;
        QTest::newRow("one") << 1.0 << true;
        QTest::newRow("just less than the largest")
            << std::nextafter(std::numeric_limits<double>::max(), 0.0) << true;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << true;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << true;
    }

    void aLimitHasNoConditionUntilOneIsSet()
    {
        QFETCH(double, ratio);
        QFETCH(bool, conditional);
        GW::CAuthLimit limit;
        QCOMPARE(limit.availableMarginRatio, std::numeric_limits<double>::max());
        QVERIFY(!limit.hasMarginRatio());
        limit.availableMarginRatio = ratio;
        QCOMPARE(limit.hasMarginRatio(), conditional);
    }

    void theServicesAreThoseThatWereInstalledLast()
    {
        QVERIFY(!GW::getAuthClient() && !GW::getUserConfig() && !GW::getConfig() &&
                !GW::getMsgService() && !GW::getTimeService());
        {
            FakeServices services;
            QCOMPARE(GW::getAuthClient(), &services.client);
            QCOMPARE(GW::getUserConfig(), &services.user);
            QCOMPARE(GW::getConfig(), &services.config);
            QCOMPARE(GW::getMsgService(), &services.messages);
            QCOMPARE(GW::getTimeService(), &services.time);
            FakeAuthClient other;
            GW::installServices(&other, nullptr, &services.config, nullptr, nullptr);
            QCOMPARE(GW::getAuthClient(), &other);
            QCOMPARE(GW::getUserConfig(), nullptr);
        }
        QCOMPARE(GW::getConfig(), nullptr);
    }

    void theSignalsCarryWhatReceiversConnectTo_data()
    {
        QTest::addColumn<QByteArray>("signal");
        for (const char* signal :
             {"sigAddAuthResult(QString,mbservice::CAccountInfo,CAuthLimit,QString,QVariant,bool,"
              "QString,bool)",
              "sigDelAuthResult(QString,mbservice::CAccountInfo,QVariant,bool,QString)",
              "sigCheckAuthuserResult(QString,bool,QString)",
              "sigValidAuth(QString,QString,bool,QString)",
              "sigSetSubUserResult(QString,bool,bool,QString)",
              "sigUpdatesubuserResult(QString,QString,bool,QString)", "sigUiUpdateAuth()"})
            QTest::newRow(signal) << QByteArray(signal);
    }

    void theSignalsCarryWhatReceiversConnectTo()
    {
        QFETCH(QByteArray, signal);
        const FakeAuthClient client;
        const int index = GW::CAuthClient::staticMetaObject.indexOfSignal(signal.constData());
        QVERIFY(index >= 0);
        // Queued delivery finds the types by the names that the signal writes.
        const QMetaMethod method = GW::CAuthClient::staticMetaObject.method(index);
        for (const QByteArray& type : method.parameterTypes())
            QVERIFY2(QMetaType::fromName(type).isValid(), type.constData());
    }
};

int main(int argc, char** argv)
{
    return runTest<ServicesTest>(argc, argv);
}

#include "ServicesTest.moc"
