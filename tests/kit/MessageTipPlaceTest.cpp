#include "tests/kit/TipWindow.h"
#include "tests/support/TestCase.h"

#include <QDialog>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>

using namespace KZ;

class MessageTipPlaceTest : public TestCase, private TipWindow
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void standsBelowItsAnchorAndClosesByItself();
    void alignmentChoosesTheSide_data();
    void alignmentChoosesTheSide();
    void itNeverTakesTheFocus();
    void aHiddenAnchorIsReplacedByItsVisibleAncestor();
    void aHiddenWindowIsReplacedByItsParentWindow();
    void aNullAnchorShowsOverTheActiveWindow();
    void withoutAWindowItStandsOnTheScreen();
    void itWorksAboveAModalDialog();
    void aBlockedAnchorGivesWayToTheModalDialog();
    void theAnchorMayDie();
    void theWindowMayDie();
    void hidingTheWindowClosesIt();
    void itFollowsItsAnchor();
    void itStaysWhereItIsReadWhenItsAnchorIsHidden();
    void tipsOfDifferentAnchorsDoNotCover();
    void severalListsOfOneAnchorDoNotCover();
    void itStaysOnTheScreen();
    void itShowsAfterADialogHasClosed();
    void itHidesWithTheProgram();
};

void MessageTipPlaceTest::init()
{
    TestCase::init();
    open();
}

void MessageTipPlaceTest::cleanup()
{
    close();
    TestCase::cleanup();
}

