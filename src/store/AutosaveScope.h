// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/ProjectStore.h"

#include <exception>

namespace quillabrae::store {

class ProjectStore::AutosaveScope {
public:
    explicit AutosaveScope(ProjectStore& store) : m_store(store) { ++m_store.m_autosaveHolds; }
    ~AutosaveScope() {
        if (--m_store.m_autosaveHolds > 0 || !m_store.m_isAutosaveDue) return;
        // A command that fails is taken back first.
        if (std::uncaught_exceptions() > 0) return;
        m_store.m_isAutosaveDue = false;
        m_store.writeAutosavedSession();
    }
    AutosaveScope(const AutosaveScope&) = delete;
    AutosaveScope& operator=(const AutosaveScope&) = delete;

private:
    ProjectStore& m_store;
};

} // namespace quillabrae::store
