#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QString>

#include <utility>
#include <vector>

class QBoxLayout;
class QSpacerItem;

namespace KZ {

/// Widgets in a row or a column. Margins are 0 and the spacing is the registry's until set; all
/// lengths are in pixels. Ownership of every added widget goes to the list.
class KZKIT_EXPORT CWidgetList : public CBaseWidget
{
    Q_OBJECT

public:
    CWidgetList(Qt::Orientation orientation, QWidget* parent);

    void setMargin(int left, int top, int right, int bottom);
    void setSpacing(int spacing);
    /// Takes the spacing from the registry, now and whenever its sizes change.
    void setSpacingKey(const QString& sizeKey);

    /// Appends a widget that keeps its length along the list: the size it was given by resize() or
    /// setFixedSize() before, otherwise its size hint. Across the list an editor, a button or a
    /// text keeps its own size as well, other widgets fill the list.
    void addFixWidget(QWidget* widget);

    /// Appends a widget that shares the room left over in proportion to `stretch`. `anchor` says
    /// to which edges across the list it holds: 1 leading, 2 trailing, 3 both, 0 centred.
    void addStretchWidget(QWidget* widget, int stretch = 1, int anchor = 3, bool hidden = false);

    /// Lets a widget that addFixWidget() has appended keep the size that it has now.
    void keepSizeOf(const QWidget* widget);

    /// Appends an empty space of fixed length, to which no spacing is added.
    void addFixSpace(int length);
    /// The same with a length from the registry, now and whenever its sizes change.
    void addFixSpace(const QString& sizeKey);

    /// Appends an empty space that takes the room left over.
    void addStretch();

    Qt::Orientation orientation() const { return m_orientation; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

private:
    /// Where the next item goes: before the spring that every list ends with.
    int end() const;
    QSpacerItem* insertSpace(int length);
    void setLength(QSpacerItem* space, int length) const;

    const Qt::Orientation m_orientation;
    QBoxLayout* m_layout;
    QString m_spacingKey;
    std::vector<std::pair<QSpacerItem*, QString>> m_keyedSpaces;
};

} // namespace KZ
