#include "authsetting/shell/AuthSettingDialog.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingDialogPrivate.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingNavigator.h"
#include "authsetting/shell/AuthSettingPage.h"
#include "authsetting/shell/BusyCount.h"
#include "authsetting/shell/DialogSizes.h"
#include "authsetting/shell/FocusKeeper.h"
#include "authsetting/shell/NavigatorFilter.h"
#include "authsetting/shell/NavigatorNodes.h"
#include "authsetting/shell/PageFactory.h"
#include "kit/accessible/BusyState.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/BusyBar.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/StandardTabControl.h"
#include "utils/LogCenter.h"

#include <QCloseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>

#include <climits>

namespace GW {

namespace {

CAuthSettingDialog* s_instance = nullptr;

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

void logDebug(const QString& text)
{
    constexpr int level = 15;
    if (utils::CLogCenter::fileLogEnabled(level) && utils::CLogCenter::debugEnabled("MBDbgFile"))
        mbDbgLogNew(level, text);
}

} // namespace

CAuthSettingDialog::CAuthSettingDialog(QWidget* parent)
    : CCommonDialog(parent), m_private(std::make_unique<CAuthSettingDialogPrivate>())
{
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setTitle(QStringLiteral("授权设置"));

    m_navigator = new CAuthSettingNavigator(this);
    m_navigator->setObjectName(QStringLiteral("halden_navigator"));
    m_navigator->setAccessibleName(QStringLiteral("授权设置导航"));
    m_navigator->setToolTip(
        QStringLiteral("Ctrl+PageUp、Ctrl+PageDown 切换，Ctrl+F 查找，F5 刷新"));
    KZ::applyKitStyle(m_navigator);

    m_closeButton = new KZ::CMediumNormalButton(ID_BUTTON_CLOSE, 1, this);
    m_closeButton->setObjectName(QStringLiteral("halden_close_button"));
    m_closeButton->setText(QStringLiteral("关闭"));
    m_closeButton->setAccessibleName(m_closeButton->text());
    m_closeButton->setToolTip(QStringLiteral("关闭 (Esc)"));

    m_private->focusKeeper = new CFocusKeeper(this, m_closeButton);
    m_private->navigatorFilter = new CNavigatorFilter(m_navigator);
    m_private->focusKeeper->setExtraControl(m_private->navigatorFilter->edit());
    connect(m_private->navigatorFilter, &CNavigatorFilter::closed, m_private->focusKeeper,
            &CFocusKeeper::check);
    createBusyDisplay();
    takeSizes();
    addShortcuts();
    setAttribute(Qt::WA_DeleteOnClose, false);

    if (CAuthClient* client = getAuthClient())
        connect(client, &CAuthClient::sigUiUpdateAuth, this, &CAuthSettingDialog::slotUiUpdateAuth);

    s_instance = this;
}

CAuthSettingDialog::~CAuthSettingDialog() = default;

void CAuthSettingDialog::createBusyDisplay()
{
    m_progressText = new KZ::CSimpleTextWidget(QStringLiteral("向服务器确认中……"), this);
    m_progressText->setObjectName(QStringLiteral("halden_progress_text"));
    m_progressText->hide();

    auto* busyBar = new KZ::CBusyBar(this);
    m_progressBar = busyBar;
    m_progressBar->setObjectName(QStringLiteral("halden_progress_bar"));
    m_progressText->setAccessibleTarget(m_progressBar);
    m_progressBar->hide();

    m_private->busyCount = new CBusyCount(m_progressText, busyBar, this);
}

void CAuthSettingDialog::takeSizes()
{
    if (m_closeButton) {
        m_closeButton->resize(uiSize("gw_siz_setting_inner_bottom_btn_width"),
                              uiSize("gw_siz_setting_inner_bottom_btn_height"));
    }
    if (m_progressBar) {
        m_progressBar->resize(uiSize("gw_siz_setting_inner_bottom_progress_width"),
                              uiSize("gw_siz_setting_inner_bottom_progress_height"));
    }
    setFixedSize(dialogSize(*this, KZ::CUiResource::sizeSet()));
}

void CAuthSettingDialog::addShortcuts()
{
    // The tree takes no focus, so the keyboard reaches its nodes only this way.
    const auto whenIdle = [this](auto action) {
        return [this, action] {
            if (!m_private->busy)
                action();
        };
    };
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown), this,
                  whenIdle([this] { m_navigator->stepToNext(); }));
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp), this,
                  whenIdle([this] { m_navigator->stepToPrevious(); }));
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this,
                  whenIdle([this] { m_private->navigatorFilter->open(); }));
    new QShortcut(QKeySequence(Qt::Key_F5), this, whenIdle([this] { slotUiUpdateAuth(); }));
}

