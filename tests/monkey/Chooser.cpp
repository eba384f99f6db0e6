#include "tests/monkey/Chooser.h"

#include "tests/authsetting/ShellTestTools.h"
#include "tests/monkey/Hands.h"
#include "tests/monkey/Screen.h"
#include "tests/monkey/World.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

#include <algorithm>
#include <array>

namespace monkey {

namespace {

struct WeightedKey
{
    int weight;
    int key;
    int modifiers;
};

constexpr std::array keys{
    WeightedKey{10, Qt::Key_Tab, 0},
    WeightedKey{5, Qt::Key_Backtab, int(Qt::ShiftModifier)},
    WeightedKey{10, Qt::Key_Space, 0},
    WeightedKey{10, Qt::Key_Return, 0},
    WeightedKey{1, Qt::Key_Enter, int(Qt::KeypadModifier)},
    WeightedKey{2, Qt::Key_Escape, 0},
    WeightedKey{6, Qt::Key_Down, 0},
    WeightedKey{5, Qt::Key_Up, 0},
    WeightedKey{2, Qt::Key_Left, 0},
    WeightedKey{2, Qt::Key_Right, 0},
    WeightedKey{2, Qt::Key_PageDown, 0},
    WeightedKey{2, Qt::Key_PageUp, 0},
    WeightedKey{2, Qt::Key_Home, 0},
    WeightedKey{2, Qt::Key_End, 0},
    WeightedKey{2, Qt::Key_Down, int(Qt::ShiftModifier)},
    WeightedKey{4, Qt::Key_Tab, int(Qt::ControlModifier)},
    WeightedKey{4, Qt::Key_PageDown, int(Qt::ControlModifier)},
    WeightedKey{4, Qt::Key_PageUp, int(Qt::ControlModifier)},
    WeightedKey{3, Qt::Key_F5, 0},
    WeightedKey{4, Qt::Key_F8, 0},
    WeightedKey{2, Qt::Key_O, int(Qt::ControlModifier)},
    WeightedKey{3, Qt::Key_F, int(Qt::ControlModifier)},
    WeightedKey{2, Qt::Key_A, int(Qt::ControlModifier)},
    WeightedKey{2, Qt::Key_F2, 0},
    WeightedKey{2, Qt::Key_F4, 0},
    WeightedKey{2, Qt::Key_Down, int(Qt::AltModifier)},
    WeightedKey{3, Qt::Key_Backspace, 0},
    WeightedKey{2, Qt::Key_Delete, 0},
};

QString textOf(int key)
{
    switch (key) {
    case Qt::Key_Space:
        return QStringLiteral(" ");
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return QStringLiteral("\r");
    case Qt::Key_Tab:
        return QStringLiteral("\t");
    case Qt::Key_Escape:
        return QStringLiteral("\x1b");
    case Qt::Key_Backspace:
        return QStringLiteral("\b");
    default:
        return {};
    }
}

int weightOf(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const QString text = button ? button->text() : QString();
    if (text == QStringLiteral("授权"))
        return 40;
    if (text == QStringLiteral("取消授权") || text == QStringLiteral("禁用"))
        return 6;
    if (text == QStringLiteral("关闭"))
        return 1;
    if (widget->inherits("QCheckBox"))
        return 12;
    if (widget->inherits("QComboBox") || widget->inherits("QDateEdit"))
        return 6;
    return button ? 5 : 8;
}

} // namespace

Chooser::Chooser(quint64 seed, const OpenDialog& dialog, const Hands& hands, const World& world)
    : m_random(seed), m_dialog(dialog), m_hands(hands), m_world(world)
{
}

int Chooser::below(int bound)
{
    return bound <= 0 ? 0 : static_cast<int>(m_random() % static_cast<quint64>(bound));
}

Action Chooser::next()
{
    if (!m_dialog.isVisible())
        return chance(50) ? open() : surroundings();
    // A pressed button is mostly let go at once, sometimes after something has happened.
    if (m_hands.isPressing() && !chance(6))
        return {Action::Release, 0, 0, 0, {}};
    if (chance(Screen::looksBusy(m_dialog) ? 45 : 22))
        return surroundings();
    return users();
}

Action Chooser::users()
{
    const QWidget* front = m_hands.front();
    if (qobject_cast<const QFileDialog*>(front)) {
        const int file = chance(80) ? m_nextFile++ : 0;
        return {Action::ChooseFile, file, 0, 0, {}};
    }
    if (Screen::showsGrantMenu() && !chance(10))
        return inMenu();
    if (front && front->objectName() == QStringLiteral("halden_input_dialog") && !chance(10))
        return inPasswordDialog();
    if (!QApplication::activePopupWidget() && front == &m_dialog && !Screen::looksBusy(m_dialog) &&
        chance(35))
        return towardsGrant();
    const int dice = below(100);
    if (dice < 45)
        return control();
    if (dice < 52)
        return {Action::PressCell, below(20), below(9), chance(10) ? 2 : 1, {}};
    if (dice < 60)
        return {Action::PressNode, below(40), 0, 1, {}};
    if (dice < 65)
        return {Action::PressTab, below(3), 0, 1, {}};
    if (dice < 67)
        return {Action::PressAt, below(1000), below(1000), chance(20) ? 2 : 1, {}};
    if (dice < 68)
        return {Action::DoubleClick, below(20), below(9), 1, {}};
    if (dice < 69)
        return {Action::MoveTo, below(1000), below(1000), 0, {}};
    if (dice < 71)
        return {Action::Wheel, below(1000), below(1000), chance(50) ? 1 : -1, {}};
    if (dice < 81)
        return typing();
    return key();
}

Action Chooser::control()
{
    const QVector<QWidget*> controls = m_hands.controls();
    int all = 0;
    for (const QWidget* widget : controls)
        all += weightOf(widget);
    int dice = below(all);
    int index = 0;
    for (; index < controls.size(); ++index) {
        dice -= weightOf(controls.at(index));
        if (dice < 0)
            break;
    }
    return {Action::PressWidget, index, 0, chance(4) ? 2 : 1, {}};
}

Action Chooser::pressOne(const std::function<bool(const QWidget*)>& isMeant)
{
    const QVector<QWidget*> controls = m_hands.controls();
    QVector<int> meant;
    for (int index = 0; index < controls.size(); ++index) {
        if (isMeant(controls.at(index)))
            meant.append(index);
    }
    if (meant.isEmpty())
        return control();
    return {Action::PressWidget, meant.at(below(static_cast<int>(meant.size()))), 0, 1, {}};
}

Action Chooser::towardsGrant()
{
    const Screen screen = Screen::read(m_dialog, nullptr);
    const bool isTicked =
        std::any_of(screen.rows.cbegin(), screen.rows.cend(),
                    [](const ScreenRow& row) { return row.isTicked && !row.isLocked; });
    const auto isBox = [](const QWidget* widget) { return widget->inherits("QCheckBox"); };
    const auto isGrantButton = [](const QWidget* widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        return button && button->text() == QStringLiteral("授权");
    };
    switch (screen.page) {
    case Screen::Batch:
    case Screen::SubUser:
        if (screen.page == Screen::SubUser && !screen.userIsEnabled)
            return towardsState();
        if (!isTicked || chance(20))
            return pressOne(isBox);
        if (screen.page == Screen::Batch && screen.user.isEmpty())
            return towardsGrantee();
        return pressOne(isGrantButton);
    case Screen::SingleAccount:
        return screen.user.isEmpty() ? towardsGrantee() : pressOne(isGrantButton);
    case Screen::Overview:
        return {Action::PressTab, 1, 0, 1, {}};
    default:
        return {Action::PressNode, below(40), 0, 1, {}};
    }
}

Action Chooser::towardsGrantee()
{
    const auto isGrantee = [](const QWidget* widget) {
        return widget->inherits("QLineEdit") && widget->parentWidget()->inherits("QComboBox");
    };
    const QWidget* focused = m_dialog.focusWidget();
    if (focused && (isGrantee(focused) || focused->inherits("QComboBox")))
        return {Action::Type, 0, 0, 0, QStringLiteral("u%1").arg(1 + below(3))};
    return pressOne(isGrantee);
}

Action Chooser::towardsState()
{
    const auto isEmptyPassword = [](const QWidget* widget) {
        const auto* edit = qobject_cast<const QLineEdit*>(widget);
        return edit && edit->echoMode() == QLineEdit::Password && edit->text().isEmpty();
    };
    if (const QWidget* focused = m_dialog.focusWidget(); focused && isEmptyPassword(focused))
        return {Action::Type, 0, 0, 0, QStringLiteral("secret")};
    const QVector<QWidget*> controls = m_hands.controls();
    if (std::any_of(controls.cbegin(), controls.cend(), isEmptyPassword))
        return pressOne(isEmptyPassword);
    return {Action::Key, Qt::Key_F8, 0, 0, {}};
}

Action Chooser::key()
{
    int all = 0;
    for (const WeightedKey& key : keys)
        all += key.weight;
    int dice = below(all);
    for (const WeightedKey& key : keys) {
        dice -= key.weight;
        if (dice < 0)
            return {Action::Key, key.key, key.modifiers, 0, textOf(key.key)};
    }
    return {};
}

Action Chooser::typing()
{
    static const QStringList texts{
        QStringLiteral("u1"),   QStringLiteral("u2"),  QStringLiteral("bob"),
        QStringLiteral("dave"), QStringLiteral("1"),   QStringLiteral("2026"),
        QStringLiteral("0"),    QStringLiteral("50"),  QStringLiteral("33.7"),
        QStringLiteral("1001"), QStringLiteral("abc"), QStringLiteral("x")};
    return {Action::Type, 0, 0, 0, texts.at(below(static_cast<int>(texts.size())))};
}

Action Chooser::inMenu()
{
    const int dice = below(10);
    if (dice < 4)
        return {Action::Key, Qt::Key_Down, 0, 0, {}};
    if (dice < 8)
        return {Action::Key, Qt::Key_Return, 0, 0, textOf(Qt::Key_Return)};
    if (dice < 9)
        return {Action::PressAt, 500, chance(50) ? 300 : 700, 1, {}};
    return {Action::Key, Qt::Key_Escape, 0, 0, {}};
}

Action Chooser::inPasswordDialog()
{
    const int dice = below(10);
    if (dice < 4)
        return {Action::Type, 0, 0, 0, QStringLiteral("pw%1").arg(below(1000))};
    if (dice < 8)
        return {Action::Key, Qt::Key_Return, 0, 0, textOf(Qt::Key_Return)};
    if (dice < 9)
        return control();
    return {Action::Key, Qt::Key_Escape, 0, 0, {}};
}

Action Chooser::answer()
{
    const int how = chance(20) ? 1 : chance(10) ? 2 : 0;
    return {Action::Answer, chance(70) ? 0 : below(20), chance(75) ? 1 : 0, how, {}};
}

Action Chooser::surroundings()
{
    if (!m_world.client.open().isEmpty() && chance(60))
        return answer();
    const int told = chance(50) ? 1 : 0;
    const int dice = below(100);
    if (dice < 30) {
        static constexpr std::array times{1, 10, 50, 100, 150, 300, 700, 1000, 3000, 5000};
        return {Action::Advance, times[static_cast<std::size_t>(below(times.size()))], 0, 0, {}};
    }
    if (dice < 52)
        return {Action::SetState, below(20), chance(40) ? 0 : 1 + below(4), told, {}};
    if (dice < 57)
        return {Action::Add, 1 + below(2), 0, told, {}};
    if (dice < 60)
        return {Action::Remove, below(20), 0, told, {}};
    if (dice < 63)
        return {Action::Rename, below(20), below(100), told, {}};
    if (dice < 65)
        return {Action::Hide, below(20), 0, told, {}};
    if (dice < 68)
        return {Action::AddUser, 0, 0, told, {}};
    if (dice < 70)
        return {Action::RemoveUser, below(10), 0, told, {}};
    if (dice < 76)
        return {Action::ToggleUser, below(10), 0, told, {}};
    if (dice < 81)
        return {Action::Tell, 0, 0, 0, {}};
    if (dice < 82)
        return {Action::Forget, below(10), 0, 0, {}};
    if (dice < 84)
        return {Action::FailFiles, below(2), 0, 0, {}};
    if (dice < 87)
        return {Action::ReloadInRead, 1 + below(12), below(2), 0, {}};
    if (dice < 91)
        return {Action::AnswerInside, 0, below(2), 0, {}};
    if (dice < 92)
        return {Action::NextDay, 1 + below(3), 0, told, {}};
    if (dice < 94)
        return {Action::Theme, 0, 0, 0, {}};
    if (dice < 97)
        return open();
    return {Action::Close, 0, 0, 0, {}};
}

Action Chooser::open()
{
    const int tab = chance(10) ? 7 : chance(5) ? -1 : below(2);
    return {Action::Open, below(9), tab, below(10), {}};
}

} // namespace monkey
