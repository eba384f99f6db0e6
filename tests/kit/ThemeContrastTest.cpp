#include "kit/resources/UiResource.h"
#include "tests/kit/Contrast.h"
#include "tests/support/TestCase.h"

using namespace KZ;

namespace {

void addPairs(const char* use, const QStringList& inks, const QStringList& grounds, double least)
{
    for (const QString& ink : inks) {
        for (const QString& ground : grounds) {
            const QString name =
                QStringLiteral("%1: %2 on %3").arg(QLatin1String(use), ink, ground);
            QTest::newRow(qPrintable(name)) << ink << ground << least;
        }
    }
}

QStringList withPrefix(const char* prefix)
{
    QStringList found;
    const QStringList keys = CUiResource::keys();
    for (const QString& key : keys) {
        if (key.startsWith(QLatin1String(prefix)))
            found.append(key);
    }
    return found;
}

} // namespace

class ThemeContrastTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theRatioIsThatOfTheStandard();
    void inksStandOutFromTheirGrounds_data();
    void inksStandOutFromTheirGrounds();
    void everyStateColorIsTested();
};

void ThemeContrastTest::theRatioIsThatOfTheStandard()
{
    QVERIFY(std::abs(contrast::ratio(Qt::white, Qt::black) - 21.0) < 1e-9);
    QVERIFY(std::abs(contrast::ratio(QColor(0x77, 0x77, 0x77), Qt::white) - 4.48) < 0.01);
}

