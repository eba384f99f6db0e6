#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace KZ {

/// The keys of a list that stays, taken from whatever has the focus in the list's window before the
/// window sees them. Of several lists the one that came last gets them.
class CTipKeys : public QObject
{
    Q_OBJECT

public:
    /// `window` may be null: then the keys of every window count.
    CTipKeys(QWidget* window, QObject* parent);

    void setActive(bool active);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void dismissed();
    void copyRequested();
    /// Pages to scroll by, upwards when negative.
    void scrolled(int pages);

private:
    const QPointer<QWidget> m_window;
    bool m_active = false;
};

} // namespace KZ
