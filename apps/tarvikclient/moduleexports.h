// The exports of modules as the client calls them.
#pragma once

#include "tarvik/module.h"
#include "tarvikclient/modulecall.h"
#include "tarvikclient/moduleloader.h"

namespace quillon {

/// One export of an open module, found when it is made; to be called like the function. The header promises
/// authors' functions to be noexcept, which the client does not rely on: a module that lets an exception out
/// gets no further than here, it is logged and thrown on as EModuleLoader. Client thread.
template <class Function>
class ModuleExport;

template <class Result, class... Parameters>
class ModuleExport<Result(Parameters...) noexcept> {
public:
    /// `module` outlives the export; `symbol` has static storage. Throws EModuleLoader, after a log line,
    /// when the module has no such export.
    ModuleExport(ModuleLoader& module, char const* symbol)
        : m_symbol(symbol), m_function(reinterpret_cast<Result (*)(Parameters...)>(module.load(symbol))) {}

    Result operator()(Parameters... arguments) const {
        ModuleCall const call(m_symbol);
        try {
            return m_function(arguments...);
        } catch (...) {
            ModuleLoader::reportException(m_symbol);
        }
    }

private:
    char const* m_symbol;
    Result (*m_function)(Parameters...);
};

} // namespace quillon

/// Declares, within a class of loaded modules, the member for the export `name`. Exports are looked for in
/// the order of their members.
#define TARVIK_EXPORT(member, name) /* NOLINTNEXTLINE(bugprone-macro-parentheses): declares `member` */      \
    ::quillon::ModuleExport<decltype(::name)> member = {*this, #name}
