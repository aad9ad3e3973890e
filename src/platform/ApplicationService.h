// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/StartRequest.h"

#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace quillabrae::platform {

/// The program on the session bus, as desktops look for it: `org.freedesktop.Application` under the
/// application id. Any program of the user's may call it, so what it sends is bounded and checked;
/// a call that goes beyond the bounds is refused as a whole.
class ApplicationService final : public QObject {
    Q_OBJECT

public:
    /// The length of all URLs together that one call may open.
    static constexpr qsizetype maximumUrlLength = qsizetype{16} * 1024 * 1024;

    explicit ApplicationService(QObject* parent = nullptr);
    ~ApplicationService() override;

    /// Whether the bus has started this program to answer a call that is still to come. Forgets it,
    /// so that what the program starts does not believe the same of itself.
    static bool takeStartedByBus();

    /// Goes on the bus, where there is one. While another program has the name, this one stands in
    /// line for it.
    void start();

    /// The call that the bus has started this program for; nothing when none comes within
    /// `patience`. Later calls come through the signal.
    std::optional<StartRequest> waitForCall(std::chrono::milliseconds patience);

    /// What the calls of the interface mean; nothing for one beyond the bounds.
    static StartRequest activation(const QVariantMap& platformData);
    static std::optional<StartRequest> opening(const QStringList& uris,
                                               const QVariantMap& platformData);
    static StartRequest actionCall(const QString& name, const QVariantMap& platformData);

Q_SIGNALS:
    /// Somebody asked for this. The call has been answered by then, so that listeners may take
    /// their time.
    void asked(const quillabrae::platform::StartRequest& request);

private:
    bool m_isOnBus = false;
};

} // namespace quillabrae::platform
