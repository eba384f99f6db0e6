#include "kit/tips/MessageTip.h"

#include "kit/resources/UiResource.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QClipboard>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTextBlock>
#include <QToolButton>

#include <memory>

using namespace KZ;

class MessageTipTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void standsBelowItsAnchorAndClosesByItself();
    void alignmentChoosesTheSide_data();
    void alignmentChoosesTheSide();
    void theThreeKindsLookDifferent();
    void tipsOfOneAnchorJoin();
    void aRepeatedTextIsCounted();
    void aListOfOutcomesStaysUntilDismissed();
    void severalHintsCloseAfterAllTheirDurations();
    void thePointerKeepsItOpen();
    void aClickDismissesASingleText();
    void escapeDismissesAListBeforeItsWindow();
    void escapePassesASingleText();
    void aListScrollsAndCopiesByKeyboard();
    void tenThousandTipsCostLittle();
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
    void tipsOfDifferentAnchorsDoNotCover();
    void itStaysOnTheScreen();
    void itShowsAfterADialogHasClosed();
    void itHidesWithTheProgram();
    void hostileTextsAreShownAsPlainText();
    void theThemeChangesWhileShown();
    void durationsAreHundredthsOfASecond();
    void withoutADurationItStays();

private:
    CMessageTip* only() const;
    static QPlainTextEdit* body(const CMessageTip* tip)
    {
        return tip->findChild<QPlainTextEdit*>();
    }
    void show(const QString& text, int kind = 3, int duration = 300)
    {
        CMessageTip::showTip(m_anchor, 0x41, text, kind, 2, duration);
    }

    std::unique_ptr<EventRecorder> m_window;
    QLineEdit* m_anchor = nullptr;
};

void MessageTipTest::init()
{
    TestCase::init();
    // A pointer that happens to rest where a tip comes up would keep it open.
    QCursor::setPos(0, 0);
    m_window = std::make_unique<EventRecorder>();
    m_window->resize(500, 300);
    m_window->move(100, 100);
    m_anchor = new QLineEdit(m_window.get());
    m_anchor->setGeometry(50, 60, 160, 28);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_anchor->setFocus();
}

