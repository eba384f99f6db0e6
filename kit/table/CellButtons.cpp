#include "kit/table/CellButtons.h"

#include <QAbstractButton>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace KZ {

namespace {

bool isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

} // namespace

CCellButtons::CCellButtons(std::function<bool(const QWidget*)> standsForRow, QObject* parent)
    : QObject(parent), m_standsForRow(std::move(standsForRow))
{
}

void CCellButtons::watch(QWidget* widget)
{
    if (qobject_cast<QAbstractButton*>(widget))
        widget->installEventFilter(this);
    const auto buttons = widget->findChildren<QAbstractButton*>();
    for (QAbstractButton* const button : buttons)
        button->installEventFilter(this);
}

bool CCellButtons::isPressed(const QWidget* widget) const
{
    if (!m_pressed || m_pressed == widget)
        return m_pressed != nullptr;
    const auto buttons = widget->findChildren<QAbstractButton*>();
    return std::any_of(buttons.cbegin(), buttons.cend(),
                       [this](const QAbstractButton* button) { return button == m_pressed; });
}

bool CCellButtons::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (!m_standsForRow(static_cast<QWidget*>(object)))
            return true;
        m_pressed = object;
        break;
    case QEvent::MouseButtonRelease:
        m_pressed = nullptr;
        break;
    case QEvent::KeyPress:
        if (isArrow(static_cast<QKeyEvent*>(event)->key())) {
            event->ignore();
            return true;
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace KZ
