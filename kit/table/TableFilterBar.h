#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

namespace KZ {

/// The slim bar below a table in which the user types what the rows shall contain.
class CTableFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit CTableFilterBar(QWidget* parent);

    QLineEdit* edit() const { return m_edit; }
    /// Shows how many of all rows are left.
    void setCount(int shown, int all);
    /// Takes sizes and icons from the registry again.
    void updateResources();

Q_SIGNALS:
    void textChanged(const QString& text);
    /// The user wants neither filter nor bar any more.
    void closed();
    /// The user has done typing and goes on in the table; `key` is what he left with.
    void left(int key);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QLineEdit* const m_edit;
    QLabel* const m_count;
    QToolButton* const m_close;
};

} // namespace KZ
