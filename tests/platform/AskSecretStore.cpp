// SPDX-License-Identifier: GPL-3.0-or-later
// ask-secret-store [begin-]load|save|remove SERVICE ACCOUNT [SECRET]: prints one line, "found
// SECRET", "nothing", "done" or "refused DESCRIPTION". What is begun does not block: the event loop
// goes on.
#include "platform/KeychainSecretStore.h"

#include <QCoreApplication>

#include <cstdio>

using namespace quillabrae::platform;

namespace {

SecretOrder orderIn(const QStringList& arguments) {
    using Kind = SecretOrder::Kind;
    const QString verb = arguments.value(1);
    const SecretName name{arguments.value(2), arguments.value(3)};
    if (verb.endsWith(QStringLiteral("load"))) return {Kind::load, name, {}};
    if (verb.endsWith(QStringLiteral("save"))) return {Kind::save, name, arguments.value(4)};
    return {Kind::remove, name, {}};
}

SecretOutcome wait(SecretStore& store, const SecretOrder& order) {
    try {
        if (order.kind == SecretOrder::Kind::load) return store.load(order.name);
        if (order.kind == SecretOrder::Kind::save)
            store.save(order.name, order.secret);
        else
            store.remove(order.name);
        return std::nullopt;
    } catch (const SecretStoreError& error) {
        return error;
    }
}

SecretOutcome begin(SecretStore& store, const SecretOrder& order) {
    SecretOutcome outcome;
    const std::unique_ptr<SecretCall> call =
        store.begin(order, [&outcome](const SecretOutcome& answer) {
            outcome = answer;
            QCoreApplication::quit();
        });
    QCoreApplication::exec();
    return outcome;
}

QString line(const SecretOutcome& outcome, SecretOrder::Kind kind) {
    if (const auto* error = std::get_if<SecretStoreError>(&outcome))
        return QStringLiteral("refused ") + error->description();
    if (kind != SecretOrder::Kind::load) return QStringLiteral("done");
    const auto& secret = std::get<std::optional<QString>>(outcome);
    return secret ? QStringLiteral("found ") + *secret : QStringLiteral("nothing");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const SecretOrder order = orderIn(arguments);
    KeychainSecretStore store;
    const bool isBegun = arguments.value(1).startsWith(QStringLiteral("begin-"));
    const SecretOutcome outcome = isBegun ? begin(store, order) : wait(store, order);
    std::puts(line(outcome, order.kind).toUtf8().constData());
    return 0;
}
