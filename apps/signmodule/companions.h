// The files that a module brings along, where its publisher has them.
#pragma once

#include "tarvikclient/modulemanifest.h"

namespace quillon::signmodule {

/// What a manifest says of `file`, which lies below the directory of `module`. Throws EFile, after a log
/// line, when it does not, is no plain file or cannot be read.
ModuleCompanion describeCompanion(String const& module, String const& file);

/// Whether the companion lies beside `module` as the manifest says. Throws EFile like describeCompanion().
bool verifyCompanion(String const& module, ModuleCompanion const& companion);

} // namespace quillon::signmodule
