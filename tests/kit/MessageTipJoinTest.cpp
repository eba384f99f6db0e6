#include "kit/tips/MessageTip.h"
#include "tests/kit/TipWindow.h"
#include "tests/support/TestCase.h"

#include <QClipboard>

using namespace KZ;

class MessageTipJoinTest : public TestCase, private TipWindow
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aListTakesNoTextOfAnotherTopic();
    void aLateTextJoinsTheListOfItsTopic();
    void aTextWithoutATopicJoinsNoRequest();
    void aSingleTextKeepsItsTimeBesideANewerTopic();
    void escapeDismissesTheNewerListFirst();
    void anEqualTextForSeveralAnchorsIsShownOnce_data();
    void anEqualTextForSeveralAnchorsIsShownOnce();
    void withoutAVisibleAnchorItStaysWhereItIsShown();
    void anEqualTextOfAnotherKindOrTopicIsAnother();
    void anEqualTextOfALaterTurnIsATipOfItsOwn();
    void anEqualTextLeavesTheListOfAHiddenAnchor();
    void anEqualTextLengthensTheTime();
    void anEqualTextAfterAClosedTipIsShownAgain();

private:
    static void endTurn() { QCoreApplication::sendPostedEvents(); }
    void showAt(QWidget* anchor, const QString& text, int duration = 300, quint64 topic = 0)
    {
        CMessageTip::showTip(anchor, 0x41, text, 3, 2, duration, topic);
    }
    /// An editor on a page of the window that another page covers.
    QLineEdit* addHiddenEditor()
    {
        auto* const page = new QWidget(m_window.get());
        return new QLineEdit(page);
    }
    static CMessageTip* tipAt(const QWidget* anchor)
    {
        for (CMessageTip* const tip : CMessageTip::visibleTips()) {
            if (tip->anchor() == anchor)
                return tip;
        }
        return nullptr;
    }
};

void MessageTipJoinTest::init()
{
    TestCase::init();
    open();
}

void MessageTipJoinTest::cleanup()
{
    close();
    endTurn();
    TestCase::cleanup();
}

void MessageTipJoinTest::aListTakesNoTextOfAnotherTopic()
{
    showAt(m_anchor, QStringLiteral("导入失败！授权文件解密出错。"), 300, 1);
    showAt(m_anchor, QStringLiteral("导入失败！授权文件格式错误"), 300, 1);
    CMessageTip* const failures = only();
    QVERIFY(failures->isLasting());
    endTurn();
    showAt(m_anchor, QStringLiteral("导入成功！"), 300, 2);
    const QList<CMessageTip*> tips = CMessageTip::visibleTips();
    QCOMPARE(tips.size(), 2);
    QCOMPARE(failures->texts().size(), 2);
    QCOMPARE(failures->topic(), 1U);
    QCOMPARE(tips.at(1)->texts(), QStringList(QStringLiteral("导入成功！")));
    QCOMPARE(tips.at(1)->topic(), 2U);
    QVERIFY(!tips.at(1)->isLasting());
    QTRY_VERIFY(tips.at(0)->isVisible() && tips.at(1)->isVisible() &&
                !tips.at(0)->geometry().intersects(tips.at(1)->geometry()));
}

void MessageTipJoinTest::aLateTextJoinsTheListOfItsTopic()
{
    showAt(m_anchor, QStringLiteral("一"), 300, 1);
    showAt(m_anchor, QStringLiteral("二"), 300, 1);
    showAt(m_anchor, QStringLiteral("下一个请求"), 300, 2);
    endTurn();
    showAt(m_anchor, QStringLiteral("三"), 300, 1);
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    QCOMPARE(CMessageTip::visibleTips().at(0)->texts(),
             QStringList({QStringLiteral("一"), QStringLiteral("二"), QStringLiteral("三")}));
    QCOMPARE(CMessageTip::visibleTips().at(1)->texts().size(), 1);
}

void MessageTipJoinTest::aTextWithoutATopicJoinsNoRequest()
{
    showAt(m_anchor, QStringLiteral("请求的"), 300, 1);
    show(QStringLiteral("没有请求的"));
    show(QStringLiteral("也没有请求的"));
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    QCOMPARE(CMessageTip::visibleTips().at(0)->texts().size(), 1);
    QCOMPARE(CMessageTip::visibleTips().at(1)->texts().size(), 2);
}

