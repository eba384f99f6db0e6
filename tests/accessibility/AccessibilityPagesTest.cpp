#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/dialogs/SimpleInputDialog.h"
#include "kit/tips/MessageTip.h"
#include "tests/accessibility/AccessibleDesk.h"
#include "tests/accessibility/Walker.h"
#include "tests/support/TipTestCase.h"

#include <QDialog>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int accountsPage = 201;
constexpr int importPage = 202;
constexpr int subUsersPage = 203;
constexpr int singleAccount = 20101;
constexpr int importedAccount = 20201;
constexpr int singleSubUser = 20401;

QStringList linesOf(const QString& page)
{
    QFile file(QStringLiteral(ACCESSIBILITY_PAGES "/%1.txt").arg(page));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/// The first line in which both differ, and where what was heard can be read; empty without one.
QString difference(const QString& page, const QStringList& heard)
{
    const QStringList expected = linesOf(page);
    if (heard == expected)
        return {};
    QFile file(page + QStringLiteral(".heard"));
    if (file.open(QIODevice::WriteOnly))
        file.write(heard.join(u'\n').toUtf8() + '\n');
    qsizetype line = 0;
    while (line < heard.size() && line < expected.size() && heard[line] == expected[line])
        ++line;
    return QStringLiteral("%1, line %2: heard \"%3\", expected \"%4\"; all that was heard: %5")
        .arg(page)
        .arg(line + 1)
        .arg(heard.value(line), expected.value(line), QFileInfo(file).absoluteFilePath());
}

/// The objects whose role nobody knows or that have no name.
QStringList unspeakable(const QStringList& heard)
{
    QStringList found;
    for (const QString& line : heard) {
        const QString object = line.trimmed();
        const QString role = object.section(QStringLiteral(" \""), 0, 0);
        const bool isRoleless = role.isEmpty() || role == QLatin1String("filler") ||
                                role == QLatin1String("unknown") ||
                                role == QLatin1String("invalid");
        if (isRoleless || object.contains(QStringLiteral(" \"\"")))
            found.append(object);
    }
    return found;
}

} // namespace

#define VERIFY_HEARD(page)                                                                         \
    do {                                                                                           \
        const QStringList heard = Walker::heard();                                                 \
        QVERIFY(!heard.isEmpty());                                                                 \
        const QString found = difference(QStringLiteral(page), heard);                             \
        QVERIFY2(found.isEmpty(), qPrintable(found));                                              \
        QCOMPARE(unspeakable(heard), QStringList());                                               \
    } while (false)

/// Each page of the dialog as it is met on the accessibility bus, compared line by line with the
/// tables in pages/.
class AccessibilityPagesTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theOverviewIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage));
        VERIFY_HEARD("overview");
    }

    void theBatchPageIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage, INT_MAX, QString(), 1));
        VERIFY_HEARD("batch");
    }

    void aBusyDialogIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage));
        desk.test.dialog.setDialogEnabled(false);
        desk.test.dialog.handleEvent(GW::EVENT_SHOW_PROGRESS, 1200, 3000, QString(), nullptr);
        VERIFY_HEARD("busy");
    }

    void theImportPageIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(importPage));
        VERIFY_HEARD("import");
    }

    void aFreeAccountIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage, singleAccount, desk.accounts[0]->key()));
        VERIFY_HEARD("account-free");
    }

    void aGrantedAccountIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage, singleAccount, desk.accounts[1]->key()));
        VERIFY_HEARD("account-granted");
    }

    void anAccountOfSomebodyElseIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(importPage, importedAccount, desk.accounts[3]->key()));
        VERIFY_HEARD("account-imported");
    }

    void theSubUsersAreHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(subUsersPage));
        VERIFY_HEARD("subusers");
    }

    void anEnabledSubUserIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(subUsersPage, singleSubUser, QStringLiteral("ops")));
        VERIFY_HEARD("subuser-enabled");
    }

    void aDisabledSubUserIsHeard()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(subUsersPage, singleSubUser, QStringLiteral("night")));
        VERIFY_HEARD("subuser-disabled");
    }

    void thePasswordDialogIsHeard()
    {
        KZ::CSimpleInputDialog dialog(QStringLiteral("输入授权密码"), QString(), nullptr);
        dialog.setEchoMode(QLineEdit::Password);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        VERIFY_HEARD("password");
    }

    void aTipIsHeard()
    {
        QDialog window;
        window.setWindowTitle(QStringLiteral("窗口"));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        constexpr int below = 0x41;
        KZ::CMessageTip::showTip(&window, below, QStringLiteral("授权成功"), 3, 2, 3000);
        VERIFY_HEARD("tip");
    }
};

int main(int argc, char** argv)
{
    return runTest<AccessibilityPagesTest>(argc, argv);
}

#include "AccessibilityPagesTest.moc"
