// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace quillabrae::tests {

/// Keeps requests until it is told what comes of them.
class ScriptedHttpClient final : public platform::HttpClient {
public:
    /// All that were sent, answered or not.
    std::vector<platform::HttpRequest> requests;

    std::unique_ptr<platform::HttpExchange> send(const platform::HttpRequest& request, Watch,
                                                 Completion completion) override {
        requests.push_back(request);
        auto exchange = std::make_unique<Exchange>();
        m_waiting.push_back({exchange->life, std::move(completion)});
        return exchange;
    }

    /// Ends the oldest request that waits. False when there is none, or it was given up.
    bool answer(platform::HttpOutcome outcome) {
        if (m_waiting.empty()) return false;
        const Waiting waiting = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (waiting.life.expired()) return false;
        waiting.completion(std::move(outcome));
        return true;
    }

private:
    struct Exchange final : platform::HttpExchange {
        std::shared_ptr<char> life = std::make_shared<char>();
    };
    struct Waiting {
        std::weak_ptr<char> life;
        Completion completion;
    };

    std::deque<Waiting> m_waiting;
};

} // namespace quillabrae::tests
