// The envelope of the gateway's replies.
#pragma once

#include "base/confhelper.h"
#include "json/JSONReader.h"

#include <cstdint>

namespace quillon {

/// A reply of the mediation service that is not JSON or lacks a required key.
class EMediationResponse : public Exception {
    using Exception::Exception;
};

/// One parsed reply: "success" (required), "code" and "exception" (optional), and with success true a
/// "result".
class MediationResponse : public IConf {
public:
    /// Throws EMediationResponse.
    explicit MediationResponse(String const& body);

    bool isSuccess() const noexcept { return m_success; }
    String const& getException() const noexcept { return m_exception; }

    /// The reader of "result" of a reply with success; the response outlives it.
    json::JSONPolyReader resultReader() const;
    /// Fills a record from "result", likewise. Throws what the record throws.
    template <class T>
    T getResult() const {
        T record;
        resultReader()->read(record);
        return record;
    }

    using IConf::write;
    void write(IKeyReader& reader) override;

private:
    json::JSONWrapperFromString m_document;
    bool m_success = false;
    std::uint32_t m_code = 0;
    String m_exception;
};

} // namespace quillon
