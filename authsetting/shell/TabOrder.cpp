#include "authsetting/shell/TabOrder.h"

#include "authsetting/shell/AuthSettingTabPage.h"

#include <QAbstractItemView>

#include <algorithm>

namespace GW {

namespace {

void collect(const QWidget* parent, QList<QWidget*>& stops)
{
    const auto* view = qobject_cast<const QAbstractItemView*>(parent);
    for (QObject* each : parent->children()) {
        auto* child = qobject_cast<QWidget*>(each);
        if (!child || child->isWindow() || child->isHidden() || !child->isEnabled() ||
            (view && child == view->viewport()))
            continue;
        const qsizetype before = stops.size();
        collect(child, stops);
        const bool passesOn =
            stops.size() > before && qobject_cast<const IAuthSettingTabPage*>(child);
        if (child->focusPolicy() & Qt::TabFocus && !child->focusProxy() && !passesOn)
            stops.append(child);
    }
}

QRect placeOf(const QWidget* widget)
{
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

void sortAsRead(QList<QWidget*>& stops)
{
    std::stable_sort(stops.begin(), stops.end(), [](const QWidget* left, const QWidget* right) {
        return placeOf(left).top() < placeOf(right).top();
    });
    // Controls of one row differ in height, so their tops do not tell that they stand beside each
    // other.
    for (auto first = stops.begin(); first != stops.end();) {
        const int bottom = placeOf(*first).bottom();
        const auto end = std::find_if(first, stops.end(), [bottom](const QWidget* stop) {
            return placeOf(stop).center().y() > bottom;
        });
        const auto rowEnd = end == first ? first + 1 : end;
        std::stable_sort(first, rowEnd, [](const QWidget* left, const QWidget* right) {
            return placeOf(left).left() < placeOf(right).left();
        });
        first = rowEnd;
    }
}

} // namespace

QList<QWidget*> CTabOrder::stopsOf(const QWidget* root)
{
    QList<QWidget*> stops;
    collect(root, stops);
    sortAsRead(stops);
    return stops;
}

bool CTabOrder::step(const QWidget* window, bool next)
{
    const QList<QWidget*> stops = stopsOf(window);
    if (stops.isEmpty())
        return false;
    qsizetype from = -1;
    for (const QWidget* at = window->focusWidget(); at && from < 0; at = at->parentWidget())
        from = stops.indexOf(at);
    qsizetype to = next ? 0 : stops.size() - 1;
    if (from >= 0)
        to = (from + (next ? 1 : stops.size() - 1)) % stops.size();
    stops[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

} // namespace GW
