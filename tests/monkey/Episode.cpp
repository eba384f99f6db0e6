#include "tests/monkey/Episode.h"

#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "kit/resources/UiResource.h"
#include "tests/monkey/Chooser.h"
#include "tests/monkey/VirtualDispatcher.h"
#include "tests/monkey/Warnings.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

#include <climits>

namespace monkey {

namespace {

// Enough for the shortest time that the dialog shows itself busy, and for a merged reload.
constexpr qint64 comesToRest = 1000;

} // namespace

Episode::Episode(VirtualDispatcher& dispatcher, QStringList without, const QString& log)
    : m_dispatcher(dispatcher), m_without(std::move(without)), m_log(log),
      m_dialog(std::make_unique<OpenDialog>()), m_hands(*m_dialog), m_truth(m_world)
{
    KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
    utils::setClockSource([this] { return 100 + static_cast<double>(m_dispatcher.now()) / 1000; });
    m_dialog->setNavigatorFiller(GW::fillNavigator);
    m_log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
}

Episode::~Episode()
{
    m_dispatcher.setIdle({});
    utils::setClockSource({});
}

Failure Episode::generate(quint64 seed, int actions, const std::function<bool()>& isTimeOver)
{
    Chooser chooser(seed, *m_dialog, m_hands, m_world);
    return run([this, &chooser, &isTimeOver, actions]() -> std::optional<Action> {
        if (m_actions >= actions || isTimeOver())
            return {};
        return chooser.next();
    });
}

Failure Episode::replay(const Script& script)
{
    return run([this, &script]() -> std::optional<Action> {
        if (m_actions >= script.size())
            return {};
        return script.at(m_actions);
    });
}

Failure Episode::run(Source next)
{
    m_next = std::move(next);
    m_dispatcher.setIdle([this] { onIdle(); });
    m_dispatcher.settle();
    while (!m_isLeaving) {
        const std::optional<Action> action = m_next();
        if (!action)
            break;
        perform(*action);
        m_dispatcher.settle();
        check();
    }
    return end();
}

void Episode::onIdle()
{
    check();
    const std::optional<Action> action = m_isLeaving ? std::nullopt : m_next();
    if (action)
        perform(*action);
    else
        leave();
}

void Episode::perform(const Action& action)
{
    ++m_actions;
    m_latest = action;
    m_log.write(action.toLine().toUtf8() + '\n');
    m_isMenuOpen = Screen::showsGrantMenu();
    m_truth.look(action.isUsers() ? Screen::read(*m_dialog, m_hands.target(action)) : Screen(),
                 action);
    if (action.kind == Action::ChooseFile) {
        const auto* files = qobject_cast<QFileDialog*>(m_hands.front());
        const QString name = files && files->acceptMode() == QFileDialog::AcceptOpen
                                 ? QStringLiteral("received.taa")
                                 : QStringLiteral("grant-%1.taa").arg(action.a);
        const QString path = action.a == 0 ? QString() : QDir::current().filePath(name);
        if (files && !path.isEmpty())
            m_truth.pathChosen(path);
        m_hands.chooseFile(path);
    } else if (action.isUsers()) {
        m_hands.act(action);
    } else {
        doSurroundings(action);
    }
}

void Episode::doSurroundings(const Action& action)
{
    switch (action.kind) {
    case Action::Open:
        open(action);
        break;
    case Action::Close:
        closeDialog();
        break;
    case Action::Theme:
        KZ::CUiResource::setTheme(KZ::CUiResource::theme() == KZ::CUiResource::Theme::Light
                                      ? KZ::CUiResource::Theme::Dark
                                      : KZ::CUiResource::Theme::Light);
        break;
    case Action::Advance:
        m_dispatcher.advance(action.a);
        break;
    case Action::Answer:
        m_lastWord = m_dispatcher.now();
        m_world.apply(action);
        break;
    case Action::Forget:
        m_isForgotten = m_isForgotten || !m_world.client.open().isEmpty();
        m_world.apply(action);
        break;
    default:
        m_world.apply(action);
        break;
    }
}

void Episode::open(const Action& action)
{
    ++m_opened;
    using GW::CAuthSettingDialog;
    switch (action.a) {
    case 0:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
        break;
    case 1:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                                            INT_MAX, QString(), 1);
        break;
    case 2:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                                            GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_ACCOUNT,
                                            m_world.keyAt(action.c), action.b);
        break;
    case 3:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION);
        break;
    case 4:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION,
                                            GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_AUTHORIZATION,
                                            m_world.keyAt(action.c), action.b);
        break;
    case 5:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS, INT_MAX,
                                            QString(), action.b);
        break;
    case 6:
    case 7:
        CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                                            GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER,
                                            m_world.userAt(action.c), action.b);
        break;
    default:
        CAuthSettingDialog::showSettingPage(action.a, INT_MAX, QString(), action.b);
        break;
    }
}

