#pragma once

#include <QObject>
#include <QString>

class QLineEdit;
class QModelIndex;
class QTreeWidget;
class QTreeWidgetItem;

namespace GW {

class CNodeMarkDelegate;

/// The box inside the tree's rectangle in which the user types what the nodes shall contain.
///
/// While it is open the tree shows the nodes that contain the text and those above them. One match
/// is marked: the first after each change of the text, another one after Up or Down. Only Enter
/// makes it the current node, and closes the box; Esc closes it without. Closing shows all nodes.
/// The tree keeps its focus policy. Owned by the tree. GUI thread only.
class CNavigatorFilter : public QObject
{
    Q_OBJECT

public:
    /// `navigator` stands in its window already.
    explicit CNavigatorFilter(QTreeWidget* navigator);

    /// Opens the box with an empty text, or selects the text of the open one; it gets the focus.
    void open();
    void close();
    bool isOpen() const;

    /// Narrows nodes that have been built anew, without scrolling; the mark stays at its place.
    void narrow();

    QLineEdit* edit() const { return m_edit; }
    /// The marked match, null without one.
    QTreeWidgetItem* mark() const;

Q_SIGNALS:
    /// The box was closed; its focus, if it had it, is at the window now.
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool handleKey(int key);
    void takeText();
    void choose();
    void moveMark(bool down);
    void setMark(QTreeWidgetItem* item);
    bool isMatch(const QTreeWidgetItem* item) const;
    bool narrowBelow(QTreeWidgetItem* parent);
    QTreeWidgetItem* findMatch(bool atMarkedPlace) const;
    void placeEdit();

    QTreeWidget* m_navigator;
    QLineEdit* m_edit;
    CNodeMarkDelegate* m_delegate;
    /// The text that the nodes are narrowed to.
    QString m_text;
    bool m_isMarked = false;
    /// Page, sub-page and key of the marked node, by which a rebuilt tree finds it again.
    int m_markedPage = 0;
    int m_markedSubPage = 0;
    QString m_markedKey;
};

} // namespace GW
