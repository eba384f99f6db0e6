#pragma once

#include <QLineEdit>
#include <QPersistentModelIndex>

namespace KZ {

/// The line edit in which the user types a cell's text. A refused text stays in it, marked by a
/// frame, a tool tip and an accessible description, until he types on.
class CCellEditor : public QLineEdit
{
    Q_OBJECT

public:
    CCellEditor(const QModelIndex& index, const QString& text, QWidget* parent);

    const QPersistentModelIndex& index() const { return m_index; }
    /// Whether the user has typed something that nobody has decided about yet.
    bool isUndecided() const { return !m_refused && text() != m_initialText; }
    bool isRefused() const { return m_refused; }
    void setRefused(bool refused);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QPersistentModelIndex m_index;
    const QString m_initialText;
    bool m_refused = false;
};

} // namespace KZ
