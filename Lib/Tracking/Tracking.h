#pragma once

// Everything a host needs: the event record, the tracker interfaces and the exported trackers.

#include "Tracking/TrackingExport.h"

#include "Tracking/Event.h"
#include "Tracking/EventText.h"
#include "Tracking/IKtTracker.h"
#include "Tracking/IKtTrackingEndpoint.h"
#include "Tracking/NotNull.h"

#include "Tracking/AggregatorKtTracker.h"
#include "Tracking/AppCoreKtTracker.h"
#include "Tracking/AttachReport.h"
#include "Tracking/DebugKtTracker.h"
#include "Tracking/FilterKtTracker.h"
#include "Tracking/ForwardKtTracker.h"
#include "Tracking/GuiHandler.h"
#include "Tracking/IStatisticsManager.h"
#include "Tracking/ObjectTree.h"
#include "Tracking/StatisticsManager.h"

#include "Tracking/InstancesHandler.h"
#include "Tracking/LambdaQt4WithStringParameter.h"
#include "Tracking/QtEventHandler.h"

#include "Tracking/Fillers/FillerTypes.h"

#include "Tracking/ConfigLoader.h"
#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"
