#pragma once

#include <QAccessible>
#include <QPointer>

namespace KZ {

class CTableModel;
class CTableView;

/// Base of what a table consists of for assistive tools. The parts are no widgets: the table makes
/// one when a tool asks for it and deletes it when its row goes.
class CAccessibleTablePart : public QAccessibleInterface
{
public:
    explicit CAccessibleTablePart(CTableView* view);
    ~CAccessibleTablePart() override;

    bool isValid() const override { return !m_view.isNull(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

protected:
    CTableView* view() const { return m_view; }
    CTableModel& model() const;
    /// A rectangle of the viewport on the screen.
    QRect onScreen(const QRect& inViewport) const;
    /// Enabled as the table is, and invisible unless some of the rectangle can be seen.
    QAccessible::State stateAt(const QRect& inViewport) const;

private:
    const QPointer<CTableView> m_view;
};

} // namespace KZ
