#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

namespace qvtc::test {

/// A server on 127.0.0.1 that serves every connection in one way, one after the other, until it
/// is destroyed.
class FaultyServer {
  public:
    using Behaviour = std::function<void(int socket)>;

    /// Takes that port, or a free one. Throws std::runtime_error when it cannot.
    explicit FaultyServer(Behaviour behaviour, std::uint16_t port = 0);
    ~FaultyServer();
    FaultyServer(const FaultyServer&) = delete;
    FaultyServer& operator=(const FaultyServer&) = delete;

    std::string port() const;

  private:
    void serve(const Behaviour& behaviour) const;

    int listener_;
    std::thread thread_;
};

/// Answers the client's first request with "I will have none of these protocols".
void refuse_negotiation(int socket);

/// Resets the connection in the middle of the client's first request.
void reset_connection(int socket);

/// Lets the client talk, and says nothing until it gives up.
void say_nothing(int socket);

/// Takes TLS, and says nothing from then on.
void fall_silent(int socket);

/// Goes as far as the logon and refuses it with this NTSTATUS.
FaultyServer::Behaviour refuse_logon(std::uint32_t status);

/// A gateway, or whatever else speaks HTTP, that answers each request with a status such as
/// "401 Unauthorized".
FaultyServer::Behaviour answer_with_status(const std::string& status);

/// What is written into a self-signed certificate.
struct ShownCertificate {
    std::string common_name = "127.0.0.1";
    std::string organisation;
    std::string begins = "20200101000000Z";
    std::string expires = "20991231235959Z";
};

/// Shows a certificate and hangs up.
FaultyServer::Behaviour show_certificate(const ShownCertificate& shown);

/// An RDP server that takes these security protocols only (1: TLS, 2: network-level
/// authentication; RDP's own, when "old_rdp"), and shows a certificate when one of them is chosen.
FaultyServer::Behaviour negotiate_security(unsigned char taken, bool old_rdp,
                                           const ShownCertificate& shown = {});

/// Passes everything on to a port of 127.0.0.1 and back, from so long after the beginning on.
FaultyServer::Behaviour relay_late(const std::string& port, std::chrono::seconds delay);

} // namespace qvtc::test
