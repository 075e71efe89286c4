#include "faulty_server.hpp"

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <initializer_list>
#include <memory>
#include <netinet/in.h>
#include <openssl/evp.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <pthread.h>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace qvtc::test {

namespace {

using Bytes = std::basic_string<unsigned char>;

// The server's answers to the first request: a failure, and the choice of NLA.
const Bytes no_such_protocol = {3, 0, 0, 0x13, 0x0e, 0xd0, 0, 0, 0x12, 0x34,
                                0, 3, 0, 8,    0,    5,    0, 0, 0};
const Bytes logon_first = {3, 0, 0, 0x13, 0x0e, 0xd0, 0, 0, 0x12, 0x34, 0, 2, 0, 8, 0, 2, 0, 0, 0};

struct Free {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    void operator()(SSL* connection) const { SSL_free(connection); }
};

void read_some(int socket) {
    std::array<unsigned char, 4096> request{};
    (void)!read(socket, request.data(), request.size());
}

void send_bytes(int socket, const Bytes& bytes) {
    (void)!write(socket, bytes.data(), bytes.size());
}

std::unique_ptr<X509, Free> self_signed_certificate(EVP_PKEY* key) {
    constexpr long day = 86400;
    std::unique_ptr<X509, Free> certificate(X509_new());
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -day);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), day);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    const auto* const host = reinterpret_cast<const unsigned char*>("127.0.0.1");
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_sign(certificate.get(), key, EVP_sha256());
    return certificate;
}

/// The server's side of TLS on a connection.
std::unique_ptr<SSL, Free> start_tls(int socket) {
    constexpr unsigned key_bits = 2048;
    const std::unique_ptr<EVP_PKEY, Free> key(EVP_RSA_gen(key_bits));
    const std::unique_ptr<SSL_CTX, Free> context(SSL_CTX_new(TLS_server_method()));
    SSL_CTX_use_certificate(context.get(), self_signed_certificate(key.get()).get());
    SSL_CTX_use_PrivateKey(context.get(), key.get());
    std::unique_ptr<SSL, Free> connection(SSL_new(context.get()));
    SSL_set_fd(connection.get(), socket);
    SSL_accept(connection.get());
    return connection;
}

/// Waits for a request, then sends the answer.
void answer(SSL& connection, std::string_view text) {
    std::array<char, 4096> request{};
    SSL_read(&connection, request.data(), static_cast<int>(request.size()));
    SSL_write(&connection, text.data(), static_cast<int>(text.size()));
    SSL_shutdown(&connection);
}

int listen_somewhere() {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, SOMAXCONN) != 0) {
        throw std::runtime_error("no port to listen at");
    }
    return listener;
}

/// A client that goes away ends a conversation, not the test.
void block_pipe_signal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace

FaultyServer::FaultyServer(Behaviour behaviour)
    : listener_(listen_somewhere()),
      thread_([this, behaviour = std::move(behaviour)] { serve(behaviour); }) {}

FaultyServer::~FaultyServer() {
    shutdown(listener_, SHUT_RDWR); // ends the wait for a connection
    thread_.join();
    close(listener_);
}

std::string FaultyServer::port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    return std::to_string(ntohs(address.sin_port));
}

void FaultyServer::serve(const Behaviour& behaviour) const {
    constexpr timeval patience{10, 0};
    block_pipe_signal();
    for (;;) {
        const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0) return;
        setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        behaviour(client);
        close(client);
    }
}

void refuse_negotiation(int socket) {
    read_some(socket);
    send_bytes(socket, no_such_protocol);
}

void reset_connection(int socket) {
    std::array<unsigned char, 4> start{};
    (void)!read(socket, start.data(), start.size());
    const linger at_once{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

FaultyServer::Behaviour refuse_logon(std::uint32_t status) {
    return [status](int socket) {
        read_some(socket);
        send_bytes(socket, logon_first);
        // A message of the logon's sixth version that holds an error code only.
        std::string refusal = {0x30, 0x0d,   '\xa0', 0x03, 0x02, 0x01,
                               0x06, '\xa4', 0x06,   0x02, 0x04};
        for (const int shift : {24, 16, 8, 0}) refusal += static_cast<char>(status >> shift & 0xff);
        answer(*start_tls(socket), refusal);
    };
}

void refuse_gateway_user(int socket) {
    answer(*start_tls(socket), "HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n");
}

} // namespace qvtc::test