void CAuthSettingDialog::showSettingPage(int pageId)
{
    if (!s_instance)
        return;
    logDebug(QStringLiteral("start show setting page, load"));
    fitDialog(s_instance, availableArea(s_instance->parentWidget()));
    s_instance->takeSizes();
    s_instance->load();
    logDebug(QStringLiteral("load finished"));
    s_instance->showPage(pageId, INT_MAX, QString(), 0);
    s_instance->activeNode(pageId);
    s_instance->open();
}

void CAuthSettingDialog::showSettingPage(int pageId, int subPageId, QString key, int tabIndex)
{
    if (!s_instance)
        return;
    fitDialog(s_instance, availableArea(s_instance->parentWidget()));
    s_instance->takeSizes();
    s_instance->load();
    s_instance->showPage(pageId, subPageId, key, tabIndex);
    s_instance->activateCurrentNode();
    s_instance->open();
}

void CAuthSettingDialog::open()
{
    if (isVisible())
        return;
    // A loop of its own would be a second one inside that of the dialog just closed.
    m_private->reopening = m_private->executing;
    if (m_private->executing)
        return;
    const QPointer<CAuthSettingDialog> self(this);
    m_private->executing = true;
    do {
        m_private->reopening = false;
        exec();
    } while (self && m_private->reopening);
    if (self)
        m_private->executing = false;
}

void CAuthSettingDialog::setNavigatorFiller(boost::function<void(CAuthSettingNavigator*)> filler)
{
    m_private->navigatorFiller = filler;
}

void CAuthSettingDialog::load()
{
    if (!m_navigator)
        return;
    // Nodes that come and go are no choice of the user: the shown page stays.
    const QSignalBlocker blocker(m_navigator);
    const int scrolled = m_navigator->verticalScrollBar()->value();
    m_navigator->clearNodes();
    if (m_private->navigatorFiller)
        m_private->navigatorFiller(m_navigator);
    m_navigator->nodes().dropEarlier();
    m_navigator->expandAll();
    m_private->navigatorFilter->narrow();
    activateCurrentNode();
    m_navigator->verticalScrollBar()->setValue(scrolled);
}

void CAuthSettingDialog::reloadNavigator()
{
    load();
}

void CAuthSettingDialog::activateCurrentNode()
{
    // A top-level node has no key, so a page shown with one has no node of its own.
    if (m_currentSubPageId == INT_MAX && m_currentKey.isEmpty())
        activeNode(m_currentPageId);
    else
        activeNode(m_currentPageId, m_currentSubPageId, m_currentKey);
}

void CAuthSettingDialog::showPage(int pageId)
{
    showPage(pageId, INT_MAX, QString(), 0);
}

void CAuthSettingDialog::showPage(int pageId, int subPageId, QString key, int tabIndex)
{
    if (pageId == m_currentPageId && subPageId == m_currentSubPageId && key == m_currentKey)
        return;
    m_currentPageId = pageId;
    m_currentSubPageId = subPageId;
    m_currentKey = key;
    if (m_currentPage)
        m_currentPage->hide();

    const auto place = std::make_pair(pageId, subPageId);
    const auto found = m_pages.find(place);
    CAuthSettingPage* page =
        found != m_pages.end() ? found->second : createPage(pageId, subPageId, key);
    if (page) {
        m_pages[place] = page;
        m_currentPage = page;
        page->setKey(key);
        // It may have been left disabled when the dialog was closed while busy.
        page->setEnabled(!m_private->busy);
        // A page that lacks the tab must not go on showing what it showed for another key.
        if (page->tabControl() && !page->tabControl()->activateTab(tabIndex))
            page->tabControl()->activateTab(0);
        page->show();
        m_private->focusKeeper->setPage(page);
    }
    resetLayout(size());
}

void CAuthSettingDialog::activeNode(int pageId)
{
    if (m_navigator)
        m_navigator->activeNode(pageId);
}

void CAuthSettingDialog::activeNode(int pageId, int subPageId, QString key)
{
    if (m_navigator)
        m_navigator->activeNode(pageId, subPageId, key);
}

void CAuthSettingDialog::hidePages()
{
    showPage(INT_MAX, INT_MAX, QString(), 0);
    resetLayout(size());
}

