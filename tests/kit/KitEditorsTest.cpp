#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <memory>

using namespace KZ;

/// Every test runs with an editable combo box, a line edit and a plain neighbour in one window.
class KitEditorsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void typingInALineEdit();
    void enterCommitsOnce();
    void leavingCommitsAChangedText();
    void leavingAnUnchangedTextOnlySaysSo();
    void whatTheProgramSetsDeliversNothing();
    void aTextSetByTheProgramIsNoChangeOfTheUser();
    void aTextSetWhileTheEditIsHandledCountsAsTheProgramsOwn();
    void typingInTheBoxDoesNotCompleteOrAdd();
    void enterInTheBoxCommitsOnceAlsoForAListedText();
    void leavingTheBoxCommits();
    void pickingFromTheListCommits();
    void fillingTheBoxDeliversNothing();
    void theWheelChangesNothing();
    void aPlainBoxDeliversPicks();
    void anotherWindowDoesNotEndTheEditing();
    void controlCharactersAreTakenOut();
    void textsAreLimited();
    void theContextMenuIsChinese();
    void editorsHaveTheRegistrysHeight();
    void aLockedEditorIsShownSo();
    void withoutInputTheBeginningIsShown();
    void aTextThatIsCutOffHasAToolTip();
    void theListBeginsWhereTheTextDoes();
    void theClearButtonFollowsTheTheme();

private:
    void focus(QWidget* widget);

    std::unique_ptr<EventRecorder> m_window;
    CComboBox* m_box = nullptr;
    CLineEdit* m_edit = nullptr;
    QWidget* m_other = nullptr;
};

void KitEditorsTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    auto* const layout = new QVBoxLayout(m_window.get());
    m_box = new CComboBox(0, m_window.get());
    m_box->setEditable(true);
    m_edit = new CLineEdit(4, m_window.get());
    m_other = new QWidget(m_window.get());
    m_other->setFocusPolicy(Qt::StrongFocus);
    for (QWidget* widget : {static_cast<QWidget*>(m_box), static_cast<QWidget*>(m_edit), m_other})
        layout->addWidget(widget);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    focus(m_other);
    m_window->records.clear();
}

void KitEditorsTest::cleanup()
{
    m_window.reset();
    TestCase::cleanup();
}

void KitEditorsTest::focus(QWidget* widget)
{
    widget->setFocus(Qt::TabFocusReason);
    QVERIFY(widget->hasFocus());
}

void KitEditorsTest::typingInALineEdit()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("ab"));
    QCOMPARE(m_window->records.size(), 2);
    QCOMPARE(m_window->records.at(0).id, int(EVENT_TEXT_EDITED));
    QCOMPARE(m_window->records.at(0).param1, 4);
    QCOMPARE(m_window->records.at(0).text, QStringLiteral("a"));
    QCOMPARE(m_window->records.at(1).text, QStringLiteral("ab"));
    QCOMPARE(m_window->records.at(1).data, static_cast<void*>(static_cast<QWidget*>(m_edit)));
}

void KitEditorsTest::enterCommitsOnce()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("ab"));
    QTest::keyClick(m_edit, Qt::Key_Return);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->records.last().text, QStringLiteral("ab"));
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 1);
}

void KitEditorsTest::leavingCommitsAChangedText()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("ab"));
    m_window->records.clear();
    focus(m_other);
    QCOMPARE(m_window->records.size(), 2);
    QCOMPARE(m_window->records.at(0).id, int(EVENT_TEXT_COMMITTED));
    QCOMPARE(m_window->records.at(0).text, QStringLiteral("ab"));
    QCOMPARE(m_window->records.at(1).id, int(EVENT_FOCUS_LEFT));
    QCOMPARE(m_window->records.at(1).param1, 4);
}

void KitEditorsTest::leavingAnUnchangedTextOnlySaysSo()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("a"));
    QTest::keyClick(m_edit, Qt::Key_Backspace);
    m_window->records.clear();
    focus(m_other);
    QCOMPARE(m_window->records.size(), 1);
    QCOMPARE(m_window->records.at(0).id, int(EVENT_FOCUS_LEFT));
}

