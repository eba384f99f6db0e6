#include "kit/keyboard/SoftKeyboardPopup.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <numeric>

namespace KZ {

namespace {

/// Both layers of the keys, shuffled only within their group, so that a letter is still to be
/// found among the letters. The pairs are those of the usual US keyboard.
struct Group
{
    const char* lower;
    const char* upper;
    int keysPerRow;
};

constexpr std::array<Group, 3> GROUPS = {
    Group{"1234567890", "!@#$%^&*()", 10},
    Group{"abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", 13},
    Group{"`-=[]\\;',./", "~_+{}|:\"<>?", 11},
};

QString layer(bool upper)
{
    QString characters;
    for (const Group& group : GROUPS)
        characters += QLatin1String(upper ? group.upper : group.lower);
    return characters;
}

/// The text of a button that shows `character` itself, never a mnemonic.
QString labelOf(QChar character)
{
    return character == QLatin1Char('&') ? QStringLiteral("&&") : QString(character);
}

} // namespace

CSoftKeyboardPopup::CSoftKeyboardPopup(QWidget* parent)
    : QFrame(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus)
{
    setObjectName(QStringLiteral("kz_soft_keyboard"));
    setAccessibleName(QStringLiteral("软键盘"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setFocusPolicy(Qt::NoFocus);

    const int margin = CUiResource::getSize(QStringLiteral("gw_siz_kit_soft_key_margin"));
    const int gap = CUiResource::getSize(QStringLiteral("gw_siz_kit_soft_key_gap"));
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(gap);
    const auto addRow = [rows, gap] {
        auto* const row = new QHBoxLayout;
        row->setSpacing(gap);
        rows->addLayout(row);
        return row;
    };

    const QString keySize = QStringLiteral("gw_siz_kit_soft_key_width");
    for (const Group& group : GROUPS) {
        const int count = static_cast<int>(qstrlen(group.lower));
        for (int first = 0; first < count; first += group.keysPerRow) {
            QHBoxLayout* const row = addRow();
            row->addStretch();
            for (int key = first; key < std::min(count, first + group.keysPerRow); ++key) {
                QPushButton* const button = addKey(QString(), QString(), keySize);
                connect(button, &QPushButton::clicked, this, [this, place = m_keys.size()] {
                    Q_EMIT characterTyped(characters().at(place));
                });
                m_keys.append(button);
                row->addWidget(button);
            }
            row->addStretch();
        }
    }
    m_order.resize(m_keys.size());
    std::iota(m_order.begin(), m_order.end(), 0);

    const QString wide = QStringLiteral("gw_siz_kit_soft_key_wide_width");
    QHBoxLayout* const row = addRow();
    m_shift = addKey(QStringLiteral("kz_key_shift"), QStringLiteral("Shift"), wide);
    m_shift->setCheckable(true);
    m_shift->setToolTip(QStringLiteral("切换大写字母和符号"));
    m_clear = addKey(QStringLiteral("kz_key_clear"), QStringLiteral("清空"), wide);
    m_space = addKey(QStringLiteral("kz_key_space"), QStringLiteral("空格"), wide);
    m_backspace = addKey(QStringLiteral("kz_key_backspace"), QStringLiteral("退格"), wide);
    m_backspace->setAutoRepeat(true);
    m_enter = addKey(QStringLiteral("kz_key_enter"), QStringLiteral("确定"), wide);
    row->addWidget(m_shift);
    row->addWidget(m_clear);
    row->addWidget(m_space, 1);
    row->addWidget(m_backspace);
    row->addWidget(m_enter);
    m_space->setMaximumWidth(QWIDGETSIZE_MAX);

    connect(m_shift, &QPushButton::toggled, this, &CSoftKeyboardPopup::label);
    connect(m_clear, &QPushButton::clicked, this, &CSoftKeyboardPopup::clearTyped);
    connect(m_space, &QPushButton::clicked, this,
            [this] { Q_EMIT characterTyped(QLatin1Char(' ')); });
    connect(m_backspace, &QPushButton::clicked, this, &CSoftKeyboardPopup::backspaceTyped);
    connect(m_enter, &QPushButton::clicked, this, &CSoftKeyboardPopup::enterTyped);
    applyKitStyle(this);
    takeTheme();
    label();
}

CSoftKeyboardPopup::~CSoftKeyboardPopup() = default;

QPushButton* CSoftKeyboardPopup::addKey(const QString& name, const QString& text,
                                        const QString& sizeKey)
{
    auto* const key = new QPushButton(text, this);
    key->setObjectName(name);
    key->setAccessibleName(text);
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoDefault(false);
    key->setFixedSize(CUiResource::getSize(sizeKey),
                      CUiResource::getSize(QStringLiteral("gw_siz_kit_soft_key_height")));
    return key;
}

void CSoftKeyboardPopup::shuffle(QRandomGenerator& random)
{
    auto first = m_order.begin();
    for (const Group& group : GROUPS) {
        const auto last = first + static_cast<qsizetype>(qstrlen(group.lower));
        std::shuffle(first, last, random);
        first = last;
    }
    label();
}

QString CSoftKeyboardPopup::characters() const
{
    const QString table = layer(isShifted());
    QString shown;
    for (const int place : m_order)
        shown += table.at(place);
    return shown;
}

bool CSoftKeyboardPopup::isShifted() const
{
    return m_shift->isChecked();
}

void CSoftKeyboardPopup::setShifted(bool shifted)
{
    m_shift->setChecked(shifted);
}

void CSoftKeyboardPopup::label()
{
    const QString shown = characters();
    for (qsizetype i = 0; i < m_keys.size(); ++i) {
        m_keys.at(i)->setText(labelOf(shown.at(i)));
        m_keys.at(i)->setAccessibleName(QString(shown.at(i)));
    }
}

void CSoftKeyboardPopup::popUp(const QWidget* editor)
{
    const QSize size = sizeHint();
    const QRect target(editor->mapToGlobal(QPoint()), editor->size());
    const QRect screen = editor->screen()->availableGeometry();
    const int distance = CUiResource::getSize(QStringLiteral("gw_siz_kit_tip_distance"));
    QRect place(target.bottomLeft() + QPoint(0, distance), size);
    if (place.bottom() > screen.bottom() && target.top() - size.height() >= screen.top())
        place.moveBottom(target.top() - distance);
    place.moveLeft(std::clamp(place.left(), screen.left(),
                              std::max(screen.left(), screen.right() + 1 - place.width())));
    setGeometry(place);
    show();
}

void CSoftKeyboardPopup::onUiResourceChanged()
{
    takeTheme();
}

void CSoftKeyboardPopup::takeTheme()
{
    setPalette(CUiResource::palette());
    setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    for (QPushButton* const key : std::as_const(m_keys))
        key->setFont(CUiResource::getFont(QStringLiteral("fnt_mono")));
    update();
}

void CSoftKeyboardPopup::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CUiResource::getColor(QStringLiteral("clr_window")));
    painter.setPen(CUiResource::getColor(QStringLiteral("clr_border_control")));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace KZ
