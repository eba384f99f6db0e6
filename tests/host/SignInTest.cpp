#include "host/client/ClientWindow.h"
#include "host/demo/DemoData.h"
#include "host/signin/SignInDialog.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/host/DemoFixture.h"
#include "tests/support/TestCase.h"

#include <QSignalSpy>

using host::DemoData;
using host::HostApplication;
using host::SignInDialog;

class SignInTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void proposesAUserAndShowsThePasswordOfTheDemonstrationOnly();
    void showsWhichServerAPasswordGoesTo();
    void enterSignsIn();
    void wrongNameAndWrongPasswordReadAlike();
    void anEmptyPasswordAsksNobody();
    void aFailureEmptiesThePasswordAndKeepsTheCursorThere();
    void aDisabledSubUserStaysOutside();
    void signingOutReturnsToAFreshWindow();
    void leavingEndsTheClient();
    void escapeLeaves();
};

static KZ::CSoftKeyboardLineEdit* password(const SignInDialog* dialog)
{
    return dialog->findChild<KZ::CSoftKeyboardLineEdit*>(
        QStringLiteral("halden_client_sign_in_password"));
}

static KZ::CComboBox* user(const SignInDialog* dialog)
{
    return dialog->findChild<KZ::CComboBox*>(QStringLiteral("halden_client_sign_in_user"));
}

static QString error(const SignInDialog* dialog)
{
    return dialog->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_client_sign_in_error"))
        ->text();
}

/// All texts that the window shows.
static QString shownTexts(const SignInDialog* dialog)
{
    QStringList texts;
    const auto widgets = dialog->findChildren<KZ::CSimpleTextWidget*>();
    for (const KZ::CSimpleTextWidget* widget : widgets) {
        if (widget->isVisible())
            texts.append(widget->text());
    }
    return texts.join(QLatin1Char('\n'));
}

static void attempt(const SignInDialog* dialog, const QString& name, const QString& secret)
{
    user(dialog)->setEditText(name);
    QTest::keyClicks(password(dialog), secret);
    QTest::keyClick(password(dialog), Qt::Key_Return);
}

void SignInTest::proposesAUserAndShowsThePasswordOfTheDemonstrationOnly()
{
    const DemoFixture demo;
    {
        HostApplication client(host::HostOptions(), demo.options(), demo.folder());
        QCOMPARE(client.start(), QString());
        const SignInDialog* dialog = client.signInDialog();
        QCOMPARE(user(dialog)->currentText(), DemoData::mainUser());
        QCOMPARE(user(dialog)->count(), DemoData::users().size());
        QVERIFY(shownTexts(dialog).contains(DemoData::password()));
        QCOMPARE(password(dialog)->text(), QString());
        QTRY_VERIFY(password(dialog)->hasFocus());
    }
    // The same file, but named as a real store.
    host::HostOptions options;
    options.user = QStringLiteral("somebody");
    HostApplication client(options, demo.storeOptions(), demo.folder());
    QCOMPARE(client.start(), QString());
    QCOMPARE(user(client.signInDialog())->currentText(), QStringLiteral("somebody"));
    QCOMPARE(user(client.signInDialog())->count(), 0);
    QVERIFY(!shownTexts(client.signInDialog()).contains(DemoData::password()));
}

void SignInTest::showsWhichServerAPasswordGoesTo()
{
    const DemoFixture demo;
    backend::StoreOptions store = demo.options();
    store.location =
        backend::StoreLocation::parse(QStringLiteral("postgresql://owner@desk.example.com/trade"));
    QVERIFY(store.location.isServer());
    HostApplication client(host::HostOptions(), store, demo.folder());
    // Asks the server nothing yet.
    QCOMPARE(client.start(), QString());
    QVERIFY(shownTexts(client.signInDialog()).contains(QStringLiteral("服务器：desk.example.com")));
    QVERIFY(!shownTexts(client.signInDialog()).contains(DemoData::password()));
    QCOMPARE(user(client.signInDialog())->currentText(), QStringLiteral("owner"));
}

void SignInTest::enterSignsIn()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QCOMPARE(client.start(), QString());
    attempt(client.signInDialog(), DemoData::partner(), DemoData::password());
    QTRY_VERIFY(client.clientWindow());
    QVERIFY(client.clientWindow()->isVisible());
    QVERIFY(client.clientWindow()->windowTitle().endsWith(DemoData::partner()));
    QVERIFY(!client.signInDialog());
}