void KitEditorsTest::whatTheProgramSetsDeliversNothing()
{
    m_edit->setText(QStringLiteral("one"));
    m_edit->clear();
    m_box->addItems({QStringLiteral("x"), QStringLiteral("y")});
    m_box->setEditText(QStringLiteral("z"));
    m_box->setCurrentIndex(1);
    m_box->clearEditText();
    QCOMPARE(m_window->records.size(), 0);
}

void KitEditorsTest::aTextSetByTheProgramIsNoChangeOfTheUser()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("a"));
    m_edit->setText(QStringLiteral("from the program"));
    m_window->records.clear();
    focus(m_box);
    QTest::keyClicks(m_box, QStringLiteral("b"));
    m_box->setEditText(QString());
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 0);
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 2);
}

void KitEditorsTest::aTextSetWhileTheEditIsHandledCountsAsTheProgramsOwn()
{
    connect(m_edit, &QLineEdit::textEdited, m_edit,
            [this] { m_edit->setText(QStringLiteral("corrected")); });
    focus(m_edit);
    QTest::keyClick(m_edit, Qt::Key_A);
    QCOMPARE(m_edit->text(), QStringLiteral("corrected"));
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 0);
}

void KitEditorsTest::typingInTheBoxDoesNotCompleteOrAdd()
{
    m_box->addItems({QStringLiteral("zhang_wei"), QStringLiteral("Li")});
    m_box->clearEditText();
    focus(m_box);
    QTest::keyClicks(m_box, QStringLiteral("zh"));
    QCOMPARE(m_box->currentText(), QStringLiteral("zh"));
    QCOMPARE(m_window->count(EVENT_TEXT_EDITED), 2);
    QTest::keyClick(m_box, Qt::Key_Return);
    QCOMPARE(m_box->count(), 2);
    QCOMPARE(m_box->currentText(), QStringLiteral("zh"));
    m_box->setEditText(QString());
    QTest::keyClicks(m_box, QStringLiteral("li"));
    QTest::keyClick(m_box, Qt::Key_Return);
    QCOMPARE(m_box->currentText(), QStringLiteral("li"));
}

void KitEditorsTest::enterInTheBoxCommitsOnceAlsoForAListedText()
{
    m_box->addItems({QStringLiteral("ab"), QStringLiteral("cd")});
    m_box->clearEditText();
    focus(m_box);
    QTest::keyClicks(m_box, QStringLiteral("cd"));
    QTest::keyClick(m_box, Qt::Key_Return);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 1);
}

void KitEditorsTest::leavingTheBoxCommits()
{
    m_box->addItem(QStringLiteral("listed"));
    m_box->clearEditText();
    focus(m_box);
    QTest::keyClicks(m_box, QStringLiteral("listed"));
    m_window->records.clear();
    focus(m_other);
    QCOMPARE(m_window->records.size(), 2);
    QCOMPARE(m_window->records.at(0).id, int(EVENT_TEXT_COMMITTED));
    QCOMPARE(m_window->records.at(0).param1, 0);
    QCOMPARE(m_window->records.at(0).text, QStringLiteral("listed"));
    QCOMPARE(m_window->records.at(1).id, int(EVENT_FOCUS_LEFT));
    QCOMPARE(m_window->records.at(1).text, QStringLiteral("listed"));
}

void KitEditorsTest::pickingFromTheListCommits()
{
    m_box->addItems({QStringLiteral("ab"), QStringLiteral("cd")});
    m_box->clearEditText();
    focus(m_box);
    m_window->records.clear();
    m_box->showPopup();
    QTRY_VERIFY(m_box->view()->isVisible());
    m_box->view()->setCurrentIndex(m_box->model()->index(1, 0));
    QTest::keyClick(m_box->view(), Qt::Key_Return);
    QTRY_VERIFY(!m_box->view()->isVisible());
    QCOMPARE(m_box->currentText(), QStringLiteral("cd"));
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->records.last().text, QStringLiteral("cd"));
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 0);
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
}

