// The facts of one finished transfer.
#pragma once

#include "curl/transferfacts.h"
#include "http/responseheader.h"

namespace quillon {

class CurlEasyWrapper;

/// Receives a transfer's outcome.
class IRequestInfo {
public:
    /// The outcome as text for the user.
    virtual String format() const = 0;
    virtual ~IRequestInfo() = default;
    /// Called once for each request, on the thread that made it, whether the transfer succeeded or not.
    virtual void readFromCurl(CurlEasyWrapper const& handle) = 0;
};

/// Keeps a transfer's outcome. A value, independent of the handle; one thread at a time.
class RequestInfo : public IRequestInfo {
public:
    /// No transfer: code 0, empty texts.
    RequestInfo() = default;
    explicit RequestInfo(http::ResponseHeader const& responseHeader) : m_responseHeader(responseHeader) {}
    RequestInfo(int code, String const& errorString, String const& errorBuf)
        : m_code(code), m_errorString(errorString.owned()), m_errorBuf(errorBuf.owned()) {}
    RequestInfo(int code, TransferFacts const& facts) : m_code(code), m_facts(facts) {}

    /// "Code: 7(Couldn't connect to server)" and, when libcurl gave details, a line break and those.
    String format() const override;
    ~RequestInfo() override = default;
    void readFromCurl(CurlEasyWrapper const& handle) override;

    /// libcurl's result code; 0 is success.
    int getCode() const noexcept { return m_code; }
    String const& getErrorString() const noexcept { return m_errorString; }
    String const& getErrorBuf() const noexcept { return m_errorBuf; }
    /// The last header that was received; that of a complete reply only when the code is 0.
    http::ResponseHeader const& getResponseHeader() const noexcept { return m_responseHeader; }
    TransferFacts const& getFacts() const noexcept { return m_facts; }

private:
    int m_code = 0;
    String m_errorString;
    String m_errorBuf;
    http::ResponseHeader m_responseHeader;
    TransferFacts m_facts;
};

} // namespace quillon
