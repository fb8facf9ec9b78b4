/// A map of strings that is asked for the longest key that a text begins with.
#pragma once

#include "common2/logging/Common2Loggers.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A compressed prefix tree. Filling it is one thread's business; afterwards any thread may ask. Neither its
/// walks nor its destruction go deeper on the stack for a deeper tree.
template <class Entry>
class StringTrie {
public:
    StringTrie();

    /// Adds an entry, or replaces the one of that key.
    /// @param wildcard whether the entry also stands for every text that begins with the key; a key that is
    ///                 empty needs it
    void Insert(std::string_view key, const Entry& entry, bool wildcard);

    /// The entry of the longest key that applies to a text that is not empty; null if there is none. Lives as
    /// long as the tree stays unchanged.
    const Entry* GetLongestPrefixMatch(std::string_view query) const;

    /// Calls `visit` with every entry, in no particular order.
    template <class Visitor>
    void ForEach(Visitor&& visit) const;

private:
    struct Node;
    using Children = std::map<char, std::shared_ptr<Node>>; ///< by the first character of the key part

    struct Node {
        Node() = default;
        explicit Node(std::string_view part)
            : key(part) {}
        Node(const Node&) = delete;
        Node& operator=(const Node&) = delete;
        ~Node() { release(children); }

        void set(const Entry& value, bool isWildcard);
        /// The child whose whole key part the text begins with, null if there is none.
        const Node* childFor(std::string_view text) const;

        bool hasValue = false;
        Entry entry{};
        bool wildcard = false;
        std::string key; ///< the node's own part of the key; empty only at the root
        Children children;
        std::shared_ptr<Node> nextDoomed; ///< while the tree goes
    };

    static std::size_t commonPrefix(std::string_view one, std::string_view other);
    static std::shared_ptr<Node> splitOff(const std::shared_ptr<Node>& node, std::size_t length);
    static void release(Children& children) noexcept;

    std::shared_ptr<Node> root;
};

template <class Entry>
StringTrie<Entry>::StringTrie()
    : root(std::make_shared<Node>()) {}

template <class Entry>
void StringTrie<Entry>::Node::set(const Entry& value, bool isWildcard) {
    entry = value;
    hasValue = true;
    wildcard = isWildcard;
}

template <class Entry>
auto StringTrie<Entry>::Node::childFor(std::string_view text) const -> const Node* {
    const auto found = text.empty() ? children.end() : children.find(text.front());
    return found != children.end() && text.starts_with(found->second->key) ? found->second.get() : nullptr;
}

template <class Entry>
std::size_t StringTrie<Entry>::commonPrefix(std::string_view one, std::string_view other) {
    const auto end = std::ranges::mismatch(one, other).in1;
    return static_cast<std::size_t>(end - one.begin());
}

/// A node for the first `length` characters of the node's key part, with the rest of it below.
template <class Entry>
auto StringTrie<Entry>::splitOff(const std::shared_ptr<Node>& node, std::size_t length)
    -> std::shared_ptr<Node> {
    auto inner = std::make_shared<Node>(std::string_view(node->key).substr(0, length));
    inner->children.emplace(node->key[length], node);
    node->key.erase(0, length);
    return inner;
}

template <class Entry>
void StringTrie<Entry>::Insert(std::string_view key, const Entry& entry, bool wildcard) {
    if (key.empty() && !wildcard) {
        COMMON2_LOG(DBG_WARN, "StringTrie::Insert") << "invalid empty non-wildcard key";
        return;
    }
    Node* node = root.get();
    while (!key.empty()) {
        const auto found = node->children.find(key.front());
        if (found == node->children.end()) {
            auto leaf = std::make_shared<Node>(key);
            leaf->set(entry, wildcard);
            node->children.emplace(key.front(), std::move(leaf));
            return;
        }
        std::shared_ptr<Node>& child = found->second;
        const std::size_t common = commonPrefix(key, child->key);
        if (common < child->key.size()) {
            child = splitOff(child, common);
        }
        key.remove_prefix(common);
        node = child.get();
    }
    node->set(entry, wildcard);
}

template <class Entry>
const Entry* StringTrie<Entry>::GetLongestPrefixMatch(std::string_view query) const {
    if (query.empty()) {
        COMMON2_LOG(DBG_WARN, "StringTrie::GetLongestPrefixMatch") << "empty query";
        return nullptr;
    }
    const Entry* best = nullptr;
    const Node* node = root.get();
    while (node) {
        if (node->hasValue && (node->wildcard || query.empty())) {
            best = &node->entry;
        }
        node = node->childFor(query);
        query.remove_prefix(node ? node->key.size() : 0);
    }
    return best;
}

template <class Entry>
template <class Visitor>
void StringTrie<Entry>::ForEach(Visitor&& visit) const {
    std::vector<const Node*> waiting{root.get()};
    while (!waiting.empty()) {
        const Node* node = waiting.back();
        waiting.pop_back();
        if (node->hasValue) {
            visit(node->entry);
        }
        for (const auto& child : node->children) {
            waiting.push_back(child.second.get());
        }
    }
}

/// Lets the nodes go one by one, each after its own children have been taken from it. The nodes that wait for
/// that hold one another, so that nothing is allocated.
template <class Entry>
void StringTrie<Entry>::release(Children& children) noexcept {
    std::shared_ptr<Node> doomed;
    const auto take = [&doomed](Children& taken) {
        for (auto& child : taken) {
            child.second->nextDoomed = std::move(doomed);
            doomed = std::move(child.second);
        }
        taken.clear();
    };
    take(children);
    while (doomed) {
        const std::shared_ptr<Node> node = std::move(doomed);
        doomed = std::move(node->nextDoomed);
        take(node->children);
    }
}
