#include "devgateway/wire.h"

#include <openssl/ssl.h>
#include <sys/socket.h>

#include <algorithm>

namespace devgateway {

namespace {

/// The names in a Cookie header, "a=1; b=2".
std::vector<std::string> cookieNames(std::string const& header) {
    std::vector<std::string> names;
    for (size_t start = 0; start < header.size();) {
        size_t const end = std::min(header.find(';', start), header.size());
        std::string const cookie = header.substr(start, end - start);
        size_t const name = cookie.find_first_not_of(" \t");
        if (name != std::string::npos)
            names.push_back(cookie.substr(name, cookie.find('=') - name));
        start = end + 1;
    }
    return names;
}

} // namespace

Request requestFrom(httplib::Request const& request, std::string const& body) {
    Request read;
    read.method = request.method;
    read.path = request.path;
    for (auto const& [name, value] : request.params)
        read.parameters[name] = value;
    read.cookieNames = cookieNames(request.get_header_value("Cookie"));
    read.body = body;
    return read;
}

std::string joined(std::vector<std::string> const& texts) {
    std::string all;
    for (std::string const& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all;
}

void setStatus(Reply& reply, int status) {
    reply.status = status;
    if (status == 204 || status == 304)
        reply.body.clear();
}

void sendWhole(Reply const& reply, httplib::Response& response) {
    response.status = reply.status;
    if (!reply.body.empty())
        response.set_content(reply.body, reply.type);
}

void sendTruncated(Reply const& reply, httplib::Response& response) {
    std::string const half = reply.body.substr(0, reply.body.size() / 2);
    response.status = reply.status;
    response.set_content_provider(std::max<size_t>(reply.body.size(), 1), reply.type,
                                  [half](size_t, size_t, httplib::DataSink& sink) {
                                      if (!half.empty())
                                          sink.write(half.data(), half.size());
                                      return false; // the library closes the connection
                                  });
}

void cutConnection(httplib::Request const& request, httplib::Response& response) {
    ::shutdown(SSL_get_fd(request.ssl), SHUT_RDWR);
    response.status = 500; // never seen
    response.set_content_provider(1, "text/plain", [](size_t, size_t, httplib::DataSink&) { return false; });
}

} // namespace devgateway
