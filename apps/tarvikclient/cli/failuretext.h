// A failed session in words.
#pragma once

#include "tarvikclient/sessionfailure.h"

namespace quillon::cli {

/// One line, without its end: what happened and what to do. Fit for a terminal, whatever the gateway sent.
String describe(SessionFailure const& failure);

} // namespace quillon::cli
