#pragma once

#include <QAccessibleWidget>

namespace KZ {

class CSimpleTextWidget;

/// A CSimpleTextWidget as assistive tools meet it: a label with its text as name, which tells the
/// widget that it names.
class CAccessibleText : public QAccessibleWidget
{
public:
    explicit CAccessibleText(QWidget* widget);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QList<QPair<QAccessibleInterface*, QAccessible::Relation>>
    relations(QAccessible::Relation match = QAccessible::AllRelations) const override;

private:
    const CSimpleTextWidget* textWidget() const;
};

} // namespace KZ
