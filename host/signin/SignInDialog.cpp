#include "host/signin/SignInDialog.h"

#include "kit/events/EventIds.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/WidgetList.h"

#include <QGuiApplication>

#include <utility>

namespace host {

namespace {

enum SenderId { UserBox, PasswordEdit, SignInButton };

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

SignInDialog::SignInDialog(SignIn signIn, QWidget* parent)
    : CCommonDialog(parent), m_signIn(std::move(signIn))
{
    setObjectName(QStringLiteral("halden_client_sign_in"));
    setTitle(QStringLiteral("登录"));
    const int margin = uiSize("gw_siz_client_sign_in_margin");
    auto* list = new KZ::CWidgetList(Qt::Vertical, this);
    list->setMargin(margin, margin, margin, margin);
    list->setSpacing(uiSize("gw_siz_client_sign_in_space"));

    m_user = new KZ::CComboBox(UserBox, list);
    m_user->setObjectName(QStringLiteral("halden_client_sign_in_user"));
    m_user->setEditable(true);
    addRow(list, QStringLiteral("用户名"), m_user);
    m_password = new KZ::CSoftKeyboardLineEdit(PasswordEdit, list);
    m_password->setObjectName(QStringLiteral("halden_client_sign_in_password"));
    m_password->setEchoMode(QLineEdit::Password);
    addRow(list, QStringLiteral("密　码"), m_password);

    m_hint = new KZ::CSimpleTextWidget(QString(), list);
    m_hint->setTextColorKey(QStringLiteral("clr_text_quiet"));
    m_hint->hide();
    list->addFixWidget(m_hint);
    m_error = new KZ::CSimpleTextWidget(QString(), list);
    m_error->setObjectName(QStringLiteral("halden_client_sign_in_error"));
    m_error->setTextColorKey(QStringLiteral("clr_danger"));
    list->addFixWidget(m_error);
    list->addStretch();

    auto* buttons = new KZ::CWidgetList(Qt::Horizontal, list);
    buttons->addStretch();
    m_ok = new KZ::CMediumNormalButton(SignInButton, buttons);
    m_ok->setObjectName(QStringLiteral("halden_client_sign_in_ok"));
    m_ok->setText(QStringLiteral("登录"));
    m_ok->setPrimary(true);
    auto* leave = new KZ::CMediumNormalButton(ID_BUTTON_CLOSE, buttons);
    leave->setText(QStringLiteral("退出"));
    for (KZ::CMediumNormalButton* button : {m_ok, leave}) {
        button->resize(uiSize("gw_siz_setting_inner_bottom_btn_width"),
                       uiSize("gw_siz_setting_inner_bottom_btn_height"));
        buttons->addFixWidget(button);
    }
    list->addFixWidget(buttons);
    setContentWidget(list);
    setFixedSize(uiSize("gw_siz_client_sign_in_width"), uiSize("gw_siz_client_sign_in_height"));

    connect(m_user->lineEdit(), &QLineEdit::returnPressed, this, &SignInDialog::onReturnPressed);
    connect(m_password, &QLineEdit::returnPressed, this, &SignInDialog::onReturnPressed);
}

SignInDialog::~SignInDialog() = default;

void SignInDialog::addRow(KZ::CWidgetList* list, const QString& label, QWidget* editor)
{
    auto* row = new KZ::CWidgetList(Qt::Horizontal, list);
    auto* text = new KZ::CSimpleTextWidget(label, row);
    text->setAccessibleTarget(editor);
    row->addFixWidget(text);
    row->addStretchWidget(editor);
    list->addFixWidget(row);
}

void SignInDialog::setUsers(const QStringList& users)
{
    m_user->clear();
    m_user->addItems(users);
}

void SignInDialog::setUser(const QString& user)
{
    m_user->setEditText(user);
}

void SignInDialog::setHint(const QString& hint)
{
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty());
}

std::unique_ptr<backend::Session> SignInDialog::takeSession()
{
    return std::move(m_session);
}

void SignInDialog::showEvent(QShowEvent* event)
{
    CCommonDialog::showEvent(event);
    m_password->clear();
    showError(QString());
    if (m_user->currentText().isEmpty())
        m_user->setFocus();
    else
        m_password->setFocus();
}

bool SignInDialog::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    if (eventId == KZ::EVENT_BUTTON_CLICKED && param1 == SignInButton) {
        trySignIn();
        return true;
    }
    if (eventId == KZ::EVENT_TEXT_EDITED)
        showError(QString());
    return CCommonDialog::handleEvent(eventId, param1, param2, text, data);
}

void SignInDialog::onReturnPressed()
{
    if (sender() != m_password && m_password->text().isEmpty())
        m_password->setFocus();
    else
        trySignIn();
}

void SignInDialog::trySignIn()
{
    if (m_user->currentText().trimmed().isEmpty() || m_password->text().isEmpty()) {
        showError(QStringLiteral("请输入用户名和密码"));
        return;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    backend::SignInResult result = m_signIn(m_user->currentText().trimmed(), m_password->text());
    QGuiApplication::restoreOverrideCursor();
    if (!result.session) {
        m_password->clear();
        m_password->setFocus();
        showError(result.error);
        return;
    }
    m_password->clear();
    m_session = std::move(result.session);
    accept();
}

void SignInDialog::showError(const QString& text)
{
    m_error->setText(text, m_error->parentWidget()->width());
}

} // namespace host
