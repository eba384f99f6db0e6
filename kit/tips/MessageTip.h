#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QElapsedTimer>
#include <QFrame>
#include <QPointer>
#include <QStringList>
#include <QTimer>

namespace KZ {

class CTipBody;

/// A message beside the widget that it is about. It takes no focus and closes by itself.
///
/// Tips of one anchor join into one that counts and lists them. How long it stays: a tip with one
/// text (however often repeated) for its duration, one with several hints about an input (kind 2)
/// for their durations together, any other list until it is dismissed. Time stands still while the
/// pointer is over the tip or the user is in another program. A click on a single text, the close
/// button of a list and, for a list that stays, Esc dismiss it; hiding its window closes it too.
/// GUI thread only.
class KZKIT_EXPORT CMessageTip : public QFrame, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Shows `text` (plain text of any length, control characters made visible) at `anchor`.
    /// `alignment` is a combination of Qt::Alignment flags: AlignTop above the anchor, else below
    /// it; AlignRight with the right edges in line, AlignHCenter centred, else the left edges in
    /// line (0x41 = below, left). `kind`: 1 note, 2 hint about an input, 3 outcome of an action.
    /// `level`: from 2 on assistive tools are told at once. `duration` in hundredths of a second.
    /// A hidden anchor is replaced by its nearest visible ancestor, a null one, or one whose
    /// window a modal dialog blocks, by the active window; without any window the tip stands in the
    /// middle of the screen. The anchor may be destroyed while the tip is shown.
    static void showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                        int duration);

    /// The tips that are shown, oldest first; not owned.
    static QList<CMessageTip*> visibleTips();

    /// Closes every tip.
    static void closeAll();

    ~CMessageTip() override;

    /// Each text in the order of showTip().
    QStringList texts() const;
    /// The kind of the latest text.
    int kind() const;
    /// The widget given to showTip(), null when there was none or it has been destroyed.
    QWidget* anchor() const;
    /// Whether the tip stays until it is dismissed.
    bool isLasting() const;

    /// Closes the tip and schedules its destruction.
    void dismiss();
    /// Puts all texts on the clipboard, one per line.
    void copyTexts() const;

    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    CMessageTip(QWidget* window, QWidget* anchor, int alignment);

    void add(const QString& text, int kind, int level, int duration);
    void takeTheme();
    void refresh();
    void arrange();
    void place();
    void takeShape();
    void runClock();
    bool isClockHeld() const;
    void onApplicationStateChanged();
    bool handleWindowKey(QKeyEvent* event, bool isShortcutOverride);

    QPointer<QWidget> m_anchor;
    const bool m_anchored;
    const int m_alignment;
    int m_kind = 0;
    bool m_loud = false;
    bool m_lasting = false;
    bool m_dismissed = false;
    bool m_hovered = false;
    bool m_away = false;
    QStringList m_texts;
    CTipTexts m_entries;
    /// Milliseconds that the tip stays when nothing holds its clock.
    int m_duration = 0;
    CTipPlace m_place;
    CTipBody* m_body;
    CSimpleTextWidget* m_count;
    QToolButton* m_close;
    QTimer m_refreshTimer;
    QTimer m_placeTimer;
    QTimer m_closeTimer;
};

} // namespace KZ
