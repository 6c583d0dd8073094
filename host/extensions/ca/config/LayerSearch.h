#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ca::config {

/// Why a file isn't part of a chain although its name is in an "extends".
enum class ChainFault {
    Circle,       ///< it is the file that extends it, or one of those that extend that
    TooManyLayers ///< the chain has as many layers as it may have
};

/// Puts a layer and all that it extends into one order, from the top down: a layer comes before what it
/// extends, and of a list the last entry with all that it extends comes before the entry before it. A file
/// that is reached more than once has one place, the first:
///
///     top.json   {"extends": ["a.json", "b.json"]}          top, b, shared, a
///     a.json     {"extends": "shared.json"}
///     b.json     {"extends": "shared.json"}
///
/// The call stack isn't used for depth, and no file is loaded twice. `Files` knows the layers, which are
/// cheap to copy, and their files, each of which has one name that can be hashed:
///
///     using Layer = ...; using Name = ...;
///     std::size_t countEntries(Layer);                               // of its "extends"
///     std::optional<Name> resolve(Layer, std::size_t entry);         // the file that an entry means
///     std::optional<Layer> load(Layer, std::size_t entry, const Name&);
///     void refuse(Layer, std::size_t entry, ChainFault);
///
/// `resolve` and `load` report it themselves if they can't answer; the entry is left out then.
template <class Files>
class LayerSearch {
public:
    using Layer = typename Files::Layer;
    using Name = typename Files::Name;

    LayerSearch(Files& files, std::size_t maximalCount) : files(files), maximalCount(maximalCount) {}

    /// A top layer without a name is none that can be extended. Call once.
    std::vector<Layer> find(Layer top, std::optional<Name> name) {
        enter(top, std::move(name));
        while (!open.empty()) {
            if (open.back().entriesLeft == 0) {
                leave();
            } else {
                --open.back().entriesLeft;
                followEntry(open.back().layer, open.back().entriesLeft);
            }
        }
        return std::move(layers);
    }

private:
    enum class State { Open, Done };

    struct OpenLayer {
        Layer layer;
        std::optional<Name> name;
        std::size_t entriesLeft;
    };

    void enter(Layer layer, std::optional<Name> name) {
        if (name) {
            states[*name] = State::Open;
        }
        layers.push_back(layer);
        open.push_back({layer, std::move(name), files.countEntries(layer)});
    }

    void leave() {
        if (open.back().name) {
            states[*open.back().name] = State::Done;
        }
        open.pop_back();
    }

    void followEntry(Layer layer, std::size_t entry) {
        std::optional<Name> name = files.resolve(layer, entry);
        if (!name) {
            return;
        }
        if (const auto known = states.find(*name); known != states.end()) {
            if (known->second == State::Open) {
                files.refuse(layer, entry, ChainFault::Circle);
            }
        } else if (layers.size() == maximalCount) {
            files.refuse(layer, entry, ChainFault::TooManyLayers);
        } else if (const std::optional<Layer> base = files.load(layer, entry, *name)) {
            enter(*base, std::move(name));
        }
    }

    Files& files;
    std::size_t maximalCount;
    std::vector<Layer> layers;
    std::vector<OpenLayer> open; ///< each extends the one after it
    std::unordered_map<Name, State> states;
};

} // namespace ca::config
