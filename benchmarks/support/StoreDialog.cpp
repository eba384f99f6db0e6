#include "benchmarks/support/StoreDialog.h"

#include "authsetting/services/AuthClient.h"
#include "benchmarks/support/FilledStore.h"
#include "benchmarks/support/Painting.h"
#include "kit/table/OddEvenRowTable.h"
#include "utils/Clock.h"

#include <QAction>
#include <QCoreApplication>
#include <QEventLoop>

namespace bench {

StoreDialog::StoreDialog(int accounts, int pageId, int subPageId, const QString& key, int tabIndex)
{
    open(makeFilledStore(m_folder.path(), accounts), grantorName(), pageId, subPageId, key,
         tabIndex);
}

StoreDialog::StoreDialog(const backend::StoreOptions& store, const QString& user, int pageId,
                         int subPageId, const QString& key, int tabIndex)
{
    open(store, user, pageId, subPageId, key, tabIndex);
}

void StoreDialog::open(const backend::StoreOptions& store, const QString& user, int pageId,
                       int subPageId, const QString& key, int tabIndex)
{
    constexpr double farAhead = 1000;
    utils::setClockSource([now = 0.0]() mutable { return now += farAhead; });
    backend::SignInResult result =
        backend::Session::signIn(store, user, QStringLiteral("password"));
    if (!result.session)
        qFatal("nobody can sign in: %s", qPrintable(result.error));
    m_session = std::move(result.session);
    m_session->install(nullptr);
    // Counted before the page hears of the result, whose reload after the last one is no longer
    // part of the grant.
    QObject::connect(m_session->authClient(), &GW::CAuthClient::sigAddAuthResult, &m_counter,
                     [this] { countAnswer(); });
    m_page = std::make_unique<DialogPage>(pageId, subPageId, key, tabIndex);
}

StoreDialog::~StoreDialog()
{
    m_page.reset();
    m_session.reset();
    utils::setClockSource({});
}

void StoreDialog::tickAll(int tickColumn)
{
    KZ::COddEvenRowTable* table = m_page->table();
    for (int row = 0; row < table->rowCount(); ++row)
        table->setItemChecked(row, tickColumn, true);
    settle();
}

double StoreDialog::grantMilliseconds(const QString& menuText, int requests)
{
    QAction* entry = nullptr;
    const auto actions = m_page->tabPage()->findChildren<QAction*>();
    for (QAction* action : actions) {
        if (action->text() == menuText)
            entry = action;
    }
    if (!entry)
        qFatal("the page has no such menu entry");
    m_outstanding = requests;
    m_timer.start();
    entry->trigger();
    while (m_outstanding > 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    settle();
    return m_milliseconds;
}

void StoreDialog::countAnswer()
{
    if (--m_outstanding == 0)
        m_milliseconds = static_cast<double>(m_timer.nsecsElapsed()) / 1e6;
}

} // namespace bench
