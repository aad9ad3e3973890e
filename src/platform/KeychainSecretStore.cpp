// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeychainSecretStore.h"

#include <QEventLoop>
#include <qt6keychain/keychain.h>

namespace quillabrae::platform {
namespace {

/// Runs a job to its end; whether it found what it was to work on.
bool finish(QKeychain::Job& job, const SecretName& name) {
    job.setKey(name.account);
    job.setAutoDelete(false);
    job.setInsecureFallback(false);
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    switch (job.error()) {
        case QKeychain::NoError:
            return true;
        case QKeychain::EntryNotFound:
            return false;
        default:
            throw SecretStoreError(job.errorString());
    }
}

} // namespace

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
