#pragma once

// Everything a host needs: the event record, the tracker interfaces, the exported trackers and
// handlers, the filler kinds and the configuration model the handlers take. What is not reached
// from here is internal to the library and is neither exported nor installed.

#include "Tracking/TrackingExport.h"

#include "Tracking/Event.h"
#include "Tracking/EventJson.h"
#include "Tracking/EventText.h"
#include "Tracking/IKtTracker.h"
#include "Tracking/IKtTrackingEndpoint.h"

#include "Tracking/AggregatorKtTracker.h"
#include "Tracking/AppCoreKtTracker.h"
#include "Tracking/AttachReport.h"
#include "Tracking/DebugKtTracker.h"
#include "Tracking/FilterKtTracker.h"
#include "Tracking/ForwardKtTracker.h"
#include "Tracking/GuiHandler.h"
#include "Tracking/HookHighlight.h"
#include "Tracking/IRuleTraceListener.h"
#include "Tracking/IStatisticsManager.h"
#include "Tracking/ObjectTree.h"
#include "Tracking/RecordingKtTracker.h"
#include "Tracking/StatisticsManager.h"

#include "Tracking/InstancesHandler.h"

#include "Tracking/Fillers/FillerTypes.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"
#include "Tracking/ConfigLoader.h"
