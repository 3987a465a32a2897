// The exports of modules as the client calls them.
#pragma once

#include "tarvik/module.h"

namespace quillon::module {

/// The type of an export. The header promises authors' functions to be noexcept; the client does not rely on
/// it.
template <class Function>
struct Export;
template <class Result, class... Arguments>
struct Export<Result(Arguments...) noexcept> {
    using Type = Result(Arguments...);
};

} // namespace quillon::module

/// The function type of the export `name`.
#define TARVIK_EXPORT_TYPE(name) ::quillon::module::Export<decltype(::name)>::Type
