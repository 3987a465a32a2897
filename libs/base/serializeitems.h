// How every container of the toolkit stands in a document.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// Gives a container the keyed form "one child for each item, all with the item name", and the positional
/// form "the number of items, then the items". Container has add(), clear(), size(), begin() and end(); its
/// items are anything that readers and writers take.
template <class T, class Container>
class SerializeItems : public Container, public ISerialize {
public:
    explicit SerializeItems(String const& itemName) : m_itemName(itemName.owned()) {}

    void write(IKeyReader& reader) override {
        this->clear();
        for (unsigned left = reader.size(m_itemName); left > 0; --left) {
            T item;
            reader[m_itemName].read(item);
            this->add(item);
        }
    }
    void write(IReader& reader) override {
        this->clear();
        unsigned count = 0;
        reader.read(count);
        for (; count > 0; --count) {
            T item;
            reader.read(item);
            this->add(item);
        }
    }
    void read(IKeyWriter& writer) const override {
        for (T const& item : *this)
            writer[m_itemName].write(item);
    }
    void read(IWriter& writer) const override {
        writer.write(static_cast<unsigned>(this->size()));
        for (T const& item : *this)
            writer.write(item);
    }

private:
    String m_itemName;
};

} // namespace quillon
