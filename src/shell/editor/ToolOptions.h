// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

class QHBoxLayout;

namespace quillabrae::model {
struct PaintAppSettings;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

struct FontFamilyOption;
struct MenuOption;
struct SliderOption;
struct ToggleOption;
struct ToolOptionGroup;

/// The options of the selected tool, made from the table when the tool is first chosen; shows only
/// what that tool heeds.
class ToolOptions final : public QWidget {
    Q_OBJECT

public:
    explicit ToolOptions(store::ProjectStore& store, QWidget* parent = nullptr);

private:
    /// Brings a control to what the settings say.
    using Show = std::function<void(const model::PaintAppSettings& settings)>;
    struct Group {
        QWidget* widget = nullptr;
        std::vector<Show> controls;
    };

    Group& group(const ToolOptionGroup& table);
    Show makeControl(const SliderOption& option, QHBoxLayout& layout);
    Show makeControl(const MenuOption& option, QHBoxLayout& layout);
    Show makeControl(const FontFamilyOption& option, QHBoxLayout& layout);
    Show makeControl(const ToggleOption& option, QHBoxLayout& layout);
    void showSettings();

    store::ProjectStore& m_store;
    std::map<const ToolOptionGroup*, Group> m_groups;
};

} // namespace quillabrae::shell
