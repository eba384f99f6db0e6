#include "host/client/ExpiryMark.h"

#include "kit/resources/UiResource.h"

#include <QTest>

using host::ExpiryMark;

class ExpiryMarkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksByTheDaysThatAreLeft_data();
    void marksByTheDaysThatAreLeft();
};

void ExpiryMarkTest::marksByTheDaysThatAreLeft_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNear");
    QTest::newRow("over") << -5 << -1 << QStringLiteral("已到期") << false;
    QTest::newRow("last day") << -5 << 0 << QStringLiteral("今天到期") << true;
    QTest::newRow("tomorrow") << -5 << 1 << QStringLiteral("还有 1 天到期") << true;
    QTest::newRow("three days") << -5 << 3 << QStringLiteral("还有 3 天到期") << true;
    QTest::newRow("four days") << -5 << 4 << QString() << false;
    QTest::newRow("one day grant") << 0 << 0 << QStringLiteral("今天到期") << true;
    QTest::newRow("not begun") << 1 << 10 << QStringLiteral("尚未开始") << false;
    // What is about to end matters more than that it has not begun.
    QTest::newRow("not begun and near") << 1 << 2 << QStringLiteral("还有 2 天到期") << true;
    QTest::newRow("begins today") << 0 << 10 << QString() << false;
}

void ExpiryMarkTest::marksByTheDaysThatAreLeft()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(QString, text);
    QFETCH(bool, isNear);
    const QDate today(2026, 2, 27);
    const ExpiryMark mark = ExpiryMark::forGrant(today.addDays(first), today.addDays(last), today);
    QCOMPARE(mark.text, text);
    QCOMPARE(mark.isNear, isNear);
    QCOMPARE(mark.iconKey.isEmpty(), text.isEmpty());
    if (!text.isEmpty()) {
        QVERIFY(KZ::CUiResource::hasKey(mark.iconKey));
        QVERIFY(KZ::CUiResource::hasKey(QString::fromLatin1(mark.colorKey)));
    }
}

QTEST_MAIN(ExpiryMarkTest)
#include "ExpiryMarkTest.moc"
