#include "tarvikclient/mediationresponse.h"

#include "base/failure.h"
namespace quillon {

namespace {

constexpr char sourceFile[] = "apps/tarvikclient/client.cpp"; // as logs name it, with the lines below

} // namespace

MediationResponse::MediationResponse(String const& body) try : m_document(body) {
    json::JSONPolyReader reader = m_document.getReader();
    write(*reader);
} catch (json::EJsonError const&) {
    failQuietly<EMediationResponse>({sourceFile, 59});
} catch (EConfMissingKey const&) {
    failQuietly<EMediationResponse>({sourceFile, 62});
}

json::JSONPolyReader MediationResponse::resultReader() const {
    return m_document["result"].getReader();
}

void MediationResponse::write(IKeyReader& reader) {
    ConfReadHelper::readKey(reader, "success", m_success, ConfReadHelper::required);
    ConfReadHelper::readKey(reader, "code", m_code, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "exception", m_exception, ConfReadHelper::optional);
    if (m_success)
        ConfReadHelper(reader).get("result", ConfReadHelper::required);
}

} // namespace quillon
