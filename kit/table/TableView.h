#pragma once

#include <QTableView>

namespace KZ {

class ITableViewClient;

/// The view inside a COddEvenRowTable. It tells its client before it paints and when cells move,
/// offers it every key first, and is left by Tab at once, also from a row's widget.
class CTableView : public QTableView
{
    Q_OBJECT

public:
    CTableView(ITableViewClient& client, QWidget* parent);

    /// Carries out a pending layout, so that positions and scroll ranges are valid.
    void layoutNow();
    /// Opens the editor of a cell; false, silently, when that cannot be.
    bool editCell(const QModelIndex& index);

    ITableViewClient& client() const { return m_client; }

    void keyboardSearch(const QString& search) override;

protected Q_SLOTS:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void resizeEvent(QResizeEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    int sizeHintForColumn(int column) const override;

private:
    void paintGrounds(const QRect& room);
    template <class Action>
    void userAction(Action action);

    ITableViewClient& m_client;
};

} // namespace KZ
