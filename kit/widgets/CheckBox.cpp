#include "kit/widgets/CheckBox.h"

#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"

namespace KZ {

CCheckBox::CCheckBox(int id, QWidget* parent) : CEventWidgetT<QCheckBox>(parent), m_id(id)
{
    setStyle(kitStyle());
    // clicked() comes from the user's hand only, toggled() from setChecked() as well.
    connect(this, &QCheckBox::clicked, this, [this](bool checked) {
        deliverEvent(EVENT_CHECK_TOGGLED, m_id, checked ? 1 : 0, QString(),
                     static_cast<QWidget*>(this));
    });
}

CCheckBox::~CCheckBox() = default;

void CCheckBox::onUiResourceChanged()
{
    update();
}

} // namespace KZ
