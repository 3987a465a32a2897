// Between the messages and the HTTP library: requests read, replies sent, soundly or not.
#pragma once

#include "devgateway/message.h"

#include <httplib.h>

#include <string>
#include <vector>

namespace devgateway {

Request requestFrom(httplib::Request const& request, std::string const& body);

/// The texts with ", " between them.
std::string joined(std::vector<std::string> const& texts);

/// Gives the reply another status; the body goes where the status forbids one.
void setStatus(Reply& reply, int status);

void sendWhole(Reply const& reply, httplib::Response& response);

/// Announces the whole body, sends the first half of it, and has the connection closed. A reply without a
/// body announces one byte.
void sendTruncated(Reply const& reply, httplib::Response& response);

/// Shuts the request's connection down, so that nothing of the response gets out, and has it closed.
void cutConnection(httplib::Request const& request, httplib::Response& response);

} // namespace devgateway
