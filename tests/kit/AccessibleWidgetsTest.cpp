#include "kit/accessible/BusyState.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/widgets/BusyBar.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/WidgetList.h"
#include "tests/kit/AccessibleEvents.h"
#include "tests/kit/TipWindow.h"
#include "tests/support/TestCase.h"

#include <QDialog>

using namespace KZ;

namespace {

QAccessibleInterface* interfaceOf(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject* object)
{
    return interfaceOf(object)->text(QAccessible::Name);
}

} // namespace

class AccessibleWidgetsTest : public TestCase, private TipWindow
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        open();
    }

    void cleanup()
    {
        close();
        TestCase::cleanup();
    }

    void aTextIsALabelOfWhatItNames()
    {
        CBaseWidget parent(nullptr);
        CSimpleTextWidget caption(QStringLiteral("密　　码"), &parent);
        CLineEdit edit(1, &parent);
        caption.setAccessibleTarget(&edit);
        QCOMPARE(interfaceOf(&caption)->role(), QAccessible::StaticText);
        QCOMPARE(nameOf(&caption), QStringLiteral("密码"));
        QCOMPARE(nameOf(&edit), QStringLiteral("密码"));
        const auto relations = interfaceOf(&caption)->relations(QAccessible::Labelled);
        QCOMPARE(relations.size(), 1);
        QCOMPARE(relations.first().first->object(), static_cast<QObject*>(&edit));
    }

    void anEmptyTextIsNotThere()
    {
        CSimpleTextWidget message(QString(), m_window.get());
        message.show();
        QVERIFY(interfaceOf(&message)->state().invisible);
        message.setText(QStringLiteral("密码不能为空"));
        QVERIFY(!interfaceOf(&message)->state().invisible);
    }

    void whatIsTypedIntoAComboBoxGoesByItsName()
    {
        CBaseWidget parent(nullptr);
        CComboBox box(1, &parent);
        box.setEditable(true);
        CSimpleTextWidget caption(QStringLiteral("被授权人"), &parent);
        caption.setAccessibleTarget(&box);
        box.setEditText(QStringLiteral("bob"));
        QCOMPARE(interfaceOf(&box)->role(), QAccessible::ComboBox);
        QCOMPARE(nameOf(&box), QStringLiteral("被授权人"));
        QCOMPARE(interfaceOf(&box)->text(QAccessible::Value), QStringLiteral("bob"));
        QCOMPARE(interfaceOf(&box)->childCount(), 1);
        QCOMPARE(interfaceOf(&box)->child(0)->text(QAccessible::Name), QStringLiteral("被授权人"));
        caption.setText(QStringLiteral("授权人"));
        QCOMPARE(interfaceOf(&box)->child(0)->text(QAccessible::Name), QStringLiteral("授权人"));
    }

    void theOpenListOfAComboBoxIsInIt()
    {
        auto* const box = new CComboBox(1, m_window.get());
        box->addItems({QStringLiteral("ops"), QStringLiteral("night")});
        box->setAccessibleName(QStringLiteral("用户"));
        box->show();
        QCOMPARE(interfaceOf(box)->childCount(), 0);
        QCOMPARE(interfaceOf(box)->text(QAccessible::Description), QStringLiteral("ops"));
        QVERIFY(!interfaceOf(box)->state().expanded);
        interfaceOf(box)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        QCOMPARE(interfaceOf(box)->childCount(), 1);
        QVERIFY(interfaceOf(box)->state().expanded);
        QCOMPARE(interfaceOf(box)->child(0)->text(QAccessible::Name), QStringLiteral("用户"));
        QCOMPARE(interfaceOf(box)->indexOfChild(interfaceOf(box)->child(0)), 0);
        interfaceOf(box)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        QVERIFY(!interfaceOf(box)->state().expanded);
    }

    void aDateEditorTellsItsDay()
    {
        CSoftCalendarLineEdit editor(1, m_window.get());
        editor.setDate(QDate(2026, 3, 2));
        QAccessibleInterface* const heard = interfaceOf(&editor);
        QCOMPARE(heard->role(), QAccessible::SpinBox);
        QCOMPARE(heard->text(QAccessible::Value), QStringLiteral("2026-03-02"));
        QCOMPARE(heard->textInterface()->text(0, 10), QStringLiteral("2026-03-02"));
        QVERIFY(!heard->valueInterface());
        heard->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QVERIFY(editor.date() > QDate(2026, 3, 2));
        editor.setEnabled(false);
        const QDate day = editor.date();
        heard->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QCOMPARE(editor.date(), day);
    }

    void childrenComeInReadingOrder()
    {
        CWidgetList row(Qt::Horizontal, nullptr);
        auto* const edit = new CLineEdit(1, &row);
        auto* const caption = new CSimpleTextWidget(QStringLiteral("账号"), &row);
        row.addFixWidget(caption);
        row.addFixWidget(edit);
        row.show();
        QVERIFY(QTest::qWaitForWindowExposed(&row));
        QAccessibleInterface* const heard = interfaceOf(&row);
        QCOMPARE(heard->childCount(), 2);
        QCOMPARE(heard->child(0)->object(), static_cast<QObject*>(caption));
        QCOMPARE(heard->child(1)->object(), static_cast<QObject*>(edit));
        QCOMPARE(heard->indexOfChild(interfaceOf(edit)), 1);
        QVERIFY(!heard->child(2));
    }

    void whatIsBusyTellsSoOnce()
    {
        QTRY_VERIFY(QAccessible::isActive());
        AccessibleEvents events;
        CBaseWidget box(m_window.get());
        setAccessibleBusy(&box, true);
        setAccessibleBusy(&box, true);
        QCOMPARE(events.count(QAccessible::StateChanged, &box), 1);
        QVERIFY(interfaceOf(&box)->state().busy);
        setAccessibleBusy(&box, false);
        QCOMPARE(events.count(QAccessible::StateChanged, &box), 2);
        QVERIFY(!interfaceOf(&box)->state().busy);
    }

    void aBusyBarHasAValueWhileItCounts()
    {
        CBusyBar bar(m_window.get());
        QTRY_VERIFY(QAccessible::isActive());
        AccessibleEvents events;
        QVERIFY(!interfaceOf(&bar)->valueInterface());
        bar.setCount(1200, 3000);
        bar.setCount(1200, 3000);
        QCOMPARE(events.count(QAccessible::ValueChanged, &bar), 1);
        QCOMPARE(interfaceOf(&bar)->role(), QAccessible::ProgressBar);
        QCOMPARE(interfaceOf(&bar)->valueInterface()->currentValue().toInt(), 1200);
        QCOMPARE(interfaceOf(&bar)->valueInterface()->maximumValue().toInt(), 3000);
        QCOMPARE(interfaceOf(&bar)->text(QAccessible::Description),
                 QStringLiteral("1,200 / 3,000"));
        bar.setCount(0, 0);
        QCOMPARE(events.count(QAccessible::ValueChanged, &bar), 1);
        QVERIFY(!interfaceOf(&bar)->valueInterface());
    }

    void aTipIsANotificationThatAppearsOnce()
    {
        QTRY_VERIFY(QAccessible::isActive());
        AccessibleEvents events;
        show(QStringLiteral("第一条"));
        show(QStringLiteral("第二条"));
        KZ::CMessageTip* const tip = only();
        QTRY_COMPARE(events.count(QAccessible::ObjectShow, tip), 1);
        QCOMPARE(interfaceOf(tip)->role(), QAccessible::Notification);
        QVERIFY(nameOf(tip).contains(QStringLiteral("第一条")));
        QVERIFY(nameOf(tip).contains(QStringLiteral("第二条")));
        show(QStringLiteral("第三条"));
        QTRY_VERIFY(nameOf(tip).contains(QStringLiteral("第三条")));
        QCoreApplication::processEvents();
        QCOMPARE(events.count(QAccessible::ObjectShow, tip), 1);
        tip->dismiss();
        QCOMPARE(events.count(QAccessible::ObjectHide, tip), 1);
    }
};

int main(int argc, char** argv)
{
    return runTest<AccessibleWidgetsTest>(argc, argv);
}

#include "AccessibleWidgetsTest.moc"
