#include "Analytics/Backoff_p.h"

#include <algorithm>

namespace Velkor::Analytics
{

Backoff::Backoff(Milliseconds minDelay, Milliseconds maxDelay, Milliseconds maxRetryAfter)
    : m_minDelay(std::max(minDelay, Milliseconds(1))),
      m_maxDelay(std::max(maxDelay, m_minDelay)),
      m_maxRetryAfter(maxRetryAfter),
      m_random(std::random_device{}())
{
}

Backoff::Milliseconds Backoff::Next(std::optional<Milliseconds> retryAfter)
{
    ++m_failures;
    // Doubling stops at the cap, long before the shift could overflow.
    Milliseconds ceiling = m_minDelay;
    for (int doubling = 1; doubling < m_failures && ceiling < m_maxDelay; ++doubling)
    {
        ceiling *= 2;
    }
    ceiling = std::min(ceiling, m_maxDelay);
    const Milliseconds floor = std::max(m_minDelay, ceiling / 2);
    std::uniform_int_distribution<Milliseconds::rep> draw(floor.count(), ceiling.count());
    Milliseconds delay(draw(m_random));
    if (retryAfter && *retryAfter > delay)
    {
        delay = std::max(delay, std::min(*retryAfter, m_maxRetryAfter));
    }
    return delay;
}

}  // namespace Velkor::Analytics