void ThemeContrastTest::inksStandOutFromTheirGrounds_data()
{
    QTest::addColumn<QString>("ink");
    QTest::addColumn<QString>("ground");
    QTest::addColumn<double>("least");
    const QStringList grounds{QStringLiteral("clr_window"), QStringLiteral("clr_panel")};
    const QStringList rows{QStringLiteral("clr_table_row_odd"),
                           QStringLiteral("clr_table_row_even"), QStringLiteral("clr_hover"),
                           QStringLiteral("clr_selection")};
    addPairs("texts",
             {QStringLiteral("clr_text"), QStringLiteral("clr_text_quiet"),
              QStringLiteral("clr_text_disabled"), QStringLiteral("clr_text_placeholder"),
              QStringLiteral("clr_accent_text"), QStringLiteral("clr_info"),
              QStringLiteral("clr_success"), QStringLiteral("clr_warning"),
              QStringLiteral("clr_danger"), QStringLiteral("clr_tab_text"),
              QStringLiteral("clr_tab_text_current")},
             grounds, contrast::TEXT);
    addPairs("rows",
             QStringList{QStringLiteral("clr_text")} + withPrefix("clr_auth_type_") +
                 withPrefix("clr_stock_") + withPrefix("clr_sub_user_"),
             rows, contrast::TEXT);
    addPairs("states on the page", withPrefix("clr_sub_user_") + withPrefix("clr_auth_type_"),
             grounds, contrast::TEXT);
    addPairs("main button", {QStringLiteral("clr_text_on_accent")},
             {QStringLiteral("clr_accent"), QStringLiteral("clr_accent_hover"),
              QStringLiteral("clr_accent_pressed")},
             contrast::TEXT);
    addPairs("buttons", {QStringLiteral("clr_text")},
             {QStringLiteral("clr_button"), QStringLiteral("clr_button_hover"),
              QStringLiteral("clr_button_pressed"), QStringLiteral("clr_menu")},
             contrast::TEXT);
    addPairs("without input", {QStringLiteral("clr_text_disabled")},
             {QStringLiteral("clr_button_disabled"), QStringLiteral("clr_panel_disabled"),
              QStringLiteral("clr_menu"), QStringLiteral("clr_hover"),
              QStringLiteral("clr_table_row_even")},
             contrast::TEXT);
    addPairs("calendar",
             {QStringLiteral("clr_calendar_weekend"), QStringLiteral("clr_text_quiet"),
              QStringLiteral("clr_accent_text")},
             {QStringLiteral("clr_menu")}, contrast::TEXT);
    addPairs("what pops up",
             {QStringLiteral("clr_border_control"), QStringLiteral("clr_outcome"),
              QStringLiteral("clr_warning"), QStringLiteral("clr_info")},
             {QStringLiteral("clr_menu"), QStringLiteral("clr_table_row_even")}, contrast::CONTROL);
    addPairs("frame", {QStringLiteral("clr_title_text")}, {QStringLiteral("clr_title_bar")},
             contrast::TEXT);
    addPairs("close", {QStringLiteral("clr_close_text")}, {QStringLiteral("clr_close_hover")},
             contrast::TEXT);
    addPairs("selection", {QStringLiteral("clr_selection_text")}, {QStringLiteral("clr_selection")},
             contrast::TEXT);
    addPairs("header", {QStringLiteral("clr_table_header_text")},
             {QStringLiteral("clr_table_header"), QStringLiteral("clr_hover")}, contrast::TEXT);
    addPairs("tool tip", {QStringLiteral("clr_tool_tip_text")}, {QStringLiteral("clr_tool_tip")},
             contrast::TEXT);
    addPairs("controls",
             {QStringLiteral("clr_border_control"), QStringLiteral("clr_border_hover"),
              QStringLiteral("clr_focus"), QStringLiteral("clr_accent"),
              QStringLiteral("clr_accent_hover"), QStringLiteral("clr_accent_pressed"),
              QStringLiteral("clr_icon"), QStringLiteral("clr_icon_quiet"),
              QStringLiteral("clr_scroll_bar"), QStringLiteral("clr_scroll_bar_hover"),
              QStringLiteral("clr_check_locked"), QStringLiteral("clr_progress"),
              QStringLiteral("clr_frame")},
             grounds, contrast::CONTROL);
    addPairs("controls in rows",
             {QStringLiteral("clr_border_control"), QStringLiteral("clr_check_locked"),
              QStringLiteral("clr_accent_text"), QStringLiteral("clr_focus"),
              QStringLiteral("clr_icon"), QStringLiteral("clr_warning")},
             rows, contrast::CONTROL);
    addPairs("handles", {QStringLiteral("clr_scroll_bar"), QStringLiteral("clr_scroll_bar_hover")},
             {QStringLiteral("clr_menu")}, contrast::CONTROL);
    addPairs("progress", {QStringLiteral("clr_progress")}, {QStringLiteral("clr_progress_track")},
             contrast::CONTROL);
    addPairs(
        "icons",
        {QStringLiteral("clr_icon"), QStringLiteral("clr_danger"), QStringLiteral("clr_success")},
        {QStringLiteral("clr_flat_hover"), QStringLiteral("clr_flat_pressed"),
         QStringLiteral("clr_table_header"), QStringLiteral("clr_title_bar"),
         QStringLiteral("clr_selection")},
        contrast::CONTROL);
    addPairs("selected text", {QStringLiteral("clr_text_on_accent")},
             {QStringLiteral("clr_accent")}, contrast::TEXT);
    addPairs("ticks", {QStringLiteral("clr_text_on_accent")}, {QStringLiteral("clr_check_locked")},
             contrast::CONTROL);
}

void ThemeContrastTest::inksStandOutFromTheirGrounds()
{
    QFETCH(QString, ink);
    QFETCH(QString, ground);
    QFETCH(double, least);
    QVERIFY2(CUiResource::hasKey(ink), qPrintable(ink));
    QVERIFY2(CUiResource::hasKey(ground), qPrintable(ground));
    for (const auto theme : {CUiResource::Theme::Dark, CUiResource::Theme::Light}) {
        CUiResource::setTheme(theme);
        const double ratio =
            contrast::ratio(CUiResource::getColor(ink), CUiResource::getColor(ground));
        const QString told = QStringLiteral("%1 in the %2 theme")
                                 .arg(ratio)
                                 .arg(theme == CUiResource::Theme::Dark ? QStringLiteral("dark")
                                                                        : QStringLiteral("light"));
        QVERIFY2(ratio >= least, qPrintable(told));
    }
}

void ThemeContrastTest::everyStateColorIsTested()
{
    QCOMPARE(withPrefix("clr_auth_type_").size(), 4);
    QVERIFY(withPrefix("clr_stock_").size() >= 2);
    QCOMPARE(withPrefix("clr_sub_user_").size(), 2);
}

int main(int argc, char** argv)
{
    return runTest<ThemeContrastTest>(argc, argv);
}

#include "ThemeContrastTest.moc"
