#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QPushButton>

namespace KZ {

/// Base of the kit's buttons. A click by mouse, Space or Enter on the focused button delivers
/// EVENT_BUTTON_CLICKED with param1 = id and param2 = command. Its shortcut clicks at once, and
/// once however long the key is held. A button is never the one that Enter in an editor presses.
/// New buttons already have the size of their hint.
class KZKIT_EXPORT CButton : public CEventWidgetT<QPushButton>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    CButton(int id, int command, QWidget* parent);
    CButton(int id, QWidget* parent);
    ~CButton() override;

    int id() const { return m_id; }
    void setId(int id) { m_id = id; }
    int command() const { return m_command; }

    /// Shows the icon of `iconKey` before the text with `gap` pixels between; `state` 0 is the
    /// icon of the button, 1 the one it shows instead while it is checked.
    void setIcon(const QString& iconKey, int state = 0, int gap = 6);
    void clearIcon();
    QString iconKey(int state = 0) const { return state == 1 ? m_checkedIconKey : m_iconKey; }

    /// Takes the font of the text from the registry instead of from the parent widget.
    void setTextFontKey(const QString& key);
    QString textFontKey() const { return m_fontKey; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

public Q_SLOTS:
    /// Clicks at once. Qt's own waits until the button has been seen to go down, and by then it may
    /// be disabled or another page's.
    void animateClick() { click(); }

protected:
    /// How the button stands out from others; Primary is the main action of a page.
    enum class Look { Normal, Primary, Flat };

    virtual Look look() const;
    /// Registry keys of the height and of the room left and right of the content.
    virtual QString heightKey() const;
    virtual QString paddingKey() const;

    /// Gives the button its size hint's size; for the end of each final class's constructor.
    void takeHintSize();

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void clickByShortcut();
    QString shownIconKey() const;
    QString contentColorKey() const;

    int m_id;
    const int m_command;
    int m_iconGap = 0;
    QString m_iconKey;
    QString m_checkedIconKey;
    QString m_fontKey;
};

} // namespace KZ
