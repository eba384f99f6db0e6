#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>

#include <climits>

namespace {

constexpr int manyAccounts = 40;

/// The dialog over enough accounts and sub-users that nothing fits at once.
struct CrowdedDialog : DialogUnderTest
{
    CrowdedDialog()
    {
        nameFirms(services);
        for (int number = 0; number < manyAccounts; ++number) {
            const auto account = services.user.addAccount(
                1, 1, "9000", std::to_string(600000000 + number),
                number % 3 == 0 ? mbservice::AUTH_TYPE_GRANTED_TO_OTHER
                                : (number % 3 == 1 ? mbservice::AUTH_TYPE_NOT_GRANTED
                                                   : mbservice::AUTH_TYPE_GRANTED_TO_ME));
            if (number % 3 != 1) {
                services.grant(account, QStringLiteral("sub07"), QDate(2026, 1, 2),
                               QDate(2026, 12, 31));
            }
            const QString user = QStringLiteral("sub%1").arg(number, 2, 10, QLatin1Char('0'));
            services.client.subUsers.append(user);
            services.client.activeSubUsers.insert(user);
        }
        dialog.setNavigatorFiller(GW::fillNavigator);
    }

    QString keyOf(int number) const { return services.user.accounts.at(number)->key(); }
};

/// A widget's part of the dialog.
QRect placeOf(const QWidget* widget)
{
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

QString nameOf(const QWidget* widget)
{
    const QRect place = placeOf(widget);
    return QStringLiteral("%1 \"%2\" at %3,%4 %5x%6")
        .arg(QString::fromLatin1(widget->metaObject()->className()), widget->accessibleName())
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height());
}

bool isControl(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QProgressBar*>(widget) || qobject_cast<const QTabBar*>(widget) ||
           qobject_cast<const QTreeWidget*>(widget) ||
           qobject_cast<const KZ::CSimpleTextWidget*>(widget) ||
           qobject_cast<const KZ::COddEvenRowTable*>(widget);
}

/// The visible controls that are no part of another one, such as the editor inside a box.
QVector<QWidget*> visibleControls(const QWidget* root)
{
    QVector<QWidget*> controls;
    const QList<QWidget*> widgets = root->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        bool outermost = widget->isVisible() && widget->window() == root && isControl(widget);
        for (const QWidget* above = widget->parentWidget(); outermost && above != root;
             above = above->parentWidget())
            outermost = !isControl(above);
        if (outermost)
            controls.append(widget);
    }
    return controls;
}

/// What of a control's own text or content cannot be seen, empty when all can.
QString cutOf(QWidget* widget)
{
    const QSize least = widget->minimumSizeHint();
    if (const auto* text = qobject_cast<KZ::CSimpleTextWidget*>(widget)) {
        if (text->shownText() != text->text() || text->height() < text->sizeHint().height())
            return QStringLiteral("text");
    } else if (auto* bar = qobject_cast<QTabBar*>(widget)) {
        if (bar->sizeHint().width() > bar->width() || bar->sizeHint().height() > bar->height())
            return QStringLiteral("tabs");
    } else if (!qobject_cast<QTreeWidget*>(widget) && !qobject_cast<QProgressBar*>(widget)) {
        if (widget->width() < least.width() || widget->height() < least.height())
            return QStringLiteral("content");
    }
    return {};
}

/// Everything wrong with what the dialog shows.
QStringList faultsOf(const QWidget* dialog)
{
    QStringList faults;
    const QVector<QWidget*> controls = visibleControls(dialog);
    for (int index = 0; index < controls.size(); ++index) {
        QWidget* widget = controls.at(index);
        for (const QWidget* above = widget->parentWidget();; above = above->parentWidget()) {
            if (!placeOf(above).contains(placeOf(widget)))
                faults.append(nameOf(widget) + QStringLiteral(" leaves ") + nameOf(above));
            if (above == dialog)
                break;
        }
        for (int other = index + 1; other < controls.size(); ++other) {
            if (placeOf(widget).intersects(placeOf(controls.at(other))))
                faults.append(nameOf(widget) + QStringLiteral(" meets ") +
                              nameOf(controls.at(other)));
        }
        const QString cut = cutOf(widget);
        if (!cut.isEmpty())
            faults.append(nameOf(widget) + QStringLiteral(" cuts its ") + cut);
    }
    return faults;
}

