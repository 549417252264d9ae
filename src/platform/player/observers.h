#pragma once

#include "platform/player/media_player.h"

#include <list>

namespace quiv {

// Those who observe something; each goes with its Observation. Main thread only.
template <class... What> class Observers {
public:
    using Observer = std::function<void(const What&...)>;

    [[nodiscard]] std::unique_ptr<Observation> add(Observer observer) {
        return std::make_unique<Entry>(m_all, std::move(observer));
    }
    // An observer may end its observation, and that of others.
    void tell(const What&... what) const {
        const auto all = m_all;
        for (const auto& each : std::list(*all)) {
            if (*each)
                (*each)(what...);
        }
    }

private:
    using All = std::list<std::shared_ptr<Observer>>;

    class Entry final : public Observation {
    public:
        Entry(std::shared_ptr<All> all, Observer observer)
            : m_all(std::move(all)), m_observer(std::make_shared<Observer>(std::move(observer))) {
            m_all->push_back(m_observer);
        }
        ~Entry() override {
            m_all->remove(m_observer);
            *m_observer = nullptr;
        }

    private:
        std::shared_ptr<All> m_all;
        std::shared_ptr<Observer> m_observer;
    };

    std::shared_ptr<All> m_all = std::make_shared<All>();
};

} // namespace quiv
