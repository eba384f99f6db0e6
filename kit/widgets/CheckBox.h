#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QCheckBox>

namespace KZ {

/// A check box that delivers EVENT_CHECK_TOGGLED when the user ticks or unticks it; setChecked()
/// by the program delivers nothing.
class KZKIT_EXPORT CCheckBox : public CEventWidgetT<QCheckBox>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    CCheckBox(int id, QWidget* parent);
    ~CCheckBox() override;

    int id() const { return m_id; }
    void setId(int id) { m_id = id; }

    void onUiResourceChanged() override;

private:
    int m_id;
};

} // namespace KZ
