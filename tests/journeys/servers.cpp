#include "servers.hpp"

#include "desktop.hpp"
#include "support/support.hpp"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

/// A connection to a port of 127.0.0.1, as long as it lives.
class Connection {
  public:
    explicit Connection(const std::string& port)
        : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(port)));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        is_open_ =
            connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Connection() { close(socket_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool is_open() const { return is_open_; }

    void send_text(const std::string& text) const {
        if (send(socket_, text.data(), text.size(), MSG_NOSIGNAL) < 0) {
            throw std::runtime_error("the server does not listen any more");
        }
    }

    /// Exactly so many bytes, or fewer at the end.
    std::string receive(std::size_t size) const {
        std::array<char, 256> bytes{};
        const ssize_t count = recv(socket_, bytes.data(), size, MSG_WAITALL);
        return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : "";
    }

  private:
    int socket_;
    bool is_open_ = false;
};

void in_background(const std::string& command, const std::string& log) {
    const Output said = output_of("setsid " + command + " >" + log + " 2>&1 </dev/null &");
    if (said.status != 0) throw std::runtime_error("cannot start " + command);
    forget_commands();
}

void wait_for_port(const std::string& port, const std::string& log) {
    if (wait_until([&] { return answers(port); }, patience)) return;
    throw std::runtime_error("nothing answers at port " + port + ": " + read_file(log));
}

} // namespace

bool answers(const std::string& port) { return Connection(port).is_open(); }

void start_vnc_server(const std::string& display, const std::string& options) {
    const Output said = output_of("x11vnc -display " + display +
                                  " -forever -bg -q -o /tmp/vnc-server.log " + options + " 2>&1");
    forget_commands();
    if (said.status != 0) throw std::runtime_error("no VNC server: " + said.text);
}

void start_spice_server(const std::string& port, const std::string& options) {
    in_background("qemu-system-x86_64 -display none -machine pc,accel=tcg -m 64 -vga qxl "
                  "-monitor none -serial none -spice port=" +
                      port + ",addr=127.0.0.1," + options,
                  "/tmp/spice-server.log");
    wait_for_port(port, "/tmp/spice-server.log");
}

void start_web_server(const std::string& port) {
    write_file("/tmp/pages/index.html", "<title>The terminal's page</title>"
                                        "<body style=\"background: #3366cc\"></body>");
    in_background("python3 -m http.server " + port + " --bind 127.0.0.1 --directory /tmp/pages",
                  "/tmp/web.log");
    wait_for_port(port, "/tmp/web.log");
}

bool has_window(const std::string& text) {
    return output_of("xwininfo -root -tree").text.find(text) != std::string::npos;
}

std::string vnc_security_types(const std::string& port) {
    const Connection server(port);
    const std::string version = server.is_open() ? server.receive(12) : "";
    if (!version.starts_with("RFB 003.")) return "";
    server.send_text("RFB 003.008\n");
    const std::string count = server.receive(1);
    if (count.empty()) return "";
    std::string types;
    for (const char type : server.receive(static_cast<unsigned char>(count[0]))) {
        types += (types.empty() ? "" : " ") + std::to_string(static_cast<unsigned char>(type));
    }
    return types;
}

} // namespace qvtc::test
