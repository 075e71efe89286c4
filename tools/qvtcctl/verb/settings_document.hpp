#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

inline constexpr std::string_view settings_document = "/home/root/vpclientData.xml";

/// What is wrong with the settings document. The library reports every setting of one that it
/// cannot read as unset, and its setters report success, so nobody else would say so.
struct DocumentFault {
    std::string what;    ///< where and why: one or two sentences, the first without its capital
    std::string advice;  ///< what to do
    bool partly = false; ///< what stands before the damage is read, and can be changed

    std::string message() const { return what + " " + advice; }
};

/// Nothing when the document is whole, is yet to be created, or is not this user's to read.
std::optional<DocumentFault> fault_in_settings_document();

/// Moves a document that cannot be read at all out of the way, so that the next change begins a new
/// one. Returns the name under which it is kept; empty when there was no need. Refuses
/// (ExitCode::not_done) when it cannot be moved.
std::string set_unreadable_document_aside();

} // namespace qvtc::qvtcctl
