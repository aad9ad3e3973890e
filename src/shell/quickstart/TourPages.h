// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <span>

namespace quillabrae::shell {

struct TourPoint {
    const char* caption;
    /// Plain words; the English title of a command in braces stands for its keys, in every
    /// language.
    const char* text;
};

/// One step of the tour.
struct TourPage {
    /// What stands beside, above or instead of the points.
    enum class Figure { widePicture, tallPicture, tools, shortcuts };

    /// Its name in the list of steps.
    const char* step;
    const char* symbolName;
    const char* heading;
    Figure figure;
    /// Of the picture; null without one.
    const char* pictureName;
    /// What the picture shows, for those who do not see it.
    const char* pictureText;
    std::span<const TourPoint> points;
};

std::span<const TourPage> tourPages();

/// A text of the tour in the user's language.
QString tourText(const char* text);
/// The same with the keys of the commands whose titles it has in braces.
QString withShortcuts(const char* text);

} // namespace quillabrae::shell
