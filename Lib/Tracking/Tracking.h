#pragma once

// Everything a host needs: the event record, the tracker interfaces, the exported trackers and
// handlers, the filler kinds and the configuration model the handlers take. What is not reached
// from here is internal to the library and is neither exported nor installed.

#include "Tracking/TrackingExport.h"

// The event record and the tracker chain.
#include "Tracking/Events/Event.h"
#include "Tracking/Events/EventJson.h"
#include "Tracking/Events/EventText.h"
#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Events/IKtTrackingEndpoint.h"

// The facade that owns the sources of events.
#include "Tracking/Manager/IStatisticsManager.h"
#include "Tracking/Manager/StatisticsManager.h"

// The documents: loading and the configuration model.
#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

// The rule stages.
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"
#include "Tracking/Rules/IRuleTraceListener.h"

// The sources: GUI objects, the host's services, the machine's facts.
#include "Tracking/Fillers/FillerTypes.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/GuiHandler.h"
#include "Tracking/Gui/HookHighlight.h"
#include "Tracking/Gui/ObjectTree.h"
#include "Tracking/Instances/InstancesHandler.h"

// The delivery trackers.
#include "Tracking/Delivery/AppCoreKtTracker.h"
#include "Tracking/Delivery/DebugKtTracker.h"
#include "Tracking/Delivery/ForwardKtTracker.h"
#include "Tracking/Delivery/RecordingKtTracker.h"
