#include "kit/widgets/WidgetList.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/SizeFollower.h"
#include "tests/support/TestCase.h"

using namespace KZ;

class WidgetListTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFormRowStandsPackedAtItsBeginning();
    void editorsAlignAcrossRows();
    void sizesThatSomebodyChoseAreKept();
    void aTextTakesPartWithItsNewSize();
    void rowsFillTheColumnAndButtonsDoNot();
    void stretchWidgetsShareWhatIsLeft();
    void theAnchorHoldsAnEdge_data();
    void theAnchorHoldsAnEdge();
    void hiddenWidgetsTakeNoRoom();
    void spacesSeparate();
    void aStretchPushesToTheEnd();
    void aDeletedWidgetLeavesNoHole();
    void marginsAndSpacingBelongToTheHint();
    void aNarrowRowElidesItsText();
    void lengthsByKeyFollowTheSetOfSizes();
};

void WidgetListTest::aFormRowStandsPackedAtItsBeginning()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const caption = new CSimpleTextWidget(QStringLiteral("被授权人"), &row);
    auto* const box = new CComboBox(0, &row);
    box->resize(180, box->height());
    row.addFixWidget(caption);
    row.addFixWidget(box);
    row.resize(900, 30);
    row.show();
    QCOMPARE(caption->x(), 0);
    QCOMPARE(box->x(),
             caption->width() + CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space")));
    QCOMPARE(box->size(), QSize(180, 28));
    QCOMPARE(box->y(), 1);
    QVERIFY(qAbs(caption->geometry().center().y() - box->geometry().center().y()) <= 1);
}

void WidgetListTest::editorsAlignAcrossRows()
{
    CWidgetList column(Qt::Vertical, nullptr);
    column.setMargin(8, 8, 8, 8);
    QVector<QWidget*> editors;
    for (const QString& text :
         {QStringLiteral("交易平台"), QStringLiteral("账　　号"), QStringLiteral("起始时间")}) {
        auto* const row = new CWidgetList(Qt::Horizontal, &column);
        row->setFixedHeight(30);
        row->addFixWidget(new CSimpleTextWidget(text, row));
        editors.append(new CLineEdit(0, row));
        row->addFixWidget(editors.last());
        column.addFixWidget(row);
    }
    column.resize(600, 400);
    column.show();
    for (const QWidget* editor : editors)
        QCOMPARE(editor->mapTo(&column, QPoint()).x(),
                 editors.first()->mapTo(&column, QPoint()).x());
    QCOMPARE(editors.at(1)->mapTo(&column, QPoint()).y() -
                 editors.at(0)->mapTo(&column, QPoint()).y(),
             38);
}

void WidgetListTest::sizesThatSomebodyChoseAreKept()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const resized = new CMediumNormalButton(0, &row);
    resized->resize(104, 24);
    auto* const bounded = new CLineEdit(0, &row);
    bounded->setFixedWidth(77);
    row.addFixWidget(resized);
    row.addFixWidget(bounded);
    row.resize(700, 40);
    row.show();
    QCOMPARE(resized->size(), QSize(104, 24));
    QCOMPARE(resized->y(), 8);
    QCOMPARE(bounded->width(), 77);
    QCOMPARE(bounded->height(), 28);
}

void WidgetListTest::aTextTakesPartWithItsNewSize()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const state = new CSimpleTextWidget(QStringLiteral("未授权"), &row);
    auto* const after = new CLineEdit(0, &row);
    row.addFixWidget(state);
    row.addFixWidget(after);
    row.resize(700, 30);
    row.show();
    const int before = after->x();
    state->setText(QStringLiteral("已授权给别的用户"));
    QTRY_VERIFY(after->x() > before);
    QCOMPARE(state->width(), state->fontMetrics().horizontalAdvance(state->text()));
}

void WidgetListTest::rowsFillTheColumnAndButtonsDoNot()
{
    CWidgetList column(Qt::Vertical, nullptr);
    auto* const row = new CWidgetList(Qt::Horizontal, &column);
    row->setFixedHeight(30);
    auto* const sized = new CWidgetList(Qt::Horizontal, &column);
    sized->resize(sized->width(), 40);
    auto* const button = new CMediumNormalButton(0, &column);
    button->resize(104, 30);
    for (QWidget* widget :
         {static_cast<QWidget*>(row), static_cast<QWidget*>(sized), static_cast<QWidget*>(button)})
        column.addFixWidget(widget);
    column.resize(500, 300);
    column.show();
    QCOMPARE(row->size(), QSize(500, 30));
    QCOMPARE(sized->size(), QSize(500, 40));
    QCOMPARE(button->geometry(), QRect(0, 86, 104, 30));
}

void WidgetListTest::stretchWidgetsShareWhatIsLeft()
{
    CWidgetList column(Qt::Vertical, nullptr);
    column.setSpacing(0);
    auto* const head = new QWidget(&column);
    head->resize(10, 40);
    auto* const one = new QWidget(&column);
    auto* const two = new QWidget(&column);
    column.addFixWidget(head);
    column.addStretchWidget(one, 1);
    column.addStretchWidget(two, 3);
    column.resize(100, 440);
    column.show();
    QCOMPARE(head->height(), 40);
    QCOMPARE(one->geometry(), QRect(0, 40, 100, 100));
    QCOMPARE(two->geometry(), QRect(0, 140, 100, 300));
}

