#include "kit/dialogs/BaseDialog.h"
#include "kit/resources/KitStyle.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/PushButton.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/PaintedWindow.h"
#include "tests/support/TestCase.h"

#include <QProgressBar>
#include <QScrollBar>

using namespace KZ;

/// What the style paints, measured on the picture: every part by which the user knows a control and
/// its state.
class PaintedContrastTest : public TestCase, private PaintedWindow
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void aProgressBar_data() { addThemes(); }
    void aProgressBar();
    void aBusyBar_data() { addThemes(); }
    void aBusyBar();
    void aCheckBox_data() { addThemes(); }
    void aCheckBox();
    void editors_data() { addThemes(); }
    void editors();
    void selectedTextInAnEditor_data() { addThemes(); }
    void selectedTextInAnEditor();
    void buttons_data() { addThemes(); }
    void buttons();
    void imageButtons_data() { addThemes(); }
    void imageButtons();
    void theFocus_data() { addThemes(); }
    void theFocus();
    void aScrollBar_data() { addThemes(); }
    void aScrollBar();
    void tips_data() { addThemes(); }
    void tips();
    void aDialogsFrame_data() { addThemes(); }
    void aDialogsFrame();

private:
    void focusByKeyboard(QWidget* widget)
    {
        widget->setFocus(Qt::TabFocusReason);
        m_window->setAttribute(Qt::WA_KeyboardFocusChange);
    }

    double ringOf(QWidget* widget)
    {
        widget->clearFocus();
        const QImage without = picture();
        focusByKeyboard(widget);
        const QImage with = picture();
        double most = 1;
        const QRect place = placeOf(widget);
        for (int x = place.left(); x < place.left() + 6; ++x)
            most = std::max(most, contrast::ratio(with.pixelColor(x, place.center().y()),
                                                  without.pixelColor(x, place.center().y())));
        return most;
    }
};

void PaintedContrastTest::cleanup()
{
    CMessageTip::closeAll();
    close();
    TestCase::cleanup();
}

void PaintedContrastTest::aProgressBar()
{
    open();
    QProgressBar bar(m_window.get());
    bar.setTextVisible(false);
    bar.setRange(0, 100);
    bar.setValue(50);
    bar.setGeometry(20, 20, 220, 6);
    applyKitStyle(&bar);
    show();
    const QImage image = picture();
    const QRect place = placeOf(&bar);
    const QColor done = image.pixelColor(place.left() + 50, place.center().y());
    const QColor open = image.pixelColor(place.right() - 50, place.center().y());
    VERIFY_CONTRAST(contrast::ratio(done, open));
    VERIFY_CONTRAST(contrast::ratio(done, color("clr_window")));
    // The groove ends where the user can see it.
    VERIFY_CONTRAST(contrast::strongest(image, QRect(place.right() - 50, place.top(), 1, 2),
                                        color("clr_window")));
    bar.setValue(0);
    VERIFY_CONTRAST(contrast::strongest(picture(), QRect(place.left() + 50, place.top(), 1, 2),
                                        color("clr_window")));
}

void PaintedContrastTest::aBusyBar()
{
    open();
    QProgressBar bar(m_window.get());
    bar.setTextVisible(false);
    bar.setRange(0, 0);
    bar.setGeometry(20, 20, 220, 6);
    applyKitStyle(&bar);
    show();
    const QRect middle(placeOf(&bar).left() + 2, placeOf(&bar).center().y(), 216, 1);
    QTRY_VERIFY(contrast::strongest(picture(), middle, color("clr_progress_track")) >=
                contrast::CONTROL);
}

