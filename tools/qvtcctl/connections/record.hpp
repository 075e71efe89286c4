#pragma once

#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/fields.hpp"

#include <array>
#include <string>

namespace qvtc::qvtcctl {

/// A stored connection: the text of every field, in the order of the field table. Values are as
/// the library gives them back, so passwords are in their stored form.
class Record {
  public:
    std::string& operator[](std::size_t field) { return values_[field]; }
    const std::string& operator[](std::size_t field) const { return values_[field]; }

    /// The id as a number, or nothing when there is none yet.
    std::optional<unsigned> id() const { return parse_number(values_[field_index("id")]); }
    const std::string& name() const { return values_[field_index("name")]; }
    const std::string& address() const { return values_[field_index("serverAddress")]; }

    void set_identity(std::optional<unsigned> id, const ConnectionType& type);

    bool operator==(const Record&) const = default;

  private:
    std::array<std::string, field_count> values_;
};

/// The parameter string that stores the record: all fields, also the empty ones, so that the
/// library has none to miss. "&" is sent as "%", which the settings document gives back as "&".
/// The record must have passed check_carried() in every field.
std::string to_parameters(const Record& record);

/// "33 (office)", or "33" for a connection without a name.
std::string label_of(unsigned id, const Record& record);

} // namespace qvtc::qvtcctl
