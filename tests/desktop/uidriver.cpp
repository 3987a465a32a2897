#include "desktop/uidriver.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace quillon::test {

namespace {

constexpr std::chrono::milliseconds pause{50};
constexpr unsigned maxDepth = 30;

/// A text that the accessibility library allocated.
std::string take(char* text) {
    std::string const result = text ? text : "";
    g_free(text);
    return result;
}

/// Programs come and go while they are looked at: what is asked of one that has gone fails, and is no fault.
class Ignore {
public:
    ~Ignore() { g_clear_error(&m_error); }
    operator GError**() {
        g_clear_error(&m_error);
        return &m_error;
    }

private:
    GError* m_error = nullptr;
};

/// How many of the screen's pixels are one of a program's, in which it says where its controls are: what the
/// toolkit of the programs reads.
int scale() {
    static int const value =
        std::max(1, std::atoi(std::getenv("GDK_SCALE") ? std::getenv("GDK_SCALE") : "1"));
    return value;
}

bool until(std::function<bool()> const& condition, std::chrono::milliseconds limit) {
    auto const end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

bool matches(std::string const& text, std::string const& wanted) {
    bool const prefix = !wanted.empty() && wanted.back() == '*';
    return prefix ? text.compare(0, wanted.size() - 1, wanted, 0, wanted.size() - 1) == 0 : text == wanted;
}

} // namespace

UiDriver::Area UiDriver::areaOf(AtspiAccessible* object) {
    AtspiComponent* const component = atspi_accessible_get_component_iface(object);
    if (!component)
        return {};
    AtspiRect* const rectangle = atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, Ignore());
    Area const area = rectangle ? Area{rectangle->x * scale(), rectangle->y * scale(),
                                       rectangle->width * scale(), rectangle->height * scale()}
                                : Area{};
    g_free(rectangle);
    g_object_unref(component);
    return area;
}

// With the mouse and not by the control's own action: a dialog that the action opens would keep the program
// from answering the bus.
bool UiDriver::mouse(Area const& area, char const* event) {
    return area.width > 0 &&
           atspi_generate_mouse_event(area.x + area.width / 2, area.y + area.height / 2, event, Ignore());
}

UiDriver::UiDriver() {
    if (atspi_init() > 1) // 1: has been initialised before
        throw std::runtime_error("no accessibility bus");
    atspi_set_timeout(2000, 5000);
}

UiDriver::Accessible UiDriver::child(AtspiAccessible* parent, int index) {
    return Accessible(atspi_accessible_get_child_at_index(parent, index, Ignore()));
}

UiDriver::Control UiDriver::controlOf(AtspiAccessible* object) {
    std::string name = take(atspi_accessible_get_name(object, Ignore()));
    std::replace(name.begin(), name.end(), '\n', ' '); // where a label goes on in the next line
    return {take(atspi_accessible_get_role_name(object, Ignore())), name};
}

bool UiDriver::is(AtspiAccessible* object, AtspiStateType state) {
    AtspiStateSet* const states = atspi_accessible_get_state_set(object);
    bool const set = states && atspi_state_set_contains(states, state);
    if (states)
        g_object_unref(states);
    return set;
}

bool UiDriver::walk(AtspiAccessible* object, unsigned depth, Visitor const& visit) {
    if (depth > maxDepth || visit(object, depth))
        return depth <= maxDepth;
    int const count = atspi_accessible_get_child_count(object, Ignore());
    for (int i = 0; i < count; ++i)
        if (Accessible const next = child(object, i);
            next && is(next.get(), ATSPI_STATE_SHOWING) && walk(next.get(), depth + 1, visit))
            return true;
    return false;
}

bool UiDriver::walkAll(Visitor const& visit) {
    atspi_accessible_clear_cache(atspi_get_desktop(0));
    AtspiAccessible* const desktop = atspi_get_desktop(0);
    int const count = atspi_accessible_get_child_count(desktop, Ignore());
    for (int i = 0; i < count; ++i) {
        Accessible const program = child(desktop, i);
        int const windows = program ? atspi_accessible_get_child_count(program.get(), Ignore()) : 0;
        for (int w = 0; w < windows; ++w)
            if (Accessible const window = child(program.get(), w);
                window && is(window.get(), ATSPI_STATE_SHOWING) && walk(window.get(), 0, visit))
                return true;
    }
    return false;
}

UiDriver::Accessible UiDriver::find(Control const& wanted) {
    Accessible found;
    walkAll([&](AtspiAccessible* object, unsigned) {
        Control const control = controlOf(object);
        if (!matches(control.text, wanted.text) || (!wanted.role.empty() && control.role != wanted.role))
            return false;
        found.reset(static_cast<AtspiAccessible*>(g_object_ref(object)));
        return true;
    });
    return found;
}

UiDriver::Accessible UiDriver::await(Control const& control, std::chrono::milliseconds limit) {
    Accessible found;
    until([&] { return (found = find(control)) != nullptr; }, limit);
    return found;
}

