#include "tests/monkey/Hands.h"

#include "authsetting/shell/AuthSettingNavigator.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/monkey/Screen.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

namespace monkey {

namespace {

constexpr int thousand = 1000;

bool isControl(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget);
}

QPoint centreOf(const QWidget* widget)
{
    return widget->mapToGlobal(widget->visibleRegion().boundingRect().center());
}

} // namespace

QWidget* Hands::front() const
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup;
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return m_dialog.isVisible() ? &m_dialog : nullptr;
}

QVector<QWidget*> Hands::controls() const
{
    QVector<QWidget*> found;
    const QWidget* window = front();
    const QList<QWidget*> widgets = window ? window->findChildren<QWidget*>() : QList<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->isVisible() && widget->isEnabled() && widget->window() == window &&
            isControl(widget) && !widget->visibleRegion().isEmpty())
            found.append(widget);
    }
    return found;
}

QPoint Hands::cellPlace(int row, int column) const
{
    const KZ::COddEvenRowTable* table = Screen::shownTable(m_dialog);
    if (!table)
        return {};
    const QTableView* view = table->view();
    const QAbstractItemModel* model = view->model();
    const int rows = model->rowCount();
    const int columns = model->columnCount();
    if (rows == 0 || columns == 0)
        return view->viewport()->mapToGlobal(view->viewport()->rect().center());
    const QRect cell = view->visualRect(model->index(row % rows, column % columns))
                           .intersected(view->viewport()->rect());
    return cell.isEmpty() ? QPoint() : view->viewport()->mapToGlobal(cell.center());
}

QPoint Hands::nodePlace(int node) const
{
    const auto* tree = m_dialog.findChild<GW::CAuthSettingNavigator*>();
    QVector<QRect> nodes;
    for (QTreeWidgetItem* item = tree->topLevelItem(0); item; item = tree->itemBelow(item)) {
        const QRect place = tree->visualItemRect(item).intersected(tree->viewport()->rect());
        if (!place.isEmpty())
            nodes.append(place);
    }
    return nodes.isEmpty() ? QPoint()
                           : tree->viewport()->mapToGlobal(nodes.at(node % nodes.size()).center());
}

QPoint Hands::placeOf(const Action& action) const
{
    const QWidget* window = front();
    if (!window)
        return {};
    switch (action.kind) {
    case Action::PressWidget: {
        const QVector<QWidget*> widgets = controls();
        return widgets.isEmpty() ? QPoint() : centreOf(widgets.at(action.a % widgets.size()));
    }
    case Action::PressCell:
    case Action::DoubleClick:
        return cellPlace(action.a, action.b);
    case Action::PressNode:
        return nodePlace(action.a);
    case Action::PressTab: {
        const GW::CAuthSettingPage* page = m_dialog.shownPage();
        const QTabBar* bar = page ? page->tabControl()->tabBar() : nullptr;
        return bar && bar->count() > 0
                   ? bar->mapToGlobal(bar->tabRect(action.a % bar->count()).center())
                   : QPoint();
    }
    case Action::Release:
        return m_pointer;
    default:
        return window->mapToGlobal(QPoint(window->width() * (action.a % thousand) / thousand,
                                          window->height() * (action.b % thousand) / thousand));
    }
}

QWidget* Hands::target(const Action& action) const
{
    if (action.kind == Action::Release)
        return m_pressed;
    QWidget* window = front();
    if (!window || !action.isUsers())
        return nullptr;
    if (action.kind == Action::Key || action.kind == Action::Type)
        return window->focusWidget();
    return window->childAt(window->mapFromGlobal(placeOf(action)));
}

