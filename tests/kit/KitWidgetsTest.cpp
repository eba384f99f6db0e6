#include "kit/resources/UiResource.h"
#include "kit/widgets/BaseWidget.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTreeWidget>

using namespace KZ;

namespace {

class Panel : public CBaseWidget
{
public:
    using CBaseWidget::CBaseWidget;
    void onActive() override
    {
        ++activations;
        delete doomed;
    }

    int activations = 0;
    QPointer<QWidget> doomed;
};

} // namespace

class KitWidgetsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theStretchWidgetFillsAllButTheMargins();
    void theFixWidgetKeepsItsSizeInTheMiddle();
    void aHiddenInnerWidgetStaysHidden();
    void theHintsFollowTheInnerWidget();
    void theInnerWidgetMayDie();
    void activeIsToldRecursivelyOnlyWhenAsked();
    void anActivationMayDeleteItsSiblings();
    void theMaskIsTheWholeWidget();
    void foreignChildrenGetTheKitsStyle();
    void aTextHasExactlyItsSize();
    void aLongTextEndsInAnEllipsis();
    void markupIsShownAsItIs();
    void aTextColorComesFromTheRegistry();
    void captionsNameTheirEditors();
    void rootWidgetsFollowTheTheme();
    void aBusyBarMoves();
    void aScrollBarHasTheGroundOfItsView();
};

void KitWidgetsTest::cleanup()
{
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

void KitWidgetsTest::theStretchWidgetFillsAllButTheMargins()
{
    CBaseWidget outer(nullptr);
    outer.resize(200, 100);
    QWidget inner;
    outer.setInnerStretchWidget(&inner, 1, 2, 3, 4);
    QCOMPARE(inner.parentWidget(), &outer);
    QCOMPARE(inner.geometry(), QRect(1, 2, 196, 94));
    outer.show();
    QVERIFY(inner.isVisible());
    outer.resize(300, 150);
    QCOMPARE(inner.geometry(), QRect(1, 2, 296, 144));
    inner.setParent(nullptr);
}

void KitWidgetsTest::theFixWidgetKeepsItsSizeInTheMiddle()
{
    CBaseWidget outer(nullptr);
    auto* const button = new CSmallNormalButton(0, &outer);
    button->resize(72, 22);
    outer.setInnerFixWidget(button);
    outer.resize(172, 42);
    outer.show();
    QCOMPARE(button->geometry(), QRect(50, 10, 72, 22));
    outer.resize(92, 62);
    QCOMPARE(button->geometry(), QRect(10, 20, 72, 22));
    QCOMPARE(outer.minimumSizeHint(), QSize(72, 22));
}

void KitWidgetsTest::aHiddenInnerWidgetStaysHidden()
{
    CBaseWidget outer(nullptr);
    auto* const button = new CSmallNormalButton(0, &outer);
    button->hide();
    outer.setInnerFixWidget(button);
    outer.show();
    QVERIFY(!button->isVisible());
    button->show();
    QVERIFY(button->isVisible());
}

void KitWidgetsTest::theHintsFollowTheInnerWidget()
{
    CBaseWidget outer(nullptr);
    auto* const edit = new CLineEdit(1, &outer);
    outer.setInnerStretchWidget(edit, 5, 6, 7, 8);
    QCOMPARE(outer.sizeHint(), edit->sizeHint() + QSize(12, 14));
    QCOMPARE(outer.minimumSizeHint(), edit->minimumSizeHint() + QSize(12, 14));
}

void KitWidgetsTest::theInnerWidgetMayDie()
{
    CBaseWidget outer(nullptr);
    auto* const inner = new QWidget(&outer);
    outer.setInnerStretchWidget(inner, 0, 0, 0, 0);
    delete inner;
    outer.resize(50, 50);
    QVERIFY(!outer.grab().isNull());
    outer.setInnerStretchWidget(nullptr, 0, 0, 0, 0);
    QVERIFY(outer.findChildren<QWidget*>().isEmpty());
}

void KitWidgetsTest::activeIsToldRecursivelyOnlyWhenAsked()
{
    Panel top(nullptr);
    QStackedWidget between(&top);
    Panel below(&between);
    top.setActive(true, false);
    QCOMPARE(top.activations, 1);
    QCOMPARE(below.activations, 0);
    top.setActive(true, true);
    QCOMPARE(top.activations, 2);
    QCOMPARE(below.activations, 1);
    QVERIFY(below.isActive());
    top.setActive(false, true);
    QCOMPARE(top.activations, 2);
    QVERIFY(!top.isActive());
    QVERIFY(!below.isActive());
}

void KitWidgetsTest::anActivationMayDeleteItsSiblings()
{
    Panel top(nullptr);
    auto* const first = new Panel(&top);
    const QPointer<Panel> second(new Panel(&top));
    first->doomed = second;
    top.setActive(true, true);
    QVERIFY(!second);
    QCOMPARE(first->activations, 1);
}

void KitWidgetsTest::theMaskIsTheWholeWidget()
{
    CBaseWidget widget(nullptr);
    widget.resize(30, 20);
    QCOMPARE(widget.getMaskRect(), QRect(0, 0, 30, 20));
}

void KitWidgetsTest::foreignChildrenGetTheKitsStyle()
{
    CBaseWidget outer(nullptr);
    QTreeWidget tree(&outer);
    outer.show();
    QCOMPARE(tree.style()->metaObject()->className(), outer.style()->metaObject()->className());
    QCOMPARE(tree.verticalScrollBar()->style(), tree.style());
    QVERIFY(tree.style() != QApplication::style());
}

void KitWidgetsTest::aTextHasExactlyItsSize()
{
    EventRecorder window;
    CSimpleTextWidget text(QStringLiteral("向服务器确认中……"), &window);
    QCOMPARE(text.size(), text.sizeHint());
    QCOMPARE(text.width(), text.fontMetrics().horizontalAdvance(text.text()));
    QCOMPARE(text.height(), text.fontMetrics().height());
    text.setText(QStringLiteral("未授权"), 100000);
    QCOMPARE(text.width(), text.fontMetrics().horizontalAdvance(QStringLiteral("未授权")));
    text.setText(QString());
    QCOMPARE(text.width(), 0);
    QCOMPARE(text.accessibleName(), QString());
}

void KitWidgetsTest::aLongTextEndsInAnEllipsis()
{
    EventRecorder window;
    CSimpleTextWidget text(QString(), &window);
    const QString whole(200, QChar(u'长'));
    text.setText(whole, 120);
    QCOMPARE(text.width(), 120);
    QVERIFY(text.shownText().endsWith(QChar(0x2026)));
    QCOMPARE(text.text(), whole);
    QCOMPARE(text.accessibleName(), whole);
    text.setText(whole);
    QCOMPARE(text.shownText(), whole);
}

void KitWidgetsTest::markupIsShownAsItIs()
{
    EventRecorder window;
    window.resize(300, 60);
    CSimpleTextWidget text(QStringLiteral("<b>x</b>"), &window);
    QCOMPARE(text.shownText(), QStringLiteral("<b>x</b>"));
    QCOMPARE(text.width(), text.fontMetrics().horizontalAdvance(QStringLiteral("<b>x</b>")));
}

void KitWidgetsTest::aTextColorComesFromTheRegistry()
{
    CSimpleTextWidget text(QStringLiteral("已启用"), nullptr);
    text.setTextColorKey(QStringLiteral("clr_sub_user_enabled"));
    QCOMPARE(text.textColorKey(), QStringLiteral("clr_sub_user_enabled"));
    const auto hasColor = [&text](const char* key) {
        const QRgb wanted = CUiResource::getColor(QLatin1String(key)).rgb();
        const QImage image = text.grab().toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) == wanted)
                    return true;
            }
        }
        return false;
    };
    QVERIFY(hasColor("clr_sub_user_enabled"));
    QVERIFY(!hasColor("clr_sub_user_disabled"));
    text.setTextColorKey(QStringLiteral("clr_sub_user_disabled"));
    QVERIFY(hasColor("clr_sub_user_disabled"));
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(hasColor("clr_sub_user_disabled"));
}

