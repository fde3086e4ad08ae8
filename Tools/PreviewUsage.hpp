#pragma once

#include <string_view>

namespace ostrel {

/// The command lines of ostrel-preview.
inline constexpr std::string_view previewUsage =
    "usage: ostrel-preview [--text|--json] [--language CODE] [FILE]\n"
    "       ostrel-preview [--png PICTURE] [--icon PICTURE] [--dark] [--scale 1|2|3] [--language CODE] "
    "[FILE]\n"
    "       ostrel-preview --onboarding STAGE|list [--png PICTURE] [--dark] [--scale 1|2|3] [--language "
    "CODE]\n"
    "       ostrel-preview --alert NAME|list [--png PICTURE] [--dark] [--scale 1|2|3] [--language CODE]\n"
    "       ostrel-preview --window PAGE [--situation FILE] [--text|--json] [--language CODE] [FILE]\n"
    "       ostrel-preview --window PAGE [--situation FILE] --png PICTURE [--size WxH] [--dark] [--scale "
    "1|2|3] "
    "[--language CODE] [FILE]\n"
    "       ostrel-preview --containers [--text|--json] [--language CODE] [FILE]\n"
    "       ostrel-preview --export-strings\n";

/// What `--help` adds to it.
inline constexpr std::string_view previewHelp =
    "\n"
    "Shows what Ostrel Agent would show for a status report, read from FILE or from standard input.\n"
    "\n"
    "  --text            the panel as text (the default); several reports get one line each\n"
    "  --json            verdict, icon, rows, cards and facts as JSON\n"
    "  --png PICTURE     the panel as a picture, written to that file; needs no display\n"
    "  --icon PICTURE    the menu-bar icon likewise\n"
    "  --dark            pictures as a dark desktop shows them\n"
    "  --scale N         pixels for a point of the pictures\n"
    "  --onboarding STAGE\n"
    "                    the onboarding window at that stage instead; list tells the stages\n"
    "  --alert NAME      the alert of that name instead; list tells the names\n"
    "  --window PAGE     a page of the agent window instead: ecosystems, containers, egressLock, identity, "
    "health,\n"
    "                    notifications or help\n"
    "  --situation FILE  what the window's pages of containers and notifications show, as below\n"
    "  --size WxH        of the window's picture, in points; 780x540 if not given\n"
    "  --text-scale S    the size of texts in pictures, 1 to 3\n"
    "  --containers      the containers page of a situation instead, from FILE or from standard input\n"
    "  --language CODE   texts and times in a translation of the bundle, for example de\n"
    "  --export-strings  the English texts as a .strings table for translators\n"
    "\n"
    "The input is a bare report, or an object that adds what the agent learns elsewhere:\n"
    "  {\"report\": {...}, \"helper_status\": 0, \"transparent_proxies\": [{\"enabled\": true, "
    "\"connected\": true}],\n"
    "   \"egress_filter\": {\"provider\": true, \"enabled\": true}, \"mdm_enrolled\": false,\n"
    "   \"running_container_runtimes\": [\"Docker\"], \"now\": \"2025-01-02T03:04:05Z\"}\n"
    "Network state that is not given is taken from what the report says of extension and lock. When the "
    "first line\n"
    "is a document by itself, every line is one.\n"
    "\n"
    "The situation of the containers page is an object; every key may be missing:\n"
    "  {\"block\": {\"runtimes\": [\"Podman\"], \"clears_by\": \"2025-01-02T04:00:00Z\"},\n"
    "   \"running\": {\"Podman\": \"2025-01-02T03:04:05Z\", \"Colima\": null}, \"installed\": "
    "[\"Docker\"],\n"
    "   \"ca_published_at\": \"2025-01-01T00:00:00Z\", \"docker_shares_library\": true, \"bundle_pem\": "
    "\"-----BEGIN…\",\n"
    "   \"notify\": [\"Podman\"], \"notification_authorization\": \"authorized\", \"selected\": "
    "\"Podman\",\n"
    "   \"snippet\": \"dockerRun\"}\n"
    "\"running\" holds the time of each launch, or null where it is not known. Authorizations are "
    "authorized, "
    "denied and\n"
    "notDetermined; snippets are dockerRun, compose, dockerfile and envFile.\n";

}  // namespace ostrel
