#pragma once

#include "backend/client/Session.h"
#include "benchmarks/support/DialogPage.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTemporaryDir>

#include <memory>

namespace bench {

/// A user who is signed in to a store, his services
/// installed and the dialog open on a page. The 0.7 s for which the busy state lasts at least are
/// left out: the clock behind them runs far ahead while the object lives.
class StoreDialog
{
public:
    /// On a store of its own on the disk with one user and so many accounts of his.
    StoreDialog(int accounts, int pageId, int subPageId, const QString& key, int tabIndex);
    /// On a store that is there.
    StoreDialog(const backend::StoreOptions& store, const QString& user, int pageId, int subPageId,
                const QString& key, int tabIndex);
    ~StoreDialog();
    StoreDialog(const StoreDialog&) = delete;
    StoreDialog& operator=(const StoreDialog&) = delete;

    DialogPage& page() { return *m_page; }
    backend::Session& session() { return *m_session; }

    /// Ticks every row of the page's table, as Ctrl+A and Space do.
    void tickAll(int tickColumn);
    /// Triggers the page's menu entry with this text and turns the event loop until every request
    /// is answered and the page has reloaded. Returns the milliseconds until the last answer.
    double grantMilliseconds(const QString& menuText, int requests);

private:
    void open(const backend::StoreOptions& store, const QString& user, int pageId, int subPageId,
              const QString& key, int tabIndex);
    void countAnswer();

    QTemporaryDir m_folder;
    QObject m_counter;
    QElapsedTimer m_timer;
    int m_outstanding = 0;
    double m_milliseconds = 0;
    std::unique_ptr<backend::Session> m_session;
    std::unique_ptr<DialogPage> m_page;
};

} // namespace bench
