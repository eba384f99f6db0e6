#include "kit/dialogs/CommonDialog.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QCloseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

using namespace KZ;

namespace {

class Dialog : public CCommonDialog
{
public:
    using CCommonDialog::CCommonDialog;

    int closes = 0;
    bool refuses = false;

protected:
    // As the dialogs of the client do it: the base class is not called.
    void closeEvent(QCloseEvent* event) override
    {
        ++closes;
        event->setAccepted(!refuses);
    }
};

} // namespace

class KitDialogTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theWindowHasNoSystemFrame();
    void theTitleIsShownAndIsTheWindowTitle();
    void titleBarAndBorderComeFromTheRegistry();
    void theCloseButtonHidesThroughCloseEvent();
    void aRefusedCloseKeepsTheDialogOpen();
    void escHides();
    void theGlyphCloses();
    void enterInAnEditorClosesNothing();
    void otherEventsPassOn();
    void aCloseEventOfAnotherKindIsNotTaken();
    void execEndsWhenTheDialogIsClosed();
    void execSurvivesTheParentsDeath();
    void theTitleBarDragsTheDialog();
    void draggingElsewhereMovesNothing();
    void theContentWidgetFillsTheInside();
    void theDialogFollowsTheTheme();
    void theLookDoesNotDependOnTheProgramsStyle();
    void itCanBeShownAgain();
};

void KitDialogTest::cleanup()
{
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

void KitDialogTest::theWindowHasNoSystemFrame()
{
    Dialog dialog(nullptr);
    QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(dialog.windowType(), Qt::Dialog);
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    dialog.setWindowFlags(dialog.windowFlags() & ~Qt::WindowContextHelpButtonHint);
    QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
}

void KitDialogTest::theTitleIsShownAndIsTheWindowTitle()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    const QImage without = dialog.grab().toImage();
    dialog.setTitle(QStringLiteral("授权设置"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("授权设置"));
    QVERIFY(without != dialog.grab().toImage());
}

void KitDialogTest::titleBarAndBorderComeFromTheRegistry()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    QCOMPARE(dialog.titleBarHeight(),
             CUiResource::getSize(QStringLiteral("gw_siz_kit_title_bar_height")));
    QCOMPARE(dialog.borderWidth(), CUiResource::getSize(QStringLiteral("gw_siz_kit_border_width")));
    QCOMPARE(dialog.innerRect(), QRect(1, 37, 298, 162));
    const QImage image = dialog.grab().toImage();
    QCOMPARE(image.pixelColor(0, 100), CUiResource::getColor(QStringLiteral("clr_frame")));
    QCOMPARE(image.pixelColor(299, 199), CUiResource::getColor(QStringLiteral("clr_frame")));
    QCOMPARE(image.pixelColor(1, 36), CUiResource::getColor(QStringLiteral("clr_title_bar")));
    QCOMPARE(image.pixelColor(1, 37), CUiResource::getColor(QStringLiteral("clr_window")));
}

void KitDialogTest::theCloseButtonHidesThroughCloseEvent()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    CMediumNormalButton button(CBaseDialog::ID_BUTTON_CLOSE, 1, &dialog);
    button.move(100, 100);
    dialog.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.closes, 1);
}

void KitDialogTest::aRefusedCloseKeepsTheDialogOpen()
{
    Dialog dialog(nullptr);
    dialog.refuses = true;
    dialog.show();
    QVERIFY(dialog.handleEvent(EVENT_BUTTON_CLICKED, CBaseDialog::ID_BUTTON_CLOSE, 0, QString(),
                               nullptr));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.closes, 2);
    dialog.hide();
}