void PaintedContrastTest::aCheckBox()
{
    open();
    CCheckBox box(1, m_window.get());
    box.setGeometry(20, 20, 16, 16);
    show();
    const QRect place = placeOf(&box);
    for (const bool hovered : {false, true}) {
        box.setAttribute(Qt::WA_UnderMouse, hovered);
        box.setChecked(false);
        VERIFY_CONTRAST(edge(place));
        box.setChecked(true);
        VERIFY_CONTRAST(edge(place));
        VERIFY_CONTRAST(marks(place.adjusted(3, 3, -3, -3), QPoint(0, 0)));
    }
    box.setTristate(true);
    box.setCheckState(Qt::PartiallyChecked);
    VERIFY_CONTRAST(marks(place.adjusted(3, 3, -3, -3), QPoint(0, 0)));
    // A locked tick still tells what is granted.
    box.setChecked(true);
    box.setEnabled(false);
    VERIFY_CONTRAST(edge(place));
    VERIFY_CONTRAST(marks(place.adjusted(3, 3, -3, -3), QPoint(0, 0)));
}

void PaintedContrastTest::editors()
{
    open();
    CLineEdit edit(1, m_window.get());
    edit.setGeometry(20, 20, 120, 28);
    CComboBox combo(2, m_window.get());
    combo.addItem(QString());
    combo.setGeometry(20, 60, 120, 28);
    CLineEdit readOnly(3, m_window.get());
    readOnly.setReadOnly(true);
    readOnly.setGeometry(20, 100, 120, 28);
    show();
    m_window->setFocus();
    for (QWidget* const editor : std::initializer_list<QWidget*>{&edit, &combo, &readOnly}) {
        editor->clearFocus();
        VERIFY_CONTRAST(edge(placeOf(editor)));
        editor->setAttribute(Qt::WA_UnderMouse);
        VERIFY_CONTRAST(edge(placeOf(editor)));
    }
    const QRect place = placeOf(&combo);
    VERIFY_CONTRAST(marks(QRect(place.right() - 24, place.top() + 4, 20, 20), QPoint(0, 0)));
}

void PaintedContrastTest::selectedTextInAnEditor()
{
    open();
    CLineEdit edit(1, m_window.get());
    edit.setGeometry(20, 20, 120, 28);
    edit.setText(QStringLiteral("　　　　"));
    show();
    edit.setFocus();
    edit.selectAll();
    const QPoint inside = placeOf(&edit).topLeft() + QPoint(30, 14);
    QTRY_VERIFY(picture().pixelColor(inside) != color("clr_panel"));
    VERIFY_CONTRAST(contrast::ratio(picture().pixelColor(inside), color("clr_panel")));
}

void PaintedContrastTest::buttons()
{
    open();
    QWidget panel(m_window.get());
    panel.setGeometry(0, 100, 400, 100);
    panel.setAutoFillBackground(true);
    panel.setBackgroundRole(QPalette::Base);
    for (QWidget* const ground : std::initializer_list<QWidget*>{m_window.get(), &panel}) {
        auto* const normal = new CMediumNormalButton(1, ground);
        normal->move(20, 20);
        auto* const small = new CSmallNormalButton(2, ground);
        small->move(140, 20);
        auto* const primary = new CMediumNormalButton(3, ground);
        primary->setPrimary(true);
        primary->move(260, 20);
    }
    show();
    const auto all = m_window->findChildren<CButton*>();
    QCOMPARE(all.size(), 6);
    for (CButton* const button : all) {
        VERIFY_CONTRAST(edge(placeOf(button)));
        button->setAttribute(Qt::WA_UnderMouse);
        VERIFY_CONTRAST(edge(placeOf(button)));
        button->setDown(true);
        VERIFY_CONTRAST(edge(placeOf(button)));
    }
}

void PaintedContrastTest::imageButtons()
{
    open();
    CPushButton button(1, m_window.get());
    button.setGeometry(20, 20, 28, 28);
    show();
    for (const char* const icon :
         {"gw_img_auth_subuser_disable", "gw_img_auth_subuser_enable", "gw_img_auth_export",
          "gw_img_kit_calendar", "gw_img_kit_keyboard"}) {
        button.setIcon(QLatin1String(icon));
        button.setDown(false);
        button.setAttribute(Qt::WA_UnderMouse, false);
        VERIFY_CONTRAST(marks(placeOf(&button), QPoint(14, 2)));
        button.setAttribute(Qt::WA_UnderMouse);
        VERIFY_CONTRAST(marks(placeOf(&button), QPoint(14, 2)));
        button.setDown(true);
        VERIFY_CONTRAST(marks(placeOf(&button), QPoint(14, 2)));
    }
}

