#include "clients/rdp_options.hpp"

#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::clients::rdp_options {

namespace {

std::string gateway(const RdpFacts& facts) {
    if (!is_on(facts.record[Field::useRdGateway])) return "";
    std::string address =
        textf(" /g:'%s' ", shell::in_single(facts.record[Field::rdGatewayAddress]).c_str());
    const std::string& domain = facts.record[Field::rdGatewayDomain];
    if (domain.empty()) return address;
    return address + textf("/gu:'%s' /gp:'%s' /gd:'%s'", "",
                           shell::in_single(facts.gateway_password.value_or("")).c_str(),
                           shell::in_single(domain).c_str());
}

} // namespace

std::string usb(const RdpFacts& facts) {
    return is_on(facts.record[Field::usbRedirection]) && !facts.usb_denied ? " /usb:auto" : "";
}

std::string user(const RdpFacts& facts) {
    // Deliberate: the gateway's user name, where there is one, is the one that
    // logs on; the gateway itself gets none.
    const std::string& gateway_user = facts.record[Field::rdGatewayUsername];
    const std::string& name = gateway_user.empty() ? facts.record[Field::username] : gateway_user;
    return name.empty() ? "" : textf(" /u:'%s'", shell::in_single(name).c_str());
}

std::string password(const RdpFacts& facts) {
    return facts.password ? textf(" /p:'%s'", shell::in_single(*facts.password).c_str()) : "";
}

std::string domain_and_gateway(const RdpFacts& facts) {
    // Deliberate: a record without a domain never uses its gateway.
    const std::string& domain = facts.record[Field::domain];
    return domain.empty() ? ""
                          : textf(" /d:'%s'", shell::in_single(domain).c_str()) + gateway(facts);
}

std::string graphics(const RdpFacts& facts) {
    if (is_on(facts.record[Field::useGFX])) return " /gfx:AVC444 +async-update";
    if (is_on(facts.record[Field::useRemoteFX])) return " /rfx /gdi:hw";
    return textf(" /bpp:%s",
                 shell::bare(facts.record[Field::colorDepth], shell::At::inside_word).c_str());
}

std::string sound(const RdpFacts& facts) {
    const bool redirected = is_on(facts.record[Field::redirectAudio]) && facts.audio_available;
    return redirected ? " /sound:sys:pulse,latency:100 /microphone:sys:pulse" : "";
}

std::string custom_port(const RdpFacts& facts) {
    if (!is_on(facts.record[Field::useCustomRDPPort])) return "";
    return " /port:" + shell::bare(facts.record[Field::rdpPort], shell::At::inside_word);
}

std::string drives(const RdpFacts& facts) {
    return is_on(facts.record[Field::localStorage]) && !facts.usb_denied ? " +drives" : "";
}

std::string start_program(const RdpFacts& facts) {
    if (!is_on(facts.record[Field::isConnectStart])) return "";
    const std::string& program = facts.record[Field::appFullpath];
    const std::string& directory = facts.record[Field::workDir];
    std::string text;
    if (!program.empty()) text += textf(" /shell:\"%s\"", shell::in_double(program).c_str());
    if (!directory.empty())
        text += textf(" /shell-dir:\"%s\"", shell::in_double(directory).c_str());
    return text;
}

std::string monitors(const RdpFacts& facts) {
    if (facts.screens_cloned) return " /f";
    const std::string& choice = facts.record[Field::monitorSelect];
    if (choice == "extend")
        return facts.vga_left_of_hdmi ? " /multimon /monitors:0,1" : " /multimon /monitors:1,0";
    // Monitors count from the left; a notebook's own panel takes the place of a
    // VGA screen, so it is never what "vga" stands for.
    const bool vga = choice == "vga" && !facts.notebook;
    return vga == facts.vga_left_of_hdmi ? " /monitors:1 /multimon" : " /monitors:0 /multimon";
}

} // namespace qvtc::clients::rdp_options
