#include "kit/accessible/AccessibleText.h"

#include "kit/accessible/AccessibleName.h"
#include "kit/widgets/SimpleTextWidget.h"

namespace KZ {

CAccessibleText::CAccessibleText(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::StaticText)
{
}

const CSimpleTextWidget* CAccessibleText::textWidget() const
{
    return qobject_cast<const CSimpleTextWidget*>(widget());
}

QString CAccessibleText::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? spokenName(widget()->accessibleName())
                                     : QAccessibleWidget::text(kind);
}

QAccessible::State CAccessibleText::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    // It keeps the place of a message that has not come yet.
    if (text(QAccessible::Name).isEmpty())
        state.invisible = true;
    return state;
}

QList<QPair<QAccessibleInterface*, QAccessible::Relation>>
CAccessibleText::relations(QAccessible::Relation match) const
{
    auto found = QAccessibleWidget::relations(match);
    QWidget* const target = textWidget() ? textWidget()->accessibleTarget() : nullptr;
    if (target && match.testFlag(QAccessible::Labelled)) {
        if (QAccessibleInterface* const named = QAccessible::queryAccessibleInterface(target))
            found.append({named, QAccessible::Labelled});
    }
    return found;
}

} // namespace KZ
