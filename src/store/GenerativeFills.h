// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/GenerativeFillRequest.h"
#include "model/PixelSelection.h"
#include "model/PngBytes.h"
#include "platform/HttpClient.h"
#include "platform/LatestWork.h"
#include "platform/SecretStore.h"
#include "raster/RasterImage.h"
#include "store/ProjectStore.h"

#include <QUuid>

#include <map>
#include <memory>
#include <optional>

namespace quillabrae::store {

/// What a fill takes along from the project, and knows it by afterwards.
struct GenerativeFillInput {
    QUuid projectID;
    QUuid layerID;
    model::PixelSelection selection;
    model::PngBytes imagePNGData;
    model::PngBytes maskPNGData;
    bool usesFullCanvasContext = true;
};

/// The fills that wait for the user's key, for the service, or for their picture to be decoded.
struct ProjectStore::GenerativeFills {
    struct Fill {
        effects::GenerativeFillRequest request;
        /// Nothing where there was nothing to fill.
        std::optional<GenerativeFillInput> input;
        FillCompletion completion;
        FillWatch watch;
        std::unique_ptr<platform::SecretCall> key;
        std::unique_ptr<platform::HttpExchange> exchange;
        std::unique_ptr<platform::LatestWork> decoding;
    };

    std::map<FillID, Fill> waiting;
    FillID lastID = 0;

    /// Ends a fill and returns what it was; nothing for one that has ended.
    std::optional<Fill> take(FillID id) {
        auto node = waiting.extract(id);
        if (node.empty()) return std::nullopt;
        return std::move(node.mapped());
    }
};

} // namespace quillabrae::store
