// A request and its reply, free of the HTTP library.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace devgateway {

struct Request {
    std::string method;
    std::string path;                              // percent-decoded, without the query
    std::map<std::string, std::string> parameters; // of the query, percent-decoded
    std::vector<std::string> cookieNames;          // the values are secrets, and nobody here needs them
    std::string body;
};

struct Reply {
    int status = 200;
    std::string type; // media type of the body
    std::string body;
};

} // namespace devgateway
