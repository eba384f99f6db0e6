#pragma once

#include "host/tour/TourPlace.h"

#include <QString>
#include <QStringList>

namespace host {

/// Finds things in the window that the user works in, by what he reads there. Everything runs on
/// the GUI thread and answers with an empty place when the thing is not there.
class TourPlaces
{
public:
    TourPlaces() = delete;

    /// The window that the user works in: the modal one, else the active one; may be null.
    static QWidget* window();
    /// The widget with this object name or accessible name.
    static TourPlace named(const QString& name);
    static TourPlace button(const QString& text);
    /// The button with this tool tip.
    static TourPlace withToolTip(const QString& toolTip);
    static TourPlace tab(const QString& title);
    static TourPlace treeNode(const QString& text);
    static TourPlace menuBarItem(const QString& text);
    /// In the menu that is open.
    static TourPlace menuItem(const QString& text);
    /// A cell of the row in which some cell reads `rowText`, scrolled into view.
    static TourPlace cell(const QString& rowText, int column);
    static QStringList rowTexts(const QString& rowText);
};

} // namespace host
