#include "host/client/AuditView.h"

#include "host/client/TableIds.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/WidgetList.h"

#include <QTableView>

#include <algorithm>
#include <utility>

namespace host {

namespace {

enum Column { When, Actor, Action, OtherUser, Account, Result, Detail, ColumnCount };

QStringList cells(const backend::AuditEntry& entry)
{
    QStringList texts;
    texts.resize(ColumnCount);
    texts[When] = entry.when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    texts[Actor] = entry.actor.isEmpty() ? QStringLiteral("系统") : entry.actor;
    texts[Action] = entry.actionText();
    texts[OtherUser] = entry.otherUser;
    texts[Account] = entry.account;
    texts[Result] = entry.ok ? QStringLiteral("成功") : QStringLiteral("失败");
    texts[Detail] = entry.ok || entry.detail.isEmpty()
                        ? entry.detail + entry.error
                        : QString(entry.detail + QStringLiteral("；") + entry.error);
    return texts;
}

bool matches(const QStringList& texts, const QStringList& words)
{
    return std::all_of(words.begin(), words.end(), [&texts](const QString& word) {
        return std::any_of(texts.begin(), texts.end(), [&word](const QString& text) {
            return text.contains(word, Qt::CaseInsensitive);
        });
    });
}

} // namespace

AuditView::AuditView(QWidget* parent) : CBaseWidget(parent)
{
    setObjectName(QStringLiteral("halden_client_audit"));
    const int space = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    auto* list = new KZ::CWidgetList(Qt::Vertical, this);
    list->setSpacing(space);

    auto* head = new KZ::CWidgetList(Qt::Horizontal, list);
    // In line with the texts of the table below.
    const int indent = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    head->setMargin(indent, 0, indent, 0);
    auto* title = new KZ::CSimpleTextWidget(QStringLiteral("筛选"), head);
    head->addFixWidget(title);
    m_filter = new KZ::CLineEdit(0, head);
    m_filter->setPlaceholderText(QStringLiteral("用户、账号、操作或日期"));
    m_filter->setClearButtonEnabled(true);
    m_filter->resize(KZ::CUiResource::getSize(QStringLiteral("gw_siz_client_filter_width")),
                     m_filter->height());
    title->setAccessibleTarget(m_filter);
    head->addFixWidget(m_filter);
    m_count = new KZ::CSimpleTextWidget(QString(), head);
    m_count->setTextColorKey(QStringLiteral("clr_text_quiet"));
    head->addFixWidget(m_count);
    head->addStretch();
    list->addFixWidget(head);

    m_table = new KZ::COddEvenRowTable(TABLE_CLIENT_AUDIT, list);
    m_table->setFlag(0x11);
    m_table->setColumnCount(ColumnCount);
    m_table->setHeaderText(When, QStringLiteral("时间"));
    m_table->setHeaderText(Actor, QStringLiteral("操作人"));
    m_table->setHeaderText(Action, QStringLiteral("操作"));
    m_table->setHeaderText(OtherUser, QStringLiteral("对方用户"));
    m_table->setHeaderText(Account, QStringLiteral("账号"));
    m_table->setHeaderText(Result, QStringLiteral("结果"));
    m_table->setHeaderText(Detail, QStringLiteral("说明"));
    m_table->view()->setAccessibleName(QStringLiteral("操作记录"));
    list->addStretchWidget(m_table);
    setInnerStretchWidget(list, 0, space, 0, 0);
    // The button in the editor clears it without a keystroke, so without a kit event.
    connect(m_filter, &QLineEdit::textChanged, this, &AuditView::fill);
}

AuditView::~AuditView() = default;

void AuditView::setTrail(QVector<backend::AuditEntry> trail)
{
    m_trail = std::move(trail);
    fill();
}

bool AuditView::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    switch (eventId) {
    case KZ::EVENT_ROW_SELECTED:
    case KZ::EVENT_TEXT_EDITED:
    case KZ::EVENT_TEXT_COMMITTED:
    case KZ::EVENT_FOCUS_LEFT:
        return true;
    default:
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    }
}

void AuditView::fill()
{
    const QStringList words = m_filter->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    m_table->clear();
    for (const backend::AuditEntry& entry : std::as_const(m_trail)) {
        const QStringList texts = cells(entry);
        if (!matches(texts, words))
            continue;
        const int row = m_table->addRowBegin();
        for (int column = 0; column < ColumnCount; ++column)
            m_table->setItemText(row, column, texts[column]);
        m_table->setItemTextColorKey(row, Result, entry.ok ? "clr_success" : "clr_danger");
        m_table->setItemToolTip(row, Detail, texts[Detail]);
        m_table->addRowEnd(true);
    }
    m_count->setText(
        words.isEmpty()
            ? QStringLiteral("共 %1 条").arg(m_trail.size())
            : QStringLiteral("%1 / %2 条").arg(m_table->rowCount()).arg(m_trail.size()));
}

} // namespace host
