// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/DeviceView.h"
#include "canvas/LayerPictures.h"
#include "raster/GatherKernel.h"
#include "raster/RasterImage.h"
#include "raster/Stretch.h"

#include <QRect>

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace quillabrae::canvas {

/// What a row is composed on and what is laid over it: composites of the whole viewport, or
/// nothing.
struct ComposerGround {
    /// Stands for the checker and all below the pictures.
    const raster::RasterImage* below = nullptr;
    const raster::RasterImage* above = nullptr;
    /// Without `below`: whether the checker shows, or nothing at all.
    bool hasChecker = true;
};

/// A composite of the device pixels `viewport`, not written yet. Throws std::bad_alloc.
raster::RasterImage uninitializedComposite(const QRect& viewport);

/// Composes pictures, sampled at device pixels, a row at a time. Rows may be composed on several
/// threads, each with its own buffer.
class CanvasComposer {
    /// Samples `first` to `end` - 1 of an item's columns.
    struct Run {
        std::size_t first;
        std::size_t end;
    };
    /// An item's runs in one row of its tiles.
    struct ItemRuns {
        int tileRow = -1;
        std::vector<Run> runs;
        /// Whether the item hides all that lies under it.
        bool isOpaque = false;
    };

public:
    /// The latest row that was composed into it; filled again only where the next one differs.
    struct RowBuffer {
        std::vector<std::uint8_t> pixels;
        std::vector<std::uint8_t> gathered;
        std::vector<int> sourceRows;
        /// The parts of the row that each picture has to be drawn in.
        std::vector<ItemRuns> itemRuns;
    };

    /// `device`: the device pixels to compose, all on the canvas.
    CanvasComposer(const DeviceView& view, const QRect& device, std::vector<CanvasPicture> pictures,
                   const ComposerGround& ground);

    /// The premultiplied RGBA8 pixels of device row `y`, valid until the buffer's next use.
    const std::uint8_t* composeRow(int y, RowBuffer& buffer) const;

    /// Composes the rows `first` to `end` - 1 into a composite of the whole viewport, which may be
    /// its own ground.
    void composeInto(raster::RasterImage& viewport, int first, int end) const;

private:
    /// A picture with its columns and rows of the device.
    struct Item {
        CanvasPicture picture;
        std::size_t columns = 0;
        std::size_t rows = 0;
    };

    struct AxisKey {
        double low;
        double length;
        int sourceCount;
        /// Of the sources, those that there are pixels of.
        int first;
        int count;

        AxisKey ofWhole() const { return {low, length, sourceCount, 0, sourceCount}; }
        friend bool operator==(const AxisKey&, const AxisKey&) = default;
    };
    struct Columns {
        raster::AxisSamples samples;
        raster::RowGather gather;
    };
    template <typename Samples>
    using AxisTable = std::vector<std::pair<AxisKey, Samples>>;

    void makeChecker(const DeviceView& view);
    int checkerRow(int y) const;
    int sourceRow(const Item& item, int y) const;
    void startRow(int y, std::uint8_t* row) const;
    void updateRuns(const Item& item, int source, ItemRuns& runs) const;
    void drawItem(const Item& item, int y, int source, RowBuffer& buffer,
                  const ItemRuns& runs) const;

    /// In bytes: from the start of the viewport's rows to the composed pixels.
    std::size_t deviceOffset() const { return 4 * static_cast<std::size_t>(m_device.left()); }

    QRect m_device;
    DeviceAxis m_y;
    ComposerGround m_ground;
    AxisTable<Columns> m_columns;
    AxisTable<raster::AxisSamples> m_rows;
    std::vector<Item> m_items;
    /// The checker's rows: one that begins with a cell of row 0, one with a cell of row 1.
    std::array<std::vector<std::uint8_t>, 2> m_checker;
};

} // namespace quillabrae::canvas
