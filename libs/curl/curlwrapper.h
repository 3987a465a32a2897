// HTTP sessions over libcurl: everything that callers need.
#pragma once

#include "curl/curlsession.h"
#include "curl/requestinfo.h"
