#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourStage.h"

#include <QFile>

namespace host {

namespace {

using backend::GrantSource;
using backend::GrantState;

// Two accounts that are free in the demonstration store, by what the tables show and by number.
const char* const firstShown = "趋势一号";
const char* const firstNumber = "80010001";
const char* const secondShown = "长线持仓";
const char* const secondNumber = "A100200302";
// The one that goes into the file.
const char* const fileShown = "0190220075";

constexpr int tickColumn = 0;
constexpr int overviewOperationColumn = 7;
constexpr int defaultDays = 7;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

void openBatchTab(TourScene& scene)
{
    scene.clickTab(QStringLiteral("批量授权"));
}

void grantOnServer(TourStage& stage)
{
    TourScene& scene = stage.scene;
    openBatchTab(scene);
    scene.clickCell(text(firstShown), tickColumn);
    scene.clickCell(text(secondShown), tickColumn);
    scene.typeInto(QStringLiteral("被授权人"), DemoData::colleague());
    scene.press({XHands::KeyTab});
    scene.await(QStringLiteral("所选行显示待授权"), [] {
        return TourPlaces::rowTexts(text(firstShown)).contains(QStringLiteral("已修改 未授权"));
    });
    scene.takePicture(QStringLiteral("batch-ticked"));
    scene.clickButton(QStringLiteral("授权"));
    scene.takePicture(QStringLiteral("batch-menu"));
    scene.clickMenuItem(QStringLiteral("服务器授权"));
    scene.takePicture(QStringLiteral("batch-waiting"));
    scene.awaitTip(QStringLiteral("授权成功"));
    scene.takePicture(QStringLiteral("batch-granted"));
    for (const char* number : {firstNumber, secondNumber}) {
        const backend::GrantRecord grant = stage.store.requireGrant(
            number, DemoData::colleague(), GrantSource::Server, GrantState::Current);
        stage.store.requireDays(grant, defaultDays);
    }
}

QString grantIntoFile(TourStage& stage)
{
    TourScene& scene = stage.scene;
    QString path = stage.client.folder() + QStringLiteral("/tour.taa");
    scene.clickCell(text(fileShown), tickColumn);
    scene.typeInto(QStringLiteral("被授权人"), DemoData::partner());
    scene.press({XHands::KeyTab});
    scene.clickButton(QStringLiteral("授权"));
    scene.clickMenuItem(QStringLiteral("文件授权"));
    scene.chooseFile(path, QStringLiteral("file-dialog"));
    scene.typeInto(QStringLiteral("halden_input_edit"), filePassword());
    scene.takePicture(QStringLiteral("file-password"));
    scene.press({XHands::KeyReturn});
    scene.awaitTip(QStringLiteral("生成授权文件成功"));
    scene.takePicture(QStringLiteral("file-granted"));

    stage.store.requireDays(stage.store.requireGrant(fileShown, DemoData::partner(),
                                                     GrantSource::File, GrantState::Current),
                            defaultDays);
    const QFile file(path);
    TourScene::require(QStringLiteral("授权文件已写出"), file.size() > 0);
    TourScene::require(QStringLiteral("授权文件只有本人可读"),
                       (file.permissions() & (QFile::ReadGroup | QFile::ReadOther)) == 0);
    return path;
}

void cancelFromOverview(TourStage& stage)
{
    TourScene& scene = stage.scene;
    scene.clickTab(QStringLiteral("账号总览"));
    scene.clickCell(text(firstShown), overviewOperationColumn);
    scene.await(QStringLiteral("取消后的未授权行"), [] {
        const QStringList row = TourPlaces::rowTexts(text(firstShown));
        return !row.isEmpty() && !row.contains(DemoData::colleague());
    });
    scene.awaitIdle();
    scene.takePicture(QStringLiteral("overview-cancelled"));
    stage.store.requireGrant(firstNumber, DemoData::colleague(), GrantSource::Server,
                             GrantState::Cancelled);
}

void findEverythingAgain(TourStage& stage)
{
    TourScene& scene = stage.scene;
    stage.client.restart();
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    scene.press({XHands::functionKey(2)});
    scene.awaitTitle(QStringLiteral("授权设置"));
    const QStringList granted = scene.rowTexts(text(secondShown));
    TourScene::require(QStringLiteral("重启后仍见授权给 %1").arg(DemoData::colleague()),
                       granted.contains(DemoData::colleague()));
    const QStringList sealed = scene.rowTexts(text(fileShown));
    TourScene::require(QStringLiteral("重启后仍见文件授权给 %1").arg(DemoData::partner()),
                       sealed.contains(DemoData::partner()));
    const QStringList cancelled = scene.rowTexts(text(firstShown));
    TourScene::require(QStringLiteral("重启后仍见已取消"),
                       !cancelled.isEmpty() && !cancelled.contains(DemoData::colleague()));
    scene.takePicture(QStringLiteral("overview-after-restart"));
}

} // namespace

QString filePassword()
{
    return QStringLiteral("tour-file-13579");
}

QString walkBatchGrants(TourStage& stage)
{
    TourScene& scene = stage.scene;
    scene.awaitTitle(QStringLiteral("登录"));
    scene.takePicture(QStringLiteral("sign-in"));
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    scene.takePicture(QStringLiteral("client"));
    scene.press({XHands::functionKey(2)});
    scene.awaitTitle(QStringLiteral("授权设置"));
    scene.takePicture(QStringLiteral("overview"));
    grantOnServer(stage);
    QString path = grantIntoFile(stage);
    cancelFromOverview(stage);
    scene.closeDialog();
    scene.takePicture(QStringLiteral("client-messages"));
    findEverythingAgain(stage);
    scene.closeDialog();
    stage.client.signOut();
    return path;
}

} // namespace host
