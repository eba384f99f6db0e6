#pragma once

#include <QAccessibleWidget>

namespace KZ {

class CButton;

/// A CButton as assistive tools meet it. Pressing it clicks at once, as its shortcut does: Qt's own
/// press clicks a moment later, when the button may stand for something else.
class CAccessibleButton : public QAccessibleWidget
{
public:
    explicit CAccessibleButton(QWidget* widget);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString& action) const override;

private:
    CButton* button() const;
};

} // namespace KZ
