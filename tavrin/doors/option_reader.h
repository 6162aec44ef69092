// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/doors/option.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/widget/image_renderer.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

/// What a door is asked for beside the document and its model.
struct DrawingOptions {
    WidgetOptions widget = {.fetchPolicy = FetchPolicy::publicOnly};
    PictureFormat format = PictureFormat::png;
    bool hashes = false;
    /// The screen whose widget sizes hold, in points.
    Size screen = {390, 844};
    /// The folder of fonts to draw with; empty: those of `widget`.
    std::string fontDir = {};

    /// Those of the widget, with the fonts of the folder. Looks at files. Throws as `FontLibrary::inFolder` does.
    [[nodiscard]] WidgetOptions withFonts() const;
};

/// How a picture is written, where that differs from what its widget was made with.
struct PictureOptions {
    std::optional<PictureFormat> format = std::nullopt;
    std::optional<PngCompression> compression = std::nullopt;
    std::optional<int> quality = std::nullopt;
};

/// Reads a door's options one by one. Each call throws `OptionError` for what cannot be followed.
class OptionReader {
public:
    /// Whether a door has types of its own, so that numbers and flags do not come as texts.
    enum class Types : unsigned char { own, texts };

    /// `usual` is what holds where options are not given.
    OptionReader(Spelling spelling, Types types, DrawingOptions usual = {});

    /// An option by its name as the door spells it; a second one takes the first one's place.
    void read(std::string_view name, const OptionValue& value) { read(optionSpelled(name, spelling_), value); }
    void read(OptionName name, const OptionValue& value);
    /// A value of a type that no option takes, such as a list; always throws.
    [[noreturn]] void refuseType(std::string_view name) const;

    /// What all of them ask for.
    [[nodiscard]] DrawingOptions options() const;
    /// What those of use `picture` ask for.
    [[nodiscard]] PictureOptions pictureOptions() const;

private:
    [[nodiscard]] bool isGiven(OptionName name) const { return given_.test(indexOf(name)); }
    [[nodiscard]] std::string label(OptionName name) const { return spelled(name, spelling_); }
    void checkType(const Option& option, const OptionValue& value) const;

    Spelling spelling_;
    Types types_;
    DrawingOptions options_;
    std::bitset<enumeratorCount<OptionName>> given_;
    // What counts only together with others.
    std::string family_;
    Size size_ = {};
    BudgetProfile profile_ = BudgetProfile::usual;
    RenderBudget budget_;
};

}  // namespace tavrin
