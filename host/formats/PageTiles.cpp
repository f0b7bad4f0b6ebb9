// SPDX-License-Identifier: MIT
// The server's name goes into the page's security policy, so it is checked letter by letter.
// Sources: RFC 3986 for URLs; Content Security Policy Level 3 for sources.

#include "host/formats/PageTiles.h"

#include <gps/Characters.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace host {
namespace {

constexpr char kExample[] = "\"https://tile.example.org/{z}/{x}/{y}.png\"";
constexpr std::string_view kServer = "{s}";
constexpr std::string_view kFile = "file:///";
constexpr std::string_view kOpenStreetMap = "openstreetmap.org";

bool isLetter(char c)
{
    return gps::lowerCase(c) >= 'a' && gps::lowerCase(c) <= 'z';
}

bool isServerCharacter(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') ||
           std::string_view{".-:[]"}.find(c) != std::string_view::npos;
}

// The length of "https://" or of another known beginning; 0 for any other.
std::size_t schemeLength(std::string_view url)
{
    for (const std::string_view scheme : {"https://", "http://"}) {
        if (url.starts_with(scheme))
            return scheme.size();
    }
    return url.starts_with(kFile) ? kFile.size() - 1 : 0;
}

// Between the scheme and the path, with the port.
std::string_view serverOf(std::string_view url)
{
    const auto start = schemeLength(url);
    return url.substr(start, url.find('/', start) - start);
}

std::string withServer(std::string_view server, char letter)
{
    std::string text{server};
    for (auto at = text.find(kServer); at != std::string::npos; at = text.find(kServer))
        text.replace(at, kServer.size(), 1, letter);
    return text;
}

bool isServer(std::string_view server)
{
    const auto name = withServer(server, 'a');
    return !name.empty() && std::all_of(name.begin(), name.end(), isServerCharacter);
}

// The first placeholder that is not known; empty if all are.
std::string unknownPlaceholder(std::string_view url)
{
    for (auto at = url.find('{'); at != std::string_view::npos; at = url.find('{', at + 1)) {
        const auto text = url.substr(at, url.find('}', at) - at + 1);
        if (text != "{z}" && text != "{x}" && text != "{y}" && text != kServer)
            return std::string{text};
    }
    return {};
}

bool isUrlCharacter(char c)
{
    return c > ' ' && c < '\x7f' && std::string_view{"\"<>\\^`|"}.find(c) == std::string_view::npos;
}

bool isOf(std::string_view server, std::string_view domain)
{
    const auto name = server.substr(0, server.find(':'));
    return name == domain ||
           (name.ends_with(domain) && name[name.size() - domain.size() - 1] == '.');
}

} // namespace

std::string tilesMistake(const std::string& url)
{
    const bool isFile = url.starts_with(kFile);
    if (schemeLength(url) == 0)
        return fmt::format("\"{}\" does not begin with https://, http:// or file:///", url);
    if (!std::all_of(url.begin(), url.end(), isUrlCharacter))
        return fmt::format("\"{}\" has a character that a URL cannot have; write it as % with two "
                           "digits",
                           url);
    if (!isFile && !isServer(serverOf(url)))
        return fmt::format("\"{}\" does not name a server such as tile.example.org", url);
    for (const std::string_view part : {"{z}", "{x}", "{y}"}) {
        if (url.find(part) == std::string::npos)
            return fmt::format("\"{}\" has no {}; the URL of tiles is one such as {}", url, part,
                               kExample);
    }
    if (const auto unknown = unknownPlaceholder(url); !unknown.empty())
        return fmt::format("\"{}\" has {}; only {{z}}, {{x}}, {{y}} and {{s}} are known", url,
                           unknown);
    return {};
}

std::string usualAttribution(const std::string& url)
{
    if (url.starts_with(kFile))
        return {};
    const auto server = withServer(serverOf(url), 'a');
    return isOf(server, kOpenStreetMap) ? "© OpenStreetMap contributors" : server;
}

std::string tileSources(const std::string& url)
{
    if (url.starts_with(kFile))
        return "file:";
    const auto server = serverOf(url);
    const auto scheme = url.substr(0, schemeLength(url));
    std::string sources;
    for (const char letter : {'a', 'b', 'c'}) {
        sources += (sources.empty() ? "" : " ") + scheme + withServer(server, letter);
        if (server.find(kServer) == std::string_view::npos)
            break;
    }
    return sources;
}

} // namespace host
