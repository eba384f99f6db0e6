#include "kit/tips/MessageTip.h"

#include "tests/kit/TipWindow.h"
#include "tests/support/TestCase.h"

#include <QClipboard>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>

using namespace KZ;

class MessageTipTest : public TestCase, private TipWindow
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
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
    void hostileTextsAreShownAsPlainText();
    void theThemeChangesWhileShown();
    void durationsAreHundredthsOfASecond();
    void withoutADurationItStays();
};

void MessageTipTest::init()
{
    TestCase::init();
    open();
}

void MessageTipTest::cleanup()
{
    close();
    TestCase::cleanup();
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
    QVERIFY(elapsed.elapsed() >= 400);
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
    // Sanitizers and a loaded machine slow this down many times; quadratic work would take minutes.
    QVERIFY(burst < 30'000);
    QVERIFY(elapsed.elapsed() < 30'000);
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
    QVERIFY(elapsed.elapsed() < 30'000);
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
    QVERIFY(elapsed.elapsed() >= 500);
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
