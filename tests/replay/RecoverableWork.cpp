// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/RecoverableWork.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <span>

namespace quillabrae::replay {
namespace {

/// A record of an entry without what a start takes from the tab instead.
QJsonObject withoutIdentity(QJsonObject project) {
    project.remove(QStringLiteral("id"));
    project.remove(QStringLiteral("fileURL"));
    return project;
}

QJsonObject entryRecord(QJsonObject entry) {
    entry.insert(QStringLiteral("project"),
                 withoutIdentity(entry.value(QStringLiteral("project")).toObject()));
    return entry;
}

RecoverableTab tabFrom(const QJsonObject& record) {
    RecoverableTab tab{record.value(QStringLiteral("project")).toObject(),
                       record.value(QStringLiteral("isUnsaved")).toBool(),
                       {},
                       record.value(QStringLiteral("selectedIndex")).toInt()};
    const QJsonArray entries = record.value(QStringLiteral("entries")).toArray();
    if (entries.size() < 2) return tab;
    for (const auto& entry : entries) tab.entries.push_back(entryRecord(entry.toObject()));
    // A start gives the selected entry the project as it stands, which a save or a gesture that
    // records nothing may have changed.
    tab.entries.at(static_cast<std::size_t>(tab.selected))
        .insert(QStringLiteral("project"), withoutIdentity(tab.project));
    return tab;
}

/// An entry that stands for its tab, without what a save changes, or without what the tab may have
/// had and the entry itself has not once it has been left: pixels that were put down, for one.
QJsonObject withoutMarks(QJsonObject entry, bool isLeft) {
    QJsonObject project = entry.value(QStringLiteral("project")).toObject();
    project.remove(QStringLiteral("lastModified"));
    entry.insert(QStringLiteral("project"), isLeft ? QJsonValue() : QJsonValue(project));
    return entry;
}

/// Whether both have the same entries before `end`, the one that `from` stands at taken for itself.
bool hasSameEntries(const RecoverableTab& from, const RecoverableTab& to, std::size_t end,
                    bool isLeft) {
    for (std::size_t i = 0; i < end; ++i) {
        const bool stands = static_cast<int>(i) == from.selected;
        if (stands ? withoutMarks(from.entries[i], isLeft) != withoutMarks(to.entries[i], isLeft)
                   : from.entries[i] != to.entries[i])
            return false;
    }
    return true;
}

bool isEdited(const RecoverableTab& from, const RecoverableTab& to, std::size_t mostAdded) {
    const auto kept = from.entries.empty() ? std::size_t{0} : std::size_t(from.selected) + 1;
    const std::size_t added = to.entries.size() - std::min(to.entries.size(), kept);
    // The first entry of a history that was not kept counts with those that were added.
    const bool isShort = added >= 1 && added <= mostAdded + (from.entries.empty() ? 1U : 0U);
    return isShort && to.selected == static_cast<int>(to.entries.size()) - 1 &&
           hasSameEntries(from, to, kept, true);
}

bool isMoved(const RecoverableTab& from, const RecoverableTab& to) {
    return from.entries.size() == to.entries.size() &&
           hasSameEntries(from, to, from.entries.size(), from.selected != to.selected) &&
           from.project.value(QStringLiteral("id")) == to.project.value(QStringLiteral("id"));
}

QString compact(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// A line for each record that may differ.
QStringList linesOf(const RecoverableWork& work) {
    QStringList lines{QStringLiteral("active ") + work.active.toString()};
    for (const RecoverableTab& tab : work.tabs) {
        const QString id = tab.project.value(QStringLiteral("id")).toString();
        lines << id + QStringLiteral(" unsaved %1, at %2 of %3")
                          .arg(tab.isUnsaved)
                          .arg(tab.selected)
                          .arg(tab.entries.size())
              << compact(tab.project);
        for (const QJsonObject& entry : tab.entries) lines << id + u' ' + compact(entry);
    }
    return lines;
}

std::span<const QJsonObject> pastOf(const RecoverableTab& tab) {
    const auto count = static_cast<std::size_t>(tab.selected) + 1;
    return std::span(tab.entries).first(std::min(tab.entries.size(), count));
}

bool leadsOn(const RecoverableTab& from, const RecoverableTab& to, Change change) {
    if (change == Change::move || change == Change::save) return isMoved(from, to);
    return isEdited(from, to, change == Change::editAfterDraft ? 3 : 2);
}

} // namespace

QSize RecoverableTab::canvas() const {
    return QSizeF(project.value(QStringLiteral("canvasWidth")).toDouble(),
                  project.value(QStringLiteral("canvasHeight")).toDouble())
        .toSize();
}

RecoverableWork RecoverableWork::from(const QJsonObject& recoverable) {
    RecoverableWork work{{}, recoverable.value(QStringLiteral("activeProjectID"))};
    const QJsonArray tabs = recoverable.value(QStringLiteral("tabs")).toArray();
    for (const auto& record : tabs) work.tabs.push_back(tabFrom(record.toObject()));
    return work;
}

const RecoverableTab* RecoverableWork::activeTab() const {
    const auto found = std::ranges::find_if(tabs, [this](const RecoverableTab& tab) {
        return tab.project.value(QStringLiteral("id")) == active;
    });
    return found == tabs.end() ? nullptr : &*found;
}

bool RecoverableWork::hasSamePast(const RecoverableWork& other) const {
    const auto id = [](const QJsonObject& record) { return record.value(QStringLiteral("id")); };
    const auto isSame = [&](const RecoverableTab& a, const RecoverableTab& b) {
        return id(a.project) == id(b.project) && a.selected == b.selected &&
               std::ranges::equal(pastOf(a), pastOf(b), {}, id, id);
    };
    return active == other.active && std::ranges::equal(tabs, other.tabs, isSame);
}

QString RecoverableWork::differenceFrom(const RecoverableWork& other) const {
    const QStringList own = linesOf(*this);
    const QStringList others = linesOf(other);
    QString text;
    for (const QString& line : own)
        if (!others.contains(line)) text += QStringLiteral("+ %1\n").arg(line);
    for (const QString& line : others)
        if (!own.contains(line)) text += QStringLiteral("- %1\n").arg(line);
    return text;
}

bool leadsOn(const RecoverableWork& from, const RecoverableWork& to, Change change) {
    const auto [before, after] = std::ranges::mismatch(from.tabs, to.tabs);
    const auto beforeEnd = from.tabs.end();
    const auto afterEnd = to.tabs.end();
    if (before == beforeEnd) return afterEnd - after <= 1;
    if (after == afterEnd) return beforeEnd - before == 1;
    if (from.tabs.size() == to.tabs.size())
        return std::equal(before + 1, beforeEnd, after + 1) && leadsOn(*before, *after, change);
    return from.tabs.size() == to.tabs.size() + 1 && std::equal(before + 1, beforeEnd, after);
}

} // namespace quillabrae::replay
