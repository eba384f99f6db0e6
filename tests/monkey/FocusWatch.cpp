#include "tests/monkey/FocusWatch.h"

#include "authsetting/shell/AuthSettingNavigator.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/monkey/Screen.h"

#include <QApplication>
#include <QSet>

namespace monkey {

namespace {

bool goesToAnotherWidget(const Action& action)
{
    const bool presses = action.kind == Action::PressWidget || action.kind == Action::PressAt;
    // An arrow key leads from a button to its neighbour.
    static const QSet<int> stepKeys{Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Down,
                                    Qt::Key_Up,  Qt::Key_Left,    Qt::Key_Right};
    return presses || (action.kind == Action::Key && stepKeys.contains(action.a));
}

QString describe(const QWidget* widget)
{
    if (!widget)
        return QStringLiteral("nobody");
    return QStringLiteral("%1 \"%2\"%3%4")
        .arg(QString::fromLatin1(widget->metaObject()->className()), widget->objectName(),
             widget->isVisible() ? QString() : QStringLiteral(", hidden"),
             widget->isEnabled() ? QString() : QStringLiteral(", disabled"));
}

} // namespace

Failure FocusWatch::check(const OpenDialog& dialog, const Action& action)
{
    if (!dialog.isVisible() || QApplication::activePopupWidget() ||
        QApplication::activeModalWidget() != &dialog)
        return {};
    const QWidget* focused =
        dialog.isActiveWindow() ? QApplication::focusWidget() : dialog.focusWidget();
    const QString found = QStringLiteral(" the focus is with ") + describe(focused);
    if (focused && focused->objectName() == QStringLiteral("halden_close_button")) {
        m_onClose = m_onClose || goesToAnotherWidget(action);
        return m_onClose ? Failure{} : Failure{QStringLiteral("focus-close"), found};
    }
    m_onClose = false;
    if (Screen::looksBusy(dialog))
        return focused == &dialog
                   ? Failure{}
                   : Failure{QStringLiteral("focus-busy"), QStringLiteral("while busy") + found};
    const auto* tree = dialog.findChild<GW::CAuthSettingNavigator*>();
    const bool isUsable = focused && focused->isVisible() && focused->isEnabled();
    // The tree's filter box stands inside the tree, and is there on every page.
    if (isUsable && tree->isAncestorOf(focused) && focused->inherits("QLineEdit"))
        return {};
    const GW::CAuthSettingPage* page = dialog.shownPage();
    if (!page || page->tabControl()->tabCount() == 0)
        return focused == &dialog ? Failure{}
                                  : Failure{QStringLiteral("focus-empty"),
                                            QStringLiteral("on the empty page") + found};
    if (isUsable && page->isAncestorOf(focused))
        return {};
    return {QStringLiteral("focus"), QStringLiteral("on a page") + found};
}

} // namespace monkey
