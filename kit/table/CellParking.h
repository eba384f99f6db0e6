#pragma once

#include <QList>

class QWidget;

namespace KZ {

/// Where cell widgets out of sight stand, under a hidden parent, and how they come to their end.
/// The focus does not go with them: it stays with the view. Their events run the owner's code.
class CCellParking
{
public:
    /// `table` owns the hidden parent.
    CCellParking(QWidget* view, QWidget* table);

    /// Disables the widgets parked here as the viewport disables those in it.
    void setEnabled(bool enabled) const;
    void park(QWidget* widget) const;
    void park(const QList<QWidget*>& widgets) const;
    /// Deletes later, because the widget may be the one whose event is being handled; until then it
    /// answers nothing.
    void discard(QWidget* widget) const;

private:
    void takeFocusFrom(const QWidget* widget) const;

    QWidget* const m_view;
    QWidget* const m_parking;
};

} // namespace KZ
