#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourStage.h"

namespace host {

namespace {

constexpr int manageOperationColumn = 3;
constexpr int tickColumn = 0;
const char* const accountNumber = "80010001";

bool isEnabled(const TourStage& stage)
{
    return stage.store.isSubUserEnabled(DemoData::mainUser(), DemoData::password(),
                                        DemoData::nightTrader());
}

void disable(TourStage& stage)
{
    TourScene& scene = stage.scene;
    const QString user = DemoData::nightTrader();
    scene.press({XHands::functionKey(4)});
    scene.awaitTitle(QStringLiteral("授权设置"));
    scene.takePicture(QStringLiteral("sub-users"));
    scene.clickCell(user, manageOperationColumn);
    scene.await(QStringLiteral("%1 已禁用").arg(user),
                [user] { return TourPlaces::rowTexts(user).contains(QStringLiteral("已禁用")); });
    scene.awaitIdle();
    scene.takePicture(QStringLiteral("sub-user-disabled"));
    TourScene::require(QStringLiteral("存储中 %1 已禁用").arg(user), !isEnabled(stage));
}

void enable(TourStage& stage, const QString& password)
{
    TourScene& scene = stage.scene;
    scene.clickTreeNode(DemoData::nightTrader());
    scene.typeInto(QStringLiteral("密码"), password);
    scene.typeInto(QStringLiteral("确认密码"), password);
    scene.takePicture(QStringLiteral("sub-user-password"));
    scene.click(QStringLiteral("启用按钮"),
                [] { return TourPlaces::withToolTip(QStringLiteral("启用")); });
    scene.await(QStringLiteral("状态按钮变为禁用"),
                [] { return TourPlaces::withToolTip(QStringLiteral("禁用")).widget != nullptr; });
    TourScene::require(QStringLiteral("存储中 %1 已启用").arg(DemoData::nightTrader()),
                       isEnabled(stage));
}

void grant(TourStage& stage)
{
    TourScene& scene = stage.scene;
    scene.clickCell(QStringLiteral("趋势一号"), tickColumn);
    scene.await(QStringLiteral("所选行显示待授权"), [] {
        return TourPlaces::rowTexts(QStringLiteral("趋势一号"))
            .contains(QStringLiteral("已修改, 未授权"));
    });
    scene.takePicture(QStringLiteral("sub-user-ticked"));
    scene.clickButton(QStringLiteral("授权"));
    scene.clickMenuItem(QStringLiteral("服务器授权"));
    scene.awaitTip(QStringLiteral("授权成功"));
    scene.awaitIdle();
    scene.takePicture(QStringLiteral("sub-user-granted"));
    stage.store.requireGrant(accountNumber, DemoData::nightTrader(), backend::GrantSource::Server,
                             backend::GrantState::Current);
}

} // namespace

void walkSubUsers(TourStage& stage)
{
    TourScene& scene = stage.scene;
    const QString password = QStringLiteral("newpass-8642");
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    disable(stage);
    enable(stage, password);
    grant(stage);
    scene.closeDialog();
    stage.client.signOut();

    stage.client.signIn(DemoData::nightTrader(), password);
    const QStringList received = scene.rowTexts(QStringLiteral("趋势一号"));
    TourScene::require(QStringLiteral("子用户看到 %1 给他的账号").arg(DemoData::mainUser()),
                       received.contains(DemoData::mainUser()));
    scene.takePicture(QStringLiteral("sub-user-signed-in"));
    stage.client.signOut();
}

} // namespace host