void KitWidgetsTest::captionsNameTheirEditors()
{
    EventRecorder window;
    CSimpleTextWidget caption(QStringLiteral("密　　码"), &window);
    CLineEdit edit(1, &window);
    caption.setAccessibleTarget(&edit);
    QCOMPARE(edit.accessibleName(), QStringLiteral("密码"));
    caption.setText(QStringLiteral("证券公司"));
    QCOMPARE(edit.accessibleName(), QStringLiteral("证券公司"));
}

void KitWidgetsTest::rootWidgetsFollowTheTheme()
{
    CBaseWidget root(nullptr);
    CSimpleTextWidget text(QStringLiteral("文字"), &root);
    const QColor light = text.palette().color(QPalette::WindowText);
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(light != text.palette().color(QPalette::WindowText));
    QCOMPARE(text.palette().color(QPalette::WindowText),
             CUiResource::getColor(QStringLiteral("clr_text")));
    QCOMPARE(root.palette().color(QPalette::Window),
             CUiResource::getColor(QStringLiteral("clr_window")));
}

void KitWidgetsTest::aBusyBarMoves()
{
    CBaseWidget root(nullptr);
    root.resize(240, 40);
    QProgressBar bar(&root);
    bar.setRange(0, 0);
    bar.setGeometry(10, 10, 220, 6);
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));
    const QImage first = bar.grab().toImage();
    QTRY_VERIFY(first != bar.grab().toImage());
}

void KitWidgetsTest::aScrollBarHasTheGroundOfItsView()
{
    CBaseWidget window(nullptr);
    auto* const tree = new QTreeWidget(&window);
    for (int row = 0; row < 90; ++row)
        tree->addTopLevelItem(new QTreeWidgetItem({QString::number(row)}));
    tree->resize(120, 200);
    window.resize(200, 220);
    window.show();
    const auto colorAt = [tree](int fromRight, int fromBottom) {
        const QImage image = tree->grab().toImage();
        return image.pixelColor(image.width() - fromRight, image.height() - fromBottom);
    };
    const auto colorOf = [](const char* key) { return CUiResource::getColor(QLatin1String(key)); };
    const QScrollBar* const bar = tree->verticalScrollBar();
    QTRY_VERIFY(bar->isVisible());
    const int handle = tree->height() - 12;
    QCOMPARE(colorAt(6, 8), colorOf("clr_panel"));
    QCOMPARE(colorAt(6, handle), colorOf("clr_scroll_bar"));
    tree->setEnabled(false);
    QCOMPARE(colorAt(6, 8), colorOf("clr_panel_disabled"));
    QCOMPARE(colorAt(6, handle), colorOf("clr_border_disabled"));
}

int main(int argc, char** argv)
{
    return runTest<KitWidgetsTest>(argc, argv);
}

#include "KitWidgetsTest.moc"
