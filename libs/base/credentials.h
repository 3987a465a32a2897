// A login, a password and a Windows-style domain.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// A value. In documents: "login", "password" and "domain", each optional when read.
class Credentials : public ISerialize {
public:
    Credentials() = default;
    Credentials(String const& login, String const& password, String const& domain)
        : m_login(login), m_password(password), m_domain(domain) {}

    String const& getLogin() const noexcept { return m_login; }
    String const& getPassword() const noexcept { return m_password; }
    String const& getDomain() const noexcept { return m_domain; }
    void setLogin(String const& login) { m_login = login; }
    void setPassword(String const& password) { m_password = password; }
    void setDomain(String const& domain) { m_domain = domain; }

    /// Whether all three are empty.
    bool empty() const noexcept { return m_login.empty() && m_password.empty() && m_domain.empty(); }
    /// "login@domain" in the user principal form, else "domain\login"; the login alone without a domain.
    String getDomainLogin(bool userPrincipalForm) const;
    /// Takes either form apart; a text in neither is the login and leaves the domain as it was.
    void setDomainLogin(String const& text);
    /// "domain\login:password", without the domain's part when there is none.
    String toString() const;

    bool operator==(Credentials const& other) const noexcept;

    void write(IReader& reader) override;
    void write(IKeyReader& reader) override;
    void read(IWriter& writer) const override;
    void read(IKeyWriter& writer) const override;

private:
    String m_login;
    String m_password;
    String m_domain;
};

} // namespace quillon
