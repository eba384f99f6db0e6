#pragma once

#include "kit/KitExport.h"
#include "kit/dialogs/CommonDialog.h"

#include <QLineEdit>

#include <boost/function.hpp>

namespace KZ {

class CMediumNormalButton;
class CSimpleTextWidget;
class CSoftKeyboardLineEdit;

/// A modal dialog that asks for one line of text.
///
/// Enter and "确定" accept, Esc, "取消" and the close button do not. In password form (echo mode
/// other than Normal) the text must be more than blanks and there is a keyboard on the screen.
/// Control characters are refused; the length is limited as in every CLineEdit. No kit event leaves
/// the dialog, so that its parent never takes a password for a text of its own. GUI thread only.
class KZKIT_EXPORT CSimpleInputDialog : public CCommonDialog
{
    Q_OBJECT

public:
    /// `title` stands in the title bar and before the editor. `iconName` is an icon key of the
    /// resource registry; one that it does not have gives the kit's own icon.
    CSimpleInputDialog(const QString& title, const QString& iconName, QWidget* parent);
    ~CSimpleInputDialog() override;

    void setEchoMode(QLineEdit::EchoMode mode);
    QLineEdit::EchoMode echoMode() const;

    /// Remembers `callback`, which gets the text as typed, once, after the dialog was accepted and
    /// has closed; on cancel it is not called. It may destroy the dialog. It replaces an earlier
    /// one and may be empty.
    void getInput(boost::function<void(QString)> callback);

    /// Runs the dialog modally with an empty editor; QDialog::Accepted or QDialog::Rejected. The
    /// dialog's parent, and the dialog with it, may be destroyed meanwhile.
    int exec() override;

    void accept() override;
    void reject() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;
    void onUiResourceChanged() override;

private:
    void acceptLater();
    bool isAcceptable() const;
    QString emptyMessage() const;
    void refresh();
    void showMessage(const QString& text);
    void takeIcon();

    const QString m_iconKey;
    CSoftKeyboardLineEdit* m_edit;
    CSimpleTextWidget* m_message;
    CMediumNormalButton* m_ok;
    CMediumNormalButton* m_cancel;
    boost::function<void(QString)> m_callback;
};

} // namespace KZ
