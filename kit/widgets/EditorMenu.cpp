#include "kit/widgets/EditorMenu.h"

#include "kit/widgets/Menu.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>

namespace KZ {

namespace {

template <class Slot>
void addEntry(QMenu* menu, QLineEdit* editor, const QString& text, QKeySequence::StandardKey keys,
              bool enabled, Slot slot)
{
    // The keys are only shown; the editor itself listens to them.
    const QString shown = QKeySequence(keys).toString(QKeySequence::NativeText);
    QAction* const action =
        menu->addAction(shown.isEmpty() ? text : QString(text + QLatin1Char('\t') + shown));
    action->setEnabled(enabled);
    QObject::connect(action, &QAction::triggered, editor, slot);
}

} // namespace

void showEditorMenu(QLineEdit* editor, const QPoint& globalPosition)
{
    auto* const menu = new CMenu(editor);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool writable = !editor->isReadOnly();
    // What a hidden text says must not get out through the clipboard.
    const bool selected = editor->hasSelectedText();
    const bool copyable = selected && editor->echoMode() == QLineEdit::Normal;
    const bool filled = !QGuiApplication::clipboard()->text().isEmpty();
    addEntry(menu, editor, QStringLiteral("撤销"), QKeySequence::Undo,
             writable && editor->isUndoAvailable(), &QLineEdit::undo);
    addEntry(menu, editor, QStringLiteral("重做"), QKeySequence::Redo,
             writable && editor->isRedoAvailable(), &QLineEdit::redo);
    menu->addSeparator();
    addEntry(menu, editor, QStringLiteral("剪切"), QKeySequence::Cut, writable && copyable,
             &QLineEdit::cut);
    addEntry(menu, editor, QStringLiteral("复制"), QKeySequence::Copy, copyable, &QLineEdit::copy);
    addEntry(menu, editor, QStringLiteral("粘贴"), QKeySequence::Paste, writable && filled,
             &QLineEdit::paste);
    addEntry(menu, editor, QStringLiteral("删除"), QKeySequence::Delete, writable && selected,
             &QLineEdit::del);
    menu->addSeparator();
    addEntry(menu, editor, QStringLiteral("全选"), QKeySequence::SelectAll,
             !editor->text().isEmpty(), &QLineEdit::selectAll);
    menu->popup(globalPosition);
}

} // namespace KZ
