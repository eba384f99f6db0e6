#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QString>

namespace KZ {
class CCheckBox;
class COddEvenRowTable;
} // namespace KZ

namespace host {

class AccountMessages;

/// The messages about the user's accounts, newest first: of all accounts or only of the chosen one.
/// GUI thread only.
class MessageArea : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    /// `messages` must outlive this widget.
    MessageArea(const AccountMessages& messages, QWidget* parent);
    ~MessageArea() override;

    /// The account whose messages are shown while only those of one account are; empty for none.
    void setAccount(const QString& key);

    KZ::COddEvenRowTable* table() const { return m_table; }

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

private:
    void scheduleReload();
    void reload();

    const AccountMessages& m_messages;
    QString m_account;
    KZ::CCheckBox* m_onlyChosen;
    KZ::COddEvenRowTable* m_table;
    bool m_reloadScheduled = false;
};

} // namespace host
