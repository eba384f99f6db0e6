#pragma once

#include "authsetting/shell/ReloadGate.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

namespace GW {

class CGrantMenu;

/// What the user starts with the button "授权" of a page, from the menu to the password of a file:
/// it is carried out only while the page is as he saw it when the menu opened, and until then no
/// reload takes what he typed. On a page that stands alone everything is carried out as it comes.
/// GUI thread only.
class CGrantChoice : public QObject
{
    Q_OBJECT

public:
    /// Says whether what a page showed, when this was made, still stands.
    using Check = std::function<bool()>;

    struct Page
    {
        /// Owns the choice.
        QWidget* widget;
        CReloadGate& reloads;
        /// Takes what the page shows now.
        std::function<Check()> look;
        /// Tells the user that it no longer stands.
        std::function<void()> tellChanged;
        /// Carries out what was chosen: a grant on the server, or one into a file.
        std::function<void(bool toServer)> grant;
    };

    explicit CGrantChoice(Page page);

    CGrantMenu* menu() const { return m_menu; }

    /// Opens the menu `gap` pixels below `button`; `sender` is the control that the user used, null
    /// when code asked for it.
    void popUpBelow(const QWidget* button, int gap, const void* sender);

    /// The dialogs of one grant into a file; a local object, within which the page may be
    /// destroyed.
    class FilePrompt
    {
    public:
        explicit FilePrompt(const CGrantChoice& choice);

        /// The file that the user chose; empty when he cancelled, or was told that the page has
        /// changed, or the page is gone.
        QString chooseFile();
        /// Hands the password as typed to `grant` unless the page has changed; whether the user
        /// accepted.
        bool askPassword(const std::function<void(const QString&)>& grant);

    private:
        const Page m_page;
        const QPointer<QWidget> m_widget;
        Check m_check;
        std::optional<CReloadGate::Hold> m_hold;
    };

private:
    void choose(bool toServer);

    const Page m_page;
    CGrantMenu* const m_menu;
    /// Of the open menu.
    Check m_check;
    std::optional<CReloadGate::Hold> m_hold;
};

} // namespace GW
