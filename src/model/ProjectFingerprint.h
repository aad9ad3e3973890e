// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <optional>

namespace quillabrae::model {

/// Everything of a project but where it is saved and when it last changed: two projects with equal
/// fingerprints have equal encoded bytes once those two are set aside.
///
/// It holds the project as a value that shares its pixels, so taking and comparing fingerprints
/// costs microseconds however large the document; bytes are made only where they are stored.
class ProjectFingerprint {
public:
    /// Nothing for a project that has no JSON form (a number in it is not finite).
    static std::optional<ProjectFingerprint> of(const PaintProject& project);

    /// The project with `fileURL` absent and `lastModified` at the Unix epoch.
    const PaintProject& project() const { return m_project; }

    friend bool operator==(const ProjectFingerprint&, const ProjectFingerprint&) = default;

private:
    explicit ProjectFingerprint(PaintProject project) : m_project(std::move(project)) {}

    PaintProject m_project;
};

} // namespace quillabrae::model
