#pragma once

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

    /// Takes a free port. Throws std::runtime_error when there is none.
    explicit FaultyServer(Behaviour behaviour);
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

/// Goes as far as the logon and refuses it with this NTSTATUS.
FaultyServer::Behaviour refuse_logon(std::uint32_t status);

/// A gateway that finds no user in the request.
void refuse_gateway_user(int socket);

} // namespace qvtc::test
