#pragma once

#include <QRect>

class QWidget;

namespace host {

/// Where the tour's user points: a part of a widget.
struct TourPlace
{
    /// Null when there is no such place.
    QWidget* widget = nullptr;
    /// In the screen's logical pixels.
    QRect area;
};

} // namespace host
