#include "qvtcctl/certificate.hpp"

#include "qvtcctl/program.hpp"
#include "qvtcctl/text.hpp"

#include <arpa/inet.h>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

/// What stands behind the first place of these words, up to the end of the line.
std::optional<std::string_view> behind(std::string_view text, std::string_view words) {
    const std::size_t at = text.find(words);
    if (at == std::string_view::npos) return std::nullopt;
    text.remove_prefix(at + words.size());
    return trimmed(text.substr(0, text.find('\n')));
}

std::optional<std::time_t> time_in(const std::string& text) {
    std::tm time{};
    if (strptime(text.c_str(), "%b %d %H:%M:%S %Y GMT", &time) == nullptr) return std::nullopt;
    return timegm(&time);
}

/// "18 (self-signed certificate)"
void read_fault(std::string_view text, Certificate& certificate) {
    const std::size_t blank = text.find(' ');
    certificate.fault = static_cast<int>(parse_number(text.substr(0, blank)).value_or(0));
    if (certificate.fault == 0 || blank == std::string_view::npos) return;
    text.remove_prefix(blank + 1);
    if (text.starts_with('(') && text.ends_with(')')) text = text.substr(1, text.size() - 2);
    certificate.fault_text = text;
}

bool is_number(const std::string& host) {
    in6_addr address{};
    return inet_pton(AF_INET, host.c_str(), &address) == 1 ||
           inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

} // namespace

std::optional<Certificate> certificate_in(std::string_view text) {
    if (text.find("-----BEGIN CERTIFICATE-----") == std::string_view::npos) return std::nullopt;
    Certificate certificate;
    certificate.subject = behind(text, "\nsubject=").value_or("");
    certificate.expires = behind(text, "NotAfter: ").value_or(""); // the server's comes first
    certificate.expires_at = time_in(certificate.expires);
    read_fault(behind(text, "Verify return code: ").value_or(""), certificate);
    return certificate;
}

std::optional<Certificate> certificate_of(const ServerAddress& server) {
    const bool number = is_number(server.host);
    const bool bracketed = server.host.find(':') != std::string::npos;
    const std::string host = bracketed ? "[" + server.host + "]" : server.host;
    std::vector<std::string> words{"openssl", "s_client", "-connect",
                                   fmt::format("{}:{}", host, server.port)};
    if (number) {
        words.insert(words.end(), {"-noservername", "-verify_ip", server.host});
    } else {
        words.insert(words.end(), {"-servername", server.host, "-verify_hostname", server.host});
    }
    const std::optional<ProgramOutput> output = run_program(std::move(words), "LC_ALL=C");
    return output ? certificate_in(output->text) : std::nullopt;
}

} // namespace qvtc::qvtcctl