void MessageTipTest::cleanup()
{
    CMessageTip::closeAll();
    m_window.reset();
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

CMessageTip* MessageTipTest::only() const
{
    const QList<CMessageTip*> tips = CMessageTip::visibleTips();
    return tips.size() == 1 ? tips.constFirst() : nullptr;
}

void MessageTipTest::standsBelowItsAnchorAndClosesByItself()
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

void MessageTipTest::alignmentChoosesTheSide_data()
{
    QTest::addColumn<int>("alignment");
    QTest::newRow("above left") << int(Qt::AlignTop | Qt::AlignLeft);
    QTest::newRow("below right") << int(Qt::AlignBottom | Qt::AlignRight);
    QTest::newRow("below centre") << int(Qt::AlignBottom | Qt::AlignHCenter);
}

void MessageTipTest::alignmentChoosesTheSide()
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

void MessageTipTest::theThreeKindsLookDifferent()
{
    QList<QImage> pictures;
    for (const int kind : {1, 2, 3}) {
        show(QStringLiteral("同一文字"), kind);
        // Without colour the icons still have to differ.
        pictures += only()->grab().toImage().convertToFormat(QImage::Format_Mono);
        CMessageTip::closeAll();
    }
    QVERIFY(pictures.at(0) != pictures.at(1));
    QVERIFY(pictures.at(1) != pictures.at(2));
    QVERIFY(pictures.at(0) != pictures.at(2));
}

void MessageTipTest::tipsOfOneAnchorJoin()
{
    show(QStringLiteral("权限出错！错误信息：一"));
    show(QStringLiteral("权限出错！错误信息：二"));
    show(QStringLiteral("权限出错！错误信息：三"), 2);
    const CMessageTip* const tip = only();
    QVERIFY(tip);
    QCOMPARE(tip->texts().size(), 3);
    QCOMPARE(tip->kind(), 2);
    QTRY_COMPARE(
        tip->accessibleName(),
        QStringLiteral("权限出错！错误信息：一\n权限出错！错误信息：二\n权限出错！错误信息：三"));
    const QString shown = body(tip)->toPlainText();
    for (const QString& text : tip->texts())
        QVERIFY(shown.contains(text));
    bool counted = false;
    for (const QLabel* const label : tip->findChildren<QLabel*>())
        counted = counted || label->text().contains(QLatin1Char('3'));
    QVERIFY(counted);

    CMessageTip::showTip(m_window.get(), 0x41, QStringLiteral("别处"), 1, 2, 300);
    QCOMPARE(CMessageTip::visibleTips().size(), 2);
}

void MessageTipTest::aRepeatedTextIsCounted()
{
    for (int i = 0; i < 5; ++i)
        show(QStringLiteral("被授权人不能为空"), 3, 20);
    QPointer<CMessageTip> tip = only();
    QCOMPARE(tip->texts().size(), 5);
    QVERIFY(!tip->isLasting());
    QTRY_VERIFY(tip->accessibleName().contains(QLatin1Char('5')));
    QCOMPARE(body(tip)->document()->blockCount(), 1);
    QTRY_VERIFY(!tip);
}

void MessageTipTest::aListOfOutcomesStaysUntilDismissed()
{
    show(QStringLiteral("一"), 3, 5);
    show(QStringLiteral("二"), 3, 5);
    QPointer<CMessageTip> tip = only();
    QVERIFY(tip->isLasting());
    auto* const close = tip->findChild<QToolButton*>();
    QTRY_VERIFY(close->isVisible());
    // The wait is many times the duration; a tip that counted it would be gone.
    QTest::qWait(400);
    QVERIFY(tip && tip->isVisible());
    // A click on the texts selects in a list, it does not close it.
    QTest::mouseClick(body(tip)->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    QVERIFY(only());
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
    QTRY_VERIFY(!tip);
}

void MessageTipTest::severalHintsCloseAfterAllTheirDurations()
{
    QElapsedTimer elapsed;
    elapsed.start();
    show(QStringLiteral("授权日期为1天"), 2, 20);
    show(QStringLiteral("授权开始时间晚于结束时间"), 2, 20);
    QVERIFY(!only()->isLasting());
    QTRY_VERIFY(CMessageTip::visibleTips().isEmpty());
    QVERIFY(elapsed.elapsed() >= 380);
}

void MessageTipTest::thePointerKeepsItOpen()
{
    show(QStringLiteral("请看"), 3, 10);
    QPointer<CMessageTip> tip = only();
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(tip->pos()) + QPointF(5, 5));
    QApplication::sendEvent(tip, &enter);
    QTest::qWait(300);
    QVERIFY(tip && tip->isVisible());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(tip, &leave);
    QTRY_VERIFY(!tip);
}

void MessageTipTest::aClickDismissesASingleText()
{
    show(QStringLiteral("点我"));
    QTest::mouseClick(body(only())->viewport(), Qt::LeftButton);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
    show(QStringLiteral("点边"));
    QTest::mouseClick(only(), Qt::LeftButton, {}, QPoint(4, only()->height() - 4));
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipTest::escapeDismissesAListBeforeItsWindow()
{
    QDialog dialog(m_window.get());
    auto* const edit = new QLineEdit(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    edit->setFocus();
    CMessageTip::showTip(edit, 0x41, QStringLiteral("一"), 3, 2, 300);
    CMessageTip::showTip(edit, 0x41, QStringLiteral("二"), 3, 2, 300);
    QTest::keyClick(edit, Qt::Key_Escape);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
    QVERIFY(dialog.isVisible());
    QTest::keyClick(edit, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
}

void MessageTipTest::escapePassesASingleText()
{
    QDialog dialog(m_window.get());
    auto* const edit = new QLineEdit(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    edit->setFocus();
    CMessageTip::showTip(edit, 0x41, QStringLiteral("一"), 3, 2, 300);
    QTest::keyClick(edit, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipTest::aListScrollsAndCopiesByKeyboard()
{
    QStringList all;
    for (int i = 0; i < 100; ++i) {
        all += QStringLiteral("第 %1 个错误").arg(i);
        show(all.constLast());
    }
    const CMessageTip* const tip = only();
    QTRY_VERIFY(body(tip)->verticalScrollBar()->maximum() > 0);
    QTest::keyClick(m_anchor, Qt::Key_PageDown, Qt::AltModifier);
    QVERIFY(body(tip)->verticalScrollBar()->value() > 0);
    QTest::keyClick(m_anchor, Qt::Key_PageUp, Qt::AltModifier);
    QCOMPARE(body(tip)->verticalScrollBar()->value(), 0);
    QTest::keyClick(m_anchor, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), all.join(QLatin1Char('\n')));
    QVERIFY(m_anchor->text().isEmpty());
    QVERIFY(body(tip)->verticalScrollBar()->isVisible());
    body(tip)->verticalScrollBar()->setValue(body(tip)->verticalScrollBar()->maximum());
    QTRY_VERIFY(body(tip)->document()->lastBlock().text().contains(all.constLast()));
    QGuiApplication::clipboard()->clear();
}

void MessageTipTest::tenThousandTipsCostLittle()
{
    QElapsedTimer elapsed;
    elapsed.start();
    for (int i = 0; i < 10'000; ++i)
        show(QStringLiteral("权限出错！错误信息：账户 %1 不存在").arg(i));
    const qint64 burst = elapsed.restart();
    const CMessageTip* const tip = only();
    QCOMPARE(tip->texts().size(), 10'000);
    QTRY_COMPARE(body(tip)->document()->blockCount(), 10'000);
    QVERIFY(tip->accessibleName().contains(QStringLiteral("账户 9999 ")));
    qInfo("burst %lld ms, shown after %lld ms", burst, elapsed.elapsed());
    // Sanitizers slow this down many times; quadratic work would still take far longer.
    QVERIFY(burst < 2000);
    QVERIFY(elapsed.elapsed() < 5000);
}

void MessageTipTest::itNeverTakesTheFocus()
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

void MessageTipTest::aHiddenAnchorIsReplacedByItsVisibleAncestor()
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

void MessageTipTest::aHiddenWindowIsReplacedByItsParentWindow()
{
    QDialog dialog(m_window.get());
    auto* const edit = new QLineEdit(&dialog);
    CMessageTip::showTip(edit, 0x41, QStringLiteral("对话框已关闭"), 3, 2, 300);
    QVERIFY(only()->isVisible());
    QCOMPARE(only()->parentWidget(), m_window.get());
    QVERIFY(m_window->frameGeometry().contains(only()->geometry().center()));
}

void MessageTipTest::aNullAnchorShowsOverTheActiveWindow()
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

void MessageTipTest::withoutAWindowItStandsOnTheScreen()
{
    m_window->hide();
    CMessageTip::showTip(m_anchor, 0x41, QStringLiteral("没有窗口"), 3, 2, 20);
    QPointer<CMessageTip> tip = only();
    QVERIFY(tip->isVisible());
    QVERIFY(!tip->parentWidget());
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(tip->geometry()));
    QTRY_VERIFY(!tip);
}

void MessageTipTest::itWorksAboveAModalDialog()
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

void MessageTipTest::aBlockedAnchorGivesWayToTheModalDialog()
{
    QDialog dialog(m_window.get());
    dialog.setModal(true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    show(QStringLiteral("来自被挡住的窗口"));
    QCOMPARE(only()->parentWidget(), &dialog);
}

void MessageTipTest::theAnchorMayDie()
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

void MessageTipTest::theWindowMayDie()
{
    show(QStringLiteral("一"));
    show(QStringLiteral("二"));
    QPointer<CMessageTip> tip = only();
    m_window.reset();
    QVERIFY(!tip);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

void MessageTipTest::hidingTheWindowClosesIt()
{
    show(QStringLiteral("一"));
    QPointer<CMessageTip> tip = only();
    m_window->hide();
    QVERIFY(CMessageTip::visibleTips().isEmpty());
    QTRY_VERIFY(!tip);
}

void MessageTipTest::itFollowsItsAnchor()
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

void MessageTipTest::tipsOfDifferentAnchorsDoNotCover()
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

void MessageTipTest::itStaysOnTheScreen()
{
    const QRect screen = m_window->screen()->availableGeometry();
    m_window->move(screen.bottomRight() - QPoint(300, 100));
    QCoreApplication::processEvents();
    show(QString(QStringLiteral("很长的文字")).repeated(60));
    QVERIFY(screen.contains(only()->geometry()));
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    QVERIFY(!only()->geometry().intersects(anchor));
}

void MessageTipTest::itShowsAfterADialogHasClosed()
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

void MessageTipTest::itHidesWithTheProgram()
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

void MessageTipTest::hostileTextsAreShownAsPlainText()
{
    show(QStringLiteral("<b>粗</b>") + QChar(u'\0') + QChar(0x202e) +
         QStringLiteral("gnp.exe\r\n尾"));
    const QString shown = body(only())->toPlainText();
    QVERIFY(shown.contains(QStringLiteral("<b>粗</b>")));
    QVERIFY(!shown.contains(QChar(u'\0')));
    QVERIFY(!shown.contains(QChar(0x202e)));
    QVERIFY(!only()->accessibleName().contains(QChar(0x202e)));
    CMessageTip::closeAll();

    QElapsedTimer elapsed;
    elapsed.start();
    const QString huge(1'000'000, QLatin1Char('x'));
    show(huge);
    QCOMPARE(only()->texts(), QStringList(huge));
    QVERIFY(elapsed.elapsed() < 2000);
    QVERIFY(m_window->screen()->availableGeometry().contains(only()->geometry()));
    CMessageTip::closeAll();

    show(QString());
    QVERIFY(only()->isVisible());
}

void MessageTipTest::theThemeChangesWhileShown()
{
    show(QStringLiteral("一"));
    show(QStringLiteral("二"));
    QTRY_VERIFY(only()->findChild<QToolButton*>()->isVisible());
    const QColor light = only()->palette().color(QPalette::Window);
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(only()->palette().color(QPalette::Window) != light);
    QCOMPARE(body(only())->palette().color(QPalette::Base),
             only()->palette().color(QPalette::Base));
}

void MessageTipTest::durationsAreHundredthsOfASecond()
{
    QElapsedTimer elapsed;
    elapsed.start();
    show(QStringLiteral("半秒"), 3, 50);
    QTRY_VERIFY(CMessageTip::visibleTips().isEmpty());
    QVERIFY(elapsed.elapsed() >= 490);
}

void MessageTipTest::withoutADurationItStays()
{
    show(QStringLiteral("留下"), 3, 0);
    QVERIFY(only()->isLasting());
    QTest::keyClick(m_anchor, Qt::Key_Escape);
    QVERIFY(CMessageTip::visibleTips().isEmpty());
}

int main(int argc, char** argv)
{
    return runTest<MessageTipTest>(argc, argv);
}

#include "MessageTipTest.moc"
