#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"
#include "kit/tips/TipPlace.h"
#include "kit/tips/TipTexts.h"

#include <QFrame>
#include <QPointer>
#include <QTimer>

class QLabel;
class QToolButton;

namespace KZ {

class CAnnouncer;
class CTipBody;
class CTipKeys;

/// A message beside the widget that it is about. It takes no focus and closes by itself.
///
/// Texts of one anchor and one topic join into one tip that counts and lists them; a tip of another
/// topic finds room beside it. An equal text that comes for several anchors within one turn of the
/// event loop is shown once, at the first anchor that the user can see. How long it stays: a tip
/// with one text (however often repeated) for its duration, one with several hints about an input
/// (kind 2) for their durations together, any other list until it is dismissed. Time stands still
/// while the pointer is over the tip or the user is in another program, where the tip hides. A
/// click on a single text and the close button of a list dismiss it, and so does Esc a list that
/// stays, before the window gets to see the key; in such a list Alt+PageUp and Alt+PageDown scroll
/// and Ctrl+Shift+C copies. Hiding its window closes the tip. GUI thread only.
class KZKIT_EXPORT CMessageTip : public QFrame, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Shows `text` (plain text of any length, control characters made visible) at `anchor`.
    /// `alignment` is a combination of Qt::Alignment flags: AlignTop above the anchor, else below
    /// it; AlignRight with the right edges in line, AlignHCenter centred, else the left edges in
    /// line (0x41 = below, left). `kind`: 1 note, 2 hint about an input, 3 outcome of an action;
    /// others count as 1. `level`: from 2 on assistive tools are told at once. `duration` in
    /// hundredths of a second; without a positive one the tip stays until it is dismissed.
    /// `topic` is the number of what the text belongs to, such as a request; 0 stands for nothing.
    /// A hidden anchor is replaced by its nearest visible ancestor, a null one, or one whose
    /// window a modal dialog blocks, by the window that the user works in; without any window the
    /// tip stands in the middle of the screen. An anchor that is hidden or destroyed while the tip
    /// is shown leaves it where it is.
    static void showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                        int duration, quint64 topic);
    /// The same without a topic.
    static void showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                        int duration);

    /// The tips that have not been closed, oldest first; not owned.
    static QList<CMessageTip*> visibleTips();

    /// Closes every tip.
    static void closeAll();

    ~CMessageTip() override;

    /// Each text as given, in the order of showTip(), those that came for other anchors too.
    QStringList texts() const;
    /// The kind of the latest text.
    int kind() const { return m_texts.kind(); }
    quint64 topic() const { return m_topic; }
    /// The widget given to showTip(), null when there was none or it has been destroyed.
    QWidget* anchor() const { return m_anchor; }
    /// Whether the tip stays until it is dismissed.
    bool isLasting() const;

    /// Closes the tip; it is destroyed once control returns to the event loop.
    void dismiss();
    /// Puts all texts that the tip tells on the clipboard, one below the other.
    void copyTexts() const;

    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    CMessageTip(QWidget* window, QWidget* anchor, int alignment, quint64 topic);

    static CMessageTip* tipFor(QWidget* anchor, int alignment, quint64 topic);
    bool takes(QWidget* anchor, quint64 topic) const;
    void add(const QString& text, int kind, int level, int duration);
    void addEcho(const QString& text, int kind, int level, int duration);
    void withdraw(const QString& text, int kind, int count);
    void takeTheme();
    void refresh();
    void announce();
    void arrange();
    void runClock();
    void onClockRunOut();
    void updateAway(Qt::ApplicationState state);
    void onTextClicked();

    const QPointer<QWidget> m_window;
    const QPointer<QWidget> m_anchor;
    const bool m_anchored;
    const int m_alignment;
    const quint64 m_topic;
    bool m_loud = false;
    bool m_hovered = false;
    bool m_away = false;
    CTipTexts m_texts;
    CTipPlace m_place;
    int m_iconTop = 0;
    CTipBody* m_body;
    QLabel* m_count;
    QToolButton* m_close;
    CTipKeys* m_keys;
    CAnnouncer* m_announcer;
    QTimer m_refreshTimer;
    QTimer m_arrangeTimer;
    QTimer m_closeTimer;
};

} // namespace KZ