bool UiDriver::awaitShown(Control const& control, std::chrono::milliseconds limit) {
    return await(control, limit) != nullptr;
}

bool UiDriver::awaitGone(Control const& control, std::chrono::milliseconds limit) {
    return until([&] { return !find(control); }, limit);
}

bool UiDriver::click(Control const& control, char const* event) {
    Accessible const object = await(control);
    return object && mouse(areaOf(object.get()), event);
}

bool UiDriver::press(Control const& control) {
    Accessible const object = await(control);
    AtspiAction* const action = object ? atspi_accessible_get_action_iface(object.get()) : nullptr;
    bool const done = action && atspi_action_do_action(action, 0, Ignore());
    if (action)
        g_object_unref(action);
    return done;
}

bool UiDriver::select(Control const& control) {
    Accessible const object = await(control);
    Accessible const list(object ? atspi_accessible_get_parent(object.get(), Ignore()) : nullptr);
    AtspiSelection* const selection = list ? atspi_accessible_get_selection_iface(list.get()) : nullptr;
    if (!selection)
        return false;
    int const index = atspi_accessible_get_index_in_parent(object.get(), Ignore());
    bool const done = atspi_selection_select_child(selection, index, Ignore());
    g_object_unref(selection);
    return done;
}

bool UiDriver::enter(unsigned index, std::string const& text) {
    bool done = false;
    unsigned seen = 0;
    walkAll([&](AtspiAccessible* object, unsigned) {
        std::string const role = controlOf(object).role;
        bool const field = (role == "text" || role == "password text") && is(object, ATSPI_STATE_EDITABLE);
        if (!field || seen++ != index)
            return false;
        AtspiEditableText* const contents = atspi_accessible_get_editable_text_iface(object);
        done = contents && atspi_editable_text_set_text_contents(contents, text.c_str(), Ignore());
        if (contents)
            g_object_unref(contents);
        return true;
    });
    return done;
}

UiDriver::Area UiDriver::windowOf(Control const& control) {
    Accessible object = await(control);
    Accessible window;
    while (object && atspi_accessible_get_role(object.get(), Ignore()) != ATSPI_ROLE_APPLICATION) {
        window = std::move(object);
        object.reset(atspi_accessible_get_parent(window.get(), Ignore()));
    }
    return window ? areaOf(window.get()) : Area{};
}

std::string UiDriver::describe() {
    std::string result;
    walkAll([&](AtspiAccessible* object, unsigned depth) {
        Control const control = controlOf(object);
        result += std::string(2 * depth, ' ') + control.role + " '" + control.text + "'\n";
        return false;
    });
    return result;
}

std::vector<UiDriver::Accessible> UiDriver::related(AtspiAccessible* object, AtspiRelationType type) {
    std::vector<Accessible> targets;
    GArray* const relations = atspi_accessible_get_relation_set(object, Ignore());
    for (guint i = 0; relations && i < relations->len; ++i) {
        AtspiRelation* const relation = g_array_index(relations, AtspiRelation*, i);
        for (int t = 0;
             atspi_relation_get_relation_type(relation) == type && t < atspi_relation_get_n_targets(relation);
             ++t)
            targets.emplace_back(atspi_relation_get_target(relation, t));
        g_object_unref(relation);
    }
    if (relations)
        g_array_free(relations, TRUE);
    return targets;
}

std::string UiDriver::nameFault(AtspiAccessible* object) {
    auto const targets = related(object, ATSPI_RELATION_LABEL_FOR);
    if (controlOf(object).role == "label") {
        bool const right = targets.empty() || is(targets[0].get(), ATSPI_STATE_FOCUSABLE) ||
                           controlOf(targets[0].get()).text == controlOf(object).text; // a box's title
        return right ? "" : "is the label of what takes no keys";
    }
    auto const labels = related(object, ATSPI_RELATION_LABELLED_BY);
    if (labels.size() > 1)
        return "has several labels";
    if (labels.empty())
        return controlOf(object).text.empty() ? "has no name" : "";
    if (controlOf(labels[0].get()).role != "label" || controlOf(labels[0].get()).text.empty())
        return "has a label that says nothing";
    return related(labels[0].get(), ATSPI_RELATION_LABEL_FOR).size() > 1 ? "shares its label" : "";
}

std::string UiDriver::wrongNames() {
    std::string result, window;
    walkAll([&](AtspiAccessible* object, unsigned depth) {
        Control const control = controlOf(object);
        if (depth == 0)
            window = control.text;
        if (depth > 0 && control.role != "label" && !is(object, ATSPI_STATE_FOCUSABLE))
            return false;
        std::string const fault = nameFault(object);
        if (!fault.empty())
            result += "in '" + window + "': " + control.role + " '" + control.text + "' " + fault + "\n";
        return false;
    });
    return result;
}

} // namespace quillon::test
