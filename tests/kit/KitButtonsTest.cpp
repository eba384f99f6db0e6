#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/Menu.h"
#include "kit/widgets/PushButton.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QDialog>
#include <QPointer>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace KZ;

class KitButtonsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void aClickDeliversIdAndCommand();
    void withoutCommandItIsZero();
    void spaceAndEnterPressTheFocusedButton();
    void aDisabledButtonDeliversNothing();
    void aButtonIsNeverTheDefaultOfADialog();
    void aHandlerMayDeleteTheButton();
    void anIconMakesTheMainButton();
    void aDialogNamesItsMainButton();
    void theCheckedStateMayHaveItsOwnIcon();
    void sizesComeFromTheRegistryAndGrowWithTheText();
    void aTextThatDoesNotFitIsElided();
    void aSmallButtonHoldsTwoCharactersInFortyPixels();
    void theImageButtonIsNamedByItsToolTip();
    void eachStateLooksDifferent();
    void aCheckBoxDeliversTheUsersTicksOnly();
    void theIdOfACheckBoxMayChange();
    void aMenuFollowsTheTheme();
    void aMenuStandsOutFromWhatItCovers();
};

void KitButtonsTest::cleanup()
{
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

void KitButtonsTest::aClickDeliversIdAndCommand()
{
    EventRecorder window;
    CMediumNormalButton button(102, 1, &window);
    window.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(window.records.size(), 1);
    const EventRecorder::Record& record = window.records.first();
    QCOMPARE(record.id, int(EVENT_BUTTON_CLICKED));
    QCOMPARE(record.param1, 102);
    QCOMPARE(record.param2, 1);
    QCOMPARE(record.text, QString());
    QCOMPARE(record.data, static_cast<void*>(static_cast<QWidget*>(&button)));
    QTest::mouseClick(&button, Qt::RightButton);
    QCOMPARE(window.records.size(), 1);
}

void KitButtonsTest::withoutCommandItIsZero()
{
    EventRecorder window;
    CSmallNormalButton button(7, &window);
    QCOMPARE(button.id(), 7);
    QCOMPARE(button.command(), 0);
    button.click();
    QCOMPARE(window.records.first().param1, 7);
    QCOMPARE(window.records.first().param2, 0);
}

void KitButtonsTest::spaceAndEnterPressTheFocusedButton()
{
    EventRecorder window;
    CMediumNormalButton button(3, &window);
    window.show();
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Enter);
    QCOMPARE(window.count(EVENT_BUTTON_CLICKED), 3);
    QTest::keyClick(&button, Qt::Key_A);
    QCOMPARE(window.count(EVENT_BUTTON_CLICKED), 3);
}

void KitButtonsTest::aDisabledButtonDeliversNothing()
{
    EventRecorder window;
    CMediumNormalButton button(3, &window);
    button.setEnabled(false);
    window.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::keyClick(&button, Qt::Key_Return);
    QCOMPARE(window.records.size(), 0);
}

void KitButtonsTest::aButtonIsNeverTheDefaultOfADialog()
{
    QDialog dialog;
    CMediumNormalButton button(1, &dialog);
    dialog.show();
    QVERIFY(!button.autoDefault());
    QVERIFY(!button.isDefault());
    QSignalSpy clicks(&button, &QPushButton::clicked);
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(clicks.count(), 0);
}

void KitButtonsTest::aHandlerMayDeleteTheButton()
{
    class Killer : public EventRecorder
    {
    public:
        bool handleEvent(int, int, int, QString, void* data) override
        {
            delete static_cast<QWidget*>(data);
            return true;
        }
    };
    Killer window;
    const QPointer<CMediumNormalButton> button(new CMediumNormalButton(1, &window));
    window.show();
    QTest::mouseClick(button.data(), Qt::LeftButton);
    QVERIFY(!button);
}

