#include "kit/widgets/EditorDisplay.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>

namespace KZ {

namespace {

/// What QLineEdit leaves free on both sides of its text.
constexpr int TEXT_MARGIN = 2;

int textRoom(const QLineEdit* editor)
{
    QStyleOptionFrame option;
    option.initFrom(editor);
    option.lineWidth =
        editor->hasFrame() ? editor->style()->pixelMetric(QStyle::PM_DefaultFrameWidth) : 0;
    return editor->style()->subElementRect(QStyle::SE_LineEditContents, &option, editor).width() -
           2 * TEXT_MARGIN;
}

} // namespace

void showTextFromStart(QLineEdit* editor)
{
    if (editor->isReadOnly() || !editor->isEnabled())
        editor->setCursorPosition(0);
}

bool showCutText(const QLineEdit* editor, const QHelpEvent& event)
{
    const QString text = editor->text();
    if (editor->echoMode() != QLineEdit::Normal ||
        editor->fontMetrics().horizontalAdvance(text) <= textRoom(editor))
        return false;
    QToolTip::showText(event.globalPos(),
                       QStringLiteral("<qt>") + text.toHtmlEscaped() + QStringLiteral("</qt>"));
    return true;
}

} // namespace KZ
