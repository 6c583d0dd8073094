#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace ombrel {

/// What a stage is made from: a file, or standard input for the path "-".
struct StageInput {
    std::string path;
    std::u16string text;
    std::u16string optionsText; ///< JSON, for the stages that need options
};

/// One of the forms that a text has while it is formatted, and how it is shown.
struct Stage {
    std::string name;
    std::string help;
    void (*print)(std::ostream& stream, const StageInput& input);
    bool acceptsOptions = false; ///< prints what the options of --config make of the text
};

/// All stages, in the order in which a text passes through them.
const std::vector<Stage>& getStages();

} // namespace ombrel