void MessageTipJoinTest::aSingleTextKeepsItsTimeBesideANewerTopic()
{
    showAt(m_anchor, QStringLiteral("旧"), 20, 1);
    QPointer<CMessageTip> older = only();
    showAt(m_anchor, QStringLiteral("新"), 60'000, 2);
    QVERIFY(older && older->isVisible());
    QTRY_VERIFY(!older);
    QVERIFY(only());
    QCOMPARE(only()->texts(), QStringList(QStringLiteral("新")));
}

void MessageTipJoinTest::escapeDismissesTheNewerListFirst()
{
    for (const quint64 topic : {1, 2}) {
        showAt(m_anchor, QStringLiteral("甲"), 300, topic);
        showAt(m_anchor, QStringLiteral("乙"), 300, topic);
    }
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    QTest::keyClick(m_anchor, Qt::Key_Escape);
    QVERIFY(only());
    QCOMPARE(only()->topic(), 1U);
    QTest::keyClick(m_anchor, Qt::Key_Escape);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipJoinTest::anEqualTextForSeveralAnchorsIsShownOnce_data()
{
    QTest::addColumn<int>("visibleCall");
    QTest::newRow("the visible anchor first") << 0;
    QTest::newRow("the visible anchor second") << 1;
    QTest::newRow("the visible anchor last") << 2;
}

void MessageTipJoinTest::anEqualTextForSeveralAnchorsIsShownOnce()
{
    QFETCH(int, visibleCall);
    QList<QWidget*> anchors{addHiddenEditor(), addHiddenEditor()};
    anchors.insert(visibleCall, m_anchor);
    const QString text = QStringLiteral("无法对用户 u1 进行授权！");
    for (QWidget* const anchor : std::as_const(anchors))
        showAt(anchor, text);
    QVERIFY(only());
    QCOMPARE(only()->anchor(), m_anchor);
    QCOMPARE(only()->texts(), QStringList({text, text, text}));
    QVERIFY(only()->isVisible());
    QVERIFY(!only()->isLasting());
    // It is read once, and so it is copied once.
    QCOMPARE(only()->accessibleName(), text);
    QCOMPARE(body(only())->toPlainText(), text);
    only()->copyTexts();
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
    QGuiApplication::clipboard()->clear();

    showAt(m_anchor, text);
    QTRY_COMPARE(only()->accessibleName(), text + QStringLiteral("（2 次）"));
}

void MessageTipJoinTest::withoutAVisibleAnchorItStaysWhereItIsShown()
{
    QLineEdit* const first = addHiddenEditor();
    showAt(first, QStringLiteral("相同"));
    const QPoint place = only()->pos();
    showAt(addHiddenEditor(), QStringLiteral("相同"));
    showAt(nullptr, QStringLiteral("相同"));
    QVERIFY(only());
    QCOMPARE(only()->anchor(), first);
    QCOMPARE(only()->texts().size(), 3);
    QCOMPARE(only()->pos(), place);
}

void MessageTipJoinTest::anEqualTextOfAnotherKindOrTopicIsAnother()
{
    QLineEdit* const hidden = addHiddenEditor();
    show(QStringLiteral("相同"));
    CMessageTip::showTip(hidden, 0x41, QStringLiteral("相同"), 2, 2, 300);
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    showAt(hidden, QStringLiteral("相同"), 300, 5);
    QCOMPARE(CMessageTip::visibleTips().size(), 3);
}

void MessageTipJoinTest::anEqualTextOfALaterTurnIsATipOfItsOwn()
{
    QLineEdit* const hidden = addHiddenEditor();
    show(QStringLiteral("相同"));
    endTurn();
    showAt(hidden, QStringLiteral("相同"));
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    QVERIFY(tipAt(hidden));
    QCOMPARE(tipAt(m_anchor)->texts().size(), 1);
}

void MessageTipJoinTest::anEqualTextLeavesTheListOfAHiddenAnchor()
{
    QLineEdit* const hidden = addHiddenEditor();
    showAt(hidden, QStringLiteral("u1"));
    showAt(hidden, QStringLiteral("u2"));
    endTurn();
    CMessageTip* const list = only();
    showAt(hidden, QStringLiteral("u3"));
    showAt(hidden, QStringLiteral("u4"));
    showAt(m_anchor, QStringLiteral("u3"));
    QCOMPARE(list->texts(),
             QStringList({QStringLiteral("u1"), QStringLiteral("u2"), QStringLiteral("u4")}));
    QTRY_COMPARE(body(list)->toPlainText(), QStringLiteral("1. u1\n2. u2\n3. u4"));
    QVERIFY(list->isLasting());
    QCOMPARE(tipAt(m_anchor)->texts(), QStringList({QStringLiteral("u3"), QStringLiteral("u3")}));
}

void MessageTipJoinTest::anEqualTextLengthensTheTime()
{
    show(QStringLiteral("相同"), 3, 10);
    showAt(addHiddenEditor(), QStringLiteral("相同"), 0);
    QVERIFY(only()->isLasting());
}

void MessageTipJoinTest::anEqualTextAfterAClosedTipIsShownAgain()
{
    show(QStringLiteral("相同"));
    CMessageTip::closeAll();
    QLineEdit* const hidden = addHiddenEditor();
    showAt(hidden, QStringLiteral("相同"));
    QVERIFY(only());
    QCOMPARE(only()->anchor(), hidden);
    QCOMPARE(only()->texts().size(), 1);
}

int main(int argc, char** argv)
{
    return runTest<MessageTipJoinTest>(argc, argv);
}

#include "MessageTipJoinTest.moc"
