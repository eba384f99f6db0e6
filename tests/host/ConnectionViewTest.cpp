#include "host/client/ConnectionView.h"

#include "backend/client/ConnectionState.h"
#include "host/client/OfflineNotice.h"
#include "kit/resources/UiResource.h"
#include "tests/support/TestCase.h"

#include <QLabel>
#include <QSignalSpy>

class ConnectionViewTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void textIconAndAccessibleNameFollowTheConnection()
    {
        host::ConnectionView view(nullptr);
        const auto icon = [&view] { return view.findChild<QLabel*>()->pixmap().toImage(); };
        const QImage online = icon();
        QVERIFY(!online.isNull());
        QCOMPARE(view.text(), QStringLiteral("在线"));
        view.setOnline(false);
        QVERIFY(view.text().startsWith(QStringLiteral("离线")));
        QCOMPARE(view.accessibleName(), view.text());
        QVERIFY(icon() != online);
        view.setOnline(true);
        QCOMPARE(view.text(), QStringLiteral("在线"));
        QCOMPARE(icon(), online);
    }

    void aServerThatDoesNotTakeTheUserBackIsToldWithItsReason()
    {
        const QString refusal = QStringLiteral("当前用户已被禁用");
        host::ConnectionView view(nullptr);
        view.setOnline(false);
        QCOMPARE(view.text(), QStringLiteral("离线：正在重新连接…"));
        view.setOnline(false, refusal);
        QCOMPARE(view.text(), QStringLiteral("离线：当前用户已被禁用"));
        QCOMPARE(view.accessibleName(), view.text());
        view.setOnline(true);
        QCOMPARE(view.text(), QStringLiteral("在线"));

        QWidget window;
        host::OfflineNotice notice(&window);
        window.show();
        const QDateTime when(QDate(2026, 3, 2), QTime(10, 30, 5));
        notice.showSince(when);
        notice.showSince(when.addSecs(60), refusal);
        QCOMPARE(notice.accessibleName(),
                 QStringLiteral("离线：10:30:05 起与服务器的连接断开，当前用户已被禁用"));
        notice.hide();
        notice.showSince(when.addSecs(120));
        QCOMPARE(notice.accessibleName(),
                 QStringLiteral("离线：10:32:05 起与服务器的连接断开，正在自动重新连接"));
    }

    void theThemeChangesTheIcon()
    {
        host::ConnectionView view(nullptr);
        view.setOnline(false);
        const auto icon = [&view] { return view.findChild<QLabel*>()->pixmap().toImage(); };
        const QImage light = icon();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Dark);
        const QImage dark = icon();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
        QVERIFY(dark != light);
        QCOMPARE(icon(), light);
    }

    void theNoticeSaysSinceWhenAndWhatHasToWait()
    {
        QWidget window;
        host::OfflineNotice notice(&window);
        window.show();
        QVERIFY(!notice.isVisible());
        notice.showSince(QDateTime(QDate(2026, 3, 2), QTime(10, 30, 5)));
        QVERIFY(notice.isVisible());
        QVERIFY(notice.accessibleName().startsWith(QStringLiteral("离线：10:30:05")));
        QVERIFY(notice.accessibleDescription().contains(QStringLiteral("可以照常查看")));
        const QImage light = notice.grab().toImage();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Dark);
        const QImage dark = notice.grab().toImage();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
        const QPoint ground(light.width() - 2, light.height() - 2);
        QVERIFY(light.pixelColor(ground).lightness() > 200);
        QVERIFY(dark.pixelColor(ground).lightness() < 100);
    }

    void onlyAChangeOfTheConnectionIsTold()
    {
        backend::ConnectionState state(true);
        QSignalSpy changed(&state, &backend::ConnectionState::changed);
        QVERIFY(state.isOnline());
        state.set(true);
        QCOMPARE(changed.size(), 0);
        state.set(false);
        state.set(false);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toBool(), false);
        QVERIFY(!state.isOnline());
        QCOMPARE(state.refusal(), QString());
        const QString refusal = QStringLiteral("密码已被更改，请重新登录");
        state.set(false, refusal);
        state.set(false, refusal);
        QCOMPARE(changed.size(), 2);
        QCOMPARE(changed.last().first().toBool(), false);
        QCOMPARE(state.refusal(), refusal);
        state.set(true);
        QCOMPARE(changed.size(), 3);
        QCOMPARE(state.refusal(), QString());
    }
};

int main(int argc, char** argv)
{
    return runTest<ConnectionViewTest>(argc, argv);
}

#include "ConnectionViewTest.moc"
