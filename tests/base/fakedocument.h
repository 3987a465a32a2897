// A keyed document in memory, for tests of what records read and write.
#pragma once

#include "base/keyreaderdefaults.h"
#include "base/textwriter.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quillon::test {

/// One node: a name and a text, or children in order.
struct Node {
    std::string name = {};
    std::string value = {};
    std::vector<Node> children = {};

    /// Of the children: "name=value;" for a text, "name{...}" for a node with children.
    std::string text() const {
        std::string all;
        for (Node const& child : children)
            all += child.name + (child.children.empty() ? "=" + child.value + ";" : "{" + child.text() + "}");
        return all;
    }
};

class NodeWriter final : public TextWriter<IKeyWriter> {
public:
    explicit NodeWriter(Node& node) : m_node(node) {}

    IKeyWriter& operator[](char const* key) override {
        m_child = std::make_unique<NodeWriter>(m_node.children.emplace_back(Node{key}));
        return *m_child;
    }
    IKeyWriter& operator[](String const& key) override { return (*this)[key.str()]; }
    void operator()(String const&, String const&) override {}

protected:
    void put(char const* bytes, unsigned count) override { m_node.value.append(bytes, count); }

private:
    Node& m_node;
    std::unique_ptr<NodeWriter> m_child;
};

class NodeReader final : public KeyReaderDefaults<EKeyReader> {
public:
    explicit NodeReader(Node const& node) : m_node(node) {}

    using KeyReaderDefaults::exists;
    using KeyReaderDefaults::read;
    using KeyReaderDefaults::size;
    using KeyReaderDefaults::operator[];
    void read(String& value) override { value = String::copyOf(m_node.value); }
    void read(int& value) override {
        if (m_node.value.find_first_not_of("0123456789") != std::string::npos)
            refuse();
        value = std::stoi(m_node.value);
    }
    unsigned size(String const& key) const override {
        unsigned count = 0;
        for (Node const& child : m_node.children)
            count += child.name == key.view();
        return count;
    }
    bool exists(String const& key) const override { return size(key) > 0; }
    IKeyReader& operator[](String const& key) override {
        unsigned left = m_next[std::string(key.view())]++;
        for (Node const& child : m_node.children)
            if (child.name == key.view() && left-- == 0) {
                m_child = std::make_unique<NodeReader>(child);
                return *m_child;
            }
        refuse();
    }

protected:
    [[noreturn]] void refuse() const override { throw EKeyReader("EKeyReader", "fakedocument.h", __LINE__); }

private:
    Node const& m_node;
    std::map<std::string, unsigned> m_next;
    std::unique_ptr<NodeReader> m_child;
};

} // namespace quillon::test
