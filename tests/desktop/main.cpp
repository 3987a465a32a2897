// uidriver: uses what is on the screen, for scripts. Exit code 0 when it could, 1 when not, 64 on wrong
// usage.
#include "desktop/uidriver.h"

#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <vector>

namespace {

using quillon::test::UiDriver;

int usage() {
    std::fputs("usage: uidriver shown|gone|click|menu|select|window ROLE TEXT\n"
               "       uidriver enter INDEX TEXT\n"
               "       uidriver describe|names\n"
               "An empty ROLE is any. \"names\" says what a screen reader could not name, and fails if there "
               "is any. \"window\" prints the area of the control's window as WIDTHxHEIGHT+X+Y.\n",
               stderr);
    return 64;
}

bool printWindow(UiDriver& driver, UiDriver::Control const& control) {
    UiDriver::Area const area = driver.windowOf(control);
    std::printf("%dx%d+%d+%d\n", area.width, area.height, area.x, area.y);
    return area.width > 0;
}

int drive(std::vector<std::string> const& arguments) {
    UiDriver driver;
    if (arguments == std::vector<std::string>{"describe"}) {
        std::fputs(driver.describe().c_str(), stdout);
        return 0;
    }
    if (arguments == std::vector<std::string>{"names"}) {
        std::string const wrong = driver.wrongNames();
        std::fputs(wrong.c_str(), stdout);
        return wrong.empty() ? 0 : 1;
    }
    if (arguments.size() != 3)
        return usage();
    if (arguments[0] == "enter")
        return driver.enter(static_cast<unsigned>(std::stoul(arguments[1])), arguments[2]) ? 0 : 1;
    UiDriver::Control const control{arguments[1], arguments[2]};
    std::map<std::string, std::function<bool()>> const orders{
        {"shown", [&] { return driver.awaitShown(control); }},
        {"gone", [&] { return driver.awaitGone(control); }},
        {"click", [&] { return driver.click(control); }},
        {"menu", [&] { return driver.contextClick(control); }},
        {"select", [&] { return driver.select(control); }},
        {"window", [&] { return printWindow(driver, control); }},
    };
    auto const order = orders.find(arguments[0]);
    return order == orders.end() ? usage() : order->second() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return drive(std::vector<std::string>(argv + 1, argv + argc));
    } catch (std::exception const& e) {
        std::fprintf(stderr, "uidriver: %s\n", e.what());
        return 1;
    }
}
