// SPDX-License-Identifier: GPL-3.0-or-later
// ask-secret-store load|save|remove SERVICE ACCOUNT [SECRET]: prints one line, "found SECRET",
// "nothing", "done" or "refused DESCRIPTION".
#include "platform/KeychainSecretStore.h"

#include <QCoreApplication>

#include <cstdio>

using namespace quillabrae::platform;

namespace {

QString answer(const QStringList& arguments) {
    KeychainSecretStore store;
    const SecretName name{arguments.value(2), arguments.value(3)};
    try {
        if (arguments.value(1) == QStringLiteral("load")) {
            const std::optional<QString> secret = store.load(name);
            return secret ? QStringLiteral("found ") + *secret : QStringLiteral("nothing");
        }
        if (arguments.value(1) == QStringLiteral("save"))
            store.save(name, arguments.value(4));
        else
            store.remove(name);
        return QStringLiteral("done");
    } catch (const SecretStoreError& error) {
        return QStringLiteral("refused ") + error.description();
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::puts(answer(QCoreApplication::arguments()).toUtf8().constData());
    return 0;
}
