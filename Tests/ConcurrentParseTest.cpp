// Parsing brackets itself with Xerces initialisation and termination; parses running on several
// threads at once must neither race on that nor see each other's documents.

#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace Config = Velkor::KT::Tracking::Config;

namespace
{

// A parse that throws ends the program, which fails the test too.
TEST(ConcurrentParseTest, ThreadsReadTheirOwnDocuments)
{
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back(
            [&wrong, t]
            {
                const std::string id = "object" + std::to_string(t);
                for (int round = 0; round < 25; ++round)
                {
                    if ((t + round) % 2 == 0)
                    {
                        std::istringstream in("<ktmstat><gui><object id='" + id +
                                              "'/></gui></ktmstat>");
                        const auto model = Config::ktmstat(in, ::xml_schema::flags::dont_validate);
                        wrong += model->gui()->object().front().id() != id;
                    }
                    else
                    {
                        std::istringstream in("<filter><event event='" + id +
                                              "'/><event event='x'/></filter>");
                        const auto model =
                            Config::Filter::filter(in, ::xml_schema::flags::dont_validate);
                        wrong += model->event().size() != 2 || model->event().front().event() != id;
                    }
                }
            });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
