// What the uploader does about each reply, and how long it waits before the next attempt.

#include "Analytics/Backoff_p.h"
#include "Analytics/ClickHouseSink_p.h"
#include "Analytics/ReplyVerdict_p.h"
#include "Analytics/RetryAfter_p.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QUrl>

#include <optional>

using namespace Velkor::Analytics;
using Action = ReplyVerdict::Action;
using std::chrono::milliseconds;

namespace
{

const QDateTime kNow = QDateTime(QDate(2026, 10, 21), QTime(7, 28, 0), Qt::UTC);

struct ReplyRow
{
    const char* label;
    ReplyFacts facts;
    Action action;
    std::optional<milliseconds> retryAfter;
    std::string error;
};

ReplyFacts Status(int status, QByteArray body = {}, QByteArray retryAfter = {},
                  bool refusesData = false)
{
    ReplyFacts facts;
    facts.status = status;
    facts.body = std::move(body);
    facts.retryAfter = std::move(retryAfter);
    facts.refusesData = refusesData;
    return facts;
}

ReplyFacts NoReply(const char* error, bool timedOut, bool tls)
{
    ReplyFacts facts;
    facts.networkError = error;
    facts.timedOut = timedOut;
    facts.tlsError = tls;
    return facts;
}

using ReplyVerdictTest = KtTest::Table<ReplyRow>;

TEST_P(ReplyVerdictTest, ChoosesTheAction)
{
    const ReplyRow& row = GetParam();
    const ReplyVerdict verdict = JudgeReply(row.facts, kNow, "http://s/");
    EXPECT_EQ(verdict.action, row.action);
    EXPECT_EQ(verdict.retryAfter, row.retryAfter);
    EXPECT_EQ(verdict.error, row.error);
}

KT_ROWS(
    ReplyVerdictTest,
    {{"Ok", Status(200), Action::Done, {}, ""},
     {"NoContent", Status(204), Action::Done, {}, ""},
     {"ServerError", Status(500, "a.\nb\n"), Action::Retry, {}, "HTTP 500 from http://s/: a. b"},
     {"UnavailableWithSeconds", Status(503, {}, "7"), Action::Retry, milliseconds(7000),
      "HTTP 503 from http://s/"},
     {"TooManyWithDate", Status(429, {}, "Wed, 21 Oct 2026 07:28:30 GMT"), Action::Retry,
      milliseconds(30000), "HTTP 429 from http://s/"},
     {"RequestTimeout", Status(408), Action::Retry, {}, "HTTP 408 from http://s/"},
     {"Unauthorized", Status(401, "who?"), Action::Pause, {}, "HTTP 401 from http://s/: who?"},
     {"Forbidden", Status(403), Action::Pause, {}, "HTTP 403 from http://s/"},
     {"NotFound", Status(404), Action::Pause, {}, "HTTP 404 from http://s/"},
     {"Redirect", Status(301), Action::Pause, {}, "HTTP 301 from http://s/"},
     {"BadRequest", Status(400, "poison"), Action::Split, {}, "HTTP 400 from http://s/: poison"},
     {"TooLarge", Status(413), Action::Split, {}, "HTTP 413 from http://s/"},
     {"Refused", Status(500, "27", {}, true), Action::Split, {}, "HTTP 500 from http://s/: 27"},
     {"NoServer", NoReply("x", false, false), Action::Retry, {}, "no connection from http://s/: x"},
     {"Timeout", NoReply("x", true, false), Action::Retry, {}, "no reply from http://s/: x"},
     {"Tls", NoReply("x", false, true), Action::Pause, {}, "no connection from http://s/: x"}});

struct RetryAfterRow
{
    const char* label;
    const char* value;
    std::optional<milliseconds> wait;
};

using RetryAfterTest = KtTest::Table<RetryAfterRow>;

TEST_P(RetryAfterTest, ReadsTheWait)
{
    EXPECT_EQ(ParseRetryAfter(GetParam().value, kNow), GetParam().wait);
}

KT_ROWS(RetryAfterTest, {{"Seconds", " 120 ", milliseconds(120000)},
                         {"Date", "Wed, 21 Oct 2026 07:29:00 GMT", milliseconds(60000)},
                         {"PastDate", "Wed, 21 Oct 2026 07:00:00 GMT", milliseconds(0)},
                         {"Empty", "", std::nullopt},
                         {"Negative", "-5", std::nullopt},
                         {"Garbage", "soon", std::nullopt}});

struct BackoffRow
{
    const char* label;
    std::optional<milliseconds> retryAfter;
    std::vector<std::pair<long, long>> bounds;  // of the 1st, 2nd, ... failure in a row
};

using BackoffTest = KtTest::Table<BackoffRow>;

// min 100 ms, max 1 s, Retry-After up to 5 s.
TEST_P(BackoffTest, StaysWithinItsBounds)
{
    for (int run = 0; run < 200; ++run)
    {
        Backoff backoff(milliseconds(100), milliseconds(1000), milliseconds(5000));
        for (const auto& [low, high] : GetParam().bounds)
        {
            const milliseconds delay = backoff.Next(GetParam().retryAfter);
            ASSERT_GE(delay.count(), low);
            ASSERT_LE(delay.count(), high);
        }
        backoff.Reset();
        ASSERT_EQ(backoff.Next(std::nullopt).count(), 100);
    }
}

KT_ROWS(BackoffTest, {{"Doubles",
                       std::nullopt,
                       {{100, 100}, {100, 200}, {200, 400}, {400, 800}, {500, 1000}, {500, 1000}}},
                      {"RetryAfterLengthens", milliseconds(3000), {{3000, 3000}, {3000, 3000}}},
                      {"RetryAfterCapped", milliseconds(60000), {{5000, 5000}}},
                      {"ShortRetryAfterKeepsBackoff", milliseconds(10), {{100, 100}, {100, 200}}}});

TEST(ClickHouseSinkTest, ReadsDataErrorsAsRefusals)
{
    const ClickHouseSink sink(QUrl("http://store/"), {});
    EXPECT_TRUE(sink.RefusesData(500, "Code: 27, e.displayText() = DB::Exception: Cannot parse"));
    EXPECT_TRUE(sink.RefusesData(500, "Code: 117, e.displayText() = DB::Exception: Unknown field"));
    EXPECT_FALSE(
        sink.RefusesData(500, "Code: 252, e.displayText() = DB::Exception: Too many parts"));
    EXPECT_FALSE(sink.RefusesData(503, "Code: 27"));
}

}  // namespace
