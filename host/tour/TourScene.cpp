#include "host/tour/TourScene.h"

#include "host/tour/TourFailure.h"
#include "kit/tips/MessageTip.h"

#include <QApplication>
#include <QFileDialog>
#include <QProgressBar>
#include <QScreen>
#include <QThread>

#include <algorithm>

namespace host {

namespace {

constexpr int lookEveryMs = 50;
constexpr int patienceMs = 15000;

bool tipShows(const QString& text)
{
    const QList<KZ::CMessageTip*> tips = KZ::CMessageTip::visibleTips();
    return std::any_of(tips.begin(), tips.end(), [&text](const KZ::CMessageTip* tip) {
        return tip->texts().join(QLatin1Char('\n')).contains(text);
    });
}

/// On the GUI thread: what is wrong with clicking into the middle of `place`; empty when nothing.
QString obstacle(const TourPlace& place)
{
    if (!place.widget)
        return QStringLiteral("还没有出现");
    if (!place.widget->isVisible() || !place.widget->isEnabled())
        return QStringLiteral("看不见或不可用");
    const QPoint centre = place.area.center();
    const QWidget* hit = QApplication::widgetAt(centre);
    if (hit != place.widget && !place.widget->isAncestorOf(hit))
        return QStringLiteral("在 %1,%2 被 %3 挡住")
            .arg(centre.x())
            .arg(centre.y())
            .arg(hit ? QString::fromLatin1(hit->metaObject()->className())
                     : QStringLiteral("另一个程序的窗口"));
    return QString();
}

QPoint serverPixel(const TourPlace& place)
{
    return (QPointF(place.area.center()) * place.widget->devicePixelRatioF()).toPoint();
}

} // namespace

TourScene::TourScene(const QDir& pictureFolder) : m_pictureFolder(pictureFolder) {}

void TourScene::await(const QString& what, const Condition& condition) const
{
    for (int waited = 0; waited < patienceMs; waited += lookEveryMs) {
        if (onGui(condition))
            return;
        QThread::msleep(lookEveryMs);
    }
    throw TourFailure(QStringLiteral("等不到：%1").arg(what));
}

void TourScene::awaitTip(const QString& text) const
{
    await(QStringLiteral("提示“%1”").arg(text), [text] { return tipShows(text); });
}

void TourScene::awaitTitle(const QString& title) const
{
    await(QStringLiteral("窗口“%1”").arg(title), [title] {
        const QWidget* window = TourPlaces::window();
        return window && window->isActiveWindow() && window->windowTitle() == title;
    });
    settle();
}

void TourScene::awaitIdle() const
{
    await(QStringLiteral("服务器确认完毕"), [] {
        const QWidget* dialog = QApplication::activeModalWidget();
        const auto* bar = dialog ? dialog->findChild<QProgressBar*>() : nullptr;
        return bar && !bar->isVisible();
    });
}

void TourScene::settle() const
{
    QThread::msleep(lookEveryMs);
    onGui([] { QCoreApplication::sendPostedEvents(); });
}

void TourScene::require(const QString& what, bool condition)
{
    if (!condition)
        throw TourFailure(QStringLiteral("不成立：%1").arg(what));
}

QPoint TourScene::awaitPoint(const QString& what, const Locator& locate) const
{
    QString reason;
    QPoint last(-1, -1);
    for (int waited = 0; waited < patienceMs; waited += lookEveryMs) {
        QPoint found(-1, -1);
        onGui([&] {
            const TourPlace place = locate();
            reason = obstacle(place);
            if (reason.isEmpty())
                found = serverPixel(place);
        });
        // Twice at the same place: it no longer moves.
        if (found.x() >= 0 && found == last)
            return found;
        last = found;
        QThread::msleep(lookEveryMs);
    }
    throw TourFailure(QStringLiteral("点不到：%1（%2）").arg(what, reason));
}

void TourScene::click(const QString& what, const Locator& locate)
{
    m_hands.click(awaitPoint(what, locate));
}

void TourScene::clickButton(const QString& text)
{
    click(QStringLiteral("按钮“%1”").arg(text), [text] { return TourPlaces::button(text); });
}

void TourScene::clickTab(const QString& title)
{
    click(QStringLiteral("标签“%1”").arg(title), [title] { return TourPlaces::tab(title); });
}

void TourScene::clickTreeNode(const QString& text)
{
    click(QStringLiteral("树节点“%1”").arg(text), [text] { return TourPlaces::treeNode(text); });
}

void TourScene::clickMenuItem(const QString& text)
{
    click(QStringLiteral("菜单项“%1”").arg(text), [text] { return TourPlaces::menuItem(text); });
}

void TourScene::clickMenuBarItem(const QString& text)
{
    click(QStringLiteral("菜单“%1”").arg(text), [text] { return TourPlaces::menuBarItem(text); });
}

void TourScene::clickCell(const QString& rowText, int column, XHands::Button button)
{
    m_hands.click(awaitPoint(QStringLiteral("表格行“%1”").arg(rowText),
                             [=] { return TourPlaces::cell(rowText, column); }),
                  button);
}

void TourScene::doubleClickCell(const QString& rowText, int column)
{
    m_hands.doubleClick(awaitPoint(QStringLiteral("表格行“%1”").arg(rowText),
                                   [=] { return TourPlaces::cell(rowText, column); }));
}

void TourScene::typeInto(const QString& name, const QString& text)
{
    click(QStringLiteral("输入框“%1”").arg(name), [name] { return TourPlaces::named(name); });
    m_hands.press({XHands::KeyControl, 'a'});
    m_hands.type(text);
}

void TourScene::chooseFile(const QString& path, const QString& picture)
{
    await(QStringLiteral("文件对话框"),
          [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) != nullptr; });
    typeInto(QStringLiteral("fileNameEdit"), path);
    takePicture(picture);
    m_hands.press({XHands::KeyReturn});
    await(QStringLiteral("文件对话框关闭"),
          [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) == nullptr; });
}

void TourScene::closeDialog()
{
    clickButton(QStringLiteral("关闭"));
    await(QStringLiteral("授权设置关闭"), [] { return !QApplication::activeModalWidget(); });
}

QStringList TourScene::rowTexts(const QString& rowText) const
{
    return onGui([rowText] { return TourPlaces::rowTexts(rowText); });
}

void TourScene::takePicture(const QString& name)
{
    settle();
    const QPixmap picture = onGui([] {
        QRect area;
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget* window : windows) {
            if (window->isVisible())
                area |= window->frameGeometry();
        }
        QScreen* screen = QApplication::primaryScreen();
        area &= screen->geometry();
        return screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    });
    ++m_pictureNumber;
    const QString file =
        QStringLiteral("%1-%2.png").arg(m_pictureNumber, 2, 10, QLatin1Char('0')).arg(name);
    if (!picture.save(m_pictureFolder.filePath(file)))
        throw TourFailure(QStringLiteral("不能写图片 %1").arg(m_pictureFolder.filePath(file)));
}

} // namespace host
