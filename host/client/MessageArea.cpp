#include "host/client/MessageArea.h"

#include "authsetting/services/AccountKey.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "host/client/AccountMessages.h"
#include "host/client/TableIds.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/WidgetList.h"

#include <QTableView>
#include <QTimer>

namespace host {

namespace {

enum Column { When, Account, Level, Text, ColumnCount };

QString accountName(const QString& key)
{
    const boost::shared_ptr<GW::CAccount> account = GW::getUserConfig()->getAccountData(key);
    return account ? GW::accountDisplayIDQs(*account)
                   : GW::accountDisplayIDQs(GW::keyToAccountInfo(key));
}

QString levelName(mbservice::MsgLevel level)
{
    switch (level) {
    case mbservice::MSG_LEVEL_DEBUG:
        return QStringLiteral("调试");
    case mbservice::MSG_LEVEL_INFO:
        return QStringLiteral("消息");
    case mbservice::MSG_LEVEL_WARNING:
        return QStringLiteral("警告");
    case mbservice::MSG_LEVEL_ERROR:
        return QStringLiteral("错误");
    }
    return QString::number(level);
}

const char* levelColorKey(mbservice::MsgLevel level)
{
    if (level == mbservice::MSG_LEVEL_ERROR)
        return "clr_danger";
    return level == mbservice::MSG_LEVEL_WARNING ? "clr_warning" : "clr_text";
}

} // namespace

MessageArea::MessageArea(const AccountMessages& messages, QWidget* parent)
    : CBaseWidget(parent), m_messages(messages)
{
    setObjectName(QStringLiteral("halden_client_messages"));
    const int space = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    auto* list = new KZ::CWidgetList(Qt::Vertical, this);
    list->setSpacing(space);

    auto* head = new KZ::CWidgetList(Qt::Horizontal, list);
    // In line with the texts of the table below.
    const int indent = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    head->setMargin(indent, 0, indent, 0);
    auto* title = new KZ::CSimpleTextWidget(QStringLiteral("账号消息"), head);
    title->setTextFontKey(QStringLiteral("fnt_default_bold"));
    head->addFixWidget(title);
    head->addStretch();
    m_onlyChosen = new KZ::CCheckBox(0, head);
    m_onlyChosen->setObjectName(QStringLiteral("halden_client_only_chosen"));
    m_onlyChosen->setText(QStringLiteral("只看所选账号"));
    m_onlyChosen->adjustSize();
    head->addFixWidget(m_onlyChosen);
    list->addFixWidget(head);

    m_table = new KZ::COddEvenRowTable(TABLE_CLIENT_MESSAGES, list);
    m_table->setFlag(0x11);
    m_table->setColumnCount(ColumnCount);
    m_table->setHeaderText(When, QStringLiteral("时间"));
    m_table->setHeaderText(Account, QStringLiteral("账号"));
    m_table->setHeaderText(Level, QStringLiteral("级别"));
    m_table->setHeaderText(Text, QStringLiteral("内容"));
    m_table->view()->setAccessibleName(title->text());
    list->addStretchWidget(m_table);
    setInnerStretchWidget(list, 0, space, 0, 0);

    connect(&messages, &AccountMessages::messageAdded, this, &MessageArea::scheduleReload);
}

MessageArea::~MessageArea() = default;

void MessageArea::setAccount(const QString& key)
{
    m_account = key;
    if (m_onlyChosen->isChecked())
        scheduleReload();
}

bool MessageArea::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    if (eventId != KZ::EVENT_CHECK_TOGGLED)
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    reload();
    return true;
}

void MessageArea::scheduleReload()
{
    // One batch reports thousands of messages in a row; they are drawn once.
    if (m_reloadScheduled)
        return;
    m_reloadScheduled = true;
    QTimer::singleShot(0, this, &MessageArea::reload);
}

void MessageArea::reload()
{
    m_reloadScheduled = false;
    m_table->clear();
    const QList<AccountMessage>& messages = m_messages.messages();
    for (auto message = messages.crbegin(); message != messages.crend(); ++message) {
        if (m_onlyChosen->isChecked() && message->accountKey != m_account)
            continue;
        const int row = m_table->addRowBegin();
        m_table->setItemText(row, When,
                             message->when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
        m_table->setItemText(row, Account, accountName(message->accountKey));
        m_table->setItemText(row, Level, levelName(message->level));
        m_table->setItemTextColorKey(row, Level, levelColorKey(message->level));
        m_table->setItemText(row, Text, message->text);
        m_table->addRowEnd(true);
    }
}

} // namespace host
