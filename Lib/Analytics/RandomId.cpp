#include "Analytics/RandomId_p.h"

#include <atomic>
#include <cstdint>
#include <random>

#include <pthread.h>
#include <sys/random.h>

namespace Velkor::Analytics
{

namespace
{

// Bumped in every forked child: a thread's generator seeded before the fork seeds again.
std::atomic<unsigned> g_forks{0};

void CountFork()
{
    g_forks.fetch_add(1, std::memory_order_relaxed);
}

class Xoshiro256
{
public:
    std::uint64_t Next()
    {
        const std::uint64_t result = Rotl(m_state[1] * 5, 7) * 9;
        const std::uint64_t t = m_state[1] << 17;
        m_state[2] ^= m_state[0];
        m_state[3] ^= m_state[1];
        m_state[1] ^= m_state[2];
        m_state[0] ^= m_state[3];
        m_state[2] ^= t;
        m_state[3] = Rotl(m_state[3], 45);
        return result;
    }

    void SeedIfNeeded()
    {
        const unsigned forks = g_forks.load(std::memory_order_relaxed);
        if (m_seeded && forks == m_forks)
        {
            return;
        }
        static const int registered = ::pthread_atfork(nullptr, nullptr, &CountFork);
        (void)registered;
        std::size_t got = 0;
        auto* bytes = reinterpret_cast<unsigned char*>(m_state);
        while (got < sizeof m_state)
        {
            const ssize_t n = ::getrandom(bytes + got, sizeof m_state - got, 0);
            if (n <= 0)
            {
                break;
            }
            got += static_cast<std::size_t>(n);
        }
        if (got < sizeof m_state)
        {
            std::random_device device;
            for (auto& word : m_state)
            {
                word = (std::uint64_t{device()} << 32) ^ device();
            }
        }
        if ((m_state[0] | m_state[1] | m_state[2] | m_state[3]) == 0)
        {
            m_state[0] = 1;
        }
        m_forks = forks;
        m_seeded = true;
    }

private:
    static std::uint64_t Rotl(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }

    std::uint64_t m_state[4] = {};
    unsigned m_forks = 0;
    bool m_seeded = false;
};

}  // namespace

void AppendRandomId(std::string& out)
{
    thread_local Xoshiro256 generator;
    generator.SeedIfNeeded();
    const std::uint64_t words[2] = {generator.Next(), generator.Next()};
    static constexpr char kHex[] = "0123456789abcdef";
    char text[36];
    int at = 0;
    for (int nibble = 0; nibble < 32; ++nibble)
    {
        if (nibble == 8 || nibble == 12 || nibble == 16 || nibble == 20)
        {
            text[at++] = '-';
        }
        const std::uint64_t word = words[nibble / 16];
        text[at++] = kHex[(word >> (60 - 4 * (nibble % 16))) & 0xF];
    }
    out.append(text, sizeof text);
}

}  // namespace Velkor::Analytics
