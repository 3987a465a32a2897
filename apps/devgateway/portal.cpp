#include "devgateway/portal.h"

namespace devgateway {

namespace {

// Raw text around the links. Nothing in it or in a link needs escaping: the authority holds no character
// that means something in HTML.
constexpr char pageStart[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Tarvik development gateway</title>
<style>
body { font: 16px/1.5 system-ui, sans-serif; color: #222; background: #f4f5f7; margin: 0; }
main { max-width: 40rem; margin: 3rem auto; padding: 1.5rem 2rem; background: #fff; border-radius: 10px; }
h1 { font-size: 1.4rem; }
dt { margin-top: 1rem; }
dd { margin: 0; color: #555; }
a { color: #0b5cad; font-weight: 600; }
</style>
</head>
<body>
<main>
<h1>Tarvik development gateway</h1>
<p>Each link opens the Tarvik client with one kind of configuration.</p>
<dl>
)";

constexpr char pageEnd[] = R"(</dl>
</main>
</body>
</html>
)";

LaunchUrl launchUrl(std::string const& authority, std::string const& kind, std::string const& explanation) {
    return {kind, "tarvik://demo-ticket@" + authority + "/mediation/" + kind + "?lang=en", explanation};
}

} // namespace

std::vector<LaunchUrl> launchUrls(std::string const& authority) {
    return {
        launchUrl(authority, "plugindll", "The plug-in with a tunnel: it connects, and asks to be closed."),
        launchUrl(authority, "plugindllnotunnel", "The plug-in without a tunnel: it opens one resource."),
        launchUrl(authority, "hostchecker", "The host checker: it posts the rules that this machine meets."),
        launchUrl(authority, "refused", "A session that the gateway refuses."),
    };
}

std::string portalPage(std::string const& authority) {
    std::string page = pageStart;
    for (LaunchUrl const& launch : launchUrls(authority))
        page += "<dt><a href=\"" + launch.url + "\">" + launch.kind + "</a></dt>\n<dd>" + launch.explanation +
                "</dd>\n";
    return page + pageEnd;
}

} // namespace devgateway
