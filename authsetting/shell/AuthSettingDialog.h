#pragma once

#include "authsetting/AuthSettingExport.h"
#include "kit/dialogs/CommonDialog.h"

#include <QString>

#include <boost/function.hpp>

#include <map>
#include <memory>
#include <utility>

class QProgressBar;

namespace KZ {
class CMediumNormalButton;
class CSimpleTextWidget;
} // namespace KZ

namespace GW {

class CAuthSettingNavigator;
class CAuthSettingPage;
struct CAuthSettingDialogPrivate;

/// The authorization settings dialog "授权设置".
///
/// Construct one with the services installed (GW::installServices) and keep it as long as the user
/// is signed in; the last one constructed is the one that showSettingPage() shows. It is never
/// deleted by closing, and showSettingPage() must not be called after deleting it. Do not delete it
/// while it is open: Qt's file dialogs do not survive their parent. GUI thread only.
class AUTHSETTING_EXPORT CAuthSettingDialog : public KZ::CCommonDialog
{
    Q_OBJECT

public:
    explicit CAuthSettingDialog(QWidget* parent = nullptr);
    ~CAuthSettingDialog() override;

    /// Shows the dialog on a page (see AuthSettingIds.h) and returns when the user closes it;
    /// does nothing before a dialog was constructed.
    static void showSettingPage(int pageId);
    /// The same on a sub-page for one account key or sub-user identifier, with the tab `tabIndex`
    /// in front.
    static void showSettingPage(int pageId, int subPageId, QString key, int tabIndex);

    /// Qt 4's name of tr(), for callers that still use it.
    static QString trUtf8(const char* sourceText, const char* disambiguation = nullptr, int n = -1)
    {
        return tr(sourceText, disambiguation, n);
    }

    /// Installs what fills the tree whenever it is built: called with the emptied tree. An empty
    /// function leaves the tree empty. GW::fillNavigator is the module's own.
    void setNavigatorFiller(boost::function<void(CAuthSettingNavigator*)> filler);

    /// Builds the tree anew. Never changes which page is shown.
    void load();

    /// Shows a page in the page area; nothing when page, sub-page and key are those shown already.
    /// An unknown place shows an empty page.
    void showPage(int pageId);
    void showPage(int pageId, int subPageId, QString key, int tabIndex);

    /// Selects a node of the tree; nothing when the tree does not have it.
    void activeNode(int pageId);
    void activeNode(int pageId, int subPageId, QString key);

protected:
    /// Leaves the shown place, so that the next showPage() shows its place anew.
    void hidePages();
    /// The same as load().
    void reloadNavigator();
    /// Places everything inside a dialog of `size`, in pixels.
    void resetLayout(QSize size);
    /// A new page with the tabs of this place, owned by the dialog; it serves every key.
    CAuthSettingPage* createPage(int pageId, int subPageId, QString key);
    /// Shows the dialog waiting (false) or ready (true); it can be closed either way.
    void setDialogEnabled(bool enabled);

    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

protected Q_SLOTS:
    void slotUiUpdateAuth();

private:
    /// Runs the dialog's event loop until the user closes it; returns at once while it is open.
    void open();
    void addShortcuts();
    void createBusyDisplay();
    /// Takes the sizes of the dialog, its button and its bar from the registry anew.
    void takeSizes();
    void activateCurrentNode();

    std::map<std::pair<int, int>, CAuthSettingPage*> m_pages;
    CAuthSettingNavigator* m_navigator = nullptr;
    KZ::CMediumNormalButton* m_closeButton = nullptr;
    CAuthSettingPage* m_currentPage = nullptr;
    int m_currentPageId = -1;
    int m_currentSubPageId = -1;
    QString m_currentKey;
    KZ::CSimpleTextWidget* m_progressText = nullptr;
    QProgressBar* m_progressBar = nullptr;
    std::unique_ptr<CAuthSettingDialogPrivate> m_private;
};

} // namespace GW
