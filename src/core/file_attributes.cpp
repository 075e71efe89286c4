#include "core/file_attributes.hpp"

#include <algorithm>
#include <linux/limits.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace qvtc {

namespace {

using Names = std::vector<std::string>;
constexpr std::size_t largest_attribute = XATTR_SIZE_MAX;

/// Signatures of the content are wrong for the next one.
bool belongs_to_content(std::string_view name) {
    return name == "security.ima" || name == "security.evm";
}

/// `list(buffer, size)` is one of the system's calls that list attributes.
template <typename List>
Names attribute_names(List list) {
    std::string text(XATTR_LIST_MAX, '\0');
    const ssize_t length = list(text.data(), text.size());
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    Names names;
    for (std::size_t at = 0; at < text.size(); at += names.back().size() + 1)
        names.emplace_back(text.c_str() + at);
    std::erase_if(names, belongs_to_content);
    return names;
}

void copy_attribute(int descriptor, const std::string& former, const std::string& name) {
    std::string value(largest_attribute, '\0');
    const ssize_t length = getxattr(former.c_str(), name.c_str(), value.data(), value.size());
    if (length >= 0)
        fsetxattr(descriptor, name.c_str(), value.data(), static_cast<std::size_t>(length), 0);
}

void take_attributes(int descriptor, const std::string& former) {
    const Names wanted = attribute_names(
        [&](char* text, std::size_t size) { return listxattr(former.c_str(), text, size); });
    const Names own = attribute_names(
        [&](char* text, std::size_t size) { return flistxattr(descriptor, text, size); });
    for (const std::string& name : own) {
        // Such as the access list that its directory hands to every new file.
        if (std::find(wanted.begin(), wanted.end(), name) == wanted.end())
            fremovexattr(descriptor, name.c_str());
    }
    for (const std::string& name : wanted) copy_attribute(descriptor, former, name);
}

} // namespace

bool take_after(int descriptor, const std::string& former, unsigned mode_of_new) {
    struct stat old {};
    if (stat(former.c_str(), &old) != 0) return fchmod(descriptor, mode_of_new) == 0;
    // In this order: a change of the owner takes capabilities and mode bits away.
    [[maybe_unused]] const int kept = fchown(descriptor, old.st_uid, old.st_gid);
    take_attributes(descriptor, former);
    return fchmod(descriptor, old.st_mode & 07777) == 0;
}

} // namespace qvtc
