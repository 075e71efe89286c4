#include "qvtcctl/doctor/certificate.hpp"

#include "qvtcctl/base/server_socket.hpp"

#include <memory>

#include <arpa/inet.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace qvtc::qvtcctl {
namespace {

template <auto release>
struct Release {
    template <typename T>
    void operator()(T* object) const {
        release(object);
    }
};
using Context = std::unique_ptr<SSL_CTX, Release<SSL_CTX_free>>;
using Session = std::unique_ptr<SSL, Release<SSL_free>>;
using Memory = std::unique_ptr<BIO, Release<BIO_vfree>>;
using X509Pointer = std::unique_ptr<X509, Release<X509_free>>;

bool is_number(const std::string& host) {
    in6_addr address{};
    return inet_pton(AF_INET, host.c_str(), &address) == 1 ||
           inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

/// Takes out what has been written into it.
std::string taken_from(BIO* memory) {
    std::string bytes(BIO_ctrl_pending(memory), '\0');
    BIO_read(memory, bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

/// Also speaks to servers that are too old to be safe: to look at a certificate is no risk.
Session session_for(SSL_CTX* context, const std::string& host) {
    SSL_CTX_set_security_level(context, 0);
    SSL_CTX_set_min_proto_version(context, TLS1_VERSION);
    SSL_CTX_set_default_verify_paths(context);
    Session session(SSL_new(context));
    if (!session) return session;
    SSL_set_connect_state(session.get());
    if (is_number(host)) {
        X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(session.get()), host.c_str());
    } else {
        SSL_ctrl(session.get(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name,
                 const_cast<char*>(host.c_str()));
        SSL_set1_host(session.get(), host.c_str());
    }
    return session;
}

/// Carries the bytes of the handshake to and fro until it is done, or cannot go on.
void shake_hands(SSL* session, ServerSocket& server) {
    constexpr std::size_t most = 16384;
    BIO* const incoming = BIO_new(BIO_s_mem()); // both belong to the session from here on
    BIO* const outgoing = BIO_new(BIO_s_mem());
    SSL_set_bio(session, incoming, outgoing);
    while (true) {
        const int done = SSL_do_handshake(session);
        const bool wants_more = SSL_get_error(session, done) == SSL_ERROR_WANT_READ;
        if (!server.send(taken_from(outgoing)) || !wants_more) return;
        const std::string bytes = server.receive(most);
        if (bytes.empty()) return;
        BIO_write(incoming, bytes.data(), static_cast<int>(bytes.size()));
    }
}

std::string subject_of(X509* certificate) {
    const Memory text(BIO_new(BIO_s_mem()));
    X509_NAME_print_ex(text.get(), X509_get_subject_name(certificate), 0,
                       XN_FLAG_ONELINE & ~static_cast<unsigned long>(ASN1_STRFLGS_ESC_MSB));
    return taken_from(text.get());
}

std::time_t time_of(const ASN1_TIME* time) {
    std::tm parts{};
    return ASN1_TIME_to_tm(time, &parts) == 1 ? timegm(&parts) : 0;
}

} // namespace

std::optional<Certificate> certificate_of(ServerSocket& server, const std::string& host) {
    const Context context(SSL_CTX_new(TLS_client_method()));
    if (!context) return std::nullopt;
    const Session session = session_for(context.get(), host);
    if (!session) return std::nullopt;
    shake_hands(session.get(), server);
    const X509Pointer shown(SSL_get1_peer_certificate(session.get()));
    if (!shown) return std::nullopt;
    Certificate certificate;
    certificate.subject = subject_of(shown.get());
    certificate.begins = time_of(X509_get0_notBefore(shown.get()));
    certificate.expires = time_of(X509_get0_notAfter(shown.get()));
    const long fault = SSL_get_verify_result(session.get());
    certificate.fault = static_cast<int>(fault);
    if (fault != X509_V_OK) certificate.fault_text = X509_verify_cert_error_string(fault);
    return certificate;
}

} // namespace qvtc::qvtcctl
