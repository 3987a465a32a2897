#include "tarvikclient/policyrules.h"

#include "base/ascii.h"
#include "base/stringconversion.h"
#include "tarvikclient/policyfile.h"
#include "xml/stringparser.h"
#include "xml/text.h"

#include <algorithm>
#include <functional>
#include <map>

namespace quillon {

namespace {

constexpr char belowMark[] = "*.";
constexpr unsigned fingerprintLength = 64;

/// Walks over one document; every complaint ends it.
class RulesReader {
public:
    RulesReader(String const& path, PolicyRules& rules) : m_path(path), m_rules(rules) {}

    void readDocument(xml::Element const& root) {
        if (root.getName() != "policy")
            refuse("its root is not <policy>");
        readChildren(root, {
                               {"gateways", {&RulesReader::readGateways, true}},
                               {"certificateexceptions", {&RulesReader::readExceptions, true}},
                               {"companions", {&RulesReader::readCompanions, true}},
                               {"modules", {&RulesReader::readModules, true}},
                               {"refusedkeys", {&RulesReader::readRefusedKeys, true}},
                           });
    }

private:
    using Element = xml::Element const&;
    struct Child {
        void (RulesReader::*read)(Element);
        bool once;
    };
    using Children = std::map<std::string_view, Child>;

    [[noreturn]] void refuse(String const& reason, Place place = std::source_location::current()) const {
        failPolicy(m_path, reason, place);
    }

    void expectNoAttributes(Element element) const {
        if (!element.getAttributes().empty())
            refuse("<" + element.getName() + "> has an attribute");
    }

    /// Reads the elements in `parent`, each as `children` says.
    void readChildren(Element parent, Children children) {
        expectNoAttributes(parent);
        for (xml::Node* node = parent.getFirstChild(); node; node = node->getNextSibling()) {
            xml::Element const* const element = node->asElement();
            if (!element) {
                expectBlank(parent, *node);
                continue;
            }
            auto const child = children.find(element->getName().view());
            if (child == children.end())
                refuse("<" + element->getName() + "> does not belong into <" + parent.getName() + ">");
            (this->*child->second.read)(*element);
            if (child->second.once)
                children.erase(child); // a second one is as unknown as any
        }
    }

    void expectBlank(Element parent, xml::Node const& node) const {
        if (node.getType() != xml::Node::Type::text ||
            !static_cast<xml::Text const&>(node).getText().trim().empty())
            refuse("<" + parent.getName() + "> holds text");
    }

    /// The text of an element that holds nothing else.
    String valueOf(Element element) const {
        expectNoAttributes(element);
        for (xml::Node* node = element.getFirstChild(); node; node = node->getNextSibling())
            if (node->asElement())
                refuse("<" + element.getName() + "> holds an element");
        return element.getText().trim();
    }

    [[noreturn]] void refuseValue(Element element, Place place = std::source_location::current()) const {
        refuse("<" + element.getName() + "> cannot be \"" + xml::excerpt(valueOf(element)) + "\"", place);
    }

    template <class T>
    T choose(Element element, std::map<std::string_view, T> const& choices) const {
        String const value = valueOf(element);
        auto const choice = choices.find(value.view());
        if (choice == choices.end())
            refuseValue(element);
        return choice->second;
    }

    void readGateways(Element element) {
        m_others = false;
        readChildren(element, {{"allowed", {&RulesReader::readAllowed, false}},
                               {"others", {&RulesReader::readOthers, true}}});
        // Left out, it could be meant either way.
        if (!m_others)
            refuse("<gateways> does not say what happens with <others>");
    }

    void readAllowed(Element element) {
        String const value = valueOf(element);
        bool const below = value.starts(belowMark);
        auto const place = http::HostPort::parse(value.range(below ? 2 : 0), gatewayPort);
        if (!place || (below && place->isAddress()))
            refuseValue(element);
        m_rules.allowed.push_back({*place, below});
    }

    void readOthers(Element element) {
        m_others = true;
        m_rules.others = choose<GatewayDecision>(element, {{"allow", GatewayDecision::allow},
                                                           {"ask", GatewayDecision::ask},
                                                           {"refuse", GatewayDecision::refuse}});
    }

    void readExceptions(Element element) {
        m_rules.certificateExceptions = choose<bool>(element, {{"allow", true}, {"refuse", false}});
    }

    void readCompanions(Element element) {
        m_rules.companionsOnlyByManifest = choose<bool>(element, {{"any", false}, {"manifest", true}});
    }

    void readModules(Element element) {
        readChildren(element, {{"module", {&RulesReader::readModule, false}}});
    }

    void readModule(Element element) {
        m_rules.signedSince.emplace_back();
        m_dated = false;
        readChildren(element, {{"name", {&RulesReader::readModuleName, true}},
                               {"signedsince", {&RulesReader::readSignedSince, true}}});
        if (m_rules.signedSince.back().name.empty() || !m_dated)
            refuse("<module> lacks its <name> or <signedsince>");
    }

    void readModuleName(Element element) { m_rules.signedSince.back().name = valueOf(element); }

    void readSignedSince(Element element) {
        auto const date = DateTime::parse(valueOf(element));
        if (!date)
            refuseValue(element);
        m_rules.signedSince.back().since = *date;
        m_dated = true;
    }

    void readRefusedKeys(Element element) {
        readChildren(element, {{"sha256", {&RulesReader::readFingerprint, false}}});
    }

    void readFingerprint(Element element) {
        String const value = valueOf(element);
        bool const isHex =
            std::all_of(value.begin(), value.end(), [](char c) { return ascii::hexValue(c) >= 0; });
        if (value.length() != fingerprintLength || !isHex)
            refuseValue(element);
        m_rules.refusedKeys.push_back(value.lower());
    }

    String m_path;
    PolicyRules& m_rules;
    bool m_others = false;
    bool m_dated = false;
};

} // namespace

bool GatewayPattern::matches(http::HostPort const& gateway) const {
    if (!below)
        return gateway == place;
    return gateway.port() == place.port() && !gateway.isAddress() && gateway.host().ends("." + place.host());
}

String GatewayPattern::toString() const {
    return (below ? belowMark : "") + place.toString(gatewayPort);
}

PolicyRules readPolicyRules(String const& text, String const& path) {
    PolicyRules rules;
    try {
        std::unique_ptr<xml::Element> const root = xml::StringParser::parse(text);
        RulesReader(path, rules).readDocument(*root);
    } catch (xml::EXmlNode const&) {
        failPolicy(path, "is not well-formed XML");
    } catch (xml::EParser const&) {
        failPolicy(path, "is not one XML document");
    }
    return rules;
}

} // namespace quillon
