// What a person sees of a process that brings its link to another one.
#pragma once

#include "base/string.h"
#include "tarvikclient/gui/platform/singleinstance.h"

#include <wx/init.h>

#include <future>
#include <memory>
#include <optional>

namespace quillon {

/// Claims the place on a thread of its own, so that a person who waits can be told: when the other process
/// has not answered for a while, in a window that goes when it does, and when it has not taken the link at
/// all, in one that stays. Without a display there is standard error alone, which gets the second in any
/// case. The main thread, before the toolkit has been started.
class HandOver {
public:
    /// `instance` is not used by others until finish() has returned.
    HandOver(SingleInstance& instance, String const& url);
    ~HandOver();
    HandOver(HandOver const&) = delete;
    HandOver& operator=(HandOver const&) = delete;

    /// Returns as SingleInstance::claim() does; with `unheard` when the person has closed the window. Ends
    /// the process when the person does not want to wait. Throws what claim() throws.
    SingleInstance::Role finish(int& argc, char** argv);
    /// Runs the application and returns its exit code: stands for wxEntry(), also where finish() has started
    /// the toolkit already.
    int runApplication(int& argc, char** argv);

private:
    bool isDecided(std::chrono::milliseconds wait = {}) const;
    /// The outcome, once it is there; one that is bad is written to standard error.
    SingleInstance::Role take();
    bool startToolkit(int& argc, char** argv);
    SingleInstance::Role finishInWindow();

    String const m_url;
    std::future<SingleInstance::Role> m_claim;
    std::optional<SingleInstance::Role> m_role;
    std::unique_ptr<wxInitializer> m_toolkit;
};

} // namespace quillon
