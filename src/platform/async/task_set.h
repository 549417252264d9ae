#pragma once

#include "platform/async/task.h"

#include <vector>

namespace quiv {

// The running tasks of a part; they go with it. Finished ones are dropped when the next is added.
class TaskSet {
public:
    void add(Task<> task) {
        std::erase_if(m_tasks, [](const Task<>& each) { return each.isDone(); });
        if (!task.isDone())
            m_tasks.push_back(std::move(task));
    }
    void cancelAll() { std::vector<Task<>>().swap(m_tasks); }

private:
    std::vector<Task<>> m_tasks;
};

} // namespace quiv
