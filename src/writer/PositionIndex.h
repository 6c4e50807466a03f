// The positions of a list's elements grouped by a key, so that a writer that
// asks for "the points of this track" or "the first record of this id" once
// per track or clip looks in its own group instead of the whole list.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace morvanta {

template <class Key>
class PositionIndex {
public:
    PositionIndex() = default;

    // Groups the elements of `list` from position `from` on by `keyOf(element)`.
    template <class List, class KeyOf>
    PositionIndex(const List& list, KeyOf keyOf, std::size_t from = 0) {
        for (std::size_t i = from; i < list.size(); ++i) groups_[keyOf(list[i])].push_back(i);
    }

    // The positions of the elements with `key`, in list order.
    const std::vector<std::size_t>& Positions(const Key& key) const {
        static const std::vector<std::size_t> kNone;
        const auto it = groups_.find(key);
        return it == groups_.end() ? kNone : it->second;
    }

    std::optional<std::size_t> First(const Key& key) const {
        const auto& positions = Positions(key);
        if (positions.empty()) return std::nullopt;
        return positions.front();
    }

    std::optional<std::size_t> Last(const Key& key) const {
        const auto& positions = Positions(key);
        if (positions.empty()) return std::nullopt;
        return positions.back();
    }

    // The elements with `key` of `list`, the list the index was built over,
    // in list order.
    template <class T>
    std::vector<T> Select(const std::vector<T>& list, const Key& key) const {
        std::vector<T> selected;
        for (std::size_t i : Positions(key)) selected.push_back(list[i]);
        return selected;
    }

private:
    std::map<Key, std::vector<std::size_t>> groups_;
};

}  // namespace morvanta