void Hands::act(const Action& action)
{
    ++m_actions;
    // A file dialog reads folders in a thread of its own, so it gets whole answers only.
    if (qobject_cast<QFileDialog*>(front()))
        return;
    switch (action.kind) {
    case Action::PressAt:
    case Action::PressWidget:
    case Action::PressCell:
    case Action::PressNode:
    case Action::PressTab:
        press(placeOf(action), action.c == Qt::RightButton ? Qt::RightButton : Qt::LeftButton);
        break;
    case Action::DoubleClick:
        doubleClick(placeOf(action));
        break;
    case Action::MoveTo:
        moveTo(placeOf(action));
        break;
    case Action::Release:
        release();
        break;
    case Action::Wheel:
        wheel(placeOf(action), action.c);
        break;
    case Action::Key:
        key(static_cast<Qt::Key>(action.a), Qt::KeyboardModifiers(action.b), action.text);
        break;
    case Action::Type:
        for (const QChar& character : action.text)
            key(static_cast<Qt::Key>(character.toUpper().unicode()), Qt::NoModifier, character);
        break;
    default:
        break;
    }
}

bool Hands::moveTo(const QPoint& place)
{
    const QPointer<QWidget> window = front();
    const QPointer<QWindow> handle = window ? window->windowHandle() : nullptr;
    if (!handle)
        return false;
    const QPoint inside = window->mapFromGlobal(place);
    // A window that is just being shown may not have its size yet.
    const QRect area = QRect(QPoint(), handle->size()).intersected(window->rect());
    if (!area.contains(inside))
        return false;
    m_pointer = place;
    QTest::mouseMove(handle, inside);
    return window && handle && window == front() &&
           QRect(QPoint(), handle->size()).contains(window->mapFromGlobal(place));
}

void Hands::press(const QPoint& place, Qt::MouseButton button)
{
    if (isPressing() || place.isNull())
        return;
    if (!moveTo(place))
        return;
    QWidget* window = front();
    m_button = button;
    const QPoint inside = window->mapFromGlobal(place);
    m_pressed = window->childAt(inside);
    QTest::mousePress(window->windowHandle(), button, {}, inside);
}

void Hands::release()
{
    if (!isPressing())
        return;
    const Qt::MouseButton button = m_button;
    m_button = Qt::NoButton;
    const QPointer<QWidget> pressed = m_pressed;
    QWidget* window = pressed && pressed->window()->isVisible() ? pressed->window() : front();
    if (!window || !window->windowHandle())
        window = &m_dialog;
    const QPoint last(window->width() - 1, window->height() - 1);
    const QPoint inside = window->mapFromGlobal(m_pointer);
    const QPoint place(qBound(1, inside.x(), last.x()), qBound(1, inside.y(), last.y()));
    m_pressed = nullptr;
    if (window->windowHandle())
        QTest::mouseRelease(window->windowHandle(), button, {}, place);
}

void Hands::doubleClick(const QPoint& place)
{
    if (isPressing() || place.isNull())
        return;
    if (!moveTo(place))
        return;
    const QWidget* window = front();
    QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, window->mapFromGlobal(place));
}

void Hands::wheel(const QPoint& place, int steps)
{
    QWidget* window = front();
    QWidget* under = window ? window->childAt(window->mapFromGlobal(place)) : nullptr;
    if (!under)
        return;
    constexpr int oneStep = 120;
    QWheelEvent event(under->mapFromGlobal(place), place, QPoint(), QPoint(0, steps * oneStep),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(under, &event);
}

void Hands::key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const QWidget* window = front();
    if (!window || !window->windowHandle())
        return;
    const QPointer<QWindow> handle = window->windowHandle();
    // What a window manager does when the dialog that had the keyboard has gone.
    if (!QApplication::activePopupWidget() && QGuiApplication::focusWindow() != handle)
        handle->requestActivate();
    const int before = m_actions;
    // Without keys for the modifiers, the first of which may close a menu and destroy its window.
    QTest::simulateEvent(handle.data(), true, key, modifiers, text, false);
    if (handle && m_actions == before)
        QTest::simulateEvent(handle.data(), false, key, modifiers, text, false);
}

void Hands::chooseFile(const QString& path)
{
    ++m_actions;
    auto* dialog = qobject_cast<QFileDialog*>(front());
    if (!dialog)
        return;
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (path.isEmpty() || !name) {
        dialog->reject();
        return;
    }
    name->setText(path);
    static_cast<QDialog*>(dialog)->accept();
}

} // namespace monkey
