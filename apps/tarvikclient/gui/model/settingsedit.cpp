#include "tarvikclient/gui/model/settingsedit.h"

#include "tarvikclient/clientlocalconfiguration.h"
#include "tarvikclient/gui/model/typedserver.h"
#include "tarvikclient/gui/model/wxconversion.h"

#include <algorithm>

namespace quillon {

namespace {

/// Whether the bytes that stand for the text stand for no other one.
bool isUnambiguous(wxString const& text) {
    return quillonToWxString(wxToQuillonString(text)) == text;
}

bool isStorable(wxString const& login, wxString const& password, wxArrayString const& domains) {
    if (!isUnambiguous(login) || !isUnambiguous(password) ||
        !std::all_of(domains.begin(), domains.end(), isUnambiguous))
        return false;
    ClientLocalConfiguration conf;
    SettingsEdit{login, password, domains}.write(conf);
    return conf.survivesSaving();
}

bool isStorableDomain(wxString const& domain) {
    return isStorable({}, {}, wxArrayString(1, &domain));
}

SettingsFault::Reason reasonOf(wxString const& text) {
    return isUnambiguous(text) ? SettingsFault::markup : SettingsFault::letters;
}

} // namespace

SettingsEdit SettingsEdit::read(ClientLocalConfiguration const& conf) {
    SettingsEdit edit;
    Credentials const credentials = conf.getProxyCredentials();
    edit.login = quillonToWxString(credentials.getDomainLogin(true));
    edit.password = quillonToWxString(credentials.getPassword());
    for (String const& domain : conf.getSslCertIgnoreDomains())
        edit.domains.Add(quillonToWxString(domain));
    return edit;
}

void SettingsEdit::write(ClientLocalConfiguration& conf) const {
    Credentials credentials;
    credentials.setDomainLogin(wxToQuillonString(login));
    credentials.setPassword(wxToQuillonString(password));
    conf.setProxyCredentials(credentials);
    List<String> list;
    for (wxString const& domain : domains)
        list.add(wxToQuillonString(domain));
    conf.setSslCertIgnoreDomains(list);
}

TypedDomain SettingsEdit::addDomain(wxString const& typed, wxString const& gateway) {
    if (typed.Strip(wxString::both).empty())
        return TypedDomain::blank;
    wxString const server = serverNamedBy(typed, gateway);
    if (server.empty())
        return TypedDomain::refused;
    if (domains.Index(server) == wxNOT_FOUND)
        domains.Add(server);
    return TypedDomain::taken;
}

void SettingsEdit::removeDomains(wxArrayInt const& indexes) {
    wxArrayString left;
    auto next = indexes.begin();
    for (unsigned i = 0; i < domains.size(); ++i) {
        if (next != indexes.end() && static_cast<unsigned>(*next) == i)
            ++next;
        else
            left.Add(domains[i]);
    }
    domains = left;
}

SettingsFault SettingsEdit::findFault() const {
    if (!isStorable(login, {}, {}))
        return {SettingsFault::login, reasonOf(login)};
    if (!isStorable({}, password, {}))
        return {SettingsFault::password, reasonOf(password)};
    if (isStorable({}, {}, domains))
        return {};
    auto const first = std::find_if_not(domains.begin(), domains.end(), isStorableDomain);
    return {SettingsFault::domain, reasonOf(*first), static_cast<unsigned>(first - domains.begin())};
}

} // namespace quillon
