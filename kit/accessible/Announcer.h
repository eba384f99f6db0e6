#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class QWidget;

namespace KZ {

/// Tells assistive tools of a message that appears without taking the focus: of a tool tip window
/// Qt reports by itself only that it goes. What comes within one turn of the event loop is told
/// together, and nothing is told twice, also when the message hides for a while.
class CAnnouncer : public QObject
{
    Q_OBJECT

public:
    /// `message` is the window; it owns the announcer.
    explicit CAnnouncer(QWidget* message);

    /// `texts` are all texts of the message; those after the ones told already are new.
    void setTexts(const QStringList& texts);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void announce();

    QWidget* const m_message;
    QTimer m_timer;
    QStringList m_texts;
    qsizetype m_told = 0;
    bool m_isShown = false;
};

} // namespace KZ
