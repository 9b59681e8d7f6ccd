#pragma once

// A GUI handler over the gui section of a document given as text, keeping every attach report.

#include "Support/RecordingTracker.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/GuiHandler.h"

#include <QString>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace KtTest
{

// A main document of the gui section `entries`, which begin on its line 2.
inline std::string GuiDocument(const std::string& entries)
{
    return "<ktmstat><gui>\n" + entries + "</gui></ktmstat>\n";
}

struct ReportingHandler
{
    explicit ReportingHandler(const std::string& document, const QString& name = QString())
    {
        std::istringstream input(document);
        model =
            Velkor::KT::Tracking::Config::ktmstat(input, lines, ::xml_schema::flags::dont_validate);
        handler.SetConfig(*model->gui(), lines, name);
        handler.SetAttachReportSink([this](const Velkor::KT::Tracking::AttachReport& report)
                                    { reports.push_back(report); });
    }

    std::unique_ptr<Velkor::KT::Tracking::Config::KtmStat> model;
    Velkor::KT::Tracking::Config::GuiLines lines;
    std::shared_ptr<RecordingTracker> tracker = std::make_shared<RecordingTracker>();
    Velkor::KT::Tracking::GuiHandler handler{tracker};
    std::vector<Velkor::KT::Tracking::AttachReport> reports;
};

}  // namespace KtTest
