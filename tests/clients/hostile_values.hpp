#pragma once

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <string>
#include <vector>

/// Values that would like to be more than values.
namespace qvtc::clients {

std::vector<std::string> hostile_values();

/// What the shell makes of a text in which nothing is special but blanks.
test::StandIn::Arguments words(const std::string& text);

void append(test::StandIn::Arguments& arguments, const test::StandIn::Arguments& more);

/// The form in which a record holds a desktop's name.
std::string hex_of(const std::string& value);

/// A terminal with stand-ins for the clients, and a working directory in which a pattern would
/// match something and a redirection leave something; both are looked at in the end.
class HostileTerminal : public test::FreshTerminal {
  protected:
    HostileTerminal();
    ~HostileTerminal() override;

    const std::filesystem::path directory = "/tmp/working-directory";
    test::StandIn xfreerdp{"xfreerdp"};
    test::StandIn remote_viewer{"remote-viewer"};
    test::StandIn vmware_view{"vmware-view"};
    test::StandIn vncviewer{"vncviewer"};
    test::StandIn firefox{"firefox"};

    /// The calls of a client that a command line makes.
    test::StandIn::Calls calls_of(const std::string& name, const std::string& line);
};

} // namespace qvtc::clients
