#pragma once

#include "backend/client/Session.h"
#include "kit/dialogs/CommonDialog.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace KZ {
class CComboBox;
class CMediumNormalButton;
class CSimpleTextWidget;
class CSoftKeyboardLineEdit;
class CWidgetList;
} // namespace KZ

namespace host {

/// The client's first window: user, password, "登录". Enter signs in, Esc and "退出" leave. What
/// it says about a failure is what the store says, which never tells name from password. It is
/// accepted when a user has signed in, rejected when it is left. GUI thread only.
class SignInDialog : public KZ::CCommonDialog
{
    Q_OBJECT

public:
    using SignIn =
        std::function<backend::SignInResult(const QString& user, const QString& password)>;

    /// `signIn` checks a user; it may take a moment.
    explicit SignInDialog(SignIn signIn, QWidget* parent = nullptr);
    ~SignInDialog() override;

    /// The users to choose from; others can be typed.
    void setUsers(const QStringList& users);
    /// The user in the box; the cursor then waits in the password.
    void setUser(const QString& user);
    /// A line about the store, such as its server or the demonstration's password; empty hides it.
    void setHint(const QString& hint);

    /// The session of the user who has just signed in; null when taken already.
    std::unique_ptr<backend::Session> takeSession();

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addRow(KZ::CWidgetList* list, const QString& label, QWidget* editor);
    void onReturnPressed();
    void trySignIn();
    void showError(const QString& text);

    SignIn m_signIn;
    std::unique_ptr<backend::Session> m_session;
    KZ::CComboBox* m_user;
    KZ::CSoftKeyboardLineEdit* m_password;
    KZ::CSimpleTextWidget* m_hint;
    KZ::CSimpleTextWidget* m_error;
    KZ::CMediumNormalButton* m_ok;
};

} // namespace host
