#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourStage.h"

#include <cmath>

namespace host {

namespace {

using backend::GrantSource;
using backend::GrantState;

const char* const accountNumber = "60550231";
constexpr int limitTickColumn = 0;
constexpr int limitValueColumn = 2;

} // namespace

void walkSingleAccount(TourStage& stage)
{
    TourScene& scene = stage.scene;
    const QString shown = QStringLiteral("日内策略");
    const QString limit = QStringLiteral("可用保证金比例(%)");
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    scene.clickCell(shown, 2, XHands::RightButton);
    scene.takePicture(QStringLiteral("account-menu"));
    scene.clickMenuItem(QStringLiteral("授权设置"));
    scene.awaitTitle(QStringLiteral("授权设置"));
    scene.typeInto(QStringLiteral("被授权人"), DemoData::colleague());
    scene.clickCell(limit, limitTickColumn);
    scene.doubleClickCell(limit, limitValueColumn);
    scene.press({XHands::KeyControl, 'a'});
    scene.type(QStringLiteral("35.5"));
    scene.press({XHands::KeyReturn});
    scene.await(QStringLiteral("阈值 35.50"),
                [limit] { return TourPlaces::rowTexts(limit).contains(QStringLiteral("35.50")); });
    scene.takePicture(QStringLiteral("single-filled"));
    scene.clickButton(QStringLiteral("授权"));
    scene.clickMenuItem(QStringLiteral("服务器授权"));
    scene.awaitTip(QStringLiteral("授权成功"));
    scene.takePicture(QStringLiteral("single-granted"));
    const backend::GrantRecord grant = stage.store.requireGrant(
        accountNumber, DemoData::colleague(), GrantSource::Server, GrantState::Current);
    TourScene::require(QStringLiteral("存储中的保证金比例为 0.355"),
                       std::abs(grant.limit.availableMarginRatio - 0.355) < 1e-9);

    scene.clickButton(QStringLiteral("取消授权"));
    scene.await(QStringLiteral("取消后又可授权"),
                [] { return TourPlaces::button(QStringLiteral("授权")).widget != nullptr; });
    stage.store.requireGrant(accountNumber, DemoData::colleague(), GrantSource::Server,
                             GrantState::Cancelled);
    scene.awaitIdle();
    scene.takePicture(QStringLiteral("single-cancelled"));
    scene.closeDialog();
    stage.client.signOut();
}

} // namespace host