void WidgetListTest::theAnchorHoldsAnEdge_data()
{
    QTest::addColumn<int>("anchor");
    QTest::addColumn<QRect>("place");
    QTest::newRow("leading") << 1 << QRect(0, 0, 60, 200);
    QTest::newRow("trailing") << 2 << QRect(140, 0, 60, 200);
    QTest::newRow("both") << 3 << QRect(0, 0, 200, 200);
    QTest::newRow("centred") << 0 << QRect(70, 0, 60, 200);
}

void WidgetListTest::theAnchorHoldsAnEdge()
{
    class Hinted : public QWidget
    {
    public:
        using QWidget::QWidget;
        QSize sizeHint() const override { return {60, 20}; }
    };
    QFETCH(int, anchor);
    QFETCH(QRect, place);
    CWidgetList column(Qt::Vertical, nullptr);
    auto* const widget = new Hinted(&column);
    column.addStretchWidget(widget, 1, anchor, false);
    column.resize(200, 200);
    column.show();
    QCOMPARE(widget->geometry(), place);
}

void WidgetListTest::hiddenWidgetsTakeNoRoom()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const first = new CLineEdit(0, &row);
    first->hide();
    auto* const second = new CLineEdit(1, &row);
    auto* const third = new QWidget(&row);
    row.addFixWidget(first);
    row.addFixWidget(second);
    row.addStretchWidget(third, 1, 3, true);
    row.resize(700, 30);
    row.show();
    QVERIFY(!first->isVisible());
    QVERIFY(!third->isVisible());
    QCOMPARE(second->x(), 0);
    first->show();
    QTRY_VERIFY(second->x() > first->width());
}

void WidgetListTest::spacesSeparate()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    row.setSpacing(5);
    auto* const first = new CLineEdit(0, &row);
    auto* const second = new CLineEdit(1, &row);
    row.addFixWidget(first);
    row.addFixSpace(40);
    row.addFixWidget(second);
    row.resize(700, 30);
    row.show();
    QCOMPARE(second->x() - first->geometry().right() - 1, 45);
}

void WidgetListTest::aStretchPushesToTheEnd()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const first = new CLineEdit(0, &row);
    auto* const last = new CMediumNormalButton(0, &row);
    row.addFixWidget(first);
    row.addStretch();
    row.addFixWidget(last);
    row.resize(700, 30);
    row.show();
    QCOMPARE(first->x(), 0);
    QCOMPARE(last->geometry().right(), 699);
}

void WidgetListTest::aDeletedWidgetLeavesNoHole()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const first = new CLineEdit(0, &row);
    auto* const second = new CLineEdit(1, &row);
    row.addFixWidget(first);
    row.addFixWidget(second);
    row.resize(700, 30);
    row.show();
    delete first;
    QTRY_COMPARE(second->x(), 0);
}

void WidgetListTest::marginsAndSpacingBelongToTheHint()
{
    CWidgetList column(Qt::Vertical, nullptr);
    column.setMargin(1, 2, 3, 4);
    column.setSpacing(10);
    for (int i = 0; i < 3; ++i) {
        auto* const row = new CWidgetList(Qt::Horizontal, &column);
        row->setFixedHeight(30);
        column.addFixWidget(row);
    }
    QCOMPARE(column.sizeHint().height(), 3 * 30 + 2 * 10 + 2 + 4);
    QCOMPARE(column.minimumSizeHint().height(), 3 * 30 + 2 * 10 + 2 + 4);
}

void WidgetListTest::aNarrowRowElidesItsText()
{
    CWidgetList row(Qt::Horizontal, nullptr);
    auto* const text = new CSimpleTextWidget(QString(60, QChar(u'长')), &row);
    auto* const edit = new CLineEdit(0, &row);
    row.addFixWidget(text);
    row.addFixWidget(edit);
    row.resize(400, 30);
    row.show();
    QCOMPARE(edit->geometry().right(), 399);
    QVERIFY(text->geometry().right() < edit->x());
    QVERIFY(text->shownText() != text->text());
}

void WidgetListTest::lengthsByKeyFollowTheSetOfSizes()
{
    const QString spacing = QStringLiteral("gw_siz_setting_margin");
    const QString space = QStringLiteral("gw_siz_auth_setting_single_account_row_inner_space");
    const QString width = QStringLiteral("gw_siz_setting_accounts_editor_width");
    const QString height = QStringLiteral("gw_siz_auth_setting_accounts_authorize_row_height");
    CWidgetList row(Qt::Horizontal, nullptr);
    row.setSpacingKey(spacing);
    auto* const editor = new CLineEdit(0, &row);
    auto* const button = new CMediumNormalButton(0, &row);
    CSizeFollower::follow(editor, width);
    CSizeFollower::follow(button, width, height);
    row.addFixWidget(editor);
    row.addFixSpace(space);
    row.addFixWidget(button);
    row.resize(900, 40);
    row.show();
    const auto verifyPlaces = [&] {
        const auto size = [](const QString& key) { return CUiResource::getSize(key); };
        QTRY_COMPARE(button->size(), QSize(size(width), size(height)));
        QTRY_COMPARE(editor->width(), size(width));
        QCOMPARE(editor->height(), editor->sizeHint().height());
        QTRY_COMPARE(button->x() - editor->geometry().right() - 1, size(spacing) + size(space));
    };
    verifyPlaces();
    const QSize standard = button->size();
    CUiResource::setSizeSet(CUiResource::SizeSet::Compact);
    verifyPlaces();
    QVERIFY(button->size() != standard);
    CUiResource::setSizeSet(CUiResource::SizeSet::Standard);
    verifyPlaces();
    QCOMPARE(button->size(), standard);
}

int main(int argc, char** argv)
{
    return runTest<WidgetListTest>(argc, argv);
}

#include "WidgetListTest.moc"
