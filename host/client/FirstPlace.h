#pragma once

#include <QObject>

class QWidget;

namespace host {

/// Keeps a window, its frame included, inside the available area of its screen when it is shown
/// for the first time; afterwards it is the user's. The window owns the object.
class FirstPlace : public QObject
{
    Q_OBJECT

public:
    explicit FirstPlace(QWidget* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QWidget* const m_window;
    bool m_placed = false;
};

} // namespace host
