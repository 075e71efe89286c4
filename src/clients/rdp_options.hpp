#pragma once

#include <string>

#include "clients/rdp_facts.hpp"
#include "connections/fields.hpp"

namespace qvtc::clients::rdp_options {

using connections::Field;

// The options that take more than one switch to decide; each gives its text.
std::string usb(const RdpFacts& facts);
std::string user(const RdpFacts& facts);
std::string password(const RdpFacts& facts);
std::string domain_and_gateway(const RdpFacts& facts);
std::string graphics(const RdpFacts& facts);
std::string sound(const RdpFacts& facts);
std::string custom_port(const RdpFacts& facts);
std::string drives(const RdpFacts& facts);
std::string start_program(const RdpFacts& facts);
std::string monitors(const RdpFacts& facts);

/// One option: a switch with its two texts, or a decision.
struct Option {
    constexpr Option(Field field, const char* on, const char* off)
        : switch_field(field), when_on(on), when_off(off) {}
    constexpr explicit Option(std::string (*decision)(const RdpFacts&)) : decide(decision) {}

    Field switch_field = Field::id;
    const char* when_on = "";
    const char* when_off = "";
    std::string (*decide)(const RdpFacts&) = nullptr;
};

/// In the order of the command line.
// clang-format off
inline constexpr Option in_order[] = {
    Option(usb),
    {Field::multiTouch,        " +multitouch",   ""},
    Option(user),
    Option(password),
    Option(domain_and_gateway),
    Option(graphics),
    Option(sound),
    {Field::multimedia,        " /video",        ""},
    {Field::useCompress,       " +compression",  " -compression"},
    Option(custom_port),
    {Field::fontSmooth,        " +fonts",        ""},
    {Field::desktopBackground, " +wallpaper",    " -wallpaper"},
    {Field::visualStyle,       " +themes",       ""},
    {Field::persistBitmap,     " +bitmap-cache", " -bitmap-cache"},
    {Field::dragShowContent,   " +window-drag",  " -window-drag"},
    {Field::widgetAnimate,     " +menu-anims",   " -menu-anims"},
    {Field::audioPlayOnServer, " /audio-mode:1", ""},
    Option(drives),
    Option(start_program),
    Option(monitors),
};
// clang-format on

} // namespace qvtc::clients::rdp_options
