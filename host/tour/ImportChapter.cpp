#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourStage.h"

namespace host {

void walkImport(TourStage& stage, const QString& path)
{
    TourScene& scene = stage.scene;
    const QString shown = QStringLiteral("0190220075");
    stage.client.signIn(DemoData::partner(), DemoData::password());
    TourScene::require(QStringLiteral("导入前看不到账号 %1").arg(shown),
                       scene.rowTexts(shown).isEmpty());
    scene.press({XHands::functionKey(3)});
    scene.awaitTitle(QStringLiteral("授权设置"));
    scene.clickButton(QStringLiteral("导入授权"));
    scene.chooseFile(path, QStringLiteral("import-dialog"));
    scene.typeInto(QStringLiteral("halden_input_edit"), filePassword());
    scene.press({XHands::KeyReturn});
    scene.awaitTip(QStringLiteral("导入成功！"));
    scene.await(QStringLiteral("列表中有 %1").arg(shown),
                [shown] { return !TourPlaces::rowTexts(shown).isEmpty(); });
    scene.takePicture(QStringLiteral("import-done"));
    const backend::GrantRecord grant =
        stage.store.requireGrant(shown.toStdString(), DemoData::partner(),
                                 backend::GrantSource::File, backend::GrantState::Current);
    TourScene::require(QStringLiteral("存储中该授权已被领取"), grant.redeemed);

    scene.clickTreeNode(shown);
    scene.takePicture(QStringLiteral("import-account"));
    scene.closeDialog();
    stage.client.signOut();
}

} // namespace host