void KitEditorsTest::fillingTheBoxDeliversNothing()
{
    focus(m_box);
    for (int i = 0; i < 3; ++i)
        m_box->addItem(QString::number(i));
    m_box->clear();
    m_box->addItem(QStringLiteral("again"));
    m_box->setEditText(QString());
    QCOMPARE(m_window->records.size(), 0);
    focus(m_other);
    QCOMPARE(m_window->records.size(), 1);
    QCOMPARE(m_window->records.first().id, int(EVENT_FOCUS_LEFT));
}

void KitEditorsTest::theWheelChangesNothing()
{
    m_box->addItems({QStringLiteral("ab"), QStringLiteral("cd")});
    focus(m_box);
    QWheelEvent turn(QPointF(5, 5), m_box->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_box, &turn);
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(m_window->records.size(), 0);
}

void KitEditorsTest::aPlainBoxDeliversPicks()
{
    auto* const box = new CComboBox(9, m_window.get());
    m_window->layout()->addWidget(box);
    box->addItems({QStringLiteral("ab"), QStringLiteral("cd")});
    box->show();
    focus(box);
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->records.last().param1, 9);
    QCOMPARE(m_window->records.last().text, QStringLiteral("cd"));
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
}

void KitEditorsTest::anotherWindowDoesNotEndTheEditing()
{
    focus(m_edit);
    QTest::keyClicks(m_edit, QStringLiteral("half"));
    m_window->records.clear();
    {
        QWidget window;
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(m_window->records.size(), 0);
    }
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    focus(m_other);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
}

void KitEditorsTest::controlCharactersAreTakenOut()
{
    QString hostile = QStringLiteral("a1b2\nc\td");
    hostile[1] = QChar(0);
    QGuiApplication::clipboard()->setText(hostile);
    for (QWidget* editor : {static_cast<QWidget*>(m_edit), static_cast<QWidget*>(m_box)}) {
        focus(editor);
        QTest::keySequence(editor, QKeySequence::Paste);
    }
    QCOMPARE(m_edit->text(), QStringLiteral("ab2cd"));
    QCOMPARE(m_box->currentText(), QStringLiteral("ab2cd"));
    QCOMPARE(m_edit->cursorPosition(), 5);
}

void KitEditorsTest::textsAreLimited()
{
    QGuiApplication::clipboard()->setText(QString(1 << 20, QLatin1Char('x')));
    focus(m_edit);
    QTest::keySequence(m_edit, QKeySequence::Paste);
    focus(m_box);
    QTest::keySequence(m_box, QKeySequence::Paste);
    QCOMPARE(m_edit->text().size(), CLineEdit::MAX_TEXT_LENGTH);
    QCOMPARE(m_box->currentText().size(), CLineEdit::MAX_TEXT_LENGTH);
}

void KitEditorsTest::theContextMenuIsChinese()
{
    m_edit->setText(QStringLiteral("text"));
    for (QWidget* editor :
         {static_cast<QWidget*>(m_edit), static_cast<QWidget*>(m_box->lineEdit())}) {
        QContextMenuEvent ask(QContextMenuEvent::Mouse, QPoint(3, 3),
                              m_edit->mapToGlobal(QPoint()));
        QApplication::sendEvent(editor, &ask);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QStringList texts;
        const QList<QAction*> actions = menu->actions();
        for (const QAction* action : actions) {
            if (!action->isSeparator())
                texts.append(action->text().section(QLatin1Char('\t'), 0, 0));
        }
        QCOMPARE(texts, QStringList({QStringLiteral("撤销"), QStringLiteral("重做"),
                                     QStringLiteral("剪切"), QStringLiteral("复制"),
                                     QStringLiteral("粘贴"), QStringLiteral("删除"),
                                     QStringLiteral("全选")}));
        if (editor == m_edit)
            actions.last()->trigger();
        menu->close();
    }
    QCOMPARE(m_edit->selectedText(), QStringLiteral("text"));
}

void KitEditorsTest::editorsHaveTheRegistrysHeight()
{
    const int height = CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"));
    QCOMPARE(m_edit->sizeHint().height(), height);
    QCOMPARE(m_box->sizeHint().height(), height);
    CLineEdit fresh(1, m_window.get());
    CComboBox freshBox(1, m_window.get());
    QCOMPARE(fresh.height(), height);
    QCOMPARE(freshBox.height(), height);
    QVERIFY(m_edit->fontMetrics().height() + 6 <= height);
}

