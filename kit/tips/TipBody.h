#pragma once

#include "kit/tips/TipTexts.h"

#include <QPlainTextEdit>

namespace KZ {

/// The texts inside a tip: wrapped plain text, scrolled when there is too much of it and laid out
/// only where it is seen, so that thousands of texts cost no more than a few.
class CTipBody : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CTipBody(QWidget* parent);

    /// Takes over what has changed in `texts` since the last call.
    void showTexts(const CTipTexts& texts);

    /// Takes the size that shows all texts, within the limits; beyond `maxHeight` it scrolls.
    void resizeWithin(int maxWidth, int maxHeight);

    /// Scrolls by pages, upwards when negative.
    void scrollPages(int pages);

Q_SIGNALS:
    /// The user clicked without selecting anything.
    void clicked();
    /// The user asked for all texts.
    void copyRequested();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString line(const CTipTexts& texts, int entry) const;

    int m_shown = 0;
    int m_withdrawals = 0;
    QString m_lastLine;
    QPoint m_pressed;
};

} // namespace KZ
