// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeychainSecretStore.h"

#include <QEventLoop>
#include <qt6keychain/keychain.h>

#include <utility>

namespace quillabrae::platform {
namespace {

void prepare(QKeychain::Job& job, const SecretName& name) {
    job.setKey(name.account);
    job.setInsecureFallback(false);
}

/// Whether a job that has ended found what it was to work on.
bool wasFound(const QKeychain::Job& job) {
    switch (job.error()) {
        case QKeychain::NoError:
            return true;
        case QKeychain::EntryNotFound:
            return false;
        default:
            throw SecretStoreError(job.errorString());
    }
}

/// Runs a job to its end; whether it found what it was to work on.
bool finish(QKeychain::Job& job, const SecretName& name) {
    prepare(job, name);
    job.setAutoDelete(false);
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return wasFound(job);
}

/// A job that goes when it has ended.
QKeychain::Job* makeJob(const SecretOrder& order) {
    switch (order.kind) {
        case SecretOrder::Kind::load:
            return new QKeychain::ReadPasswordJob(order.name.service);
        case SecretOrder::Kind::remove:
            return new QKeychain::DeletePasswordJob(order.name.service);
        case SecretOrder::Kind::save:
            break;
    }
    auto* job = new QKeychain::WritePasswordJob(order.name.service);
    job->setTextData(order.secret);
    return job;
}

SecretOutcome outcomeOf(const QKeychain::Job& job) {
    try {
        const auto* reading = qobject_cast<const QKeychain::ReadPasswordJob*>(&job);
        if (!wasFound(job) || reading == nullptr) return std::nullopt;
        return reading->textData();
    } catch (const SecretStoreError& error) {
        return error;
    }
}

class KeychainCall final : public SecretCall {
public:
    KeychainCall(QKeychain::Job& job, SecretStore::Completion completion) {
        QObject::connect(&job, &QKeychain::Job::finished, &m_listener,
                         [told = std::move(completion)](const QKeychain::Job* ended) {
                             // The call that keeps this function may go with what it does.
                             const SecretStore::Completion telling = told;
                             telling(outcomeOf(*ended));
                         });
    }

private:
    QObject m_listener;
};

} // namespace

std::unique_ptr<SecretCall> KeychainSecretStore::begin(const SecretOrder& order,
                                                       Completion completion) {
    QKeychain::Job* job = makeJob(order);
    prepare(*job, order.name);
    auto call = std::make_unique<KeychainCall>(*job, std::move(completion));
    job->start();
    return call;
}

std::optional<QString> KeychainSecretStore::load(const SecretName& name) {
    QKeychain::ReadPasswordJob job(name.service);
    if (!finish(job, name)) return std::nullopt;
    return job.textData();
}

void KeychainSecretStore::save(const SecretName& name, const QString& secret) {
    QKeychain::WritePasswordJob job(name.service);
    job.setTextData(secret);
    finish(job, name);
}

void KeychainSecretStore::remove(const SecretName& name) {
    QKeychain::DeletePasswordJob job(name.service);
    finish(job, name);
}

} // namespace quillabrae::platform