void MessageTipPlaceTest::standsBelowItsAnchorAndClosesByItself()
{
    show(QStringLiteral("授权成功"), 3, 20);
    QPointer<CMessageTip> tip = only();
    QVERIFY(tip);
    QVERIFY(tip->isVisible());
    QCOMPARE(tip->texts(), QStringList(QStringLiteral("授权成功")));
    QCOMPARE(tip->accessibleName(), QStringLiteral("授权成功"));
    QCOMPARE(tip->kind(), 3);
    QCOMPARE(tip->anchor(), m_anchor);
    const QPoint corner = m_anchor->mapToGlobal(QPoint(0, m_anchor->height()));
    QCOMPARE(tip->geometry().left(), corner.x());
    QVERIFY(tip->geometry().top() >= corner.y() && tip->geometry().top() <= corner.y() + 10);
    QTRY_VERIFY(!tip);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipPlaceTest::alignmentChoosesTheSide_data()
{
    QTest::addColumn<int>("alignment");
    QTest::newRow("above left") << int(Qt::AlignTop | Qt::AlignLeft);
    QTest::newRow("below right") << int(Qt::AlignBottom | Qt::AlignRight);
    QTest::newRow("below centre") << int(Qt::AlignBottom | Qt::AlignHCenter);
}

void MessageTipPlaceTest::alignmentChoosesTheSide()
{
    QFETCH(int, alignment);
    CMessageTip::showTip(m_anchor, alignment, QStringLiteral("文字"), 1, 2, 300);
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    const QRect tip = only()->geometry();
    if (alignment & Qt::AlignTop)
        QVERIFY(tip.bottom() < anchor.top());
    else
        QVERIFY(tip.top() > anchor.bottom());
    if (alignment & Qt::AlignLeft)
        QCOMPARE(tip.left(), anchor.left());
    else if (alignment & Qt::AlignRight)
        QCOMPARE(tip.right(), anchor.right());
    else
        QVERIFY(qAbs(tip.center().x() - anchor.center().x()) <= 1);
}

void MessageTipPlaceTest::itNeverTakesTheFocus()
{
    show(QStringLiteral("一"));
    show(QStringLiteral("二"));
    QTRY_VERIFY(only()->findChild<QToolButton*>()->isVisible());
    QVERIFY(m_anchor->hasFocus());
    QTest::mouseClick(body(only())->viewport(), Qt::LeftButton);
    QTest::mouseDClick(body(only())->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    QVERIFY(m_anchor->hasFocus());
    QVERIFY(m_window->isActiveWindow());
    QTest::keyClicks(m_anchor, QStringLiteral("abc"));
    QCOMPARE(m_anchor->text(), QStringLiteral("abc"));
    QTest::mouseClick(only()->findChild<QToolButton*>(), Qt::LeftButton);
    QVERIFY(m_anchor->hasFocus());
}

void MessageTipPlaceTest::aHiddenAnchorIsReplacedByItsVisibleAncestor()
{
    auto* const stack = new QStackedWidget(m_window.get());
    stack->setGeometry(0, 100, 400, 200);
    stack->addWidget(new QWidget);
    auto* const page = new QWidget;
    auto* const hidden = new QLineEdit(page);
    stack->addWidget(page);
    stack->show();
    CMessageTip::showTip(hidden, 0x41, QStringLiteral("看不见的"), 3, 2, 300);
    QVERIFY(only()->isVisible());
    QCOMPARE(only()->anchor(), hidden);
    const QRect ground(stack->mapToGlobal(QPoint()), stack->size());
    QVERIFY(ground.contains(only()->geometry().center()));
}

void MessageTipPlaceTest::aHiddenWindowIsReplacedByItsParentWindow()
{
    QDialog dialog(m_window.get());
    auto* const edit = new QLineEdit(&dialog);
    CMessageTip::showTip(edit, 0x41, QStringLiteral("对话框已关闭"), 3, 2, 300);
    QVERIFY(only()->isVisible());
    QCOMPARE(only()->parentWidget(), m_window.get());
    QVERIFY(m_window->frameGeometry().contains(only()->geometry().center()));
}

void MessageTipPlaceTest::aNullAnchorShowsOverTheActiveWindow()
{
    QWidget second;
    second.setGeometry(300, 300, 300, 200);
    second.show();
    QVERIFY(QTest::qWaitForWindowActive(&second));
    CMessageTip::showTip(nullptr, 0x41, QStringLiteral("导入失败！"), 3, 2, 300);
    CMessageTip::showTip(nullptr, 0x41, QStringLiteral("授权文件格式错误"), 3, 2, 300);
    QVERIFY(only());
    QCOMPARE(only()->anchor(), nullptr);
    QCOMPARE(only()->parentWidget(), &second);
    QCOMPARE(only()->texts().size(), 2);
    QVERIFY(second.frameGeometry().contains(only()->geometry().center()));
}

void MessageTipPlaceTest::withoutAWindowItStandsOnTheScreen()
{
    m_window->hide();
    CMessageTip::showTip(m_anchor, 0x41, QStringLiteral("没有窗口"), 3, 2, 20);
    QPointer<CMessageTip> tip = only();
    QVERIFY(tip->isVisible());
    QVERIFY(!tip->parentWidget());
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(tip->geometry()));
    QTRY_VERIFY(!tip);
}

void MessageTipPlaceTest::itWorksAboveAModalDialog()
{
    QDialog dialog(m_window.get());
    dialog.setModal(true);
    auto* const edit = new QLineEdit(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    CMessageTip::showTip(edit, 0x41, QStringLiteral("一"), 3, 2, 300);
    CMessageTip::showTip(edit, 0x41, QStringLiteral("二"), 3, 2, 300);
    QCOMPARE(only()->parentWidget(), &dialog);
    QTRY_VERIFY(only()->findChild<QToolButton*>()->isVisible());
    // Through the window, as the windowing system would, so that modality has its say.
    auto* const close = only()->findChild<QToolButton*>();
    QTest::mouseClick(only()->windowHandle(), Qt::LeftButton, {},
                      close->mapTo(only(), close->rect().center()));
    QTRY_VERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipPlaceTest::aBlockedAnchorGivesWayToTheModalDialog()
{
    QDialog dialog(m_window.get());
    dialog.setModal(true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    show(QStringLiteral("来自被挡住的窗口"));
    QCOMPARE(only()->parentWidget(), &dialog);
}

void MessageTipPlaceTest::theAnchorMayDie()
{
    show(QStringLiteral("一"), 3, 30);
    QPointer<CMessageTip> tip = only();
    const QPoint place = tip->pos();
    delete m_anchor;
    m_anchor = nullptr;
    QVERIFY(tip && tip->isVisible());
    QCOMPARE(tip->anchor(), nullptr);
    m_window->resize(600, 350);
    QCoreApplication::processEvents();
    QCOMPARE(tip->pos(), place);
    // A null anchor is another place than that of a destroyed widget.
    CMessageTip::showTip(nullptr, 0x41, QStringLiteral("二"), 3, 2, 30);
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
    QTRY_VERIFY(!tip);
    QTRY_VERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipPlaceTest::theWindowMayDie()
{
    show(QStringLiteral("一"));
    show(QStringLiteral("二"));
    QPointer<CMessageTip> tip = only();
    m_window.reset();
    QVERIFY(!tip);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipPlaceTest::hidingTheWindowClosesIt()
{
    show(QStringLiteral("一"));
    QPointer<CMessageTip> tip = only();
    m_window->hide();
    QVERIFY(CMessageTip::visibleTips().isEmpty());
    QTRY_VERIFY(!tip);
}

void MessageTipPlaceTest::itFollowsItsAnchor()
{
    show(QStringLiteral("跟着走"));
    const QPoint offset = only()->pos() - m_anchor->mapToGlobal(QPoint());
    m_anchor->move(90, 120);
    QTRY_COMPARE(only()->pos() - m_anchor->mapToGlobal(QPoint()), offset);
    m_window->move(150, 130);
    QTRY_COMPARE(only()->pos() - m_anchor->mapToGlobal(QPoint()), offset);
    m_anchor->hide();
    QTRY_VERIFY(only()->pos() - m_anchor->mapToGlobal(QPoint()) != offset);
    QVERIFY(only()->isVisible());
}

void MessageTipPlaceTest::itStaysWhereItIsReadWhenItsAnchorIsHidden()
{
    show(QStringLiteral("留在原处"));
    const auto* const text = body(only());
    const QPoint shown = text->mapToGlobal(QPoint());
    const int withArrow = only()->height();
    m_anchor->hide();
    // Without its arrow, which would point at something else now.
    QTRY_VERIFY(only()->height() < withArrow);
    QCOMPARE(text->mapToGlobal(QPoint()), shown);
    m_window->move(150, 130);
    QTRY_COMPARE(text->mapToGlobal(QPoint()), shown + QPoint(50, 30));
    m_anchor->show();
    QTRY_COMPARE(only()->height(), withArrow);
    QCOMPARE(text->mapToGlobal(QPoint()), shown + QPoint(50, 30));
}

void MessageTipPlaceTest::tipsOfDifferentAnchorsDoNotCover()
{
    auto* const neighbour = new QLineEdit(m_window.get());
    neighbour->setGeometry(70, 62, 160, 28);
    neighbour->show();
    show(QStringLiteral("一"));
    CMessageTip::showTip(neighbour, 0x41, QStringLiteral("二"), 2, 2, 300);
    const QList<CMessageTip*> tips = CMessageTip::visibleTips();
    QCOMPARE(tips.size(), 2);
    QVERIFY(!tips.at(0)->geometry().intersects(tips.at(1)->geometry()));
}

void MessageTipPlaceTest::severalListsOfOneAnchorDoNotCover()
{
    const QRect screen = m_window->screen()->availableGeometry();
    // Room for one list on either side, none for a second.
    m_window->move(screen.left() + 10, screen.center().y() - 80);
    QCoreApplication::processEvents();
    for (const quint64 request : {1, 2, 3}) {
        for (int i = 0; i < 11; ++i)
            CMessageTip::showTip(m_anchor, 0x41, QStringLiteral("第 %1 个错误").arg(i), 3, 2, 300,
                                 request);
        QTRY_COMPARE(body(CMessageTip::visibleTips().constLast())->document()->blockCount(), 11);
    }
    const QList<CMessageTip*> tips = CMessageTip::visibleTips();
    QCOMPARE(tips.size(), 3);
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    for (const CMessageTip* const tip : tips) {
        QVERIFY(screen.contains(tip->geometry()));
        QVERIFY(!tip->geometry().intersects(anchor));
        for (const CMessageTip* const other : tips)
            QVERIFY(other == tip || !tip->geometry().intersects(other->geometry()));
    }
}

void MessageTipPlaceTest::itStaysOnTheScreen()
{
    const QRect screen = m_window->screen()->availableGeometry();
    m_window->move(screen.bottomRight() - QPoint(300, 100));
    QCoreApplication::processEvents();
    show(QString(QStringLiteral("很长的文字")).repeated(60));
    QVERIFY(screen.contains(only()->geometry()));
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    QVERIFY(!only()->geometry().intersects(anchor));
}

void MessageTipPlaceTest::itShowsAfterADialogHasClosed()
{
    QDialog dialog(m_window.get());
    auto* const edit = new QLineEdit(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    CMessageTip::showTip(edit, 0x41, QStringLiteral("一"), 3, 2, 300);
    dialog.hide();
    QCoreApplication::processEvents();
    CMessageTip::showTip(edit, 0x41, QStringLiteral("二"), 3, 2, 20);
    QTRY_VERIFY(only() && only()->isVisible());
    QCOMPARE(only()->parentWidget(), m_window.get());
    QTRY_VERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipPlaceTest::itHidesWithTheProgram()
{
    show(QStringLiteral("一"), 3, 10);
    QPointer<CMessageTip> tip = only();
    QVERIFY(tip->isVisible());
    // The signal of the platform, whose only program is this one here.
    QMetaObject::invokeMethod(qApp, "applicationStateChanged",
                              Q_ARG(Qt::ApplicationState, Qt::ApplicationInactive));
    QVERIFY(!tip->isVisible());
    QTest::qWait(300);
    QVERIFY(tip);
    QMetaObject::invokeMethod(qApp, "applicationStateChanged",
                              Q_ARG(Qt::ApplicationState, Qt::ApplicationActive));
    QVERIFY(tip->isVisible());
    QTRY_VERIFY(!tip);
}

int main(int argc, char** argv)
{
    return runTest<MessageTipPlaceTest>(argc, argv);
}

#include "MessageTipPlaceTest.moc"