void KitButtonsTest::anIconMakesTheMainButton()
{
    EventRecorder window;
    CMediumNormalButton button(1, &window);
    button.setText(QStringLiteral("授权"));
    button.resize(104, 30);
    const QColor accent = CUiResource::getColor(QStringLiteral("clr_accent"));
    const QColor plain = CUiResource::getColor(QStringLiteral("clr_button"));
    QCOMPARE(button.grab().toImage().pixelColor(8, 15), plain);
    const int narrow = button.sizeHint().width();
    button.setIcon(QStringLiteral("gw_img_auth_export"), 0, 6);
    QCOMPARE(button.iconKey(), QStringLiteral("gw_img_auth_export"));
    QCOMPARE(button.grab().toImage().pixelColor(8, 15), accent);
    QCOMPARE(button.sizeHint().width(), narrow + 16 + 6);
    button.clearIcon();
    QCOMPARE(button.grab().toImage().pixelColor(8, 15), plain);
    QCOMPARE(button.sizeHint().width(), narrow);
}

void KitButtonsTest::aDialogNamesItsMainButton()
{
    EventRecorder window;
    CMediumNormalButton button(1, &window);
    button.setText(QStringLiteral("确定"));
    const auto ground = [&button] { return button.grab().toImage().pixelColor(6, 6); };
    QCOMPARE(ground(), CUiResource::getColor(QStringLiteral("clr_button")));
    button.setPrimary(true);
    QCOMPARE(ground(), CUiResource::getColor(QStringLiteral("clr_accent")));
    button.setPrimary(false);
    QCOMPARE(ground(), CUiResource::getColor(QStringLiteral("clr_button")));
}

void KitButtonsTest::theCheckedStateMayHaveItsOwnIcon()
{
    EventRecorder window;
    CSmallNormalButton button(1, &window);
    button.setCheckable(true);
    button.setIcon(QStringLiteral("gw_img_kit_chevron_down"));
    button.setIcon(QStringLiteral("gw_img_kit_chevron_up"), 1);
    QCOMPARE(button.iconKey(0), QStringLiteral("gw_img_kit_chevron_down"));
    QCOMPARE(button.iconKey(1), QStringLiteral("gw_img_kit_chevron_up"));
}

void KitButtonsTest::sizesComeFromTheRegistryAndGrowWithTheText()
{
    EventRecorder window;
    CMediumNormalButton medium(1, &window);
    CSmallNormalButton low(2, &window);
    CPushButton image(3, &window);
    QCOMPARE(medium.height(), CUiResource::getSize(QStringLiteral("gw_siz_kit_button_height")));
    QCOMPARE(low.height(), CUiResource::getSize(QStringLiteral("gw_siz_kit_small_button_height")));
    image.setImageKey(QStringLiteral("gw_img_auth_subuser_enable"));
    QCOMPARE(image.width(), image.height());
    const int before = medium.sizeHint().width();
    medium.setText(QStringLiteral("取消授权"));
    QVERIFY(medium.sizeHint().width() >=
            before + medium.fontMetrics().horizontalAdvance(medium.text()));
}

void KitButtonsTest::aTextThatDoesNotFitIsElided()
{
    EventRecorder window;
    CMediumNormalButton button(1, &window);
    button.setText(QString(400, QChar(u'宽')));
    button.resize(80, 30);
    const QImage image = button.grab().toImage();
    // The rim stays free of the text.
    for (int y = 8; y < 22; ++y)
        QCOMPARE(image.pixelColor(1, y), CUiResource::getColor(QStringLiteral("clr_button")));
}

void KitButtonsTest::aSmallButtonHoldsTwoCharactersInFortyPixels()
{
    EventRecorder window;
    CSmallNormalButton button(100, &window);
    button.setText(QStringLiteral("禁用"));
    button.setTextFontKey(QStringLiteral("fnt_default_normal_fix"));
    QVERIFY(button.sizeHint().width() <= 40);
}

void KitButtonsTest::theImageButtonIsNamedByItsToolTip()
{
    EventRecorder window;
    CPushButton button(1, &window);
    button.setImageKey(QStringLiteral("gw_img_auth_subuser_disable"));
    button.setToolTip(QStringLiteral("禁用"));
    QCOMPARE(button.accessibleName(), QStringLiteral("禁用"));
    button.setToolTip(QStringLiteral("启用"));
    QCOMPARE(button.accessibleName(), QStringLiteral("启用"));
    button.setAccessibleName(QStringLiteral("状态"));
    button.setToolTip(QStringLiteral("禁用"));
    QCOMPARE(button.accessibleName(), QStringLiteral("状态"));
}

