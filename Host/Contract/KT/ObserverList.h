#pragma once

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <vector>

namespace Velkor::KT
{

// The observers of one notifying object, in the order they were added. Safe to use from
// several threads. ForEach() calls the function without the lock held, so an observer may add
// or remove observers (itself included) while it is being notified; an observer removed during
// a round is not called later in that round.
template <class Observer>
class ObserverList
{
public:
    // Adding an observer that is already there does nothing.
    void Add(Observer* observer)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        {
            m_observers.push_back(observer);
        }
    }

    // Returns whether the observer was there.
    bool Remove(Observer* observer)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto at = std::find(m_observers.begin(), m_observers.end(), observer);
        if (at == m_observers.end())
        {
            return false;
        }
        m_observers.erase(at);
        return true;
    }

    std::size_t Count() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_observers.size();
    }

    template <class Function>
    void ForEach(Function&& function) const
    {
        std::vector<Observer*> snapshot;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            snapshot = m_observers;
        }
        for (Observer* observer : snapshot)
        {
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                if (std::find(m_observers.begin(), m_observers.end(), observer) ==
                    m_observers.end())
                {
                    continue;
                }
            }
            function(observer);
        }
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Observer*> m_observers;
};

// Add/remove operations of a service interface `Interface` whose observers are `Observer`,
// implemented over an ObserverList; the service notifies with Notify(&Observer::OnX, args...).
template <class Interface, class Observer>
class ObservableService : public Interface
{
public:
    void AddObserver(Observer* observer) override { m_observers.Add(observer); }
    void RemoveObserver(Observer* observer) override { m_observers.Remove(observer); }

    std::size_t ObserverCount() const { return m_observers.Count(); }

protected:
    template <class... Parameters, class... Arguments>
    void Notify(void (Observer::*method)(Parameters...), const Arguments&... arguments) const
    {
        m_observers.ForEach([&](Observer* observer) { (observer->*method)(arguments...); });
    }

private:
    ObserverList<Observer> m_observers;
};

}  // namespace Velkor::KT
