#include "kit/widgets/EditorMenu.h"

#include "kit/widgets/Menu.h"

#include <QAction>
#include <QLineEdit>

#include <array>
#include <memory>
#include <utility>

namespace KZ {

namespace {

/// Object names that Qt gives the actions of the menu, with the texts shown instead of its own.
const std::array<std::pair<QLatin1String, QString>, 7>& labels()
{
    static const std::array<std::pair<QLatin1String, QString>, 7> all{{
        {QLatin1String("edit-undo"), QStringLiteral("撤销")},
        {QLatin1String("edit-redo"), QStringLiteral("重做")},
        {QLatin1String("edit-cut"), QStringLiteral("剪切")},
        {QLatin1String("edit-copy"), QStringLiteral("复制")},
        {QLatin1String("edit-paste"), QStringLiteral("粘贴")},
        {QLatin1String("edit-delete"), QStringLiteral("删除")},
        {QLatin1String("select-all"), QStringLiteral("全选")},
    }};
    return all;
}

void relabel(QAction* action)
{
    for (const auto& [name, text] : labels()) {
        if (action->objectName() != name)
            continue;
        const QString shortcut = action->text().section(QLatin1Char('\t'), 1);
        action->setText(shortcut.isEmpty() ? text : QString(text + QLatin1Char('\t') + shortcut));
        action->setIcon(QIcon());
        return;
    }
}

} // namespace

void showEditorMenu(QLineEdit* editor, const QPoint& globalPosition)
{
    QMenu* const standard = editor->createStandardContextMenu();
    if (!standard)
        return;
    auto* const menu = new CMenu(editor);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction*> actions = standard->actions();
    for (QAction* action : actions) {
        relabel(action);
        // The standard menu owns its actions; reparented they live as long as the shown one.
        action->setParent(menu);
        menu->addAction(action);
    }
    delete standard;
    menu->popup(globalPosition);
}

} // namespace KZ
