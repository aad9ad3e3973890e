// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ClipboardPasteboard.h"

#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace quillabrae::platform {
namespace {

using namespace std::chrono_literals;

constexpr auto moment = 60ms;

/// The news that the contents have another owner comes in as an event.
void letEventsPass() {
    QEventLoop loop;
    QTimer::singleShot(moment, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

QStringList typesNow() {
    const QMimeData* contents = QGuiApplication::clipboard()->mimeData();
    return contents ? contents->formats() : QStringList();
}

QByteArray dataNow(const QString& type) {
    const QMimeData* contents = QGuiApplication::clipboard()->mimeData();
    return contents ? contents->data(type) : QByteArray();
}

/// A copy whose forms are made on demand.
class PromisedContents final : public QMimeData {
public:
    explicit PromisedContents(std::vector<PasteboardItem> items) : m_items(std::move(items)) {}

    QStringList formats() const override {
        QStringList types;
        for (const PasteboardItem& item : m_items) types.append(item.type);
        return types;
    }

protected:
    QVariant retrieveData(const QString& type, QMetaType) const override {
        const auto item = std::ranges::find(m_items, type, &PasteboardItem::type);
        return item == m_items.end() ? QVariant() : QVariant(item->bytes());
    }

private:
    std::vector<PasteboardItem> m_items;
};

} // namespace

ClipboardPasteboard::ClipboardPasteboard(QObject* parent)
    : ClipboardPasteboard(letEventsPass, parent) {}

ClipboardPasteboard::ClipboardPasteboard(std::function<void()> pause, QObject* parent)
    : QObject(parent), m_pause(std::move(pause)) {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            [this] { ++m_changeCount; });
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &ClipboardPasteboard::leaveBehind);
}

QStringList ClipboardPasteboard::types() const {
    QStringList types = typesNow();
    if (!types.isEmpty()) return types;
    m_pause();
    return typesNow();
}

QByteArray ClipboardPasteboard::data(const QString& type) const {
    if (!typesNow().contains(type)) return {};
    QByteArray bytes = dataNow(type);
    if (!bytes.isEmpty()) return bytes;
    m_pause();
    return dataNow(type);
}

bool ClipboardPasteboard::write(std::vector<PasteboardItem> items) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    m_items = items;
    m_written = std::make_unique<PromisedContents>(std::move(items)).release();
    clipboard->setMimeData(m_written);
    return clipboard->mimeData() == m_written;
}

void ClipboardPasteboard::leaveBehind() {
    if (!m_written || QGuiApplication::clipboard()->mimeData() != m_written) return;
    std::vector<PasteboardItem> items = m_items;
    std::ranges::reverse(items);
    write(std::move(items));
}

} // namespace quillabrae::platform
