#include "authsetting/shell/DialogSizes.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TestCase.h"

#include <QScreen>

#include <climits>
#include <memory>
#include <utility>

using SizeSet = KZ::CUiResource::SizeSet;

namespace {

const QVector<std::pair<int, int>>& places()
{
    static const QVector<std::pair<int, int>> all{{201, INT_MAX}, {201, 20101},   {202, INT_MAX},
                                                  {202, 20201},   {203, INT_MAX}, {203, 20401}};
    return all;
}

/// Where the pages' widgets stand, one line each, as the user sees one page after the other.
QStringList geometries(DialogUnderTest& test)
{
    QStringList lines;
    for (const auto& [page, subPage] : places()) {
        test.dialog.showPage(page, subPage, QStringLiteral("key"), 0);
        const KZ::CStandardTabControl* tabs = test.dialog.shownPage()->tabControl();
        for (int tab = tabs->tabCount() - 1; tab >= 0; --tab) {
            test.dialog.shownPage()->tabControl()->activateTab(tab);
            QCoreApplication::processEvents();
            const QList<QWidget*> widgets = test.dialog.shownPage()->findChildren<QWidget*>();
            for (const QWidget* widget : widgets) {
                if (!widget->isVisible() || widget->isWindow())
                    continue;
                const QRect place = widget->geometry();
                lines.append(QStringLiteral("%1/%2 %3 %4,%5 %6x%7")
                                 .arg(page)
                                 .arg(tab)
                                 .arg(QString::fromLatin1(widget->metaObject()->className()))
                                 .arg(place.x())
                                 .arg(place.y())
                                 .arg(place.width())
                                 .arg(place.height()));
            }
        }
    }
    return lines;
}

/// Opens the dialog the way a host does and closes it again.
void openOnce(DialogUnderTest& test)
{
    QTimer::singleShot(0, &test.dialog, [&test] { test.dialog.close(); });
    GW::CAuthSettingDialog::showSettingPage(201);
}

} // namespace

/// The set of sizes for small screens: when it is chosen and who follows.
class CompactSizesTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        KZ::CUiResource::setSizeSet(SizeSet::Standard);
        TestCase::cleanup();
    }

    void theSetIsChosenByTheAvailableArea_data()
    {
        QTest::addColumn<QSize>("less");
        QTest::addColumn<bool>("compact");
        QTest::newRow("as large as the dialog") << QSize(0, 0) << false;
        QTest::newRow("narrower") << QSize(1, 0) << true;
        QTest::newRow("lower") << QSize(0, 1) << true;
        QTest::newRow("larger") << QSize(-500, -500) << false;
    }

    void theSetIsChosenByTheAvailableArea()
    {
        QFETCH(QSize, less);
        QFETCH(bool, compact);
        DialogUnderTest test;
        const QSize standard = GW::dialogSize(test.dialog, SizeSet::Standard);
        QCOMPARE(test.dialog.size(), standard);
        for (const SizeSet before : {SizeSet::Standard, SizeSet::Compact}) {
            KZ::CUiResource::setSizeSet(before);
            GW::fitDialog(&test.dialog, QRect(QPoint(100, 50), standard - less));
            QCOMPARE(KZ::CUiResource::sizeSet(), compact ? SizeSet::Compact : SizeSet::Standard);
        }
    }

    void theCompactDialogFitsTheSmallestScreenWithATaskBar()
    {
        DialogUnderTest test;
        const QSize size = GW::dialogSize(test.dialog, SizeSet::Compact);
        QVERIFY(size.width() <= 910);
        QVERIFY(size.height() <= 512 - 40);
    }

    void theEntriesFixTheSizeAnew_data()
    {
        QTest::addColumn<bool>("subPage");
        QTest::newRow("page") << false;
        QTest::newRow("sub-page") << true;
    }

    void theEntriesFixTheSizeAnew()
    {
        QFETCH(bool, subPage);
        DialogUnderTest test;
        // The platform's screen is smaller than the standard size.
        QVERIFY(QGuiApplication::primaryScreen()->availableSize().width() < test.dialog.width());
        QSize shown;
        QTimer::singleShot(0, &test.dialog, [&] {
            shown = test.dialog.size();
            test.dialog.close();
        });
        if (subPage)
            GW::CAuthSettingDialog::showSettingPage(203, 20401, QStringLiteral("key"), 0);
        else
            GW::CAuthSettingDialog::showSettingPage(201);
        QCOMPARE(shown, GW::dialogSize(test.dialog, SizeSet::Compact));
        QCOMPARE(test.dialog.minimumSize(), shown);
        QCOMPARE(test.dialog.maximumSize(), shown);
        QCOMPARE(test.closeButton()->geometry().right(),
                 shown.width() - 1 - test.dialog.borderWidth() -
                     KZ::CUiResource::getSize(QStringLiteral("gw_siz_setting_margin")));
    }

    void pagesBuiltBeforehandLookLikeThoseBuiltCompact()
    {
        QStringList followed;
        {
            DialogUnderTest test;
            test.dialog.show();
            geometries(test);
            test.dialog.close();
            openOnce(test);
            test.dialog.show();
            followed = geometries(test);
        }
        DialogUnderTest test;
        QCOMPARE(KZ::CUiResource::sizeSet(), SizeSet::Compact);
        test.dialog.show();
        const QStringList fresh = geometries(test);
        QVERIFY(fresh.size() > 100);
        QCOMPARE(followed, fresh);
    }

    void aDialogOutsideTheAreaIsPlacedAnew()
    {
        DialogUnderTest test;
        const QRect area(0, 0, 3000, 2000);
        test.dialog.move(100, 100);
        GW::fitDialog(&test.dialog, area);
        QVERIFY(test.dialog.testAttribute(Qt::WA_Moved));
        test.dialog.move(2500, 100);
        GW::fitDialog(&test.dialog, area);
        QVERIFY(!test.dialog.testAttribute(Qt::WA_Moved));
    }

    void theAreaIsThatOfTheParentsScreen()
    {
        QWidget window;
        QWidget child(&window);
        QCOMPARE(GW::availableArea(&child), window.screen()->availableGeometry());
        QCOMPARE(GW::availableArea(nullptr), QGuiApplication::primaryScreen()->availableGeometry());
    }
};

int main(int argc, char** argv)
{
    return runTest<CompactSizesTest>(argc, argv);
}

#include "CompactSizesTest.moc"
