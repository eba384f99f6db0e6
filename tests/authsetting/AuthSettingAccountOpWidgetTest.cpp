#include "authsetting/authorize/AuthSettingAccountOpWidget.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"

#include <QPushButton>

namespace {

QPushButton* buttonOf(const QWidget& widget)
{
    return widget.findChild<QPushButton*>();
}

} // namespace

class AuthSettingAccountOpWidgetTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void holdsOneButtonOfTheRegistrysSize()
    {
        EventRecorder page;
        GW::CAuthSettingAccountOpWidget widget(7, &page);
        QCOMPARE(widget.objectName(), QStringLiteral("halden_ftauthsettingaccountopwidget"));
        QCOMPARE(widget.findChildren<QPushButton*>().size(), 1);
        const QSize size(
            KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_width")),
            KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_height")));
        QCOMPARE(buttonOf(widget)->size(), size);
        QCOMPARE(buttonOf(widget)->text(), QStringLiteral("取消授权"));
        QCOMPARE(buttonOf(widget)->accessibleName(), QStringLiteral("取消授权"));
        QCOMPARE(widget.minimumSizeHint(), size + QSize(20, 20));
        widget.setAccountName(QStringLiteral("800001"));
        QCOMPARE(buttonOf(widget)->accessibleName(), QStringLiteral("取消授权 800001"));
        QCOMPARE(buttonOf(widget)->text(), QStringLiteral("取消授权"));
    }

    void theButtonStandsInTheMiddle()
    {
        EventRecorder page;
        auto* widget = new GW::CAuthSettingAccountOpWidget(7, &page);
        widget->setAuthType(3);
        widget->resize(301, 101);
        page.resize(400, 200);
        page.show();
        const QPoint off = buttonOf(*widget)->geometry().center() - widget->rect().center();
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
    }

    void theButtonShowsOnlyForAGrantedAccount_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("shown");
        for (const int type : {-1, 0, 1, 2, 3, 4, 99})
            QTest::addRow("%d", type) << type << (type == 3);
    }

    void theButtonShowsOnlyForAGrantedAccount()
    {
        QFETCH(int, type);
        QFETCH(bool, shown);
        EventRecorder page;
        GW::CAuthSettingAccountOpWidget widget(7, &page);
        QVERIFY(buttonOf(widget)->isHidden());
        widget.setAuthType(3);
        widget.setAuthType(type);
        QCOMPARE(!buttonOf(widget)->isHidden(), shown);
    }

    void aClickNamesTheRow()
    {
        EventRecorder page;
        GW::CAuthSettingAccountOpWidget first(7, &page);
        GW::CAuthSettingAccountOpWidget second(9, &page);
        first.setAuthType(3);
        second.setAuthType(3);
        buttonOf(second)->click();
        QCOMPARE(page.events.size(), 1);
        const EventRecorder::Event event = page.events[0];
        QCOMPARE(event.id, int(GW::EVENT_CANCEL_AUTH));
        QCOMPARE(event.param1, 9);
        QCOMPARE(event.param2, 0);
        QCOMPARE(event.text, QString());
        QCOMPARE(event.data, static_cast<void*>(&second));
        buttonOf(first)->click();
        QCOMPARE(page.events[1].param1, 7);
    }

    void clicksOfOtherButtonsAreSwallowed()
    {
        EventRecorder page;
        GW::CAuthSettingAccountOpWidget widget(7, &page);
        QVERIFY(widget.handleEvent(KZ::EVENT_BUTTON_CLICKED, 1, 0, QString(), nullptr));
        QVERIFY(page.events.isEmpty());
        page.answer = false;
        QVERIFY(widget.handleEvent(KZ::EVENT_BUTTON_CLICKED, 0, 0, QString(), nullptr));
        QCOMPARE(page.events.size(), 1);
    }

    void otherEventsPass()
    {
        EventRecorder page;
        GW::CAuthSettingAccountOpWidget widget(7, &page);
        page.answer = false;
        QVERIFY(!widget.handleEvent(59, 1, 2, QStringLiteral("t"), nullptr));
        QCOMPARE(page.events.size(), 1);
        QCOMPARE(page.events[0].id, 59);
        QCOMPARE(page.events[0].param2, 2);
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingAccountOpWidgetTest>(argc, argv);
}

#include "AuthSettingAccountOpWidgetTest.moc"