void KitDialogTest::escHides()
{
    Dialog dialog(nullptr);
    CLineEdit edit(1, &dialog);
    dialog.show();
    QTest::keyClick(&edit, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.closes, 1);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void KitDialogTest::theGlyphCloses()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    dialog.show();
    auto* const glyph = qobject_cast<QPushButton*>(
        dialog.childAt(dialog.width() - 20, dialog.titleBarHeight() / 2));
    QVERIFY(glyph);
    QCOMPARE(glyph->accessibleName(), QStringLiteral("关闭"));
    QVERIFY(!glyph->toolTip().isEmpty());
    QTest::mouseClick(glyph, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
}

void KitDialogTest::enterInAnEditorClosesNothing()
{
    Dialog dialog(nullptr);
    CLineEdit edit(1, &dialog);
    CMediumNormalButton close(CBaseDialog::ID_BUTTON_CLOSE, 1, &dialog);
    QPushButton foreign(&dialog);
    foreign.setDefault(true);
    QSignalSpy clicks(&foreign, &QPushButton::clicked);
    dialog.show();
    QTest::keyClick(&edit, Qt::Key_Return);
    QTest::keyClick(&edit, Qt::Key_Enter);
    QVERIFY(dialog.isVisible());
    QCOMPARE(clicks.count(), 0);
    dialog.hide();
}

void KitDialogTest::otherEventsPassOn()
{
    EventRecorder window;
    Dialog dialog(&window);
    QVERIFY(dialog.handleEvent(1103, 7, 0, QString(), nullptr));
    QCOMPARE(window.count(1103), 1);
    Dialog alone(nullptr);
    QVERIFY(!alone.handleEvent(1103, 7, 0, QString(), nullptr));
}

void KitDialogTest::aCloseEventOfAnotherKindIsNotTaken()
{
    Dialog dialog(nullptr);
    dialog.show();
    QVERIFY(!dialog.handleEvent(EVENT_CHECK_TOGGLED, CBaseDialog::ID_BUTTON_CLOSE, 1, QString(),
                                nullptr));
    QVERIFY(!dialog.handleEvent(EVENT_BUTTON_CLICKED, 1, CBaseDialog::ID_BUTTON_CLOSE, QString(),
                                nullptr));
    QVERIFY(dialog.isVisible());
    dialog.hide();
}

void KitDialogTest::execEndsWhenTheDialogIsClosed()
{
    Dialog dialog(nullptr);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    QTimer::singleShot(0, &dialog, [&dialog] {
        QVERIFY(dialog.isModal());
        dialog.handleEvent(EVENT_BUTTON_CLICKED, CBaseDialog::ID_BUTTON_CLOSE, 1, QString(),
                           nullptr);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.closes, 1);
}

void KitDialogTest::execSurvivesTheParentsDeath()
{
    auto* const parent = new EventRecorder;
    const QPointer<Dialog> dialog(new Dialog(parent));
    parent->show();
    QTimer::singleShot(0, parent, [parent] { delete parent; });
    QCOMPARE(dialog->exec(), int(QDialog::Rejected));
    QVERIFY(!dialog);
}

void KitDialogTest::theTitleBarDragsTheDialog()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.move(100, 100);
    const QPoint start = dialog.pos();
    const QPoint grip(60, 10);
    QTest::mousePress(&dialog, Qt::LeftButton, {}, grip);
    QTest::mouseMove(&dialog, grip + QPoint(30, 20));
    QTRY_COMPARE(dialog.pos(), start + QPoint(30, 20));
    QTest::mouseRelease(&dialog, Qt::LeftButton, {}, grip);
    const QPoint end = dialog.pos();
    QTest::mouseMove(&dialog, grip + QPoint(50, 50));
    QCOMPARE(dialog.pos(), end);
}

void KitDialogTest::draggingElsewhereMovesNothing()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QPoint start = dialog.pos();
    QTest::mousePress(&dialog, Qt::LeftButton, {}, QPoint(60, 120));
    QTest::mouseMove(&dialog, QPoint(90, 150));
    QTest::mouseRelease(&dialog, Qt::LeftButton, {}, QPoint(90, 150));
    QTest::mousePress(&dialog, Qt::RightButton, {}, QPoint(60, 10));
    QTest::mouseMove(&dialog, QPoint(90, 50));
    QTest::mouseRelease(&dialog, Qt::RightButton, {}, QPoint(90, 50));
    QCOMPARE(dialog.pos(), start);
}

void KitDialogTest::theContentWidgetFillsTheInside()
{
    Dialog dialog(nullptr);
    auto* const content = new CLineEdit(1, nullptr);
    dialog.setContentWidget(content);
    QCOMPARE(dialog.contentWidget(), content);
    QCOMPARE(dialog.sizeHint(), content->sizeHint().expandedTo(QSize(0, 0)) + QSize(2, 38));
    dialog.resize(320, 240);
    dialog.show();
    QVERIFY(content->isVisible());
    QCOMPARE(content->geometry(), dialog.innerRect());
    delete content;
    dialog.resize(400, 300);
    QCOMPARE(dialog.contentWidget(), nullptr);
}

void KitDialogTest::theDialogFollowsTheTheme()
{
    Dialog dialog(nullptr);
    dialog.resize(300, 200);
    CLineEdit edit(1, &dialog);
    edit.move(20, 60);
    CSimpleTextWidget text(QStringLiteral("文字"), &dialog);
    text.move(20, 100);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QImage light = dialog.grab().toImage();
    CUiResource::setTheme(CUiResource::Theme::Dark);
    const QImage dark = dialog.grab().toImage();
    QCOMPARE(dark.pixelColor(10, 150), CUiResource::getColor(QStringLiteral("clr_window")));
    QCOMPARE(dark.pixelColor(100, 74), CUiResource::getColor(QStringLiteral("clr_panel")));
    QCOMPARE(edit.palette().color(QPalette::Text),
             CUiResource::getColor(QStringLiteral("clr_text")));
    CUiResource::setTheme(CUiResource::Theme::Light);
    QCOMPARE(dialog.grab().toImage(), light);
}

void KitDialogTest::theLookDoesNotDependOnTheProgramsStyle()
{
    const auto picture = [] {
        Dialog dialog(nullptr);
        dialog.resize(300, 200);
        CMediumNormalButton button(1, &dialog);
        button.setText(QStringLiteral("授权"));
        button.move(20, 60);
        CLineEdit edit(1, &dialog);
        edit.move(20, 100);
        return dialog.grab().toImage();
    };
    const QImage before = picture();
    const QPalette palette = QApplication::palette();
    const QFont font = QApplication::font();
    QApplication::setStyle(QStringLiteral("Windows"));
    QApplication::setPalette(QPalette(Qt::red, Qt::green));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Serif"), 20));
    const QImage after = picture();
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(palette);
    QApplication::setFont(font);
    QCOMPARE(after, before);
}

void KitDialogTest::itCanBeShownAgain()
{
    Dialog dialog(nullptr);
    for (int i = 0; i < 3; ++i) {
        QTimer::singleShot(0, &dialog, [&dialog] { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    }
    QCOMPARE(dialog.closes, 3);
}

int main(int argc, char** argv)
{
    return runTest<KitDialogTest>(argc, argv);
}

#include "KitDialogTest.moc"
