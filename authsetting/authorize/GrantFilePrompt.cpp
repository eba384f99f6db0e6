#include "authsetting/authorize/GrantFilePrompt.h"

#include "kit/dialogs/SimpleInputDialog.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QPointer>

namespace GW {

QString chooseGrantFile(QWidget* page)
{
    const QString now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
    const QString proposal =
        QStringLiteral(".") + QDir::separator() + QStringLiteral("vell_auth_") + now;
    return QFileDialog::getSaveFileName(page, QStringLiteral("选择保存路径"), proposal,
                                        QStringLiteral("Auth Files(*.taa)"));
}

bool askGrantPassword(QWidget* page, const boost::function<void(QString)>& callback)
{
    const QPointer<KZ::CSimpleInputDialog> dialog = new KZ::CSimpleInputDialog(
        QStringLiteral("输入授权密码"), QStringLiteral("Tarnwell.png"), page);
    dialog->setEchoMode(QLineEdit::Password);
    dialog->getInput(callback);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (dialog)
        dialog->deleteLater();
    return accepted;
}

} // namespace GW
