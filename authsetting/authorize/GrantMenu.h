#pragma once

#include "kit/widgets/Menu.h"

namespace GW {

/// What a grant button offers: a grant into a file or one on the server. GUI thread only.
class CGrantMenu : public KZ::CMenu
{
    Q_OBJECT

public:
    explicit CGrantMenu(QWidget* parent);

    QAction* fileAction() const { return m_file; }
    QAction* serverAction() const { return m_server; }

    /// Opens the menu at the lower left corner of `button`, `gap` pixels below it.
    void popUpBelow(const QWidget* button, int gap);

Q_SIGNALS:
    /// The menu has closed, and what the user chose in it was handled or runs a dialog by now.
    void closed();

private:
    QAction* m_file;
    QAction* m_server;
};

} // namespace GW
