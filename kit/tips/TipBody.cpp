#include "kit/tips/TipBody.h"

#include "kit/resources/KitStyle.h"
#include "kit/widgets/Menu.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace KZ {

namespace {

constexpr QTextOption::WrapMode WRAP_MODE = QTextOption::WrapAtWordBoundaryOrAnywhere;
/// A list this long fills its room anyway; measuring more texts would only take time.
constexpr int MEASURED_BLOCKS = 40;

QSizeF laidOutSize(const QString& text, const QFont& font, int width, int maxHeight)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(WRAP_MODE);
    layout.setTextOption(option);
    QSizeF size(0, 0);
    layout.beginLayout();
    while (size.height() < maxHeight) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        line.setPosition(QPointF(0, size.height()));
        size.rwidth() = std::max(size.width(), line.naturalTextWidth());
        size.rheight() += line.height();
    }
    layout.endLayout();
    return size;
}

} // namespace

CTipBody::CTipBody(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setWordWrapMode(WRAP_MODE);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    applyKitStyle(this);
}

QString CTipBody::line(const CTipTexts& texts, int entry) const
{
    QString text = texts.shownText(entry);
    // A line break inside one text must not look like the beginning of the next one's paragraph.
    text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    if (texts.entryCount() > 1)
        text.prepend(QStringLiteral("%1. ").arg(entry + 1));
    return text;
}

void CTipBody::showTexts(const CTipTexts& texts)
{
    const int count = texts.entryCount();
    if ((m_shown == 1 && count > 1) || m_withdrawals != texts.withdrawals()) {
        clear();
        m_shown = 0;
        m_withdrawals = texts.withdrawals();
    } else if (m_shown > 0 && line(texts, m_shown - 1) != m_lastLine) {
        QTextCursor cursor(document()->lastBlock());
        cursor.select(QTextCursor::BlockUnderCursor);
        cursor.removeSelectedText();
        --m_shown;
    }
    if (m_shown == count)
        return;
    QStringList added;
    for (int entry = m_shown; entry < count; ++entry)
        added.append(line(texts, entry));
    m_lastLine = added.constLast();
    const int scrolledTo = verticalScrollBar()->value();
    if (m_shown == 0)
        setPlainText(added.join(QLatin1Char('\n')));
    else
        appendPlainText(added.join(QLatin1Char('\n')));
    m_shown = count;
    verticalScrollBar()->setValue(scrolledTo);
}

void CTipBody::resizeWithin(int maxWidth, int maxHeight)
{
    QSizeF size(0, 0);
    int measured = 0;
    QTextBlock block = document()->firstBlock();
    for (; block.isValid() && size.height() <= maxHeight && measured < MEASURED_BLOCKS;
         block = block.next(), ++measured) {
        const QSizeF part = laidOutSize(block.text(), font(), maxWidth, maxHeight);
        size = QSizeF(std::max(size.width(), part.width()), size.height() + part.height());
    }
    const bool scrolls = block.isValid() || size.height() > maxHeight;
    // Left to itself, a bar that was needed at an earlier size narrows the text and so stays
    // needed.
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    const int line = fontMetrics().lineSpacing();
    if (scrolls)
        resize(maxWidth, std::max(line, maxHeight - maxHeight % line));
    else
        resize(static_cast<int>(std::ceil(size.width())) + 1,
               static_cast<int>(std::ceil(size.height())) + 1);
}

void CTipBody::scrollPages(int pages)
{
    QScrollBar* const bar = verticalScrollBar();
    bar->setValue(bar->value() + pages * bar->pageStep());
}

void CTipBody::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new CMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (textCursor().hasSelection())
        menu->addAction(QStringLiteral("复制选中文字"), this, &QPlainTextEdit::copy);
    menu->addAction(QStringLiteral("复制全部"), this, &CTipBody::copyRequested);
    menu->popup(event->globalPos());
}

void CTipBody::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->globalPosition().toPoint();
    QPlainTextEdit::mousePressEvent(event);
}

void CTipBody::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    const QPoint moved = event->globalPosition().toPoint() - m_pressed;
    if (event->button() == Qt::LeftButton && !textCursor().hasSelection() &&
        moved.manhattanLength() < QApplication::startDragDistance())
        Q_EMIT clicked();
}

} // namespace KZ
