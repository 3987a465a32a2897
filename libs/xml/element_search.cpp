// Child elements by their names.
#include "xml/element.h"

#include "base/failure.h"

namespace quillon::xml {

namespace {

/// The first element named `name` among `node` and the siblings behind it.
Element* firstNamed(Node* node, String const& name) noexcept {
    for (; node; node = node->getNextSibling()) {
        Element* const element = node->asElement();
        if (element && element->getName().equalsNoCase2(name))
            return element;
    }
    return nullptr;
}

void collectNamed(Element const& parent, String const& name, std::vector<Element*>& found) {
    for (Element* e = firstNamed(parent.getFirstChild(), name); e; e = firstNamed(e->getNextSibling(), name))
        found.push_back(e);
}

std::vector<String> stepsOf(String const& path) {
    std::vector<String> steps;
    for (unsigned from = 0, slash = 0; slash != String::npos; from = slash + 1) {
        slash = path.find('/', from);
        steps.push_back(path.range(from, slash == String::npos ? slash : slash - from));
        if (steps.back().empty())
            fail<EXmlElement>("xml.Element", "getNodeByPath", "empty item in the searched path");
    }
    return steps;
}

} // namespace

bool Element::hasElementsByTagName(String const& name) const noexcept {
    return firstNamed(getFirstChild(), name) != nullptr;
}

unsigned Element::getNbElementsByTagName(String const& name) const noexcept {
    unsigned count = 0;
    for (Element* e = firstNamed(getFirstChild(), name); e; e = firstNamed(e->getNextSibling(), name))
        ++count;
    return count;
}

std::vector<Element*> Element::getElementsByName(String const& name) const {
    std::vector<Element*> found;
    collectNamed(*this, name, found);
    return found;
}

Element* Element::getNodeByPath(String const& path) const {
    // All elements that the steps so far lead to: the first of them may lack the next step.
    std::vector<Element*> reached{const_cast<Element*>(this)};
    for (String const& step : stepsOf(path)) {
        std::vector<Element*> next;
        for (Element const* const element : reached)
            collectNamed(*element, step, next);
        reached = std::move(next);
    }
    return reached.empty() ? nullptr : reached.front();
}

} // namespace quillon::xml
