#include "tarvikclient/gui/model/connectionadvice.h"

#include "curl/requestinfo.h"
#include "tarvikclient/gui/model/failuretext.h"
#include "tarvikclient/gui/model/language.h"

#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/intl.h>

#include <cerrno>
#include <set>

namespace quillon {

namespace {

constexpr char const* languages[] = {"en", "de", "fr", "es"};
constexpr std::time_t june2026 = 1781000000, january2027 = 1800000000;

/// The texts of a language, which are looked up while it lives.
struct Speaking {
    explicit Speaking(char const* language) { initLanguage(locale, languageOfCode(language)); }
    ~Speaking() {
        wxTranslations::Set(nullptr);
        if (locale_t const used = uselocale(LC_GLOBAL_LOCALE); used != LC_GLOBAL_LOCALE)
            freelocale(used);
    }

    wxInitializer toolkit;
    wxLocale locale;
};

ConnectionError errorWith(ConnectionFault fault, String const& subject = "shown.example") {
    return {fault, 599, CertificateFacts{subject, "The Issuer", june2026, january2027, 1}};
}

wxString textOf(ConnectionError const& error, ConnectionPlace const& place) {
    ConnectionAdvice const advice = adviceOn(error, place);
    return advice.happened + "\n" + advice.whatToDo;
}

RequestInfo failed(int code, TransferFacts const& facts) {
    return {code, facts};
}

TransferFacts verdictOf(int verdict) {
    TransferFacts facts;
    facts.certificate = CertificateFacts{"a", "b", june2026, january2027, verdict};
    return facts;
}

} // namespace

TEST(ConnectionAdvice, each_fault_has_a_text_of_its_own_in_each_language) {
    std::set<wxString> all;
    std::size_t count = 0;
    for (char const* const language : languages) {
        Speaking const speaking(language);
        for (int i = 0; i <= static_cast<int>(ConnectionFault::other); ++i) {
            auto const error = errorWith(static_cast<ConnectionFault>(i));
            ConnectionAdvice const advice = adviceOn(error, {"gate.example:8443"});
            SCOPED_TRACE((advice.happened + advice.whatToDo).utf8_string());
            for (wxString const& text : {advice.happened, advice.whatToDo}) {
                EXPECT_FALSE(text.StartsWith("HAPPENED_") || text.StartsWith("TODO_"));
                EXPECT_TRUE(text.find_first_of("{}") == wxString::npos);
                EXPECT_GT(text.length(), 20u);
            }
            bool const named =
                error.isOfGatewaysCertificate() && error.fault != ConnectionFault::certificateUnknown;
            EXPECT_EQ(advice.happened.Contains("shown.example"), named);
            EXPECT_EQ(advice.happened.Contains("2027"), named);
            ++count;
            all.insert(advice.happened);
        }
        auto const failures = static_cast<int>(FailureKind::other);
        for (int i = static_cast<int>(FailureKind::badLink); i <= failures; ++i)
            for (wxString const& text :
                 textsOf({static_cast<FailureKind>(i), 599, "their words"}, "gate.example"))
                EXPECT_FALSE(text.Contains("_") || text.find_first_of("{}") != wxString::npos) << text;
    }
    EXPECT_EQ(all.size(), count);
}

TEST(ConnectionAdvice, an_exception_is_spoken_of_only_for_the_gateways_certificate_and_where_it_counts) {
    Speaking const speaking("en");
    for (int i = 0; i <= static_cast<int>(ConnectionFault::other); ++i) {
        auto const error = errorWith(static_cast<ConnectionFault>(i));
        EXPECT_EQ(textOf(error, {"g", true}).Contains("Add"), error.isOfGatewaysCertificate()) << i;
        EXPECT_FALSE(textOf(error, {"g", false}).Contains("Add")) << i;
    }
}

TEST(ConnectionAdvice, what_a_certificate_and_a_gateway_say_is_cleaned_bounded_and_looked_at_once) {
    Speaking const speaking("en");
    std::tuple<String, wxString> const cases[] = {
        {"a&b <b>%s</b> {issuer}", "“a&b <b>%s</b> {issuer}”"},
        {"a\nb\t\x1b[31mc\x7f", "“a b [31mc”"},
        {"a\xE2\x80\xAE"
         "b\xE2\x81\xA7\xEF\xBB\xBF",
         "“ab”"},
        {"\xD7\x90", wxString::FromUTF8("“\xE2\x81\xA8\xD7\x90\xE2\x81\xA9”")},
        {" \n\xE2\x80\x8B", "“gate.example”"}, // nothing to be seen: it is the gateway's for all we know
    };
    for (auto const& [subject, shown] : cases)
        EXPECT_TRUE(adviceOn(errorWith(ConnectionFault::certificateSelfSigned, subject), {"gate.example"})
                        .happened.Contains(wxString::FromUTF8(shown.utf8_string())))
            << shown;
    String const huge = String::copyOf(std::string(1000000, 'x'));
    SessionFailure const refused{FailureKind::refusedByGateway, 0, huge};
    EXPECT_LT(textOf(errorWith(ConnectionFault::certificateBad, huge), {wxString('y', 1000000)}).length(),
              1000u);
    EXPECT_LT(textsOf(refused, "").at(1).length(), 400u);
}

TEST(ConnectionError, is_found_in_what_libcurl_knows) {
    using enum ConnectionFault;
    TransferFacts unreachable{.systemError = ENETUNREACH}, refusing{.systemError = ECONNREFUSED},
        proxy{.systemError = ECONNREFUSED, .atProxy = true}, proxyLoginDue{.proxyStatus = 407},
        proxyForbids{.proxyStatus = 403}, proxyCertificateBad{.proxyRefused = true};
    std::tuple<int, TransferFacts, ConnectionFault> const cases[] = {
        {5, {}, proxyNotFound},
        {6, {}, nameNotFound},
        {7, unreachable, noRoute},
        {7, refusing, refused},
        {7, {}, other},
        {7, proxy, proxyUnusable},
        {28, {}, timedOut},
        {28, proxy, proxyUnusable},
        {35, {}, notSecure},
        {52, {}, brokenOff},
        {56, {}, brokenOff},
        {56, proxyLoginDue, proxyLogin},
        {56, proxyForbids, proxyRefuses},
        {1, {}, notUnderstood},
        {23, {}, notUnderstood},
        {77, {}, noTrustList},
        {60, {}, certificateUnknown},
        {60, proxyCertificateBad, proxyCertificate},
        {60, verdictOf(0), certificateOfAnother},
        {60, verdictOf(9), certificateNotYetValid},
        {60, verdictOf(10), certificateExpired},
        {60, verdictOf(18), certificateSelfSigned},
        {60, verdictOf(19), certificateOfUnknownIssuer},
        {60, verdictOf(20), certificateOfUnknownIssuer},
        {60, verdictOf(23), certificateRevoked},
        {60, verdictOf(7), certificateBad},
        {0, {}, other},
    };
    for (auto const& [code, facts, fault] : cases)
        EXPECT_EQ(static_cast<int>(connectionErrorOf(failed(code, facts)).fault), static_cast<int>(fault))
            << code << " " << facts.systemError;
    ConnectionError const http = connectionErrorOf(RequestInfo(http::ResponseHeader("HTTP/1.1 503 Busy")));
    EXPECT_EQ(http.fault, httpError);
    EXPECT_EQ(http.status, 503u);
    EXPECT_EQ(connectionErrorOf(RequestInfo(http::ResponseHeader("HTTP/1.1 nonsense"))).fault, other);
}

} // namespace quillon
