#include "tests/monkey/ObjectCount.h"

#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/ShellTestTools.h"

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

bool isInTable(const QObject* object)
{
    for (const QObject* parent = object->parent(); parent; parent = parent->parent()) {
        if (qobject_cast<const KZ::COddEvenRowTable*>(parent))
            return true;
    }
    return false;
}

Failure checkTables(const OpenDialog& dialog)
{
    constexpr int perCell = 4;
    constexpr int besides = 120;
    const auto tables = dialog.findChildren<KZ::COddEvenRowTable*>();
    for (const KZ::COddEvenRowTable* table : tables) {
        const qsizetype widgets = table->findChildren<QWidget*>().size();
        const int cells = table->rowCount() * table->columnCount();
        if (widgets > perCell * cells + besides)
            return {QStringLiteral("objects"),
                    QStringLiteral("%1 widgets in a table of %2 cells").arg(widgets).arg(cells)};
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
        if (!isInTable(object))
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
    return checkTables(dialog);
}

} // namespace monkey
