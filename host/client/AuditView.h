#pragma once

#include "backend/store/AuditEntry.h"
#include "kit/widgets/BaseWidget.h"

#include <QVector>

namespace KZ {
class CLineEdit;
class COddEvenRowTable;
class CSimpleTextWidget;
} // namespace KZ

namespace host {

/// The audit trail of the signed-in user, newest first, reduced to the entries in which all words
/// that he typed occur. Ctrl+C copies the selected rows. GUI thread only.
class AuditView : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    /// How many of the newest entries are shown.
    static constexpr int capacity = 5000;

    explicit AuditView(QWidget* parent);
    ~AuditView() override;

    /// Shows `trail`, newest first.
    void setTrail(QVector<backend::AuditEntry> trail);

    KZ::COddEvenRowTable* table() const { return m_table; }
    KZ::CLineEdit* filterEdit() const { return m_filter; }

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

private:
    void fill();

    QVector<backend::AuditEntry> m_trail;
    KZ::CLineEdit* m_filter;
    KZ::CSimpleTextWidget* m_count;
    KZ::COddEvenRowTable* m_table;
};

} // namespace host
