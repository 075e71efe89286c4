#include "qvtcctl/verb/settings_document.hpp"

#include "qvtcctl/base/input_file.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <memory>

#include <fmt/format.h>
#include <libxml/parser.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view root_element = "ThinClientConfig";
constexpr int silent = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct Release {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Parser = std::unique_ptr<xmlParserCtxt, Release>;
using Document = std::unique_ptr<xmlDoc, Release>;

/// Where the text stops being XML, and why; empty when it does not.
std::string parse_error(const std::string& text) {
    const Parser parser(xmlNewParserCtxt());
    if (!parser) return "out of memory";
    const Document whole(xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()),
                                           nullptr, "UTF-8", silent));
    if (whole) return "";
    const xmlError* error = xmlCtxtGetLastError(parser.get());
    if (error == nullptr || error->message == nullptr) return "it is not XML";
    return fmt::format("line {}: {}", error->line, printable(trimmed(error->message)));
}

/// The name of the root element of what can be read of the text; empty when nothing can.
std::string root_name(const std::string& text) {
    const Document recovered(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr,
                                           "UTF-8", silent | XML_PARSE_RECOVER));
    const xmlNode* root = recovered ? xmlDocGetRootElement(recovered.get()) : nullptr;
    return root == nullptr ? "" : reinterpret_cast<const char*>(root->name);
}

DocumentFault unreadable(const std::string& why) {
    return {fmt::format("the settings document {} cannot be read: {}.", settings_document, why),
            "Restore a backup with \"qvtcctl connection import FILE\", which keeps the damaged "
            "document under another name; or move it away to begin a new one.",
            false};
}

DocumentFault damaged(const std::string& why) {
    return {fmt::format("the settings document {} is damaged: {}. Settings after that point are "
                        "missing, and the next change makes the loss permanent.",
                        settings_document, why),
            "Compare \"qvtcctl connection list\" with a backup, and restore it with \"qvtcctl "
            "connection import --replace FILE\".",
            true};
}

std::optional<DocumentFault> fault_in_text(const std::string& text) {
    if (text.empty()) return std::nullopt; // the next change begins it
    const std::string why = parse_error(text);
    const std::string root = root_name(text);
    if (root == root_element) return why.empty() ? std::nullopt : std::optional(damaged(why));
    if (!why.empty()) return unreadable(why);
    return unreadable(
        fmt::format("its root element is \"{}\" and not \"{}\"", printable(root), root_element));
}

/// The document itself, where links lead to it.
fs::path target_of_links() {
    constexpr int most_links = 40; // as the kernel's own
    fs::path target(settings_document);
    std::error_code none;
    for (int followed = 0; followed < most_links && fs::is_symlink(target, none); ++followed)
        target = target.parent_path() / fs::read_symlink(target, none);
    return target;
}

/// Whether the library keeps a complete copy, which it reads instead: it rewrites a document in
/// place that it cannot replace, as one that is mounted there, and may have been interrupted.
bool is_kept_elsewhere() {
    constexpr std::string_view kept = ".qvtc-kept";
    const fs::path target = target_of_links();
    std::string flat = target.relative_path();
    std::replace(flat.begin(), flat.end(), '/', '!');
    std::error_code none;
    return fs::exists(target.parent_path() / fmt::format(".{}{}", target.filename().string(), kept),
                      none) ||
           fs::exists(fmt::format("/run/.{}{}", flat, kept), none);
}

/// The first of the names NAME.damaged, NAME.damaged-2, ... that is free.
fs::path free_name(const fs::path& target) {
    fs::path name = target.string() + ".damaged";
    for (int number = 2; fs::exists(fs::symlink_status(name)); ++number)
        name = fmt::format("{}.damaged-{}", target.string(), number);
    return name;
}

} // namespace

std::optional<DocumentFault> fault_in_settings_document() {
    const fs::path path(settings_document);
    std::error_code ignored;
    if (geteuid() != 0 || fs::is_character_file(path, ignored)) return std::nullopt;
    const InputFile file(path);
    if (file.is_missing() || is_kept_elsewhere()) return std::nullopt;
    if (!file.is_open()) return unreadable(file.fault());
    if (file.size() > INT_MAX) return unreadable("it is too large");
    const std::optional<DocumentFault> fault = fault_in_text(file.read_from(0, file.size()));
    return is_kept_elsewhere() ? std::nullopt : fault; // perhaps since then
}

std::string set_unreadable_document_aside() {
    const std::optional<DocumentFault> fault = fault_in_settings_document();
    if (!fault || fault->partly) return "";
    std::error_code error;
    // A link stays, and what it leads to is begun anew.
    const fs::path target = fs::canonical(settings_document, error);
    const fs::path kept = error ? fs::path() : free_name(target);
    if (!error) fs::rename(target, kept, error);
    if (!error) return kept;
    throw Refusal(ExitCode::not_done, fmt::format("{} It could not be moved away: {}.",
                                                  fault->message(), error.message()));
}

} // namespace qvtc::qvtcctl