CAuthSettingPage* CAuthSettingDialog::createPage(int pageId, int subPageId, QString)
{
    auto* page = new CAuthSettingPage(pageId, subPageId, this);
    addTabPages(page);
    return page;
}

void CAuthSettingDialog::resetLayout(QSize size)
{
    const int frame = borderWidth();
    const int title = titleBarHeight();
    const int margin = uiSize("gw_siz_setting_margin");
    const int leftWidth = uiSize("gw_siz_setting_inner_left_width");
    const int topHeight = uiSize("gw_siz_setting_inner_top_height");
    const int barHeight = uiSize("gw_siz_setting_inner_bottom_height");

    if (m_navigator)
        m_navigator->setGeometry(frame + margin, title + frame + margin, leftWidth, topHeight);
    if (m_currentPage) {
        m_currentPage->setGeometry(frame + 2 * margin + leftWidth, title + frame + margin,
                                   uiSize("gw_siz_setting_inner_right_width"), topHeight);
    }

    const int right = size.width() - frame - margin;
    const int barTop = size.height() - frame - barHeight - margin;
    if (m_closeButton) {
        m_closeButton->move(right - m_closeButton->width(),
                            barTop + (barHeight - m_closeButton->height()) / 2);
        // Reserved for a second button: looked up so that a theme without it is noticed.
        static_cast<void>(uiSize("gw_siz_setting_inner_bottom_btn_space"));
    }
    if (m_progressText && m_progressBar) {
        const int gap = uiSize("gw_siz_setting_inner_bottom_v_space");
        const int free = barHeight - m_progressBar->height() - m_progressText->height() - gap;
        m_progressText->move(margin, barTop + free / 2);
        m_progressBar->setGeometry(margin, barTop + free / 2 + m_progressText->height() + gap,
                                   m_progressBar->width(), m_progressBar->height());
        m_private->busyCount->place();
    }
}

void CAuthSettingDialog::setDialogEnabled(bool enabled)
{
    m_private->focusKeeper->remember();
    m_private->busy = !enabled;
    m_private->busyCount->clear();
    KZ::setAccessibleBusy(this, m_private->busy);
    if (m_progressText)
        m_progressText->setVisible(!enabled);
    if (m_progressBar)
        m_progressBar->setVisible(!enabled);
    if (m_navigator)
        m_navigator->setEnabled(enabled);
    if (m_currentPage)
        m_currentPage->setEnabled(enabled);
    m_private->focusKeeper->check();
}

void CAuthSettingDialog::slotUiUpdateAuth()
{
    if (m_currentPage)
        m_currentPage->activateCurrentTab();
}

void CAuthSettingDialog::resizeEvent(QResizeEvent* event)
{
    CCommonDialog::resizeEvent(event);
    resetLayout(event->size());
}

void CAuthSettingDialog::closeEvent(QCloseEvent* event)
{
    if (!isEnabled())
        event->ignore();
}

void CAuthSettingDialog::showEvent(QShowEvent* event)
{
    KZ::CBaseDialog::showEvent(event);
    // Restoring a minimised window neither opens the dialog nor ends a request.
    if (event->spontaneous())
        return;
    logDebug(QStringLiteral("GW::CAuthSettingDialog::showEvent"));
    setDialogEnabled(true);
}

void CAuthSettingDialog::hideEvent(QHideEvent* event)
{
    if (event->spontaneous())
        return;
    m_private->navigatorFilter->close();
    hidePages();
}

bool CAuthSettingDialog::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    switch (eventId) {
    case EVENT_SET_WAITING:
        setDialogEnabled(param2 == 0);
        return true;
    case EVENT_SHOW_PROGRESS:
        // The dialog may have been closed and opened again meanwhile.
        if (m_private->busy)
            m_private->busyCount->showCount(param1, param2);
        return true;
    case EVENT_SHOW_PAGE:
        showPage(param1, param2, text, 0);
        return true;
    case EVENT_ACTIVATE_NODE:
        if (param2 == INT_MAX)
            activeNode(param1);
        else
            activeNode(param1, param2, text);
        return true;
    case EVENT_RELOAD_NAVIGATOR:
        reloadNavigator();
        m_private->focusKeeper->check();
        return true;
    case EVENT_TAB_SHOWN:
        m_private->focusKeeper->check();
        return true;
    default:
        return KZ::CBaseDialog::handleEvent(eventId, param1, param2, text, data);
    }
}

} // namespace GW
