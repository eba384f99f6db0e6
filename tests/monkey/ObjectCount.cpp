#include "tests/monkey/ObjectCount.h"

#include "tests/authsetting/ShellTestTools.h"

#include <QTableView>

namespace monkey {

namespace {

QString pagesOf(const OpenDialog& dialog)
{
    QStringList pages;
    const QVector<GW::CAuthSettingPage*> found = dialog.pages();
    for (const GW::CAuthSettingPage* page : found)
        pages.append(QStringLiteral("%1/%2").arg(page->pageId()).arg(page->subPageId()));
    pages.sort();
    return pages.join(u' ');
}

bool isInCell(const QObject* object)
{
    for (const QObject* parent = object->parent(); parent; parent = parent->parent()) {
        if (qobject_cast<const QTableView*>(parent))
            return true;
    }
    return false;
}

Failure checkCells(const OpenDialog& dialog)
{
    constexpr int perCell = 4;
    constexpr int besides = 40;
    const QList<QTableView*> views = dialog.findChildren<QTableView*>();
    for (const QTableView* view : views) {
        const auto widgets = view->viewport()->findChildren<QWidget*>();
        const int cells = view->model()->rowCount() * view->model()->columnCount();
        if (widgets.size() > perCell * cells + besides)
            return {QStringLiteral("objects"),
                    QStringLiteral("%1 widgets in %2 cells").arg(widgets.size()).arg(cells)};
    }
    return {};
}

} // namespace

Failure ObjectCount::check(const OpenDialog& dialog)
{
    constexpr int mostRaises = 6;
    QHash<QByteArray, int> counts;
    const QList<QObject*> objects = dialog.findChildren<QObject*>();
    for (const QObject* object : objects) {
        if (!isInCell(object))
            ++counts[object->metaObject()->className()];
    }
    QHash<QByteArray, Highest>& highest = m_highest[pagesOf(dialog)];
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        Highest& before = highest[count.key()];
        if (count.value() <= before.count)
            continue;
        before.count = count.value();
        if (++before.raised > mostRaises)
            return {QStringLiteral("objects"), QStringLiteral("ever more objects of %1: %2")
                                                   .arg(QString::fromLatin1(count.key()))
                                                   .arg(count.value())};
    }
    return checkCells(dialog);
}

} // namespace monkey
