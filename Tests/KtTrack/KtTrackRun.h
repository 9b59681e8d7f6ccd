#pragma once

// What the tests of kttrack's commands share: running the tool's logic as the executable would,
// and the shipped documents and recorded session they read.

#include "EventDiff.h"
#include "EventsJson.h"
#include "KtTrack.h"
#include "ReplayCommand.h"
#include "Report.h"
#include "RuleChecks.h"
#include "RuleDocument.h"
#include "Schemas.h"
#include "ToolError.h"

#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Events/Event.h"

#include "Support/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace KtTrackTest
{

using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::LoadConfigFromQrc;
namespace Tool = Velkor::KT::KtTrack;

inline const std::string kConfigDir = SOURCE_CONFIG_DIR;
inline const std::string kFilter = kConfigDir + "/FilterConfig.xml";
inline const std::string kAggregator = kConfigDir + "/AggregatorConfig.xml";
inline const std::string kRawSession = std::string(KT_TEST_DATA) + "/DemoSessionRaw.jsonl";

struct Outcome
{
    int code;
    std::string out;
    std::string err;
};

inline Outcome KtTrack(const std::vector<std::string>& args, const std::string& input = {})
{
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int code = Tool::RunKtTrack(args, in, out, err);
    return {code, out.str(), err.str()};
}

inline std::string Write(const QTemporaryDir& dir, const std::string& name, const std::string& text)
{
    const QString path = dir.filePath(QString::fromStdString(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), static_cast<qint64>(text.size()));
    return path.toStdString();
}

inline std::string ReadText(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll().toStdString();
}

inline int LineOf(const std::string& text, std::size_t offset)
{
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + offset, '\n'));
}

}  // namespace KtTrackTest