/// Whether the last row and the last column can be brought into sight.
QString unreachable(KZ::COddEvenRowTable* table)
{
    QTableView* view = table->view();
    const QAbstractItemModel* model = view->model();
    if (view->viewport()->height() < 2 * view->verticalHeader()->defaultSectionSize())
        return QStringLiteral("fewer than two rows at once");
    const QModelIndex last = model->index(model->rowCount() - 1, model->columnCount() - 1);
    view->scrollTo(last);
    if (last.isValid() && !view->viewport()->rect().contains(view->visualRect(last)))
        return QStringLiteral("the last cell");
    const QHeaderView* header = view->horizontalHeader();
    const int padding = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    for (int column = 0; column < model->columnCount(); ++column) {
        const QString title = model->headerData(column, Qt::Horizontal).toString();
        if (header->sectionSize(column) <
            header->fontMetrics().horizontalAdvance(title) + 2 * padding)
            return QStringLiteral("the title ") + title;
        for (int row = 0; row < model->rowCount(); ++row) {
            const QString text = model->index(row, column).data().toString();
            if (header->sectionSize(column) <
                view->fontMetrics().horizontalAdvance(text) + 2 * padding)
                return QStringLiteral("the text ") + text;
        }
    }
    view->scrollTo(model->index(0, 0));
    return {};
}

} // namespace

/// On a screen of 910 by 512: a usual small notebook, enlarged to one and a half.
class SmallScreenTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPageIsWhole_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<int>("account");
        QTest::addColumn<int>("tab");
        QTest::newRow("overview") << 201 << INT_MAX << -1 << 0;
        QTest::newRow("batch") << 201 << INT_MAX << -1 << 1;
        QTest::newRow("free account") << 201 << 20101 << 1 << 0;
        QTest::newRow("granted account") << 201 << 20101 << 0 << 0;
        QTest::newRow("import") << 202 << INT_MAX << -1 << 0;
        QTest::newRow("received account") << 202 << 20201 << 2 << 0;
        QTest::newRow("sub-users") << 203 << INT_MAX << -1 << 0;
        QTest::newRow("sub-user") << 203 << 20401 << -2 << 0;
    }

    void everyPageIsWhole()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(int, account);
        QFETCH(int, tab);
        CrowdedDialog test;
        QString key;
        if (account == -2)
            key = QStringLiteral("sub07");
        else if (account >= 0)
            key = test.keyOf(account);
        bool looked = false;
        QTimer::singleShot(0, &test.dialog, [&] {
            look(test);
            looked = true;
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(page, subPage, key, tab);
        QVERIFY(looked);
    }

private:
    void look(CrowdedDialog& test)
    {
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QTRY_VERIFY2(available.contains(test.dialog.frameGeometry()), "outside of the screen");
        QCOMPARE(faultsOf(&test.dialog).join(u'\n'), QString());
        const auto tables = test.dialog.findChildren<KZ::COddEvenRowTable*>();
        int shown = 0;
        for (KZ::COddEvenRowTable* table : tables) {
            if (!table->isVisible())
                continue;
            ++shown;
            QCOMPARE(unreachable(table), QString());
            if (table->rowCount() > 1)
                QVERIFY(table->view()->verticalScrollBar()->maximum() > 0);
        }
        QCOMPARE(shown, 1);
        QVERIFY(test.navigator()->verticalScrollBar()->maximum() > 0);
        // The bottom bar at its fullest.
        test.dialog.handleEvent(GW::EVENT_SET_WAITING, 0, 1, QString(), nullptr);
        test.dialog.handleEvent(GW::EVENT_SHOW_PROGRESS, 9999, 10000, QString(), nullptr);
        QCOMPARE(faultsOf(&test.dialog).join(u'\n'), QString());
        test.dialog.handleEvent(GW::EVENT_SET_WAITING, 0, 0, QString(), nullptr);
    }
};

int main(int argc, char** argv)
{
    return runTest<SmallScreenTest>(argc, argv);
}

#include "SmallScreenTest.moc"
