#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourFailure.h"
#include "host/tour/TourStage.h"
#include "kit/resources/UiResource.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace host {

namespace {

using Theme = KZ::CUiResource::Theme;

/// Whether windows cannot have the sizes that they would like.
bool isSmallScreen()
{
    const QSize available = QGuiApplication::primaryScreen()->availableSize();
    return available.width() <
               KZ::CUiResource::getSize(QStringLiteral("gw_siz_client_window_width")) ||
           available.height() <
               KZ::CUiResource::getSize(QStringLiteral("gw_siz_client_window_height"));
}

class Painter
{
public:
    Painter(TourStage& stage, const QString& folder)
        : m_stage(stage), m_folder(folder),
          m_screen(TourScene::onGui(&isSmallScreen) ? QStringLiteral("-small") : QString())
    {
    }

    /// Draws the user's window in both themes.
    void draw(const QString& name) const
    {
        for (const Theme theme : {Theme::Dark, Theme::Light}) {
            TourScene::onGui([theme] { KZ::CUiResource::setTheme(theme); });
            m_stage.scene.settle();
            const QString suffix =
                theme == Theme::Dark ? QStringLiteral("-dark.png") : QStringLiteral("-light.png");
            const QString path = m_folder.filePath(name + m_screen + suffix);
            const bool saved = TourScene::onGui([&path] {
                QWidget* window = TourPlaces::window();
                return window && window->grab().save(path);
            });
            if (!saved)
                throw TourFailure(QStringLiteral("不能画 %1").arg(path));
        }
    }

    /// Draws the page behind a node of the dialog's tree, and its tab `tab` if that is not empty.
    void drawNode(const QString& node, const QString& tab, const QString& name) const
    {
        m_stage.scene.clickTreeNode(node);
        if (!tab.isEmpty())
            m_stage.scene.clickTab(tab);
        draw(name);
    }

private:
    TourStage& m_stage;
    QDir m_folder;
    /// Part of every name; pictures of a small screen stand beside the others.
    QString m_screen;
};

} // namespace

void drawPages(TourStage& stage, const QString& folder)
{
    if (!QDir().mkpath(folder))
        throw TourFailure(QStringLiteral("不能建立文件夹 %1").arg(folder));
    TourScene& scene = stage.scene;
    const Painter painter(stage, folder);
    scene.awaitTitle(QStringLiteral("登录"));
    painter.draw(QStringLiteral("sign-in"));
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    painter.draw(QStringLiteral("client"));
    scene.press({XHands::functionKey(2)});
    scene.awaitTitle(QStringLiteral("授权设置"));
    painter.draw(QStringLiteral("overview"));
    painter.drawNode(QStringLiteral("账号授权"), QStringLiteral("批量授权"),
                     QStringLiteral("batch"));
    painter.drawNode(QStringLiteral("60330105"), QString(), QStringLiteral("single-account"));
    painter.drawNode(QStringLiteral("导入授权"), QString(), QStringLiteral("import"));
    painter.drawNode(QStringLiteral("子用户"), QString(), QStringLiteral("sub-users"));
    painter.drawNode(DemoData::dayTrader(), QString(), QStringLiteral("sub-user"));
    scene.closeDialog();
    stage.client.signOut();
}

} // namespace host
