#pragma once

#include "kit/widgets/BaseWidget.h"

class QStackedWidget;
class QTabBar;

namespace KZ {

/// A row of tabs above a stack of widgets. Ctrl+Tab and Ctrl+Shift+Tab step through the tabs from
/// anywhere in the window.
class KZKIT_EXPORT CStandardTabControl : public CBaseWidget
{
    Q_OBJECT

public:
    explicit CStandardTabControl(QWidget* parent);

    /// Appends a tab and takes ownership of its widget; returns its index. The first tab becomes
    /// the current one without an event.
    int addTabWidget(const QString& title, QWidget* widget);

    /// The widget of a tab, null for an index that does not exist.
    QWidget* getTabWidget(int index) const;

    int tabCount() const;

    /// -1 without a tab.
    int currentTabIndex() const;

    /// Shows a tab, tells its CBaseWidget that it is active and delivers EVENT_TAB_ACTIVATED, also
    /// when the tab is current already. An index that does not exist changes nothing: false.
    bool activateTab(int index);

    /// Puts `widget` at the right end of the tab row and takes ownership; null removes and deletes
    /// the one that is there.
    void setCornerWidget(QWidget* widget);

    QTabBar* tabBar() const { return m_tabBar; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void addStepShortcut(const QKeySequence& keys, int step);
    void step(int by);
    void place();
    int rowHeight() const;

    QTabBar* m_tabBar;
    QStackedWidget* m_stack;
    QPointer<QWidget> m_corner;
    bool m_switching = false;
};

} // namespace KZ
