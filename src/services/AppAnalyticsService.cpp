// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppAnalyticsService.h"

#include <QObject>

#include <map>
#include <utility>

namespace quillabrae::services {

/// What happens on the service's thread.
class AppAnalyticsService::Executor final : public QObject {
public:
    Executor(AppAnalyticsConfiguration configuration, ProgramIdentity identity,
             AppAnalyticsDefaults& defaults, AppAnalyticsTransportFactory makeTransport)
        : m_configuration(std::move(configuration)),
          m_identity(std::move(identity)),
          m_defaults(defaults),
          m_makeTransport(std::move(makeTransport)) {}

    void recordLaunch() {
        const auto tracked = m_defaults.lastTrackedVersion();
        if (tracked == m_identity.version)
            sendLaunch();
        else if (!tracked)
            sendOnce(AppAnalyticsEvent::firstLaunch, {});
        else
            sendOnce(AppAnalyticsEvent::updated,
                     {{QStringLiteral("previous_version"), *tracked},
                      {QStringLiteral("current_version"), m_identity.version}});
    }

    using Outcome = AppAnalyticsTransport::Outcome;

    void send(AppAnalyticsEvent event, const AnalyticsData& data,
              std::function<void(Outcome)> completion) {
        // The user's leave may have been taken back while the task waited for its turn.
        if (!m_defaults.sharesUsageData()) return;
        if (!m_transport) m_transport = m_makeTransport();
        const int id = ++m_lastID;
        m_underWay[id] =
            m_transport->send(makeAnalyticsRequest(m_configuration, m_identity, event, data),
                              [this, id, completion = std::move(completion)](Outcome outcome) {
                                  const auto ended = m_underWay.extract(id);
                                  if (completion) completion(outcome);
                              });
    }

    void giveUp() { m_underWay.clear(); }

private:
    void sendLaunch() { send(AppAnalyticsEvent::launch, {}, {}); }

    /// Sends what has to arrive once for each version, and then the launch.
    void sendOnce(AppAnalyticsEvent event, const AnalyticsData& data) {
        send(event, data, [this](Outcome outcome) {
            if (outcome == Outcome::accepted) m_defaults.setLastTrackedVersion(m_identity.version);
            sendLaunch();
        });
    }

    AppAnalyticsConfiguration m_configuration;
    ProgramIdentity m_identity;
    AppAnalyticsDefaults& m_defaults;
    AppAnalyticsTransportFactory m_makeTransport;
    std::unique_ptr<AppAnalyticsTransport> m_transport;
    std::map<int, std::unique_ptr<platform::HttpExchange>> m_underWay;
    int m_lastID = 0;
};

AppAnalyticsService::AppAnalyticsService(std::optional<AppAnalyticsConfiguration> configuration,
                                         platform::Preferences& preferences,
                                         ProgramIdentity identity,
                                         AppAnalyticsTransportFactory makeTransport)
    : m_configuration(std::move(configuration)),
      m_identity(std::move(identity)),
      m_makeTransport(std::move(makeTransport)),
      m_defaults(preferences) {
    m_thread.setObjectName(QStringLiteral("analytics"));
    QObject::connect(&m_defaults, &AppAnalyticsDefaults::switchedOff, &m_thread, [this] {
        if (m_executor) QMetaObject::invokeMethod(m_executor, [this] { m_executor->giveUp(); });
    });
}

AppAnalyticsService::~AppAnalyticsService() {
    m_thread.quit();
    m_thread.wait();
}

bool AppAnalyticsService::isEnabled() const {
    return m_configuration && m_defaults.sharesUsageData();
}

void AppAnalyticsService::track(AppAnalyticsEvent event, const AnalyticsData& data) {
    run([event, data](Executor& executor) { executor.send(event, data, {}); });
}

void AppAnalyticsService::trackLaunch() {
    run([](Executor& executor) { executor.recordLaunch(); });
}

void AppAnalyticsService::run(const std::function<void(Executor&)>& task) {
    if (!isEnabled()) return;
    if (!m_executor) {
        m_executor = new Executor(*m_configuration, m_identity, m_defaults, m_makeTransport);
        m_executor->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_executor, &QObject::deleteLater);
        m_thread.start();
    }
    QMetaObject::invokeMethod(m_executor, [executor = m_executor, task] { task(*executor); });
}

} // namespace quillabrae::services