void PaintedContrastTest::theFocus()
{
    open();
    CMediumNormalButton normal(1, m_window.get());
    normal.move(20, 20);
    CMediumNormalButton primary(2, m_window.get());
    primary.setPrimary(true);
    primary.move(140, 20);
    CCheckBox box(3, m_window.get());
    box.setText(QStringLiteral("全部"));
    box.setGeometry(20, 60, 80, 24);
    CLineEdit edit(4, m_window.get());
    edit.setGeometry(20, 100, 120, 28);
    show();
    VERIFY_CONTRAST(ringOf(&normal));
    VERIFY_CONTRAST(ringOf(&primary));
    // The ring of an editor is told by its width; what it adds stands beside the old edge.
    VERIFY_CONTRAST(ringOf(&edit));
    box.clearFocus();
    const QImage without = picture();
    focusByKeyboard(&box);
    const QImage with = picture();
    double most = 1;
    for (int x = 20; x < 100; ++x) {
        for (int y = 60; y < 84; ++y)
            most = std::max(most, contrast::ratio(with.pixelColor(x, y), without.pixelColor(x, y)));
    }
    VERIFY_CONTRAST(most);
}

void PaintedContrastTest::aScrollBar()
{
    open();
    QScrollBar bar(Qt::Vertical, m_window.get());
    bar.setRange(0, 100);
    bar.setPageStep(30);
    bar.setGeometry(20, 20, 12, 200);
    applyKitStyle(&bar);
    show();
    for (const char* const ground : {"clr_panel", "clr_menu", "clr_window"}) {
        QPalette palette = bar.palette();
        palette.setColor(QPalette::Base, color(ground));
        bar.setPalette(palette);
        for (const bool hovered : {false, true}) {
            bar.setAttribute(Qt::WA_UnderMouse, hovered);
            const QImage image = picture();
            const QPoint middle = placeOf(&bar).topLeft() + QPoint(6, 20);
            VERIFY_CONTRAST(contrast::ratio(image.pixelColor(middle),
                                            image.pixelColor(middle + QPoint(0, 150))));
        }
    }
}

void PaintedContrastTest::tips()
{
    open();
    show();
    for (const int kind : {1, 2, 3}) {
        CMessageTip::closeAll();
        CMessageTip::showTip(m_window.get(), 0x41, QStringLiteral("文字"), kind, 2, 0);
        CMessageTip* const tip = CMessageTip::visibleTips().constFirst();
        QTRY_VERIFY(tip->isVisible());
        const QImage image = tip->grab().toImage();
        const QColor ground = color("clr_menu");
        const int middle = image.height() / 2;
        // The stripe, the icon and the line around.
        VERIFY_CONTRAST(contrast::ratio(image.pixelColor(1, middle), ground));
        VERIFY_CONTRAST(contrast::strongest(image, QRect(8, middle - 8, 20, 16), ground));
        VERIFY_CONTRAST(
            contrast::strongest(image, QRect(image.width() - 3, middle - 2, 3, 1), ground));
        // The glyph that closes it.
        VERIFY_CONTRAST(
            contrast::strongest(image, QRect(image.width() - 28, middle - 8, 22, 16), ground));
    }
}

void PaintedContrastTest::aDialogsFrame()
{
    open();
    CBaseDialog dialog(m_window.get());
    dialog.setWindowTitle(QStringLiteral("标题"));
    dialog.resize(300, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QImage image = dialog.grab().toImage();
    VERIFY_CONTRAST(contrast::ratio(image.pixelColor(0, 120), image.pixelColor(20, 120)));
    // The glyph that closes the dialog.
    VERIFY_CONTRAST(
        contrast::strongest(image, QRect(image.width() - 30, 2, 28, 26), color("clr_title_bar")));
}

int main(int argc, char** argv)
{
    return runTest<PaintedContrastTest>(argc, argv);
}

#include "PaintedContrastTest.moc"
