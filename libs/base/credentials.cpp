#include "base/credentials.h"

#include "base/confhelper.h"
#include "base/stringconversion.h"

namespace quillon {

String Credentials::getDomainLogin(bool userPrincipalForm) const {
    if (m_domain.empty())
        return m_login;
    return userPrincipalForm ? m_login + "@" + m_domain : m_domain + "\\" + m_login;
}

void Credentials::setDomainLogin(String const& text) {
    String const whole = text; // the caller's may be one of the fields
    if (whole.find('\\') != String::npos) {
        m_domain = whole.left('\\');
        m_login = whole.right('\\');
    } else if (whole.find('@') != String::npos) {
        m_login = whole.left('@');
        m_domain = whole.right('@');
    } else {
        m_login = whole;
    }
}

String Credentials::toString() const {
    return getDomainLogin(false) + ":" + m_password;
}

bool Credentials::operator==(Credentials const& other) const noexcept {
    return m_login == other.m_login && m_password == other.m_password && m_domain == other.m_domain;
}

void Credentials::write(IReader& reader) {
    reader.read(m_login);
    reader.read(m_password);
    reader.read(m_domain);
}

void Credentials::write(IKeyReader& reader) {
    ConfReadHelper::readKey(reader, "login", m_login, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "password", m_password, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "domain", m_domain, ConfReadHelper::optional);
}

void Credentials::read(IWriter& writer) const {
    writer.write(m_login);
    writer.write(m_password);
    writer.write(m_domain);
}

void Credentials::read(IKeyWriter& writer) const {
    writer["login"].write(m_login);
    writer["password"].write(m_password);
    writer["domain"].write(m_domain);
}

} // namespace quillon
