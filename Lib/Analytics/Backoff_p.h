#pragma once

#include <chrono>
#include <optional>
#include <random>

namespace Velkor::Analytics
{

// The waits between attempts while they fail: after the n-th failure in a row a delay drawn
// uniformly between half and all of min(maxDelay, minDelay * 2^(n - 1)), never below minDelay.
// A Retry-After of the reply makes it at least that long, but never longer than maxRetryAfter
// (nor shorter than the drawn delay).
class Backoff
{
public:
    using Milliseconds = std::chrono::milliseconds;

    Backoff(Milliseconds minDelay, Milliseconds maxDelay, Milliseconds maxRetryAfter);

    // The wait after one more failure.
    Milliseconds Next(std::optional<Milliseconds> retryAfter);
    // After a success: the next failure is the first again.
    void Reset() { m_failures = 0; }

private:
    const Milliseconds m_minDelay;
    const Milliseconds m_maxDelay;
    const Milliseconds m_maxRetryAfter;
    int m_failures = 0;
    std::mt19937_64 m_random;
};

}  // namespace Velkor::Analytics
