#pragma once

#include "host/tour/StoreWitness.h"
#include "host/tour/TourClient.h"
#include "host/tour/TourScene.h"

namespace host {

/// Everything that a chapter of the tour works with.
struct TourStage
{
    TourScene& scene;
    TourClient& client;
    StoreWitness& store;
};

} // namespace host
