#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace GW {

class CAuthSettingPage;

/// Keeps the keyboard focus of the dialog where the user sees it.
///
/// As long as the shown page takes input, the focus is in a visible, enabled control of it, or on
/// the close button once the user has moved it there; otherwise the dialog itself has it, and it
/// goes back to where it was. Whoever changes the page, its tab or the busy state calls check();
/// what Qt moves meanwhile is checked once per turn of the event loop. GUI thread only.
class CFocusKeeper : public QObject
{
public:
    /// Owned by `dialog`; `closeButton` outlives it.
    CFocusKeeper(QWidget* dialog, QWidget* closeButton);

    /// The page that is shown from now on; the focus goes to its first control.
    void setPage(CAuthSettingPage* page);
    /// A control outside of the page that may have the focus as well.
    void setExtraControl(QWidget* control);

    /// Notes where the focus is, before something that takes it away.
    void remember();
    /// Puts the focus where it belongs.
    void check();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void checkSoon();
    void onFocusChanged(const QWidget* old, QWidget* now);
    void noteCloseButton(const QEvent& event);
    void passOn(QWidget* tab, Qt::FocusReason reason);
    bool isPlace(const QWidget* widget) const;
    void setPlace(QWidget* place);
    void watch(QWidget* place);
    QWidget* firstPlace() const;

    QWidget* m_dialog;
    QWidget* m_closeButton;
    QPointer<QWidget> m_extra;
    QPointer<CAuthSettingPage> m_page;
    QPointer<QWidget> m_place;
    /// The table that the place is in, which outlives the controls of its rows.
    QPointer<QWidget> m_placeTable;
    /// The control of the page that has the focus: looked after in case nobody moves it on.
    QPointer<QWidget> m_watched;
    bool m_atExtra = false;
    bool m_closeChosen = false;
    bool m_checking = false;
    bool m_checkPosted = false;
};

} // namespace GW
