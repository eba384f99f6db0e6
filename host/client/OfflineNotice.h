#pragma once

#include "kit/widgets/BaseWidget.h"

class QDateTime;
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

    /// Shows the notice and tells assistive tools; `when` is the moment that the user reads.
    void showSince(const QDateTime& when);

    void onUiResourceChanged() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showIcon();

    QLabel* m_icon;
    KZ::CSimpleTextWidget* m_title;
    KZ::CSimpleTextWidget* m_explanation;
};

} // namespace host
