#include "host/demo/DemoData.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourStage.h"

namespace host {

void walkAuditTrail(TourStage& stage)
{
    TourScene& scene = stage.scene;
    stage.client.signIn(DemoData::mainUser(), DemoData::password());
    scene.clickTab(QStringLiteral("操作记录"));
    scene.await(QStringLiteral("记录中有给子用户的授权"),
                [] { return !TourPlaces::rowTexts(DemoData::nightTrader()).isEmpty(); });
    scene.takePicture(QStringLiteral("audit"));
    scene.typeInto(QStringLiteral("筛选"), DemoData::nightTrader());
    scene.await(QStringLiteral("筛选后没有 %1").arg(DemoData::partner()), [] {
        return TourPlaces::rowTexts(DemoData::partner()).isEmpty() &&
               !TourPlaces::rowTexts(DemoData::nightTrader()).isEmpty();
    });
    scene.takePicture(QStringLiteral("audit-filtered"));
    stage.client.signOut();
}

} // namespace host
