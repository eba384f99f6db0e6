#include "kit/resources/KitStyle.h"

#include "kit/accessible/AccessibleFactory.h"
#include "kit/resources/KitProxyStyle.h"

#include <QApplication>
#include <QChildEvent>
#include <QPointer>
#include <QWidget>

namespace KZ {

QStyle* kitStyle()
{
    // Tracked, because a program may make one application object after another.
    static QPointer<CKitProxyStyle> style;
    if (!style) {
        style = new CKitProxyStyle;
        style->setParent(QCoreApplication::instance());
        // Every widget of the kit comes by here before anybody can meet it.
        installAccessibleFactory();
    }
    return style;
}

void applyKitStyle(QWidget* root)
{
    root->setStyle(kitStyle());
    const QList<QWidget*> descendants = root->findChildren<QWidget*>();
    for (QWidget* widget : descendants)
        widget->setStyle(kitStyle());
}

void applyKitStyleToPolishedChild(QEvent* event)
{
    if (event->type() != QEvent::ChildPolished)
        return;
    QObject* const child = static_cast<QChildEvent*>(event)->child();
    if (!child->isWidgetType())
        return;
    auto* const widget = static_cast<QWidget*>(child);
    if (!widget->isWindow() && !widget->testAttribute(Qt::WA_SetStyle))
        applyKitStyle(widget);
}

} // namespace KZ