void KitButtonsTest::eachStateLooksDifferent()
{
    EventRecorder window;
    CMediumNormalButton button(1, &window);
    button.setText(QStringLiteral("授权"));
    QVector<QImage> pictures;
    for (const bool withIcon : {false, true}) {
        if (withIcon)
            button.setIcon(QStringLiteral("gw_img_auth_export"));
        button.resize(104, 30);
        for (const auto theme : {CUiResource::Theme::Dark, CUiResource::Theme::Light}) {
            CUiResource::setTheme(theme);
            pictures.append(button.grab().toImage());
            button.setDown(true);
            pictures.append(button.grab().toImage());
            button.setDown(false);
            button.setEnabled(false);
            pictures.append(button.grab().toImage());
            button.setEnabled(true);
        }
    }
    for (int i = 0; i < pictures.size(); ++i) {
        for (int j = i + 1; j < pictures.size(); ++j)
            QVERIFY2(pictures.at(i) != pictures.at(j),
                     qPrintable(QStringLiteral("%1 %2").arg(i).arg(j)));
    }
}

void KitButtonsTest::aCheckBoxDeliversTheUsersTicksOnly()
{
    EventRecorder window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const box = new CCheckBox(105, &window);
    layout->addWidget(box);
    window.show();
    box->setChecked(true);
    box->setChecked(false);
    box->toggle();
    QCOMPARE(window.records.size(), 0);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(window.records.size(), 2);
    QCOMPARE(window.records.at(0).id, int(EVENT_CHECK_TOGGLED));
    QCOMPARE(window.records.at(0).param1, 105);
    QCOMPARE(window.records.at(0).param2, 0);
    QCOMPARE(window.records.at(1).param2, 1);
    QCOMPARE(window.records.at(1).data, static_cast<void*>(static_cast<QWidget*>(box)));
    box->setEnabled(false);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    QCOMPARE(window.records.size(), 2);
}

void KitButtonsTest::theIdOfACheckBoxMayChange()
{
    EventRecorder window;
    CCheckBox box(1, &window);
    box.setId(2);
    QCOMPARE(box.id(), 2);
    box.click();
    QCOMPARE(window.records.first().param1, 2);
}

void KitButtonsTest::aMenuFollowsTheTheme()
{
    CMenu menu(nullptr);
    menu.addAction(QStringLiteral("文件授权"));
    menu.addAction(QStringLiteral("服务器授权"));
    menu.ensurePolished();
    const QImage light = menu.grab().toImage();
    CUiResource::setTheme(CUiResource::Theme::Dark);
    const QImage dark = menu.grab().toImage();
    QCOMPARE(dark.pixelColor(3, dark.height() - 8),
             CUiResource::getColor(QStringLiteral("clr_menu")));
    QVERIFY(light != dark);
    QVERIFY(menu.sizeHint().height() >=
            2 * CUiResource::getSize(QStringLiteral("gw_siz_kit_menu_item_height")));
}

void KitButtonsTest::aMenuStandsOutFromWhatItCovers()
{
    CMenu menu(nullptr);
    menu.addAction(QStringLiteral("文件授权"));
    for (const auto theme : {CUiResource::Theme::Dark, CUiResource::Theme::Light}) {
        CUiResource::setTheme(theme);
        menu.resize(menu.sizeHint());
        const QImage image = menu.grab().toImage();
        const QColor edge = CUiResource::getColor(QStringLiteral("clr_border_control"));
        QCOMPARE(image.pixelColor(0, image.height() / 2), edge);
        QCOMPARE(image.pixelColor(image.width() / 2, image.height() - 1), edge);
    }
}

int main(int argc, char** argv)
{
    return runTest<KitButtonsTest>(argc, argv);
}

#include "KitButtonsTest.moc"