void SignInTest::wrongNameAndWrongPasswordReadAlike()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QCOMPARE(client.start(), QString());
    attempt(client.signInDialog(), DemoData::colleague(), QStringLiteral("wrong-1"));
    const QString wrongPassword = error(client.signInDialog());
    attempt(client.signInDialog(), QStringLiteral("nobody"), DemoData::password());
    QVERIFY(!wrongPassword.isEmpty());
    QCOMPARE(error(client.signInDialog()), wrongPassword);
    QVERIFY(!client.clientWindow());
}

void SignInTest::anEmptyPasswordAsksNobody()
{
    int asked = 0;
    SignInDialog dialog([&asked](const QString&, const QString&) {
        ++asked;
        return backend::SignInResult();
    });
    dialog.setUser(QStringLiteral("owner"));
    dialog.show();
    QTest::keyClick(password(&dialog), Qt::Key_Return);
    QCOMPARE(asked, 0);
    QVERIFY(!error(&dialog).isEmpty());
    QTest::keyClicks(password(&dialog), QStringLiteral("x"));
    QVERIFY(error(&dialog).isEmpty());
}

void SignInTest::aFailureEmptiesThePasswordAndKeepsTheCursorThere()
{
    SignInDialog dialog([](const QString&, const QString&) {
        backend::SignInResult result;
        result.error = QStringLiteral("用户名或密码错误");
        return result;
    });
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    attempt(&dialog, QStringLiteral("owner"), QStringLiteral("secret"));
    QCOMPARE(error(&dialog), QStringLiteral("用户名或密码错误"));
    QCOMPARE(password(&dialog)->text(), QString());
    QVERIFY(password(&dialog)->hasFocus());
    QCOMPARE(user(&dialog)->currentText(), QStringLiteral("owner"));
    QVERIFY(dialog.isVisible());
}

void SignInTest::aDisabledSubUserStaysOutside()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QCOMPARE(client.start(), QString());
    attempt(client.signInDialog(), DemoData::disabledTrader(), DemoData::password());
    QVERIFY(!error(client.signInDialog()).isEmpty());
    QVERIFY(!client.clientWindow());
    attempt(client.signInDialog(), DemoData::dayTrader(), DemoData::password());
    QTRY_VERIFY(client.clientWindow());
}

void SignInTest::signingOutReturnsToAFreshWindow()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QCOMPARE(client.start(), QString());
    attempt(client.signInDialog(), DemoData::partner(), DemoData::password());
    QTRY_VERIFY(client.clientWindow());
    Q_EMIT client.clientWindow()->signOutRequested();
    QTRY_VERIFY(client.signInDialog());
    QVERIFY(!client.clientWindow());
    QVERIFY(client.signInDialog()->isVisible());
    QCOMPARE(password(client.signInDialog())->text(), QString());
    attempt(client.signInDialog(), DemoData::colleague(), DemoData::password());
    QTRY_VERIFY(client.clientWindow());
    QVERIFY(client.clientWindow()->windowTitle().endsWith(DemoData::colleague()));
}

void SignInTest::leavingEndsTheClient()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QSignalSpy finished(&client, &HostApplication::finished);
    QCOMPARE(client.start(), QString());
    attempt(client.signInDialog(), DemoData::mainUser(), DemoData::password());
    QTRY_VERIFY(client.clientWindow());
    QVERIFY(finished.isEmpty());
    client.clientWindow()->close();
    QVERIFY(finished.wait());
    QCOMPARE(finished.size(), 1);
}

void SignInTest::escapeLeaves()
{
    const DemoFixture demo;
    HostApplication client(host::HostOptions(), demo.options(), demo.folder());
    QSignalSpy finished(&client, &HostApplication::finished);
    QCOMPARE(client.start(), QString());
    QTest::keyClick(password(client.signInDialog()), Qt::Key_Escape);
    QVERIFY(finished.size() == 1 || finished.wait());
}

int main(int argc, char** argv)
{
    return runTest<SignInTest>(argc, argv);
}
#include "SignInTest.moc"
