#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QDateTime>

class QLabel;

namespace KZ {
class CSimpleTextWidget;
}

namespace host {

/// The strip above the accounts while the server cannot be reached: since when, what the shown data
/// are worth, and what has to wait. Hidden at first. GUI thread only.
class OfflineNotice : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    explicit OfflineNotice(QWidget* parent);

    /// Shows the notice and tells assistive tools. `when` is the moment that the user reads, of the
    /// first call since the notice was hidden; `refusal` is why the server does not take him back.
    void showSince(const QDateTime& when, const QString& refusal = {});

    void onUiResourceChanged() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showIcon();

    QDateTime m_since;
    QLabel* m_icon;
    KZ::CSimpleTextWidget* m_title;
    KZ::CSimpleTextWidget* m_explanation;
};

} // namespace host
