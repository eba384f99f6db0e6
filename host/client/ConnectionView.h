#pragma once

#include "kit/widgets/BaseWidget.h"

class QLabel;

namespace KZ {
class CSimpleTextWidget;
}

namespace host {

/// Icon and text in the status bar that tell whether the server can be reached. GUI thread only.
class ConnectionView : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    explicit ConnectionView(QWidget* parent);

    /// `refusal` is why the server does not take the user back; empty when it is out of reach.
    void setOnline(bool isOnline, const QString& refusal = {});
    /// What is shown now.
    QString text() const;

    void onUiResourceChanged() override;

private:
    void showIcon();

    QLabel* m_icon;
    KZ::CSimpleTextWidget* m_text;
    bool m_isOnline = true;
};

} // namespace host