void KitEditorsTest::aLockedEditorIsShownSo()
{
    m_edit->resize(180, 28);
    const QImage open = m_edit->grab().toImage();
    m_edit->setEnabled(false);
    const QImage locked = m_edit->grab().toImage();
    QVERIFY(open != locked);
    QCOMPARE(locked.pixelColor(90, 14),
             CUiResource::getColor(QStringLiteral("clr_panel_disabled")));
    m_edit->setEnabled(true);
    m_edit->setReadOnly(true);
    QCOMPARE(m_edit->grab().toImage().pixelColor(90, 14),
             CUiResource::getColor(QStringLiteral("clr_panel_disabled")));
}

void KitEditorsTest::withoutInputTheBeginningIsShown()
{
    const QString name = QStringLiteral("国际联合远洋商品期货经纪有限责任公司").repeated(3);
    m_edit->setText(name);
    m_box->setEditText(name);
    // What can be typed into goes on at its end.
    QCOMPARE(m_edit->cursorPosition(), name.size());
    QCOMPARE(m_box->lineEdit()->cursorPosition(), name.size());
    m_edit->setReadOnly(true);
    m_box->setEnabled(false);
    QCOMPARE(m_edit->cursorPosition(), 0);
    QCOMPARE(m_box->lineEdit()->cursorPosition(), 0);
    m_edit->setText(name + name.left(2));
    m_box->setEditText(name + name.left(2));
    QCOMPARE(m_edit->cursorPosition(), 0);
    QCOMPARE(m_box->lineEdit()->cursorPosition(), 0);
    QCOMPARE(m_window->records.size(), 0);
}

void KitEditorsTest::aTextThatIsCutOffHasAToolTip()
{
    const auto tipOf = [](QLineEdit* editor) {
        QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), editor->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(editor, &event);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        [&] { QTRY_VERIFY(!QToolTip::isVisible()); }();
        return text;
    };
    for (QLineEdit* const editor : {static_cast<QLineEdit*>(m_edit), m_box->lineEdit()}) {
        editor->setText(QStringLiteral("短"));
        QCOMPARE(tipOf(editor), QString());
        const QString name = QStringLiteral("<b>很长的名字</b>").repeated(8);
        editor->setText(name);
        QCOMPARE(tipOf(editor),
                 QString(QStringLiteral("<qt>") + name.toHtmlEscaped() + QStringLiteral("</qt>")));
        editor->setEchoMode(QLineEdit::Password);
        QCOMPARE(tipOf(editor), QString());
    }
}

void KitEditorsTest::theListBeginsWhereTheTextDoes()
{
    m_box->addItem(QStringLiteral("I"));
    m_box->setEditText(QStringLiteral("I"));
    m_box->showPopup();
    QWidget* const list = m_box->view()->parentWidget();
    const auto firstInk = [](QWidget* widget, const QRect& room) {
        const QImage image = widget->grab(room).toImage();
        const QColor ground = image.pixelColor(0, image.height() / 2);
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y) != ground)
                    return room.left() + x;
            }
        }
        return -1;
    };
    const int height = m_box->height();
    const int inBox = firstInk(m_box, QRect(3, 6, 24, height - 12));
    const int inList = firstInk(list, QRect(3, 6, 24, height - 12));
    QVERIFY(inBox > 3);
    QCOMPARE(inList, inBox);
    m_box->hidePopup();
}

void KitEditorsTest::theClearButtonFollowsTheTheme()
{
    m_edit->setClearButtonEnabled(true);
    m_edit->setText(QStringLiteral("lin"));
    const auto* const button = m_edit->findChild<QToolButton*>();
    for (const auto theme : {CUiResource::Theme::Dark, CUiResource::Theme::Light}) {
        CUiResource::setTheme(theme);
        QCOMPARE(button->icon().pixmap(16).toImage(),
                 CUiResource::getIcon(QStringLiteral("gw_img_kit_close")).pixmap(16).toImage());
    }
}

int main(int argc, char** argv)
{
    return runTest<KitEditorsTest>(argc, argv);
}

#include "KitEditorsTest.moc"
