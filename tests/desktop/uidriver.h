// Uses what programs show on the screen as a person with a screen reader does.
#pragma once

#include <atspi/atspi.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillon::test {

/// Finds controls of all running programs by the text they bear, through the accessibility bus, and uses
/// them. What it finds is therefore also what a screen reader would say. GDK_SCALE has to be theirs. One
/// thread.
class UiDriver {
public:
    /// Which of several controls with the same text is meant: by the role that the accessibility bus names
    /// ("push button", "label", "menu item", "text", "password text", "list item", …); empty for any. A text
    /// that ends with "*" stands for all that begin so.
    struct Control {
        std::string role;
        std::string text;
    };
    struct Area {
        int x = 0, y = 0, width = 0, height = 0;
    };

    /// How long each operation waits for its control.
    static constexpr std::chrono::seconds patience{20};

    UiDriver();

    /// Waits until a visible control bears this text; false when none does.
    bool awaitShown(Control const& control, std::chrono::milliseconds limit = patience);
    /// Waits until no visible control bears this text any more.
    bool awaitGone(Control const& control, std::chrono::milliseconds limit = patience);
    /// Clicks where the control is, with the left mouse button unless another event is named.
    bool click(Control const& control, char const* event = "b1c");
    /// Clicks with the right mouse button there.
    bool contextClick(Control const& control) { return click(control, "b3c"); }
    /// Does what a click on the control does, without the mouse.
    bool press(Control const& control);
    /// Selects the control in the list that it stands in.
    bool select(Control const& control);
    /// Replaces the text of the `index`-th visible field, counted from 0 in the order of the screen's
    /// windows.
    bool enter(unsigned index, std::string const& text);
    /// Where on the screen the window is that holds the control, in pixels; empty when there is none.
    Area windowOf(Control const& control);
    /// Everything visible, a line per control, indented by depth: "role 'text'".
    std::string describe();
    /// A line for each visible control that takes the keys, and each window, of which a screen reader would
    /// say nothing, or what belongs to another: one without name or label, with several labels, with a label
    /// that has no text or is another's too, or that is no text; and for each label that says it belongs to
    /// what takes no keys.
    std::string wrongNames();

private:
    struct Unref {
        void operator()(AtspiAccessible* object) const { g_object_unref(object); }
    };
    using Accessible = std::unique_ptr<AtspiAccessible, Unref>;
    /// Called for each visible control with its depth; true ends the walk.
    using Visitor = std::function<bool(AtspiAccessible*, unsigned)>;

    static Area areaOf(AtspiAccessible* object);
    static bool mouse(Area const& area, char const* event);
    static Accessible child(AtspiAccessible* parent, int index);
    static Control controlOf(AtspiAccessible* object);
    static bool is(AtspiAccessible* object, AtspiStateType state);
    static std::vector<Accessible> related(AtspiAccessible* object, AtspiRelationType type);
    static std::string nameFault(AtspiAccessible* object);
    static bool walk(AtspiAccessible* object, unsigned depth, Visitor const& visit);
    static bool walkAll(Visitor const& visit);
    static Accessible find(Control const& control);
    Accessible await(Control const& control, std::chrono::milliseconds limit = patience);
};

} // namespace quillon::test
