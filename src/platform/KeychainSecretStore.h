// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

namespace quillabrae::platform {

/// The desktop's own store: the Secret Service or KWallet. There is no fallback to a file. While a
/// call blocks, windows are painted but take no input; an order that was begun leaves them alone.
class KeychainSecretStore final : public SecretStore {
public:
    std::optional<QString> load(const SecretName& name) override;
    void save(const SecretName& name, const QString& secret) override;
    void remove(const SecretName& name) override;
    std::unique_ptr<SecretCall> begin(const SecretOrder& order, Completion completion) override;
};

} // namespace quillabrae::platform
