#include "kit/accessible/InReach.h"

#include <QApplication>
#include <QWidget>

namespace KZ {

namespace {

bool keepsFrom(const QWidget* front, const QWidget* control)
{
    return front && front != control && !front->isAncestorOf(control);
}

} // namespace

bool isInReach(const QWidget* control)
{
    return control->isVisible() && control->isEnabled() &&
           !keepsFrom(QApplication::activePopupWidget(), control) &&
           !keepsFrom(QApplication::activeModalWidget(), control);
}

} // namespace KZ
