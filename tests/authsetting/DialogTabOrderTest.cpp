#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"

#include <QComboBox>
#include <QTableView>

#include <climits>

namespace {

/// The dialog with an account of each kind and two sub-users.
struct OpenDialogUnderTest : DialogUnderTest
{
    OpenDialogUnderTest()
    {
        services.client.subUsers = {QStringLiteral("s2"), QStringLiteral("s1")};
        services.client.activeSubUsers = {QStringLiteral("s1")};
        own = services.user.addAccount(1, 1, "9000", "1", mbservice::AUTH_TYPE_NOT_GRANTED)->key();
        const auto granted =
            services.user.addAccount(1, 1, "9000", "2", mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        services.grant(granted, QStringLiteral("bob"), QDate(2026, 1, 2), QDate(2026, 5, 6));
        given = granted->key();
        imported =
            services.user.addAccount(1, 1, "9000", "3", mbservice::AUTH_TYPE_GRANTED_TO_ME)->key();
    }

    QString own;
    QString given;
    QString imported;
};

QString nameOf(const QWidget* widget)
{
    const QString name = widget->accessibleName();
    return name.isEmpty() ? QString::fromLatin1(widget->metaObject()->className()) : name;
}

/// Where one key leads from the present focus until it comes around, the start first.
QVector<QWidget*> walk(OpenDialog& dialog, Qt::Key key)
{
    constexpr int farTooMany = 100;
    QVector<QWidget*> stops{dialog.focusWidget()};
    const Qt::KeyboardModifiers modifiers =
        key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
    for (int step = 0; step < farTooMany; ++step) {
        QTest::keyClick(dialog.focusWidget(), key, modifiers);
        if (dialog.focusWidget() == stops.first())
            break;
        stops.append(dialog.focusWidget());
    }
    return stops;
}

} // namespace

/// The way of Tab and Shift+Tab through every page.
class DialogTabOrderTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tabWalksThePageAsItIsReadAndShiftTabBackwards_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QStringList>("names");
        const QString close = QStringLiteral("关闭");
        const QString tabs = QStringLiteral("标签页");
        QTest::newRow("overview") << 201 << INT_MAX << QString() << 0
                                  << QStringList{tabs, QStringLiteral("账号总览"), close};
        QTest::newRow("batch") << 201 << INT_MAX << QString() << 1
                               << QStringList{tabs,
                                              QStringLiteral("被授权人"),
                                              QStringLiteral("起始时间"),
                                              QStringLiteral("终止时间"),
                                              QStringLiteral("批量授权"),
                                              QStringLiteral("授权"),
                                              close};
        QTest::newRow("account") << 201 << 20101 << QStringLiteral("own") << 0 << QStringList();
        QTest::newRow("granted account")
            << 201 << 20101 << QStringLiteral("given") << 0 << QStringList();
        QTest::newRow("import") << 202 << INT_MAX << QString() << 0 << QStringList();
        QTest::newRow("imported account")
            << 202 << 20201 << QStringLiteral("imported") << 0 << QStringList();
        QTest::newRow("sub-users") << 203 << INT_MAX << QString() << 0 << QStringList();
        QTest::newRow("sub-user") << 203 << 20401 << QStringLiteral("s1") << 0 << QStringList();
        QTest::newRow("disabled sub-user")
            << 203 << 20401 << QStringLiteral("s2") << 0 << QStringList();
    }

    void tabWalksThePageAsItIsReadAndShiftTabBackwards()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(QString, key);
        QFETCH(int, tab);
        QFETCH(QStringList, names);
        OpenDialogUnderTest test;
        const QMap<QString, QString> keys{{QStringLiteral("own"), test.own},
                                          {QStringLiteral("given"), test.given},
                                          {QStringLiteral("imported"), test.imported}};
        test.dialog.showPage(page, subPage, keys.value(key, key), tab);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QCoreApplication::processEvents();

        const QVector<QWidget*> stops = walk(test.dialog, Qt::Key_Tab);
        QStringList found;
        for (const QWidget* stop : stops)
            found.append(nameOf(stop));
        for (QWidget* stop : stops) {
            QVERIFY2(stop->isVisible() && stop->isEnabled(), qPrintable(nameOf(stop)));
            const QRect place(stop->mapTo(&test.dialog, QPoint()), stop->size());
            QVERIFY2(!place.isEmpty() && test.dialog.innerRect().contains(place),
                     qPrintable(nameOf(stop)));
            QVERIFY2(stop != test.currentTab(), "a tab page shows no focus");
            QVERIFY2(stops.count(stop) == 1, qPrintable(nameOf(stop)));
        }
        QVERIFY(stops.contains(test.closeButton()));

        QVector<QWidget*> back = walk(test.dialog, Qt::Key_Backtab);
        QCOMPARE(back.first(), stops.first());
        std::reverse(back.begin() + 1, back.end());
        QCOMPARE(back, stops);

        // From the first stop of the dialog, which follows the close button.
        const qsizetype first = stops.indexOf(test.closeButton()) + 1;
        QRect before;
        for (qsizetype at = 0; at < stops.size(); ++at) {
            const QWidget* stop = stops[(first + at) % stops.size()];
            const QRect place(stop->mapTo(&test.dialog, QPoint()), stop->size());
            const bool below = place.center().y() > before.bottom();
            QVERIFY2(before.isNull() || below || place.left() > before.left(),
                     qPrintable(found.join(u',')));
            before = place;
        }
        if (!names.isEmpty()) {
            QStringList read = found.mid(first) + found.mid(0, first);
            QCOMPARE(read, names);
        }
    }

    void aDateEditorIsOneStop()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        const QList<KZ::CSoftCalendarLineEdit*> editors =
            test.currentTab()->findChildren<KZ::CSoftCalendarLineEdit*>();
        QCOMPARE(editors.size(), 2);
        editors[0]->setFocus(Qt::TabFocusReason);
        QTest::keyClick(editors[0], Qt::Key_Tab);
        QCOMPARE(test.dialog.focusWidget(), editors[1]);
        QTest::keyClick(editors[1], Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(test.dialog.focusWidget(), editors[0]);
    }

    void theArrowsOnTheCloseButtonLeadToWhatIsSeen()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down}) {
            test.closeButton()->setFocus(Qt::TabFocusReason);
            QTest::keyClick(test.closeButton(), key);
            const QWidget* reached = test.dialog.focusWidget();
            QVERIFY(reached != test.currentTab());
            QVERIFY(reached->isVisible() && reached->isEnabled());
        }
    }
};

int main(int argc, char** argv)
{
    return runTest<DialogTabOrderTest>(argc, argv);
}

#include "DialogTabOrderTest.moc"
