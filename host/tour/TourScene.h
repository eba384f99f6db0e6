#pragma once

#include "host/tour/TourPlaces.h"
#include "host/tour/XHands.h"

#include <QCoreApplication>
#include <QDir>
#include <QMetaObject>
#include <QStringList>

#include <functional>
#include <type_traits>

namespace host {

/// What the tour's user sees and does. He lives on a thread of his own, as a real one lives outside
/// the program, so that a modal dialog never stops him; every look at a widget happens on the GUI
/// thread, every action through the X server. All functions throw TourFailure when what they need
/// does not come within fifteen seconds. `what` names it in the message.
class TourScene
{
public:
    /// Asked on the GUI thread for a place; one without widget means that it is not there yet.
    using Locator = std::function<TourPlace()>;
    using Condition = std::function<bool()>;

    /// Pictures go to `pictureFolder`, which must exist.
    explicit TourScene(const QDir& pictureFolder);

    /// Runs `task` on the GUI thread, also inside a modal dialog, and returns its result.
    template <class Task>
    static std::invoke_result_t<Task> onGui(Task task)
    {
        using Result = std::invoke_result_t<Task>;
        if constexpr (std::is_void_v<Result>) {
            QMetaObject::invokeMethod(QCoreApplication::instance(), task,
                                      Qt::BlockingQueuedConnection);
        } else {
            Result result{};
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [&result, &task] { result = task(); },
                Qt::BlockingQueuedConnection);
            return result;
        }
    }

    /// Waits until `condition`, asked on the GUI thread, holds.
    void await(const QString& what, const Condition& condition) const;
    void awaitTip(const QString& text) const;
    /// Waits until the window with this title is the one that the user works in.
    void awaitTitle(const QString& title) const;
    /// Waits until the dialog no longer waits for the server.
    void awaitIdle() const;
    /// Waits until what the last action brought about is on the screen.
    void settle() const;
    /// Fails unless `condition` holds now.
    static void require(const QString& what, bool condition);

    void click(const QString& what, const Locator& locate);
    void clickButton(const QString& text);
    void clickTab(const QString& title);
    void clickTreeNode(const QString& text);
    void clickMenuBarItem(const QString& text);
    /// Clicks an entry of the menu that is open or about to open.
    void clickMenuItem(const QString& text);
    /// Clicks the cell in `column` of the table row in which some cell reads `rowText`.
    void clickCell(const QString& rowText, int column, XHands::Button button = XHands::LeftButton);
    void doubleClickCell(const QString& rowText, int column);
    /// Clicks the editor with this object name or accessible name and replaces its text.
    void typeInto(const QString& name, const QString& text);
    void press(const std::vector<quint32>& keys) { m_hands.press(keys); }
    void type(const QString& text) { m_hands.type(text); }
    /// Answers Qt's file dialog with `path`; its picture is called `picture`.
    void chooseFile(const QString& path, const QString& picture);

    /// Closes the settings dialog with its button.
    void closeDialog();

    /// The texts of the table row in which some cell reads `rowText`; empty without such a row.
    QStringList rowTexts(const QString& rowText) const;

    /// Saves what the screen shows of the client under the next number and `name`.
    void takePicture(const QString& name);
    int pictureCount() const { return m_pictureNumber; }

private:
    QPoint awaitPoint(const QString& what, const Locator& locate) const;

    XHands m_hands;
    QDir m_pictureFolder;
    int m_pictureNumber = 0;
};

} // namespace host
