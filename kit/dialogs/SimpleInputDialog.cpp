#include "kit/dialogs/SimpleInputDialog.h"

#include "kit/events/EventIds.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QBoxLayout>
#include <QValidator>

#include <algorithm>

namespace KZ {

namespace {

constexpr int ID_EDIT = 0;
constexpr int ID_OK = 1;
constexpr int ID_CANCEL = 2;

/// Refuses what no keyboard types and no line can show.
class CharacterValidator : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString& input, int&) const override
    {
        const bool isPlain =
            input.isValidUtf16() && std::none_of(input.cbegin(), input.cend(), [](QChar character) {
                return character.category() == QChar::Other_Control ||
                       character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
            });
        return isPlain ? Acceptable : Invalid;
    }
};

int registrySize(const char* key)
{
    return CUiResource::getSize(QLatin1String(key));
}

} // namespace

CSimpleInputDialog::CSimpleInputDialog(const QString& title, const QString& iconName,
                                       QWidget* parent)
    : CCommonDialog(parent), m_iconKey(iconName)
{
    setObjectName(QStringLiteral("halden_input_dialog"));
    setModal(true);
    setTitle(title);

    auto* const content = new QWidget(this);
    auto* const label = new CSimpleTextWidget(title, content);
    m_edit = new CSoftKeyboardLineEdit(ID_EDIT, content);
    m_edit->setObjectName(QStringLiteral("halden_input_edit"));
    m_edit->setValidator(new CharacterValidator(m_edit));
    m_edit->setMinimumWidth(registrySize("gw_siz_kit_input_dialog_editor_width"));
    label->setAccessibleTarget(m_edit);
    m_message = new CSimpleTextWidget(QString(), content);
    m_message->setObjectName(QStringLiteral("halden_input_message"));
    m_message->setTextColorKey(QStringLiteral("clr_danger"));
    m_ok = new CMediumNormalButton(ID_OK, content);
    m_ok->setObjectName(QStringLiteral("halden_input_ok"));
    m_ok->setText(QStringLiteral("确定"));
    m_ok->setPrimary(true);
    m_cancel = new CMediumNormalButton(ID_CANCEL, content);
    m_cancel->setObjectName(QStringLiteral("halden_input_cancel"));
    m_cancel->setText(QStringLiteral("取消"));

    const int margin = registrySize("gw_siz_kit_input_dialog_margin");
    const int space = registrySize("gw_siz_kit_input_dialog_space");
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(space);
    column->addWidget(label);
    column->addWidget(m_edit);
    // Its line is there from the start, so that a message does not move the buttons.
    m_message->setMinimumHeight(m_edit->fontMetrics().height());
    column->addWidget(m_message);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(space);
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    column->addLayout(buttons);
    setContentWidget(content);

    connect(m_edit, &QLineEdit::textChanged, this, [this] {
        const bool isBlank = !m_edit->text().isEmpty() && !isAcceptable();
        showMessage(isBlank ? emptyMessage() : QString());
        refresh();
    });
    connect(m_edit, &QLineEdit::inputRejected, this, [this] {
        showMessage(m_edit->text().size() >= m_edit->maxLength()
                        ? QStringLiteral("最多输入 %1 个字符").arg(m_edit->maxLength())
                        : QStringLiteral("不能输入控制字符"));
    });
    connect(m_edit, &QLineEdit::returnPressed, this, &CSimpleInputDialog::acceptLater);
    takeIcon();
    refresh();
}

CSimpleInputDialog::~CSimpleInputDialog() = default;

void CSimpleInputDialog::setEchoMode(QLineEdit::EchoMode mode)
{
    m_edit->setEchoMode(mode);
    refresh();
}

QLineEdit::EchoMode CSimpleInputDialog::echoMode() const
{
    return m_edit->echoMode();
}

void CSimpleInputDialog::getInput(boost::function<void(QString)> callback)
{
    m_callback = std::move(callback);
}

int CSimpleInputDialog::exec()
{
    m_edit->clear();
    showMessage(QString());
    // Not adjustSize(), which cuts the width on small screens.
    resize(sizeHint());
    m_edit->setFocus(Qt::OtherFocusReason);
    return CCommonDialog::exec();
}

void CSimpleInputDialog::accept()
{
    if (!isAcceptable()) {
        showMessage(emptyMessage());
        m_edit->setFocus(Qt::OtherFocusReason);
        return;
    }
    const QString text = m_edit->text();
    const boost::function<void(QString)> callback = m_callback;
    m_callback.clear();
    m_edit->clear();
    CCommonDialog::accept();
    // Nothing of the dialog may be used from here on: the callback may have destroyed it.
    if (callback)
        callback(text);
}

void CSimpleInputDialog::reject()
{
    m_edit->clear();
    CCommonDialog::reject();
}

/// Accepting may destroy the dialog, which must not happen inside the editor's or the button's own
/// event.
void CSimpleInputDialog::acceptLater()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isVisible())
                accept();
        },
        Qt::QueuedConnection);
}

/// Keeps every event inside: the parent's editors and buttons have the same identifiers.
bool CSimpleInputDialog::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    Q_UNUSED(param2);
    Q_UNUSED(text);
    const bool fromEdit = data == static_cast<QWidget*>(m_edit);
    if (eventId == EVENT_BUTTON_CLICKED && !fromEdit) {
        if (param1 == ID_OK)
            acceptLater();
        else if (param1 == ID_CANCEL || param1 == ID_BUTTON_CLOSE)
            reject();
    }
    return true;
}

void CSimpleInputDialog::onUiResourceChanged()
{
    CCommonDialog::onUiResourceChanged();
    takeIcon();
}

bool CSimpleInputDialog::isAcceptable() const
{
    return echoMode() == QLineEdit::Normal || !m_edit->text().trimmed().isEmpty();
}

QString CSimpleInputDialog::emptyMessage() const
{
    return QStringLiteral("密码不能为空");
}

void CSimpleInputDialog::refresh()
{
    m_ok->setEnabled(isAcceptable());
    m_ok->setToolTip(isAcceptable() ? QString() : emptyMessage());
}

void CSimpleInputDialog::showMessage(const QString& text)
{
    m_message->setText(text);
    m_edit->setToolTip(text);
}

void CSimpleInputDialog::takeIcon()
{
    const bool isKnown = CUiResource::hasKey(m_iconKey);
    setWindowIcon(CUiResource::getIcon(isKnown ? m_iconKey : QStringLiteral("gw_img_kit_lock")));
}

} // namespace KZ
