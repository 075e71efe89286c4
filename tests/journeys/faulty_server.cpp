#include "faulty_server.hpp"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
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

// The server's answers to the first request: a failure, and the choices of TLS and of NLA.
const Bytes no_such_protocol = {3, 0, 0, 0x13, 0x0e, 0xd0, 0, 0, 0x12, 0x34,
                                0, 3, 0, 8,    0,    5,    0, 0, 0};
const Bytes tls_only = {3, 0, 0, 0x13, 0x0e, 0xd0, 0, 0, 0x12, 0x34, 0, 2, 0, 8, 0, 1, 0, 0, 0};
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

void add_to_name(X509_NAME* name, const char* kind, const std::string& text) {
    if (text.empty()) return;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    X509_NAME_add_entry_by_txt(name, kind, MBSTRING_UTF8, bytes, static_cast<int>(text.size()), -1,
                               0);
}

std::unique_ptr<X509, Free> self_signed_certificate(EVP_PKEY* key, const ShownCertificate& shown) {
    std::unique_ptr<X509, Free> certificate(X509_new());
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    ASN1_TIME_set_string_X509(X509_getm_notBefore(certificate.get()), shown.begins.c_str());
    ASN1_TIME_set_string_X509(X509_getm_notAfter(certificate.get()), shown.expires.c_str());
    X509_set_pubkey(certificate.get(), key);
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    add_to_name(name, "O", shown.organisation);
    add_to_name(name, "CN", shown.common_name);
    X509_set_issuer_name(certificate.get(), name);
    X509_sign(certificate.get(), key, EVP_sha256());
    return certificate;
}

/// The server's side of TLS on a connection.
std::unique_ptr<SSL, Free> start_tls(int socket, const ShownCertificate& shown = {}) {
    const std::unique_ptr<EVP_PKEY, Free> key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    const std::unique_ptr<SSL_CTX, Free> context(SSL_CTX_new(TLS_server_method()));
    SSL_CTX_use_certificate(context.get(), self_signed_certificate(key.get(), shown).get());
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

int listen_at(std::uint16_t port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    const int on = 1; // connections of a former server at this port may not be forgotten yet
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
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

/// Until one side has no more to say or the other has gone.
void pass_on(int from, int to) {
    block_pipe_signal();
    std::array<unsigned char, 16384> block{};
    while (true) {
        const ssize_t count = recv(from, block.data(), block.size(), 0);
        if (count < 0 && errno == EAGAIN) continue; // quiet for a while
        if (count <= 0 || send(to, block.data(), static_cast<std::size_t>(count), 0) < 0) break;
    }
    shutdown(from, SHUT_RDWR);
    shutdown(to, SHUT_RDWR);
}

} // namespace

FaultyServer::FaultyServer(Behaviour behaviour, std::uint16_t port)
    : listener_(listen_at(port)),
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

void say_nothing(int socket) {
    std::array<unsigned char, 4096> block{};
    ssize_t count = 0;
    do {
        count = recv(socket, block.data(), block.size(), 0);
    } while (count > 0 || (count < 0 && errno == EAGAIN));
}

void fall_silent(int socket) {
    read_some(socket);
    send_bytes(socket, tls_only);
    const std::unique_ptr<SSL, Free> connection = start_tls(socket);
    say_nothing(socket);
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

FaultyServer::Behaviour answer_with_status(const std::string& status) {
    return [status](int socket) {
        answer(*start_tls(socket), "HTTP/1.1 " + status + "\r\nContent-Length: 0\r\n\r\n");
    };
}

FaultyServer::Behaviour show_certificate(const ShownCertificate& shown) {
    return [shown](int socket) { start_tls(socket, shown); };
}

FaultyServer::Behaviour negotiate_security(unsigned char taken, bool old_rdp,
                                           const ShownCertificate& shown) {
    return [=](int socket) {
        constexpr std::size_t protocols = 15; // where the request names them
        constexpr unsigned char chosen = 2;
        std::array<unsigned char, 19> request{};
        if (recv(socket, request.data(), request.size(), MSG_WAITALL) <= 0) return;
        const unsigned char common = request[protocols] & taken;
        Bytes answer = no_such_protocol;
        if (common != 0 || (old_rdp && request[protocols] == 0)) {
            answer[11] = chosen;
            answer[protocols] = (common & 2) != 0 ? 2 : common;
        }
        send_bytes(socket, answer);
        if (common != 0) start_tls(socket, shown);
    };
}

FaultyServer::Behaviour relay_late(const std::string& port, std::chrono::seconds delay) {
    return [port, delay](int client) {
        std::this_thread::sleep_for(delay);
        const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(port)));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            std::thread back([client, server] { pass_on(server, client); });
            pass_on(client, server);
            back.join();
        }
        close(server);
    };
}

} // namespace qvtc::test
