#include "curl/requestinfo.h"

#include "base/stringconversion.h"
#include "curl/curleasywrapper.h"

namespace quillon {

String RequestInfo::format() const {
    String text;
    text.append("Code: ", toString(m_code));
    if (!m_errorString.empty())
        text.append('(', m_errorString, ')');
    if (!m_errorBuf.empty())
        text.append('\n', m_errorBuf);
    return text;
}

void RequestInfo::readFromCurl(CurlEasyWrapper const& handle) {
    m_code = handle.lastErrorCode();
    m_errorString = handle.lastErrorString();
    m_errorBuf = handle.lastErrorBuf();
    m_responseHeader = handle.lastRespHeader();
    m_facts = handle.lastFacts();
}

} // namespace quillon
