#include "kit/accessible/AccessibleFactory.h"

#include "kit/accessible/AccessibleBox.h"
#include "kit/accessible/AccessibleBusyBar.h"
#include "kit/accessible/AccessibleButton.h"
#include "kit/accessible/AccessibleComboBox.h"
#include "kit/accessible/AccessibleDateEditor.h"
#include "kit/accessible/AccessibleTable.h"
#include "kit/accessible/AccessibleText.h"
#include "kit/table/TableView.h"

#include <QAccessible>
#include <QWidget>

namespace KZ {

namespace {

/// Called for an object's class and then for each of its bases until somebody answers.
QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    if (!object || !object->isWidgetType() || !className.startsWith(QLatin1String("KZ::")))
        return nullptr;
    auto* const widget = static_cast<QWidget*>(object);
    if (className == QLatin1String("KZ::CSimpleTextWidget"))
        return new CAccessibleText(widget);
    if (className == QLatin1String("KZ::CButton"))
        return new CAccessibleButton(widget);
    if (className == QLatin1String("KZ::CComboBox"))
        return new CAccessibleComboBox(widget);
    if (className == QLatin1String("KZ::CSoftCalendarLineEdit"))
        return new CAccessibleDateEditor(widget);
    if (className == QLatin1String("KZ::CBusyBar"))
        return new CAccessibleBusyBar(widget);
    if (className == QLatin1String("KZ::CTableView"))
        return new CAccessibleTable(static_cast<CTableView*>(widget));
    if (className == QLatin1String("KZ::CMessageTip"))
        return new CAccessibleBox(widget, QAccessible::Notification);
    if (className == QLatin1String("KZ::CBaseDialog"))
        return new CAccessibleBox(widget, QAccessible::Dialog);
    if (className == QLatin1String("KZ::CBaseWidget"))
        return new CAccessibleBox(widget, QAccessible::Client);
    return nullptr;
}

/// Takes the factory back before the code that it points to may be unloaded.
class CInstalled
{
public:
    CInstalled() = default;
    CInstalled(const CInstalled&) = delete;
    CInstalled& operator=(const CInstalled&) = delete;
    ~CInstalled() { QAccessible::removeFactory(makeInterface); }
};

} // namespace

void installAccessibleFactory()
{
    QAccessible::installFactory(makeInterface);
    static const CInstalled installed;
}

} // namespace KZ