void Episode::closeDialog()
{
    // A host can close the dialog only while nothing of the user's stands in front of it.
    if (!QApplication::activePopupWidget() && QApplication::activeModalWidget() == m_dialog.get())
        m_dialog->close();
}

void Episode::leave()
{
    constexpr int mostSteps = 100;
    m_isLeaving = true;
    if (++m_leaveSteps > mostSteps) {
        fail({QStringLiteral("stuck"), QStringLiteral("the dialog cannot be left")});
        m_dialog->hide();
        return;
    }
    if (m_hands.isPressing()) {
        m_latest = {Action::Release, 0, 0, 0, {}};
        m_truth.look(Screen::read(*m_dialog, m_hands.target(m_latest)), m_latest);
        m_hands.act(m_latest);
    } else if (!m_hasTold && m_failure.isEmpty()) {
        // Everybody gets his answer, and nothing may be left waiting.
        m_hasTold = true;
        m_latest = {Action::Answer, 0, 1, 0, {}};
        m_truth.look({}, m_latest);
        m_lastWord = m_dispatcher.now();
        while (!m_world.client.open().isEmpty())
            m_world.answer(m_world.client.open().constFirst(), true, 0);
        m_dispatcher.advance(2 * comesToRest);
    } else if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    } else if (auto* modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
               modal && modal != m_dialog.get()) {
        modal->reject();
    } else {
        m_dialog->close();
    }
}

void Episode::fail(const Failure& failure)
{
    if (failure.isEmpty() || !m_failure.isEmpty() || m_without.contains(failure.sort))
        return;
    m_failure = failure;
    m_isLeaving = true;
}

void Episode::check()
{
    if (m_calls != m_world.client.log.size()) {
        m_calls = m_world.client.log.size();
        m_lastWord = m_dispatcher.now();
    }
    if (const QString warning = Warnings::take(); !warning.isEmpty())
        fail({QStringLiteral("warning"), warning});
    fail(m_truth.judge());
    if (Screen::showsGrantMenu() && !m_isMenuOpen) {
        m_truth.menuOpened();
        m_isMenuOpen = true;
    }
    if (m_dialog->isVisible()) {
        if (!m_wasVisible)
            m_isForgotten = false;
        m_wasVisible = true;
        fail(m_focus.check(*m_dialog, m_latest));
        fail(checkIdle());
    } else if (m_wasVisible) {
        m_wasVisible = false;
        m_focus.dialogClosed();
        fail(checkClosed());
    }
}

Failure Episode::checkIdle() const
{
    if (m_isForgotten || !m_world.client.open().isEmpty() ||
        m_dispatcher.now() - m_lastWord < comesToRest || Screen::looksIdle(*m_dialog))
        return {};
    return {QStringLiteral("busy"), QStringLiteral("busy with nothing outstanding")};
}

Failure Episode::checkWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        // A request of the closed dialog is still told of.
        if (window->isVisible() && !qobject_cast<const KZ::CMessageTip*>(window))
            return {QStringLiteral("window"),
                    QStringLiteral("left over: %1 \"%2\"")
                        .arg(QString::fromLatin1(window->metaObject()->className()),
                             window->windowTitle())};
    }
    return {};
}

Failure Episode::checkClosed()
{
    const Failure failure = checkWindows();
    return failure.isEmpty() ? m_objects.check(*m_dialog) : failure;
}

Failure Episode::end()
{
    m_isLeaving = true;
    m_dispatcher.advance(2 * comesToRest);
    m_dispatcher.settle();
    check();
    KZ::CMessageTip::closeAll();
    m_dialog.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_dispatcher.settle();
    const QWidgetList windows = QApplication::topLevelWidgets();
    if (!windows.isEmpty())
        fail({QStringLiteral("window"),
              QStringLiteral("left over at the end: ") +
                  QString::fromLatin1(windows.constFirst()->metaObject()->className())});
    if (const QString warning = Warnings::take(); !warning.isEmpty())
        fail({QStringLiteral("warning"), warning});
    return m_failure;
}

} // namespace monkey
